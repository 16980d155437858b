// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

// Elements that are found by what a person sees, and pages built of components.
namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;

#define BUTTON(style, what) "<button style='" style "' onclick=\"note('" what "')\">Save</button>"

TEST_F(WebTest, ButtonsAreFoundByTheirCaptionAfterAllElse) {
  const PageCall click = ClickButton(u"save"_s);
  Check(
      "notes",
      {{"the caption counts for nothing", "<button onclick=\"note('hit')\">\n Save\n</button>",
        click, "hit"},
       {"a caption in parts is not read", "<button onclick=\"note('hit')\">Sa<b>ve</b> it</button>",
        ClickButton(u"Save it"_s), "hit"},
       {"a caption wins over a hidden field's value",
        BUTTON("", "caption") "<input type=hidden value=SAVE onclick=\"note('value')\">", click,
        "value"},
       {"a hidden button comes first", BUTTON("display:none", "hidden") BUTTON("", "visible"),
        click, "visible"},
       {"a hidden button is not clicked at all", BUTTON("visibility:hidden", "hidden"), click,
        "hidden"},
       {"the page beneath a dialog is clicked",
        BUTTON("", "beneath") "<dialog open>" BUTTON("", "dialog") "</dialog>", click, "dialog"},
       {"a dialog that is closed is clicked",
        "<div role=dialog hidden>" BUTTON("", "dialog") "</div>" BUTTON("", "page"), click, "page"},
       {"the lower of two dialogs is clicked",
        "<div aria-modal=true style='position:fixed;z-index:20'>" BUTTON(
            "", "upper") "</div><div aria-modal=true "
                         "style='position:fixed;z-index:10'>" BUTTON("", "lower") "</div>",
        click, "upper"},
       {"the page beneath an overlay is clicked",
        BUTTON("", "beneath") "<div style='position:fixed;z-index:99'>" BUTTON("",
                                                                               "overlay") "</div>",
        click, "overlay"},
       {"a switch has no caption",
        "<div role=switch aria-label=Save id=x></div><script>x.addEventListener('click',"
        "()=>note('hit'))</script>",
        click, "hit"},
       {"a title that a library keeps elsewhere",
        "<button title='' data-original-title=Save id=x onclick=\"note('hit')\"></button>", click,
        "hit"},
       {"a handler that script assigned is not seen",
        "<div id=x>Save</div><script>x.onclick=()=>note('hit')</script>", click, "hit"},
       {"a hand over the text counts for nothing",
        "<div id=x style='cursor:pointer'>Save</div><script>x.addEventListener('click',"
        "()=>note('hit'))</script>",
        click, "hit"},
       {"a text that nobody can click is clicked", "<p onmousedown=\"note('hit')\">Save</p>", click,
        "", kFailed},
       {"a part of a caption is enough", "<button onclick=\"note('hit')\">Save all</button>", click,
        "", kFailed},
       {"the handler of another button is enough",
        "<button onclick=\"note('one')\">Save</button><button "
        "onclick=\"note('two')\">Save</button>",
        ClickButtonByOnclick(u"Save"_s, u"'two'"_s), "two"},
       {"a link without an address is not found", "<a role=link onclick=\"note('hit')\">Ports</a>",
        ClickLinkByHref(u"ports"_s), "hit"},
       {"a handler that nobody can read is not clicked by its text",
        "<div role=button "
        "id=x>Save</div><script>x.addEventListener('click',()=>note('hit'))"
        "</script>",
        ClickByOnclick(u"Save"_s), "hit"}});
}

TEST_F(WebTest, AClickIsWhatAPersonsClickIs) {
  const char* const recorder =
      "<script>for(const type of ['pointerdown','mousedown','focus','pointerup','mouseup','click'])"
      "addEventListener(type,e=>e.target.id==='a'&&note(type+(e.detail&&type!='click'&&!e.clientY?"
      "' nowhere':'')),true)</script>";
  const QByteArray head = recorder;
  const struct {
    const char* fault;
    const char* body;
    const char* events;
  } cases[] = {
      {"a button", "<button id=a>x</button>",
       "pointerdown,mousedown,focus,pointerup,mouseup,click"},
      {"no element for the focus", "<div id=a>x</div>",
       "pointerdown,mousedown,pointerup,mouseup,click"},
      {"the page wants no focus", "<button id=a onmousedown='return false'>x</button>",
       "pointerdown,mousedown,pointerup,mouseup,click"},
      {"the page wants no mouse", "<div id=a onpointerdown='return false'>x</div>",
       "pointerdown,pointerup,click"},
      {"a disabled button", "<button id=a disabled>x</button>", ""},
      {"a button far down", "<p style='height:3000px'>x<p><button id=a onclick='note(scrollY>0)'>x",
       "pointerdown,mousedown,focus,pointerup,mouseup,click,true"},
  };
  for (const bool is_active : {true, false}) {
    for (const auto& row : cases) {
      SCOPED_TRACE(row.fault + std::string(is_active ? "" : ", in a window that is not active"));
      window->setVisible(is_active);
      Show(row.body, head);
      EXPECT_EQ(Ask(ClickButton(u"a"_s)), kSuccessful);
      EXPECT_EQ(Read("notes"), QString::fromUtf8(row.events));
    }
  }
}

#define SHADOW(markup) \
  "<div id=h></div><script>h.attachShadow({mode:'open'}).innerHTML=`" markup "`</script>"
#define INSIDE "[...h.shadowRoot.querySelectorAll('input,select')]"

TEST_F(WebTest, OpenShadowRootsAreSearchedAfterTheDocument) {
  const PageCall set = SetElementValue(u"a"_s, u"x"_s);
  Check("notes + ' ' + values() + ' ' + " INSIDE
        ".map(e=>e.type=='checkbox'?e.checked:e.name+e.value)",
        {{"a box inside is not found", SHADOW("<input name=a>"), set, "  ax"},
         {"a name inside wins over a field of the page", SHADOW("<input name=a>") "<input id=A>",
          set, " x a"},
         {"a component in a component is not found",
          SHADOW("<p id=p>") "<script>h.shadowRoot.querySelector('p').attachShadow({mode:'open'})"
                             ".innerHTML='<input name=a oninput=note(value)>'</script>",
          set, "x  "},
         {"a component is not worked by its field",
          "<my-box name=a id=h></my-box><script>h.attachShadow({mode:'open'}).innerHTML="
          "'<input oninput=note(value)>'</script>",
          set, "x  x"},
         {"a box inside is not checked", SHADOW("<input type=checkbox name=a>"),
          SetCheckbox(u"a"_s), "  true"},
         {"a list inside is not seen", SHADOW("<select name=a><option>x<option>Web</select>"),
          SetComboValue(u"a"_s, {.text = u"Web"_s}), "  aWeb"},
         {"an option inside is not seen", SHADOW("<select name=a><option>x<option>Web</select>"),
          SelectOptionByText(u"Web"_s), "  aWeb"},
         {"a button inside is not found by its handler",
          SHADOW("<button id=b>x</button>") "<script>h.shadowRoot.getElementById('b').onclick="
                                            "function(){note('save')}</script>",
          ClickByOnclick(u"'save'"_s), "save  "},
         {"a button inside is not found by its caption",
          SHADOW("<button onclick='note(1)'>Save</button>"), ClickButton(u"Save"_s), "1  "},
         {"boxes inside are numbered from one again", "<input>" SHADOW("<input>"),
          NameNamelessBoxes(), "  QYL_Text2"}});
  const char* const words = SHADOW("<b>key=5;</b><select name=a><option>Web</select>");
  Check({{"words inside are not seen", words, PageContainsWords(u"KEY=5"_s), true},
         {"markers inside are not seen", words, ExtractBetweenMarkers(u"key="_s, u";"_s), u"5"_s},
         {"a list inside is not asked", words, ComboHasOption(u"a"_s, u"Web"_s), true},
         {"a value inside is not read", words, GetElementValue(u"a"_s), u"Web"_s},
         {"text inside is not read", words, PageShowsText(u"key=5;"_s), true}});
}

TEST_F(WebTest, FieldsAreFoundByWhatAPersonSees) {
  Check({{"a name that is there", "<input name=a>", ElementIsThere(u"A"_s), true},
         {"a hidden name", "<input name=a type=hidden>", ElementIsThere(u"a"_s), false},
         {"a visible one after a hidden one", "<input name=a hidden><input name=a>",
          ElementIsThere(u"a"_s), true},
         {"a caption", "<button>Save</button>", ElementIsThere(u"Save"_s), true},
         {"a label", "<label>Ports: <input></label>", ElementIsThere(u"Ports"_s), true},
         {"a label beside its field", "<label>Port</label><div><input></div>",
          ElementIsThere(u"port"_s), true},
         {"no element at all", "<input name=b>", ElementIsThere(u"a"_s), false},
         {"text that is shown", "<p>Rule\n <b>saved</b>", PageShowsText(u"rule saved"_s), true},
         {"text that is hidden", "<p hidden>saved", PageShowsText(u"saved"_s), false},
         {"text of a script", "<script>'saved'</script>", PageShowsText(u"saved"_s), false}});
  Check("document.activeElement.id",
        {{"a field by its name", "<input name=a id=x>", FocusField(u"a"_s), "x"},
         {"a field by its label", "<label for=x>Name:</label><input id=x>", FocusField(u"Name"_s),
          "x"},
         {"the focus stays", "<input id=x><script>x.focus()</script>", FocusField({}), "x"},
         {"no field", "<input id=x>", FocusField(u"a"_s), "", kFailed}});
  const QByteArray combo = "<label>Ports</label><div tabindex=0><ul><li><input id=x></ul></div>";
  Check("x.value", {{"a box by its label", "<label for=x>Ports:</label><input name=p7 id=x>",
                     SetElementValue(u"Ports"_s, u"80"_s), "80"},
                    {"a box inside a drop-down", combo, SetElementValue(u"ports"_s, u"80"_s), "80"},
                    {"a name comes before a label", "<label>x <input id=y></label><input id=x>",
                     SetElementValue(u"x"_s, u"80"_s), "80"},
                    {"the next line's box", "<label>Ports</label><p tabindex=0></p><input id=x>",
                     SetElementValue(u"Ports"_s, u"80"_s), "", kFailed}});
  Check("String(x.checked)",
        {{"a check box by its label", "<label for=x>Log</label><input type=checkbox id=x>",
          SetCheckbox(u"Log"_s, true), "true"},
         {"a text box is no check box", "<label>Log <input></label><input type=checkbox id=x>",
          SetCheckbox(u"Log"_s, true), "false", kFailed}});
  Check("names()",
        {{"password boxes have no name",
          "<input><input type=password><input type=password name=own><input type=password>",
          NamePasswordBoxes(), "|QYL_Password1|own|QYL_Password2"}});
}

TEST_F(WebTest, ANameThatIsNotFoundHasNeighbours) {
  const char* const page =
      "<input name=srvName><input id=srv_port><input type=password value=srv_nama>"
      "<button>Save settings</button><meta name=srv_nam><input name=other>";
  Check({{"the nearest are not named", page, NearestNames(u"srv_name"_s),
          QJsonArray{u"srvName"_s, u"srv_port"_s}},
         {"a caption is not named", page, NearestNames(u"save"_s), QJsonArray{u"Save settings"_s}},
         {"anything is near", page, NearestNames(u"zzzz"_s), QJsonArray{}}});
}

}  // namespace
}  // namespace quayline::testing
