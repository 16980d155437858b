// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/native_discovery.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

#include "core/port_range.h"

namespace quayline {

namespace {

using Protocol = NativePort::Protocol;
using Shape = NativePort::Shape;

constexpr qint64 kMaxFileBytes = 1 << 20;
constexpr qsizetype kMostFiles = 100;
constexpr qsizetype kMaxRefusedLength = 20;

QString Latin1(const char* text) { return QString::fromLatin1(text); }

// The files that a path with wildcards in its last part names, by name.
QStringList Expanded(const QString& path) {
  if (!path.contains(QLatin1Char('*'))) {
    return {path};
  }
  const QDir folder(path.section(QLatin1Char('/'), 0, -2));
  QStringList files;
  for (const QString& name :
       folder.entryList({path.section(QLatin1Char('/'), -1)}, QDir::Files, QDir::Name)) {
    files += folder.filePath(name);
  }
  return files;
}

QStringList PlacesOf(const NativeProgram& program, const ForeignSettings& settings) {
  const QString home = settings.HomeFolder() + QLatin1Char('/');
  QStringList places;
  if (program.config_file != nullptr) {
    const QString file = QLatin1Char('/') + Latin1(program.config_file);
    places += settings.ConfigFolder() + file;
    if (program.flatpak != nullptr) {
      places += home + QStringLiteral(".var/app/") + Latin1(program.flatpak) +
                QStringLiteral("/config") + file;
    }
    if (program.snap != nullptr) {
      places += home + QStringLiteral("snap/") + Latin1(program.snap) +
                QStringLiteral("/current/.config") + file;
    }
  }
  for (const char* const each : program.files) {
    const QString path = Latin1(each);
    places += Expanded(path.startsWith(QLatin1Char('~')) ? home + path.sliced(2)
                                                         : settings.SystemFolder() + path);
  }
  return places;
}

bool IsLoopback(const QString& host) {
  return host.startsWith(QLatin1String("127.")) || host == QLatin1String("[::1]") ||
         host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0;
}

// The port part of a listening address. Nothing for an address that does not count: it has no port,
// is a loopback address, or has another scheme than `scheme`.
std::optional<QString> PortOfAddress(const QString& value, const char* scheme) {
  QString address = value.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
  if (const qsizetype mark = address.indexOf(QLatin1String("://")); mark >= 0) {
    if (scheme != nullptr && address.first(mark) != Latin1(scheme)) {
      return std::nullopt;
    }
    address.remove(0, mark + 3);
  }
  const qsizetype colon = address.lastIndexOf(QLatin1Char(':'));
  const QString port = address.sliced(colon + 1);
  const bool is_number =
      !port.isEmpty() && std::ranges::all_of(port, [](QChar c) { return c.isDigit(); });
  if (!is_number || (colon > 0 && IsLoopback(address.first(colon)))) {
    return std::nullopt;
  }
  return port;
}

// Reads one program's ports.
class NativeDiscovery final {
 public:
  NativeDiscovery(const NativeProgram& program, const ForeignSettings& settings)
      : program_(program), settings_(settings) {
    found_.ports.appname = Latin1(program.program);
    found_.ports.nameforrouter = Latin1(program.short_name);
  }

  DiscoveredPorts Run() {
    ReadFiles();
    if (found_.outcome == DiscoveryOutcome::kRead) {
      for (const NativePort& port : program_.ports) {
        AddPort(port);
      }
      const AppPortRecord& ports = found_.ports;
      if ((ports.tcpportsonly + ports.udpportsonly + ports.tcpudpports).isEmpty()) {
        found_.refused += QString();
      }
    }
    return found_;
  }

 private:
  void ReadFiles() {
    qsizetype count = 0;
    for (const QString& path : PlacesOf(program_, settings_)) {
      if (!QFileInfo(path).isFile()) {
        continue;
      }
      const bool is_read = ReadFile(path);
      if ((is_read && !program_.reads_all) || ++count == kMostFiles) {
        return;
      }
    }
  }

  bool ReadFile(const QString& path) {
    QFile file(path);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly)) {
      bytes = file.read(kMaxFileBytes + 1);
    }
    const bool is_large = bytes.size() > kMaxFileBytes;
    if (file.error() == QFileDevice::NoError && !is_large) {
      if (found_.outcome != DiscoveryOutcome::kRead) {
        found_.source = path;
      }
      found_.outcome = DiscoveryOutcome::kRead;
      found_.problem.clear();
      bytes_ += program_.reads_all ? bytes + '\n' : bytes;
      return true;
    }
    if (found_.outcome == DiscoveryOutcome::kNoFile) {
      found_.outcome = DiscoveryOutcome::kUnreadable;
      found_.source = path;
      found_.problem =
          is_large
              ? QStringLiteral("%1 %2").arg(QFileDevice::ResourceError).arg(qt_error_string(EFBIG))
              : QStringLiteral("%1 %2").arg(file.error()).arg(file.errorString());
    }
    return false;
  }

  QStringList Values(const char* key) const {
    return SettingsValues(program_.format, bytes_, Latin1(key));
  }

  void AddPort(const NativePort& port) {
    if (port.switch_key != nullptr &&
        Values(port.switch_key).value(0).compare(Latin1(port.switch_value), Qt::CaseInsensitive) !=
            0) {
      return;
    }
    QStringList values;
    for (const char* const key : port.keys) {
      if (values.isEmpty()) {
        values = Values(key);
      }
    }
    values.removeAll(QString());
    if (port.last_key != nullptr && !values.isEmpty()) {
      values = {values.first() + QLatin1Char('-') + Values(port.last_key).value(0)};
    }
    if (values.isEmpty() && port.fallback != nullptr) {
      values = {Latin1(port.fallback)};
    }
    for (const QString& value : values) {
      AddValue(port, value);
    }
  }

  void AddValue(const NativePort& port, const QString& value) {
    QString text = value;
    if (port.shape == Shape::kAddress) {
      // A program that listens on its default address says so in words.
      const bool is_default =
          value.trimmed() == QLatin1String("default") && port.fallback != nullptr;
      const auto found = is_default ? Latin1(port.fallback) : PortOfAddress(value, port.scheme);
      if (!found) {
        return;
      }
      text = *found;
    } else if (port.shape == Shape::kPair) {
      text.remove(QLatin1Char('('))
          .remove(QLatin1Char(')'))
          .replace(QLatin1Char(','), QLatin1Char('-'));
    }
    const auto ranges = ParsePortRanges(text);
    const bool is_usable = ranges && std::ranges::all_of(*ranges, [](const PortRange& range) {
                             return range.start > 0 && range.start <= range.end;
                           });
    if (!is_usable) {
      found_.refused += text.trimmed().left(kMaxRefusedLength);
      AddElement(port.protocol, QStringLiteral("-"));
      return;
    }
    for (const PortRange& range : *ranges) {
      AddElement(port.protocol, QStringLiteral("%1-%2").arg(range.start).arg(range.end));
    }
  }

  // Each element once: several files and addresses may name a port.
  void AddElement(Protocol protocol, const QString& element) {
    AppPortRecord& ports = found_.ports;
    QString& list = protocol == Protocol::kTcp   ? ports.tcpportsonly
                    : protocol == Protocol::kUdp ? ports.udpportsonly
                                                 : ports.tcpudpports;
    if (!list.split(QLatin1Char('|')).contains(element)) {
      list += element + QLatin1Char('|');
    }
  }

  const NativeProgram& program_;
  const ForeignSettings& settings_;
  QByteArray bytes_;
  DiscoveredPorts found_;
};

}  // namespace

DiscoveredPorts DiscoverNativePorts(const NativeProgram& program, const ForeignSettings& settings) {
  return NativeDiscovery(program, settings).Run();
}

}  // namespace quayline
