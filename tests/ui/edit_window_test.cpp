// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

#include "entry_doubles.h"
#include "test_main.h"
#include "ui/entries/frm_edit.h"

namespace quayline::testing {
namespace {

PortEntry Row(const char* name, const char* forwarded_to, const char* port, const char* protocol) {
  return {.app_name = QLatin1String(name),
          .forwarded_to = QLatin1String(forwarded_to),
          .start_port = QLatin1String(port),
          .end_port = QLatin1String(port),
          .protocol = QLatin1String(protocol),
          .description = QStringLiteral("kept")};
}

class EditWindowTest : public ::testing::Test {
 protected:
  EditWindowTest() {
    context_.session.max_range = QStringLiteral("100");
    context_.session.min_port = QStringLiteral("1");
    context_.session.max_port = QStringLiteral("65535");
    context_.session.supports_both = QStringLiteral("no");
    context_.port_list.SetEntries({Row("First", "10.0.0.1(Desk)", "80", "TCP"),
                                   Row("LongProgram01", "printer", "90", "tcp/udp")});
  }
  ~EditWindowTest() override { delete window_.data(); }

  void Open(int row) {
    window_ = rig_.windows.Edit(&desk_, row, [this] { ++stored_; });
    window_->show();
  }
  template <typename T>
  T* Find(const char* name) {
    return window_->findChild<T*>(QLatin1String(name));
  }
  bool Update() {
    const int before = stored_;
    Find<QPushButton>("Command1")->click();
    return stored_ > before && RunUntil([&] { return window_.isNull(); });
  }
  const PortEntry& Entry(int row) const { return context_.port_list.Entries().at(row); }

  ProgramFolder folder_;
  FakePrompts prompts_;
  AppContext context_{folder_.dir.path(), folder_.adapters, folder_.desktop};
  EntryRig rig_{context_, prompts_};
  QWidget desk_;
  QPointer<QDialog> window_;
  int stored_ = 0;
};

TEST_F(EditWindowTest, AnUnchangedRowPassesAndLosesNothingOfWhatItHolds) {
  Open(1);
  EXPECT_EQ(Find<QComboBox>("Combo1")->count(), 3) << "also for a router without a common rule";
  EXPECT_EQ(Find<QComboBox>("Combo4")->currentText(), QStringLiteral("printer"));
  EXPECT_EQ(Find<QComboBox>("Combo4")->count(), 2) << "this computer's addresses";
  ASSERT_TRUE(Update()) << prompts_.shown.join(u'/').toStdString();
  EXPECT_EQ(Entry(1), Row("LongProgram01", "printer()", "90", "TCP/UDP"));
}

TEST_F(EditWindowTest, AChangedRowKeepsItsPlaceAndDescription) {
  Open(0);
  EXPECT_EQ(Find<QComboBox>("Combo4")->currentText(), QStringLiteral("10.0.0.1"));
  auto* name = Find<QLineEdit>("Text1");
  EXPECT_EQ(name->maxLength(), 10);
  name->setText(QStringLiteral("Other"));
  Find<QLineEdit>("Text2")->setText(QStringLiteral("70"));
  Find<QLineEdit>("Text3")->setText(QStringLiteral("71"));
  Find<QComboBox>("Combo1")->setCurrentIndex(1);
  Find<QComboBox>("Combo4")->setEditText(QStringLiteral("10.0.0.2"));
  ASSERT_TRUE(Update()) << prompts_.shown.join(u'/').toStdString();
  PortEntry expected = Row("Other", "10.0.0.2()", "70", "UDP");
  expected.end_port = QStringLiteral("71");
  EXPECT_EQ(Entry(0), expected);
  EXPECT_TRUE(context_.databases.CustomPorts().isEmpty());
}

TEST_F(EditWindowTest, ARefusalLeavesTheRowAndTheWindow) {
  Open(0);
  Find<QLineEdit>("Text3")->setText(QStringLiteral("90"));
  EXPECT_FALSE(Update());
  EXPECT_TRUE(prompts_.shown.last().startsWith(QStringLiteral("Tell: 'LongProgram01' Already")));
  EXPECT_EQ(Entry(0), Row("First", "10.0.0.1(Desk)", "80", "TCP"));
  EXPECT_TRUE(window_->isVisible());
}

TEST_F(EditWindowTest, ANamelessComputerIsAskedAboutOnce) {
  context_.session.needs_computer_name = QStringLiteral("yes");
  Open(0);
  EXPECT_FALSE(Update()) << "the answer is No";
  EXPECT_EQ(Entry(0).forwarded_to, QStringLiteral("10.0.0.1(Desk)"));
  prompts_.answers = {true};
  ASSERT_TRUE(Update());
  EXPECT_EQ(prompts_.shown.size(), 2);
  EXPECT_EQ(Entry(0).forwarded_to, QStringLiteral("10.0.0.1()"));
}

TEST_F(EditWindowTest, ClosingDuringTheSearchForANameChangesNothing) {
  context_.session.needs_computer_name = QStringLiteral("yes");
  rig_.host_names.hangs = true;
  Open(0);
  EXPECT_FALSE(Update());
  EXPECT_FALSE(Find<QPushButton>("Command1")->isEnabled());
  Find<QPushButton>("command_close")->click();
  EXPECT_TRUE(RunUntil([&] { return window_.isNull(); }));
  EXPECT_EQ(stored_, 0);
}

}  // namespace
}  // namespace quayline::testing
