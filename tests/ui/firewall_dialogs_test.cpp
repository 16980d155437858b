// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAbstractItemModel>

#include "platform/fake_firewall.h"
#include "ui/network/firewall_change_dialog.h"
#include "ui/network/firewall_list_dialog.h"
#include "ui/toolkit/controls.h"
#include "window_fixture.h"

namespace quayline::testing {
namespace {

class FirewallDialogsTest : public WindowTest {
 protected:
  void Open(std::optional<QList<FirewallPorts>> added) {
    delete window_.data();
    window_ = new FirewallChangeDialog(firewall_, std::move(added), context_->translator, nullptr);
    window_->show();
  }
  FakeFirewall firewall_;
};

// The ports of rows, as the main window has them.
QList<FirewallPorts> PortsOf(const QList<PortEntry>& entries) {
  return FirewallPortsOf(ComputeTotals(entries).forwarded);
}

TEST_F(FirewallDialogsTest, EachRowAndProtocolIsAddedOnceAndThePortsAreCounted) {
  Open(PortsOf({{.start_port = u"8080"_s, .end_port = u"8080"_s, .protocol = u"TCP/UDP"_s},
                {.start_port = u"8080"_s, .end_port = u"8080"_s, .protocol = u"TCP"_s},
                {.start_port = u"65534"_s, .end_port = u"70000"_s, .protocol = u"UDP"_s},
                {.start_port = u"9"_s, .end_port = u"8"_s, .protocol = u"UDP"_s}}));
  EXPECT_EQ(TextOf("count_label"), "Please wait...");
  EXPECT_TRUE(ComesToSay("count_label", "4 Ports Have been Added To The Windows Firewall"));
  EXPECT_EQ(firewall_.added,
            (QList<FirewallPorts>{{8080, 8080, 6}, {8080, 8080, 17}, {65534, 65535, 17}}));
  EXPECT_EQ(TextOf("note_label"), "The firewall of this computer is ufw.");

  Open(QList<FirewallPorts>{});
  EXPECT_TRUE(ComesToSay("count_label", "0 Ports Have been Added To The Windows Firewall"));
  EXPECT_EQ(TextOf("note_label"), "Your list has no ports yet.");
}

TEST_F(FirewallDialogsTest, TheRuleThatWaitsIsNamedAndCanBeStopped) {
  firewall_.hangs = true;
  const QList<FirewallPorts> everything{{1, 65535, 6}, {7, 7, 17}};
  Open(everything);
  EXPECT_TRUE(ComesToSay("count_label", "1/65536 - Adding QYL Port 1-65535 TCP"));
  Click("stop_button");
  EXPECT_FALSE(Find("stop_button")->isEnabled());
  EXPECT_THAT(TextOf("count_label"), HasSubstr("Stopped."));
  firewall_.hangs = false;
  EXPECT_FALSE(
      RunUntil([this] { return !firewall_.added.isEmpty(); }, std::chrono::milliseconds(50)));
}

TEST_F(FirewallDialogsTest, OnlyTheProgramsRulesAreRemovedWhateverTheirCase) {
  firewall_.view.rules = {{.name = u"QYL Port 80-81 TCP"_s, .first_port = 80, .last_port = 81},
                          {.name = u"qyl port 1"_s, .first_port = 1, .last_port = 1},
                          {.name = u"QYL"_s, .first_port = 2, .last_port = 2},
                          {.name = u"qyl port x"_s, .protocol = 47}};
  Open(std::nullopt);
  EXPECT_TRUE(ComesToSay("count_label", "3 Ports Added By QYL Have Been Removed."));
  EXPECT_EQ(firewall_.removed, (QList<FirewallPorts>{{80, 81, 6}, {1, 1, 6}}));
  firewall_.view.rules.clear();
  Open(std::nullopt);
  EXPECT_TRUE(ComesToSay("count_label", "0 Ports Added By QYL Have Been Removed."));
  EXPECT_EQ(TextOf("note_label"),
            "The firewall of this computer is ufw. There are no rules of Quayline in it.");
}

TEST_F(FirewallDialogsTest, WhatWasNotDoneIsSaid) {
  struct Case {
    FirewallError error;
    qsizetype failing;
    const char* count;
    const char* note;
  };
  const Case cases[] = {
      {{FirewallFault::kRefused, FirewallKind::kUfw, {}}, 0, "0 Ports", "nothing was changed"},
      {{FirewallFault::kMissing, FirewallKind::kUfw, u"pkexec"_s},
       0,
       "0 Ports",
       "not installed: pkexec"},
      {{FirewallFault::kMissing, FirewallKind::kNone, {}}, 0, "0 Ports", "No firewall is active"},
      {{FirewallFault::kFailed, FirewallKind::kUfw, u"ERROR: no"_s}, 1, "2 Ports", "ERROR: no"},
  };
  for (const Case& each : cases) {
    firewall_.error = each.error;
    firewall_.failing = each.failing;
    Open(QList<FirewallPorts>{{5, 6, 6}, {7, 7, 17}});
    EXPECT_TRUE(ComesToSay("note_label", each.note)) << TextOf("note_label");
    EXPECT_THAT(TextOf("count_label"), StartsWith(each.count));
  }
}

TEST_F(FirewallDialogsTest, TheListShowsEveryRuleAndProtocolsByTheirNumber) {
  firewall_.view.rules = {{.name = u"ssh"_s, .first_port = 22, .last_port = 22},
                          {.name = u"tunnel"_s, .protocol = 47},
                          {.name = u"QYL Port 5-6 UDP"_s,
                           .first_port = 5,
                           .last_port = 6,
                           .protocol = 17,
                           .is_enabled = false}};
  window_ = new FirewallListDialog(firewall_, context_->translator, nullptr);
  window_->show();
  EXPECT_EQ(window_->windowTitle(), u"Current Windows Firewall Port Exceptions"_s);
  EXPECT_EQ(TextOf("total_label"), "0");
  EXPECT_TRUE(Find("wait_label")->isVisible());
  EXPECT_TRUE(ComesToSay("total_label", "3"));
  EXPECT_FALSE(Find("wait_label")->isVisible());
  const auto* rows = Find<HintedList>("rules_view")->model();
  QStringList cells;
  for (int row = 0; row < rows->rowCount(); ++row) {
    for (int column = 0; column < 4; ++column) {
      cells.append(rows->index(row, column).data().toString());
    }
  }
  EXPECT_EQ(cells.join(u'|'),
            u"ssh|22|TCP|True|tunnel||Unknown - 47|True|QYL Port 5-6 UDP|5-6|UDP|False"_s);
  firewall_.error = FirewallError{FirewallFault::kRefused, FirewallKind::kNftables, {}};
  Click("refresh_button");
  EXPECT_TRUE(ComesToSay("note_label", "to administrators only"));
  EXPECT_EQ(TextOf("total_label"), "0");
}

}  // namespace
}  // namespace quayline::testing
