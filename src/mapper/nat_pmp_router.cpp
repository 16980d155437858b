// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <limits>
#include <natpmp.h>
#include <netinet/in.h>
#include <sys/select.h>
#include <sys/socket.h>

#include "mapper/mapping_router.h"

namespace quayline::mapper {

namespace {

constexpr int kMaxWaits = 4;  // each is twice as long as the one before, four seconds in all

class NatPmpRouter final : public MappingRouter {
 public:
  explicit NatPmpRouter(const QHostAddress& router)
      : is_ready_(initnatpmp(&state_, 1, htonl(router.toIPv4Address())) == 0) {}
  ~NatPmpRouter() override { closenatpmp(&state_); }
  NatPmpRouter(const NatPmpRouter&) = delete;
  NatPmpRouter& operator=(const NatPmpRouter&) = delete;

  QString Protocol() const override { return QStringLiteral("nat-pmp"); }

  QString OutsideAddress() override {
    natpmpresp_t response = {};
    if (!is_ready_ || sendpublicaddressrequest(&state_) < 0 || Await(response) != 0) {
      return {};
    }
    return QHostAddress(ntohl(response.pnu.publicaddress.addr.s_addr)).toString();
  }

  MappingState Open(const Mapping& mapping) override {
    if (!LeadsHere(mapping)) {
      return MappingState::kRefused;
    }
    // The protocol knows no rule without an end: the longest is asked for.
    constexpr quint32 kLongest = std::numeric_limits<qint32>::max();
    natpmpresp_t response = {};
    const int error = Ask(mapping, mapping.seconds != 0 ? mapping.seconds : kLongest, response);
    if (error != 0) {
      return error == NATPMP_ERR_NOTAUTHORIZED ? MappingState::kRefused : MappingState::kUnknown;
    }
    const auto& granted = response.pnu.newportmapping;
    if (granted.mappedpublicport != mapping.port) {
      // The port is taken. The other one that the router names may be of another program on this
      // computer: it is not removed, and is left to end by itself.
      constexpr quint32 kUsual = 7200;
      Ask(mapping, kUsual, response);
      return MappingState::kTaken;
    }
    const quint32 wanted = mapping.seconds != 0 ? mapping.seconds : kLongest;
    return granted.lifetime < wanted ? MappingState::kShorter : MappingState::kOpen;
  }

  // The protocol has no question for it.
  MappingState Check(const Mapping&) override { return MappingState::kUnknown; }

  MappingState Close(const Mapping& mapping) override {
    if (!LeadsHere(mapping)) {
      return MappingState::kRefused;
    }
    natpmpresp_t response = {};
    const int error = Ask(mapping, 0, response);
    return error == 0                          ? MappingState::kMissing
           : error == NATPMP_ERR_NOTAUTHORIZED ? MappingState::kRefused
                                               : MappingState::kUnknown;
  }

 private:
  // The protocol opens ports to the computer that asks, and to no other.
  bool LeadsHere(const Mapping& mapping) const {
    sockaddr_in own = {};
    socklen_t size = sizeof(own);
    return getsockname(state_.s, reinterpret_cast<sockaddr*>(&own), &size) == 0 &&
           QHostAddress(ntohl(own.sin_addr.s_addr)) == mapping.to;
  }

  int Ask(const Mapping& mapping, quint32 seconds, natpmpresp_t& response) {
    const int protocol = mapping.udp ? NATPMP_PROTOCOL_UDP : NATPMP_PROTOCOL_TCP;
    const int sent = sendnewportmappingrequest(&state_, protocol, mapping.port,
                                               seconds == 0 ? 0 : mapping.port, seconds);
    return sent < 0 ? sent : Await(response);
  }

  int Await(natpmpresp_t& response) {
    int error = NATPMP_TRYAGAIN;
    for (int wait = 0; wait < kMaxWaits && error == NATPMP_TRYAGAIN; ++wait) {
      fd_set readable;
      FD_ZERO(&readable);
      FD_SET(state_.s, &readable);
      timeval time = {};
      getnatpmprequesttimeout(&state_, &time);
      select(state_.s + 1, &readable, nullptr, nullptr, &time);
      error = readnatpmpresponseorretry(&state_, &response);
    }
    return error;
  }

  natpmp_t state_ = {};
  bool is_ready_;
};

}  // namespace

std::unique_ptr<MappingRouter> FindNatPmp(const QHostAddress& router) {
  auto found = std::make_unique<NatPmpRouter>(router);
  return found->OutsideAddress().isEmpty() ? nullptr : std::move(found);
}

}  // namespace quayline::mapper
