// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/page_job.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// Jobs on pages that never come to an end.
using StuckJob = PageJob;

TEST_F(StuckJob, AnEndlessPageIsStoppedAndTheNextJobRuns) {
  const struct {
    const char* fault;
    const char* markup;
  } pages[] = {
      {"loop in a click", "<input type=button name=go onclick='for(;;);'>"},
      {"loop in a script", "<script>for(;;);</script>"},
      {"messages without end", "<input type=button name=go onclick='for(var i=0;;)alert(i++)'>"},
      {"windows without end", "<input type=button name=go onclick='for(;;)window.open(\"/\")'>"},
      {"markup that grows",
       "<input type=button name=go onclick='setInterval(function(){"
       "document.body.appendChild(document.createElement(\"p\"))},0)'>"},
  };
  for (const auto& page : pages) {
    SCOPED_TRACE(page.fault);
    server_.replies["/page"] = Html(page.markup);
    server_.replies["/fine"] = Html("<input name=box>");
    Start({u"nav(\"page\")"_s, u"click_button(\"go\")"_s,
           u"wait_until_words_found(\"never there\")"_s});
    ASSERT_TRUE(LogHolds("Step 01"));
    RunUntil([] { return false; }, 300ms);
    runner_->Stop();
    EXPECT_TRUE(Ends(1s));
    EXPECT_TRUE(runner_->Outcome().stopped);
    runner_.reset();
    Start({u"nav(\"fine\")"_s, u"set_name(\"box,\")"_s});
    EXPECT_TRUE(Ends(20s));
    EXPECT_TRUE(runner_->Log().Text().contains(u"DONE!"_s));
    EXPECT_FALSE(runner_->Log().Text().contains(u"Failed"_s));
  }
}

TEST_F(StuckJob, AJobIsLetGoInTheMiddleOfAnything) {
  for (const char* markup : {"<script>for(;;);</script>", "<p>quiet"}) {
    server_.replies["/page"] = Html(markup);
    server_.replies["/silent"] = {.bytes = {}, .then = Reply::Then::kSilence};
    for (const char* path : {"page", "silent"}) {
      Start({u"nav(\"%1\")"_s.arg(QLatin1String(path)), u"wait_until_words_found(\"x\")"_s});
      ASSERT_TRUE(LogHolds("Step 01"));
      RunUntil([] { return false; }, 100ms);
      runner_.reset();
    }
  }
}

TEST_F(StuckJob, AHugePageIsWorkedOn) {
  QByteArray markup;
  for (int i = 0; i < 100000; ++i) {
    markup += "<p class='row of a long table with much to say about nothing'>" +
              QByteArray::number(i) + "<i></i></p>\n";
  }
  server_.replies["/page"] = Html("<form><input name=box>" + markup + "<input name=last></form>");
  Start({u"nav(\"page\")"_s, u"set_name(\"box,\")"_s, u"set_name(\"LAST,\")"_s});
  ASSERT_TRUE(Ends(60s));
  EXPECT_EQ(runner_->Log().Text().count(u"\r\n(Successful)\r\n"_s), 2)
      << runner_->Log().Text().toStdString();
}

}  // namespace
}  // namespace quayline::testing
