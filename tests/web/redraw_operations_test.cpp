// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

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

}  // namespace
}  // namespace quayline::testing
