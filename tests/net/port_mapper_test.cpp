// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/port_mapper.h"

#include <QSocketNotifier>
#include <QtEndian>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "net/router_chain.h"
#include "test_main.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

constexpr quint16 kNatPmpPort = 5351;

// A router that speaks NAT-PMP, and answers each request twice: libraries repeat a request whose
// answer takes long. It opens every port but TCP 9002, which is taken, and UDP 9003, which it
// refuses.
class SlowRouter final {
 public:
  explicit SlowRouter(const RouterChain& chain) : socket_(chain.SocketOutside(SOCK_DGRAM)) {
    sockaddr_in own{.sin_family = AF_INET, .sin_port = htons(kNatPmpPort)};
    EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&own), sizeof own), 0);
    notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { Answer(); });
  }
  ~SlowRouter() {
    notifier_.reset();
    close(socket_);
  }
  SlowRouter(const SlowRouter&) = delete;
  SlowRouter& operator=(const SlowRouter&) = delete;

 private:
  void Answer() const {
    QByteArray request(64, '\0');
    sockaddr_in from{};
    socklen_t size = sizeof from;
    const auto length =
        recvfrom(socket_, request.data(), 64, 0, reinterpret_cast<sockaddr*>(&from), &size);
    request.truncate(std::max<qsizetype>(length, 0));
    if (request.size() >= 2) {
      const QByteArray answer = AnswerTo(request);
      for (int time = 0; time < 2; ++time) {
        sendto(socket_, answer.constData(), static_cast<size_t>(answer.size()), 0,
               reinterpret_cast<const sockaddr*>(&from), size);
      }
    }
  }

  static QByteArray AnswerTo(const QByteArray& request) {
    const char operation = request.at(1);
    QByteArray answer(8, '\0');
    answer[1] = static_cast<char>(operation + 128);
    if (operation == 0) {
      return answer + QByteArray::fromHex("cb007102");  // 203.0.113.2
    }
    const auto port = qFromBigEndian<quint16>(request.constData() + 4);
    const bool is_tcp = operation == 2;
    if (!is_tcp && port == 9003) {
      answer[3] = 2;  // not authorized
    }
    QByteArray outside = request.mid(6, 2);
    if (is_tcp && port == 9002) {
      outside = QByteArray::fromHex("ffff");
    }
    return answer + request.mid(4, 2) + outside + request.mid(8);
  }

  int socket_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

TEST(PortMapperTest, AnAnswerThatComesTwiceIsNotThatToTheNextRequest) {
  const RouterChain chain({u"192.168.1"_s});
  if (!chain.IsReady()) {
    GTEST_SKIP() << "needs the right to make networks, and iproute2";
  }
  const SlowRouter router(chain);
  QList<PortEntry> entries;
  for (const auto& [port, protocol] : {std::pair(u"9001"_s, u"TCP"_s),
                                       {u"9001"_s, u"UDP"_s},
                                       {u"9002"_s, u"TCP"_s},
                                       {u"9003"_s, u"UDP"_s}}) {
    entries.append({.forwarded_to = u"192.168.1.2"_s,
                    .start_port = port,
                    .end_port = port,
                    .protocol = protocol});
  }
  MappingAnswer answer;
  const auto open = [](QList<PortEntry> asked, MappingAnswer* out) -> Task<> {
    const auto got = co_await AskRouterToMap({.verb = MappingVerb::kOpen,
                                              .router = u"192.168.1.1"_s,
                                              .entries = asked,
                                              .time = std::chrono::hours(1)});
    *out = got.value_or(MappingAnswer());
  };
  ASSERT_TRUE(RunTask(open(entries, &answer)));
  EXPECT_EQ(answer.protocol, u"NAT-PMP"_s);
  EXPECT_EQ(answer.outside_address, u"203.0.113.2"_s);
  using enum MappingResult;
  EXPECT_EQ(answer.results, (QList<MappingResult>{kOpen, kOpen, kTaken, kRefused}));
}

}  // namespace
}  // namespace quayline::testing
