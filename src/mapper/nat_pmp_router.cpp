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
  explicit NatPmpRouter(const QHostAddress& router) : router_(router) {}
  NatPmpRouter(const NatPmpRouter&) = delete;
  NatPmpRouter& operator=(const NatPmpRouter&) = delete;

  QString Protocol() const override { return QStringLiteral("nat-pmp"); }

  QString OutsideAddress() override {
    natpmpresp_t response = {};
    const int error =
        Request([](natpmp_t* link) { return sendpublicaddressrequest(link); }, response);
    if (error != 0) {
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
  bool LeadsHere(const Mapping& mapping) const { return own_ == mapping.to; }

  int Ask(const Mapping& mapping, quint32 seconds, natpmpresp_t& response) {
    const auto send = [&](natpmp_t* link) {
      const int protocol = mapping.udp ? NATPMP_PROTOCOL_UDP : NATPMP_PROTOCOL_TCP;
      return sendnewportmappingrequest(link, protocol, mapping.port,
                                       seconds == 0 ? 0 : mapping.port, seconds);
    };
    return Request(send, response);
  }

  // Each request has a socket of its own. A slow router is asked again and answers twice; the
  // library would take the second answer for that to the next request.
  template <typename Send>
  int Request(Send send, natpmpresp_t& response) {
    natpmp_t link = {};
    int error = initnatpmp(&link, 1, htonl(router_.toIPv4Address()));
    if (error == 0) {
      own_ = OwnAddress(link);
      const int sent = send(&link);
      error = sent < 0 ? sent : Await(link, response);
    }
    closenatpmp(&link);
    return error;
  }

  static QHostAddress OwnAddress(const natpmp_t& link) {
    sockaddr_in own = {};
    socklen_t size = sizeof(own);
    return getsockname(link.s, reinterpret_cast<sockaddr*>(&own), &size) == 0
               ? QHostAddress(ntohl(own.sin_addr.s_addr))
               : QHostAddress();
  }

  static int Await(natpmp_t& link, natpmpresp_t& response) {
    int error = NATPMP_TRYAGAIN;
    for (int wait = 0; wait < kMaxWaits && error == NATPMP_TRYAGAIN; ++wait) {
      fd_set readable;
      FD_ZERO(&readable);
      FD_SET(link.s, &readable);
      timeval time = {};
      getnatpmprequesttimeout(&link, &time);
      select(link.s + 1, &readable, nullptr, nullptr, &time);
      error = readnatpmpresponseorretry(&link, &response);
    }
    return error;
  }

  QHostAddress router_;
  QHostAddress own_;  // of this computer towards the router, known from the first request on
};

}  // namespace

std::unique_ptr<MappingRouter> FindNatPmp(const QHostAddress& router) {
  auto found = std::make_unique<NatPmpRouter>(router);
  return found->OutsideAddress().isEmpty() ? nullptr : std::move(found);
}

}  // namespace quayline::mapper
