// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/bare_context.h"
#include "script/job_runner.h"
#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// Jobs on pages that never come to an end.
class StuckJob : public ::testing::Test {
 protected:
  StuckJob() {
    const QUrl address = server_.Address({});
    context_.session.router_ip = address.host();
    context_.session.http_port = QString::number(address.port());
    context_.job_options.throttle = false;
    context_.port_list.SetEntries({WebEntry(u"Web"_s)});
    server_.replies["/silent"] = {.bytes = {}, .then = Reply::Then::kSilence};
  }

  void Start(const QStringList& script) {
    context_.session.update_script = script;
    runner_ = std::make_unique<JobRunner>(context_, WebPageHosts(context_.job_options));
    runner_->Open();
    runner_->ActiveHost()->Widget()->show();
    runner_->Run();
  }
  QString Log() { return runner_->Log().Text(); }
  bool Reaches(int step) {
    return RunUntil([&] { return Log().contains(u"Step 0%1"_s.arg(step)); }, 20s);
  }
  bool Ends(std::chrono::milliseconds limit) {
    return RunUntil([&] { return !runner_->IsRunning(); }, limit);
  }

  ScriptedServer server_;
  BareContext bare_;
  AppContext& context_ = bare_.app;
  std::unique_ptr<JobRunner> runner_;
};

TEST_F(StuckJob, AnEndlessPageIsStoppedAndTheNextJobRuns) {
  const struct {
    const char* fault;
    const char* markup;
    int last_step;  // the line that waits for the page
  } pages[] = {
      {"no answer", nullptr, 1},
      {"loop in a click", "<input type=button name=go onclick='for(;;);'>", 2},
      {"loop in a script", "<script>for(;;);</script>", 1},
      {"messages without end", "<input type=button name=go onclick='for(var i=0;;)alert(i++)'>", 2},
      {"windows without end", "<input type=button name=go onclick='for(;;)window.open(\"/\")'>", 2},
      {"markup that grows",
       "<input type=button name=go onclick='setInterval(function(){"
       "document.body.appendChild(document.createElement(\"p\"))},0)'>",
       3},
      {"no answer to a link", "<a name=go href=/silent>go</a>", 2},
      {"no answer to a save", "<form method=post action=/silent><input type=submit name=go></form>",
       2},
  };
  for (const auto& page : pages) {
    SCOPED_TRACE(page.fault);
    server_.replies["/page"] =
        page.markup == nullptr ? server_.replies["/silent"] : Html(page.markup);
    server_.replies["/fine"] = Html("<input name=box>");
    Start({u"nav(\"page\")"_s, u"click_button(\"go\")"_s,
           u"wait_until_words_found(\"never there\")"_s});
    ASSERT_TRUE(Reaches(page.last_step)) << Log().toStdString();
    EXPECT_FALSE(Ends(300ms));
    EXPECT_EQ(Log().count(u"Step"_s), page.last_step) << "a slow router must be waited for";
    runner_->Stop();
    EXPECT_TRUE(Ends(1s));
    EXPECT_TRUE(runner_->Outcome().stopped);
    runner_.reset();
    Start({u"nav(\"fine\")"_s, u"set_name(\"box,\")"_s});
    EXPECT_TRUE(Ends(20s));
    EXPECT_TRUE(Log().contains(u"DONE!"_s));
    EXPECT_FALSE(Log().contains(u"Failed"_s));
  }
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

TEST_F(StuckJob, AHugePageIsWorkedOn) {
  QByteArray markup;
  for (int i = 0; i < 100000; ++i) {
    markup += "<p class='row of a long table with much to say about nothing'>" +
              QByteArray::number(i) + "<i></i></p>\n";
  }
  server_.replies["/page"] = Html("<form><input name=box>" + markup + "<input name=last></form>");
  Start({u"nav(\"page\")"_s, u"set_name(\"box,\")"_s, u"set_name(\"LAST,\")"_s});
  ASSERT_TRUE(Ends(60s));
  EXPECT_EQ(Log().count(u"\r\n(Successful)\r\n"_s), 2) << Log().toStdString();
}

}  // namespace
}  // namespace quayline::testing
