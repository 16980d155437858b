// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stub/page_folder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

struct FileType {
  const char* suffix;
  const char* type;
  bool is_text;
};

constexpr FileType kTypes[] = {
    {"js", "text/javascript; charset=utf-8", true},
    {"mjs", "text/javascript; charset=utf-8", true},
    {"json", "application/json", true},
    {"css", "text/css; charset=utf-8", true},
    {"xml", "application/xml", true},
    {"txt", "text/plain; charset=utf-8", true},
    {"svg", "image/svg+xml", true},
    {"png", "image/png", false},
    {"gif", "image/gif", false},
    {"jpg", "image/jpeg", false},
    {"jpeg", "image/jpeg", false},
    {"ico", "image/x-icon", false},
    {"woff", "font/woff", false},
    {"woff2", "font/woff2", false},
};

// Routers name their pages ".htm", ".asp", ".cgi", ".php", ".lp" and more: what is not known is a
// page.
constexpr FileType kPage{"", "text/html; charset=utf-8", true};

const FileType& TypeOf(const QString& name) {
  const QString suffix = QFileInfo(name).suffix().toLower();
  const auto* const found = std::ranges::find_if(
      kTypes, [&](const FileType& type) { return suffix == QLatin1String(type.suffix); });
  return found == std::end(kTypes) ? kPage : *found;
}

bool IsPlainName(const QString& segment) {
  return !segment.isEmpty() && !segment.startsWith(u'.') && !segment.contains(u'\\') &&
         !segment.contains(QChar(0));
}

}  // namespace

std::expected<PageFolder, QString> PageFolder::Open(const QString& folder) {
  const QString root = QFileInfo(folder).canonicalFilePath();
  if (root.isEmpty() || !QFileInfo(root).isDir()) {
    return std::unexpected(u"There is no folder \"%1\"."_s.arg(folder));
  }
  return PageFolder(root);
}

bool PageFolder::TakeTheRestFrom(const QString& sibling) {
  const QString folder = QFileInfo(root_).path() + u'/' + sibling;
  const QFileInfo info(QFileInfo(folder).canonicalFilePath());
  if (!IsPlainName(sibling) || sibling.contains(u'/') || !info.isDir()) {
    return false;
  }
  other_ = info.filePath();
  return true;
}

std::optional<PageFolder::File> PageFolder::Find(const QString& path) const {
  if (!path.startsWith(u'/')) {
    return std::nullopt;
  }
  const QString name = (path.endsWith(u'/') ? path + u"index.html"_s : path).sliced(1);
  const QStringList segments = name.split(u'/');
  if (!std::ranges::all_of(segments, IsPlainName) || name == "answers.json"_L1) {
    return std::nullopt;
  }
  for (const QString& each : {name, name + u".html"_s}) {
    if (std::optional<File> file = Read(each)) {
      return file;
    }
  }
  // The page was saved as the script had made it, and the script to be read.
  if (Read(name + u".txt"_s)) {
    return File{.name = name, .bytes = {}, .type = TypeOf(name).type, .is_text = true};
  }
  return std::nullopt;
}

std::optional<PageFolder::File> PageFolder::Read(const QString& name) const {
  QFile device;
  for (const QString& root : {root_, other_}) {
    const QString path = QFileInfo(root + u'/' + name).canonicalFilePath();
    if (!root.isEmpty() && path.startsWith(root + u'/') && QFileInfo(path).isFile()) {
      device.setFileName(path);
      break;
    }
  }
  if (!device.open(QIODevice::ReadOnly)) {
    return std::nullopt;
  }
  const QByteArray bytes = device.read(kMaxFileBytes + 1);
  if (device.error() != QFile::NoError) {
    return std::nullopt;
  }
  const FileType& type = TypeOf(name);
  if (bytes.size() > kMaxFileBytes) {
    return File{.name = name, .bytes = {}, .type = type.type, .is_too_large = true};
  }
  return File{.name = name, .bytes = bytes, .type = type.type, .is_text = type.is_text};
}

}  // namespace quayline
