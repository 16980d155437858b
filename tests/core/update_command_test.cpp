// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/update_command.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/port_conflicts.h"

namespace quayline {
namespace {

QString U(const char* text) { return QString::fromUtf8(text); }

PortEntry Row(const QString& name, const QString& start, const QString& end,
              const QString& protocol) {
  return {name, U("10.0.0.9()"), start, end, protocol, {}};
}

PortEntry Row(const char* name, const char* start, const char* end, const char* protocol = "TCP") {
  return Row(U(name), U(start), U(end), U(protocol));
}

RouterSession Session() {
  RouterSession session;
  session.router_name = U("Harbour");
  session.router_ip = U("10.0.0.1");
  session.max_range = U("100");
  session.min_port = U("1");
  session.max_port = U("65535");
  return session;
}

TEST(ClampPorts, MovesPortsIntoTheLimits) {
  const struct {
    const char* fault;
    const char *min, *max;
    QList<PortEntry> entries;
    const char* ports;
    QList<int> changed;
  } rows[] = {
      {"inside",
       "1",
       "65535",
       {Row("a", "1", "65535"), Row("b", "+21", "021")},
       "1-65535 +21-021",
       {}},
      {"a range below shrinks to a port",
       "1024",
       "65535",
       {Row("a", "20", "21")},
       "1024-1024",
       {0}},
      {"one end only",
       "1024",
       "2000",
       {Row("a", "1500", "3000"), Row("b", "20", "1100")},
       "1500-2000 1024-1100",
       {0, 1}},
      {"no limits in the router's row", "", "", {Row("a", "20", "21")}, "0-0", {0}},
      {"limits the wrong way round", "2000", "1000", {Row("a", "1500", "5")}, "1000-1000", {0}},
      {"not a number stands for the row before",
       "10",
       "90",
       {Row("a", "x", "50"), Row("b", "y", "99"), Row("c", "20", "z")},
       "10-50 y-90 20-z",
       {0, 1}},
      {"beyond 32 bits is not a number", "1", "90", {Row("a", "5", "99999999999")}, "5-1", {0}},
  };
  for (const auto& row : rows) {
    RouterSession session = Session();
    session.min_port = U(row.min);
    session.max_port = U(row.max);
    QList<PortEntry> entries = row.entries;
    EXPECT_EQ(ClampPorts(entries, session), row.changed) << row.fault;
    QStringList ports;
    for (const PortEntry& entry : entries) {
      ports.append(entry.start_port + QLatin1Char('-') + entry.end_port);
    }
    EXPECT_EQ(ports.join(QLatin1Char(' ')), U(row.ports)) << row.fault;
  }
}

TEST(CheckUpdate, TheFirstFailingCheckSpeaks) {
  const QList<PortEntry> one = {Row("Ftp", "21", "21")};
  const QList<PortEntry> two = {Row("Ftp", "21", "21"), Row("Web", "80", "80")};
  const auto start_clash =
      U("'Ftp' Conflicts With 'Web\n' Same start port in its range.\n"
        "You can not have a port forwarded more than once.");
  const auto end_clash =
      U("'Ftp' Conflicts With 'Web\n' Same end port in its range.\n"
        "You can not have a port forwarded more than once.");
  const auto same_name =
      U("The App Name 'Ftp' is used by more than one entry. Please give each "
        "entry a name of its own.");
  const auto too_many =
      U("Your router can hold %1 entries.\nYour list has %2 entries.\n"
        "Please remove some entries from the list.");
  const auto too_long =
      U("On this router the End Port of an entry can be at most %1 higher than "
        "its Start Port.\n\nIt is %2 higher in the entry Ftp");
  const auto change = [](QString RouterSession::* member, const char* text) {
    return [member, text](RouterSession& session) { session.*member = U(text); };
  };
  const auto no_change = [](RouterSession&) {};
  using Focus = UpdateFocus;
  const struct {
    const char* fault;
    QList<PortEntry> entries;
    std::function<void(RouterSession&)> change;
    QString message;
    Focus focus = Focus::kNone;
    int row = -1;
  } rows[] = {
      {"a good list", two, no_change, {}},
      {"limit reached", two, change(&RouterSession::max_entries, "2"), {}},
      {"limit passed", two, change(&RouterSession::max_entries, "1"), too_many.arg(U("1"), U("2"))},
      {"a limit of 0 is one", one, change(&RouterSession::max_entries, "0"),
       too_many.arg(U("0"), U("1"))},
      {"a limit that is no number", one, change(&RouterSession::max_entries, "?"),
       too_many.arg(U("?"), U("1"))},
      {"limit ahead of the router", two,
       [](RouterSession& s) { s.max_entries = U("1"), s.router_name.clear(); },
       too_many.arg(U("1"), U("2"))},
      {"no router, ahead of the address", one,
       [](RouterSession& s) { s.router_ip = U("0.0.0.0"), s.router_name.clear(); },
       U("Please Choose A Router."), Focus::kRouter},
      {"no address, ahead of the empty list",
       {},
       change(&RouterSession::router_ip, "0.0.0.0"),
       U("Please Set Router IP."),
       Focus::kRouterIp},
      {"an empty address passes", one, change(&RouterSession::router_ip, ""), {}},
      {"empty list", {}, no_change, U("You must have at least 1 port to forward.")},
      {"longest range", {Row("Ftp", "100", "200")}, no_change, {}},
      {"too long a range", {Row("Ftp", "100", "201")}, no_change, too_long.arg(U("100"), U("101"))},
      {"no longest range known",
       {Row("Ftp", "1", "2")},
       change(&RouterSession::max_range, ""),
       too_long.arg(U("0"), U("1"))},
      {"a range of the second row behind a clash of the first",
       {Row("Ftp", "1", "1"), Row("ftp", "1", "900")},
       no_change,
       same_name,
       Focus::kPortList,
       0},
      {"names ahead of ports",
       {Row("Ftp", "1", "1"), Row("FTP", "1", "1")},
       no_change,
       same_name,
       Focus::kPortList,
       0},
      {"ports of an earlier pair ahead of names",
       {Row("Ftp", "1", "1"), Row("Web", "1", "1"), Row("FTP", "5", "5")},
       no_change,
       start_clash,
       Focus::kPortList,
       0},
      {"the clash of a later row",
       {Row("x", "1", "1"), Row("Ftp", "5", "9"), Row("Web", "9", "9")},
       no_change,
       start_clash,
       Focus::kPortList,
       1},
      {"protocols that differ",
       {Row("Ftp", "21", "21"), Row("Web", "21", "21", "UDP")},
       no_change,
       {}},
      {"one of both protocols",
       {Row("Ftp", "21", "21"), Row("Web", "21", "21", "TCP/UDP")},
       no_change,
       start_clash,
       Focus::kPortList,
       0},
      {"protocols in another case",
       {Row("Ftp", "21", "21"), Row("Web", "21", "21", "tcp")},
       no_change,
       start_clash,
       Focus::kPortList,
       0},
      {"neighbours", {Row("Ftp", "1", "9"), Row("Web", "10", "19")}, no_change, {}},
      {"within",
       {Row("Ftp", "1", "9"), Row("Web", "5", "6")},
       no_change,
       start_clash,
       Focus::kPortList,
       0},
      {"backward row that ends in another",
       {Row("Ftp", "50", "5"), Row("Web", "4", "6")},
       no_change,
       end_clash,
       Focus::kPortList,
       0},
      {"backward row around another's end",
       {Row("Ftp", "50", "5"), Row("Web", "9", "7")},
       no_change,
       end_clash,
       Focus::kPortList,
       0},
      {"names that look like place holders",
       {Row("%1%3", "1", "1"), Row("%2", "2", "2")},
       no_change,
       {}},
  };
  const Translator english{QString()};
  for (const auto& row : rows) {
    RouterSession session = Session();
    row.change(session);
    const UpdateVerdict verdict = CheckUpdate(row.entries, session, english);
    EXPECT_EQ(verdict.message, row.message) << row.fault << ": " << qPrintable(verdict.message);
    EXPECT_EQ(verdict.accepted, row.message.isEmpty()) << row.fault;
    EXPECT_EQ(verdict.focus, row.focus) << row.fault;
    EXPECT_EQ(verdict.row, row.row) << row.fault;
  }
}

// Every pair in order, as plainly as it can be said.
std::optional<PortConflict> FirstOfAllPairs(const QList<PortEntry>& entries) {
  const QString both = U("tcp/udp");
  for (int i = 0; i < entries.size(); ++i) {
    for (int j = 0; j < entries.size(); ++j) {
      const PortEntry &a = entries[i], &b = entries[j];
      const int s1 = a.start_port.toInt(), e1 = a.end_port.toInt();
      const int s2 = b.start_port.toInt(), e2 = b.end_port.toInt();
      const QString t1 = a.protocol.toLower(), t2 = b.protocol.toLower();
      if (i == j) {
        continue;
      }
      if (a.app_name.toLower() == b.app_name.toLower()) {
        return PortConflict{PortConflict::kSameName, i, j};
      }
      if (t1 != t2 && t1 != both && t2 != both) {
        continue;
      }
      if ((s1 >= s2 && s1 <= e2) || (s2 >= s1 && s2 <= e1)) {
        return PortConflict{PortConflict::kSameStart, i, j};
      }
      if ((e1 >= s2 && e1 <= e2) || (e2 >= e1 && e2 <= s1)) {
        return PortConflict{PortConflict::kSameEnd, i, j};
      }
    }
  }
  return std::nullopt;
}

TEST(PortConflicts, FindsThePairThatTheLoopOverAllPairsFinds) {
  QRandomGenerator random(20260101);
  const QStringList protocols = {U("TCP"), U("udp"), U("UDP"), U("TCP/UDP"), U("other")};
  int clean = 0;
  for (int round = 0; round < 20'000; ++round) {
    QList<PortEntry> entries;
    const int rows = random.bounded(2, 9);
    const int ports = random.bounded(2, 60);
    for (int row = 0; row < rows; ++row) {
      const int start = random.bounded(ports);
      const int end = start + random.bounded(-4, 4);
      QString name = QStringLiteral("a%1").arg(random.bounded(60));
      entries.append(Row(random.bounded(2) ? name : name.toUpper(), QString::number(start),
                         QString::number(end), protocols[random.bounded(5)]));
    }
    const PortConflicts conflicts(entries);
    std::optional<PortConflict> first;
    for (int row = 0; row < rows && !first; ++row) {
      first = conflicts.FirstOf(row);
    }
    ASSERT_EQ(first, FirstOfAllPairs(entries)) << "round " << round;
    clean += first ? 0 : 1;
  }
  EXPECT_GT(clean, 2000) << "too few lists without a conflict to prove anything";
  EXPECT_LT(clean, 18'000);
}

TEST(CheckUpdate, AListOfEveryPortIsCheckedAtOnce) {
  QList<PortEntry> entries;
  for (int port = 1; port <= 65535; ++port) {
    const QString text = QString::number(port);
    entries.append(Row(text, text, text, U("TCP/UDP")));
  }
  const Translator english{QString()};
  const qint64 begun = testing::WorkedMs();
  EXPECT_TRUE(CheckUpdate(entries, Session(), english).accepted);
  entries.last().end_port = U("65534");
  EXPECT_EQ(CheckUpdate(entries, Session(), english).row, 65533);
  EXPECT_LT(testing::WorkedMs() - begun, 2000);
}

}  // namespace
}  // namespace quayline
