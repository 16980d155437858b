// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/longlist_model.h"

#include "demo/admin_page.h"
#include "demo/rule_form.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "rules.html";

const AdminSite& Site() {
  static const AdminSite site{.maker = "Ledger",
                              .product = "L40",
                              .colour = "#3c5a2a",
                              .menu = {{"index.html", "Status"}, {kRulesPath, "Port Forwarding"}}};
  return site;
}

Rule Preset(int row) {
  constexpr int kFirstPort = 20'000;
  constexpr int kPortsPerRow = 10;
  constexpr int kComputers = 200;
  const int first = kFirstPort + row * kPortsPerRow;
  return {.name = QStringLiteral("Preset %1").arg(row + 1),
          .protocol = row % 3 == 0 ? Protocol::kBoth : Protocol::kTcp,
          .first = first,
          .last = first + kPortsPerRow - 1,
          .address = QStringLiteral("192.168.1.%1").arg(2 + row % kComputers),
          .enabled = false};
}

QString RowHtml(int row, const Rule& rule) {
  return QStringLiteral(
             "<tr><td>%1</td><td>%2</td><td>%3</td><td>%4</td><td>%5</td><td>%6</td><td>%7</td>"
             "<td><input type=\"checkbox\" name=\"mark_%1\" value=\"1\"></td></tr>\n")
      .arg(QString::number(row + 1), Html(rule.name), QString::number(rule.first),
           QString::number(rule.last), ProtocolWord(rule.protocol), rule.address,
           rule.enabled ? QStringLiteral("On") : QStringLiteral("Off"));
}

}  // namespace

HttpResponse LonglistModel::Answer(const HttpRequest& request) {
  const QString page = request.path.mid(1);
  if (page == QLatin1String(kRulesPath)) {
    return request.method == "POST" ? Save(request) : RulesPage({.enabled = false}, {});
  }
  if (page.isEmpty() || page == QLatin1String("index.html")) {
    return StatusPage(Site(), table_);
  }
  return NotFound();
}

HttpResponse LonglistModel::RulesPage(const TypedRule& typed, const QString& fault) const {
  QString rows;
  for (int row = 0; row < table_.AllRows().size(); ++row) {
    rows += RowHtml(row, table_.AllRows().at(row).value_or(Preset(row)));
  }
  const QString content =
      QStringLiteral(R"(%1<table>
<tr><th>No.</th><th>Name</th><th>Start</th><th>End</th><th>Protocol</th><th>Server</th><th>State</th><th></th></tr>
%2</table>
<form method="post" action="/%3">
<table>
%4<tr><th>Enabled</th><td><input type="checkbox" name="enabled" value="1"%5></td></tr>
</table>
<input type="submit" name="btn_add" value="Add"> <input type="reset" name="btn_clear" value="Clear">
</form>)")
          .arg(FaultParagraph(fault), rows, QLatin1String(kRulesPath), RuleRows({}, typed),
               typed.enabled ? QStringLiteral(" checked") : QString());
  return AdminPage(Site(), QStringLiteral("Port Forwarding"), content);
}

HttpResponse LonglistModel::Save(const HttpRequest& request) {
  const FormFields form(request.body);
  TypedRule typed = PostedRule({}, form);
  typed.enabled = form.Has(QStringLiteral("enabled"));
  const auto rule = ReadRule(typed);
  if (!rule) {
    return RulesPage(typed, FaultText(rule.error()));
  }
  if (const auto saved = table_.Add(*rule); !saved) {
    return RulesPage(typed, FaultText(saved.error()));
  }
  return RedirectTo(QByteArray("/") + kRulesPath);
}

}  // namespace quayline::demo
