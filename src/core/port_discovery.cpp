// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/port_discovery.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "core/ini_text.h"
#include "core/native_discovery.h"
#include "core/program_sources.h"

namespace quayline {

namespace {

using Kind = ProgramSource::Kind;

constexpr qint64 kMaxFileBytes = 4 << 20;
constexpr qsizetype kMaxRefusedLength = 20;
constexpr qsizetype kDriveLength = 2;  // "C:"
constexpr int kMaxPort = 65535;

QString Latin1(const char* text) { return QString::fromLatin1(text); }

// The text of a port without needless blanks and zeros; nothing for what is no port.
std::optional<QString> PortText(const QByteArray& text) {
  const QByteArray trimmed = text.trimmed();
  const bool has_only_digits =
      std::ranges::all_of(trimmed, [](char c) { return c >= '0' && c <= '9'; });
  bool is_number = false;
  const int port = trimmed.toInt(&is_number);
  if (!has_only_digits || !is_number || port < 1 || port > kMaxPort) {
    return std::nullopt;
  }
  return QString::number(port);
}

// The text between the first `at` and the next `end` (null: the line's end). Empty without either:
// a number that the file's end cuts short would be another port.
QByteArray Between(const QByteArray& text, const char* at, const char* end) {
  const qsizetype marker = text.indexOf(at);
  if (marker < 0) {
    return {};
  }
  const auto from = text.begin() + marker + qstrlen(at);
  if (end == nullptr) {
    const auto line_end =
        std::find_if(from, text.end(), [](char c) { return c == '\r' || c == '\n'; });
    return {from, line_end - from};
  }
  const qsizetype behind = text.indexOf(end, from - text.begin());
  return behind < 0 ? QByteArray() : QByteArray(from, text.begin() + behind - from);
}

// Reads one program's ports.
class Discovery final {
 public:
  Discovery(const ProgramSource& source, const ForeignSettings& settings)
      : source_(source), settings_(settings) {
    found_.ports.appname = Latin1(source.program);
    found_.ports.nameforrouter = found_.ports.appname.section(QLatin1Char(' '), 0, 0);
  }

  DiscoveredPorts Run() {
    found_.outcome = source_.kind == Kind::kRegistry ? ReadRegistry() : ReadFile();
    return found_;
  }

 private:
  std::optional<QString> RegistryValue(const char* name) const {
    return settings_.RegistryValue(source_.hive, Latin1(source_.key), Latin1(name));
  }

  DiscoveryOutcome ReadRegistry() {
    for (const PortPlace& place : source_.ports) {
      found_.source = QStringLiteral("HKEY_CURRENT_USER\\") + Latin1(source_.key) +
                      QLatin1Char('\\') + Latin1(place.at);
      const auto value = RegistryValue(place.at);
      if (!value) {
        return DiscoveryOutcome::kNoRegistryValue;
      }
      AddPort(place, value->toUtf8());
    }
    return DiscoveryOutcome::kRead;
  }

  DiscoveryOutcome ReadFile() {
    if (source_.kind == Kind::kAppData) {
      return ReadFirstOf({settings_.AppDataFolder() + Latin1(source_.file)});
    }
    const QString folder = InstallFolder();
    if (folder.isEmpty()) {
      return DiscoveryOutcome::kNoRegistryValue;
    }
    // Where the system puts what a program writes to a protected folder.
    const QString redirected = settings_.LocalAppDataFolder() + QStringLiteral("\\VirtualStore") +
                               folder.sliced(qMin(folder.size(), kDriveLength));
    return ReadFirstOf({folder + Latin1(source_.file), redirected + Latin1(source_.file)});
  }

  QString InstallFolder() const {
    QString value = RegistryValue(source_.value_name).value_or(QString());
    if (source_.kind == Kind::kInstallFolder) {
      return value;
    }
    const QString program = value.section(QLatin1Char('"'), 1, 1);
    return program.chopped(qMin(program.size(), source_.program_length));
  }

  // Reads the first file that exists, the program's Linux edition coming last.
  DiscoveryOutcome ReadFirstOf(const QStringList& foreign_paths) {
    QStringList host_paths;
    for (const QString& path : foreign_paths) {
      host_paths += settings_.HostPath(path);
    }
    if (source_.native_file != nullptr) {
      host_paths += settings_.HomeFolder() + Latin1(source_.native_file);
    }
    const auto path = std::ranges::find_if(
        host_paths, [](const QString& each) { return QFileInfo(each).isFile(); });
    if (path == host_paths.end()) {
      return DiscoveryOutcome::kNoFile;
    }
    found_.source = *path;
    return ReadPorts(*path);
  }

  DiscoveryOutcome ReadPorts(const QString& path) {
    QFile file(path);
    QByteArray text;
    if (file.open(QIODevice::ReadOnly)) {
      text = file.read(kMaxFileBytes + 1);
    }
    if (file.error() != QFileDevice::NoError) {
      return Fail(file.error(), file.errorString());
    }
    if (text.size() > kMaxFileBytes) {
      return Fail(QFileDevice::ResourceError, qt_error_string(EFBIG));
    }
    AddPorts(text);
    return DiscoveryOutcome::kRead;
  }

  DiscoveryOutcome Fail(int number, const QString& reason) {
    found_.problem = QString::number(number) + QLatin1Char(' ') + reason;
    return DiscoveryOutcome::kUnreadable;
  }

  void AddPorts(const QByteArray& text) {
    const IniText ini(source_.ini_section != nullptr ? text : QByteArray());
    for (const PortPlace& place : source_.ports) {
      if (source_.ini_section != nullptr) {
        AddPort(place, ini.Value(Latin1(source_.ini_section), Latin1(place.at)).toUtf8());
      } else if (place.at_last != nullptr) {
        AddRange(place, Between(text, place.at, place.end),
                 Between(text, place.at_last, place.end));
      } else {
        AddPort(place, Between(text, place.at, place.end));
      }
    }
  }

  void AddPort(const PortPlace& place, const QByteArray& text) { AddRange(place, text, text); }

  void AddRange(const PortPlace& place, const QByteArray& first, const QByteArray& last) {
    const auto start = PortText(first);
    const auto end = PortText(last);
    const bool is_usable = start && end && start->toInt() <= end->toInt();
    if (!is_usable) {
      const QByteArray& wrong = start ? last : first;
      found_.refused += QString::fromLatin1(wrong.trimmed().left(kMaxRefusedLength));
    }
    QString& list = place.protocol == PortPlace::Protocol::kTcp ? found_.ports.tcpportsonly
                                                                : found_.ports.udpportsonly;
    list += (is_usable ? *start + QLatin1Char('-') + *end : QStringLiteral("-")) + QLatin1Char('|');
  }

  const ProgramSource& source_;
  const ForeignSettings& settings_;
  DiscoveredPorts found_;
};

}  // namespace

QStringList DiscoverablePrograms() {
  QStringList names;
  for (const ProgramSource& source : ProgramSources()) {
    names += Latin1(source.program);
  }
  for (const NativeProgram& program : NativePrograms()) {
    names += Latin1(program.program);
  }
  return names;
}

DiscoveredPorts DiscoverPorts(const QString& program, const ForeignSettings& settings) {
  for (const ProgramSource& source : ProgramSources()) {
    if (program.compare(QLatin1String(source.program), Qt::CaseInsensitive) == 0) {
      return Discovery(source, settings).Run();
    }
  }
  for (const NativeProgram& native : NativePrograms()) {
    if (program.compare(QLatin1String(native.program), Qt::CaseInsensitive) == 0) {
      return DiscoverNativePorts(native, settings);
    }
  }
  return {};
}

QList<DiscoveredPorts> DiscoverAllPorts(const ForeignSettings& settings) {
  QList<DiscoveredPorts> all;
  for (const QString& program : DiscoverablePrograms()) {
    if (DiscoveredPorts found = DiscoverPorts(program, settings); found.IsComplete()) {
      all += found;
    }
  }
  return all;
}

}  // namespace quayline
