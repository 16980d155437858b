// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/form_model.h"

namespace quayline::demo {

namespace {

HttpResponse Forbidden() {
  HttpResponse response;
  response.status = 403;
  response.body = "<html><body><h1>403 Forbidden</h1></body></html>";
  return response;
}

bool IsFromOwnPage(const HttpRequest& request) {
  return request.Header("referer").contains("://" + request.Header("host") + "/");
}

}  // namespace

HttpResponse FormModel::Answer(const HttpRequest& request) {
  const QString page = request.path.mid(1);
  if (page.isEmpty()) {
    return HomePage();
  }
  if (page != QLatin1String(site_.page)) {
    return OtherPage(page, request);
  }
  if (request.method != "POST") {
    return RulesPage({}, {});
  }
  return site_.checks_referer && !IsFromOwnPage(request) ? Forbidden()
                                                         : Save(FormFields(request.body));
}

HttpResponse FormModel::RouterPage(const QString& title, const QString& content) const {
  return AdminPage(site_.admin, title, content);
}

HttpResponse FormModel::OtherPage(const QString& page, const HttpRequest&) {
  return page == QLatin1String(site_.admin.menu.first().path) ? HomePage() : NotFound();
}

QString FormModel::RuleList() const { return RuleListHtml(table_); }

QString FormModel::RuleForm(const TypedRule& typed) const {
  return FormHtml(typed, "", R"(<input type="submit" name="btn_save" value="Save">)");
}

TypedRule FormModel::ReadForm(const FormFields& form) const {
  return PostedRule(site_.fields, form);
}

std::expected<void, RuleFault> FormModel::Store(const Rule& rule, const FormFields&) {
  return table_.Add(rule);
}

HttpResponse FormModel::Saved() const { return RedirectTo(QByteArray("/") + site_.page); }

HttpResponse FormModel::Refused(const TypedRule& typed, RuleFault fault) const {
  return RulesPage(typed, FaultText(fault));
}

QString FormModel::FormHtml(const TypedRule& typed, const char* attributes,
                            const char* buttons) const {
  return QStringLiteral(
             "<form method=\"post\" action=\"/%1\"%2>\n<table>\n%3</table>\n%4\n</form>\n")
      .arg(QLatin1String(site_.page), QLatin1String(attributes), RuleRows(site_.fields, typed),
           QLatin1String(buttons));
}

HttpResponse FormModel::RulesPage(const TypedRule& typed, const QString& fault) const {
  return RouterPage(QStringLiteral("Port Forwarding"),
                    FaultParagraph(fault) + RuleList() + RuleForm(typed));
}

HttpResponse FormModel::Save(const FormFields& form) {
  const TypedRule typed = ReadForm(form);
  const auto rule = ReadRule(typed);
  if (!rule) {
    return Refused(typed, rule.error());
  }
  if (const auto saved = Store(*rule, form); !saved) {
    return Refused(typed, saved.error());
  }
  return Saved();
}

}  // namespace quayline::demo
