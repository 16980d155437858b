// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAbstractItemModel>

#include "network/natted_network.h"
#include "ui/network/quick_ports_dialog.h"
#include "ui/toolkit/controls.h"
#include "ui/window_fixture.h"

namespace quayline::testing {
namespace {

using namespace std::chrono_literals;

class QuickPortsTest : public WindowTest {
 protected:
  // Rows "name start end protocol address" of the list.
  void SetList(const QList<QStringList>& rows) {
    QList<PortEntry> entries;
    for (const QStringList& row : rows) {
      entries.append({.app_name = row[0],
                      .forwarded_to = row[4] + u"()"_s,
                      .start_port = row[1],
                      .end_port = row[2],
                      .protocol = row[3]});
    }
    context_->port_list.SetEntries(entries);
  }
  void Open(QuickPortsDialog::Ask ask = AskRouterToMap) {
    window_ = new QuickPortsDialog(*context_, nullptr, std::move(ask));
    window_->show();
    ComeToAnswer();
  }
  void ComeToAnswer() {
    EXPECT_TRUE(RunUntil([this] { return Find("check_button")->isEnabled(); }, 60s));
  }
  QStringList States() const {
    const auto* rows = Find<HintedList>("entries_view")->model();
    QStringList states;
    for (int row = 0; row < rows->rowCount(); ++row) {
      states.append(rows->index(row, 2).data().toString());
    }
    return states;
  }
};

TEST_F(QuickPortsTest, OnlyEntriesOfThisComputerAreAskedFor) {
  SetList({{u"Web"_s, u"80"_s, u"80"_s, u"TCP"_s, u"192.168.1.20"_s},
           {u"Other"_s, u"81"_s, u"81"_s, u"TCP"_s, u"192.168.1.99"_s},
           {u"Wide"_s, u"1"_s, u"65535"_s, u"UDP"_s, u"192.168.1.20"_s}});
  context_->session.router_ip = u"192.168.1.1"_s;
  QList<MappingRequest> requests;
  Open([&](MappingRequest request) -> Task<std::expected<MappingAnswer, Message>> {
    requests.append(request);
    co_return MappingAnswer{.protocol = u"UPnP"_s,
                            .outside_address = u"198.51.100.7"_s,
                            .results = {MappingResult::kMissing}};
  });
  EXPECT_EQ(States(),
            QStringList({u"Not open"_s, u"Only ports of this computer can be opened this way"_s,
                         u"Has too many ports, or wrong ones"_s}));
  EXPECT_THAT(TextOf("answer_label"), HasSubstr("UPnP"));
  Choose("time_box", 1);
  Click("open_button");
  ComeToAnswer();
  ASSERT_EQ(requests.size(), 2);
  EXPECT_EQ(requests[0].verb, MappingVerb::kCheck);  // nothing is opened unasked
  EXPECT_EQ(requests[1].verb, MappingVerb::kOpen);
  EXPECT_EQ(requests[1].time, 24h);
  EXPECT_EQ(requests[1].entries.size(), 1);
}

TEST_F(QuickPortsTest, ARouterThatDoesNotSpeakItIsLeftAlone) {
  SetList({{u"Web"_s, u"80"_s, u"80"_s, u"TCP"_s, u"192.168.1.20"_s}});
  context_->session.router_ip.clear();
  Open();
  EXPECT_THAT(TextOf("answer_label"), HasSubstr("address of your router is missing"));
  context_->session.router_ip = u"192.168.1.1"_s;
  for (const bool fails : {false, true}) {
    Open([fails](MappingRequest) -> Task<std::expected<MappingAnswer, Message>> {
      if (fails) {
        co_return std::unexpected(Message{"No answer."});
      }
      co_return MappingAnswer{.results = {MappingResult::kUnknown}};
    });
    EXPECT_FALSE(Find("open_button")->isEnabled());
    EXPECT_EQ(States(), QStringList(QString()));
  }
}

// What natted_network.sh runs at home.
TEST_F(QuickPortsTest, DISABLED_ARouterOpensAndClosesPorts) {
  context_->session.router_ip = qEnvironmentVariable("QUAYLINE_UPNP_ROUTER");
  if (context_->session.router_ip.isEmpty()) {
    GTEST_SKIP() << "needs miniupnpd";
  }
  folder_.adapters.address_table = {u"192.168.77.2"_s};
  SetList({{u"Game"_s, u"9001"_s, u"9003"_s, u"TCP/UDP"_s, u"192.168.77.2"_s},
           {u"Web"_s, u"80"_s, u"80"_s, u"TCP"_s, u"192.168.77.2"_s}});
  Open();
  EXPECT_EQ(States(), QStringList({u"Not open"_s, u"Not open"_s}));
  EXPECT_EQ(TextOf("answer_label"),
            "Your router opens ports on request (UPnP). Its address on the internet: 11.22.33.2");
  Click("open_button");
  ComeToAnswer();
  EXPECT_EQ(States(), QStringList({u"Open"_s, u"Your router refuses it"_s}));
  Click("close_ports_button");
  ComeToAnswer();
  EXPECT_EQ(States(), QStringList({u"Not open"_s, u"Not open"_s}));
}

TEST(QuickPortsBehindARouter, ARouterOpensAndClosesPorts) {
  RunAtHome(u"QuickPortsTest.DISABLED_*"_s);
}

}  // namespace
}  // namespace quayline::testing
