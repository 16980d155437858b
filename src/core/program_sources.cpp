// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/program_sources.h"

namespace quayline {

namespace {

using Hive = ForeignSettings::Hive;
using Kind = ProgramSource::Kind;

constexpr auto kTcp = PortPlace::Protocol::kTcp;
constexpr auto kUdp = PortPlace::Protocol::kUdp;

constexpr PortPlace kAres[] = {{kTcp, "Transfer.ServerPort"}};
constexpr PortPlace kShareaza[] = {{kTcp, "InPort"}};
constexpr PortPlace kEmule[] = {{kTcp, "Port"}, {kUdp, "UDPPort"}};
constexpr PortPlace kLimeWire[] = {{kTcp, "PORT="}};
constexpr PortPlace kTornado[] = {{kTcp, "minport = ", nullptr, "maxport = "}};
// Bencoded integers: "i", the digits, "e".
constexpr PortPlace kAzureus[] = {{kTcp, "TCP.Listen.Porti", "e"}, {kUdp, "UDP.Listen.Porti", "e"}};
constexpr PortPlace kBindPort[] = {{kTcp, "bind_porti", "e"}};
constexpr PortPlace kListenPort[] = {{kTcp, "<ListenPort>", "</ListenPort>"}};
constexpr PortPlace kServerPort[] = {{kTcp, "<serverPort>", "</serverPort>"}};
constexpr PortPlace kDirectConnect[] = {{kTcp, "<InPort type=\"int\">", "</InPort>"},
                                        {kTcp, "<TLSPort type=\"int\">", "</TLSPort>"},
                                        {kUdp, "<UDPPort type=\"int\">", "</UDPPort>"}};

constexpr ProgramSource kSources[] = {
    {.program = "Ares", .kind = Kind::kRegistry, .key = "Software\\Ares", .ports = kAres},
    {.program = "Azureus Vuze",
     .kind = Kind::kAppData,
     .file = "\\Azureus\\azureus.config",
     .native_file = "/.azureus/azureus.config",
     .ports = kAzureus},
    {.program = "BitComet",
     .kind = Kind::kInstallFolder,
     .key = "Software\\BitComet",
     .file = "\\BitComet.xml",
     .ports = kListenPort},
    {.program = "BitLord",
     .kind = Kind::kInstallFolder,
     .key = "Software\\BitLord",
     .file = "\\BitLord.xml",
     .ports = kListenPort},
    {.program = "BitTornado",
     .kind = Kind::kAppData,
     .file = "\\.BitTornado\\config.gui.ini",
     .native_file = "/.BitTornado/config.gui.ini",
     .ports = kTornado},
    {.program = "BitTorrent",
     .kind = Kind::kAppData,
     .file = "\\BitTorrent\\settings.dat",
     .ports = kBindPort},
    {.program = "DreaMule",
     .kind = Kind::kInstallFolder,
     .hive = Hive::kLocalMachine,
     .key = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\DreaMule_is1",
     .value_name = "Inno Setup: App Path",
     .file = "\\config\\preferences.ini",
     .ini_section = "eMule",
     .ports = kEmule},
    {.program = "Emule (Shared)",
     .kind = Kind::kInstallFolder,
     .key = "Software\\eMule",
     .value_name = "Install Path",
     .file = "\\config\\preferences.ini",
     .ini_section = "eMule",
     .ports = kEmule},
    {.program = "Emule (User Specific)",
     .kind = Kind::kAppData,
     .file = "\\eMule\\config\\preferences.ini",
     .ini_section = "eMule",
     .ports = kEmule},
    {.program = "LimeWire",
     .kind = Kind::kAppData,
     .file = "\\LimeWire\\limewire.props",
     .native_file = "/.limewire/limewire.props",
     .ports = kLimeWire},
    {.program = "Shareaza",
     .kind = Kind::kRegistry,
     .key = "Software\\Shareaza\\Shareaza\\Connection",
     .ports = kShareaza},
    {.program = "StrongDC++",
     .kind = Kind::kCommandFolder,
     .key = "Software\\Classes\\dchub\\Shell\\Open\\Command",
     .program_length = 13,
     .file = "\\Settings\\DCPlusPlus.xml",
     .ports = kDirectConnect},
    {.program = "uTorrent",
     .kind = Kind::kAppData,
     .file = "\\uTorrent\\settings.dat",
     .ports = kBindPort},
    {.program = "Vibe Streamer",
     .kind = Kind::kInstallFolder,
     .key = "Software\\Vibe Streamer",
     .value_name = "InstallPath",
     .file = "\\conf\\server.xml",
     .ports = kServerPort},
};

}  // namespace

std::span<const ProgramSource> ProgramSources() { return kSources; }

}  // namespace quayline
