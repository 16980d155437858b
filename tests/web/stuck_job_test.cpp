// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/page_job.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// Jobs on pages that never come to an end.
using StuckJob = PageJob;

constexpr char kHalf[] = "the head of a page and half its body";

TEST_F(StuckJob, AnEndlessPageIsStoppedAndTheNextJobRuns) {
  const struct {
    const char* fault;
    const char* markup;
    int last_step;          // the line that waits for the page
    bool may_save = false;  // and so is not left at once
  } pages[] = {
      {"no answer", nullptr, 1},
      {"loop in a click", "<input type=button name=go onclick='for(;;);'>", 2},
      {"loop in a script", "<script>for(;;);</script>", 1},
      {"messages without end", "<input type=button name=go onclick='for(var i=0;;)alert(i++)'>", 2},
      {"markup that grows",
       "<input type=button name=go onclick='setInterval(function(){"
       "document.body.appendChild(document.createElement(\"p\"))},0)'>",
       3},
      {"polls that a click starts",
       "<input type=button name=go onclick='setInterval(() => fetch(\"/fine\"), 50)'>", 3},
      {"half an answer", kHalf, 1},
      {"no answer to a link", "<a name=go href=/silent>go</a>", 2, true},
      {"no answer to a save by script",
       "<input type=button name=go onclick='fetch(\"/silent\", {method: \"POST\"})'>", 2, true},
      {"half an answer to a save", "<a name=go href=/half>go</a>", 2, true},
  };
  Reply half = Answer("200 OK", QByteArray(9000, 'x'), "Content-Type: text/html\r\n");
  half.bytes.chop(3000);
  half.then = Reply::Then::kSilence;
  server_.replies["/half"] = half;
  for (const auto& page : pages) {
    SCOPED_TRACE(page.fault);
    server_.replies["/page"] = page.markup == nullptr ? server_.replies["/silent"]
                               : page.markup == kHalf ? half
                                                      : Html(page.markup);
    server_.replies["/fine"] = Html("<input name=box>");
    Start({u"nav(\"page\")"_s, u"click_button(\"go\")"_s,
           u"wait_until_words_found(\"never there\")"_s});
    ASSERT_TRUE(Reaches(page.last_step)) << Log().toStdString();
    EXPECT_FALSE(Ends(300ms));
    EXPECT_EQ(Log().count(u"Step"_s), page.last_step) << "a slow router must be waited for";
    runner_->Stop();
    EXPECT_TRUE(Ends(10s));
    EXPECT_TRUE(runner_->Outcome().stopped);
    bool left = false;
    QObject::connect(runner_.get(), &ScriptRunner::left, runner_.get(), [&left] { left = true; });
    runner_->Leave();
    EXPECT_EQ(RunUntil([&left] { return left; }, page.may_save ? 2s : 20s), !page.may_save);
    runner_.reset();
    Start({u"nav(\"fine\")"_s, u"set_name(\"box,\")"_s});
    EXPECT_TRUE(Ends(20s));
    EXPECT_TRUE(Log().contains(u"DONE!"_s));
    EXPECT_FALSE(Log().contains(u"Failed"_s));
  }
}

TEST_F(StuckJob, WindowsWithoutEndFailTheEntry) {
  server_.replies["/page"] =
      Html("<input type=button name=go onclick='for(var i=0;i<12;++i)window.open(\"/\")'>");
  Start({u"nav(\"page\")"_s, u"click_button(\"go\")"_s, u"wait_until_words_found(\"x\")"_s});
  ASSERT_TRUE(Ends(20s));
  EXPECT_EQ(Log().count(u"more than eight windows"_s), 1) << Log().toStdString();
  EXPECT_EQ(runner_->Outcome().entries_failed, 1);
}

TEST_F(StuckJob, AJobIsLetGoInTheMiddleOfAnything) {
  server_.replies["/loop"] = Html("<script>for(;;);</script>");
  server_.replies["/quiet"] = Html("<p>quiet");
  for (const QString& path : {u"loop"_s, u"quiet"_s, u"silent"_s}) {
    Start({u"nav(\"%1\")"_s.arg(path), u"wait_until_words_found(\"x\")"_s});
    ASSERT_TRUE(Reaches(1));
    EXPECT_FALSE(Ends(100ms));
    runner_.reset();
  }
}

TEST_F(StuckJob, AnEndlessScriptEndsItsEntryAndNotTheJob) {
  context_.port_list.SetEntries({WebEntry(u"One"_s), WebEntry(u"Two"_s)});
  int pages = 0;
  server_.special = [&pages](const QByteArray& request) {
    return request.startsWith("GET /page ")
               ? std::optional(
                     Html(++pages == 1 ? "<script>for(;;);</script>" : "<input name=box>"))
               : std::nullopt;
  };
  limits_.silence = 3s;
  Start({u"nav(\"page\")"_s, u"set_name(\"box,\")"_s});
  ASSERT_TRUE(Ends(60s)) << Log().toStdString();
  EXPECT_EQ(runner_->Outcome().entries_failed, 1);
  EXPECT_EQ(Log().count(u"\r\n(Successful)\r\n"_s), 1) << Log().toStdString();
}

TEST_F(StuckJob, AHugePageIsWorkedOn) {
  QByteArray markup;
  for (int i = 0; i < 90000; ++i) {
    markup += "<p class='row of a long table with much to say about nothing'>" +
              QByteArray::number(i) + "<i></i></p>\n";
  }
  server_.replies["/page"] = Html("<form><input name=box>" + markup + "<input name=last></form>");
  Start({u"nav(\"page\")"_s, u"set_name(\"box,\")"_s, u"set_name(\"LAST,\")"_s});
  ASSERT_TRUE(Ends(180s));
  EXPECT_EQ(Log().count(u"\r\n(Successful)\r\n"_s), 2) << Log().toStdString();
}

}  // namespace
}  // namespace quayline::testing
