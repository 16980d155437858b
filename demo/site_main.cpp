// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QUrl>

#include <cstdio>

#include "demo/demo_site.h"
#include "demo/demo_updates.h"

namespace {

using quayline::demo::DemoSite;
using quayline::demo::SiteOptions;

int Fail(const QString& sentence) {
  std::fputs((sentence + QLatin1Char('\n')).toLocal8Bit().constData(), stderr);
  return 1;
}

const QCommandLineOption kListen{QStringLiteral("listen"),
                                 QStringLiteral("listen on this address of the computer; the "
                                                "default, 127.0.0.1, is reached from here only"),
                                 QStringLiteral("ADDRESS"), QStringLiteral("127.0.0.1")};
const QCommandLineOption kPort{QStringLiteral("port"),
                               QStringLiteral("listen on this port; 0, the default, takes any"),
                               QStringLiteral("N"), QStringLiteral("0")};
const QCommandLineOption kProxy{
    QStringLiteral("proxy"), QStringLiteral("believe the header X-Forwarded-For of this address"),
    QStringLiteral("ADDRESS")};
const QCommandLineOption kFolder{QStringLiteral("folder"),
                                 QStringLiteral("serve \"files\" and \"updates\" of this folder"),
                                 QStringLiteral("FOLDER")};
const QCommandLineOption kRate{QStringLiteral("rate"),
                               QStringLiteral("tests a minute for each address (default 30)"),
                               QStringLiteral("N"), QStringLiteral("30")};

const QCommandLineOption kUpdates{
    QStringLiteral("updates"),
    QStringLiteral("offer an update: \"update.ini\", signed with the demo key, a package of the "
                   "databases in this folder, and a stand-in for an installer"),
    QStringLiteral("FOLDER")};
const QCommandLineOption kOffer{QStringLiteral("offer"),
                                QStringLiteral("the version of that update (default 99.0.0)"),
                                QStringLiteral("VERSION"), QStringLiteral("99.0.0")};

int Serve(const QCommandLineParser& parser) {
  SiteOptions options;
  bool has_port = false;
  bool has_rate = false;
  options.address = QHostAddress(parser.value(kListen));
  options.port = parser.value(kPort).toUShort(&has_port);
  options.probes_a_minute = parser.value(kRate).toInt(&has_rate);
  options.folder = parser.value(kFolder);
  options.databases = parser.value(kUpdates);
  options.offered_version = parser.value(kOffer);
  options.proxy = QHostAddress(parser.value(kProxy));
  if (options.address.isNull() || (options.proxy.isNull() && parser.isSet(kProxy))) {
    return Fail(QStringLiteral("An address is like 192.0.2.1 or 2001:db8::1."));
  }
  if (!has_port || !has_rate || options.probes_a_minute < 1) {
    return Fail(QStringLiteral("--port and --rate take a number."));
  }
  DemoSite site;
  const auto port = site.Start(options);
  if (!port) {
    return Fail(port.error());
  }
  QUrl url;
  url.setScheme(QStringLiteral("http"));
  url.setHost(options.address.toString());
  url.setPort(*port);
  // Flushed at once: scripts wait for the line that names the port.
  std::printf("Listening on %s/\n", url.toEncoded().constData());
  if (!options.databases.isEmpty()) {
    std::printf("updatesite=%s\nupdatekey=%s\n", url.toEncoded().constData(),
                quayline::demo::DemoKey().for_everybody.toHex().constData());
  }
  std::fflush(stdout);
  return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral(
      "The web site that tests ports from the outside, see docs/port-test-site.md. It probes the "
      "address that asks for a test, and no other."));
  parser.addHelpOption();
  parser.addOptions({kListen, kPort, kProxy, kFolder, kRate, kUpdates, kOffer});
  parser.process(application);
  if (!parser.positionalArguments().isEmpty()) {
    return Fail(QStringLiteral("\"%1\" is not understood. Try --help.")
                    .arg(parser.positionalArguments().first()));
  }
  return Serve(parser);
}
