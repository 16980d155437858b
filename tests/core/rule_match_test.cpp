// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/rule_match.h"

#include <gtest/gtest.h>

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

// "A | B" is a row of cells; "[x]" and "[ ]" are check boxes.
QStringList Cells(const QString& row) {
  QStringList cells = row.split(u'|');
  for (QString& cell : cells) {
    cell = cell.trimmed();
  }
  return cells;
}

// The first line holds the headings; an empty one: there are none.
PageRows Page(const char* text) {
  QStringList lines = QString::fromUtf8(text).split(u'\n');
  const QStringList headings = lines.first().isEmpty() ? QStringList() : Cells(lines.first());
  PageRows page{.rows = {}, .headings = {headings}, .is_partial = false};
  for (const QString& line : lines.sliced(1)) {
    PageRow row;
    for (const QString& cell : Cells(line)) {
      const QString heading = headings.value(row.cells.size());
      if (cell.startsWith(u'[')) {
        row.cells.append({heading, {}, cell == u"[x]"_s});
      } else {
        row.cells.append({heading, cell, std::nullopt});
      }
    }
    page.rows.append(row);
  }
  return page;
}

PortEntry Entry(const char* name, const char* start, const char* end, const char* protocol) {
  return {.app_name = QString::fromUtf8(name),
          .forwarded_to = u"192.168.1.5(Desk)"_s,
          .start_port = QLatin1String(start),
          .end_port = QLatin1String(end),
          .protocol = QLatin1String(protocol),
          .description = {}};
}

// "on", "missing", "unknown", or "different" and the fields.
QString Words(const RuleVerdict& verdict) {
  static const char* const states[] = {"on", "different", "missing", "unknown"};
  static const char* const fields[] = {"port", "address", "protocol", "disabled"};
  QString words = QLatin1String(states[static_cast<int>(verdict.state)]);
  for (const RuleField field : verdict.differs) {
    words += u' ' + QLatin1String(fields[static_cast<int>(field)]);
  }
  return words;
}

const PortEntry kWeb = Entry("Web", "80", "80", "TCP");
const PortEntry kGame = Entry("GameServer", "6000", "6010", "TCP/UDP");

TEST(RuleMatch, FindsARuleHoweverThePageWritesIt) {
  const struct {
    PortEntry entry;
    const char* page;
  } rows[] = {
      {kWeb, "Name | Port | IP Address | Protocol\nWeb | 80 | 192.168.1.5 | TCP"},
      {kWeb, "Name | Ports | To | Type\nweb | 80-80 | 192.168.1.5 | tcp"},
      {kWeb, "Name | Ports | IP | Protocol\nWeb | 80:80 | 5 | 6"},
      {kWeb, "\nWeb | 80~80 | 192.168.1.5 | TCP"},
      {kWeb, "\nWeb | 80 | 192.168.1.5 | TCP | Edit | Delete"},
      {kWeb, "# | External Port | Internal Port | Device\n80 | 80 | 80 | 192.168.1.5"},
      {kWeb, "# | External Port | Internal Port | Device\n80 | 80 | | 192.168.1.5"},
      {kGame, "External Port | Internal Port | Device\n6000-6010 | 6000 | 192.168.1.5"},
      {kGame,
       "Name | Port | Local Start Port | Local End Port\nGameServer | 6000-6010 | 6000 | 6010"},
      {kWeb, "Start Port | End Port | Server IP | Enable\n80 | | 192.168.1.5 | [x]"},
      {kWeb, "From Port | To Port | Forward to\n80 | 80 | 192.168.1. 5"},
      {kWeb, "Application | Start | End | IP Address\nWeb | 80 to | 80 | 192.168.1. 5"},
      {kWeb, "Name | Local IP | TCP Port | UDP Port\nWeb | 192.168.1.5 | 80-80 | N/A"},
      {kWeb, "A | B | C | D\nName Web | TCP 80 | UDP 0 | IP Address 192.168.1.5"},
      {kGame, "Name | Local IP | TCP Port | UDP Port\nX | 192.168.1.5 | 6000-6010 | 6000-6010"},
      {kGame, "Application | Start | End | IP Address\nX | 6000 to | 6010 | 192.168.1. 5"},
      {kWeb, "Name | Port | Status\nWeb | 80 | Enabled"},
      {kWeb, "Port | IP address | TCP | UDP\n80 | 192.168.1.5 | [x] | [ ]"},
      {kWeb, "\nWeb TCP 80 -> 192.168.1.5"},
      {kWeb, "Application | Port range | Remote host | IP\nother | 80-80 | 0.0.0.0 | 192.168.1.5"},
      {kGame, "Name | Port | IP | Protocol\nGameServ | 6000-6010 | 192.168.1.5 | Both"},
      {kGame, "Name | Port | Protocol\nGame Server | 6000 - 6010 | TCP/UDP"},
      {kGame, "\nGameServer | 6000 | 6010 | ALL TCPUDP | 192.168.1.5"},
      {kGame,
       "Name | Port | IP | Protocol\nGameServer | 6000-6010 | 192.168.1.5 | TCP\n"
       "GameServer | 6000-6010 | 192.168.1.5 | UDP"},
      {kWeb, "Name | Port | Device\nWeb | 80 | Desk"},
      {kWeb, "Port | Forward to | Protocol\n80 | DESK | TCP"},
      {kWeb, "Name | Ports | IP\nWeb | 80,443 | 192.168.1.5"},
      {kWeb, "Name | Port | IP\nWeb | 80 -> 80 | 192.168.1.5"},
      {kWeb, "\nWeb TCP 80 -> 192.168.1.5:80"},
      {kWeb, "Name | Port | IP | NAT reflection\nWeb | 80 | 192.168.1.5 | Disabled"},
      {kWeb, "Name | Port | IP | UPnP\nWeb | 80 | 192.168.1.5 | Off"},
      {Entry("Voice TCP/UDP", "80", "80", "TCP"),
       "Name | Port | Protocol\nVoice TCP/UDP | 80 | TCP"},
      {Entry("Voice TCP", "80", "80", "TCP"), "Name | Port | IP\nVoice TCP | 80 | 192.168.1.5"},
      {kWeb, "Name | Port | Remote IP | Device\nx | 80 | 84.23.1.9 | Desk"},
      {kWeb, "Port | Source | WAN IP address | Device\n80 | 10.1.1.1 | 84.23.1.9 | Desk"},
      {kWeb, "\nPort: 80 | Address: 192.168.1.5 | Protocol: TCP"},
      {kWeb, "\nName: Web | Port: 80 (TCP)"},
      {kWeb, "\n1 | Web | 80 | 80 | 192.168.1.5 | TCP"},
      {kWeb,
       "Bezeichnung | Externer Port | Interner Port | Gerät | Aktiv\nx | 80 | 80 | Desk | [x]"},
      {kWeb, "Nom | Port externe | Adresse IP | Protocole\nWeb | 80 | 192.168.1.5 | TCP"},
      {kWeb, "Nombre | Puerto inicial | Puerto final | Dirección IP\nx | 80 | 80 | 192.168.1.5"},
      {kWeb,
       "序号 | 外部端口 | 内部端口 | IP地址 | 协议 | 状态\n80 | 80 | 80 | 192.168.1.5 | TCP | "
       "启用"},
      {kGame, "Dienst | Ports | Adresse | Protokoll\nx | 6000-6010 | 192.168.1.5 | Beide"},
      {Entry("My Web!", "80", "80", "TCP"), "Name | Port | IP\nMyWeb | 80 | 192.168.1.5"},
      {Entry("80", "80", "80", "TCP"), "Name | Port | IP\n80 | 80 | 192.168.1.5"},
  };
  for (const auto& row : rows) {
    const RuleVerdict verdict = MatchRules({row.entry}, Page(row.page)).first();
    EXPECT_EQ(Words(verdict), u"on"_s) << row.page;
    EXPECT_FALSE(verdict.seen.isEmpty());
  }
}

TEST(RuleMatch, NamesWhatIsNotAsWanted) {
  const struct {
    PortEntry entry;
    const char* page;
    const char* verdict;
  } rows[] = {
      {kWeb, "Name | Port | IP | Protocol\nWeb | 81 | 192.168.1.5 | TCP", "different port"},
      {kWeb, "Name | Port | IP | Protocol\nWeb | 80 | 192.168.1.6 | TCP", "different address"},
      {kWeb, "Name | Port | IP | Protocol\nWeb | 80 | 6 | TCP", "different address"},
      {kWeb, "Name | Match | Port | Action\nWeb | TCP | 80 | Forward to 192.168.1.6 port 80",
       "different address"},
      {kWeb, "Name | Port | IP | Protocol\nWeb | 80 | 192.168.1.5 | UDP", "different protocol"},
      {kWeb, "Name | Port | IP | Protocol\nWeb | 80 | 192.168.1.5 | Both", "different protocol"},
      {kWeb, "Enable | Name | Port | IP\n[ ] | Web | 80 | 192.168.1.5", "different disabled"},
      {kWeb, "\nWeb | 80-80 | 192.168.1.5 | TCP | disabled", "different disabled"},
      {kWeb, "Name | Port | IP | Active\nWeb | 81 | 192.168.1.6 | no",
       "different port address disabled"},
      {kWeb, "Port | IP\n80 | 192.168.1.6", "different address"},
      {kWeb, "Name | IP | TCP Port | UDP Port\nWeb | 192.168.1.5 | N/A | 80", "different protocol"},
      {kGame, "Name | Port | IP | Protocol\nGameServer | 6000-6010 | 192.168.1.5 | TCP",
       "different protocol"},
      {kWeb, "Name | Port | Device\nWeb | 81 | Laptop", "different port"},
      {kWeb, "\nWeb | 443 | 192.168.1.5:80 | TCP", "different port"},
      {kWeb, "Name | ext port | int port | IP\nWeb | 80 | 8080 | 192.168.1.5", "different port"},
      {kWeb, "External Port | Internal Port | Device\n80 | 8080 | 192.168.1.5", "different port"},
      {kWeb, "Name | Port | IP\nWeb | 80 -> 8080 | 192.168.1.5", "different port"},
      {kWeb, "\nWeb TCP 80 -> 192.168.1.5:8080", "different port"},
      {kWeb, "Bezeichnung | Externer Port | Interner Port | Gerät\nWeb | 80 | 81 | Desk",
       "different port"},
      {kWeb, "外部端口 | 内部端口 | IP地址 | 协议\n80 | 81 | 192.168.1.5 | TCP", "different port"},
      {kWeb, "Name | Port | IP | NAT reflection | Enabled\nWeb | 80 | 192.168.1.5 | Off | Off",
       "different disabled"},
      {kWeb, "Name | External port | IP\nWeb | 8080 -> 80 | 192.168.1.5", "different port"},
      {kWeb, "Name | Port | IP\nWeb | 80 | fd00::5", "different address"},
      {kWeb, "Nom | Port | IP | État\nWeb | 80 | 192.168.1.5 | Désactivé", "different disabled"},
      {kWeb, "名称 | 端口 | 地址 | 状态\nWeb | 80 | 192.168.1.5 | 禁用", "different disabled"},
      {kGame, "Name | Start Port | End Port | IP\nGameServer | 6000 | 6000 | 192.168.1.5",
       "different port"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Words(MatchRules({row.entry}, Page(row.page)).first()), QLatin1String(row.verdict))
        << row.page;
  }
}

TEST(RuleMatch, TakesNothingElseForTheRule) {
  const struct {
    const char* page;
    const char* verdict;
  } rows[] = {
      {"Protocol | Destination\nTCP | Firewall ->192.168.1.5: 80", "on"},
      {"Protocol | Destination\nTCP | Firewall ->192.168.1.5: 81", "missing"},
      {"Protocol | Destination\nTCP | 192.168.1.5 (80 MB)", "unknown"},
      {"Name | Port | IP | Protocol\nFTP | 21 | 192.168.1.5 | TCP", "missing"},
      {"Name | Port | IP | Protocol\nOther | 80 | 192.168.1.9 | TCP", "missing"},
      {"Name | Port | IP | Protocol\nOther | 80 | 192.168.1.5 | UDP", "missing"},
      {"Name | Port | IP | Protocol", "missing"},
      {"Name | Start Port | End Port | IP\nWebcam | 8000 | 8080 | 192.168.1.5", "missing"},
      {"# | Name | Port | IP\n80 | Mail | 25 | 192.168.1.5", "missing"},
      {"Port | IP\n8080 | 192.168.1.80", "missing"},
      {"Name | Port | IP\nOther | 443 | 192.168.1.5:80", "missing"},
      {"Name | Ports | IP\nOther | 443,8443 | 192.168.1.5", "missing"},
      {"Name | Port | Action | IP\nWeb | 80 | Allow | 192.168.1.5", "unknown"},
      {"Name | Trigger Port | Open Port | Protocol\nWeb | 80 | 80 | TCP", "unknown"},
      {"Name | Service | IP | Protocol\nx | HTTP | 192.168.1.5 | TCP", "unknown"},
      {"Name | Port | IP | Protocol\nWeb | HTTP | 192.168.1.5 | TCP", "unknown"},
      {"Name | Port | IP | Protocol\nMail | SMTP | 192.168.1.9 | TCP", "missing"},
      {"Name | Port | Device\nWeb | 80 | Laptop", "unknown"},
      {"Port | Device | Protocol\n80 | Laptop | TCP", "unknown"},
      {"Name | Port | IP\nx | 80 | fd00::5", "missing"},
      {"\nWeb | 80 | 8080 | 192.168.1.5 | TCP", "unknown"},
      {"\nHTTP server | 8080 | 192.168.1.5 | TCP", "missing"},
      {"\nSSH\nDNS\nTelnet", "unknown"},
      {"X | Y | Z\n80 | 192.168.1.5 | 1", "unknown"},
      {"", "unknown"},
      {"\n80", "unknown"},
      {"\nWeb | Mail | Game", "unknown"},
      {"\n192.168.1.5 | 80", "unknown"},
      {"Host | IP | MAC | Lease time\nDesk | 192.168.1.5 | 00:50:80:22:33:80 | 80", "unknown"},
      {"Time | Message\n12:30:05 | 192.168.1.5 opened port 80", "unknown"},
      {"Firmware | Uptime\n80.1 | 80 days", "unknown"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Words(MatchRules({kWeb}, Page(row.page)).first()), QLatin1String(row.verdict))
        << row.page;
  }
  PageRows partial = Page("Name | Port | IP\nFTP | 21 | 192.168.1.5");
  partial.is_partial = true;
  EXPECT_EQ(Words(MatchRules({kWeb}, partial).first()), u"unknown"_s);
  // The page shows rules somewhere, and a row of which not all can be read.
  const struct {
    const char* row;
    const char* verdict;
  } beside[] = {
      {"\n0 | 192.168.1.5 | 80 | 80", "unknown"}, {"\n0 | 192.168.1.9 | 80 | 80", "missing"},
      {"\n0 | 192.168.1.5 | 81 | 81", "missing"}, {"\nWeb | 192.168.1.5", "unknown"},
      {"\nWeb | 192.168.1.9", "missing"},
  };
  for (const auto& row : beside) {
    PageRows page = Page(row.row);
    page.headings.append(QStringList{u"IP"_s, u"Port"_s});
    EXPECT_EQ(Words(MatchRules({kWeb}, page).first()), QLatin1String(row.verdict)) << row.row;
  }
}

TEST(RuleMatch, BoxesForANewRuleAndOtherTablesShowNoRule) {
  PageRows page = Page("Name | Port | IP | Protocol\nWeb | 80 | 192.168.1.5 | TCP");
  page.rows[0].is_form = true;
  page.headings.clear();
  EXPECT_EQ(Words(MatchRules({kWeb}, page).first()), u"unknown"_s);
  page.rows.append(Page("Name | Port | IP\nFTP | 21 | 192.168.1.5").rows);
  EXPECT_EQ(Words(MatchRules({kWeb}, page).first()), u"missing"_s);
  const struct {
    const char* title;
    const char* verdict;
  } rows[] = {{"Port Triggering", "unknown"},
              {"Firewall rules", "unknown"},
              {"Firewall: Port Forwarding", "on"},
              {"Portweiterleitung (Filter)", "on"},
              {"", "on"}};
  for (const auto& row : rows) {
    page = Page("Name | Port | IP | Protocol\nWeb | 80 | 192.168.1.5 | TCP");
    page.headings.clear();
    page.rows[0].title = QLatin1String(row.title);
    EXPECT_EQ(Words(MatchRules({kWeb}, page).first()), QLatin1String(row.verdict)) << row.title;
  }
}

TEST(RuleMatch, ANameThatIsCutShortCountsByItsLength) {
  const struct {
    const char* name;
    const char* verdict;
  } rows[] = {{"GameServe", "on"}, {"GameSe", "on"}, {"Game", "unknown"}, {"Ga", "missing"}};
  for (const auto& row : rows) {
    const QString page =
        u"Name | Port | Protocol\n%1 | 6000-6010 | Both"_s.arg(QLatin1String(row.name));
    EXPECT_EQ(Words(MatchRules({kGame}, Page(page.toUtf8().constData())).first()),
              QLatin1String(row.verdict))
        << row.name;
  }
}

TEST(RuleMatch, NamesTheRowsThatAreTheRule) {
  const PageRows page = Page(
      "Name | Port | IP | Protocol\nGameServer | 6000-6010 | 192.168.1.5 | TCP\n"
      "Web | 80 | 192.168.1.5 | TCP\nGameServer | 6000-6010 | 192.168.1.5 | UDP");
  EXPECT_EQ(MatchRules({kGame}, page).first().rows, (QList<qsizetype>{0, 2}));
  PageRows part = page;
  part.rows.removeFirst();
  EXPECT_EQ(Words(MatchRules({kGame}, part).first()), u"different protocol"_s);
  EXPECT_EQ(MatchRules({kGame}, part).first().rows, QList<qsizetype>{1});
  const PageRows like = Page("Name | Port | IP\nWebcam | 80 | 192.168.1.5\nWeb | 80 | 192.168.1.5");
  EXPECT_EQ(MatchRules({kWeb}, like).first().rows, QList<qsizetype>{1});
}

TEST(RuleMatch, ARowThatIsOneEntryIsNoFaultyFormOfAnother) {
  const QList<RuleVerdict> verdicts =
      MatchRules({Entry("DNS", "53", "53", "TCP"), Entry("DNS2", "53", "53", "UDP")},
                 Page("Port | IP | Protocol\n53 | 192.168.1.5 | TCP"));
  EXPECT_EQ(Words(verdicts.at(0)), u"on"_s);
  EXPECT_EQ(Words(verdicts.at(1)), u"missing"_s);
  EXPECT_EQ(verdicts.at(1).seen, u"53 | 192.168.1.5 | TCP"_s);
}

}  // namespace
}  // namespace quayline
