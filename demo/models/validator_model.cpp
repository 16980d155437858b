// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/validator_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "rules.jsp";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Bellbuoy",
                .product = "BB-9",
                .colour = "#a0471b",
                .menu = {{"welcome.jsp", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "name",
                 .first = "action",
                 .last = "port2",
                 .protocol = "proto",
                 .address = "submit"}};
  return site;
}

}  // namespace

ValidatorModel::ValidatorModel(RuleTable& table) : FormModel(table, ModelSite()) {}

QString ValidatorModel::RuleForm(const TypedRule& typed) const {
  return FormHtml(typed, R"html( onsubmit="return confirm('Store this rule?')")html",
                  R"(<input type="submit" name="store" value="Store">)") +
         QStringLiteral(R"(<script>
var boxes = document.forms[0].getElementsByTagName('input');
for (var i = 0; i < boxes.length; i++) {
  boxes[i].onblur = function() {
    if (this.value === '') {
      alert('This box must not be empty.');
      this.focus();
    }
  };
}
boxes[1].onblur = function() {
  if (this.value < 1024) {
    alert('Ports below 1024 belong to well-known services.');
  }
};
</script>)");
}

HttpResponse ValidatorModel::Saved() const {
  return RouterPage(QStringLiteral("Port Forwarding"),
                    QStringLiteral("<script>alert('The rule is stored.'); location.href = '/%1';"
                                   "</script>")
                        .arg(QLatin1String(kRulesPath)));
}

}  // namespace quayline::demo
