// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stress/navigation_stress.h"

#include <gtest/gtest.h>

#include "script/web/web_engine.h"
#include "test_main.h"

extern "C" void QuaylinePrepareTestBinary() { quayline::PrepareWebEngine(); }

namespace quayline::stress {
namespace {

using namespace std::chrono_literals;

TEST(NavigationStress, NoSaveIsLostAndNoWaitEndsEarlyOrNever) {
  const JobOptions options;
  const Translator translator{QString()};
  QList<WayResult> results;
  ASSERT_TRUE(testing::RunTask(
      RunStress(WebPageHosts(options, translator), {.steps_per_way = 2}, &results), 1200s))
      << "hung behind " << results.size() << " ways";
  for (const WayResult& result : results) {
    EXPECT_EQ(result.lost, 0) << result.way->name;
    EXPECT_EQ(result.early, 0) << result.way->name;
    EXPECT_EQ(result.failed, 0) << result.way->name;
  }
}

}  // namespace
}  // namespace quayline::stress
