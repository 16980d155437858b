// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/rowtable_model.h"

#include "demo/admin_page.h"
#include "demo/rule_form.h"

namespace quayline::demo {

namespace {

constexpr char kTablePath[] = "forward.htm";

const AdminSite& Site() {
  static const AdminSite site{.maker = "Quayside",
                              .product = "Q20",
                              .colour = "#5b4a1e",
                              .menu = {{"index.htm", "Status"}, {kTablePath, "Port Forwarding"}}};
  return site;
}

QString BoxName(const char* stem, int number) {
  return QLatin1String(stem) + QString::number(number);
}

QString TextBox(const char* stem, int number, const QString& value, int size) {
  return QStringLiteral("<td><input type=\"text\" name=\"%1\" value=\"%2\" size=\"%3\"></td>")
      .arg(BoxName(stem, number), Html(value), QString::number(size));
}

QString RowHtml(int number, const TypedRule& typed) {
  return QStringLiteral(
             "<tr><td>%1</td>%2%3%4<td>%5</td>%6"
             "<td><input type=\"checkbox\" name=\"enable_%1\" value=\"1\"%7></td></tr>\n")
      .arg(QString::number(number), TextBox("name_", number, typed.name, 16),
           TextBox("start_", number, typed.first, 5), TextBox("end_", number, typed.last, 5),
           ProtocolSelect(BoxName("proto_", number), typed.protocol),
           TextBox("ip_", number, typed.address, 15),
           typed.enabled ? QStringLiteral(" checked") : QString());
}

TypedRule FreeRow() {
  return {.name = {},
          .first = QStringLiteral("0"),
          .last = QStringLiteral("0"),
          .protocol = QStringLiteral("TCP"),
          .address = QStringLiteral("0.0.0.0"),
          .enabled = false};
}

bool IsFree(const TypedRule& typed) {
  const QString first = typed.first.trimmed();
  return typed.name.trimmed().isEmpty() && (first.isEmpty() || first == QLatin1String("0"));
}

TypedRule PostedRow(const FormFields& form, int number) {
  return {.name = form.Value(BoxName("name_", number)),
          .first = form.Value(BoxName("start_", number)),
          .last = form.Value(BoxName("end_", number)),
          .protocol = form.Value(BoxName("proto_", number)),
          .address = form.Value(BoxName("ip_", number)),
          .enabled = form.Has(BoxName("enable_", number))};
}

QString RowFaultText(int row, RuleFault fault) {
  return QStringLiteral("Row %1: %2").arg(QString::number(row + 1), FaultText(fault));
}

}  // namespace

HttpResponse RowtableModel::Answer(const HttpRequest& request) {
  const QString page = request.path.mid(1);
  if (page == QLatin1String(kTablePath)) {
    return request.method == "POST" ? Apply(request) : TablePage(StoredRows(), {});
  }
  if (page.isEmpty() || page == QLatin1String("index.htm")) {
    return StatusPage(Site(), table_);
  }
  return NotFound();
}

HttpResponse RowtableModel::TablePage(const QList<TypedRule>& rows, const QString& message) const {
  QString html;
  for (int row = 0; row < rows.size(); ++row) {
    html += RowHtml(row + 1, rows.at(row));
  }
  const QString content = QStringLiteral(R"(%1<form method="post" action="/%2">
<table>
<tr><th>No.</th><th>Name</th><th>Start</th><th>End</th><th>Protocol</th>
<th>IP address</th><th>On</th></tr>
%3</table>
<input type="submit" name="btn_apply" value="Apply">
</form>)")
                              .arg(message, QLatin1String(kTablePath), html);
  return AdminPage(Site(), QStringLiteral("Port Forwarding"), content);
}

HttpResponse RowtableModel::Apply(const HttpRequest& request) {
  const FormFields form(request.body);
  QList<TypedRule> typed = StoredRows();
  RuleTable::Rows rows = table_.AllRows();
  QString fault;
  for (int row = 0; row < rows.size(); ++row) {
    // A row that the page did not post stays: an empty post must not wipe the table.
    if (!form.Has(BoxName("name_", row + 1))) {
      continue;
    }
    typed[row] = PostedRow(form, row + 1);
    rows[row].reset();
    if (IsFree(typed.at(row))) {
      continue;
    }
    const auto rule = ReadRule(typed.at(row));
    if (rule) {
      rows[row] = *rule;
    } else if (fault.isEmpty()) {
      fault = RowFaultText(row, rule.error());
    }
  }
  if (fault.isEmpty()) {
    if (const auto saved = table_.Replace(rows); !saved) {
      fault = RowFaultText(saved.error().row, saved.error().fault);
    }
  }
  if (!fault.isEmpty()) {
    return TablePage(typed, FaultParagraph(fault));
  }
  return TablePage(StoredRows(), QStringLiteral("<p>The settings are saved.</p>\n"));
}

QList<TypedRule> RowtableModel::StoredRows() const {
  QList<TypedRule> rows;
  for (const auto& rule : table_.AllRows()) {
    rows.append(rule ? AsTyped(*rule) : FreeRow());
  }
  return rows;
}

}  // namespace quayline::demo
