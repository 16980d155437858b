// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/scriptmenu_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "nat_fwd.htm";
constexpr char kDeskPath[] = "desk.htm";
constexpr char kStatusPath[] = "sys_info.htm";

constexpr char kHome[] = R"(<html>
<head><title>Marlin MS-3</title></head>
<frameset rows="46,*" border="0">
<frame name="banner" src="/banner.htm" scrolling="no">
<frame name="desk" src="/desk.htm">
</frameset>
</html>
)";

constexpr char kDesk[] = R"html(<html>
<head><title>Marlin MS-3</title>
<script>
var sections = [
  {caption: 'System', items: [['Information', 'sys_info.htm']]},
  {caption: 'Address translation', items: [['Port Forwarding', 'nat_fwd.htm']]}
];
var openSection = -1;
function menuMarkup() {
  var markup = '';
  for (var i = 0; i < sections.length; i++) {
    markup += '<p><a href="javascript:parent.openMenu(' + i + ')">' + sections[i].caption +
      '</a></p>';
    for (var k = 0; i === openSection && k < sections[i].items.length; k++) {
      var item = sections[i].items[k];
      markup += '<p>&nbsp; <a href="javascript:parent.openPage(\'' + item[1] + '\')">' +
        item[0] + '</a></p>';
    }
  }
  return markup;
}
function openMenu(number) {
  openSection = number;
  frames.menu.document.open();
  frames.menu.document.write(menuMarkup());
  frames.menu.document.close();
}
function openPage(address) {
  setTimeout(function() { frames.work.location.href = address; }, 30);
}
</script>
</head>
<frameset cols="190,*" border="0">
<frameset rows="60,*">
<frame name="logo" src="/logo.htm">
<frame name="menu" src="/menu.htm">
</frameset>
<frame name="work" src="/sys_info.htm">
</frameset>
</html>
)html";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Marlin",
                .product = "MS-3",
                .colour = "#54441c",
                .menu = {{kStatusPath, "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "srv_name",
                 .first = "srv_lo",
                 .last = "srv_hi",
                 .protocol = "srv_type",
                 .address = "srv_addr"}};
  return site;
}

HttpResponse Frames(const char* markup) {
  HttpResponse response;
  response.body = markup;
  return response;
}

}  // namespace

ScriptmenuModel::ScriptmenuModel(RuleTable& table) : FormModel(table, ModelSite()) {}

HttpResponse ScriptmenuModel::HomePage() const { return Frames(kHome); }

HttpResponse ScriptmenuModel::RouterPage(const QString& title, const QString& content) const {
  return BarePage(Site().admin, title, content);
}

HttpResponse ScriptmenuModel::OtherPage(const QString& page, const HttpRequest&) {
  if (page == QLatin1String(kDeskPath)) {
    return Frames(kDesk);
  }
  if (page == QLatin1String("menu.htm")) {
    return Frames("<html><body><script>document.write(parent.menuMarkup())</script></body></html>");
  }
  if (page == QLatin1String("banner.htm") || page == QLatin1String("logo.htm")) {
    return BarePage(Site().admin, QStringLiteral("Marlin"), {});
  }
  return page == QLatin1String(kStatusPath)
             ? RouterPage(QStringLiteral("Status"), StatusHtml(Site().admin, Table()))
             : NotFound();
}

}  // namespace quayline::demo
