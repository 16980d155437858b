// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/request_login.h"

#include <gtest/gtest.h>

namespace quayline::testing {
namespace {

struct LoginRow {
  const char* name;
  QByteArray head;
  QByteArray rest;         // of the request, after its head
  QByteArray credentials;  // empty: the request has no login
  QByteArray without;      // the request without the line of the login
};

TEST(RequestLoginTest, TheLoginIsTheLineOfTheHeadThatCarriesOne) {
  const LoginRow rows[] = {
      {"basic", "GET / HTTP/1.1\r\nAuthorization: Basic YTpi\r\nHost: r\r\n\r\n", "", "Basic YTpi",
       "GET / HTTP/1.1\r\nHost: r\r\n\r\n"},
      {"digest in small letters", "GET / HTTP/1.1\r\nauthorization: digest a=\"b\"\r\n\r\n", "",
       "digest a=\"b\"", "GET / HTTP/1.1\r\n\r\n"},
      {"another scheme is the page's own", "GET / HTTP/1.1\r\nAuthorization: Bearer x\r\n\r\n", "",
       "", ""},
      {"a header whose name only ends so", "GET / HTTP/1.1\r\nX-Authorization: Basic YTpi\r\n\r\n",
       "", "", ""},
      {"what a form sends is no login", "POST / HTTP/1.1\r\n\r\n", "a\nAuthorization: Basic YTpi\n",
       "", ""},
      {"a head that was not read to its end", "GET / HTTP/1.1\r\nAuthorization: Basic YTpi", "",
       "Basic YTpi", "GET / HTTP/1.1\r"},
  };
  for (const LoginRow& row : rows) {
    SCOPED_TRACE(row.name);
    QByteArray request = row.head + row.rest;
    const auto login = FindLogin(request, row.head.size());
    ASSERT_EQ(login.has_value(), !row.credentials.isEmpty());
    if (login) {
      EXPECT_EQ(login->credentials, row.credentials);
      EXPECT_EQ(request.remove(login->begin, login->size), row.without);
    }
  }
}

}  // namespace
}  // namespace quayline::testing
