// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/page_job.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// The job's entry is "Web", ports 80 to 90, TCP, to 10.0.0.5.
class RuleReading : public PageJob {
 protected:
  // What the page says of the entry: "on-router", or "different: port address", and so on.
  QString Look() {
    context_.session.view_script = {u"nav(\"rules\")"_s};
    Open({});
    runner_->Check();
    EXPECT_TRUE(Ends(20s));
    return Words();
  }
  QString Words() {
    const QList<EntryResult>& results = runner_->Outcome().results;
    if (results.isEmpty()) {
      return u"no result"_s;
    }
    QStringList words{StateName(results.first().state)};
    for (const RuleField field : results.first().differs) {
      words.append(FieldName(field));
    }
    return words.join(u' ');
  }
};

constexpr char kHead[] =
    "<table><tr><th>Name<th>Start Port<th>End Port<th>IP<th>Protocol<th>Enable</tr>";

// A row in which everything can be changed.
QByteArray Boxes(const char* name, const char* start, const char* end, const char* part) {
  return QStringLiteral(
             "<tr><td><input value='%1'><td><input value='%2'> to <input value='%3'><td>10.0.0."
             "<input value='%4'><td><input type=checkbox checked><td><input type=checkbox></tr>")
      .arg(QLatin1String(name), QLatin1String(start), QLatin1String(end), QLatin1String(part))
      .toUtf8();
}

// The cells of a form for a new rule, with the values of the entry.
constexpr char kForm[] =
    "<td><input value=Web><td><input value=80><td><input value=90><td><input value=10.0.0.5>"
    "<td><select><option>TCP<option>UDP</select><td><input type=checkbox checked>";

QByteArray Table(const QByteArray& rows) { return kHead + rows + "</table>"; }

QByteArray Row(const char* name, int start, int end, const char* ip, bool enabled = true) {
  return QStringLiteral(
             "<tr><td>%1<td>%2<td>%3<td>%4<td>TCP<td><input type=checkbox %5 disabled></tr>")
      .arg(QLatin1String(name), QString::number(start), QString::number(end), QLatin1String(ip),
           enabled ? u"checked"_s : QString())
      .toUtf8();
}

// A rule that takes two lines of a table.
QByteArray TwoLines(const char* name, const char* ports, const char* address) {
  return QStringLiteral(
             "<tr><td rowspan=2><input type=checkbox name=on_1 checked><td>Name<br><input "
             "name=name_1 value=%1><td>TCP<br><input name=tcp_1 value=%2></tr><tr><td>IP "
             "Address<br><input name=ip_1 value=%3><td>UDP<br><input name=udp_1></tr>")
      .arg(QLatin1String(name), QLatin1String(ports), QLatin1String(address))
      .toUtf8();
}

TEST_F(RuleReading, OfPagesOfAllKinds) {
  const QByteArray web = Row("Web", 80, 90, "10.0.0.5");
  const QByteArray others = Row("Mail", 25, 25, "10.0.0.5") + Row("Cam", 80, 90, "10.0.0.9");
  const struct {
    const char* page;
    QByteArray markup;
    const char* words;
  } rows[] = {
      {"a table", Table(others + web), "on-router"},
      {"rules of others with the same ports", Table(others), "missing"},
      {"a disabled rule", Table(Row("Web", 80, 90, "10.0.0.5", false)), "different disabled"},
      {"another port", Table(Row("Web", 80, 91, "10.0.0.5")), "different port"},
      {"a table without a row", Table(""), "missing"},
      {"no table", "<h1>Welcome</h1><p>Firmware 80.90", "unknown"},
      {"a table within tables of a layout",
       "<table><tr><td>Menu<td><table><tr><td>" + Table(web) + "</table></table>", "on-router"},
      {"two rows of headings, and merged cells",
       "<table><tr><th rowspan=2>Name<th colspan=2>Port<th rowspan=2>Host</tr><tr><th>Start<th>End"
       "</tr><tr><td rowspan=2>Web<td>70<td>70<td rowspan=2>10.0.0.5</tr><tr><td>80<td>90</tr>"
       "</table>",
       "on-router"},
      {"headings that stay while the rows scroll",
       "<style>table { table-layout: fixed } td, th { width: 90px }</style><table><tr><th>From port"
       "<th>To port<th>IP<th></table><div><table><tr><td>80<td>90<td>10.0.0.5</table></div>",
       "on-router"},
      {"headings of other columns, above",
       "<style>table { table-layout: fixed } th { width: 30px }</style><table><tr><th>From port"
       "<th>To port<th>IP</table><table style='width: 600px'><tr><td>80<td>90<td>10.0.0.5</table>",
       "unknown"},
      {"headings of a table that is hidden",
       "<div hidden>" + Table("") + "</div><table><tr><td>Mail<td>10.0.0.9</table>", "unknown"},
      {"two lines a rule",
       "<table>" + TwoLines("Cam", "70", "10.0.0.9") + TwoLines("Web", "80-90", "10.0.0.5") +
           "</table>",
       "on-router"},
      {"two lines a rule, and the address of another computer in the second",
       "<table>" + TwoLines("Cam", "70", "10.0.0.5") + TwoLines("Web", "80-90", "10.0.0.9") +
           "</table>",
       "different address"},
      {"the address of another computer beside an empty box",
       "<table><tr><th>Name<th>Port<th>IP<th>Protocol<tr><td>Web<td>80-90<td>10.0.0.9 <input "
       "name=note><td>TCP</table>",
       "different address"},
      {"boxes in the rows, and the last part of the address",
       "<table><tr><td>Name<td>Ports<td>IP Address<td>TCP<td>UDP</tr>" +
           Boxes("Web", "80", "90", "5") + Boxes("", "", "", "") + "</table>",
       "on-router"},
      {"one row of boxes, which may be a form",
       "<table><tr><td>Name<td>Ports<td>IP Address<td>TCP<td>UDP</tr>" +
           Boxes("Web", "80", "90", "5") + "</table>",
       "unknown"},
      {"a form below the table that has what was typed",
       Table(others) + "<table><tr>" + kForm + "</tr></table>", "missing"},
      {"the same in the table of the rules", Table(others + "<tr>" + kForm + "</tr>"), "missing"},
      {"a form alone", "<form><table><tr>" + QByteArray(kForm) + "</tr></table></form>", "unknown"},
      {"a form of several rows",
       "<table><tr><td>Name<td><input value=Web><tr><td>TCP Ports<td><input value=80> - <input "
       "value=90><tr><td>IP address<td><input value=10.0.0.5></table>",
       "unknown"},
      {"a form of blocks",
       "<div class=a><p>Rule</p><p>Ports</p></div><div class=a><p><input value=Web></p><p><input "
       "value=80>-<input value=90></p><p>TCP to <input value=10.0.0.5></p></div>",
       "unknown"},
      {"rules of boxes, and a form like them that adds",
       "<table>" + Boxes("Cam", "80", "90", "9") + Boxes("Mail", "25", "25", "5") +
           Boxes("Web", "80", "90", "5").replace("</tr>", "<td><button>Add</button></tr>") +
           "</table>",
       "missing"},
      {"rules of numbered boxes, and a form without a number",
       "<table><tr><td>Name<td>Ports<td>IP<td>TCP<td>UDP</tr>" +
           Boxes("Cam", "80", "90", "9").replace("<input ", "<input name=r_1 ") +
           Boxes("Web", "80", "90", "5").replace("<input ", "<input name=r_new ") + "</table>",
       "unknown"},
      {"a template in a table of boxes",
       "<table><tr><td>Name<td>Ports<td>IP<td>TCP<td>UDP</tr>" + Boxes("Mail", "25", "25", "5") +
           Boxes("", "", "", "") + "</table>",
       "missing"},
      {"a table of triggers",
       "<h2>Port Triggering</h2>" + Table(web) + "<h2>Port Forwarding</h2>" + Table(others),
       "missing"},
      {"a table of the firewall",
       "<table><caption>Firewall<tr><th>Name<th>Action<th>Port<th>Protocol<th>To<tr><td>Web"
       "<td>Allow<td>80-90<td>TCP<td>10.0.0.5</table>",
       "unknown"},
      {"leases, and rules of others",
       "<table><tr><th>Host<th>IP address<th>MAC<tr><td>Desk<td>10.0.0.5<td>00:80:90:11:22:33"
       "</table>" +
           Table(others),
       "missing"},
      {"services by name",
       "<table><tr><th>Name<th>Port<th>IP<th>Protocol<tr><td>Web<td>HTTP<td>10.0.0.5<td>TCP"
       "</table>",
       "unknown"},
      {"names of computers",
       "<table><tr><th>Name<th>Ports<th>Device<th>Protocol<tr><td>Web<td>80-90<td>Desk<td>TCP"
       "</table>",
       "on-router"},
      {"a name of another computer",
       "<table><tr><th>Name<th>Ports<th>Device<th>Protocol<tr><td>Web<td>80-90<td>laptop<td>TCP"
       "</table>",
       "unknown"},
      {"German headings",
       "<table><tr><th>Bezeichnung<th>Ports<th>Ger\xC3\xA4t<th>Protokoll<th>Aktiv<tr><td>Web"
       "<td>80-90<td>10.0.0.5<td>TCP<td>nein</table>",
       "different disabled"},
      {"Chinese headings",
       "<table><tr><th>\xE5\x90\x8D\xE7\xA7\xB0<th>\xE7\xAB\xAF\xE5\x8F\xA3<th>IP\xE5\x9C\xB0"
       "\xE5\x9D\x80<th>\xE5\x8D\x8F\xE8\xAE\xAE<tr><td>x<td>80-90<td>10.0.0.5<td>TCP</table>",
       "on-router"},
      {"headings that say nothing",
       "<table><tr><th>A<th>B<th>C<tr><td>Web<td>80<td>10.0.0.5</table>", "unknown"},
      {"an IPv6 rule", Table(Row("Web", 80, 90, "fd00::5")), "different address"},
      {"a grid of roles",
       "<div role=grid><div role=row><span role=columnheader>Name</span><span role=columnheader>"
       "Ports</span><span role=columnheader>IP</span><span role=columnheader>On</span></div>"
       "<div role=row><span role=gridcell>Web</span><span role=gridcell>80-90</span>"
       "<span role=gridcell>10.0.0.5</span><span role=gridcell><i role=switch aria-checked=true>"
       "</i></span></div></div>",
       "on-router"},
      {"a switch that is off",
       "<table><tr><th>Name<th>Ports<th>IP<th>Enabled<tr><td>Web<td>80-90<td>10.0.0.5<td>"
       "<span role=switch aria-checked=false>on</span></table>",
       "different disabled"},
      {"radio buttons with labels for something else",
       "<table><tr><th>Name<th>Ports<th>IP<th>Loopback<tr><td>Web<td>80-90<td>10.0.0.5<td>"
       "<label><input type=radio name=r>Active</label><label><input type=radio name=r checked>"
       "Inactive</label></table>",
       "on-router"},
      {"the same in a column for it",
       "<table><tr><th>Name<th>Ports<th>IP<th>Status<tr><td>Web<td>80-90<td>10.0.0.5<td>"
       "<label><input type=radio name=r>Active</label><label><input type=radio name=r checked>"
       "Inactive</label></table>",
       "different disabled"},
      {"the first one is chosen",
       "<table><tr><th>Name<th>Ports<th>IP<th>Status<tr><td>Web<td>80-90<td>10.0.0.5<td>"
       "<label><input type=radio name=r checked>Active</label><label><input type=radio name=r>"
       "Inactive</label></table>",
       "on-router"},
      {"radio buttons without a heading or label",
       "<div class=r><i>Web</i><i>80-90</i><i>10.0.0.5</i><i>TCP</i><b><input type=radio name=a id="
       "On checked> On <input type=radio name=a id=Disabled> Disabled</b></div>"
       "<div class=r><i>Mail</i><i>25</i><i>10.0.0.5</i><i>TCP</i><b><input type=radio name=b "
       "id=On> On <input type=radio name=b id=Disabled checked> Disabled</b></div>",
       "on-router"},
      {"radio buttons for the protocol",
       "<table><tr><th>Name<th>Ports<th>IP<th>Protocol<tr><td>Web<td>80-90<td>10.0.0.5<td>"
       "<input type=radio name=r checked> TCP <input type=radio name=r> UDP <input type=radio "
       "name=r> Both</table>",
       "on-router"},
      {"a picture for off",
       "<table><tr><th>Name<th>Ports<th>IP<th>Status<tr><td>Web<td>80-90<td>10.0.0.5<td>"
       "<img src=/i/off.gif></table>",
       "different disabled"},
      {"a word that a style hides",
       "<table><tr><th>Name<th>Ports<th>IP<th>Status<tr><td>Web<td>80-90<td>10.0.0.5<td>"
       "<span style='display:none'>Enabled</span><span>Disabled</span></table>",
       "different disabled"},
      {"a list of definitions",
       "<dl><dt>Name<dd>Mail<dt>Port<dd>25<dt>Address<dd>10.0.0.5<dt>Name<dd>Web<dt>Port"
       "<dd>80-90<dt>Address<dd>10.0.0.5</dl>",
       "on-router"},
      {"cards",
       "<div><div class=card><p><b>Name</b> <i>Mail</i></p><p><b>Port</b> <i>25</i></p></div>"
       "<div class=card><p><b>Name</b> <i>Web</i></p><p><b>Port:</b> <i>80-90</i></p>"
       "<p>Protocol: TCP</p></div></div>",
       "on-router"},
      {"a list of ports",
       "<table><tr><th>Name<th>Ports<th>IP<tr><td>Web<td>80,90<td>10.0.0.5</table>",
       "different port"},
      {"the ports of the router and of the computer in one cell",
       "<table><tr><th>Name<th>Ports<th>IP<tr><td>Web<td>8080-8090 -> 80-90<td>10.0.0.5</table>",
       "different port"},
      {"a list box", "<select size=5><option>Web TCP 80-90 10.0.0.5<option>Mail TCP 25</select>",
       "on-router"},
      {"a list of items", "<ul><li>Mail: 25 TCP 10.0.0.5<li>Web: 80-90 TCP 10.0.0.5</ul>",
       "on-router"},
      {"blocks",
       "<div class=rule><b>Mail</b><i>25</i><i>10.0.0.5</i><i>TCP</i></div>"
       "<div class=rule><b>Web</b><i>80 - 90</i><i>10.0.0.5</i><i>TCP</i></div>",
       "on-router"},
      {"a table that the style makes",
       "<style>.row { display: table-row } .row > * { display: table-cell }</style>"
       "<div><div class=row><b>Name</b><b>Ports</b><b>Host</b></div>"
       "<div class='row odd'><i>Web</i><i>80-90</i><i>10.0.0.5</i></div></div>",
       "on-router"},
      {"a template that is not shown", Table(others + "<tr style='display:none'>" + web.mid(4)),
       "missing"},
      {"a frame", "<iframe src=/inner></iframe>", "on-router"},
      {"a shadow root",
       "<div id=host></div><script>document.getElementById('host').attachShadow({mode: 'open'})"
       ".innerHTML = `" +
           Table(web) + "`</script>",
       "on-router"},
      {"rows that come late",
       "<div id=a></div><script>setTimeout(() => fetch('/inner').then(r => r.text())"
       ".then(t => { a.innerHTML = t }), 400)</script>",
       "on-router"},
      {"a page that follows", Table(others) + "<a href=/second>Next</a>", "on-router"},
      {"a next page that only a script opens",
       Table(others) + "<a href='javascript:more()'>Next</a>", "unknown"},
      {"a next page that a handler may do more for",
       Table(others) + "<a href=/second onclick='clear_all()'>&gt;</a>", "unknown"},
      {"a button that leads on", Table(others) + "<button>Next page</button>", "unknown"},
      {"the button of a wizard", Table(others) + "<form><input type=button value=Next></form>",
       "missing"},
      {"a button between page numbers",
       Table(others) + "<div><button>&lt;</button> 1 2 <button>&gt;</button></div>", "unknown"},
      {"an arrow without a text between page numbers",
       Table(others) + "<div class=el-pagination><button class=btn-prev></button>1<button "
                       "class=btn-next><i>\xE2\x86\x92</i></button></div>",
       "unknown"},
      {"the last page of such a pager",
       Table(others) + "<div class=el-pagination><button class=btn-prev></button>1<button "
                       "class=btn-next disabled><i>\xE2\x86\x92</i></button></div>",
       "missing"},
      {"a link without an address between page numbers",
       Table(others) + "<div><a role=link>Previous</a> 1 <a role=link>Next</a></div>", "unknown"},
      {"a table that has more rows than it holds",
       Table(others).replace("<table", "<table aria-rowcount=80"), "unknown"},
      {"a table with all of its rows", Table(others).replace("<table", "<table aria-rowcount=3"),
       "missing"},
      {"rows that are made when the list is scrolled",
       "<div style='height: 60px; overflow: auto'><div style='height: 900px'>" + Table(others) +
           "</div></div>",
       "unknown"},
      {"a list that is scrolled and has all of its rows",
       "<div style='height: 20px; overflow: auto'>" + Table(others) + "</div>", "missing"},
      {"a page that is scrolled, with a table in it",
       "<div style='height: 60px; overflow: auto'>" + Table(others) +
           "<p style='height: 900px'>Help</p></div>",
       "missing"},
      {"the last page", Table(others) + "<a href=/second class=disabled>Next</a>", "missing"},
      {"a next page that is the same one", Table(others) + "<a href=/rules>Next</a>", "missing"},
      {"a next page that cannot be read", Table(others) + "<a href=/gone>Next</a>", "unknown"},
  };
  server_.replies["/inner"] = Html(Table(web));
  server_.replies["/second"] = Html(Table(web));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.page);
    server_.replies["/rules"] = Html(row.markup);
    EXPECT_EQ(Look(), QLatin1String(row.words)) << runner_->Log().Text().toStdString();
  }
}

TEST_F(RuleReading, OfALongTableFindsTheLastRuleAndNoOther) {
  QByteArray rows;
  for (int i = 0; i < 499; ++i) {
    rows += Row(qPrintable(u"Rule%1"_s.arg(i)), 1000 + i, 1000 + i, "10.0.0.5");
  }
  server_.replies["/rules"] = Html(Table(rows + Row("Web", 80, 90, "10.0.0.5")));
  EXPECT_EQ(Look(), u"on-router"_s);
  server_.replies["/rules"] = Html(Table(rows + Row("Web", 80, 90, "10.0.0.6")));
  EXPECT_EQ(Look(), u"different address"_s);
  server_.replies["/rules"] = Html(Table(rows));
  EXPECT_EQ(Look(), u"missing"_s);
}

// What became of a save is what the router shows, whatever the steps said.
TEST_F(RuleReading, FindsOutWhatARouterMadeOfASave) {
  const struct {
    const char* router;
    QByteArray before;
    QByteArray after;
    const char* words;
    bool existed;
  } rows[] = {
      {"stores it", Table(""), Table(Row("Web", 80, 90, "10.0.0.5")), "on-router", false},
      {"had it", Table(Row("Web", 80, 90, "10.0.0.5")), Table(Row("Web", 80, 90, "10.0.0.5")),
       "on-router", true},
      {"drops it", Table(""), Table(""), "missing", false},
      {"changes the port", Table(""), Table(Row("Web", 80, 80, "10.0.0.5")), "different port",
       false},
      {"says no, and shows no rules", "<p>Hello", "<p>Hello", "to-check", false},
  };
  context_.job_options.verify_after_update = true;
  context_.session.view_script = {u"nav(\"rules\")"_s};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.router);
    server_.replies["/rules"] = Html(row.before);
    server_.replies["/form"] = Html(
        "<form method=post action=/save><input name=rule><input type=submit name=go></form>"
        "<script>document.forms[0].onsubmit = () => alert('No room')</script>");
    server_.replies["/save"] = Html("Saved");
    server_.special = [&](const QByteArray& request) -> std::optional<Reply> {
      if (request.startsWith("POST /save")) {
        server_.replies["/rules"] = Html(row.after);
      }
      return std::nullopt;
    };
    Start({u"nav(\"form\")"_s, u"set_name(\"rule,\")"_s, u"click_button(\"go\")"_s});
    ASSERT_TRUE(Ends(30s));
    EXPECT_EQ(Words(), QLatin1String(row.words));
    EXPECT_EQ(runner_->Outcome().results.first().existed, row.existed);
    EXPECT_EQ(runner_->Outcome().results.first().doubts.join(u' '),
              u"The page said: \"No room\""_s);
    EXPECT_FALSE(Log().contains(u"rules"_s)) << "the log is that of the entries";
  }
}

// Some routers let the browser keep their pages, and the lists that scripts fetch.
TEST_F(RuleReading, IsOfTheRouterAsItIsNow) {
  const QByteArray lasting =
      "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\n"
      "Cache-Control: max-age=3600\r\n\r\n";
  context_.job_options.verify_after_update = true;
  context_.session.view_script = {u"nav(\"rules\")"_s};
  const QByteArray web = Table(Row("Web", 80, 90, "10.0.0.5"));
  const QByteArray fetching =
      "<div id=a></div><script>fetch('/list').then(r => r.text()).then(t => { a.innerHTML = t })"
      "</script>";
  for (const bool fetches : {false, true}) {
    const QByteArray list = fetches ? "/list" : "/rules";
    server_.replies["/rules"] = Html(fetching);
    server_.replies[list] = {.bytes = lasting + Table("")};
    server_.replies["/form"] =
        Html("<form method=post action=/save><input type=submit name=go></form>");
    server_.replies["/save"] = Html("Saved");
    server_.special = [&](const QByteArray& request) -> std::optional<Reply> {
      if (request.startsWith("POST /save")) {
        server_.replies[list] = {.bytes = lasting + web};
      }
      return std::nullopt;
    };
    Start({u"nav(\"form\")"_s, u"click_button(\"go\")"_s});
    ASSERT_TRUE(Ends(30s));
    EXPECT_EQ(Words(), u"on-router"_s) << (fetches ? "fetched" : "a page");
  }
}

TEST_F(RuleReading, AReadingThatFailsCostsTheJobNothing) {
  context_.job_options.verify_after_update = true;
  context_.session.view_script = {u"nav(\"gone\")"_s};
  server_.replies["/form"] =
      Html("<form method=post action=/save><input type=submit name=go></form>");
  server_.replies["/save"] = Html("Saved");
  Start({u"nav(\"form\")"_s, u"click_button(\"go\")"_s});
  ASSERT_TRUE(Ends(30s));
  EXPECT_EQ(runner_->Outcome().entries_failed, 0) << Log().toStdString();
  EXPECT_FALSE(runner_->Outcome().stopped);
  EXPECT_EQ(Words(), u"unknown"_s);
}

}  // namespace
}  // namespace quayline::testing
