// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/page_operations.h"
#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using page_operation::GetElementValue;

TEST_F(WebTest, QuestionsAheadOfTheFirstPageAreNoErrorsToShow) {
  EXPECT_EQ(Ask(GetElementValue(u"a"_s)), kNoAnswer);
  bool quiet = false;
  host->ReportIdle(PendingWork::kAny, [&quiet](IdleReport) { quiet = true; });
  RunInPage("1");
  EXPECT_TRUE(RunUntil([&quiet] { return quiet; }));
  EXPECT_EQ(script_errors, QStringList());
}

}  // namespace
}  // namespace quayline::testing
