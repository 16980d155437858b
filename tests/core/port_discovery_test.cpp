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

using namespace Qt::StringLiterals;
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
  PortDiscovery() { MakePrefix(); }
  // Begins with nothing but the hives and the empty folders of the user.
  void MakePrefix(const QByteArray& user = kUserHive, const QByteArray& machine = kMachineHive) {
    folder_ = std::make_unique<QTemporaryDir>();
    QDir().mkpath(Path(APP_DATA));
    Add("user.reg", user);
    Add("system.reg", machine);
  }
  QString Path(const char* below) const { return folder_->filePath(QString::fromUtf8(below)); }
  void Add(const char* below, const QByteArray& bytes) const {
    QDir().mkpath(QFileInfo(Path(below)).path());
    ASSERT_TRUE(WriteBytes(Path(below), bytes));
  }
  WineSettings Settings() const {
    return {folder_->path(), Path("home"), Path("home/.config"), Path("root")};
  }
  DiscoveredPorts Discover(const char* program) const {
    return DiscoverPorts(QString::fromLatin1(program), Settings());
  }

  std::unique_ptr<QTemporaryDir> folder_;
};

QString Lists(const DiscoveredPorts& found) {
  EXPECT_EQ(found.ports.tcpudpports, QString());
  return found.ports.tcpportsonly + u' ' + found.ports.udpportsonly;
}

TEST_F(PortDiscovery, EachProgramsSettingsGiveItsPorts) {
  const QByteArray comet =
      "<BitComet>\r\n<Settings>\r\n<ListenPort>17890</ListenPort>\r\n<ListenPort>2</ListenPort>";
  const QByteArray lime = "#LimeWire properties file\r\nCLIENT_ID=0A\r\nPORT=14217\r\nPORT=2\r\n";
  const QByteArray tornado = "maxport = 60000\r\nmax_uploads = 7\r\nminport = 10000\r\n";
  const struct {
    const char* program;
    const char* short_name;
    const char* lists;           // TCP, a blank, UDP
    const char* file = nullptr;  // null: the registry is enough
    QByteArray bytes = {};
  } rows[] = {
      {"Ares", "Ares", "48196-48196| "},
      {"Azureus Vuze", "Azureus", "49160-49160| 49161-49161|", APP_DATA "Azureus/azureus.config",
       kAzureus},
      {"Azureus Vuze", "Azureus", "49160-49160| 49161-49161|", "home/.azureus/azureus.config",
       kAzureus},
      {"BitComet", "BitComet", "17890-17890| ", PROGRAMS "BitComet/BitComet.xml", comet},
      {"BitLord", "BitLord", "8517-8517| ", PROGRAMS "BitLord/BitLord.xml",
       "\xef\xbb\xbf<a><ListenPort> 08517\n</ListenPort>"},
      {"BitTornado", "BitTornado", "10000-60000| ", APP_DATA ".BitTornado/config.gui.ini", tornado},
      {"BitTornado", "BitTornado", "10000-10000| ", "home/.BitTornado/config.gui.ini",
       "minport = 10000\nmaxport = 10000"},
      {"BitTorrent", "BitTorrent", "6881-6881| ", APP_DATA "bittorrent/Settings.dat",
       "d9:bind_porti6881e3:abcle"},
      {"DreaMule", "DreaMule", "4662-4662| 4672-4672|", PROGRAMS "DreaMule/config/preferences.ini",
       kMule},
      {"Emule (Shared)", "Emule", "4662-4662| 4672-4672|", PROGRAMS "eMule/config/preferences.ini",
       kMule},
      {"Emule (Shared)", "Emule", "4662-4662| 4672-4672|",
       VIRTUAL_STORE "eMule/config/preferences.ini", kMule},
      {"Emule (User Specific)", "Emule", "4662-4662| 4672-4672|",
       APP_DATA "eMule/config/preferences.ini", kMule},
      {"LimeWire", "LimeWire", "14217-14217| ", APP_DATA "LimeWire/limewire.props", lime},
      {"LimeWire", "LimeWire", "14217-14217| ", "home/.limewire/limewire.props",
       "FORCED_PORT=14217\nPORT=2"},
      {"Shareaza", "Shareaza", "7213-7213| "},
      {"StrongDC++", "StrongDC++", "3412-3412|3414-3414| 3413-3413|",
       PROGRAMS "StrongDC++/Settings/DCPlusPlus.xml", kDirectConnect},
      {"utorrent", "uTorrent", "65535-65535| ", APP_DATA "uTorrent/settings.dat",
       "d9:bind_porti65535e"},
      {"Vibe Streamer", "Vibe", "8081-8081| ", PROGRAMS "Vibe Streamer/conf/server.xml",
       "<config><serverPort>8081</serverPort></config>"},
  };
  QStringList tried;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file != nullptr ? row.file : row.program);
    MakePrefix();
    if (row.file != nullptr) {
      EXPECT_EQ(Lists(Discover(row.program)), u" "_s) << "before there is a file";
      Add(row.file, row.bytes);
    }
    const DiscoveredPorts found = Discover(row.program);
    EXPECT_TRUE(found.IsComplete());
    EXPECT_EQ(Lists(found), QLatin1String(row.lists));
    EXPECT_EQ(found.ports.nameforrouter, QLatin1String(row.short_name));
    EXPECT_TRUE(row.file == nullptr || found.source == Path(row.file)) << qPrintable(found.source);
    tried += found.ports.appname;
  }
  tried.removeDuplicates();
  EXPECT_EQ(tried, DiscoverablePrograms().first(tried.size()));
  EXPECT_EQ(tried.size(), 14);
}

TEST_F(PortDiscovery, WhatIsNoPortNeverBecomesOne) {
  using Place = std::pair<const char*, const char*>;  // program, file
  const Place torrent = {"uTorrent", APP_DATA "uTorrent/settings.dat"};
  const Place azureus = {"Azureus Vuze", APP_DATA "Azureus/azureus.config"};
  const Place mule = {"Emule (User Specific)", APP_DATA "eMule/config/preferences.ini"};
  const Place tornado = {"BitTornado", APP_DATA ".BitTornado/config.gui.ini"};
  const QByteArray binary = QByteArray(5000, '\0') + "\xff\xfe\xff";
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
      {"binary all around", torrent, binary + "bind_porti6881e", "6881-6881| ", nullptr},
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
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    Add(row.place.second, row.bytes);
    const DiscoveredPorts found = Discover(row.place.first);
    EXPECT_EQ(found.outcome, DiscoveryOutcome::kRead);
    EXPECT_EQ(Lists(found), QLatin1String(row.lists));
    EXPECT_EQ(found.IsComplete(), row.refused == nullptr);
    EXPECT_EQ(found.refused.join(u'+'), QString::fromUtf16(row.refused));
  }
}

TEST_F(PortDiscovery, WhatCannotBeReadIsDistinguished) {
  const char* const file = APP_DATA "uTorrent/settings.dat";
  for (const char* program : {"uTorrent", "BitComet", "no such program"}) {
    EXPECT_EQ(Discover(program).outcome, DiscoveryOutcome::kNoFile) << program;
  }
  Add(APP_DATA "uTorrent/settings.dat/x", "a folder in place of the file");
  EXPECT_EQ(Discover("uTorrent").outcome, DiscoveryOutcome::kNoFile);
  QDir(Path(file)).removeRecursively();
  ASSERT_EQ(mkfifo(QFile::encodeName(Path(file)).constData(), 0600), 0);
  EXPECT_EQ(Discover("uTorrent").outcome, DiscoveryOutcome::kNoFile) << "or it waits for ever";
  QFile::remove(Path(file));
  Add(file, QByteArray((4 << 20) + 1, 'x'));
  EXPECT_EQ(Discover("uTorrent").problem, u"4 File too large"_s);
  QFile::remove(Path(file));
  // A file that can be opened, but not read.
  QFile::link(u"/proc/self/mem"_s, Path(file));
  const DiscoveredPorts broken = Discover("uTorrent");
  EXPECT_EQ(broken.outcome, DiscoveryOutcome::kUnreadable);
  EXPECT_EQ(broken.problem, u"1 Input/output error"_s);
  EXPECT_EQ(broken.source, Path(file));
  EXPECT_EQ(Lists(broken), u" "_s);
}

TEST_F(PortDiscovery, AnEmptyRegistryIsReported) {
  const QByteArray head = "WINE REGISTRY Version 2\n";
  const QByteArray opening = "[Software\\\\Classes\\\\dchub\\\\Shell\\\\Open\\\\Command]\n@=";
  for (const QByteArray& hive :
       {QByteArray(), head, head + opening + "\"\\\"short\\\" %1\"\n",
        head + "[Software\\\\BitComet]\n@=\"\"\n" + opening + "\"C:\\\\StrongDC.exe %1\"\n"}) {
    MakePrefix(hive, hive);
    for (const char* program : {"Ares", "BitComet", "DreaMule", "StrongDC++"}) {
      EXPECT_EQ(Discover(program).outcome, DiscoveryOutcome::kNoRegistryValue)
          << program << " " << hive.toStdString();
    }
  }
  MakePrefix(head + "[Software\\\\Ares]\n\"Transfer.ServerPort\"=dword:0\n");
  const DiscoveredPorts zero = Discover("Ares");
  EXPECT_EQ(zero.outcome, DiscoveryOutcome::kRead);
  EXPECT_EQ(zero.refused, QStringList{u"0"_s});
  EXPECT_EQ(zero.source, u"HKEY_CURRENT_USER\\Software\\Ares\\Transfer.ServerPort"_s);
}

TEST_F(PortDiscovery, AllProgramsWithPortsAreListedOnceAndAMissingPrefixHasNone) {
  Add(APP_DATA "Azureus/azureus.config", kAzureus);
  Add("home/.azureus/azureus.config", "15:TCP.Listen.Porti1e15:UDP.Listen.Porti2e");
  Add(APP_DATA "uTorrent/settings.dat", "no port");
  QString found;
  for (const DiscoveredPorts& each : DiscoverAllPorts(Settings())) {
    found += each.ports.appname + u' ' + each.ports.tcpportsonly;
  }
  EXPECT_EQ(found, u"Ares 48196-48196|Azureus Vuze 49160-49160|Shareaza 7213-7213|"_s);
  EXPECT_TRUE(
      DiscoverAllPorts(WineSettings(Path("no"), Path("no"), Path("no"), Path("no"))).isEmpty());
}

}  // namespace
}  // namespace quayline
