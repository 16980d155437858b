// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/popup_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "services.html";
constexpr char kComputerPath[] = "services_computer.html";

QString HiddenField(const char* name, const QString& value) {
  return QStringLiteral("<input type=\"hidden\" name=\"%1\" value=\"%2\">\n")
      .arg(QLatin1String(name), Html(value));
}

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Jibsail",
                .product = "JB-4",
                .colour = "#96312d",
                .menu = {{"system.html", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "svc_name",
                 .first = "svc_start",
                 .last = "svc_end",
                 .protocol = "svc_proto",
                 .address = nullptr}};
  return site;
}

}  // namespace

PopupModel::PopupModel(RuleTable& table) : FormModel(table, ModelSite()) {}

QString PopupModel::RuleForm(const TypedRule& typed) const {
  return FormHtml(
             typed, "",
             R"html(<input type="button" name="next" value="Next" onclick="askComputer()">)html") +
         QStringLiteral(R"(<script>
function askComputer() {
  var form = document.forms[0];
  window.open('', 'computer', 'width=420,height=280');
  form.action = '/%1';
  form.target = 'computer';
  form.submit();
}
</script>)")
             .arg(QLatin1String(kComputerPath));
}

HttpResponse PopupModel::OtherPage(const QString& page, const HttpRequest& request) {
  if (page == QLatin1String(kComputerPath)) {
    return ComputerPage(PostedRule(Site().fields, FormFields(request.body)), {});
  }
  return FormModel::OtherPage(page, request);
}

TypedRule PopupModel::ReadForm(const FormFields& form) const {
  TypedRule typed = FormModel::ReadForm(form);
  typed.address = form.Value(QStringLiteral("svc_computer"));
  return typed;
}

HttpResponse PopupModel::Saved() const {
  return BarePage(Site().admin, QStringLiteral("Saved"),
                  QStringLiteral("<script>opener.location.href = '/%1'; window.close();</script>")
                      .arg(QLatin1String(kRulesPath)));
}

HttpResponse PopupModel::Refused(const TypedRule& typed, RuleFault fault) const {
  return ComputerPage(typed, FaultText(fault));
}

HttpResponse PopupModel::ComputerPage(const TypedRule& typed, const QString& fault) const {
  const RuleFieldNames& names = Site().fields;
  const QString hidden =
      HiddenField(names.name, typed.name) + HiddenField(names.first, typed.first) +
      HiddenField(names.last, typed.last) + HiddenField(names.protocol, typed.protocol);
  return BarePage(Site().admin, QStringLiteral("Computer"),
                  QStringLiteral("%1<form method=\"post\" action=\"/%2\">\n%3<table>\n%4</table>\n"
                                 "<input type=\"submit\" name=\"save\" value=\"Save\">\n</form>\n")
                      .arg(FaultParagraph(fault), QLatin1String(kRulesPath), hidden,
                           TextRow("IP address", "svc_computer", typed.address)));
}

}  // namespace quayline::demo
