// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/status_text.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

const QString kUnknown = QStringLiteral("Unknown Error: ");

TEST(StatusText, NamesAStatusInEachOfItsForms) {
  const struct {
    const char* fault;
    const char* status;
    const char* text;
    StatusNotice notice = StatusNotice::kNone;
  } cases[] = {
      {"a login", "401", "DENIED(401)", StatusNotice::kAccessDenied},
      {"the system's refusal", "-2147024891", "Access Denied(-2147024891)",
       StatusNotice::kAccessDenied},
      {"an address", "404", "NOT_FOUND(404)", StatusNotice::kNotFound},
      {"an address in another form", "-2146697210", "OBJECT_NOT_FOUND(-2146697210)",
       StatusNotice::kNotFound},
      {"a name that nobody knows", "-2146697211", "RESOURCE_NOT_FOUND(-2146697211)",
       StatusNotice::kNotFound},
      {"neither of them", "403", "FORBIDDEN(403)"},
      {"the first of two rows for a status wins", "-2146697196", "REDIRECTING(-2146697196)"},
      {"and in the other form", "0x800C0014L", "REDIRECTING(-2146697196)"},
      {"a symbolic form", "0x800C0009L", "AUTHENTICATION_REQUIRED(-2146697207)",
       StatusNotice::kAccessDenied},
      {"a status without a name", "999", "Unknown Error: 999"},
      {"0", "0", "Unknown Error: 0"},
      {"a symbolic form without its end", "0x800C0009", "Unknown Error: 0x800C0009"},
  };
  for (const auto& c : cases) {
    const QString text = StatusText(QString::fromLatin1(c.status));
    EXPECT_EQ(text, QLatin1String(c.text)) << c.fault;
    EXPECT_EQ(NoticeOfStatus(text), c.notice) << c.fault;
  }
}

// A symbolic form is the same number in another base, and each text ends with its number.
TEST(StatusText, HoldsNoMistypedNumber) {
  int symbols = 0;
  for (quint32 low = 0; low <= 0xFFF; ++low) {
    const quint32 code = 0x800C0000U + low;
    const QString symbol = QStringLiteral("0x%1L").arg(QString::number(code, 16).toUpper());
    const QString text = StatusText(symbol);
    const auto number = static_cast<qint32>(code);
    if (text.startsWith(kUnknown)) {
      EXPECT_EQ(StatusText(number), kUnknown + QString::number(number)) << symbol.toStdString();
      continue;
    }
    ++symbols;
    EXPECT_EQ(StatusText(number), text) << symbol.toStdString();
    EXPECT_TRUE(text.endsWith(QStringLiteral("(%1)").arg(number))) << text.toStdString();
  }
  EXPECT_EQ(symbols, 26);
  int http = 0;
  for (int status = 100; status < 600; ++status) {
    const QString text = StatusText(status);
    http += text.startsWith(kUnknown) ? 0 : 1;
    EXPECT_TRUE(text.startsWith(kUnknown) || text.endsWith(QStringLiteral("(%1)").arg(status)))
        << status;
  }
  EXPECT_EQ(http, 23);
}

// The texts that no page on loopback can cause; the others are tested with pages that fail.
TEST(StatusOfNetError, LeadsToANamedStatus) {
  const std::pair<int, const char*> cases[] = {
      {-21, "CANNOT_CONNECT(-2146697212)"},            // the network changed
      {-106, "CANNOT_CONNECT(-2146697212)"},           // disconnected
      {-109, "CANNOT_CONNECT(-2146697212)"},           // unreachable
      {-118, "CONNECTION_TIMEOUT(-2146697205)"},       // timed out
      {-107, "SECURITY_PROBLEM(-2146697202)"},         // no TLS
      {-375, "AUTHENTICATION_REQUIRED(-2146697207)"},  // login tried too often
      {-999, "Unknown Error: -999"},
  };
  for (const auto& [net_error, text] : cases) {
    EXPECT_EQ(StatusText(StatusOfNetError(net_error)), QLatin1String(text));
  }
  for (int net_error = -1; net_error > -400; --net_error) {
    const int status = StatusOfNetError(net_error);
    EXPECT_TRUE(status == net_error || !StatusText(status).startsWith(kUnknown)) << net_error;
  }
}

}  // namespace
}  // namespace quayline
