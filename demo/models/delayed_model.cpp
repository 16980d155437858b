// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/delayed_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "applications.html";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Slackwater",
                .product = "SW-22",
                .colour = "#5c3d7a",
                .menu = {{"overview.html", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "app",
                 .first = "begin",
                 .last = "finish",
                 .protocol = "transport",
                 .address = "lan_host"}};
  return site;
}

}  // namespace

DelayedModel::DelayedModel(RuleTable& table) : FormModel(table, ModelSite()) {}

QString DelayedModel::RuleForm(const TypedRule& typed) const {
  return FormHtml(
             typed, "",
             R"html(<input type="button" name="btn_apply" value="Apply" onclick="apply(this)">)html") +
         QStringLiteral(R"(<p id="state"></p>
<script>
function apply(button) {
  button.disabled = true;
  document.getElementById('state').textContent = 'Checking the settings...';
  setTimeout('document.forms[0].submit()', 2000);
}
</script>)");
}

}  // namespace quayline::demo
