// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/page_job.h"

// Pages that change under an operation: their handlers redraw, refuse or reset elements.
namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;

// A part of the page that draw() writes again.
#define DRAWN(markup) \
  "<div id=d></div><script>function draw(){d.innerHTML=`" markup "`}draw()</script>"

TEST_F(WebTest, ABoxThatItsHandlersRedrawEndsWithTheText) {
  const PageCall set = SetElementValue(u"a"_s, u"x"_s);
  Check("notes + values()",
        {{"its focus redraws it", DRAWN("<input name=a onfocus='draw()'>"), set, "x"},
         {"its input redraws it", DRAWN("<input name=a oninput='draw()'>"), set, "x"},
         {"its change redraws it", DRAWN("<input name=a onchange='draw()'>"), set, "x"},
         {"the second is redrawn with the first",
          DRAWN("<input name=a><input name=a onfocus='draw()'>"),
          SetSecondElementValue(u"a"_s, u"x"_s), "|x"},
         {"the next empty one is taken once the first is filled",
          "<div id=d></div><script>var m='';function draw(){d.innerHTML=`<input name=a value='${m}'"
          " oninput='m=value;draw()'><input name=a>`}draw()</script>",
          SetElementValue(u"a"_s, u"x"_s, true), "x|"},
         {"the page keeps the text in a model",
          "<div id=d></div><script>var m='';function draw(){d.innerHTML=`<input name=a value='${m}'"
          " oninput='m=value;draw()' onchange='note(m)'>`}draw()</script>",
          set, "xx"},
         {"the page writes it in capitals", "<input name=a oninput='value=value.toUpperCase()'>",
          set, "X"},
         {"the page refuses it", "<input name=a oninput=\"note(value);value=''\">", set, "x",
          kFailed},
         {"the page makes another value of it",
          "<input name=a oninput=\"value=value.replace('-','')\">",
          SetElementValue(u"a"_s, u"80-90"_s), "8090", kFailed},
         {"the page cuts it", "<input name=a onchange='value=value.substring(0,2)'>",
          SetElementValue(u"a"_s, u"abc"_s), "ab", kFailed},
         {"its focus removes it", "<input name=a onfocus='this.remove()'>", set, "", kFailed}});
}

TEST_F(WebTest, ABoxThatItsHandlersRedrawEndsChecked) {
  const PageCall set = SetCheckbox(u"a"_s);
  Check(
      "notes + ' ' + checks()",
      {{"its click redraws its row", DRAWN("<input type=checkbox name=a onclick='draw()'>"), set,
        " true"},
       {"its click redraws a checked row",
        DRAWN("<input type=checkbox name=a checked onclick='draw()'>"), set, " true"},
       {"a model keeps its state",
        "<div id=d></div><script>var m='';function draw(){d.innerHTML=`<input type=checkbox name=a"
        " ${m} onclick='m=checked?\"checked\":\"\";note(m);draw()'>`}draw()</script>",
        set, "checked true"},
       {"a checked box closes the other boxes when it is set once more",
        "<input type=checkbox name=a checked onclick='notes=[b.disabled=!checked]'>"
        "<input type=checkbox id=b>",
        set, "false true|false"},
       {"its click redraws all buttons of its name",
        DRAWN(
            "<input type=radio name=a value=1><input type=radio name=a value=2 onclick='draw()'>"),
        SetRadioButton(u"a"_s, u"2"_s), " false|true"},
       {"the page takes the click of a button back",
        "<input type=radio name=a value=1 onclick='note(checked);return false'>",
        SetRadioButton(u"a"_s, u"1"_s), "true,true true"},
       {"its click removes it", "<input type=checkbox name=a onclick='this.remove()'>", set, " ",
        kFailed}});
}

TEST_F(WebTest, AListThatItsHandlersRedrawEndsWithTheChoice) {
  const PageCall set = SetComboValue(u"a"_s, {.text = u"Web"_s});
#define OPTIONS "<option value=0>x<option>Web</select>"
  Check("notes + ' ' + values()",
        {{"its change redraws it", DRAWN("<select name=a onchange='draw()'>" OPTIONS), set, " Web"},
         {"its input redraws it",
          DRAWN("<select name=a oninput='draw()' onchange='note(value)'>" OPTIONS), set, "Web Web"},
         {"it is chosen by its text alone",
          DRAWN("<select><option>y</select><select onchange='draw()'>" OPTIONS),
          SelectOptionByText(u"Web"_s), " y|Web"},
         {"a list of presets goes back by itself",
          "<select name=a onchange='note(value);selectedIndex=0'>" OPTIONS, set, "Web 0"},
         {"its change removes it", "<select name=a onchange='this.remove()'>" OPTIONS, set, " ",
          kFailed}});
}

TEST_F(WebTest, AButtonThatThePointerRedrawsIsStillClicked) {
  const PageCall click = ClickButton(u"a"_s);
  Check("notes",
        {{"it is redrawn when pressed",
          DRAWN("<button name=a onmousedown='draw()' onclick=\"note('hit')\">x</button>"), click,
          "hit"},
         {"it is redrawn by the box that loses the focus",
          DRAWN("<input id=b autofocus onblur='draw()'><button name=a onclick=\"note('hit')\">x"
                "</button>") "<script>b.focus()</script>",
          click, "hit"},
         {"it is gone when pressed",
          "<button name=a onmousedown='this.remove()' onclick='note(1)'>x", click, ""}});
}

// What a page redraws after the operation, from a microtask or a timer, is not lost either.
using RedrawJob = PageJob;

TEST_F(RedrawJob, WhatAPageRedrawsLaterIsSaved) {
  const struct {
    const char* fault;
    const char* markup;
    const char* line;
    const char* saved;
  } cases[] = {
      {"by a microtask", "<input name=a oninput='Promise.resolve().then(draw)'>",
       "set_name(\"a,\")", "a=Web"},
      {"by an observer", "<input name=a oninput='d.title+=1'>", "set_name(\"a,\")", "a=Web"},
      {"by a task", "<input name=a onfocus='setTimeout(draw)'>", "set_name(\"a,\")", "a=Web"},
      {"by a timer", "<input name=a onchange='setTimeout(draw,200)'>", "set_name(\"a,\")", "a=Web"},
      {"by an answer", "<input name=a onchange='fetch(\"/none\").then(draw)'>", "set_name(\"a,\")",
       "a=Web"},
      {"a checked box", "<input type=checkbox name=a onclick='setTimeout(draw)'>",
       "set_checkbox(\"a,1\")", "a=on"},
      {"a list", "<select name=a onchange='setTimeout(draw,200)'><option>x<option>Web</select>",
       "choose_item(\"a,Web\")", "a=Web"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    server_.requests.clear();
    server_.replies["/page"] = Html(
        QByteArray("<form action=/save><div id=d></div><input type=submit name=go></form>"
                   "<script>function draw(){d.innerHTML=`") +
        row.markup + "`}draw();new MutationObserver(draw).observe(d,{attributes:true})</script>");
    Start({u"nav(\"page\")"_s, QString::fromUtf8(row.line), u"click_button(\"go\")"_s});
    ASSERT_TRUE(Ends(std::chrono::seconds(20)));
    const QByteArray requests = server_.requests.join();  // the page may fetch meanwhile
    EXPECT_TRUE(requests.contains(QByteArray("GET /save?") + row.saved))
        << requests.toStdString() << Log().toStdString();
  }
}

}  // namespace
}  // namespace quayline::testing
