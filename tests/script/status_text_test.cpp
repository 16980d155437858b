// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/status_text.h"

#include <QRegularExpression>

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
  } cases[] = {
      {"an HTTP status", "401", "DENIED(401)"},
      {"another", "404", "NOT_FOUND(404)"},
      {"the first of two rows for a status wins", "-2146697196", "REDIRECTING(-2146697196)"},
      {"and in the other form", "0x800C0014L", "REDIRECTING(-2146697196)"},
      {"the system's refusal", "-2147024891", "Access Denied(-2147024891)"},
      {"a symbolic form", "0x800C0009L", "AUTHENTICATION_REQUIRED(-2146697207)"},
      {"a status without a name", "999", "Unknown Error: 999"},
      {"0", "0", "Unknown Error: 0"},
      {"a symbolic form without its end", "0x800C0009", "Unknown Error: 0x800C0009"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(StatusText(QString::fromLatin1(c.status)), QLatin1String(c.text)) << c.fault;
  }
}

// A symbolic form is the same number in another base, and each text ends with its number.
TEST(StatusText, HoldsNoMistypedNumber) {
  int symbols = 0;
  for (quint32 low = 0; low <= 0xFFF; ++low) {
    const quint32 code = 0x800C0000U + low;
    const QString symbol = QStringLiteral("0x%1L")
                               .arg(code, 8, 16, QLatin1Char('0'))
                               .toUpper()
                               .replace(QLatin1Char('X'), QLatin1Char('x'));
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

TEST(StatusOfNetError, LeadsToANamedStatusAndTheRightNotice) {
  const struct {
    const char* fault;
    int net_error;
    const char* text;
    StatusNotice notice;
  } cases[] = {
      {"refused", -102, "CANNOT_CONNECT(-2146697212)", StatusNotice::kNone},
      {"reset", -101, "CANNOT_CONNECT(-2146697212)", StatusNotice::kNone},
      {"disconnected", -106, "CANNOT_CONNECT(-2146697212)", StatusNotice::kNone},
      {"unreachable", -109, "CANNOT_CONNECT(-2146697212)", StatusNotice::kNone},
      {"the network changed", -21, "CANNOT_CONNECT(-2146697212)", StatusNotice::kNone},
      {"no such host", -105, "RESOURCE_NOT_FOUND(-2146697211)", StatusNotice::kNotFound},
      {"timed out", -118, "CONNECTION_TIMEOUT(-2146697205)", StatusNotice::kNone},
      {"no TLS", -107, "SECURITY_PROBLEM(-2146697202)", StatusNotice::kNone},
      {"unknown certificate", -202, "INVALID_CERTIFICATE(-2146697191)", StatusNotice::kNone},
      {"empty answer", -324, "DATA_NOT_AVAILABLE(-2146697209)", StatusNotice::kNone},
      {"redirects in a circle", -310, "REDIRECTING(-2146697196)", StatusNotice::kNone},
      {"login tried too often", -375, "AUTHENTICATION_REQUIRED(-2146697207)",
       StatusNotice::kAccessDenied},
      {"a number of no row", -999, "Unknown Error: -999", StatusNotice::kNone},
  };
  for (const auto& c : cases) {
    const QString text = StatusText(StatusOfNetError(c.net_error));
    EXPECT_EQ(text, QLatin1String(c.text)) << c.fault;
    EXPECT_EQ(NoticeOfStatus(text), c.notice) << c.fault;
  }
  for (int net_error = -1; net_error > -400; --net_error) {
    const int status = StatusOfNetError(net_error);
    EXPECT_TRUE(status == net_error || !StatusText(status).startsWith(kUnknown)) << net_error;
  }
}

TEST(NoticeOfStatus, HelpsWithTheLoginAndTheAddressOnly) {
  EXPECT_EQ(NoticeOfStatus(StatusText(401)), StatusNotice::kAccessDenied);
  EXPECT_EQ(NoticeOfStatus(StatusText(-2147024891)), StatusNotice::kAccessDenied);
  EXPECT_EQ(NoticeOfStatus(StatusText(404)), StatusNotice::kNotFound);
  EXPECT_EQ(NoticeOfStatus(StatusText(-2146697210)), StatusNotice::kNotFound);
  EXPECT_EQ(NoticeOfStatus(StatusText(403)), StatusNotice::kNone);
  EXPECT_EQ(NoticeOfStatus(StatusText(999)), StatusNotice::kNone);
}

}  // namespace
}  // namespace quayline
