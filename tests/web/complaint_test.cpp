// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/page_job.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class Complaints : public PageJob {
 protected:
  QString Doubts() { return runner_->Outcome().results.first().doubts.join(u" / "_s); }
};

const char kForm[] =
    "<form method=post action=/save><input name=rule><input name=port>"
    "<input type=submit name=go></form>";

TEST_F(Complaints, AnErrorTextCountsIfItAnswersTheEntry) {
  const struct {
    const char* page;
    QByteArray form;
    QByteArray answer;
    const char* words;  // empty: no doubt
  } rows[] = {
      {"an answer with an error", kForm, "<p class='msg error'>Port 80 is\n in use",
       "Port 80 is in use"},
      {"an answer with an alert", kForm, "<div role=alert><b>No room</b></div>", "No room"},
      {"an error within a region of messages", kForm,
       "<div id=messages><h2>Result</h2><p class=failed>Wrong address</div>", "Wrong address"},
      {"a form with its note comes again, with an error",
       QByteArray("<p class=warning>Mind the ports") + kForm,
       QByteArray("<p class=warning>Mind the ports<p id=errText>Bad port") + kForm, "Bad port"},
      {"a form that checks what is typed",
       QByteArray("<p id=e class=invalid-feedback></p>") + kForm +
           "<script>document.querySelector('[name=rule]').onchange = () => "
           "{ e.textContent = 'Too long' }</script>",
       "Saved", "Too long"},
      {"a page that shows what was hidden",
       QByteArray("<p class=error style='display:none' id=e>Table is full</p>") + kForm +
           "<script>document.forms[0].onsubmit = () => { e.style.display = 'block'; return false }"
           "</script>",
       "", "Table is full"},
      {"an answer that comes late", kForm,
       "<p id=a></p><script>setTimeout(() => { a.innerHTML = '<i class=error>Busy</i>' }, 300)"
       "</script>",
       "Busy"},
      {"an error in a frame", kForm, "<iframe src=/inner></iframe>", "Inner error"},
      {"an answer of the form's own page", kForm, "", ""},
      {"a note that was there before", QByteArray("<p class=warning>Mind the ports") + kForm,
       QByteArray("<p class=warning>Mind the ports") + kForm, ""},
      {"a hidden template", kForm,
       "<p class=error style='display:none'>Bad port<p class=error style='opacity:0'>Bad port"
       "<p class=error style='position:absolute;left:-9999px'>Bad port"
       "<div style='height:0;overflow:hidden'><p class=error>Bad port</div>",
       ""},
      {"good news in a place for messages", kForm, "<p class=message>Settings saved.", ""},
      {"good news that looks like an alert", kForm, "<p class='alert alert-success'>Stored", ""},
      {"red text without a name", kForm, "<p style='color:red'>Port 80 is in use", ""},
      {"a menu", kForm, "<ul><li class=messages><a href=/x>Messages</a></ul>", ""},
      {"a form with that name", kForm, "<div class=error-form>Port <input></div>", ""},
      {"a word with such letters", kForm, "<p class=terrace>Bad port", ""},
  };
  server_.replies["/inner"] = Html("<p class=error>Inner error");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.page);
    server_.replies["/form"] = Html(row.form);
    server_.replies["/save"] = Html(row.answer);
    Start({u"nav(\"form\")"_s, u"set_name(\"rule,\")"_s, u"click_button(\"go\")"_s});
    ASSERT_TRUE(Ends(30s));
    EXPECT_EQ(Doubts(), *row.words == '\0'
                            ? QString()
                            : u"The page showed: \"%1\""_s.arg(QLatin1String(row.words)))
        << Log().toStdString();
  }
}

// The way to the form leads through pages with notes of their own, and the form has some as well.
TEST_F(Complaints, NotesOnTheWayToASaveAreNoAnswer) {
  server_.replies["/start"] = Html(
      "<p class=warning>Old firmware<form method=post action=/list><input type=submit "
      "name=open></form>");
  server_.replies["/list"] = Html(
      "<p class=alert>Firewall is off<form action=/form method=post><input name=count>"
      "<input type=submit name=add></form>");
  server_.replies["/form"] = Html(QByteArray("<p class=error>Fields with * are needed") + kForm);
  server_.replies["/save"] = Html("<p class=alert>Firewall is off<p class=error>" +
                                  QByteArray("Very ").repeated(60) + "long");
  Start({u"nav(\"start\")"_s, u"click_button(\"open\")"_s, u"set_name(\"count,\")"_s,
         u"click_button(\"add\")"_s, u"set_name(\"rule,\")"_s, u"click_button(\"go\")"_s});
  ASSERT_TRUE(Ends(30s));
  EXPECT_TRUE(Doubts().startsWith(u"The page showed: \"Very Very"_s)) << Log().toStdString();
  EXPECT_LE(Doubts().size(), 240);
  EXPECT_EQ(Doubts().count(u"showed"_s), 1);
}

}  // namespace
}  // namespace quayline::testing
