// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include "main_fixture.h"
#include "ui/toolkit/controls.h"

namespace quayline::testing {
namespace {

struct Refusal {
  const char* name;
  const char* router;
  const char* address;
  const char* list;
  const char* message;  // a part of it
  const char* focus;    // the control that has it afterwards; "" is any
  int row;              // the selected one
};

class UpdateRefusalTest : public MainWindowTest, public ::testing::WithParamInterface<Refusal> {};

TEST_P(UpdateRefusalTest, SaysWhyAndPointsThere) {
  const Refusal& refusal = GetParam();
  folder_.WriteFile("list.qyl", refusal.list);
  folder_.WriteFile("settings.ini", "[main]\r\nrouter=Alpha 1\r\n");
  Start();
  Find<QComboBox>("Combo1")->setEditText(QLatin1String(refusal.router));
  Find<QLineEdit>("Text1")->setText(QLatin1String(refusal.address));
  auto* button = Find<QAbstractButton>("Command8");
  button->setFocus();
  button->click();
  ASSERT_EQ(prompts_.shown.size(), 1);
  EXPECT_TRUE(prompts_.shown.first().contains(QLatin1String(refusal.message)))
      << prompts_.shown.first().toStdString();
  EXPECT_TRUE(jobs_.isEmpty());
  if (*refusal.focus) {
    ASSERT_NE(window_->focusWidget(), nullptr);
    EXPECT_EQ(window_->focusWidget()->objectName(), QLatin1String(refusal.focus));
  }
  if (refusal.row >= 0) {
    EXPECT_EQ(Find<HintedList>("ListView1")->currentIndex().row(), refusal.row);
  }
}

constexpr char kOne[] = "A|1.1.1.1()|5|5|TCP|x\r\n";

INSTANTIATE_TEST_SUITE_P(
    All, UpdateRefusalTest,
    ::testing::Values(
        Refusal{"NoRouter", "", "1.1.1.1", kOne, "Please Choose A Router.", "Combo1", -1},
        Refusal{"NoAddress", "Alpha 1", "0.0.0.0", kOne, "Please Set Router IP.", "Text1", -1},
        Refusal{"NoPorts", "Alpha 1", "1.1.1.1", "", "You must have at least 1 port", "", -1},
        Refusal{"NameTwice", "Alpha 1", "1.1.1.1",
                "B|1.1.1.1()|9|9|TCP|x\r\nA|1.1.1.1()|5|5|TCP|x\r\na|1.1.1.1()|7|7|UDP|x\r\n",
                "'A'", "ListView1", 1},
        Refusal{"RangeTooLong", "Alpha 1", "1.1.1.1", "A|1.1.1.1()|5|106|TCP|x\r\n", "101", "",
                -1}),
    [](const auto& test) { return test.param.name; });

TEST_F(MainWindowTest, AnAcceptedListIsClampedInTheViewAndNotInTheFile) {
  const QByteArray list = "A|1.1.1.1()|0|70000|TCP|x\r\n";
  QStringList row = RouterRow(3, QStringLiteral("Alpha 1"), QString());
  row[7] = QStringLiteral("70000");  // largest range
  folder_.WriteDatabases({row});
  folder_.WriteFile("list.qyl", list);
  folder_.WriteFile("settings.ini", "[main]\r\nrouter=Alpha 1\r\nrouterip=1.1.1.1\r\n");
  Start();
  context_->job_flags.SetJobStopRequested(true);
  context_->job_flags.SetJobDebugMode(true);
  context_->job_flags.job_error_grace = 0;
  Find<QAbstractButton>("Command8")->click();
  EXPECT_TRUE(prompts_.shown.isEmpty()) << prompts_.shown.join(u'/').toStdString();
  ASSERT_EQ(jobs_.size(), 1);
  EXPECT_TRUE(jobs_.first()->isVisible());
  EXPECT_FALSE(context_->job_flags.JobStopRequested());
  EXPECT_FALSE(context_->job_flags.JobDebugMode());
  EXPECT_EQ(context_->job_flags.job_error_grace, 1);
  EXPECT_EQ(context_->port_list.Entries().first().start_port, QStringLiteral("1"));
  EXPECT_EQ(context_->port_list.Entries().first().end_port, QStringLiteral("65535"));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), list);

  Find<QAbstractButton>("Command8")->click();
  ASSERT_EQ(jobs_.size(), 2);
  EXPECT_TRUE(jobs_.first().isNull()) << "the job before is dropped first";
}

}  // namespace
}  // namespace quayline::testing
