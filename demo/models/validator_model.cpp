// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/validator_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "rules.jsp";
constexpr char kRemovePath[] = "remove.jsp";

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

QString ValidatorModel::RuleList() const {
  QString rows;
  for (int row = 0; row < Table().AllRows().size(); ++row) {
    if (const auto& rule = Table().AllRows().at(row)) {
      rows += QStringLiteral(
                  "<tr><td><input type=\"checkbox\" name=\"row_%1\"></td><td>%2</td><td>%3-%4</td>"
                  "<td>%5</td><td>%6</td></tr>\n")
                  .arg(QString::number(row), Html(rule->name), QString::number(rule->first),
                       QString::number(rule->last), ProtocolWord(rule->protocol), rule->address);
    }
  }
  return QStringLiteral(R"html(<form method="post" action="/%1"
 onsubmit="return confirm('Remove the chosen rules?')">
<table>
<tr><th>Select</th><th>Name</th><th>Ports</th><th>Protocol</th><th>Computer</th></tr>
%2</table>
<input type="submit" name="remove" value="Remove">
</form>
)html")
      .arg(QLatin1String(kRemovePath), rows);
}

HttpResponse ValidatorModel::OtherPage(const QString& page, const HttpRequest& request) {
  if (page != QLatin1String(kRemovePath) || request.method != "POST") {
    return FormModel::OtherPage(page, request);
  }
  const FormFields form(request.body);
  for (int row = 0; row < Table().AllRows().size(); ++row) {
    if (form.Has(QStringLiteral("row_%1").arg(row))) {
      Table().Remove(row);
    }
  }
  return RedirectTo(QByteArray("/") + kRulesPath);
}

QString ValidatorModel::RuleForm(const TypedRule& typed) const {
  return FormHtml(typed, R"html( onsubmit="return confirm('Store this rule?')")html",
                  R"(<input type="submit" name="store" value="Store">)") +
         QStringLiteral(R"(<script>
var boxes = document.forms[1].getElementsByTagName('input');
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
