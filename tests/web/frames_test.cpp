// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;
using namespace std::chrono_literals;

class FramesTest : public WebTest {
 protected:
  FramesTest() {
    server.replies["/frames"] = Html(
        "<html><frameset cols='*,*,*,*'><frame src=/f0><frame src=/f1 name=main>"
        "<frame src=/f2><frame src='" +
        elsewhere.Address(u"/f3"_s).toEncoded() + "'></frameset></html>");
    for (const char* name : {"f0", "f1", "f2", "new"}) {
      server.replies[QByteArray("/") + name] =
          Html(QByteArray("<html><body id=") + name + "><input name=a value=" + name +
               "></body></html>");
    }
    elsewhere.replies["/f3"] = Html("<input name=a value=f3>");
  }

  QString Values() {
    return Read("[0, 1, 2].map(n => frames[n].document.querySelector('input').value)");
  }

  void LoadInFrame(const char* path) {
    const quint64 before = host->Navigation().starts;
    RunInPage(QByteArray("frames[0].location = '").append(path).append("'").constData());
    ASSERT_TRUE(RunUntil([&] { return host->Navigation().starts != before; }));
    Settle();
  }

  ScriptedServer elsewhere;
};

TEST_F(FramesTest, AnOperationSeesTheDocumentOfItsFrameAlone) {
  Open("/frames");
  EXPECT_EQ(Ask(SetElementValue(u"a"_s, u"x"_s)), kFailed) << "a frameset has no fields";
  EXPECT_EQ(Ask(SetElementValue(u"a"_s, u"x"_s), 1), kSuccessful);
  EXPECT_EQ(Ask(SetElementValue(u"a"_s, u"y"_s), 2), kSuccessful);
  EXPECT_EQ(Values(), u"f0,x,y"_s);
  EXPECT_EQ(Ask(PageContainsWords(u"id=\"f2\""_s), 2), QJsonValue(true));
  EXPECT_EQ(Ask(PageContainsWords(u"id=\"f2\""_s), 1), QJsonValue(false));
  EXPECT_EQ(Ask(PageContainsWords(u"frame"_s), 0), QJsonValue(true));
}

TEST_F(FramesTest, AFrameThatCannotBeHadKeepsTheDocumentBeforeIt) {
  Open("/frames");
  EXPECT_EQ(Ask(GetElementValue(u"a"_s), 2), u"f2"_s);
  EXPECT_EQ(Ask(GetElementValue(u"a"_s), 9), u"f2"_s) << "no such frame";
  EXPECT_EQ(Ask(GetElementValue(u"a"_s), -1), u"f2"_s) << "no such number";
  EXPECT_EQ(Ask(GetElementValue(u"a"_s), 3), u"f2"_s) << "another host's frame";
  EXPECT_EQ(Ask(GetElementValue(u"a"_s), 0), u""_s);
  EXPECT_EQ(Ask(GetElementValue(u"a"_s), 9), u""_s) << "the top document was in use";
  EXPECT_EQ(elsewhere.requests.size(), 1);
}

TEST_F(FramesTest, AnEmptyFieldOfAFrameIsLookedUpInTheTopDocument) {
  Show("<input id=a value=top><iframe></iframe><iframe src=/f1></iframe>");
  RunInPage("frames[1].document.querySelector('input').value = ''");
  EXPECT_EQ(Ask(GetElementValue(u"a"_s), 1), u"top"_s);
  EXPECT_EQ(Ask(SetElementValue(u"a"_s, u"x"_s, true), 1), kFailed);
  RunInPage("document.getElementById('a').remove()");
  EXPECT_EQ(Ask(GetElementValue(u"a"_s), 1), u""_s);
  EXPECT_EQ(Ask(SetElementValue(u"a"_s, u"x"_s, true), 1), kSuccessful);
}

TEST_F(FramesTest, AFrameIsClickedTypedIntoAndRead) {
  server.replies["/f1"] = Html(
      "<input><select name=s><option>x<option>Web</select><a id=l></a>"
      "<script>var hit = ''; document.getElementById('l').onclick = "
      "function () { hit += 'save'; };</script>");
  Open("/frames");
  EXPECT_EQ(Ask(ClickByOnclick(u"'save'"_s), 1), kSuccessful);
  EXPECT_EQ(Read("frames[1].hit"), u"save"_s);
  EXPECT_EQ(Ask(SetComboValue(u"s"_s, {.text = u"Web"_s}), 1), kSuccessful);
  EXPECT_EQ(Read("frames[1].document.querySelector('select').value"), u"Web"_s);
  EXPECT_EQ(Ask(FocusElementByPosition(3), 1), kSuccessful);  // html, head, body, input
  host->SendKeys(u"80{+}"_s);
  EXPECT_EQ(Ask(PageContainsWords(u"input"_s), 1), QJsonValue(true)) << "the keys come first";
  EXPECT_EQ(Read("frames[1].document.querySelector('input').value"), u"80+"_s);
}

TEST_F(FramesTest, AFrameThatFailsIsReportedAsAPageIs) {
  server.replies["/cut"] = {"", Reply::Then::kReset};
  server.replies["/silent"] = {""};
  server.replies["/login"] = LoginNeeded();
  server.replies["/oops"] = Answer("500 Oops", "");
  const struct {
    const char* path;
    const char* error;  // nullptr: none
  } cases[] = {
      {"/new", nullptr},
      {"/cut", "CANNOT_CONNECT(-2146697212)"},
      {"/silent", "DATA_NOT_AVAILABLE(-2146697209)"},
      {"/login", "DENIED(401)"},
      {"/gone", "NOT_FOUND(404)"},
      {"/oops", "SERVER_ERROR(500)"},
      {"http://192.0.2.1/", nullptr},  // blocked, and reported as such
  };
  for (const bool silent : {true, false}) {
    options.silent_mode = silent;
    GiveLogin({}, {});
    for (const auto& row : cases) {
      for (const bool with_page : {true, false}) {
        SCOPED_TRACE(row.path + std::string(with_page ? " with its page" : " later"));
        server.replies["/page"] =
            Html("<iframe name=f src='" + QByteArray(with_page ? row.path : "/f0") + "'></iframe>");
        Open("/page");
        if (!with_page) {
          ASSERT_EQ(errors, QStringList());
          LoadInFrame(row.path);
        }
        ASSERT_EQ(errors.size(), row.error == nullptr ? 0 : 1) << errors.join(u' ').toStdString();
        if (row.error != nullptr) {
          EXPECT_EQ(FirstError(), QLatin1String(row.error));
          EXPECT_TRUE(errors[0].endsWith(QLatin1String(row.path))) << errors[0].toStdString();
        }
      }
    }
  }
}

// Over TLS only the engine sees how a frame is answered. A status is given to pages by newer
// engines.
TEST_F(FramesTest, AFrameOverTlsIsReportedAsAPageIs) {
  SecureServer secure;
  NextBrowser(&secure.certificates);
  const QUrl router = secure.Address({});
  host->SetLogin({.scheme = router.scheme(), .host = router.host(), .port = router.port()});
  secure.server.replies = server.replies;
  secure.server.replies["/cut"] = {"", Reply::Then::kReset};
  secure.server.replies["/silent"] = {""};
  secure.server.replies["/login"] = LoginNeeded();
  secure.server.replies["/oops"] = Answer("500 Oops", "");
  const struct {
    const char* path;
    const char* error;  // nullptr: none
    bool is_status = false;
  } cases[] = {
      {"/new", nullptr},
      {"/gone", "NOT_FOUND(404)", true},
      {"/oops", "SERVER_ERROR(500)", true},
      {"/login", "DENIED(401)"},
      {"/cut", "CANNOT_CONNECT(-2146697212)"},
      {"/silent", "DATA_NOT_AVAILABLE(-2146697209)"},
  };
  for (const auto& row : cases) {
    for (const bool with_page : {true, false}) {
      SCOPED_TRACE(row.path + std::string(with_page ? " with its page" : " later"));
      secure.server.replies["/page"] =
          Html("<iframe name=f src='" + QByteArray(with_page ? row.path : "/f0") + "'></iframe>");
      Open(secure.Address(u"/page"_s));
      if (!with_page) {
        LoadInFrame(row.path);
      }
      const bool is_known =
          !row.is_status ||
          Read("'responseStatus' in PerformanceResourceTiming.prototype") == u"true"_s;
      const char* const error = is_known ? row.error : nullptr;
      ASSERT_EQ(errors.size(), error == nullptr ? 0 : 1) << errors.join(u' ').toStdString();
      EXPECT_TRUE(error == nullptr || FirstError() == QLatin1String(error))
          << FirstError().toStdString();
    }
  }
  Open(secure.Address(u"/page"_s));
  secure.server.GoAway();
  LoadInFrame("/new");
  EXPECT_EQ(FirstError(), u"CANNOT_CONNECT(-2146697212)"_s);
}

TEST_F(FramesTest, AFrameOverTlsThatIsAnsweredWithNothingIsNotWaitedFor) {
  SecureServer secure;
  NextBrowser(&secure.certificates);
  const QUrl router = secure.Address({});
  host->SetLogin({.scheme = router.scheme(), .host = router.host(), .port = router.port()});
  secure.server.replies["/nothing"] = {"HTTP/1.1 204 No Content\r\n\r\n"};
  secure.server.replies["/page"] =
      Html("<iframe name=f></iframe><form method=post action=/nothing target=f></form>");
  Open(secure.Address(u"/page"_s));
  RunInPage("document.forms[0].submit()");
  ASSERT_TRUE(RunUntil([&] { return secure.server.requests.join().contains("/nothing"); }));
  EXPECT_TRUE(RunUntil([&] { return !host->Navigation().busy; }));
  EXPECT_EQ(errors, QStringList());
}

TEST_F(FramesTest, AFrameIsWaitedForUntilItIsAnsweredAndNoLonger) {
  server.replies["/slow"] = {"", Reply::Then::kSilence};
  server.replies["/nothing"] = {"HTTP/1.1 204 No Content\r\n\r\n"};
  server.replies["/file"] = Answer("200 OK", "x", "Content-Disposition: attachment\r\n");
  limits.frame = 500ms;  // other frames are not waited for that long
  NextBrowser();
  Show("<iframe name=f></iframe><form method=post target=f></form>");
  const struct {
    const char* action;
    bool ends;
  } cases[] = {{"/nothing", true}, {"/file", true}, {"/slow", false}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.action);
    const auto code =
        QByteArray("document.forms[0].action = '") + row.action + "'; document.forms[0].submit()";
    RunInPage(code.constData());
    ASSERT_TRUE(RunUntil([&] { return server.requests.join().contains(row.action); }));
    EXPECT_EQ(RunUntil([&] { return !host->Navigation().busy; }, row.ends ? 15s : 2s), row.ends);
  }
  EXPECT_EQ(errors, QStringList());
}

TEST_F(FramesTest, AFrameIsSearchedForCaptionsDialogsAndComponents) {
  server.replies["/f1"] = Html(
      "<script>var hits = [];</script><div id=h></div><label>Port <input id=p></label>"
      "<button onclick='hits.push(1)'>Save</button>"
      "<dialog open><button onclick='hits.push(2)'>Save</button></dialog>"
      "<div id=k role=listbox onmousedown='d.hidden = false'>TCP</div>"
      "<ul id=d hidden><li onmousedown='hits.push(3)'>UDP</ul>"
      "<script>h.attachShadow({mode: 'open'}).innerHTML = '<input name=inside>'</script>");
  Open("/frames");
  EXPECT_EQ(Ask(ClickButton(u"Save"_s), 1), kSuccessful);
  EXPECT_EQ(Ask(ChooseItem(u"k"_s, u"UDP"_s), 1), QJsonValue(u"opened"_s));
  EXPECT_EQ(Ask(ChooseOpenItem(u"UDP"_s), 1), kSuccessful);
  EXPECT_EQ(Read("frames[1].hits"), u"2,3"_s);
  EXPECT_EQ(Ask(SetElementValue(u"inside"_s, u"x"_s), 1), kSuccessful);
  EXPECT_EQ(Read("frames[1].h.shadowRoot.firstChild.value"), u"x"_s);
  EXPECT_EQ(Ask(FocusField(u"port"_s), 1), kSuccessful);
  EXPECT_EQ(Read("frames[1].document.activeElement.id"), u"p"_s);
}

TEST_F(FramesTest, AnAddressForANamedFrameLeavesTheOthersAlone) {
  Open("/frames");
  host->Navigate2(server.Address(u"/new"_s).toString(), u"main"_s);
  EXPECT_TRUE(RunUntil([&] { return Values() == u"f0,new,f2"_s; })) << Values().toStdString();
  Settle();
  EXPECT_EQ(Ask(GetElementValue(u"a"_s), 1), u"new"_s);
  EXPECT_EQ(Read("location.pathname"), u"/frames"_s);
}

}  // namespace
}  // namespace quayline::testing
