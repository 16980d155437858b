// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/private_text.h"

#include <gtest/gtest.h>

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

TEST(PrivateText, APasswordIsReplacedHoweverAPageWritesIt) {
  const struct {
    const char* password;
    const char* text;
    const char* fit;
  } rows[] = {
      {"tea for two", "you typed tea for two.", "you typed ****."},
      {"tea for two", "/login?p=tea%20for%20two&q=tea+for+two", "/login?p=****&q=****"},
      {"a\"b<c\\d", "a\"b<c\\d a&quot;b&lt;c\\d a\\\"b<c\\\\d", "**** **** ****"},
      {"ü/x?", "%C3%BC%2Fx%3F %c3%bc%2fx%3f", "**** ****"},
      {"secret", "Authorization: Basic YWRtaW46c2VjcmV0", "Authorization: Basic ****"},
      {"secret", "secretsecret SECRET", "******** ****"},
      {"80", "port 80, row 180, \"80\"", "port ****, row 180, \"****\""},
      {".*+", "all .*+ of it", "all **** of it"},
      {"", "nothing", "nothing"},
  };
  for (const auto& row : rows) {
    const QString fit =
        WithoutLogins(QString::fromUtf8(row.text), {{u"admin"_s, QString::fromUtf8(row.password)}});
    EXPECT_EQ(fit.toStdString(), row.fit) << row.password;
  }
}

TEST(PrivateText, AddressesOfTheInternetGoAndThoseAtHomeStay) {
  const struct {
    const char* text;
    const char* fit;
  } rows[] = {
      {"WAN 84.23.1.9, LAN 192.168.1.1", "WAN (address), LAN 192.168.1.1"},
      {"10.0.0.138:8080 127.0.0.1 172.31.9.9 172.32.0.1",
       "10.0.0.138:8080 127.0.0.1 172.31.9.9 (address)"},
      {"behind a carrier: 100.64.3.4.", "behind a carrier: (address)."},
      {"255.255.255.0 0.0.0.0 224.0.0.1", "255.255.255.0 0.0.0.0 224.0.0.1"},
      {"[2001:db8::17]:80, fe80::1, fd00::2, ::1", "[(address)]:80, fe80::1, fd00::2, ::1"},
      {"at 12:34:56, 00:11:22:33:44:55, 1.2.3, 300.1.1.1",
       "at 12:34:56, 00:11:22:33:44:55, 1.2.3, 300.1.1.1"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(WithoutOutsideAddresses(QString::fromUtf8(row.text)).toStdString(), row.fit);
  }
}

TEST(PrivateText, TheRoutersHostGoesAndHostsThatBeginAlikeStay) {
  EXPECT_EQ(
      WithoutHost(u"http://10.0.0.1:8080/a 10.0.0.12 x10.0.0.1 at 10.0.0.1."_s, u"10.0.0.1"_s),
      u"http://(router):8080/a 10.0.0.12 x10.0.0.1 at (router)."_s);
  EXPECT_EQ(WithoutHost(u"http://Me.Example.org/"_s, u"me.example.org"_s), u"http://(router)/"_s);
  EXPECT_EQ(WithoutHost(u"text"_s, QString()), u"text"_s);
}

}  // namespace
}  // namespace quayline
