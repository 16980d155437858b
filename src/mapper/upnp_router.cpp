// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QUrl>

#include <miniupnpc/miniupnpc.h>
#include <miniupnpc/upnpcommands.h>

#include "mapper/mapping_router.h"

namespace quayline::mapper {

namespace {

constexpr int kDiscoverMilliseconds = 2000;
constexpr unsigned char kHops = 2;
constexpr int kAddressBytes = 64;

// Errors of the protocol.
constexpr int kNotAuthorized = 606;
constexpr int kNoSuchEntry = 714;
constexpr int kConflict = 718;
constexpr int kOnlyPermanent = 725;
constexpr int kConflictWithOther = 729;

// The library writes a name into XML as it is.
QByteArray PlainName(const QString& name) {
  QByteArray plain;
  for (const QChar letter : name.left(40)) {
    const bool is_plain = letter.unicode() < 128 &&
                          (letter.isLetterOrNumber() || QStringLiteral(" _.-").contains(letter));
    plain += is_plain ? letter.toLatin1() : '_';
  }
  return plain;
}

class UpnpRouter final : public MappingRouter {
 public:
  // Takes over what the library has allocated.
  UpnpRouter(const UPNPUrls& urls, const IGDdatas& data) : urls_(urls), data_(data) {}
  ~UpnpRouter() override { FreeUPNPUrls(&urls_); }
  UpnpRouter(const UpnpRouter&) = delete;
  UpnpRouter& operator=(const UpnpRouter&) = delete;

  QString Protocol() const override { return QStringLiteral("upnp"); }

  QString OutsideAddress() override {
    char address[kAddressBytes] = "";
    return UPNP_GetExternalIPAddress(Control(), Service(), address) == UPNPCOMMAND_SUCCESS
               ? QHostAddress(QString::fromLatin1(address)).toString()
               : QString();
  }

  MappingState Open(const Mapping& mapping) override {
    quint32 left = 0;
    const MappingState before = Look(mapping, left);
    if (before == MappingState::kTaken) {
      return before;
    }
    // A rule that lasts longer than this one stays as it is.
    if (before == MappingState::kOpen &&
        (left == 0 || (left > mapping.seconds && mapping.seconds))) {
      return StateOf(mapping, left);
    }
    int error = Add(mapping, mapping.seconds);
    if (error == kOnlyPermanent) {
      error = Add(mapping, 0);
    }
    switch (error) {
      case UPNPCOMMAND_SUCCESS: {
        const MappingState after = Look(mapping, left);
        return after == MappingState::kOpen ? StateOf(mapping, left) : after;
      }
      case kConflict:
      case kConflictWithOther:
        return MappingState::kTaken;
      case kNotAuthorized:
        return MappingState::kRefused;
      default:
        return error > 0 ? MappingState::kRefused : MappingState::kUnknown;
    }
  }

  MappingState Check(const Mapping& mapping) override {
    quint32 left = 0;
    return Look(mapping, left);
  }

  MappingState Close(const Mapping& mapping) override {
    if (const MappingState before = Check(mapping); before != MappingState::kOpen) {
      return before;
    }
    const int error =
        UPNP_DeletePortMapping(Control(), Service(), QByteArray::number(mapping.port).constData(),
                               mapping.udp ? "UDP" : "TCP", nullptr);
    return error == kNotAuthorized ? MappingState::kRefused : Check(mapping);
  }

 private:
  // Of a rule that is there and ends after `left` seconds; 0: never.
  static MappingState StateOf(const Mapping& mapping, quint32 left) {
    constexpr quint32 kOnTheWay = 60;  // passed since the rule was made
    if (left == 0) {
      return mapping.seconds == 0 ? MappingState::kOpen : MappingState::kForGood;
    }
    const bool is_shorter = mapping.seconds == 0 || left + kOnTheWay < mapping.seconds;
    return is_shorter ? MappingState::kShorter : MappingState::kOpen;
  }

  // kOpen whenever the rule is there. `left`: how many seconds it lasts; 0: without an end.
  MappingState Look(const Mapping& mapping, quint32& left) {
    char address[kAddressBytes] = "";
    char port[kAddressBytes] = "";
    char name[256] = "";
    char enabled[kAddressBytes] = "";
    char seconds[kAddressBytes] = "";
    const int error = UPNP_GetSpecificPortMappingEntry(
        Control(), Service(), QByteArray::number(mapping.port).constData(),
        mapping.udp ? "UDP" : "TCP", nullptr, address, port, name, enabled, seconds);
    if (error == kNoSuchEntry) {
      return MappingState::kMissing;
    }
    if (error != UPNPCOMMAND_SUCCESS) {
      return MappingState::kUnknown;
    }
    left = QByteArray(seconds).toUInt();
    const bool is_ours = QHostAddress(QString::fromLatin1(address)) == mapping.to &&
                         QByteArray(port).toInt() == mapping.port && QByteArray(enabled) != "0";
    return is_ours ? MappingState::kOpen : MappingState::kTaken;
  }

  int Add(const Mapping& mapping, quint32 seconds) const {
    const QByteArray port = QByteArray::number(mapping.port);
    return UPNP_AddPortMapping(Control(), Service(), port.constData(), port.constData(),
                               mapping.to.toString().toLatin1().constData(),
                               PlainName(mapping.name).constData(), mapping.udp ? "UDP" : "TCP",
                               nullptr, QByteArray::number(seconds).constData());
  }
  const char* Control() const { return urls_.controlURL; }
  const char* Service() const { return data_.first.servicetype; }

  UPNPUrls urls_;
  IGDdatas data_;
};

}  // namespace

std::unique_ptr<MappingRouter> FindUpnp(const QHostAddress& router) {
  int error = 0;
  const std::unique_ptr<UPNPDev, decltype(&freeUPNPDevlist)> devices(
      upnpDiscover(kDiscoverMilliseconds, nullptr, nullptr, UPNP_LOCAL_PORT_ANY, 0, kHops, &error),
      &freeUPNPDevlist);
  for (const UPNPDev* device = devices.get(); device != nullptr; device = device->pNext) {
    // Any device of the network may answer, and name any address.
    if (QHostAddress(QUrl(QString::fromLatin1(device->descURL)).host()) != router) {
      continue;
    }
    UPNPUrls urls = {};
    IGDdatas data = {};
    char own_address[kAddressBytes] = "";
    if (UPNP_GetIGDFromUrl(device->descURL, &urls, &data, own_address, sizeof(own_address)) != 1) {
      continue;
    }
    auto found = std::make_unique<UpnpRouter>(urls, data);
    if (QHostAddress(QUrl(QString::fromLatin1(urls.controlURL)).host()) == router) {
      return found;
    }
  }
  return nullptr;
}

}  // namespace quayline::mapper
