// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

// What a job's browser does for its router, and for nobody else.
class RouterOnly : public WebTest {
 protected:
  void GiveLogin(const QString& username, const QString& password) {
    const QUrl address = server.Address({});
    host->SetLogin({.scheme = address.scheme(),
                    .host = address.host(),
                    .port = address.port(),
                    .username = username,
                    .password = password});
  }

  // The same server under another name is another host to the browser.
  QByteArray Elsewhere(const char* path) {
    QUrl address = server.Address(QLatin1String(path));
    address.setHost(u"localhost"_s);
    return address.toEncoded();
  }
};

TEST_F(RouterOnly, NothingIsAskedOfAnotherHost) {
  GiveLogin(u"admin"_s, u"secret"_s);
  server.replies["/seen"] = Html("seen");
  const QByteArray elsewhere = Elsewhere("/seen");
  const QByteArray markups[] = {
      "<img src='" + elsewhere + "'>",
      "<iframe src='" + elsewhere + "'></iframe>",
      "<script src='" + elsewhere + "'></script>",
      "<script>var r=new XMLHttpRequest;r.open('GET','" + elsewhere + "');r.send()</script>",
      "<script>location='" + elsewhere + "'</script>",
      "<form method=post action='" + elsewhere +
          "'></form><script>document.forms[0].submit()</script>",
      "<meta http-equiv=refresh content='0;url=" + elsewhere + "'>",
  };
  QStringList all_told;
  for (const QByteArray& markup : markups) {
    SCOPED_TRACE(markup.toStdString());
    server.requests.clear();
    server.replies["/page"] = Html(markup);
    Open("/page");
    Settle();
    EXPECT_FALSE(server.requests.isEmpty());
    for (const QByteArray& request : server.requests) {
      EXPECT_FALSE(request.contains("/seen")) << request.toStdString();
    }
    all_told += told;
  }
  EXPECT_EQ(all_told.filter(u"localhost"_s).filter(u"Blocked"_s).size(), 1)
      << "each host is told once";
}

TEST_F(RouterOnly, ALoginIsAskedOfTheUserWhereSilentModeIsOff) {
  server.special = [](const QByteArray& request) -> std::optional<Reply> {
    if (request.contains(QByteArray("anna:right").toBase64())) {
      return std::nullopt;
    }
    return Answer("401 Unauthorized", "who?", "WWW-Authenticate: Basic realm=\"r\"\r\n");
  };
  server.replies["/"] = Html("<input name=a value=in>");
  GiveLogin({}, {});
  const struct {
    bool silent;
    std::optional<TypedLogin> typed;
    int questions;
    const char* error;
  } cases[] = {
      {true, TypedLogin{u"anna"_s, u"right"_s}, 0, "401"},
      {false, std::nullopt, 1, "401"},
      {false, TypedLogin{u"anna"_s, u"right"_s}, 1, nullptr},
  };
  int questions = 0;
  std::optional<TypedLogin> typed;
  QObject::connect(
      host.get(), &PageHost::loginQuestion, host.get(),
      [&](const QString&, const std::function<void(std::optional<TypedLogin>)>& answer) {
        ++questions;
        QMetaObject::invokeMethod(host.get(), [&, answer] { answer(typed); }, Qt::QueuedConnection);
      });
  for (const auto& row : cases) {
    options.silent_mode = row.silent;
    typed = row.typed;
    questions = 0;
    Open("/");
    EXPECT_EQ(questions, row.questions);
    EXPECT_EQ(errors.isEmpty(), row.error == nullptr) << errors.join(u' ').toStdString();
  }
  EXPECT_EQ(Ask(page_operation::GetElementValue(u"a"_s)), u"in"_s);
}

TEST_F(RouterOnly, MessagesAreShownWhereSilentModeIsOffAndNotWithoutEnd) {
  QStringList messages;
  QObject::connect(host.get(), &PageHost::pageMessage, host.get(),
                   [&](const QString& text) { messages.append(text); });
  options.silent_mode = true;
  Show("<script>alert('one')</script>");
  EXPECT_EQ(messages, QStringList());
  options.silent_mode = false;
  Show("<script>alert('one');confirm('two')</script>");
  EXPECT_EQ(messages, (QStringList{u"one"_s, u"two"_s}));
  messages.clear();
  Show("<script>for(var i=0;i<500;++i)alert(i)</script>");
  EXPECT_LT(messages.size(), 150);
}

}  // namespace
}  // namespace quayline::testing
