// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QTest>

#include <algorithm>

#include "web/page_job.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Then = Reply::Then;

#define FORM                                               \
  "<form method=post action=/save><input name=box></form>" \
  "<script>var f=document.forms[0];</script>"
#define GO(code) FORM "<input type=button name=go onclick=\"" code "\">"
#define POST "fetch('/save',{method:'POST',body:f.box.value})"

// Jobs on pages whose content, saves or windows do something of their own meanwhile.
class PendingWork : public PageJob {
 protected:
  PendingWork() {
    server_.replies["/save"] = Html("saved");
    server_.replies["/fine"] = Html("fine");
    server_.replies["/data"] = Answer("200 OK", "Web");
    server_.replies["/worker.js"] =
        Answer("200 OK", "onmessage=function(){setTimeout(postMessage,300,1)}",
               "Content-Type: text/javascript\r\n");
  }

  qsizetype Saves() const {
    return std::ranges::count_if(server_.requests, [](const QByteArray& request) {
      return request.startsWith("POST /save");
    });
  }

  // Runs the lines and opens another page at once.
  QString RunAndLeave(const QStringList& script) {
    server_.requests.clear();
    Start(script + QStringList{u"nav(\"fine\")"_s});
    EXPECT_TRUE(Ends(40s));
    const QString log = runner_->Log().Text();
    EXPECT_EQ(runner_->Outcome().entries_failed, 0) << log.toStdString();
    runner_.reset();
    return log;
  }
};

TEST_F(PendingWork, OfAWindowThatClosesItselfIsFinished) {
  const QByteArray request = "var r=new XMLHttpRequest;r.open('POST','/save');r.send('x');";
  const QByteArray popup =
      "<script>function edit(){open('/popup','edit','width=300,height=200')}</script>"
      "<input type=button name=edit onclick='edit()'>";
  const struct {
    const char* fault;
    QByteArray page;
    QByteArray popup;
    QStringList script;
  } cases[] = {
      {"a popup submits", popup, GO("f.submit();window.close()"), {u"click_button(\"edit\")"_s}},
      {"a popup requests", popup, GO("@REQUEST@window.close()"), {u"click_button(\"edit\")"_s}},
      {"a popup submits into its own hidden frame",
       popup,
       "<iframe name=hidden></iframe>" GO("f.target='hidden';f.submit();self.close()"),
       {u"click_button(\"edit\")"_s}},
      {"the first page submits", GO("f.submit();window.close()"), {}, {}},
      {"the first page requests", GO("@REQUEST@window.close()"), {}, {}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    server_.replies["/page"] = Html(QByteArray(row.page).replace("@REQUEST@", request));
    server_.replies["/popup"] = Html(QByteArray(row.popup).replace("@REQUEST@", request));
    const QString log = RunAndLeave(QStringList{u"nav(\"page\")"_s} + row.script +
                                    QStringList{u"click_button(\"go\")"_s});
    EXPECT_EQ(Saves(), 1) << log.toStdString();
  }
}

// A used row must not be taken for a free one, nor a rule that exists for a new one.
TEST_F(PendingWork, ThatFillsAPageIsFinishedBeforeAQuestionIsAnsweredWithNo) {
  const char* const fill =
      "function fill(){document.getElementById('list').innerHTML="
      "'<option>Web</option>'}";
  const struct {
    const char* fault;
    const char* start;
  } cases[] = {
      {"a timer", "setTimeout(fill,400)"},
      {"a request", "fetch('/data').then(fill)"},
      {"a request of a timer", "setTimeout(function(){fetch('/data').then(fill)},200)"},
      {"a timer of a request", "fetch('/data').then(function(){setTimeout(fill,300)})"},
      {"an interval that looks for data",
       "var n=3,i=setInterval(function(){if(!--n){clearInterval(i);fill()}},150)"},
      {"a worker", "var w=new Worker('/worker.js');w.onmessage=fill;w.postMessage(1)"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    server_.replies["/page"] =
        Html("<select id=list name=list></select>" GO("f.submit()") "<script>" + QByteArray(fill) +
             ";onload=function(){" + row.start + "}</script>");
    const QString log = RunAndLeave({u"nav(\"page\")"_s, u"is_in_combo(\"list\")"_s,
                                     u"click_button_if_in_combo_true(\"go\")"_s});
    EXPECT_EQ(Saves(), 1) << log.toStdString();
  }
}

TEST_F(PendingWork, ThatBuildsAFieldIsFinishedBeforeItIsMissing) {
  const char* const start[] = {
      "setTimeout(function(){fetch('/data').then(show)},300)",
      ("var n=5,i=setInterval(function(){fetch('/data').then(function(){if(!--n){"
       "clearInterval(i);show()}})},200)"),
      "var w=new Worker('/worker.js');w.onmessage=show;w.postMessage(1)",
  };
  for (const char* code : start) {
    SCOPED_TRACE(code);
    server_.replies["/page"] = Html(
        "<div id=place></div><script>function show(){place.innerHTML='<form method=post "
        "action=/save><input name=box><button name=go>Save</button></form>'}"
        ";onload=function(){" +
        QByteArray(code) + "}</script>");
    const QString log =
        RunAndLeave({u"nav(\"page\")"_s, u"set_name(\"box,\")"_s, u"click_button(\"go\")"_s});
    EXPECT_EQ(Saves(), 1) << log.toStdString();
    EXPECT_FALSE(log.contains("Not Found"_L1)) << log.toStdString();
  }
}

// Pages poll, and hold requests open. None of that is waited for once it is known, and a save among
// it is.
TEST_F(PendingWork, ThatIsPeriodicHidesNoSave) {
  const QByteArray poll = "function get(then){fetch('/data?t='+Date.now()).then(then)}";
  const char* const start[] = {
      "fetch('/silent')",
      "new EventSource('/silent')",
      "setInterval(get,50)",
      "(function again(){get(function(){setTimeout(again,50)})})()",
      ("(async function(){for(;;){await fetch('/data');await new Promise(function(done){"
       "setTimeout(done,100)})}})()"),
      "(function draw(){requestAnimationFrame(draw)})()",
      "setInterval(function(){fetch('/data',{method:'POST',body:'status'})},100)",
  };
  limits_.held_request = 1s;
  server_.replies["/data"] = Answer("200 OK", "1");
  server_.special = [](const QByteArray& request) -> std::optional<Reply> {
    return request.startsWith("GET /data?") || request.startsWith("POST /data")
               ? std::optional(Answer("200 OK", "1"))
               : std::nullopt;
  };
  for (const char* code : start) {
    SCOPED_TRACE(code);
    server_.replies["/page"] = Html(GO("setTimeout(function(){" POST "},200)") "<script>" + poll +
                                    "onload=function(){" + code + "}</script>");
    const QStringList entry{u"nav(\"page\")"_s, u"click_button(\"go\")"_s};
    const QString log = RunAndLeave(entry + entry + entry);
    EXPECT_EQ(Saves(), 3) << log.toStdString();
  }
}

TEST_F(PendingWork, ThatIsTooLateToBeWaitedForIsNotedInTheLog) {
  const QString note = u"The page still had work pending"_s;
  const struct {
    const char* code;
    bool is_noted;
  } cases[] = {
      {"setTimeout(function(){f.submit()},3500)", true},
      {"var n=60,i=setInterval(function(){if(!--n)f.submit()},100)", true},
      {"setTimeout(function(){f.submit()},500)", false},
      {"void 0", false},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.code);
    server_.replies["/page"] = Html(
        "<script>setInterval(function(){},3000)</script><form method=post action=/save></form>"
        "<script>var f=document.forms[0]</script><input type=button name=go onclick=\"" +
        QByteArray(row.code) + "\">");
    const QString log = RunAndLeave({u"nav(\"page\")"_s, u"click_button(\"go\")"_s});
    EXPECT_EQ(log.contains(note), row.is_noted) << log.toStdString();
  }
}

// A page whose script fails may send its old list: the user is to look at the router.
TEST_F(PendingWork, OfAPageThatFailsIsNotedAndToBeChecked) {
  const struct {
    const char* fault;
    QByteArray markup;
    const char* noted;
  } cases[] = {
      {"a handler", GO("missing();"), "A script of the page failed"},
      {"a script that is not there", "<script src=/gone.js></script>" GO("f.submit()"),
       "A part of the page could not be loaded"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    server_.replies["/page"] = Html(row.markup);
    Start({u"nav(\"page\")"_s, u"click_button(\"go\")"_s});
    ASSERT_TRUE(Ends(40s));
    EXPECT_TRUE(Log().contains(QLatin1String(row.noted))) << Log().toStdString();
    EXPECT_EQ(runner_->Outcome().ToCheck(), QStringList{u"Web"_s});
    runner_.reset();
  }
}

// On a busy machine a page can be silent for seconds. That is no sign of being idle.
TEST_F(PendingWork, OfAPageThatIsBusyForSecondsIsWaitedFor) {
  server_.replies["/page"] = Html(
      GO("setTimeout(function(){var end=Date.now()+2500;while(Date.now()<end);f.submit()},0)"));
  RunAndLeave({u"nav(\"page\")"_s, u"click_button(\"go\")"_s});
  EXPECT_EQ(Saves(), 1);
}

TEST_F(PendingWork, OfTheUsersOwnClickIsFinishedWhenTheWindowIsLeftAfterTheRun) {
  server_.replies["/page"] =
      Html(FORM
           "<input type=button style='position:fixed;width:100%;height:100%;left:0;top:0'"
           " onclick=\"setTimeout(function(){" POST "},500)\">");
  Start({u"nav(\"page\")"_s});
  ASSERT_TRUE(Ends(20s));
  runner_->HandOver();
  QTest::mouseClick(runner_->ActiveHost()->Widget()->focusProxy(), Qt::LeftButton, {}, {99, 99});
  RunUntil([] { return false; }, 200ms);  // the page gets the click
  ASSERT_EQ(Saves(), 0);
  bool left = false;
  QObject::connect(runner_.get(), &JobRunner::left, runner_.get(), [&left] { left = true; });
  runner_->Leave();
  EXPECT_TRUE(RunUntil([&left] { return left; }, 20s));
  EXPECT_EQ(Saves(), 1);
}

TEST_F(PendingWork, OfAPageThatWasOnlyOpenedIsNotWaitedForWhenTheRunIsLeft) {
  server_.replies["/page"] = Html(GO("f.submit()"));
  server_.special = [](const QByteArray& request) -> std::optional<Reply> {
    return request.startsWith("POST /save") ? std::optional(Reply{{}, Then::kSilence})
                                            : std::nullopt;
  };
  const struct {
    const char* fault;
    QStringList script;
    bool waits;
  } cases[] = {
      {"no answer to a page", {u"nav(\"silent\")"_s}, false},
      {"no answer to a save", {u"nav(\"page\")"_s, u"click_button(\"go\")"_s}, true},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    Start(row.script);
    ASSERT_TRUE(RunUntil(
        [&] {
          return std::ranges::any_of(server_.requests, [](const QByteArray& request) {
            return request.startsWith("GET /silent") || request.startsWith("POST /save");
          });
        },
        20s));
    bool left = false;
    QObject::connect(runner_.get(), &JobRunner::left, runner_.get(), [&left] { left = true; });
    runner_->Leave();
    EXPECT_EQ(RunUntil([&left] { return left; }, 2s), !row.waits);
    runner_.reset();
    server_.requests.clear();
  }
}

}  // namespace
}  // namespace quayline::testing
