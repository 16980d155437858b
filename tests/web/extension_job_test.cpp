// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <algorithm>

#include "web/page_job.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// Builds itself after it is loaded; the list opens late, and Enter saves a name that was checked.
constexpr char kBuiltPage[] = R"html(<div id=app></div><script>
  var chosen = '', verified = false;
  function open_list() {
    setTimeout(function() {
      var list = document.createElement('ul');
      for (const text of ['TCP', 'UDP']) {
        var item = document.createElement('li');
        item.textContent = text;
        item.onmousedown = function() { chosen = text; list.remove(); };
        list.append(item);
      }
      document.body.append(list);
    }, 200);
  }
  function save(event) {
    if (event.key == 'Enter' && verified) {
      fetch('/save', {method: 'POST'}).then(function() {
        document.body.append('Saved ' + event.target.value + ' by ' + chosen);
      });
    }
  }
  setTimeout(function() {
    document.getElementById('app').innerHTML = '<input name=rule onkeydown="save(event)" ' +
      'oninput="setTimeout(function() { verified = true }, 300)">' +
      '<div id=protocol role=combobox tabindex=0 onclick="open_list()">Choose</div>';
  }, 300);
</script>)html";

class ExtensionJob : public PageJob {
 protected:
  ExtensionJob() {
    server_.replies["/list"] = Html(kBuiltPage);
    server_.replies["/save"] = Html("saved");
  }

  qsizetype Requests(const char* line) const {
    return std::ranges::count_if(
        server_.requests, [line](const QByteArray& request) { return request.startsWith(line); });
  }
};

TEST_F(ExtensionJob, WorksAPageThatScriptsBuild) {
  Start({u"nav(\"list\")"_s, u"wait_until_element(\"rule\")"_s,
         u"set_type_choices(\"TCP|UDP|Both\")"_s, u"choose_item(\"protocol,\")"_s,
         u"set_name(\"rule,\")"_s, u"press_key(\"rule,Enter\")"_s,
         u"expect_page_text(\"Saved Web by TCP\")"_s,
         u"run_javascript(\"document.body.append(' for ' + [quayline.ip, quayline.endPort])\")"_s,
         u"expect_page_text(\"for 10.0.0.5,90\")"_s, u"nav_unless_there(\"list\")"_s,
         u"nav_unless_there(\"list\")"_s});
  ASSERT_TRUE(Ends(30s));
  EXPECT_EQ(runner_->Outcome().entries_failed, 0) << Log().toStdString();
  EXPECT_EQ(Requests("POST /save"), 1);
  EXPECT_EQ(Requests("GET /list"), 2) << "once for each save, and not once more";
  EXPECT_EQ(Log().count(u"Already There"_s), 1);
  EXPECT_FALSE(Log().contains(u"(Failed"_s)) << Log().toStdString();
}

TEST_F(ExtensionJob, AnErrorOfAScriptLineIsLoggedOnceAndTheEntryIsToBeChecked) {
  for (const auto& code : {u"broken()"_s, u"f("_s}) {
    Start({u"nav(\"list\")"_s, u"run_javascript(\"%1\")"_s.arg(code)});
    ASSERT_TRUE(Ends(30s));
    EXPECT_EQ(Log().count(u"Error: "_s), 2) << "(Script Error: KindError: " << Log().toStdString();
    EXPECT_EQ(runner_->Outcome().ToCheck(), QStringList{u"Web"_s});
  }
}

TEST_F(ExtensionJob, AnExpectedTextThatIsMissingFailsTheEntry) {
  Start({u"nav(\"list\")"_s, u"call_javascript(\"broken()\")"_s, u"expect_page_text(\"Saved\")"_s,
         u"nav(\"never\")"_s});
  ASSERT_TRUE(Ends(30s));
  EXPECT_EQ(runner_->Outcome().entries_failed, 1);
  EXPECT_EQ(Requests("GET /never"), 0);
  EXPECT_TRUE(Log().contains(u"(Successful)\r\n(Script Error: ReferenceError: broken is not"_s))
      << Log().toStdString();
  EXPECT_EQ(Log().count(u"broken is not"_s), 1) << Log().toStdString();
  EXPECT_TRUE(Log().contains(u"!ERROR! (The Page Does Not Show \"Saved\")"_s));
}

}  // namespace
}  // namespace quayline::testing
