// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "demo/demo_updates.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "core/databases.h"
#include "demo/update_package.h"

namespace quayline::demo {

namespace {

const QString kFolder = QStringLiteral("/updates/qyl_v3/");
const QDate kFirstSerial(2020, 1, 1);
constexpr int kDays = 30;
constexpr int kDemoRouterId = 900'000;

// Stands for a program, and must not be run.
const QByteArray kStandIn =
    "MZ This is no program: it stands for one on Quayline's demo site. Nothing in it is run.\n";

HttpResponse FileOf(const QByteArray& bytes, const char* type) {
  HttpResponse response;
  response.content_type = type;
  response.headers.emplaceBack("Cache-Control", "no-store");
  response.body = bytes;
  return response;
}

// The databases of the folder, and a router that an update brings.
std::expected<QList<PackedFile>, QString> ReadDatabases(const QString& folder) {
  const QTemporaryDir work;
  for (const char* name : kPackageNames) {
    const QString from = folder + QLatin1Char('/') + QLatin1String(name);
    const QString to = work.filePath(QLatin1String(name));
    if (!QFile::copy(from, to) ||
        !QFile::setPermissions(to, QFile::ReadOwner | QFile::WriteOwner)) {
      return std::unexpected(QStringLiteral("\"%1\" cannot be read.").arg(from));
    }
  }
  Databases databases;
  if (const auto opened = databases.Open(work.path()); !opened) {
    return std::unexpected(EnglishOf(opened.error().description));
  }
  const bool is_added = databases.AddRouter(
      kDemoRouterId, {.routername = QStringLiteral("Demo Router (from the update)"),
                      .routerusername = QStringLiteral("admin"),
                      .routersupportsboth = QStringLiteral("yes"),
                      .routercommands = QStringLiteral("nav(\"/\")\r\n")});
  databases.Close();
  QList<PackedFile> files;
  for (const char* name : kPackageNames) {
    QFile file(work.filePath(QLatin1String(name)));
    if (!is_added || !file.open(QIODevice::ReadOnly)) {
      return std::unexpected(QStringLiteral("The package cannot be made."));
    }
    files.append({name, file.readAll()});
  }
  return files;
}

}  // namespace

SigningKey DemoKey() { return MakeSigningKey("quayline demo key, not a secret!"); }

std::expected<QHash<QString, HttpResponse>, QString> MakeUpdates(const UpdateOptions& options) {
  const auto files = ReadDatabases(options.databases);
  if (!files) {
    return std::unexpected(files.error());
  }
  const QString installer = kFolder + QStringLiteral("quayline-%1.exe").arg(options.version);
  const QByteArray package = MakePackage(*files, kStandIn);
  const QDate today = QDate::currentDate();
  QUrl download = options.site;
  download.setPath(installer);
  const QByteArray manifest =
      "[update]\r\ncurrent=" + options.version.toUtf8() + "\r\ndownload=" + download.toEncoded() +
      "\r\nnote=From the demo site\r\ndownloadsha256=" + DigestOf(kStandIn).toHex() +
      "\r\ndatabasessha256=" + DigestOf(package).toHex() +
      "\r\nserial=" + QByteArray::number(kFirstSerial.daysTo(today)) +
      "\r\nexpires=" + today.addDays(kDays).toString(Qt::ISODate).toLatin1() + "\r\n";
  return QHash<QString, HttpResponse>{
      {kFolder + QStringLiteral("update.ini"),
       FileOf(SignManifest(manifest, DemoKey()), "text/plain; charset=utf-8")},
      {kFolder + QStringLiteral("databases.exe"), FileOf(package, "application/octet-stream")},
      {installer, FileOf(kStandIn, "application/octet-stream")}};
}

}  // namespace quayline::demo
