// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QWebEnginePage>

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;
using namespace std::chrono_literals;

TEST_F(WebTest, WhatAPageAsksTheUserIsAnsweredAtOnceAndTold) {
  const struct {
    const char* fault;
    const char* code;
    const char* outcome;
    const char* told;
  } cases[] = {
      {"a message waits", "alert('saved'); out = 'on'", "on", "saved"},
      {"a question is answered No", "out = confirm('reboot?')", "true", "reboot?"},
      {"a prompt loses its preset", "out = prompt('port', '80')", "80", "80"},
      {"a long message is told whole", "alert('x'.repeat(100000)); out = 'on'", "on", "xxx\u2026"},
      {"a permission is granted",
       "Notification.requestPermission().then(answer => { out = answer; })", "denied",
       "permission"},
      {"another program is opened", "location = 'mailto:x'; out = 'on'", "on", "mailto:x"},
      {"a file is stored",
       "var a = document.createElement('a'); a.download = 'a.txt'; a.href = 'data:,x';"
       "a.click(); out = 'on'",
       "on", "a.txt"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    Show("<script>var out;</script>");
    RunInPage(row.code);
    EXPECT_TRUE(IsTold(row.told)) << told.join(u'\n').toStdString();
    EXPECT_TRUE(RunUntil([&] { return Read("out") == QString::fromUtf8(row.outcome); }))
        << Read("out").toStdString();
    Settle();
    EXPECT_EQ(Read("location.pathname"), u"/page"_s);
  }
}

TEST_F(WebTest, MessagesAreShownWhereSilentModeIsOffAndNotWithoutEnd) {
  QStringList messages;
  QObject::connect(host.get(), &PageHost::pageMessage, host.get(),
                   [&](const QString& text) { messages.append(text); });
  options.silent_mode = true;
  Show("<script>alert('one')</script>");
  EXPECT_EQ(messages, QStringList());
  options.silent_mode = false;
  Show("<script>alert('one');confirm('two')</script>");
  EXPECT_EQ(messages, (QStringList{u"one"_s, u"two"_s}));
  messages.clear();
  Show("<script>for(var i=0;i<500;++i)alert(i)</script>");
  EXPECT_LT(messages.size(), 150);
}

TEST_F(WebTest, AnAnswererWhoIsAskedDecidesAPagesDialogs) {
  const struct {
    const char* code;
    PageDialogAnswer answer;
    const char* outcome;
    const char* told;
  } cases[] = {
      {"confirm('all?')", {.accepted = false}, "false", "all? (answered: Cancel)"},
      {"confirm('all?')", {.accepted = true}, "true", "all? (answered: OK)"},
      {"prompt('port', '80')", {.accepted = false, .typed = u"1"_s}, "null", "answered: Cancel"},
      {"prompt('port', '80')", {.accepted = true, .typed = u"8080"_s}, "8080", "answered: 8080"},
      {"alert('hello')", {}, "undefined", "hello"},
  };
  options.silent_mode = false;
  QStringList messages;
  QObject::connect(host.get(), &PageHost::pageMessage, host.get(),
                   [&](const QString& text) { messages.append(text); });
  for (const auto& row : cases) {
    Show("<p>page");
    questions.on_dialog = [&row](const PageDialog& dialog) {
      EXPECT_EQ(dialog.preset, QLatin1String(dialog.kind == PageDialog::Kind::kPrompt ? "80" : ""));
      return row.answer;
    };
    EXPECT_EQ(Read(row.code), QLatin1String(row.outcome));
    EXPECT_TRUE(IsTold(row.told)) << told.join(u'\n').toStdString();
  }
  EXPECT_EQ(messages, QStringList()) << "what the user has seen is shown again";
}

TEST_F(WebTest, AfterTheUsersWishForNoMoreDialogsAPageGetsRefusalsUntilItIsLoadedAgain) {
  int asked = 0;
  questions.on_dialog = [&asked](const PageDialog& dialog) {
    EXPECT_EQ(dialog.is_repeated, ++asked == 2);
    return PageDialogAnswer{.accepted = true, .typed = {}, .wants_no_more = asked == 2};
  };
  Show("<script>var all = [1, 2, 3, 4].map((n) => confirm(n)).join()</script>");
  EXPECT_EQ(Read("all"), u"true,true,false,false"_s);
  questions.asked.clear();
  asked = 0;
  Show("<script>confirm('once more')</script>");
  EXPECT_EQ(questions.asked, QStringList{u"dialog once more"_s});
}

TEST_F(WebTest, AFileThatThePageAsksForIsNotChosen) {
  Show("<input type=file><script>var file = document.querySelector('input')</script>");
  EXPECT_EQ(Ask(FocusElementByPosition(5)), kSuccessful);  // html, head, meta, script, body, input
  host->SendKeys(u" "_s);  // a chooser opens for a user's key, not for a script
  EXPECT_TRUE(IsTold("asked for a file"));
  EXPECT_EQ(Read("file.files.length"), u"0"_s);
}

TEST_F(WebTest, FailuresOfThePagesScriptsAreTold) {
  Show("<script>setTimeout(() => broken(), 0)</script>");
  EXPECT_TRUE(RunUntil([&] { return script_errors.size() == 1; }));
  EXPECT_TRUE(script_errors.value(0).contains(u"broken"_s));
  RunInPage("console.error('Uncaught no failure'.substring(9)); console.log('Uncaught neither')");
  EXPECT_EQ(Ask(GetElementValue(u"a"_s)), u""_s);
  EXPECT_EQ(script_errors.size(), 1) << script_errors.last().toStdString();
}

// Takes the popups over, as a job does.
class PopupTest : public WebTest {
 protected:
  PopupTest() {
    server.replies["/popup"] = Html("<input name=a value=popup>");
    server.replies["/closes"] = Html("<script>close()</script>");
    QObject::connect(host.get(), &PageHost::newWindow, window.get(), [this](PageHost* popup) {
      popup->setParent(&owner);
      popups.append(popup);
      popup->Widget()->show();
      QObject::connect(popup, &PageHost::windowClosing, &owner, [this] { ++closings; });
    });
  }

  ~PopupTest() override { qDeleteAll(std::exchange(popups, {})); }

  void WaitFor(PageHost* popup) {
    ASSERT_TRUE(RunUntil(
        [&] { return !popup->Navigation().busy && EnginePage(popup)->url().path().size() > 1; }));
  }

  QObject owner;
  QList<PageHost*> popups;
  int closings = 0;
};

TEST_F(PopupTest, APopupIsAPageOfItsOwn) {
  Show("<a href=/popup target=named>x</a><input name=a value=page>");
  for (const char* way :
       {"open('/popup')", "open('/popup', 'other', 'width=100')",
        "document.querySelector('a').click()", "setTimeout(() => open('/popup', 'late'), 0)"}) {
    SCOPED_TRACE(way);
    const qsizetype before = popups.size();
    RunInPage(way);
    ASSERT_TRUE(RunUntil([&] { return popups.size() == before + 1; }));
    WaitFor(popups.last());
    std::optional<QJsonValue> value;
    popups.last()->Call(GetElementValue(u"a"_s),
                        [&](const PageAnswer& answer) { value = answer.value; });
    EXPECT_TRUE(RunUntil([&] { return value.has_value(); }));
    EXPECT_EQ(value, QJsonValue(u"popup"_s));
    EXPECT_EQ(Ask(GetElementValue(u"a"_s)), u"page"_s);
  }
  host->Navigate2(server.Address(u"/popup"_s).toString(), u"fresh"_s);
  EXPECT_TRUE(RunUntil([&] { return popups.size() == 5; })) << "a frame that is not there";
}

TEST_F(PopupTest, APopupThatClosesItselfIsTold) {
  Show("page");
  RunInPage("open('/closes')");
  EXPECT_TRUE(RunUntil([&] { return closings == 1; }));
  RunInPage("var second = open('/popup')");
  ASSERT_TRUE(RunUntil([&] { return popups.size() == 2; }));
  WaitFor(popups.last());
  RunInPage("second.close()");
  EXPECT_TRUE(RunUntil([&] { return closings == 2; }));
}

TEST_F(PopupTest, PopupsThatCloseAreNotCounted) {
  Show("page");
  for (int i = 1; i <= 12; ++i) {
    RunInPage("open('/closes')");
    ASSERT_TRUE(RunUntil([&] { return closings == i; })) << i;
  }
  EXPECT_EQ(popups.size(), 12);
  EXPECT_EQ(errors, QStringList());
}

TEST_F(PopupTest, APopupClosedUnderItsOwnDialogGoesAfterTheAnswer) {
  server.replies["/asks"] = Html("<script>setTimeout(() => confirm('sure?'))</script>");
  int closings_meanwhile = -1;
  questions.on_dialog = [&](const PageDialog&) {
    Q_EMIT EnginePage(popups.last())->windowCloseRequested();
    Pause();
    closings_meanwhile = closings;
    return PageDialogAnswer{};
  };
  Show("page");
  RunInPage("open('/asks')");
  EXPECT_TRUE(RunUntil([&] { return closings == 1; }));
  EXPECT_EQ(closings_meanwhile, 0);
}

TEST_F(PopupTest, NotMoreThanEightPopupsAreOpenAtATime) {
  Show("page");
  RunInPage("for (var i = 0; i < 30; ++i) open('/popup')");
  EXPECT_TRUE(IsTold("tried to open a window"));
  EXPECT_EQ(popups.size(), 8);
  EXPECT_TRUE(FirstError().startsWith(u"TOO_MANY_WINDOWS"_s)) << errors.join(u' ').toStdString();
  delete popups.takeLast();
  RunInPage("open('/popup'); open('/popup')");
  Pause();
  EXPECT_EQ(popups.size(), 8);
}

TEST_F(WebTest, APopupThatNobodyTakesIsRefusedAndNotCounted) {
  Show("page");
  RunInPage("for (var i = 0; i < 20; ++i) open('/page')");
  EXPECT_TRUE(IsTold("tried to open a window"));
  int offered = 0;
  QObject::connect(host.get(), &PageHost::newWindow, window.get(), [&offered] { ++offered; });
  RunInPage("open('/page')");
  EXPECT_TRUE(RunUntil([&] { return offered == 1; }));
}

}  // namespace
}  // namespace quayline::testing
