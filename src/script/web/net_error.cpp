// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/net_error.h"

#include <QHash>

#include "script/web/web_texts.h"

namespace quayline {

int NetErrorNamed(const QString& name) {
  static const QHash<QString, int> errors{{QStringLiteral("ERR_BLOCKED_BY_CLIENT"), -20},
                                          {QStringLiteral("ERR_CONNECTION_CLOSED"), -100},
                                          {QStringLiteral("ERR_CONNECTION_RESET"), -101},
                                          {QStringLiteral("ERR_CONNECTION_REFUSED"), -102},
                                          {QStringLiteral("ERR_NAME_NOT_RESOLVED"), -105},
                                          {QStringLiteral("ERR_INTERNET_DISCONNECTED"), -106},
                                          {QStringLiteral("ERR_ADDRESS_UNREACHABLE"), -109},
                                          {QStringLiteral("ERR_CONNECTION_TIMED_OUT"), -118},
                                          {QStringLiteral("ERR_SOCKS_CONNECTION_FAILED"), -120},
                                          {QStringLiteral("ERR_TOO_MANY_REDIRECTS"), -310},
                                          {QStringLiteral("ERR_UNSAFE_PORT"), -312},
                                          {QStringLiteral("ERR_INVALID_RESPONSE"), -320},
                                          {QStringLiteral("ERR_EMPTY_RESPONSE"), -324},
                                          {QStringLiteral("ERR_CONTENT_LENGTH_MISMATCH"), -354},
                                          {QStringLiteral("ERR_INCOMPLETE_CHUNKED_ENCODING"), -355},
                                          {QStringLiteral("ERR_INVALID_HTTP_RESPONSE"), -370}};
  constexpr int kCertificate = -200;
  constexpr int kTls = -113;
  constexpr int kFailed = -2;
  if (name.startsWith(QLatin1String("ERR_CERT_"))) {
    return kCertificate;
  }
  return errors.value(name, name.startsWith(QLatin1String("ERR_SSL_")) ? kTls : kFailed);
}

std::optional<Message> CauseOfNetError(int net_error) {
  constexpr int kNoCommonTls = -113;
  constexpr int kOldTls = -172;
  constexpr int kNoTls = -107;
  switch (net_error) {
    case kNoCommonTls:
    case kOldTls:
      return message::kOldTls;
    case kNoTls:
      return message::kNoTls;
    default:
      return std::nullopt;
  }
}

}  // namespace quayline
