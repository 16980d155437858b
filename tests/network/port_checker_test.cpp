// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The port checker with the real browser and a real test site: on this computer, and behind a
// router that translates addresses.

#include <QLabel>
#include <QTcpServer>

#include "demo/demo_site.h"
#include "network/natted_network.h"
#include "script/web/web_engine.h"
#include "ui/network/port_checker_window.h"
#include "ui/toolkit/controls.h"
#include "ui/window_fixture.h"

extern "C" void QuaylinePrepareTestBinary() { quayline::PrepareWebEngine(); }

namespace quayline::testing {
namespace {

using namespace std::chrono_literals;

class PortCheckerTest : public WindowTest {
 protected:
  void SetEntries(const QList<std::pair<QString, QString>>& ports_and_protocols,
                  const QString& computer = u"127.0.0.2"_s) {
    QList<PortEntry> entries;
    for (const auto& [port, protocol] : ports_and_protocols) {
      entries.append({.app_name = u"Rule"_s + port,
                      .forwarded_to = computer + u"(Desk)"_s,
                      .start_port = port,
                      .end_port = port,
                      .protocol = protocol});
    }
    context_->port_list.SetEntries(entries);
  }

  void Open(const QString& site, const QString& listen_on) {
    context_->maker_site.test_site = site;
    folder_.adapters.address_table = {listen_on};
    window_ = new PortCheckerWindow(*context_, prompts_,
                                    WebPageHosts(context_->job_options, context_->translator),
                                    nullptr, [this] { ++searches_; });
    window_->show();
  }
  // The result of each row.
  QStringList CheckAll() {
    Click("begin_button");
    EXPECT_TRUE(RunUntil([this] { return Find("begin_button")->isEnabled(); }, 60s));
    const auto* rows = Find<HintedList>("ports_view")->model();
    QStringList results;
    for (int row = 0; row < rows->rowCount(); ++row) {
      results.append(rows->index(row, 3).data().toString());
    }
    return results;
  }

  int searches_ = 0;  // for a second router
};

TEST_F(PortCheckerTest, PortsOfThisComputerAreOpenToASiteOnIt) {
  demo::DemoSite site;
  const auto port = site.Start({});
  ASSERT_TRUE(port.has_value());
  SetEntries({{u"48080"_s, u"TCP/UDP"_s}, {u"48081"_s, u"UDP"_s}});
  Open(u"http://127.0.0.1:%1"_s.arg(*port), u"127.0.0.2"_s);
  // The site probes 127.0.0.1, and this window listens on another address.
  EntryLook look{.on_router = EntryState::kOnRouter};
  const PortEntry first = context_->port_list.Entries().first();
  context_->port_list.NoteLooks({{.entry = first, .look = look}});
  prompts_.answers = {true};
  EXPECT_EQ(CheckAll(), QStringList({u"Failed"_s, u"Failed"_s}));
  EXPECT_EQ(context_->port_list.LooksOf({first}).first().outside->works, false);
  EXPECT_EQ(searches_, 1);  // the rule is there and nothing arrives
  EXPECT_EQ(TextOf("working_label"), "Checking Port: DONE!");
  SetEntries({{u"48080"_s, u"TCP"_s}}, u"192.168.1.30"_s);
  EXPECT_EQ(CheckAll().first(), u"Failed"_s);
  EXPECT_FALSE(context_->port_list.LooksOf(context_->port_list.Entries()).first().outside)
      << "what leads to a console cannot be heard here";
  EXPECT_EQ(searches_, 1);
}

TEST_F(PortCheckerTest, ASiteThatCannotBeReachedSaysNothingOfThePort) {
  QTcpServer nobody;
  ASSERT_TRUE(nobody.listen(QHostAddress::LocalHost));
  const quint16 port = nobody.serverPort();
  nobody.close();
  SetEntries({{u"48080"_s, u"TCP"_s}});
  Open(u"http://127.0.0.1:%1"_s.arg(port), u"127.0.0.2"_s);
  EXPECT_THAT(CheckAll().first().toStdString(), StartsWith("Not tested"));
  EXPECT_FALSE(context_->port_list.LooksOf(context_->port_list.Entries()).first().outside);
  EXPECT_THAT(TextOf("errors_edit"), HasSubstr("127.0.0.1"));
}

// What natted_network.sh runs at home.
TEST_F(PortCheckerTest, DISABLED_OnlyForwardedPortsAreOpenBehindARouter) {
  SetEntries({{u"8080"_s, u"TCP"_s},
              {u"8081"_s, u"UDP"_s},
              {u"8081"_s, u"TCP"_s},
              {u"8080"_s, u"UDP"_s},
              {u"9000"_s, u"TCP"_s}},
             u"192.168.77.2"_s);
  QTcpServer other;
  ASSERT_TRUE(other.listen(QHostAddress(u"192.168.77.2"_s), 9000));
  Open(qEnvironmentVariable("QUAYLINE_TEST_SITE"), u"192.168.77.2"_s);
  const QStringList results = CheckAll();
  EXPECT_EQ(results.first(4), QStringList({u"Success"_s, u"Success"_s, u"Failed"_s, u"Failed"_s}));
  EXPECT_THAT(results[4].toStdString(), StartsWith("Unable to check the port"));
}

TEST(PortCheckerBehindARouter, OnlyForwardedPortsAreOpen) {
  RunAtHome(u"PortCheckerTest.DISABLED_*"_s);
}

}  // namespace
}  // namespace quayline::testing
