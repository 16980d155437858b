// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/native_discovery.h"

#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/files.h"
#include "core/port_discovery.h"
#include "platform/linux/wine_settings.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

// A computer whose files are all in one folder, without Wine.
class NativeDiscoveryTest : public ::testing::Test {
 protected:
  QString Path(const QString& below) const { return folder_->filePath(below); }
  void Add(const QString& below, const QByteArray& bytes) const {
    QDir().mkpath(QFileInfo(Path(below)).path());
    ASSERT_TRUE(testing::WriteBytes(Path(below), bytes));
  }
  WineSettings Settings() const {
    return {Path(u"wine"_s), Path(u"home"_s), Path(u"config"_s), Path(u"root"_s)};
  }
  DiscoveredPorts Discover(const char* program) const {
    return DiscoverPorts(QString::fromLatin1(program), Settings());
  }

  std::unique_ptr<QTemporaryDir> folder_ = std::make_unique<QTemporaryDir>();
};

QString Lists(const DiscoveredPorts& found) {
  const AppPortRecord& ports = found.ports;
  return u"%1 %2 %3"_s.arg(ports.tcpportsonly, ports.udpportsonly, ports.tcpudpports);
}

constexpr char kSync[] =
    "<configuration version='37'>\n<device><address>tcp://1.2.3.4:9</address>"
    "</device><options>";

TEST_F(NativeDiscoveryTest, EachProgramsSettingsGiveItsPorts) {
  const struct {
    const char* program;
    const char* file;
    QByteArray bytes;
    const char* lists;  // TCP, UDP and both, with blanks between them
  } rows[] = {
      {"aMule", "home/.aMule/amule.conf", "[eMule]\nPort=5000\nUDPPort=5010\n[ExternalConnect]\n",
       "5000-5000| 5010-5010| "},
      {"Apache HTTP Server", "root/etc/apache2/ports.conf",
       "# Listen 99\nListen 80\nListenBacklog 500\n<IfModule ssl_module>\n\tlisten 443 https\n"
       "</IfModule>\nListen 127.0.0.1:8081\nListen [::]:80\n",
       "80-80|443-443|  "},
      {"aria2", "config/aria2/aria2.conf", "listen-port=7000-7001,8000\n#dht-listen-port=1\n",
       "7000-7001|8000-8000| 6881-6999| "},
      {"Deluge", "config/deluge/core.conf",
       "{\n\"file\": 1, \"format\": 1\n}{\n\"random_port\": false, \"listen_ports\": [6881, 6891], "
       "\"listen_random_port\": 50000}",
       "  6881-6891|"},
      {"Deluge", "home/.var/app/org.deluge_torrent.deluge/config/deluge/core.conf",
       "{\"file\":1}{\"random_port\": true, \"listen_ports\": [1, 2], \"listen_random_port\": "
       "50000}",
       "  50000-50000|"},
      {"Emby", "root/var/lib/emby/config/system.xml",
       "<?xml version=\"1.0\"?><ServerConfiguration><HttpServerPortNumber>8097"
       "</HttpServerPortNumber></ServerConfiguration>",
       "8097-8097|8920-8920|  "},
      {"Factorio server", "home/.factorio/config/config.ini", "[other]\n; port=1\n",
       " 34197-34197| "},
      {"Home Assistant", "home/.homeassistant/configuration.yaml",
       "default_config:\nhttp:\n  server_port: 8124  # ours\n", "8124-8124|  "},
      {"Jellyfin", "root/etc/jellyfin/network.xml",
       "<NetworkConfiguration><EnableHttps>true</EnableHttps><InternalHttpsPort>8443"
       "</InternalHttpsPort></NetworkConfiguration>",
       "8096-8096|8443-8443|  "},
      {"KTorrent", "home/snap/ktorrent/current/.config/ktorrentrc",
       "[downloads]\ndhtSupport=true\nport=6890\n", " 7881-7881| 6890-6890|"},
      {"Luanti, Minetest server", "home/.minetest/minetest.conf", "port = 30001\n",
       " 30001-30001| "},
      {"Minecraft server (Bedrock Edition)", "home/bedrock-server/server.properties",
       "server-port=19140\nserver-portv6=19141\n", " 19140-19140|19141-19141| "},
      {"Minecraft server (Java Edition)", "home/minecraft/server.properties",
       "#Minecraft server properties\nquery.port=25566\nserver-port=25570\r\nenable-query=false\n",
       "25570-25570|  "},
      {"Minecraft server (Java Edition)", "root/opt/minecraft/server.properties",
       "enable-query=TRUE\nquery.port=25566\n", "25565-25565| 25566-25566| "},
      {"Mumble server", "root/etc/mumble-server.ini", "; port=1\nport=64739\nserverpassword=port 2",
       "  64739-64739|"},
      {"nginx", "root/etc/nginx/sites-enabled/home",
       "server {\n  listen 80 default_server;\n  listen [::]:80;\n  listen 443 ssl; # listen 1;\n"
       "  listen unix:/run/x.sock;\n  listen localhost:8000;\n  listen 192.168.1.2:8080;\n}\n",
       "80-80|443-443|8080-8080|  "},
      {"Nicotine+", "config/nicotine/config", "[server]\nportrange = (2240, 2242)\n",
       "2240-2242|  "},
      {"OpenSSH server", "root/etc/ssh/sshd_config", "#Port 22\nPort 2222\nPort 2200\nportal 1\n",
       "2222-2222|2200-2200|  "},
      {"OpenSSH server", "root/etc/ssh/sshd_config", "PermitRootLogin no\n", "22-22|  "},
      {"Plex Media Server",
       "root/var/lib/plexmediaserver/Library/Application Support/Plex Media Server/Preferences.xml",
       "<Preferences FriendlyName=\"x\"/>", "32400-32400|  "},
      {"qBittorrent", "config/qBittorrent/qBittorrent.conf",
       "[Preferences]\nConnection\\PortRangeMin=1\n[BitTorrent]\nSession\\Port=45000\n",
       "  45000-45000|"},
      {"QBITTORRENT",
       "home/.var/app/org.qbittorrent.qBittorrent/config/qBittorrent/qBittorrent.conf",
       "[Preferences]\nConnection\\PortRangeMin=45001\n", "  45001-45001|"},
      {"rTorrent", "home/.rtorrent.rc",
       "# port_range = 1-2\nnetwork.port_range.set = 50000-50010\ndht.port.set = 50020\n",
       "50000-50010| 50020-50020| "},
      {"Syncthing", "config/syncthing/config.xml",
       kSync + QByteArray("<listenAddress>default</listenAddress></options></configuration>"),
       "22000-22000| 22000-22000| "},
      {"Syncthing", "home/.local/state/syncthing/config.xml",
       kSync + QByteArray("<listenAddress>tcp://:22001</listenAddress><listenAddress>"
                          "quic://0.0.0.0:22002</listenAddress><listenAddress>relay://x:443"
                          "</listenAddress></options></configuration>"),
       "22001-22001| 22002-22002| "},
      {"TeamSpeak 3 server", "root/opt/teamspeak/ts3server.ini",
       "default_voice_port=9988\nquery_port=10011\n", "30033-30033| 9988-9988| "},
      {"Terraria server", "home/terraria/serverconfig.txt", "#port=1\nmaxplayers=8\n",
       "7777-7777|  "},
      {"Transmission", "config/transmission/settings.json", "{\"peer-port\": 51414, \"x\": [{}]}",
       "  51414-51414|"},
      {"Transmission", "home/.config/transmission-daemon/settings.json", "{\"peer_port\": 51415}",
       "  51415-51415|"},
      {"WireGuard", "root/etc/wireguard/wg1.conf",
       "[Interface]\nPrivateKey = x\nListenPort = 51821\n[Peer]\n", " 51821-51821| "},
  };
  QStringList tried;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    folder_ = std::make_unique<QTemporaryDir>();
    EXPECT_EQ(Discover(row.program).outcome, DiscoveryOutcome::kNoFile);
    Add(QString::fromLatin1(row.file), row.bytes);
    const DiscoveredPorts found = Discover(row.program);
    EXPECT_TRUE(found.IsComplete()) << qPrintable(found.refused.join(u'|'));
    EXPECT_EQ(Lists(found), QLatin1String(row.lists)) << row.program;
    EXPECT_EQ(found.source, Path(QString::fromLatin1(row.file)));
    EXPECT_LE(found.ports.nameforrouter.size(), 8);
    tried += found.ports.appname;
  }
  tried.removeDuplicates();
  EXPECT_EQ(tried, DiscoverablePrograms().sliced(14));
}

TEST_F(NativeDiscoveryTest, WhatIsNoPortNeverBecomesOneAndNothingHangs) {
  const QByteArray deep = QByteArray("<a>").repeated(200000);
  const struct {
    const char* fault;
    const char* program;
    const char* file;
    QByteArray bytes;
    const char* lists;
    bool is_complete = false;
  } rows[] = {
      {"port 0", "Transmission", "config/transmission/settings.json", "{\"peer-port\": 0}", "  -|"},
      {"no whole number", "Transmission", "config/transmission/settings.json",
       "{\"peer-port\": 5.5}", "  -|"},
      {"too large", "OpenSSH server", "root/etc/ssh/sshd_config", "Port 65536\n", "-|  "},
      {"a sign", "OpenSSH server", "root/etc/ssh/sshd_config", "Port -22\n", "-|  "},
      {"a range that ends before it starts", "Nicotine+", "config/nicotine/config",
       "[server]\nportrange = (9, 8)\n", "-|  "},
      {"half of a range", "Deluge", "config/deluge/core.conf",
       "{\"random_port\": false, \"listen_ports\": [6881]}", "  -|"},
      {"other types", "Deluge", "config/deluge/core.conf",
       "{\"random_port\": [], \"listen_ports\": {\"0\": 1}}", "  "},
      {"no setting and no default", "qBittorrent", "config/qBittorrent/qBittorrent.conf", "", "  "},
      {"loopback only", "nginx", "root/etc/nginx/nginx.conf", "listen 127.0.0.1:80;", "  "},
      {"not JSON: the default", "Transmission", "config/transmission/settings.json", "\xff{{{",
       "  51413-51413|", true},
      {"nested JSON", "Transmission", "config/transmission/settings.json",
       QByteArray("[").repeated(500000), "  51413-51413|", true},
      {"nested XML", "Syncthing", "config/syncthing/config.xml", deep, "22000-22000| 22000-22000| ",
       true},
      {"the same element deeper down", "Syncthing", "config/syncthing/config.xml",
       "<c><x><options><listenAddress>tcp://:1</listenAddress></options></x><options><y>"
       "<listenAddress>tcp://:2</listenAddress></y></options></c>",
       "22000-22000| 22000-22000| ", true},
      {"entities that multiply", "Syncthing", "config/syncthing/config.xml",
       "<!DOCTYPE c [<!ENTITY a \"22\"><!ENTITY b \"&a;&a;&a;\">]><c><options><listenAddress>"
       "&b;</listenAddress></options></c>",
       "-| -| "},
      {"many lines of one key", "OpenSSH server", "root/etc/ssh/sshd_config",
       QByteArray("Port 22\n").repeated(100000), "22-22|  ", true},
      {"zeros", "Mumble server", "root/etc/mumble-server.ini", QByteArray(1 << 20, '\0'),
       "  64738-64738|", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    folder_ = std::make_unique<QTemporaryDir>();
    Add(QString::fromLatin1(row.file), row.bytes);
    const DiscoveredPorts found = Discover(row.program);
    EXPECT_EQ(found.outcome, DiscoveryOutcome::kRead);
    EXPECT_EQ(Lists(found), QLatin1String(row.lists));
    EXPECT_EQ(found.IsComplete(), row.is_complete);
  }
}

TEST_F(NativeDiscoveryTest, AFileThatCannotBeReadIsSkippedForTheNextPlace) {
  const QString first = u"config/transmission/settings.json"_s;
  const QString next = u"home/.config/transmission-daemon/settings.json"_s;
  Add(first, QByteArray((1 << 20) + 1, ' '));
  EXPECT_EQ(Discover("Transmission").problem, u"4 File too large"_s);
  EXPECT_EQ(Discover("Transmission").source, Path(first));
  Add(next, "{}");
  EXPECT_TRUE(Discover("Transmission").IsComplete());
  EXPECT_EQ(Discover("Transmission").source, Path(next));
  // Devices, pipes and folders are no settings files.
  for (const char* const target : {"/dev/zero", "/dev/tty", "/"}) {
    QFile::remove(Path(first));
    ASSERT_TRUE(QFile::link(QString::fromLatin1(target), Path(first)));
    EXPECT_EQ(Discover("Transmission").source, Path(next)) << target;
  }
  QFile::remove(Path(first));
  ASSERT_EQ(mkfifo(QFile::encodeName(Path(first)).constData(), 0600), 0);
  EXPECT_EQ(Discover("Transmission").source, Path(next));
}

TEST_F(NativeDiscoveryTest, AServerIsReadFromAllItsFiles) {
  Add(u"root/etc/nginx/nginx.conf"_s, "listen 80;");
  Add(u"root/etc/nginx/sites-enabled/b"_s, "listen 8080;");
  Add(u"root/etc/nginx/sites-enabled/a"_s, "listen 443 ssl;\nlisten 80;");
  Add(u"root/etc/nginx/conf.d/off.conf.bak"_s, "listen 99;");
  EXPECT_EQ(Lists(Discover("nginx")), u"80-80|443-443|8080-8080|  "_s);
  EXPECT_EQ(Discover("nginx").source, Path(u"root/etc/nginx/nginx.conf"_s));
}

}  // namespace
}  // namespace quayline
