// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/frameset_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "forward.htm";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Oldfield",
                .product = "OF-54",
                .colour = "#2d3f6b",
                .menu = {{"status.htm", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "fwd_name",
                 .first = "fwd_start",
                 .last = "fwd_end",
                 .protocol = "fwd_type",
                 .address = "fwd_host"}};
  return site;
}

}  // namespace

FramesetModel::FramesetModel(RuleTable& table) : FormModel(table, ModelSite()) {}

HttpResponse FramesetModel::HomePage() const {
  HttpResponse response;
  response.body = R"(<html>
<head><title>Oldfield OF-54</title></head>
<frameset cols="180,*" border="0">
<frame name="menu" src="/menu.htm">
<frame name="main" src="/status.htm">
</frameset>
</html>
)";
  return response;
}

HttpResponse FramesetModel::RouterPage(const QString& title, const QString& content) const {
  return BarePage(Site().admin, title, content);
}

HttpResponse FramesetModel::OtherPage(const QString& page, const HttpRequest&) {
  if (page == QLatin1String("menu.htm")) {
    return BarePage(Site().admin, QStringLiteral("Menu"),
                    QStringLiteral("<base target=\"main\"><div class=\"menu\">%1</div>")
                        .arg(MenuHtml(Site().admin)));
  }
  if (page == QLatin1String("status.htm")) {
    return RouterPage(QStringLiteral("Status"), StatusHtml(Site().admin, Table()));
  }
  return page == QLatin1String("index.htm") ? HomePage() : NotFound();
}

}  // namespace quayline::demo
