// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/weblogin_model.h"

#include <QRandomGenerator>

#include <algorithm>

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "pf_list.cgi";
constexpr char kLoginPath[] = "login.html";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Gatehouse",
                .product = "GH-11",
                .colour = "#33502a",
                .menu = {{"dashboard.cgi", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "pf_name",
                 .first = "pf_from",
                 .last = "pf_till",
                 .protocol = "pf_proto",
                 .address = "pf_lan"}};
  return site;
}

}  // namespace

WebloginModel::WebloginModel(RuleTable& table, const Login& login)
    : FormModel(table, ModelSite()), login_(login) {}

HttpResponse WebloginModel::Answer(const HttpRequest& request) {
  if (request.path.mid(1) == QLatin1String(kLoginPath)) {
    return request.method == "POST" ? LogIn(FormFields(request.body)) : LoginPage({});
  }
  return HasSession(request) ? FormModel::Answer(request)
                             : RedirectTo(QByteArray("/") + kLoginPath);
}

HttpResponse WebloginModel::LoginPage(const QString& fault) const {
  return BarePage(Site().admin, QStringLiteral("Login"),
                  QStringLiteral(R"(%1<form method="post" action="/%2">
<p>User <input type="text" name="login_user"></p>
<p>Password <input type="password" name="login_word"></p>
<input type="submit" name="login" value="Login">
</form>
)")
                      .arg(FaultParagraph(fault), QLatin1String(kLoginPath)));
}

HttpResponse WebloginModel::LogIn(const FormFields& form) {
  if (form.Value(QStringLiteral("login_user")) != login_.user ||
      form.Value(QStringLiteral("login_word")) != login_.password) {
    return LoginPage(QStringLiteral("User or password are wrong."));
  }
  session_ = QByteArray::number(QRandomGenerator::system()->generate64(), 16);
  HttpResponse response = RedirectTo(QByteArray("/") + Site().admin.menu.first().path);
  response.headers.emplaceBack("Set-Cookie", "session=" + session_ + "; Path=/; HttpOnly");
  return response;
}

bool WebloginModel::HasSession(const HttpRequest& request) const {
  const QList<QByteArray> cookies = request.Header("cookie").split(';');
  return !session_.isEmpty() && std::ranges::any_of(cookies, [this](const QByteArray& cookie) {
    return cookie.trimmed() == "session=" + session_;
  });
}

}  // namespace quayline::demo
