// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/native_programs.h"

namespace quayline {

namespace {

using Format = SettingsFormat;
using Shape = NativePort::Shape;

constexpr auto kTcp = NativePort::Protocol::kTcp;
constexpr auto kUdp = NativePort::Protocol::kUdp;
constexpr auto kBoth = NativePort::Protocol::kBoth;

// Keys, by what they are in the files.
constexpr const char* kPort[] = {"port"};
constexpr const char* kListen[] = {"Listen"};
constexpr const char* kMulePort[] = {"eMule/Port"};
constexpr const char* kMuleUdpPort[] = {"eMule/UDPPort"};
constexpr const char* kAriaPort[] = {"listen-port"};
constexpr const char* kAriaDhtPort[] = {"dht-listen-port"};
constexpr const char* kDelugePorts[] = {"listen_ports/0"};
constexpr const char* kDelugeRandomPort[] = {"listen_random_port"};
constexpr const char* kHttpPort[] = {"HttpServerPortNumber"};
constexpr const char* kHttpsPort[] = {"HttpsPortNumber"};
constexpr const char* kJellyfinHttp[] = {"InternalHttpPort", "HttpServerPortNumber"};
constexpr const char* kJellyfinHttps[] = {"InternalHttpsPort", "HttpsPortNumber"};
constexpr const char* kFactorioPort[] = {"other/port"};
constexpr const char* kServerPort[] = {"server_port"};
constexpr const char* kKTorrentPort[] = {"downloads/port"};
constexpr const char* kKTorrentDhtPort[] = {"downloads/dhtPort"};
constexpr const char* kMinecraftPort[] = {"server-port"};
constexpr const char* kQueryPort[] = {"query.port"};
constexpr const char* kMinecraftPort6[] = {"server-portv6"};
constexpr const char* kNicotinePorts[] = {"server/portrange"};
constexpr const char* kQBittorrentPort[] = {"BitTorrent/Session\\Port",
                                            "Preferences/Connection\\PortRangeMin"};
constexpr const char* kRtorrentPorts[] = {"network.port_range.set", "port_range"};
constexpr const char* kRtorrentDhtPort[] = {"dht.port.set", "dht_port"};
constexpr const char* kSyncthing[] = {"options/listenAddress"};
constexpr const char* kVoicePort[] = {"default_voice_port"};
constexpr const char* kFilePort[] = {"filetransfer_port"};
constexpr const char* kPeerPort[] = {"peer_port", "peer-port"};
constexpr const char* kListenPort[] = {"Interface/ListenPort"};

constexpr NativePort kAmule[] = {{kTcp, kMulePort, "4662"}, {kUdp, kMuleUdpPort, "4672"}};
constexpr NativePort kApache[] = {{kTcp, kListen, nullptr, Shape::kAddress}};
constexpr NativePort kAria[] = {{kTcp, kAriaPort, "6881-6999"}, {kUdp, kAriaDhtPort, "6881-6999"}};
constexpr NativePort kDeluge[] = {{.protocol = kBoth,
                                   .keys = kDelugeRandomPort,
                                   .switch_key = "random_port",
                                   .switch_value = "true"},
                                  {.protocol = kBoth,
                                   .keys = kDelugePorts,
                                   .switch_key = "random_port",
                                   .switch_value = "false",
                                   .last_key = "listen_ports/1"}};
constexpr NativePort kEmby[] = {{kTcp, kHttpPort, "8096"}, {kTcp, kHttpsPort, "8920"}};
constexpr NativePort kFactorio[] = {{kUdp, kFactorioPort, "34197"}};
constexpr NativePort kHomeAssistant[] = {{kTcp, kServerPort, "8123"}};
constexpr NativePort kJellyfin[] = {{kTcp, kJellyfinHttp, "8096"},
                                    {.protocol = kTcp,
                                     .keys = kJellyfinHttps,
                                     .fallback = "8920",
                                     .switch_key = "EnableHttps",
                                     .switch_value = "true"}};
constexpr NativePort kKTorrent[] = {{kBoth, kKTorrentPort, "6881"},
                                    {.protocol = kUdp,
                                     .keys = kKTorrentDhtPort,
                                     .fallback = "7881",
                                     .switch_key = "downloads/dhtSupport",
                                     .switch_value = "true"}};
constexpr NativePort kLuanti[] = {{kUdp, kPort, "30000"}};
constexpr NativePort kMinecraft[] = {{kTcp, kMinecraftPort, "25565"},
                                     {.protocol = kUdp,
                                      .keys = kQueryPort,
                                      .fallback = "25565",
                                      .switch_key = "enable-query",
                                      .switch_value = "true"}};
constexpr NativePort kBedrock[] = {{kUdp, kMinecraftPort, "19132"},
                                   {kUdp, kMinecraftPort6, "19133"}};
constexpr NativePort kMumble[] = {{kBoth, kPort, "64738"}};
constexpr NativePort kNginx[] = {{kTcp, kListen, nullptr, Shape::kAddress}};
constexpr NativePort kNicotine[] = {{kTcp, kNicotinePorts, "2234", Shape::kPair}};
constexpr NativePort kPlex[] = {{kTcp, {}, "32400"}};  // not a setting
constexpr NativePort kQBittorrent[] = {{kBoth, kQBittorrentPort}};
constexpr NativePort kRtorrent[] = {{kTcp, kRtorrentPorts, "6881-6999"}, {kUdp, kRtorrentDhtPort}};
constexpr NativePort kSsh[] = {{kTcp, kPort, "22"}};
constexpr NativePort kSyncthingPorts[] = {{kTcp, kSyncthing, "22000", Shape::kAddress, "tcp"},
                                          {kUdp, kSyncthing, "22000", Shape::kAddress, "quic"}};
constexpr NativePort kTeamSpeak[] = {{kUdp, kVoicePort, "9987"}, {kTcp, kFilePort, "30033"}};
constexpr NativePort kTerraria[] = {{kTcp, kPort, "7777"}};
constexpr NativePort kTransmission[] = {{kBoth, kPeerPort, "51413"}};
constexpr NativePort kWireGuard[] = {{kUdp, kListenPort}};

constexpr const char* kAmuleFiles[] = {"~/.aMule/amule.conf"};
constexpr const char* kApacheFiles[] = {"/etc/apache2/ports.conf", "/etc/apache2/sites-enabled/*",
                                        "/etc/apache2/listen.conf", "/etc/httpd/conf/httpd.conf",
                                        "/etc/httpd/conf.d/*.conf"};
constexpr const char* kAriaFiles[] = {"~/.aria2/aria2.conf"};
constexpr const char* kDelugeFiles[] = {"/var/lib/deluge/.config/deluge/core.conf",
                                        "/var/lib/deluged/config/core.conf"};
constexpr const char* kEmbyFiles[] = {"/var/lib/emby/config/system.xml"};
constexpr const char* kFactorioFiles[] = {"~/.factorio/config/config.ini",
                                          "/opt/factorio/config/config.ini"};
constexpr const char* kHomeAssistantFiles[] = {
    "~/.homeassistant/configuration.yaml", "/home/homeassistant/.homeassistant/configuration.yaml",
    "/usr/share/hassio/homeassistant/configuration.yaml", "/srv/homeassistant/configuration.yaml"};
constexpr const char* kJellyfinFiles[] = {"/etc/jellyfin/network.xml",
                                          "/var/lib/jellyfin/config/network.xml",
                                          "~/.config/jellyfin/network.xml"};
constexpr const char* kKTorrentFiles[] = {"~/.kde/share/config/ktorrentrc",
                                          "~/.kde4/share/config/ktorrentrc"};
constexpr const char* kLuantiFiles[] = {
    "~/.minetest/minetest.conf", "~/.var/app/net.minetest.Minetest/.minetest/minetest.conf",
    "~/.var/app/org.luanti.luanti/.minetest/minetest.conf", "/etc/minetest/minetest.conf"};
constexpr const char* kMinecraftFiles[] = {
    "~/minecraft/server.properties",           "~/minecraft-server/server.properties",
    "~/minecraft_server/server.properties",    "/opt/minecraft/server.properties",
    "/opt/minecraft/server/server.properties", "/srv/minecraft/server.properties"};
constexpr const char* kBedrockFiles[] = {
    "~/bedrock-server/server.properties", "~/minecraft-bedrock/server.properties",
    "/opt/bedrock-server/server.properties", "/srv/bedrock-server/server.properties"};
constexpr const char* kMumbleFiles[] = {"/etc/mumble-server.ini", "/etc/mumble/mumble-server.ini",
                                        "/etc/murmur.ini", "/etc/murmur/murmur.ini"};
constexpr const char* kNginxFiles[] = {"/etc/nginx/nginx.conf", "/etc/nginx/conf.d/*.conf",
                                       "/etc/nginx/sites-enabled/*"};
constexpr const char* kPlexFiles[] = {
    "/var/lib/plexmediaserver/Library/Application Support/Plex Media Server/Preferences.xml",
    ("/var/snap/plexmediaserver/common/Library/Application Support/Plex Media Server/"
     "Preferences.xml"),
    "~/Library/Application Support/Plex Media Server/Preferences.xml"};
constexpr const char* kRtorrentFiles[] = {"~/.rtorrent.rc", "~/.config/rtorrent/rtorrent.rc"};
constexpr const char* kSshFiles[] = {"/etc/ssh/sshd_config", "/etc/ssh/sshd_config.d/*.conf"};
constexpr const char* kSyncthingFiles[] = {"~/.local/state/syncthing/config.xml",
                                           "/var/lib/syncthing/.config/syncthing/config.xml"};
constexpr const char* kTeamSpeakFiles[] = {"~/teamspeak3-server_linux_amd64/ts3server.ini",
                                           "/opt/teamspeak/ts3server.ini",
                                           "/opt/teamspeak3-server/ts3server.ini"};
constexpr const char* kTerrariaFiles[] = {
    "~/terraria/serverconfig.txt", "/opt/terraria/serverconfig.txt",
    "~/.local/share/Steam/steamapps/common/Terraria/serverconfig.txt"};
constexpr const char* kTransmissionFiles[] = {
    "~/.config/transmission-daemon/settings.json", "/etc/transmission-daemon/settings.json",
    "/var/lib/transmission/.config/transmission-daemon/settings.json"};
constexpr const char* kWireGuardFiles[] = {"/etc/wireguard/*.conf"};

constexpr NativeProgram kPrograms[] = {
    {.program = "aMule",
     .short_name = "aMule",
     .format = Format::kIni,
     .files = kAmuleFiles,
     .ports = kAmule},
    {.program = "Apache HTTP Server",
     .short_name = "Apache",
     .files = kApacheFiles,
     .reads_all = true,
     .ports = kApache},
    {.program = "aria2",
     .short_name = "aria2",
     .config_file = "aria2/aria2.conf",
     .files = kAriaFiles,
     .ports = kAria},
    {.program = "Deluge",
     .short_name = "Deluge",
     .format = Format::kJson,
     .config_file = "deluge/core.conf",
     .flatpak = "org.deluge_torrent.deluge",
     .files = kDelugeFiles,
     .ports = kDeluge},
    {.program = "Emby",
     .short_name = "Emby",
     .format = Format::kXml,
     .files = kEmbyFiles,
     .ports = kEmby},
    {.program = "Factorio server",
     .short_name = "Factorio",
     .format = Format::kIni,
     .files = kFactorioFiles,
     .ports = kFactorio},
    {.program = "Home Assistant",
     .short_name = "HomeAsst",
     .files = kHomeAssistantFiles,
     .ports = kHomeAssistant},
    {.program = "Jellyfin",
     .short_name = "Jellyfin",
     .format = Format::kXml,
     .files = kJellyfinFiles,
     .ports = kJellyfin},
    {.program = "KTorrent",
     .short_name = "KTorrent",
     .format = Format::kIni,
     .config_file = "ktorrentrc",
     .flatpak = "org.kde.ktorrent",
     .snap = "ktorrent",
     .files = kKTorrentFiles,
     .ports = kKTorrent},
    {.program = "Luanti, Minetest server",
     .short_name = "Luanti",
     .files = kLuantiFiles,
     .ports = kLuanti},
    {.program = "Minecraft server (Bedrock Edition)",
     .short_name = "Bedrock",
     .files = kBedrockFiles,
     .ports = kBedrock},
    {.program = "Minecraft server (Java Edition)",
     .short_name = "Minecrft",
     .files = kMinecraftFiles,
     .ports = kMinecraft},
    {.program = "Mumble server", .short_name = "Mumble", .files = kMumbleFiles, .ports = kMumble},
    {.program = "nginx",
     .short_name = "nginx",
     .files = kNginxFiles,
     .reads_all = true,
     .ports = kNginx},
    {.program = "Nicotine+",
     .short_name = "Nicotine",
     .format = Format::kIni,
     .config_file = "nicotine/config",
     .flatpak = "org.nicotine_plus.Nicotine",
     .snap = "nicotine-plus",
     .ports = kNicotine},
    {.program = "OpenSSH server",
     .short_name = "Ssh",
     .files = kSshFiles,
     .reads_all = true,
     .ports = kSsh},
    {.program = "Plex Media Server",
     .short_name = "Plex",
     .format = Format::kXml,
     .files = kPlexFiles,
     .ports = kPlex},
    {.program = "qBittorrent",
     .short_name = "qBittorr",
     .format = Format::kIni,
     .config_file = "qBittorrent/qBittorrent.conf",
     .flatpak = "org.qbittorrent.qBittorrent",
     .snap = "qbittorrent-arnatious",
     .ports = kQBittorrent},
    {.program = "rTorrent", .short_name = "rTorrent", .files = kRtorrentFiles, .ports = kRtorrent},
    {.program = "Syncthing",
     .short_name = "Syncthng",
     .format = Format::kXml,
     .config_file = "syncthing/config.xml",
     .files = kSyncthingFiles,
     .ports = kSyncthingPorts},
    {.program = "TeamSpeak 3 server",
     .short_name = "TeamSpk",
     .files = kTeamSpeakFiles,
     .ports = kTeamSpeak},
    {.program = "Terraria server",
     .short_name = "Terraria",
     .files = kTerrariaFiles,
     .ports = kTerraria},
    {.program = "Transmission",
     .short_name = "Transm",
     .format = Format::kJson,
     .config_file = "transmission/settings.json",
     .flatpak = "com.transmissionbt.Transmission",
     .snap = "transmission",
     .files = kTransmissionFiles,
     .ports = kTransmission},
    {.program = "WireGuard",
     .short_name = "WireGrd",
     .format = Format::kIni,
     .files = kWireGuardFiles,
     .ports = kWireGuard},
};

}  // namespace

std::span<const NativeProgram> NativePrograms() { return kPrograms; }

}  // namespace quayline
