// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/admin_page.h"

namespace quayline::demo {

namespace {

constexpr char kStyle[] = R"(
body { margin: 0; font: 13px Verdana, "DejaVu Sans", sans-serif; color: #223; background: #eef0f2; }
.head { color: #fff; padding: 14px 22px; }
.head b { font-size: 20px; }
.menu { float: left; width: 150px; padding: 14px 0; }
.menu a { display: block; padding: 7px 22px; color: #234; text-decoration: none; }
.menu a:hover { background: #dde2e7; }
.main { margin-left: 150px; min-height: 340px; padding: 8px 26px 26px; background: #fff; }
.bare { padding: 4px 18px; }
h1 { font-size: 17px; font-weight: normal; border-bottom: 1px solid #ccd; padding-bottom: 6px; }
table { border-collapse: collapse; margin: 12px 0; }
th { text-align: left; background: #e4e8ec; }
th, td { padding: 4px 9px; border: 1px solid #ccd2d8; }
.fault { color: #b00020; font-weight: bold; }
)";

QString Latin1(const char* text) { return QString::fromLatin1(text); }

HttpResponse Page(const AdminSite& site, const QString& title, const QString& body) {
  const QString html = QStringLiteral(R"(<!DOCTYPE html>
<html>
<head>
<meta charset="utf-8">
<title>%1 %2 - %3</title>
%4<style>%5</style>
</head>
<body>
%6</body>
</html>
)")
                           .arg(Latin1(site.maker), Latin1(site.product), title, Latin1(site.head),
                                Latin1(kStyle), body);
  HttpResponse response;
  response.body = html.toUtf8();
  return response;
}

}  // namespace

HttpResponse AdminPage(const AdminSite& site, const QString& title, const QString& content) {
  return Page(site, title,
              QStringLiteral(R"(<div class="head" style="background: %1"><b>%2</b> %3</div>
<div class="menu">
%4</div>
<div class="main">
<h1>%5</h1>
%6
</div>
)")
                  .arg(Latin1(site.colour), Latin1(site.maker), Latin1(site.product),
                       MenuHtml(site), title, content));
}

HttpResponse BarePage(const AdminSite& site, const QString& title, const QString& content) {
  return Page(
      site, title,
      QStringLiteral("<div class=\"bare\">\n<h1>%1</h1>\n%2\n</div>\n").arg(title, content));
}

QString MenuHtml(const AdminSite& site) {
  QString html;
  for (const MenuLink& link : site.menu) {
    html += QStringLiteral("<a href=\"/%1\">%2</a>\n").arg(Latin1(link.path), Latin1(link.caption));
  }
  return html;
}

HttpResponse JavaScriptFile(const char* code) {
  HttpResponse response;
  response.content_type = "text/javascript; charset=utf-8";
  response.body = code;
  return response;
}

HttpResponse StatusPage(const AdminSite& site, const RuleTable& table) {
  return AdminPage(site, QStringLiteral("Status"), StatusHtml(site, table));
}

QString StatusHtml(const AdminSite& site, const RuleTable& table) {
  return QStringLiteral(R"(<table>
<tr><th>Model</th><td>%1 %2</td></tr>
<tr><th>Firmware</th><td>2.04.11</td></tr>
<tr><th>Internet</th><td>Connected (DHCP)</td></tr>
<tr><th>LAN address</th><td>192.168.1.1 / 255.255.255.0</td></tr>
<tr><th>Forwarding rules</th><td>%3 of %4</td></tr>
</table>)")
      .arg(Latin1(site.maker), Latin1(site.product), QString::number(table.Rules().size()),
           QString::number(table.AllRows().size()));
}

QString Html(const QString& text) { return text.toHtmlEscaped(); }

QString FaultParagraph(const QString& text) {
  return text.isEmpty() ? QString() : QStringLiteral("<p class=\"fault\">%1</p>\n").arg(Html(text));
}

QString ProtocolSelect(const QString& name, const QString& chosen) {
  QString html = QStringLiteral("<select name=\"%1\">").arg(Html(name));
  for (const Protocol protocol : {Protocol::kTcp, Protocol::kUdp, Protocol::kBoth}) {
    const QString word = ProtocolWord(protocol);
    const bool is_chosen = word.compare(chosen, Qt::CaseInsensitive) == 0;
    html += QStringLiteral("<option value=\"%1\"%2>%3</option>")
                .arg(word.toLower(), is_chosen ? QStringLiteral(" selected") : QString(), word);
  }
  return html + QStringLiteral("</select>");
}

QString ProtocolWord(Protocol protocol) {
  return protocol == Protocol::kBoth ? QStringLiteral("Both") : ProtocolText(protocol);
}

}  // namespace quayline::demo
