// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/session_store.h"

#include "core/router_address.h"

namespace quayline {

namespace {

const QString kLogins = QStringLiteral("logins");

// The key of a router's login. Keys are found in any case and end at the first "=", so every
// character but small letters and digits is written as its code.
QString KeyOf(const QString& router) {
  QString key;
  for (const char byte : router.toUtf8()) {
    const bool is_plain = (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9');
    key += is_plain ? QString(QLatin1Char(byte))
                    : QStringLiteral("%%1").arg(static_cast<uchar>(byte), 2, 16, QLatin1Char('0'));
  }
  return key;
}

QString UserKey(const QString& router) { return KeyOf(router) + QStringLiteral(".username"); }
QString PasswordKey(const QString& router) { return KeyOf(router) + QStringLiteral(".password"); }
// Tells an empty login that was typed from none.
QString TypedKey(const QString& router) { return KeyOf(router) + QStringLiteral(".typed"); }

}  // namespace

void SessionStore::Read(RouterSession& session) {
  const QString type = settings_.Value(setting::kHttpType);
  session.router_name = session.chosen_router = settings_.Value(setting::kRouter);
  session.http_port = settings_.Value(setting::kHttpPort);
  session.http_type = type == QLatin1String("https://") ? type : setting::kHttpType.Standard();
  session.username = settings_.Value(setting::kRouterUsername);
  session.password = settings_.Value(setting::kRouterPassword);
  session.show_password = settings_.Boolean(setting::kShowPassword);
  const RouterAddress address = ParseRouterAddress(settings_.Value(setting::kRouterIp));
  session.router_ip = address.host;
  if (!address.http_port.isEmpty()) {  // the program was ended while the address was typed
    session.http_port = address.http_port;
  }
  stored_ = session;
}

void SessionStore::Write(const RouterSession& session) {
  if (is_paused_) {
    return;
  }
  const struct {
    const Setting& setting;
    const QString& old_value;
    const QString& value;
  } fields[] = {
      {setting::kRouter, stored_.chosen_router, session.chosen_router},
      {setting::kRouterIp, stored_.router_ip, session.router_ip},
      {setting::kHttpPort, stored_.http_port, session.http_port},
      {setting::kHttpType, stored_.http_type, session.http_type},
      {setting::kRouterUsername, stored_.username, session.username},
      {setting::kRouterPassword, stored_.password, session.password},
  };
  QList<IniValue> values;
  for (const auto& field : fields) {
    if (field.value != field.old_value) {
      values.append(ValueOf(field.setting, field.value));
    }
  }
  if (session.show_password != stored_.show_password) {
    values.append(ValueOf(setting::kShowPassword, QString::number(session.show_password ? 1 : 0)));
  }
  AddTypedLogin(values, session);
  stored_ = session;
  if (!values.isEmpty()) {
    settings_.SetValues(values);
  }
}

void SessionStore::AddTypedLogin(QList<IniValue>& values, const RouterSession& session) const {
  const QString& router = session.chosen_router;
  const Login login = session.CurrentLogin();
  const std::optional<Login> typed = router.isEmpty() ? login : TypedLogin(router);
  if (typed ? *typed == login : session.factory_login == login) {
    return;
  }
  values += {{.section = kLogins, .key = UserKey(router), .value = login.username},
             {.section = kLogins, .key = PasswordKey(router), .value = login.password},
             {.section = kLogins, .key = TypedKey(router), .value = QStringLiteral("1")}};
}

Login SessionStore::LoginFor(const RouterSession& session, const RouterRecord& record) const {
  if (const auto typed = TypedLogin(record.routername)) {
    return *typed;
  }
  const bool is_first = session.chosen_router.isEmpty() && !session.CurrentLogin().IsEmpty();
  return is_first ? session.CurrentLogin() : Login{record.routerusername, record.routerpassword};
}

std::optional<Login> SessionStore::TypedLogin(const QString& router) const {
  if (settings_.Value(kLogins, TypedKey(router)).isEmpty()) {
    return std::nullopt;
  }
  return Login{settings_.Value(kLogins, UserKey(router)),
               settings_.Value(kLogins, PasswordKey(router))};
}

}  // namespace quayline
