// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <expected>
#include <limits>

#include "dbtool/program_data.h"

namespace quayline::dbtool {

namespace {

constexpr int kMaxPort = 65535;
constexpr int kMaxCustomName = 10;
// The entries of one program are numbered after its short name, with two digits, and an entry's
// name has at most ten characters.
constexpr int kMaxShortName = 8;

// More than the dynamic ports. A program that seems to need more is likely a typing error.
constexpr int kManyPorts = 20000;

struct PortRange {
  int first = 0;
  int last = 0;

  bool operator==(const PortRange&) const = default;
};

// Finds values that occur twice in one table, ignoring case.
class Uniqueness final {
 public:
  Uniqueness(const char* what, Problems& problems) : what_(what), problems_(problems) {}

  void Take(const QString& value, const QString& file, int line) {
    const QString key = value.toLower();
    if (key.isEmpty()) {
      return;
    }
    if (const auto first = places_.constFind(key); first != places_.cend()) {
      problems_.append({file, line,
                        AsItIs(QStringLiteral("The %1 \"%2\" stands in %3 already.")
                                   .arg(QLatin1String(what_), value, *first))});
      return;
    }
    places_.insert(key, QStringLiteral("%1:%2").arg(file, QString::number(line)));
  }

 private:
  const char* what_;
  Problems& problems_;
  QHash<QString, QString> places_;
};

std::expected<PortRange, QString> ReadPort(const QString& element) {
  const qsizetype dash = element.indexOf(QLatin1Char('-'));
  if (dash < 0) {
    return std::unexpected(QStringLiteral("\"%1\" has no end port.").arg(element));
  }
  const int first = ReadNumber(element.left(dash), kMaxPort).value_or(0);
  const int last = ReadNumber(element.mid(dash + 1), kMaxPort).value_or(0);
  if (first == 0 || last == 0) {
    return std::unexpected(
        QStringLiteral("\"%1\" is not made of ports from 1 to 65535.").arg(element));
  }
  if (last < first) {
    return std::unexpected(QStringLiteral("\"%1\" ends before it starts.").arg(element));
  }
  return PortRange{.first = first, .last = last};
}

// The checks of one router.
class RouterCheck final {
 public:
  RouterCheck(const RouterSource& source, Problems& problems)
      : source_(source), problems_(problems) {}

  void Run() {
    CheckPresence();
    // The rest of another model is that of its router.
    if (source_.is_other_model) {
      return;
    }
    CheckAnswer("routersupportsboth", source_.record.routersupportsboth);
    CheckAnswer("routerneedscomputername", source_.record.routerneedscomputername);
    CheckWayOfTesting();
    CheckLimits();
    CheckPicture();
    CheckScripts();
  }

 private:
  void Report(const char* field, const QString& sentence) {
    const int line = source_.lines.value(QLatin1String(field), source_.line);
    problems_.append({source_.file, line, AsItIs(sentence)});
  }

  bool Has(const char* name) const { return source_.lines.contains(QLatin1String(name)); }

  void CheckPresence() {
    if (!Has("id") && !source_.is_other_model) {
      Report("id", QStringLiteral("The router has no field id."));
    }
    for (const Column<RouterRecord>& field : kRouterColumns) {
      if (field.kind == ColumnKind::kText && !field.is_optional && !Has(field.name) &&
          !source_.is_other_model) {
        Report(field.name,
               QStringLiteral("The router has no field %1.").arg(QLatin1String(field.name)));
      }
    }
    if (Has("routername") && source_.record.routername.trimmed().isEmpty()) {
      Report("routername", QStringLiteral("The router has no name."));
    }
  }

  void CheckAnswer(const char* field, const QString& value) {
    const QString lower = value.toLower();
    if (Has(field) && lower != QLatin1String("yes") && lower != QLatin1String("no")) {
      Report(
          field,
          QStringLiteral("%1 is \"%2\" and should be yes or no.").arg(QLatin1String(field), value));
    }
  }

  void CheckWayOfTesting() {
    const QString& value = source_.record.routertested;
    const bool is_known = std::ranges::any_of(
        kWaysOfTesting, [&](const char* way) { return value == QLatin1String(way); });
    if (!value.isEmpty() && !is_known) {
      Report("routertested", QStringLiteral("routertested is \"%1\" and should be real, rebuild or "
                                            "documentation.")
                                 .arg(value));
    }
  }

  std::optional<int> CheckNumber(const char* field, const QString& value, int least, int most) {
    const auto number = ReadNumber(value, most);
    if (value.isEmpty() || !number || *number < least) {
      if (Has(field)) {
        Report(field, QStringLiteral("%1 is \"%2\" and should be a number from %3 to %4.")
                          .arg(QLatin1String(field), value, QString::number(least),
                               QString::number(most)));
      }
      return std::nullopt;
    }
    return number;
  }

  void CheckLimits() {
    const RouterRecord& record = source_.record;
    if (!record.routermaxentries.isEmpty()) {
      CheckNumber("routermaxentries", record.routermaxentries, 1, std::numeric_limits<int>::max());
    }
    CheckNumber("routermaxrange", record.routermaxrange, 0, kMaxPort);
    const auto least = CheckNumber("routerminport", record.routerminport, 1, kMaxPort);
    const auto most = CheckNumber("routermaxport", record.routermaxport, 1, kMaxPort);
    if (least && most && *most < *least) {
      Report("routermaxport", QStringLiteral("routermaxport is below routerminport."));
    }
  }

  void CheckPicture() {
    QString path = source_.record.routerpic;
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (path.contains(QLatin1Char(':')) ||
        path.split(QLatin1Char('/')).contains(QLatin1String(".."))) {
      Report("routerpic", QStringLiteral("routerpic is not a path below the maker's files."));
    }
  }

  void CheckScripts() {
    for (const Column<RouterRecord>& script : kRouterColumns) {
      if (script.kind != ColumnKind::kScript) {
        continue;
      }
      const QString name = QLatin1String(script.name);
      if (!Has(script.name) && script.is_optional) {
        continue;
      }
      if (!Has(script.name)) {
        Report(script.name, QStringLiteral("The router has no script [%1].").arg(name));
      } else if ((source_.record.*(script.member)).trimmed().isEmpty()) {
        Report(script.name, QStringLiteral("The script [%1] has no line.").arg(name));
      }
    }
  }

  const RouterSource& source_;
  Problems& problems_;
};

// The checks of one program.
class ProgramCheck final {
 public:
  ProgramCheck(const PortsSource& source, Problems& problems)
      : source_(source), problems_(problems) {}

  void Run() {
    const AppPortRecord& record = source_.record;
    QString short_name = record.nameforrouter;
    short_name.remove(QLatin1Char(' '));
    if (record.appname.trimmed().isEmpty()) {
      Report(QStringLiteral("The program has no name."));
    }
    if (short_name.isEmpty() || short_name.size() > kMaxShortName) {
      Report(QStringLiteral("The short name \"%1\" should have 1 to 8 characters besides blanks.")
                 .arg(record.nameforrouter));
    }
    if ((record.appname + record.nameforrouter).contains(QLatin1Char('|'))) {
      Report(QStringLiteral("A name with \"|\" would fall apart in a list file."));
    }
    const QList<PortRange> tcp = Ports(record.tcpportsonly);
    const QList<PortRange> udp = Ports(record.udpportsonly);
    const QList<PortRange> both = Ports(record.tcpudpports);
    if (sound_ && tcp.isEmpty() && udp.isEmpty() && both.isEmpty()) {
      Report(QStringLiteral("The program has no ports."));
    }
    CheckOverlap(tcp + both, "TCP");
    CheckOverlap(udp + both, "UDP");
    for (const PortRange& range : tcp + udp + both) {
      if (range.last - range.first >= kManyPorts) {
        Warn(QStringLiteral("%1 is more than %2 ports.").arg(Text(range)).arg(kManyPorts));
      }
    }
    for (const PortRange& range : tcp) {
      if (udp.contains(range)) {
        Warn(QStringLiteral("%1 is listed for TCP and for UDP, and should be listed for both.")
                 .arg(Text(range)));
      }
    }
    if (source_.origin.isEmpty()) {
      Warn(QStringLiteral("There is no source for these ports."));
    }
  }

 private:
  void Report(const QString& sentence) {
    problems_.append({source_.file, source_.line, AsItIs(sentence)});
  }
  void Warn(const QString& sentence) {
    problems_.append({source_.file, source_.line, AsItIs(sentence), true});
  }

  static QString Text(const PortRange& range) {
    return QStringLiteral("%1-%2").arg(range.first).arg(range.last);
  }

  QList<PortRange> Ports(const QString& list) {
    QList<PortRange> ranges;
    for (const QString& element : list.split(QLatin1Char('|'))) {
      if (element.trimmed().isEmpty()) {
        continue;
      }
      const auto range = ReadPort(element);
      if (range) {
        ranges.append(*range);
      } else {
        sound_ = false;
        Report(range.error());
      }
    }
    return ranges;
  }

  void CheckOverlap(QList<PortRange> ranges, const char* protocol) {
    std::ranges::sort(ranges, {}, &PortRange::first);
    for (qsizetype i = 1; i < ranges.size(); ++i) {
      if (ranges.at(i).first <= ranges.at(i - 1).last) {
        Report(QStringLiteral("%1 port %2 stands twice.")
                   .arg(QLatin1String(protocol), QString::number(ranges.at(i).first)));
        return;
      }
    }
  }

  const PortsSource& source_;
  Problems& problems_;
  bool sound_ = true;
};

void CheckCustom(const CustomSource& source, Problems& problems) {
  const CustomPortRecord& record = source.record;
  const auto report = [&](const QString& sentence) {
    problems.append({source.file, source.line, AsItIs(sentence)});
  };
  if (record.appname.trimmed().isEmpty() || record.appname.size() > kMaxCustomName) {
    report(QStringLiteral("The name \"%1\" should have 1 to 10 characters.").arg(record.appname));
  }
  if (record.portype != QLatin1String("TCP") && record.portype != QLatin1String("UDP") &&
      record.portype != QLatin1String("TCP/UDP")) {
    report(QStringLiteral("The protocol is \"%1\" and should be TCP, UDP or TCP/UDP.")
               .arg(record.portype));
  }
  if (const auto range = ReadPort(record.startport + QLatin1Char('-') + record.endport); !range) {
    report(range.error());
  }
}

}  // namespace

void CheckData(const ProgramData& data, Problems& problems) {
  Uniqueness router_ids("ID", problems);
  Uniqueness router_names("router name", problems);
  for (const RouterSource& source : data.routers) {
    RouterCheck(source, problems).Run();
    const auto line = [&](const char* field) {
      return source.lines.value(QLatin1String(field), source.line);
    };
    if (source.record.id > 0) {
      router_ids.Take(QString::number(source.record.id), source.file, line("id"));
    }
    router_names.Take(source.record.routername.trimmed(), source.file, line("routername"));
  }
  Uniqueness program_ids("ID", problems);
  Uniqueness program_names("program name", problems);
  Uniqueness short_names("short name", problems);
  for (const PortsSource& source : data.ports) {
    ProgramCheck(source, problems).Run();
    program_ids.Take(QString::number(source.record.id), source.file, source.line);
    program_names.Take(source.record.appname.trimmed(), source.file, source.line);
    short_names.Take(QString(source.record.nameforrouter).remove(QLatin1Char(' ')), source.file,
                     source.line);
  }
  Uniqueness custom_ids("ID", problems);
  Uniqueness custom_names("name", problems);
  for (const CustomSource& source : data.custom) {
    CheckCustom(source, problems);
    custom_ids.Take(QString::number(source.record.id), source.file, source.line);
    custom_names.Take(source.record.appname.trimmed(), source.file, source.line);
  }
}

}  // namespace quayline::dbtool
