// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/selectlist_model.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "virtual_servers.asp";

// The rules for the page's script: an object of field values each.
QString RulesScript(const QList<Rule>& rules) {
  QJsonArray array;
  for (const Rule& rule : rules) {
    const TypedRule typed = AsTyped(rule);
    array.append(QJsonObject{{QStringLiteral("vs_name"), typed.name},
                             {QStringLiteral("vs_from"), typed.first},
                             {QStringLiteral("vs_to"), typed.last},
                             {QStringLiteral("vs_proto"), typed.protocol.toLower()},
                             {QStringLiteral("vs_ip"), typed.address}});
  }
  QString text = QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
  // A name may look like the end of the script.
  return text.replace(QLatin1Char('<'), QStringLiteral("\\u003c"));
}

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Pennant",
                .product = "PN-3",
                .colour = "#7a2430",
                .menu = {{"status.asp", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "vs_name",
                 .first = "vs_from",
                 .last = "vs_to",
                 .protocol = "vs_proto",
                 .address = "vs_ip"}};
  return site;
}

}  // namespace

SelectlistModel::SelectlistModel(RuleTable& table) : FormModel(table, ModelSite()) {}

QString SelectlistModel::RuleForm(const TypedRule& typed) const {
  QString options;
  for (const Rule& rule : Table().Rules()) {
    options += QStringLiteral("<option>%1</option>\n").arg(Html(rule.name));
  }
  return QStringLiteral(
             R"html(<select name="vs_list" size="8" onchange="showRule(this.selectedIndex)">
%1</select>
%2<script>
var rules = %3;
function showRule(number) {
  var fields = document.forms[0].elements;
  for (var field in rules[number]) {
    fields[field].value = rules[number][field];
  }
}
</script>)html")
      .arg(options,
           FormHtml(typed, "",
                    R"(<input type="submit" name="btn_add" value="Add">
<input type="submit" name="btn_change" value="Change">
<input type="submit" name="btn_delete" value="Delete">)"),
           RulesScript(Table().Rules()));
}

std::expected<void, RuleFault> SelectlistModel::Store(const Rule& rule, const FormFields& form) {
  const bool is_change = form.Has(QStringLiteral("btn_change"));
  if (!is_change && !form.Has(QStringLiteral("btn_delete"))) {
    return Table().Add(rule);
  }
  RuleTable::Rows rows = Table().AllRows();
  const auto row = std::ranges::find_if(rows, [&rule](const std::optional<Rule>& candidate) {
    return candidate && candidate->name.compare(rule.name, Qt::CaseInsensitive) == 0;
  });
  if (row == rows.end()) {
    return std::unexpected(RuleFault::kNoRule);
  }
  *row = is_change ? std::optional(rule) : std::nullopt;
  if (const auto saved = Table().Replace(rows); !saved) {
    return std::unexpected(saved.error().fault);
  }
  return {};
}

}  // namespace quayline::demo
