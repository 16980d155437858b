// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace quayline {

// "B8:27:EB:01:02:03"
QString HardwareAddressText(const QByteArray& hardware_address);

// "B8:27:EB", the part that names the maker.
QString MakerPrefix(const QByteArray& hardware_address);

// The maker of a network adapter by the prefix of its hardware address, of the makers that are
// common in homes; empty for any other.
QString MakerOf(const QByteArray& hardware_address);

// Whether the address was made up by the device itself, as phones do.
bool IsMadeUp(const QByteArray& hardware_address);

}  // namespace quayline
