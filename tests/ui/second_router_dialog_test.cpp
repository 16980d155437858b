// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/second_router_dialog.h"

#include <QLineEdit>
#include <QPlainTextEdit>

#include "window_fixture.h"

namespace quayline::testing {
namespace {

// Answers each echo with the next of its replies, and then never.
class FakeEchoes final : public Echoes {
 public:
  Task<EchoReply> Send(QString /*target*/, int ttl, std::chrono::milliseconds /*limit*/) override {
    asked.append(ttl);
    if (replies.isEmpty()) {
      co_await Until([] { return false; });
    }
    co_await Sleep(std::chrono::milliseconds(1));
    co_return replies.takeFirst();
  }

  QList<EchoReply> replies;
  QList<int> asked;
};

class SecondRouterDialogTest : public WindowTest {
 protected:
  SecondRouterDialogTest() {
    folder_.adapters.adapters = {UsedAdapter(), {.description = u"idle"_s}};
    window_ = new SecondRouterDialog(folder_.adapters, echoes_, context_->translator, nullptr);
    window_->show();
  }

  std::string Log() const { return Find<QPlainTextEdit>("log_edit")->toPlainText().toStdString(); }
  bool Check(const QList<EchoReply>& replies) {
    echoes_.asked.clear();
    echoes_.replies = replies;
    Click("check_button");
    EXPECT_FALSE(Find("check_button")->isEnabled());
    return RunUntil([this] { return Find("check_button")->isEnabled(); });
  }

  FakeEchoes echoes_;
};

using Kind = EchoReply::Kind;

TEST_F(SecondRouterDialogTest, TheLogNamesEachRouterAndTheAnswerIsTheirNumber) {
  EXPECT_EQ(Log(), "Status Log:\n");
  EXPECT_EQ(Find<QComboBox>("adapter_box")->count(), 2);
  EXPECT_EQ(TextOf("adapter_box"), "eth0");
  const EchoReply home{Kind::kHop, u"10.0.0.1"_s};
  const EchoReply outer{Kind::kHop, u"192.168.7.1"_s};
  const EchoReply target{Kind::kReached, u"208.67.222.222"_s};
  const EchoReply silence;
  ASSERT_TRUE(Check({home, outer, target, target, target}));
  EXPECT_EQ(Log(),
            "Status Log:\nChecking for routers...\n\nPossible 1st Router: 10.0.0.1\n"
            "Possible 2nd Router: 192.168.7.1\nRouters Found: 2\n");
  EXPECT_EQ(TextOf("count_label"), "2");
  EXPECT_THAT(TextOf("advice_label"), HasSubstr("each of these routers"));

  // Each silence costs the next hop as well.
  Find<QLineEdit>("outside_address_edit")->setText(u"198.51.100.4"_s);
  ASSERT_TRUE(Check({silence, outer, silence}));
  EXPECT_EQ(echoes_.asked, (QList<int>{1, 3, 4}));
  EXPECT_EQ(TextOf("count_label"), "1") << "the router has a public address itself";
  EXPECT_THAT(Log(), HasSubstr("198.51.100.4 is public"));

  Find<QLineEdit>("outside_address_edit")->setText(u"198.51.100.444"_s);
  ASSERT_TRUE(Check({silence, outer, silence}));
  EXPECT_THAT(Log(), HasSubstr("\"198.51.100.444\" is not an address"));

  Find<QLineEdit>("outside_address_edit")->clear();
  ASSERT_TRUE(Check({{Kind::kForbidden, {}}}));
  EXPECT_EQ(TextOf("count_label"), "1");
  EXPECT_EQ(TextOf("advice_label"), "");
  EXPECT_THAT(Log(), HasSubstr("does not allow programs"));

  folder_.adapters.adapters.clear();
  ASSERT_TRUE(Check({silence, silence, silence}));
  EXPECT_THAT(Log(), HasSubstr("No router answered"));
}

TEST_F(SecondRouterDialogTest, ClosingEndsASearchThatWaits) {
  Click("check_button");
  ASSERT_TRUE(RunUntil([this] { return !echoes_.asked.isEmpty(); }));
  Click("close_button");
  EXPECT_TRUE(RunUntil([this] { return window_ == nullptr; }));
}

}  // namespace
}  // namespace quayline::testing
