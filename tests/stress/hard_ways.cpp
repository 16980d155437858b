// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stress/leaving_site.h"

namespace quayline::stress {

namespace {

#define SAVE_FORM \
  "<form method=post action='@SAVE@'></form><script>var saving=document.forms[0]</script>"
#define GO(code) SAVE_FORM "<input type=button name=go onclick=\"" code "\">"
#define FRAME_FORM                                                                          \
  "<form method=post target=f action='@SAVE@&answer=ok'><input type=submit name=go></form>" \
  "<iframe name=f></iframe>"
#define OPENER "<input type=button name=go onclick=\"open('@POPUP@','p','width=300,height=200')\">"
// A page that works all the time by itself, and a save into a frame meanwhile.
#define BUSY(code) FRAME_FORM "<script>" code "</script>"
#define POLL(pause)                                                                     \
  BUSY(                                                                                 \
      "function poll(){var r=new XMLHttpRequest;r.open('GET','/check?'+Math.random());" \
      "r.send()}setInterval(poll," pause ");poll()")
// A list whose row comes late.
#define LIST(code)                                                                            \
  "<select name=rules></select><script>function add(){document.getElementsByName('rules')[0]" \
  ".add(new Option('row'))}" code "</script>"
// A box that its own handler replaces by a new one.
#define REDRAWN(handler)                                                                   \
  "<form method=post action='@SAVE@&needs=typed'><span id=cell></span><input type=submit " \
  "name=go></form><script>function draw(v){document.getElementById('cell').innerHTML="     \
  "'<input name=text " handler ">';document.forms[0].elements.text.value=v||''}draw()</script>"

// A page whose button works only with all its scripts, and saves into a hidden frame.
#define CROWDED                                                                                 \
  "<form method=post target=f action='@SAVE@&answer=ok&needs=typed'><input name=text></form>"   \
  "<iframe name=f style='display:none'></iframe><input type=button name=go onclick=\"save()\">" \
  "<script>function save(){if(parts.length<20)throw 'a script is missing';"                     \
  "document.forms[0].submit()}</script>"

}  // namespace

const std::vector<WayOut>& HardWays() {
  using enum Leaves;
  static const std::vector<WayOut> ways{
      {.name = "popup submits and closes",
       .leaves = kInBackground,
       .markup = OPENER,
       .popup = GO("saving.submit();window.close()"),
       .clicks = 2},
      {.name = "popup submits and closes by itself",
       .leaves = kInBackground,
       .markup = OPENER,
       .popup = SAVE_FORM "<script>onload=function(){saving.submit();window.close()}</script>"},
      {.name = "popup requests and closes",
       .leaves = kInBackground,
       .markup = OPENER,
       .popup = GO("var r=new XMLHttpRequest;r.open('POST','@SAVE@&answer=ok');r.send('x=1');"
                   "window.close()"),
       .clicks = 2},
      {.name = "popup submits into its frame and closes",
       .leaves = kInBackground,
       .markup = OPENER,
       .popup = "<form method=post target=f action='@SAVE@&answer=ok'></form><iframe name=f>"
                "</iframe><input type=button name=go "
                "onclick='document.forms[0].submit();window.close()'>",
       .clicks = 2},
      {.name = "page submits and closes",
       .leaves = kSomewhere,
       .markup = GO("saving.submit();window.close()")},
      {.name = "page requests and closes",
       .leaves = kSomewhere,
       .markup = GO("var r=new XMLHttpRequest;r.open('POST','@SAVE@&answer=ok');r.send('x=1');"
                    "window.close()")},
      {.name = "box redrawn by onfocus",
       .leaves = kForNextPage,
       .markup = REDRAWN("onfocus=draw(this.value)"),
       .types = true},
      {.name = "box redrawn by onfocus, once",
       .leaves = kForNextPage,
       .markup = REDRAWN("onfocus=\"this.parentNode.innerHTML=\\'<input name=text>\\'\""),
       .types = true},
      {.name = "list by a timer of 100 ms",
       .leaves = kNotAtAll,
       .markup = LIST("setTimeout(add,100)"),
       .asks = true},
      {.name = "list by a timer of 500 ms",
       .leaves = kNotAtAll,
       .markup = LIST("setTimeout(add,500)"),
       .asks = true},
      {.name = "list by a request of 300 ms",
       .leaves = kNotAtAll,
       .markup = LIST("fetch('/check?hold=300').then(add)"),
       .asks = true},
      {.name = "list by a timer, then a request",
       .leaves = kNotAtAll,
       .markup = LIST("setTimeout(function(){fetch('/check?hold=200').then(add)},200)"),
       .asks = true},
      {.name = "list by an interval that looks",
       .leaves = kNotAtAll,
       .markup = LIST("var n=0,i=setInterval(function(){if(++n==4){clearInterval(i);add()}},100)"),
       .asks = true},
      {.name = "list by a worker",
       .leaves = kNotAtAll,
       .markup = LIST("var w=new Worker(URL.createObjectURL(new Blob(['onmessage=function(){"
                      "setTimeout(function(){postMessage(1)},300)}'])));w.onmessage=add;"
                      "w.postMessage(1)"),
       .asks = true},
      {.name = "timer of 3.5 s",
       .leaves = kSomewhere,
       .markup = GO("setTimeout(function(){saving.submit()},3500)"),
       .late = true},
      {.name = "save beside a long poll",
       .leaves = kInBackground,
       .markup = BUSY("function poll(){var r=new XMLHttpRequest;r.open('GET','/check?hold=20000');"
                      "r.onload=poll;r.send()}poll()"),
       .works = true},
      {.name = "save beside a long poll by fetch",
       .leaves = kInBackground,
       .markup = BUSY("function poll(){fetch('/check?hold=20000').then(poll)}poll()"),
       .works = true},
      {.name = "save beside an event source",
       .leaves = kInBackground,
       .markup = BUSY("new EventSource('/events')"),
       .works = true},
      {.name = "save beside a silent event source",
       .leaves = kInBackground,
       .markup = BUSY("new EventSource('/events?hold=20000')"),
       .works = true},
      {.name = "save beside a web socket",
       .leaves = kInBackground,
       .markup = BUSY("new WebSocket('ws://'+location.host+'/socket')"),
       .works = true},
      {.name = "save beside polling, 50 ms",
       .leaves = kInBackground,
       .markup = POLL("50"),
       .works = true},
      {.name = "save beside polling, 250 ms",
       .leaves = kInBackground,
       .markup = POLL("250"),
       .works = true},
      {.name = "save beside polling, 1 s",
       .leaves = kInBackground,
       .markup = POLL("1000"),
       .works = true},
      {.name = "save beside polling, 5 s",
       .leaves = kInBackground,
       .markup = POLL("5000"),
       .works = true},
      {.name = "save beside a fetch loop",
       .leaves = kInBackground,
       .markup = BUSY("function poll(){fetch('/check?'+Math.random()).then(poll)}poll()"),
       .works = true},
      {.name = "save beside an animation",
       .leaves = kInBackground,
       .markup = BUSY("function turn(t){document.title=t;requestAnimationFrame(turn)}turn(0)"),
       .works = true},
      {.name = "save beside a chain of timers",
       .leaves = kInBackground,
       .markup = BUSY("function turn(){setTimeout(turn,20)}turn()"),
       .works = true},
      {.name = "page of 20 scripts",
       .leaves = kInBackground,
       .markup = CROWDED,
       .types = true,
       .scripts = 20},
      {.name = "20 scripts of a router of 5 connections",
       .leaves = kInBackground,
       .markup = CROWDED,
       .types = true,
       .scripts = 20,
       .connections = 5},
  };
  return ways;
}

}  // namespace quayline::stress
