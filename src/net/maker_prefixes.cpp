// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/maker_prefixes.h"

#include <algorithm>
#include <iterator>

namespace quayline {

namespace {

constexpr qsizetype kPrefixBytes = 3;
constexpr quint8 kMadeUpBit = 0x02;  // of the first byte

struct Prefix {
  quint32 number;
  const char* maker;
};

// As the register of the IEEE assigns them, in order.
constexpr Prefix kPrefixes[] = {
    {0x000085, "Canon"},
    {0x0003ff, "Microsoft"},
    {0x00041f, "Sony"},
    {0x00089b, "QNAP"},
    {0x0009bf, "Nintendo"},
    {0x000c29, "VMware"},
    {0x000e58, "Sonos"},
    {0x000f66, "Linksys"},
    {0x000fb5, "Netgear"},
    {0x001132, "Synology"},
    {0x0011d8, "ASUS"},
    {0x001217, "Linksys"},
    {0x0012fb, "Samsung"},
    {0x001315, "Sony"},
    {0x001320, "Intel"},
    {0x001377, "Samsung"},
    {0x0014ee, "Western Digital"},
    {0x001517, "Intel"},
    {0x00155d, "Microsoft"},
    {0x001788, "Philips"},
    {0x0017fa, "Microsoft"},
    {0x0018f8, "Linksys"},
    {0x001a8a, "Samsung"},
    {0x001b63, "Apple"},
    {0x001c42, "Parallels"},
    {0x001e10, "Huawei"},
    {0x001e4f, "Dell"},
    {0x001e8f, "Canon"},
    {0x001f32, "Nintendo"},
    {0x001fc6, "ASUS"},
    {0x00215a, "HP"},
    {0x0024d7, "Intel"},
    {0x00259e, "Huawei"},
    {0x00265a, "D-Link"},
    {0x0026ab, "Epson"},
    {0x002709, "Nintendo"},
    {0x005056, "VMware"},
    {0x008077, "Brother"},
    {0x0090a9, "Western Digital"},
    {0x00d861, "MSI"},
    {0x00e04c, "Realtek"},
    {0x00e0fc, "Huawei"},
    {0x04cf8c, "Xiaomi"},
    {0x04d9f5, "ASUS"},
    {0x080027, "VirtualBox"},
    {0x0c47c9, "Amazon"},
    {0x14cc20, "TP-Link"},
    {0x18b430, "Nest"},
    {0x18c04d, "Gigabyte"},
    {0x1c872c, "ASUS"},
    {0x1cbdb9, "D-Link"},
    {0x204e7f, "Netgear"},
    {0x20aa4b, "Linksys"},
    {0x240ac4, "Espressif"},
    {0x245ebe, "QNAP"},
    {0x2462ab, "Espressif"},
    {0x280dfc, "Sony"},
    {0x281878, "Microsoft"},
    {0x286c07, "Xiaomi"},
    {0x28cdc1, "Raspberry Pi"},
    {0x2c4d54, "ASUS"},
    {0x2cf05d, "MSI"},
    {0x30055c, "Brother"},
    {0x3431c4, "AVM"},
    {0x3c0754, "Apple"},
    {0x3c2af4, "Brother"},
    {0x3ca9f4, "Intel"},
    {0x3cd92b, "HP"},
    {0x44650d, "Amazon"},
    {0x44a56e, "Netgear"},
    {0x44d244, "Epson"},
    {0x44e9dd, "Sagemcom"},
    {0x488eef, "Huawei"},
    {0x50642b, "Xiaomi"},
    {0x50c7bf, "TP-Link"},
    {0x50ec50, "Xiaomi"},
    {0x546009, "Google"},
    {0x5c497d, "Samsung"},
    {0x5caafd, "Sonos"},
    {0x5ccf7f, "Espressif"},
    {0x640980, "Xiaomi"},
    {0x641666, "Nest"},
    {0x709e29, "Sony"},
    {0x70b5e8, "Dell"},
    {0x74c246, "Amazon"},
    {0x74d02b, "ASUS"},
    {0x74d435, "Gigabyte"},
    {0x78e103, "Amazon"},
    {0x7c1dd9, "Xiaomi"},
    {0x7c7a91, "Intel"},
    {0x7cbb8a, "Nintendo"},
    {0x7ced8d, "Microsoft"},
    {0x8425db, "Samsung"},
    {0x84f3eb, "Espressif"},
    {0x8c71f8, "Samsung"},
    {0x8cc8cd, "Samsung"},
    {0x9457a5, "HP"},
    {0x949f3e, "Sonos"},
    {0x98b6e9, "Nintendo"},
    {0x9c3dcf, "Netgear"},
    {0x9c5c8e, "ASUS"},
    {0x9cc7a6, "AVM"},
    {0xa040a0, "Netgear"},
    {0xa0481c, "HP"},
    {0xa0a8cd, "Intel"},
    {0xa47733, "Google"},
    {0xa4c0e1, "Nintendo"},
    {0xa4c361, "Apple"},
    {0xac63be, "Amazon"},
    {0xac9e17, "ASUS"},
    {0xb0a737, "Roku"},
    {0xb42e99, "Gigabyte"},
    {0xb827eb, "Raspberry Pi"},
    {0xb8a386, "D-Link"},
    {0xb8ca3a, "Dell"},
    {0xb8e937, "Sonos"},
    {0xc025e9, "TP-Link"},
    {0xc0c1c0, "Linksys"},
    {0xc46ab7, "Xiaomi"},
    {0xc80e14, "AVM"},
    {0xc83a35, "Tenda"},
    {0xc863f1, "Sony"},
    {0xc8d3a3, "D-Link"},
    {0xcc07ab, "Samsung"},
    {0xcc6da0, "Roku"},
    {0xd4bed9, "Dell"},
    {0xd850e6, "ASUS"},
    {0xd8bbc1, "MSI"},
    {0xd8eb46, "Google"},
    {0xdc3a5e, "Roku"},
    {0xdca632, "Raspberry Pi"},
    {0xe45f01, "Raspberry Pi"},
    {0xecb5fa, "Philips"},
    {0xecfabc, "Espressif"},
    {0xf01898, "Apple"},
    {0xf0272d, "Amazon"},
    {0xf4f26d, "TP-Link"},
    {0xf4f5d8, "Google"},
    {0xf8a45f, "Xiaomi"},
    {0xf8d027, "Epson"},
    {0xf8e079, "Motorola"},
    {0xfc0fe6, "Sony"},
    {0xfc65de, "Amazon"},
    {0xfcaa14, "Gigabyte"},
};
static_assert(std::ranges::is_sorted(kPrefixes, {}, &Prefix::number));

}  // namespace

QString HardwareAddressText(const QByteArray& hardware_address) {
  return QString::fromLatin1(hardware_address.toHex(':')).toUpper();
}

QString MakerPrefix(const QByteArray& hardware_address) {
  return HardwareAddressText(
      hardware_address.first(std::min(kPrefixBytes, hardware_address.size())));
}

QString MakerOf(const QByteArray& hardware_address) {
  if (hardware_address.size() < kPrefixBytes) {
    return {};
  }
  const quint32 number = hardware_address.first(kPrefixBytes).toHex().toUInt(nullptr, 16);
  const auto* found = std::ranges::lower_bound(kPrefixes, number, {}, &Prefix::number);
  return found != std::end(kPrefixes) && found->number == number ? QString::fromLatin1(found->maker)
                                                                 : QString();
}

bool IsMadeUp(const QByteArray& hardware_address) {
  return !hardware_address.isEmpty() &&
         (static_cast<quint8>(hardware_address.front()) & kMadeUpBit) != 0;
}

}  // namespace quayline
