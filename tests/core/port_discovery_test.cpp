// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/port_discovery.h"

#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/files.h"
#include "platform/linux/wine_settings.h"
#include "test_main.h"

namespace quayline {
namespace {

using testing::WriteBytes;

constexpr char kUserHive[] =
    "WINE REGISTRY Version 2\n;; All keys relative to "
    "\\\\User\\\\S-1-5-21-0-0-0-1000\n\n#arch=win32\n\n"
    "[Software\\\\Ares] 1700000000\n#time=1da1a2b3c4d5e6f\n\"Stats.LstConnect\"=dword:6553f100\n"
    "\"Transfer.ServerPort\"=dword:0000bc44\n\n"
    "[Software\\\\BitComet] 1700000001\n@=\"C:\\\\Program Files\\\\BitComet\"\n\n"
    "[Software\\\\BitLord] 1700000002\n@=\"C:\\\\Program Files\\\\BitLord\\\\\"\n\n"
    "[Software\\\\Classes\\\\dchub\\\\Shell\\\\Open\\\\Command] 1700000003\n"
    "@=\"\\\"C:\\\\Program Files\\\\StrongDC++\\\\StrongDC.exe\\\" %1\"\n\n"
    "[Software\\\\eMule] 1700000004\n\"Install Path\"=\"C:\\\\Program Files\\\\eMule\"\n\n"
    "[Software\\\\Shareaza\\\\Shareaza\\\\Connection] 1700000005\n\"InPort\"=dword:00001c2d\n\n"
    "[Software\\\\Vibe Streamer] 1700000006\n\"InstallPath\"=\"C:\\\\Program Files\\\\Vibe "
    "Streamer\"\n";

constexpr char kMachineHive[] =
    "WINE REGISTRY Version 2\n;; All keys relative to \\\\Machine\n\n#arch=win32\n\n"
    "[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\Uninstall\\\\DreaMule_is1] 1700000000\n"
    "\"Inno Setup: App Path\"=\"C:\\\\Program Files\\\\DreaMule\"\n";

constexpr char kMule[] =
    "[Statistics]\r\nPort=1\r\n[eMule]\r\nAppVersion=0.50a\r\nServerUDPPort=65535\r\nPort=4662\r\n"
    "UDPPort=4672\r\n[WebServer]\r\nPort=4711\r\n";
constexpr char kDirectConnect[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\" "
    "standalone=\"yes\"?>\r\n<DCPlusPlus>\r\n\t<Settings>\r\n"
    "\t\t<Nick type=\"string\">anna</Nick>\r\n\t\t<InPort type=\"int\">3412</InPort>\r\n"
    "\t\t<UDPPort type=\"int\">3413</UDPPort>\r\n\t\t<TLSPort type=\"int\">3414</TLSPort>\r\n";
constexpr char kAzureus[] =
    "d24:TCP.Listen.Port.Override0:22:TCP.Listen.Port.Enablei1e15:TCP.Listen.Porti49160e"
    "15:UDP.Listen.Porti49161ee";

#define APP_DATA "drive_c/users/anna/AppData/Roaming/"
#define PROGRAMS "drive_c/Program Files/"
#define VIRTUAL_STORE "drive_c/users/anna/AppData/Local/VirtualStore/Program Files/"

// A home folder with a Wine prefix in it.
class PortDiscovery : public ::testing::Test {
 protected:
  // Begins with nothing but the hives and the empty folders of the user.
  void MakePrefix() {
    folder_ = std::make_unique<QTemporaryDir>();
    QDir(folder_->path()).mkpath(QStringLiteral(APP_DATA));
    Add("user.reg", kUserHive);
    Add("system.reg", kMachineHive);
  }
  QString Path(const char* below) const { return folder_->filePath(QString::fromUtf8(below)); }
  void Add(const char* below, const QByteArray& bytes) const {
    QDir().mkpath(QFileInfo(Path(below)).path());
    ASSERT_TRUE(WriteBytes(Path(below), bytes));
  }
  WineSettings Settings() const { return {folder_->path(), Path("home")}; }
  DiscoveredPorts Discover(const char* program) const {
    return DiscoverPorts(QString::fromLatin1(program), Settings());
  }

  std::unique_ptr<QTemporaryDir> folder_;
};

QString Lists(const DiscoveredPorts& found) {
  EXPECT_EQ(found.ports.tcpudpports, QString());
  return found.ports.tcpportsonly + QLatin1Char(' ') + found.ports.udpportsonly;
}

TEST_F(PortDiscovery, EachProgramsSettingsGiveItsPorts) {
  const struct {
    const char* program;
    const char* file;  // null: the registry is enough
    QByteArray bytes;
    const char* lists;  // TCP, a blank, UDP
    const char* short_name;
  } rows[] = {
      {"Ares", nullptr, {}, "48196-48196| ", "Ares"},
      {"Azureus Vuze", APP_DATA "Azureus/azureus.config", kAzureus, "49160-49160| 49161-49161|",
       "Azureus"},
      {"Azureus Vuze", "home/.azureus/azureus.config", kAzureus, "49160-49160| 49161-49161|",
       "Azureus"},
      {"BitComet", PROGRAMS "BitComet/BitComet.xml",
       "<BitComet>\r\n<Settings>\r\n<ListenPort>17890</ListenPort>\r\n<ListenPort>2</ListenPort>",
       "17890-17890| ", "BitComet"},
      {"BitLord", PROGRAMS "BitLord/BitLord.xml",
       "\xef\xbb\xbf<a><ListenPort> 08517\n</ListenPort>", "8517-8517| ", "BitLord"},
      {"BitTornado", APP_DATA ".BitTornado/config.gui.ini",
       "maxport = 60000\r\nmax_uploads = 7\r\nminport = 10000\r\n", "10000-60000| ", "BitTornado"},
      {"BitTornado", "home/.BitTornado/config.gui.ini", "minport = 10000\nmaxport = 10000",
       "10000-10000| ", "BitTornado"},
      {"BitTorrent", APP_DATA "bittorrent/Settings.dat", "d9:bind_porti6881e3:abcle", "6881-6881| ",
       "BitTorrent"},
      {"DreaMule", PROGRAMS "DreaMule/config/preferences.ini", kMule, "4662-4662| 4672-4672|",
       "DreaMule"},
      {"Emule (Shared)", PROGRAMS "eMule/config/preferences.ini", kMule, "4662-4662| 4672-4672|",
       "Emule"},
      {"Emule (Shared)", VIRTUAL_STORE "eMule/config/preferences.ini", kMule,
       "4662-4662| 4672-4672|", "Emule"},
      {"Emule (User Specific)", APP_DATA "eMule/config/preferences.ini", kMule,
       "4662-4662| 4672-4672|", "Emule"},
      {"LimeWire", APP_DATA "LimeWire/limewire.props",
       "#LimeWire properties file\r\nCLIENT_ID=0A\r\nPORT=14217\r\nPORT=2\r\n", "14217-14217| ",
       "LimeWire"},
      {"LimeWire", "home/.limewire/limewire.props", "FORCED_PORT=14217\nPORT=2", "14217-14217| ",
       "LimeWire"},
      {"Shareaza", nullptr, {}, "7213-7213| ", "Shareaza"},
      {"StrongDC++", PROGRAMS "StrongDC++/Settings/DCPlusPlus.xml", kDirectConnect,
       "3412-3412|3414-3414| 3413-3413|", "StrongDC++"},
      {"utorrent", APP_DATA "uTorrent/settings.dat", "d9:bind_porti65535e", "65535-65535| ",
       "uTorrent"},
      {"Vibe Streamer", PROGRAMS "Vibe Streamer/conf/server.xml",
       "<config><serverPort>8081</serverPort></config>", "8081-8081| ", "Vibe"},
  };
  QStringList tried;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file != nullptr ? row.file : row.program);
    MakePrefix();
    if (row.file != nullptr) {
      EXPECT_EQ(Lists(Discover(row.program)), QStringLiteral(" ")) << "before there is a file";
      Add(row.file, row.bytes);
    }
    const DiscoveredPorts found = Discover(row.program);
    EXPECT_TRUE(found.IsComplete());
    EXPECT_EQ(Lists(found), QLatin1String(row.lists));
    EXPECT_EQ(found.ports.nameforrouter, QLatin1String(row.short_name));
    if (row.file != nullptr) {
      EXPECT_EQ(found.source, Path(row.file));
    }
    tried += found.ports.appname;
  }
  tried.removeDuplicates();
  EXPECT_EQ(tried, DiscoverablePrograms());
}

TEST_F(PortDiscovery, WhatIsNoPortNeverBecomesOne) {
  struct Place {
    const char* program;
    const char* file;
  };
  const Place torrent = {"uTorrent", APP_DATA "uTorrent/settings.dat"};
  const Place azureus = {"Azureus Vuze", APP_DATA "Azureus/azureus.config"};
  const Place mule = {"Emule (User Specific)", APP_DATA "eMule/config/preferences.ini"};
  const Place tornado = {"BitTornado", APP_DATA ".BitTornado/config.gui.ini"};
  const struct {
    const char* fault;
    Place place;
    QByteArray bytes;
    const char* lists;
    const char16_t* refused;  // joined by "+"; null: the settings are complete
  } rows[] = {
      {"empty file", torrent, "", "-| ", u""},
      {"no marker", torrent, "d9:bind_portX1eee", "-| ", u""},
      {"port 0", torrent, "bind_porti0e", "-| ", u"0"},
      {"port 65536", torrent, "bind_porti65536e", "-| ", u"65536"},
      {"port 70000", torrent, "bind_porti70000e", "-| ", u"70000"},
      {"a sign", torrent, "bind_porti+6881e", "-| ", u"+6881"},
      {"a thousand digits", torrent, "bind_porti" + QByteArray(1000, '1') + "e", "-| ",
       u"11111111111111111111"},
      {"cut off by the file's end", torrent, "bind_porti688", "-| ", u""},
      {"binary all around", torrent,
       QByteArray(5000, '\0') + "\xff\xfe\xff"
                                "bind_porti6881e",
       "6881-6881| ", nullptr},
      {"the largest file", torrent, "bind_porti6881e" + QByteArray((4 << 20) - 15, 'x'),
       "6881-6881| ", nullptr},
      {"the UDP port is taken for the TCP port", azureus, "15:UDP.Listen.Porti49161ee",
       "-| 49161-49161|", u""},
      {"a key of another section", mule, "[eMule]\nUDPPort=4672\n[WebServer]\nPort=4711\n",
       "-| 4672-4672|", u""},
      {"nothing but lines", mule, QByteArray(100000, '\n'), "-| -|", u"+"},
      {"a range that ends before it starts", tornado, "minport = 10\nmaxport = 9\n", "-| ", u"9"},
      {"half a range", tornado, "minport = 0\nmaxport = 9\n", "-| ", u"0"},
  };
  MakePrefix();
  for (const auto& row : rows) {
    Add(row.place.file, row.bytes);
    const DiscoveredPorts found = Discover(row.place.program);
    EXPECT_EQ(found.outcome, DiscoveryOutcome::kRead) << row.fault;
    EXPECT_EQ(Lists(found), QLatin1String(row.lists)) << row.fault;
    EXPECT_EQ(found.IsComplete(), row.refused == nullptr) << row.fault;
    EXPECT_EQ(found.refused.join(QLatin1Char('+')), QString::fromUtf16(row.refused)) << row.fault;
  }
}

TEST_F(PortDiscovery, WhatCannotBeReadIsToldApart) {
  MakePrefix();
  const char* const file = APP_DATA "uTorrent/settings.dat";
  EXPECT_EQ(Discover("uTorrent").outcome, DiscoveryOutcome::kNoFile);
  EXPECT_EQ(Discover("BitComet").outcome, DiscoveryOutcome::kNoFile);
  EXPECT_EQ(Discover("no such program").outcome, DiscoveryOutcome::kNoFile);
  Add(APP_DATA "uTorrent/settings.dat/x", "a folder in place of the file");
  EXPECT_EQ(Discover("uTorrent").outcome, DiscoveryOutcome::kNoFile);
  QDir(Path(file)).removeRecursively();
  ASSERT_EQ(mkfifo(QFile::encodeName(Path(file)).constData(), 0600), 0);
  EXPECT_EQ(Discover("uTorrent").outcome, DiscoveryOutcome::kNoFile) << "or it waits for ever";
  QFile::remove(Path(file));
  Add(file, QByteArray((4 << 20) + 1, 'x'));
  EXPECT_EQ(Discover("uTorrent").problem, QStringLiteral("4 File too large"));
  QFile::remove(Path(file));
  // A file that opens, and whose first byte nobody can read.
  QFile::link(QStringLiteral("/proc/self/mem"), Path(file));
  const DiscoveredPorts broken = Discover("uTorrent");
  EXPECT_EQ(broken.outcome, DiscoveryOutcome::kUnreadable);
  EXPECT_EQ(broken.problem, QStringLiteral("1 Input/output error"));
  EXPECT_EQ(broken.source, Path(file));
  EXPECT_EQ(Lists(broken), QStringLiteral(" "));
}

TEST_F(PortDiscovery, AnEmptyRegistryIsTold) {
  const char* const programs[] = {"Ares", "BitComet", "DreaMule", "StrongDC++"};
  const QByteArray head = "WINE REGISTRY Version 2\n";
  const QByteArray hives[] = {
      "", head,
      head +
          "[Software\\\\BitComet]\n@=\"\"\n["
          "Software\\\\Classes\\\\dchub\\\\Shell\\\\Open\\\\Command]\n"
          "@=\"C:\\\\StrongDC.exe %1\"\n",
      head +
          "[Software\\\\Classes\\\\dchub\\\\Shell\\\\Open\\\\Command]\n@=\"\\\"short\\\" %1\"\n"};
  for (const QByteArray& hive : hives) {
    MakePrefix();
    Add("user.reg", hive);
    Add("system.reg", hive);
    for (const char* program : programs) {
      EXPECT_EQ(Discover(program).outcome, DiscoveryOutcome::kNoRegistryValue)
          << program << " " << hive.toStdString();
    }
  }
  MakePrefix();
  Add("user.reg",
      QByteArray("WINE REGISTRY Version 2\n[Software\\\\Ares]\n\"Transfer.ServerPort\"=dword:0\n"));
  const DiscoveredPorts zero = Discover("Ares");
  EXPECT_EQ(zero.outcome, DiscoveryOutcome::kRead);
  EXPECT_EQ(zero.refused, QStringList{QStringLiteral("0")});
  EXPECT_EQ(zero.source, QStringLiteral("HKEY_CURRENT_USER\\Software\\Ares\\Transfer.ServerPort"));
}

TEST_F(PortDiscovery, AllProgramsWithPortsAreListedOnceAndAMissingPrefixHasNone) {
  MakePrefix();
  Add(APP_DATA "Azureus/azureus.config", kAzureus);
  Add("home/.azureus/azureus.config", "15:TCP.Listen.Porti1e15:UDP.Listen.Porti2e");
  Add(APP_DATA "uTorrent/settings.dat", "no port");
  QStringList found;
  for (const DiscoveredPorts& each : DiscoverAllPorts(Settings())) {
    found += each.ports.appname + QLatin1Char(' ') + each.ports.tcpportsonly;
  }
  EXPECT_EQ(found, (QStringList{QStringLiteral("Ares 48196-48196|"),
                                QStringLiteral("Azureus Vuze 49160-49160|"),
                                QStringLiteral("Shareaza 7213-7213|")}));
  const WineSettings nothing(Path("missing"), Path("missing"));
  EXPECT_TRUE(DiscoverAllPorts(nothing).isEmpty());
}

}  // namespace
}  // namespace quayline
