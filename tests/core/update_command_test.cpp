// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/update_command.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/port_conflicts.h"
#include "core/port_rows.h"
#include "test_main.h"

namespace quayline {
namespace {

using testing::PortRows;

QString U(const char* text) { return QString::fromUtf8(text); }

TEST(ClampPorts, MovesPortsIntoTheLimitsAndNamesTheRowsThatChanged) {
  const struct {
    const char* fault;
    const char *min, *max;
    const char *before, *after;
  } rows[] = {
      {"inside", "1", "65535", "a 1..65535; b +21..021", "a 1..65535; b +21..021"},
      {"a range below shrinks to a port", "1024", "65535", "a 20..21", "a 1024..1024"},
      {"one end only", "1024", "2000", "a 1500..3000; b 20..1100", "a 1500..2000; b 1024..1100"},
      {"no limits in the router's row", "", "", "a 20..21", "a 0..0"},
      {"limits the wrong way round", "2000", "1000", "a 1500..5", "a 1000..1000"},
      {"not a number stands for the row before", "10", "90", "a x..50; b y..99; c 20..z",
       "a 10..50; b y..90; c 20..z"},
      {"beyond 32 bits is not a number", "1", "90", "a 5..99999999999", "a 5..1"},
  };
  for (const auto& row : rows) {
    const QList<PortEntry> before = PortRows(row.before);
    const QList<PortEntry> after = PortRows(row.after);
    QList<int> changed;
    for (int i = 0; i < before.size(); ++i) {
      if (before[i] != after[i]) {
        changed.append(i);
      }
    }
    QList<PortEntry> entries = before;
    const RouterSession session{.router_id = 1, .min_port = U(row.min), .max_port = U(row.max)};
    EXPECT_EQ(ClampPorts(entries, session), changed) << row.fault;
    EXPECT_EQ(entries, after) << row.fault;
  }
}

const RouterSession kHarbour{.router_name = U("Harbour"),
                             .router_ip = U("10.0.0.1"),
                             .max_range = U("100"),
                             .min_port = U("1"),
                             .max_port = U("65535"),
                             .update_script = {U("nav(\"rules\")")}};

TEST(CheckUpdate, TheFirstFailingCheckSpeaks) {
  using S = RouterSession;
  const auto with = [](QString S::* member, const char* text, S session = kHarbour) {
    session.*member = U(text);
    return session;
  };
  RouterSession no_script = kHarbour;
  no_script.update_script = {};
  RouterSession blank_script = kHarbour;
  blank_script.update_script = {U(" "), U("")};
  const auto nothing_to_run =
      U("There is no script for this router, so that nothing can be sent to it. Please choose "
        "another router, or write a script for this one.");
  const char* const one = "Ftp 21..21";
  const char* const two = "Ftp 21..21; Web 80..80";
  const auto clash =
      U("'Ftp' Conflicts With 'Web\n' Same %1 port in its range.\n"
        "You can not have a port forwarded more than once.");
  const auto start_clash = clash.arg(U("start"));
  const auto end_clash = clash.arg(U("end"));
  const auto same_name =
      U("The App Name 'Ftp' is used by more than one entry. Please give each "
        "entry a name of its own.");
  const auto too_many =
      U("Your router can hold %1 entries.\nYour list has %2 entries.\n"
        "Please remove some entries from the list.");
  const auto too_long =
      U("On this router the End Port of an entry can be at most %1 higher than "
        "its Start Port.\n\nIt is %2 higher in the entry Ftp");
  const struct {
    const char* fault;
    const char* entries;
    S session = kHarbour;
    QString message = {};
    int row = -1;  // the selected row
    UpdateFocus focus = UpdateFocus::kNone;
  } rows[] = {
      {"a good list", two},
      {"limit reached", two, with(&S::max_entries, "2")},
      {"limit passed", two, with(&S::max_entries, "1"), too_many.arg(U("1"), U("2"))},
      {"a limit of 0 is one", one, with(&S::max_entries, "0"), too_many.arg(U("0"), U("1"))},
      {"a limit that is no number", one, with(&S::max_entries, "?"), too_many.arg(U("?"), U("1"))},
      {"limit ahead of the router", two, with(&S::max_entries, "1", with(&S::router_name, "")),
       too_many.arg(U("1"), U("2"))},
      {"no router, ahead of the address", one,
       with(&S::router_ip, "0.0.0.0", with(&S::router_name, "")), U("Please Choose A Router."), -1,
       UpdateFocus::kRouter},
      {"no address, ahead of the empty list", "", with(&S::router_ip, "0.0.0.0"),
       U("Please Set Router IP."), -1, UpdateFocus::kRouterIp},
      {"an empty address passes", one, with(&S::router_ip, "")},
      {"empty list", "", kHarbour, U("You must have at least 1 port to forward.")},
      {"longest range", "Ftp 100..200"},
      {"too long a range", "Ftp 100..201", kHarbour, too_long.arg(U("100"), U("101"))},
      {"no longest range known", "Ftp 1..2", with(&S::max_range, ""), too_long.arg(U("0"), U("1"))},
      {"a range of the second row behind a clash of the first", "Ftp 1..1; ftp 1..900", kHarbour,
       same_name, 0},
      {"names ahead of ports", "Ftp 1..1; FTP 1..1", kHarbour, same_name, 0},
      {"ports of an earlier pair ahead of names", "Ftp 1..1; Web 1..1; FTP 5..5", kHarbour,
       start_clash, 0},
      {"the clash of a later row", "x 1..1; Ftp 5..9; Web 9..9", kHarbour, start_clash, 1},
      {"protocols that differ", "Ftp 21..21; Web 21..21 UDP"},
      {"one of both protocols", "Ftp 21..21; Web 21..21 TCP/UDP", kHarbour, start_clash, 0},
      {"protocols in another case", "Ftp 21..21; Web 21..21 tcp", kHarbour, start_clash, 0},
      {"neighbours", "Ftp 1..9; Web 10..19"},
      {"within", "Ftp 1..9; Web 5..6", kHarbour, start_clash, 0},
      {"backward row that ends in another", "Ftp 50..5; Web 4..6", kHarbour, end_clash, 0},
      {"backward row around another's end", "Ftp 50..5; Web 9..7", kHarbour, end_clash, 0},
      {"no script, after all else", "Ftp 1..1; FTP 1..1", no_script, same_name, 0},
      {"no script", one, no_script, nothing_to_run, -1, UpdateFocus::kRouter},
      {"a script of blank lines", one, blank_script, nothing_to_run, -1, UpdateFocus::kRouter},
      {"names that look like place holders", "%1%3 1..1; %2 2..2"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    const UpdateVerdict verdict =
        CheckUpdate(PortRows(row.entries), row.session, Translator(QString()));
    EXPECT_EQ(verdict.message, row.message);
    EXPECT_EQ(verdict.accepted, row.message.isEmpty());
    EXPECT_EQ(verdict.focus, row.row < 0 ? row.focus : UpdateFocus::kPortList);
    EXPECT_EQ(verdict.row, row.row);
  }
}

// The reference: compares every pair in order.
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
      const QString name = QStringLiteral("a%1").arg(random.bounded(60));
      entries.append({.app_name = random.bounded(2) ? name : name.toUpper(),
                      .start_port = QString::number(start),
                      .end_port = QString::number(end),
                      .protocol = protocols[random.bounded(5)]});
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
    entries.append(
        {.app_name = text, .start_port = text, .end_port = text, .protocol = U("TCP/UDP")});
  }
  const Translator english{QString()};
  EXPECT_TRUE(CheckUpdate(entries, kHarbour, english).accepted);
  entries.last().end_port = U("65534");
  EXPECT_EQ(CheckUpdate(entries, kHarbour, english).row, 65533);
}

}  // namespace
}  // namespace quayline
