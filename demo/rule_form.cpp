// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/rule_form.h"

#include "demo/admin_page.h"

namespace quayline::demo {

QString TextRow(const char* caption, const char* name, const QString& value, const char* extra) {
  return QStringLiteral(
             "<tr><th>%1</th><td><input type=\"text\" name=\"%2\" value=\"%3\"%4></td></tr>\n")
      .arg(QLatin1String(caption), QLatin1String(name), Html(value), QLatin1String(extra));
}

QString RuleRows(const RuleFieldNames& names, const TypedRule& typed) {
  QString rows = TextRow("Rule name", names.name, typed.name, " size=\"24\" maxlength=\"32\"") +
                 TextRow("Start port", names.first, typed.first, " size=\"6\"") +
                 TextRow("End port", names.last, typed.last, " size=\"6\"") +
                 QStringLiteral("<tr><th>Protocol</th><td>%1</td></tr>\n")
                     .arg(ProtocolSelect(QLatin1String(names.protocol), typed.protocol));
  if (names.address) {
    rows += TextRow("Server IP address", names.address, typed.address, " size=\"16\"");
  }
  return rows;
}

TypedRule PostedRule(const RuleFieldNames& names, const FormFields& form) {
  const auto value = [&form](const char* name) {
    return name ? form.Value(QLatin1String(name)) : QString();
  };
  return {.name = value(names.name),
          .first = value(names.first),
          .last = value(names.last),
          .protocol = value(names.protocol),
          .address = value(names.address)};
}

QString RuleListHtml(const RuleTable& table) {
  QString rows;
  for (const Rule& rule : table.Rules()) {
    rows += QStringLiteral("<tr><td>%1</td><td>%2</td><td>%3</td><td>%4</td><td>%5</td></tr>\n")
                .arg(Html(rule.name), QString::number(rule.first), QString::number(rule.last),
                     ProtocolWord(rule.protocol), rule.address);
  }
  if (rows.isEmpty()) {
    rows = QStringLiteral("<tr><td colspan=\"5\">No rules yet.</td></tr>\n");
  }
  return QStringLiteral(R"(<table>
<tr><th>Name</th><th>Start port</th><th>End port</th><th>Protocol</th><th>Server</th></tr>
%1</table>
)")
      .arg(rows);
}

TypedRule AsTyped(const Rule& rule) {
  return {.name = rule.name,
          .first = QString::number(rule.first),
          .last = QString::number(rule.last),
          .protocol = ProtocolWord(rule.protocol),
          .address = rule.address,
          .enabled = rule.enabled};
}

}  // namespace quayline::demo
