// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/static_address_dialog.h"

#include <QLineEdit>

#include "platform/ipv4.h"
#include "ui/toolkit/controls.h"
#include "window_fixture.h"

namespace quayline::testing {
namespace {

class StaticAddressDialogTest : public WindowTest {
 protected:
  void Open(int adapters = 1) {
    for (int i = 1; i <= adapters; ++i) {
      setup_.adapters.append({.description = u"Home %1 (eth%1)"_s.arg(i), .index = i});
    }
    window_ = new StaticAddressDialog(*context_, prompts_, setup_, neighbours_, nullptr);
    window_->show();
    BeDone();
  }
  void BeDone() {
    EXPECT_TRUE(
        RunUntil([this] { return !window_ || !Find<AnimationBar>("busy_bar")->IsMoving(); }));
  }
  void Do(const char* button) {
    Click(button);
    BeDone();
  }

  FakeAddressSetup setup_;
  FakeNeighbours neighbours_;
};

TEST_F(StaticAddressDialogTest, TheOnlyAdapterIsShownWithANewAddressAndItsOwnRest) {
  context_->settings.SetValue(setting::kStaticIp, u"10.0.0.77"_s);
  Open();
  ExpectTexts({{"current_address_label", "192.168.1.20"},
               {"current_mask_label", "255.255.255.0"},
               {"current_gateway_label", "192.168.1.1"},
               {"current_first_server_label", "9.9.9.9"},
               {"current_second_server_label", "0.0.0.0"},
               {"mask_edit", "255.255.255.0"},
               {"gateway_edit", "192.168.1.1"},
               {"first_server_edit", "9.9.9.9"},
               {"second_server_edit", "0.0.0.0"}});
  EXPECT_THAT(TextOf("address_edit"), StartsWith("192.168.1."))
      << "the last one was of another net";
  EXPECT_THAT(TextOf("status_label"), HasSubstr("router gives"));
  Click("open_dns_button");
  ExpectTexts({{"first_server_edit", "208.67.222.222"}, {"second_server_edit", "208.67.220.220"}});
  Click("router_dns_button");
  ExpectTexts({{"first_server_edit", "192.168.1.1"}, {"second_server_edit", "0.0.0.0"}});
  Do("enable_button");
  EXPECT_EQ(setup_.wanted.servers, QList<quint32>{setup_.wanted.gateway});
}

TEST_F(StaticAddressDialogTest, TheLastAddressComesBackInItsNetwork) {
  context_->settings.SetValue(setting::kStaticIp, u"192.168.1.77"_s);
  Open();
  EXPECT_EQ(TextOf("address_edit"), "192.168.1.77");
  Do("enable_button");
  EXPECT_THAT(prompts_.shown, ElementsAre("Tell: Done!"));
  EXPECT_EQ(DottedIpv4(setup_.wanted.address), u"192.168.1.77"_s);
  EXPECT_TRUE(ComesToItsEnd());
}

TEST_F(StaticAddressDialogTest, OfSeveralAdaptersTheUserChoosesOne) {
  Open(2);
  EXPECT_EQ(Find<QComboBox>("adapter_box")->currentIndex(), -1);
  EXPECT_EQ(TextOf("status_label"), "") << "the adapters have been read";
  for (const char* button : {"enable_button", "disable_button", "random_button"}) {
    Do(button);
    EXPECT_EQ(prompts_.shown.back(), "Tell: Please Select An Adapter First");
  }
  EXPECT_EQ(setup_.changed, 0);
  Choose("adapter_box", 1);
  BeDone();
  setup_.result.code = SetupCode::kRestartNeeded;
  prompts_.shown.clear();
  Do("disable_button");
  EXPECT_EQ(setup_.changed, 2) << "the index of the adapter";
  EXPECT_THAT(prompts_.shown, ElementsAre("Tell: A reboot is required.", "Tell: Done!"));
  EXPECT_EQ(Stored(setting::kStaticIp), "");
  EXPECT_TRUE(ComesToItsEnd());
}

TEST_F(StaticAddressDialogTest, WhatIsWrongIsSaidAtItsFieldAndNothingIsChanged) {
  Open();
  Type("mask_edit", "255.0.255.0");
  Do("enable_button");
  EXPECT_THAT(TextOf("status_label"), HasSubstr("not a subnet mask"));
  EXPECT_TRUE(Find("mask_edit")->property("has_problem").toBool());
  Type("mask_edit", "255.255.255.0");
  EXPECT_FALSE(Find("mask_edit")->property("has_problem").toBool());
  neighbours_.answer = {.kind = NeighbourAnswer::Kind::kAnswers,
                        .hardware_address = QByteArray("\x00\x11\x32\x01\x02\x03", 6)};
  Do("enable_button");
  EXPECT_THAT(TextOf("status_label"), HasSubstr("00:11:32:01:02:03 (00:11:32 is of Synology)"));
  EXPECT_TRUE(Find("address_edit")->property("has_problem").toBool());
  EXPECT_EQ(setup_.changed, 0);
  EXPECT_THAT(prompts_.shown, IsEmpty());
}

TEST_F(StaticAddressDialogTest, EachResultHasItsText) {
  Open();
  const struct {
    SetupResult result;
    std::string text;
  } cases[] = {
      {{.code = SetupCode::kAccessDenied},
       "Status: Error! - Access denied.\n\nNothing was changed."},
      {{.code = SetupCode::kCannotConfigureDhcp, .undo = SetupResult::Undo::kRolledBack},
       "Status: Error! - Unable to configure DHCP service.\n\nWith the new settings this computer"},
      {{.code = static_cast<SetupCode>(72)}, "Status: Error! - Unknown."},
      {{.code = SetupCode::kInvalidGateway, .undo = SetupResult::Undo::kFailed, .detail = u"no"_s},
       "Status: Error! - Invalid gateway IP address.\n\nThe former settings could not be"},
      {{.code = SetupCode::kUnknownFailure, .undo = SetupResult::Undo::kUnknown, .detail = u"no"_s},
       "Status: Error! - Unknown failure.\n\nYour system did not answer in time"},
  };
  for (const auto& each : cases) {
    setup_.result = each.result;
    Do("enable_button");
    EXPECT_THAT(prompts_.shown.back(), StartsWith("Tell: " + each.text));
    EXPECT_TRUE(window_ && window_->isVisible());
  }
  EXPECT_THAT(prompts_.shown.back(), EndsWith("Your system says: no"));
  EXPECT_EQ(Stored(setting::kStaticIp), "");
}

TEST_F(StaticAddressDialogTest, WithoutTheServiceTheWindowSaysSo) {
  setup_.list_error = SetupResult{.code = SetupCode::kNotSupported, .is_service_missing = true};
  Open(0);
  EXPECT_THAT(TextOf("status_label"), HasSubstr("not managed by NetworkManager"));
  for (const char* button : {"enable_button", "disable_button", "random_button"}) {
    EXPECT_FALSE(Find(button)->isEnabled()) << button;
  }
  EXPECT_EQ(window_->focusWidget(), Find("close_button"));
}

TEST_F(StaticAddressDialogTest, TheWindowStaysOpenWhileAChangeIsMade) {
  Open();
  setup_.hangs = true;
  Click("disable_button");
  EXPECT_FALSE(Find("close_button")->isEnabled());
  window_->close();
  EXPECT_TRUE(window_ && window_->isVisible());
  EXPECT_THAT(TextOf("status_label"), HasSubstr("Asking the router"));
}

}  // namespace
}  // namespace quayline::testing
