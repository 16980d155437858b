// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_lint.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

// "error [what is marked] sentence", one a finding.
QStringList Lint(const QString& line) {
  QStringList told;
  for (const LintFinding& finding : LintScriptLine(line)) {
    const bool is_error = finding.severity == LintSeverity::kError;
    told.append((is_error ? u"error ["_s : u"warning ["_s) +
                line.mid(finding.start, finding.length) + u"] "_s + LintSentence(finding));
  }
  return told;
}

// Lines that are fine, and lines with what one finding about them begins with.
void Check(const std::vector<const char*>& fine,
           const std::vector<std::pair<const char*, const char*>>& wrong) {
  for (const char* line : fine) {
    EXPECT_EQ(Lint(QString::fromUtf8(line)), QStringList()) << line;
  }
  for (const auto& [line, finding] : wrong) {
    const QStringList told = Lint(QString::fromUtf8(line));
    ASSERT_EQ(told.size(), 1) << line << ": " << told.join(u'|').toStdString();
    EXPECT_TRUE(told[0].startsWith(QLatin1String(finding)))
        << line << ": " << told[0].toStdString();
  }
}

TEST(ScriptLint, NamesThatNoCommandHas) {
  Check({"SET_Name(\"a,\")", "", "  ", "--- the rules (new firmware) ---",
         "Now the page with the rules"},
        {
            {" set_name(\"a,\")", "error [ set_name] The blanks in the name"},
            {"set _name(\"a,\")", "error [set _name] The blanks in the name"},
            {"nav (\"a\")", "error [nav ] The blanks"},
            {"set_nmae(\"a,\")",
             "warning [set_nmae] There is no command \"set_nmae\", so this line does "
             "nothing. Did you mean \"set_name\"?"},
            {"set-stop-port(\"a,\")",
             "warning [set-stop-port] There is no command \"set-stop-port\", so "
             "this line does nothing. Did you mean \"set_stop_port\"?"},
            {"set_combobox_if_in_combo_tru", "warning [set_combobox_if_in_combo_tru] There is no"},
            {"frobnicate(\"a\")",
             "warning [frobnicate] There is no command \"frobnicate\", so this line "
             "does nothing."},
            {"(\"%1 a\")", "warning"},
            {"click(\"%2\")", "warning [click] There is no command \"click\""},
        });
}

TEST(ScriptLint, ArgumentsThatAreCutAtTheWrongPlace) {
  Check({"clear_cache", "nav(\"\")", "wait_until_words_found(\"say \"(yes)\", please\")"},
        {
            {"nav",
             "error [nav] This line runs, and without an argument. The command is written "
             "nav(\"path\")."},
            {"nav(a.htm)", "error [(a.htm)] The argument belongs between"},
            {"nav('a.htm')", "error [('a.htm')]"},
            {"nav(\"a.htm\") ", "error [(\"a.htm\") ]"},
            {"nav(\"a.htm\")  first", "error"},
            {"nav(a.htm\")", "error [(a.htm\")]"},
            {"nav(\"a.htm)", "error"},
            {"nav(\")", "error [(\")]"},  // the same two characters cannot be both ends
            {"nav (\"\xE2\x80\x9C", "error [nav ]"},
            {"nav(", "error [(]"},
            {"clear_cache(\"now\")", "warning [now] The command takes no argument"},
        });
}

TEST(ScriptLint, FieldsThatAreMissingOrLost) {
  Check(
      {"set_name(\"a,\")", "set_name(\",0\")", "set_name_to_check(\",\")", "set_port_range(\"a,\")",
       "set_ip1(\"a,,true\")", "click_button_ignore_page_loading(\"Save\")",
       "set_type_choices(\"T|U\")", "click_button(\"Save, please\")",
       "choose_item(\"list,TCP, UDP\")", "choose_item(\"list\")", "expect_page_text(\"\")",
       "call_javascript(\"f(),2\")", "run_javascript(\"f(1, 2)\")", "press_key(\",ArrowDown\")",
       "press_key(\"f,,\")"},
      {
          {"set_name(\",1\")", "error [1] The position 1 is counted from the end of \"\""},
          {"set_name(\"a\")", "warning [a] Without the field \"position\" that of an earlier line"},
          {"set_custom(\"a,\")",
           "error [set_custom(\"a,\")] The field \"value\" is missing: the command takes "
           "\"field,position,value\"."},
          {"set_custom(\"a,,1,5\")", "error [,5] The argument ends here"},
          {"call_javascript(\"f(1, 2)\")", "error [, 2)] The code ends at the first comma"},
          {"call_javascript(\"f(a,1,2)\")", "error [,1,2)] The code ends at the first comma"},
          {"run_javascript(\"\")", "error [run_javascript(\"\")] The field \"code\" is empty."},
          {"press_key(\"f,Return\")", "error [Return] There is no key \"Return\""},
          {"set_type_choices(\"a|b|c|d\")", "error [|d] The argument ends here"},
          {"set_name(\",\")", "error [set_name(\",\")] The field \"field\" is empty."},
          {"wait_until_words_found(\"\")", "error"},
          {"set_custom(\"\")", "error [set_custom(\"\")] The field \"field\" is empty."},
          {"click_button_onclick(\"a\")", "error [a] The field \"onclick text\" is missing"},
          {"set_checkbox_by_name_string(\"3,<tr>\")", "error [<tr>] The field \"end marker\""},
      });
}

TEST(ScriptLint, NumbersThatAreNone) {
  Check({"set_name(\"abc,3\")", "click_button_onclick(\"a,save(),2\")",
         "set_value_by_position(\"v,12\")", "set_frame_number(\"0\")", "timeout(\" 500 \")",
         "set_ip1(\"a,,-1\")"},
        {
            {"set_name(\"abc,4\")", "error [4] The position 4 is counted from the end of \"abc\""},
            {"set_name(\"abc,-1\")", "error [-1] The field \"position\" should be a number"},
            {"set_name(\"abc,x\")", "error [x]"},
            {"click_button_onclick(\"a,go,3\")", "error [3] The position 3 is counted"},
            {"set_value_by_position(\"v,\")", "error"},
            {"set_password_by_position(\"two\")", "error [two]"},
            {"set_frame_number(\"\")", "error [set_frame_number(\"\")] The field \"frame number\""},
            {"call_page_submit(\"99999999999\")", "error"},
            {"timeout(\"0\")", "error [0] With 0 the line never ends"},
            {"timeout(\"1.5\")", "error [1.5]"},
            {"click_button_ignore_page_loading(\"Save,0\")", "error [0] With 0"},
            {"set_ip1(\"a,,yes\")",
             "error [yes] The field \"only if empty\" should be true or false"},
            {"nav(\"/a.htm\")", "warning [/] The slash"},
            {"nav_first_only(\"HTTP://192.168.1.1/a.htm\")", "error [HTTP"},
        });
}

// Shorter ones are waited for, and what is no number may be anything.
TEST(ScriptLint, TimersThatAreNotWaitedFor) {
  Check(
      {"run_javascript(\"setTimeout(save, 2500)\")", "run_javascript(\"setTimeout(save, later)\")",
       "run_javascript(\"f(5000); wait(a, 5000)\")"},
      {
          {"run_javascript(\"setTimeout(() => { save(1, 2) }, 3000)\")",
           "warning [3000] A page is waited for while its timers take 2500 ms at most"},
      });
}

TEST(ScriptLint, CommandsThatDoNotDoWhatTheySay) {
  Check({"timeout_first_only(\"5\")", "set_combobox(\"a,\")", "set_combobox_computername(\"a,\")",
         "set_combobox_name_if_in_combo_true_special_1(\"a,\")"},
        {
            {"timeout_if_in_combo_true(\"5\")",
             "warning [timeout_if_in_combo_true] Whatever its name"},
            {"timeout_last_only(\"5\")", "warning"},
            {"click_button_last_only_if_in_combo_true(\"a\")", "warning"},
            {"set_2ndradiobutton_if_in_combo_false(\"a,,b\")", "warning"},
            {"click_button_ignore_page_loading_if_in_combo_true(\"Save,2\")", "warning"},
            {"set_combobox_name(\"a,\")",
             "warning [set_combobox_name] Whatever its name says, this command chooses the first"},
            {"set_combobox_custom_if_in_combo_true(\"a,,b\")", "warning"},
            {"set_combobox_ip_if_in_combo_false(\"a,\")", "warning"},
        });
}

// What is offered for completion has to pass once its numbers are filled in.
TEST(ScriptLint, EveryCommandTakesAnArgumentOfItsOwnShape) {
  for (const CommandRow& row : AllCommands()) {
    QStringList fields;
    for (const FieldSpec& field : row.fields) {
      const bool is_number = field.kind == FieldKind::kWholeNumber ||
                             field.kind == FieldKind::kMilliseconds ||
                             field.kind == FieldKind::kTruth || field.kind == FieldKind::kPosition;
      fields.append(is_number                       ? u"1"_s
                    : field.kind == FieldKind::kKey ? u"Enter"_s
                                                    : FromAscii(field.name));
    }
    const QString line =
        CommandName(row) + u"(\""_s + fields.join(QLatin1Char(row.separator)) + u"\")"_s;
    for (const QString& told : Lint(line)) {
      EXPECT_TRUE(told.startsWith(u"warning"_s) && row.quirk != nullptr) << line.toStdString();
    }
  }
}

// The findings of a script whose lines are fine each by itself: "3 error The sentence".
QStringList LintLines(const QString& script, ScriptKind kind, const QString& update = {}) {
  QStringList told;
  for (const ScriptFinding& found : LintScript(script.split(u'\n'), kind, update.split(u'\n'))) {
    const bool is_error = found.finding.severity == LintSeverity::kError;
    told.append(QString::number(found.line) + (is_error ? u" error "_s : u" warning "_s) +
                LintSentence(found.finding));
  }
  return told;
}

TEST(ScriptLint, LinesThatDoNotWorkTogether) {
  const char* const kLogin = "nav(\"a\")\nset_username(\"u,\")\nclick_button(\"login\")\n";
  using enum ScriptKind;
  const struct {
    ScriptKind kind;
    QByteArray script;
    const char* finding = nullptr;  // how the only one begins
  } cases[] = {
      {kUpdate, QByteArray(kLogin) + "nav(\"b\")\nset_name(\"n,\")\ncall_page_submit(\"0\")"},
      {kUpdate, "only words"},
      {kUpdate, "set_name(\"n,\")\nclick_button(\"s\")", "1 error The script opens no page"},
      {kUpdate, "add_to_nav(\"a,b\")\nset_checkbox(\"c,\")\nnav(\"a\")\nclick_button(\"s\")",
       "2 error No page is open yet"},
      {kUpdate, "timeout(\"5\")\nnav(\"a\")"},
      {kUpdate, "nav(\"a\")\nset_combobox(\"c,\")\nset_combobox(\"d,\")\nclick_button(\"s\")",
       "2 error No line above states the page's words"},
      {kUpdate, "nav(\"a\")\nset_next_name_array(\"\")\nset_name(\"n,1\")\nclick_button(\"s\")",
       "2 error No line above states the names"},
      {kUpdate, "nav(\"a\")\nset_name(\"n,1\")\nset_next_letter(\"\")\nclick_button(\"s\")",
       "2 error No line above chooses a row"},
      {kUpdate, "nav(\"a\")\nset_name(\"n,x\")\nclick_button(\"s\")",
       "2 error The field \"position\" should be"},
      {kUpdate, "nav(\"a\")\nset_name_if_in_combo_true(\"n,\")\nclick_button(\"s\")",
       "2 error This line never runs: no is_in_combo"},
      // The first test is for the entries that follow.
      {kUpdate,
       "nav(\"a\")\nset_name_if_in_combo_true(\"n,\")\nclick_button(\"s\")\nis_in_combo(\"l\")"},
      {kUpdate, "nav(\"a\")\nclick_button(\"new\")\nset_name(\"n,\")",
       "3 warning No line below clicks"},
      {kUpdate, "nav(\"a\")\nset_name(\"n,\")", "2 error No line below clicks"},
      {kUpdate, "nav(\"a\")\nset_name(\"n,\")\nnav(\"b\")\nclick_button(\"s\")",
       "3 warning The page is left here"},
      {kUpdate,
       "set_frame_name(\"f\")\nnav(\"a\")\nset_name(\"n,\")\nnav(\"b\")\nclick_button(\"s\")"},
      {kUpdate, "nav(\"a\")\nset_checkbox(\"c,\")\nnav(\"b\")"},
      {kUpdate, "nav(\"a\")\nclick_button_ignore_page_loading(\"s,50\")\nnav(\"b\")",
       "2 warning The click is waited for 50 ms only"},
      {kUpdate, "nav(\"a\")\nclick_button_ignore_page_loading(\"s\")",
       "2 warning The click is waited for 100 ms only"},
      {kUpdate,
       "nav(\"a\")\nclick_button_ignore_page_loading(\"s,50\")\ntimeout(\"3000\")\nnav(\"b\")"},
      {kUpdate, "nav(\"a\")\nset_password(\"p,\")\nclick_button(\"go\")\nnav(\"b\")",
       "3 warning The password above is typed for the first entry only"},
      {kUpdate, "nav(\"a\")\nset_password(\"p,\")\nclick_button_first_only(\"go\")\nnav(\"b\")"},
      {kUpdate, "nav(\"a\")\nset_password_by_position(\"3\")\nclick_button(\"go\")\nnav(\"b\")"},
      {kView, "nav(\"a\")\nset_password(\"p,\")\nclick_button(\"go\")\nnav(\"b\")"},
      {kView, QByteArray(kLogin) + "nav_first_only(\"b\")"},
      {kView, "nav(\"a\")\nis_in_combo(\"n\")", "2 error This script runs without an entry"},
      {kView, "nav(\"a\")\nclick_button_not_last_only(\"n\")", "2 error This line never runs"},
      {kRemove, "nav(\"a\")\ncheck_if_name_exists", "2 error The script clicks nothing"},
      {kRemove, "nav(\"a\")\nrun_javascript(\"f()\")"},
  };
  for (const auto& c : cases) {
    const QStringList told = LintLines(QString::fromUtf8(c.script), c.kind);
    SCOPED_TRACE(c.script.constData());
    ASSERT_EQ(told.size(), c.finding == nullptr ? 0 : 1) << told.join(u'|').toStdString();
    EXPECT_TRUE(told.join(u'|').startsWith(QLatin1String(c.finding))) << told[0].toStdString();
  }
}

TEST(ScriptLint, AViewScriptThatDoesNotLeadToATable) {
  const QByteArray login = "nav(\"\")\nset_password(\"p,\")\nclick_button(\"go\")\n";
  const QByteArray form = "nav(\"rules\")\nset_name(\"n,\")\nclick_button(\"save\")";
  const QByteArray menu = "click_link(\"rules\")\n" + form.mid(form.indexOf('\n') + 1);
  const struct {
    QByteArray view;
    QByteArray update;
    const char* finding = nullptr;  // how the only one begins
  } cases[] = {
      {"", form, "1 error The script opens no page"},
      {"the table is below the form", form, "1 error The script opens no page"},
      {"nav(\"rules\")", form},
      {"clear_cache\nnav(\"rules\")", login + form, "1 warning The update script logs in"},
      {"nav(\"rules\")\nset_password_by_position(\"3\")\npress_key(\",Enter\")",
       "nav(\"rules\")\nset_password_by_position(\"3\")\npress_key(\",Enter\")\nset_name(\"n,\")\n"
       "click_button(\"save\")"},
      {login, login + form, "3 warning The script ends where the login leads"},
      {login, login + menu, "3 warning The script ends where the login leads"},
      {login + "nav(\"rules\")", login + form},
      {"nav(\"rules\")" + login.mid(login.indexOf('\n')),
       "nav(\"rules\")" + login.mid(login.indexOf('\n')) + form},
      // The buttons of the form are no way to a page.
      {login, login + "set_name(\"n,\")\nclick_button(\"save\")\nclick_button(\"apply\")"},
      {"nav(\"rules\")\nrun_javascript(\"show(quayline.startPort)\")", form,
       "2 error This script runs without an entry"},
  };
  for (const auto& c : cases) {
    const QStringList told =
        LintLines(QString::fromUtf8(c.view), ScriptKind::kView, QString::fromUtf8(c.update));
    SCOPED_TRACE(c.view.constData());
    ASSERT_EQ(told.size(), c.finding == nullptr ? 0 : 1) << told.join(u'|').toStdString();
    EXPECT_TRUE(told.join(u'|').startsWith(QLatin1String(c.finding))) << told[0].toStdString();
  }
}

}  // namespace
}  // namespace quayline
