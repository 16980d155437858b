// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/formback_model.h"

#include "demo/admin_page.h"
#include "demo/rule_form.h"

namespace quayline::demo {

namespace {

constexpr char kListPath[] = "forwarding.html";
constexpr char kFormPath[] = "forwarding_add.html";

const AdminSite& Site() {
  static const AdminSite site{.maker = "Harbourline",
                              .product = "HR-100",
                              .colour = "#1d5a78",
                              .menu = {{"index.html", "Status"}, {kListPath, "Port Forwarding"}}};
  return site;
}

QString ListRow(int row, const Rule& rule) {
  return QStringLiteral(R"(<tr><td>%1</td><td>%2</td><td>%3</td><td>%4</td><td>%5</td>
<td><form method="post" action="/forwarding.html"><input type="hidden" name="delete" value="%6">
<input type="submit" value="Delete"></form></td></tr>
)")
      .arg(Html(rule.name), QString::number(rule.first), QString::number(rule.last),
           ProtocolWord(rule.protocol), rule.address, QString::number(row));
}

}  // namespace

HttpResponse FormbackModel::Answer(const HttpRequest& request) {
  const bool is_post = request.method == "POST";
  const QString page = request.path.mid(1);
  if (page == QLatin1String(kListPath)) {
    return is_post ? Delete(request) : ListPage();
  }
  if (page == QLatin1String(kFormPath)) {
    return is_post ? Save(request) : FormPage({}, {});
  }
  if (page.isEmpty() || page == QLatin1String("index.html")) {
    return StatusPage(Site(), table_);
  }
  return NotFound();
}

HttpResponse FormbackModel::ListPage() const {
  QString rows;
  for (int row = 0; row < table_.AllRows().size(); ++row) {
    if (const auto& rule = table_.AllRows().at(row)) {
      rows += ListRow(row, *rule);
    }
  }
  if (rows.isEmpty()) {
    rows = QStringLiteral("<tr><td colspan=\"6\">No rules yet.</td></tr>\n");
  }
  const QString content = QStringLiteral(R"(<table>
<tr><th>Name</th><th>Start port</th><th>End port</th><th>Protocol</th><th>Server</th><th></th></tr>
%1</table>
<p><a href="/%2">Add rule</a></p>)")
                              .arg(rows, QLatin1String(kFormPath));
  return AdminPage(Site(), QStringLiteral("Port Forwarding"), content);
}

HttpResponse FormbackModel::FormPage(const TypedRule& typed, const QString& fault) const {
  const QString content =
      QStringLiteral(R"(%1<form method="post" action="/%2">
<table>
%3</table>
<input type="submit" name="btn_save" value="Save">
</form>)")
          .arg(FaultParagraph(fault), QLatin1String(kFormPath), RuleRows({}, typed));
  return AdminPage(Site(), QStringLiteral("Port Forwarding: new rule"), content);
}

HttpResponse FormbackModel::Save(const HttpRequest& request) {
  const FormFields form(request.body);
  const TypedRule typed = PostedRule({}, form);
  const auto rule = ReadRule(typed);
  if (!rule) {
    return FormPage(typed, FaultText(rule.error()));
  }
  if (const auto saved = table_.Add(*rule); !saved) {
    return FormPage(typed, FaultText(saved.error()));
  }
  return RedirectTo(QByteArray("/") + kListPath);
}

HttpResponse FormbackModel::Delete(const HttpRequest& request) {
  bool is_number = false;
  const int row = FormFields(request.body).Value(QStringLiteral("delete")).toInt(&is_number);
  if (is_number) {
    table_.Remove(row);
  }
  return RedirectTo(QByteArray("/") + kListPath);
}

}  // namespace quayline::demo
