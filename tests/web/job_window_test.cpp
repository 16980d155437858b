// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/job_window.h"

#include <QPointer>

#include <algorithm>

#include "web/page_job.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

#define SAVE "location='/save?'+[box.value,document.visibilityState,innerWidth>600].join()"

// The engine gives a page that it takes for hidden no animation frames, transitions and sightings.
TEST_F(PageJob, APageSavesWhileItsDetailsAreClosed) {
  const struct {
    const char* fault;
    const char* script;
  } pages[] = {
      {"after a transition",
       "box.style.opacity=0;box.addEventListener('transitionend',function(){" SAVE "})"},
      {"after frames", "var n=9;(function k(){--n?requestAnimationFrame(k):" SAVE "})()"},
      {"when a part is in view",
       "new IntersectionObserver(function(e){if(e[0].isIntersecting){" SAVE "}}).observe(box)"},
  };
  WindowPrompts prompts(context_.translator);
  context_.session.update_script = {u"nav(\"rule\")"_s, u"set_name(\"box,\")"_s,
                                    u"click_button(\"go\")"_s,
                                    u"wait_until_words_found(\"saved\")"_s, u"nav(\"fine\")"_s};
  for (const auto& page : pages) {
    server_.replies["/rule"] = Html(
        "<input id=box name=box style='opacity:1;transition:opacity .3s'>"
        "<script>var box=document.getElementById('box');function save(){" +
        QByteArray(page.script) + "}</script><input type=button name=go onclick='save()'>");
    server_.replies["/save?Web,visible,true"] = Html("saved");
    server_.replies["/fine"] = Html("fine");
    server_.requests.clear();
    const QPointer<JobWindow> window =
        new JobWindow(context_, prompts, WebPageHosts(context_.job_options, context_.translator));
    window->show();
    EXPECT_TRUE(RunUntil(
        [this] {
          return std::ranges::any_of(server_.requests, [](const QByteArray& request) {
            return request.contains(" /fine");
          });
        },
        std::chrono::seconds(30)));
    EXPECT_TRUE(std::ranges::any_of(
        server_.requests,
        [](const QByteArray& request) { return request.contains(" /save?Web,visible,true "); }))
        << page.fault << ": " << server_.requests.join("; ").toStdString();
    window->close();
    EXPECT_TRUE(RunUntil([&] { return window.isNull(); }));
  }
}

}  // namespace
}  // namespace quayline::testing
