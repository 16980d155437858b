// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStringList>

#include "core/discovered_ports.h"
#include "platform/foreign_settings.h"

namespace quayline {

// Some programs choose random ports when they are installed, and others let the user choose them.
// They are read from the settings of these programs on this computer. The programs are the rows of
// program_sources.cpp (Windows programs) and native_programs.cpp (programs of this system).

// The names of the programs whose ports can be read, in the order of the user's list.
QStringList DiscoverablePrograms();

// Reads the settings of the program of that name (ignoring case). Takes a few milliseconds,
// some 50 where the registry has grown to 10 MB. A file of more than 4 MB is kUnreadable. kNoFile
// for a name that is not listed.
DiscoveredPorts DiscoverPorts(const QString& program, const ForeignSettings& settings);

// Every program with complete settings on this computer, in the list's order.
QList<DiscoveredPorts> DiscoverAllPorts(const ForeignSettings& settings);

}  // namespace quayline
