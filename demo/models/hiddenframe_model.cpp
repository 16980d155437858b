// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/hiddenframe_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "nat_rules.php";

HttpResponse OutcomePage(const QString& text) {
  HttpResponse response;
  response.body = QStringLiteral("<script>parent.tellOutcome(\"%1\");</script>").arg(text).toUtf8();
  return response;
}

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Undertow",
                .product = "UT-8",
                .colour = "#0d4f6b",
                .menu = {{"main.php", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "rule[name]",
                 .first = "rule[from]",
                 .last = "rule[to]",
                 .protocol = "rule[proto]",
                 .address = "rule[dest]"},
      .checks_referer = true};
  return site;
}

}  // namespace

HiddenframeModel::HiddenframeModel(RuleTable& table) : FormModel(table, ModelSite()) {}

QString HiddenframeModel::RuleForm(const TypedRule& typed) const {
  return FormHtml(typed, R"( target="sink")",
                  R"(<input type="submit" name="apply" value="Apply">)") +
         QStringLiteral(R"(<p id="outcome"></p>
<iframe name="sink" style="display: none"></iframe>
<script>
function tellOutcome(text) { document.getElementById('outcome').textContent = text; }
</script>)");
}

HttpResponse HiddenframeModel::Saved() const {
  return OutcomePage(QStringLiteral("The rule is saved."));
}

HttpResponse HiddenframeModel::Refused(const TypedRule&, RuleFault fault) const {
  return OutcomePage(FaultText(fault));
}

}  // namespace quayline::demo
