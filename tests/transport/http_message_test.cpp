// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "transport/http_message.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

const QByteArray kPost =
    "POST /form.html?x=%201 HTTP/1.1\r\nHost: a\r\nContent-Length: 10\r\nX-Empty:\r\n\r\n"
    "name=A+%42";

TEST(HttpParser, ARequestCutAnywhereIsNeitherRefusedNorTakenTooEarly) {
  for (qsizetype cut = 0; cut < kPost.size(); ++cut) {
    EXPECT_EQ(ParseRequest(QByteArrayView(kPost).first(cut)).status, ParseStatus::kIncomplete)
        << cut;
  }
  const ParsedRequest parsed = ParseRequest(kPost);
  ASSERT_EQ(parsed.status, ParseStatus::kComplete);
  EXPECT_EQ(parsed.consumed, kPost.size());
  EXPECT_EQ(parsed.request.method, "POST");
  EXPECT_EQ(parsed.request.path, u"/form.html"_s);
  EXPECT_EQ(parsed.request.query, "x=%201");
  EXPECT_EQ(parsed.request.Header("content-length"), "10");
  EXPECT_EQ(parsed.request.body, "name=A+%42");
}

TEST(HttpParser, APipelinedRequestIsLeftForTheNextCall) {
  QByteArray bytes = "\r\n" + kPost + "\r\nGET /b HTTP/1.0\r\n\r\nGET";
  const ParsedRequest first = ParseRequest(bytes);
  ASSERT_EQ(first.status, ParseStatus::kComplete);
  EXPECT_TRUE(first.request.keep_alive);
  bytes.remove(0, first.consumed);
  const ParsedRequest second = ParseRequest(bytes);
  ASSERT_EQ(second.status, ParseStatus::kComplete);
  EXPECT_EQ(second.request.path, u"/b"_s);
  EXPECT_FALSE(second.request.keep_alive);
  bytes.remove(0, second.consumed);
  EXPECT_EQ(bytes, "GET");
}

TEST(HttpParser, HostileRequestsAreRefusedWithTheReason) {
  const QByteArray line = "GET / HTTP/1.1\r\n";
  const struct {
    const char* fault;
    QByteArray bytes;
    int refusal;
  } kRows[] = {
      {"no target", "GET HTTP/1.1\r\n\r\n", 400},
      {"two blanks", "GET  / HTTP/1.1\r\n\r\n", 400},
      {"a blank inside the target", "GET /a b HTTP/1.1\r\n\r\n", 400},
      {"a target without slash", "GET a HTTP/1.1\r\n\r\n", 400},
      {"a byte beyond ASCII in the target", "GET /\xff HTTP/1.1\r\n\r\n", 400},
      {"no version", "GET / SIP/2.0\r\n\r\n", 400},
      {"a version to come", "GET / HTTP/2.0\r\n\r\n", 505},
      {"lone line feeds", "GET / HTTP/1.1\n\n", 400},
      {"a lone line feed between headers", line + "A: b\nC: d\r\n\r\n", 400},
      {"a carriage return inside a header", line + "A: b\rC: d\r\n\r\n", 400},
      {"NUL in a header", line + QByteArray("A: b\0c\r\n\r\n", 10), 400},
      {"a folded header", line + "A: b\r\n c\r\n\r\n", 400},
      {"a blank before the colon", line + "A : b\r\n\r\n", 400},
      {"a header without colon", line + "Abc\r\n\r\n", 400},
      {"a negative length", line + "Content-Length: -1\r\n\r\n", 400},
      {"a signed length", line + "Content-Length: +1\r\n\r\n", 400},
      {"an empty length", line + "Content-Length:\r\n\r\n", 400},
      {"two lengths", line + "Content-Length: 1\r\nContent-Length: 1\r\n\r\nab", 400},
      {"a length list", line + "Content-Length: 1, 1\r\n\r\nab", 400},
      {"a length beyond the limit",
       line + "Content-Length: " + QByteArray::number(kMaxBodyBytes + 1) + "\r\n\r\n", 413},
      {"a length beyond 64 bits", line + "Content-Length: 99999999999999999999\r\n\r\n", 413},
      {"chunks", line + "Transfer-Encoding: chunked\r\n\r\n0\r\n\r\n", 501},
      {"a target that is too long",
       "GET /" + QByteArray(kMaxTargetBytes, 'a') + " HTTP/1.1\r\n\r\n", 414},
      {"a first line without end", "GET /" + QByteArray(kMaxHeadBytes, 'a'), 414},
      {"headers without end", line + "A: " + QByteArray(kMaxHeadBytes, 'a'), 431},
      {"too many headers", line + QByteArray("A:b\r\n").repeated(kMaxHeaders + 1) + "\r\n", 431},
      {"nothing but line ends", QByteArray("\r\n").repeated(kMaxHeadBytes), 400},
  };
  for (const auto& row : kRows) {
    const ParsedRequest parsed = ParseRequest(row.bytes);
    EXPECT_EQ(parsed.status, ParseStatus::kRefused) << row.fault;
    EXPECT_EQ(parsed.refusal, row.refusal) << row.fault;
  }
}

TEST(HttpParser, LimitsThemselvesAreAllowed) {
  const QByteArray body(kMaxBodyBytes, 'x');
  EXPECT_EQ(ParseRequest("POST /" + QByteArray(kMaxTargetBytes - 1, 'a') + " HTTP/1.1\r\n" +
                         QByteArray("A:b\r\n").repeated(kMaxHeaders - 1) +
                         "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body)
                .status,
            ParseStatus::kComplete);
}

TEST(HttpParser, TheConnectionStaysOpenAsVersionAndHeaderSay) {
  const std::pair<const char*, bool> rows[] = {
      {"GET / HTTP/1.1\r\n\r\n", true},
      {"GET / HTTP/1.1\r\nConnection: Close\r\n\r\n", false},
      {"GET / HTTP/1.0\r\n\r\n", false},
      {"GET / HTTP/1.0\r\nConnection: Keep-Alive\r\n\r\n", true},
  };
  for (const auto& [bytes, keep_alive] : rows) {
    EXPECT_EQ(ParseRequest(bytes).request.keep_alive, keep_alive) << bytes;
  }
}

TEST(FormFields, OddEncodingsKeepTheirBytes) {
  const FormFields form("a=1&b=%E4%B8%AD+x&a=2&c=%4&d=%zz&e=%&=v&f&g=a=b&h=%2B%26%3D&i=%41%");
  QStringList values;
  for (const QString& name : u"a b c d e  f g h i none"_s.split(u' ')) {
    values += form.Value(name);
  }
  EXPECT_EQ(values.join(u'|'), u"1|中 x|%4|%zz|%|v||a=b|+&=|A%|"_s);
  EXPECT_TRUE(form.Has(u"f"_s));
  EXPECT_FALSE(form.Has(u"none"_s));
}

TEST(FormatResponse, ABodilessAnswerSendsNoBodyThatTheNextAnswerWouldFollow) {
  HttpResponse response{.body = "abc"};
  EXPECT_TRUE(FormatResponse(response, true, false).endsWith("\r\n\r\nabc"));
  const QByteArray head = FormatResponse(response, true, true);
  EXPECT_TRUE(head.endsWith("\r\n\r\n"));
  EXPECT_TRUE(head.contains("Content-Length: 3\r\n"));
  response.status = 204;
  const QByteArray empty = FormatResponse(response, true, false);
  EXPECT_TRUE(empty.endsWith("\r\n\r\n"));
  EXPECT_FALSE(empty.contains("Content-Length"));
}

}  // namespace
}  // namespace quayline
