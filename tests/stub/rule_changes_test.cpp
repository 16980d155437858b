// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stub/rule_changes.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

const QList<StubRule> kTwo{{{u"id"_s, u"a"_s},
                            {u"name"_s, u"Web"_s},
                            {u"start"_s, u"80"_s},
                            {u"end"_s, u"80"_s},
                            {u"protocol"_s, u"TCP"_s},
                            {u"address"_s, u"10.0.0.5"_s}},
                           {{u"id"_s, u"b"_s},
                            {u"name"_s, u"Mail"_s},
                            {u"start"_s, u"25"_s},
                            {u"end"_s, u"30"_s},
                            {u"protocol"_s, u"TCP/UDP"_s},
                            {u"address"_s, u"10.0.0.6"_s}}};

// The rules after a request, one text each, with "REFUSED" and "PROBLEM" where there were some.
QString After(const char* row, const QByteArray& body) {
  const QByteArray file = QByteArray(R"({"answers": [{"on": "POST /", )") + row + "}]}";
  const auto answers = ParseAnswerFile(file);
  if (!answers) {
    return answers.error().join(u' ');
  }
  HttpRequest request;
  request.path = u"/api/rules/b"_s;
  request.body = body;
  int next_id = 0;
  const RuleChange change =
      ChangeRules(kTwo, answers->answers.first(), RequestValues(request), next_id);
  QStringList texts;
  for (const StubRule& rule : change.rules) {
    texts.append(RuleText(rule));
  }
  return texts.join(u"; "_s) + (change.is_refused ? u" REFUSED"_s : QString()) +
         (change.problems.isEmpty() ? QString() : u" PROBLEM"_s);
}

TEST(RuleChanges, RequestsOfManyShapesChangeTheRules) {
  const QString web = RuleText(kTwo[0]);
  const QString mail = RuleText(kTwo[1]);
  const QString both = web + u"; "_s + mail;
  const struct {
    const char* row;
    const char* body;
    QString rules;
  } cases[] = {
      {R"("do": "remove", "match": {"id": "$path:3"})", "", web},
      {R"("do": "remove", "match": {"id": "$path:4"})", "", both + u" PROBLEM"_s},
      {R"("do": "add", "rule": {"name": "$n", "start": "$p", "end": "$q", "address": "10.0.0.${h}",
          "protocol": {"field": "${t}/${u}", "map": {"1/": "TCP", "/1": "UDP", "1/1": "TCP/UDP"}},
          "enabled": {"field": "$on", "otherwise": "no"}})",
       "n=A+b&p=90&q=&h=7&t=1&u=1", both + u"; A b TCP/UDP 90 to 10.0.0.7, disabled"_s},
      {R"("do": "add", "rule": {"start": "$p", "protocol": {"field": "$t", "map": {"1": "TCP"}}})",
       "p=70000&t=9", both + u"; (no name) (no protocol) (no ports) to (no address) PROBLEM"_s},
      {R"("do": "add", "rule": {"start": {"field": "$p", "split": "-"},
          "end": {"field": "$p", "split": "-", "part": 1}})",
       "p=5-6", both + u"; (no name) (no protocol) 5-6 to (no address)"_s},
      {R"("do": "add", "rule": {"start": "$[1].params.v.p"})",
       R"([{}, {"params": {"v": {"p": 8}}}])",
       both + u"; (no name) (no protocol) 8 to (no address)"_s},
      {R"("do": "add", "rule": {"start": "$p"}, "refuse": {"same": ["start"], "answer": {}})",
       "p=80", both + u" REFUSED"_s},
      {R"("do": "add", "rule": {"start": "$p"}, "refuse": {"more_than": 2, "answer": {}})", "p=1",
       both + u" REFUSED"_s},
      {R"("do": "remove", "row": "$i")", "i=1", web},
      {R"("do": "remove", "row": "$i")", "i=0,1,1", QString()},
      {R"("do": "remove", "row": "$i")", "i=2", both + u" PROBLEM"_s},
      {R"("do": "remove", "row": "$del{n}", "numbered": {"from": 1, "to": 9})", "del1=on&x=1",
       mail},
      {R"("do": "remove", "match": {"id": "$id"})", "id=b", web},
      {R"("do": "remove", "match": {"id": "$id"})", "x=b", both + u" PROBLEM"_s},
      {R"("do": "toggle", "match": {"start": "$p"})", "p=80", web + u", disabled; "_s + mail},
      {R"("do": "edit", "row": "$i", "rule": {"start": "$p", "name": "$n"})", "i=1&p=26",
       web + u"; Mail TCP/UDP 26-30 to 10.0.0.6"_s},
      {R"("do": "put", "match": {"name": "$n"}, "rule": {"name": "$n", "start": "$p"})", "n=X&p=9",
       both + u"; X (no protocol) 9 to (no address)"_s},
      {R"("do": "replace", "list": {"field": "l", "rows": ">", "cells": "<",
          "order": ["enabled", "protocol", "name", "start", "address"]})",
       "l=on<TCP<A<7<10.0.0.1>off<UDP<B<8<10.0.0.2>",
       u"A TCP 7 to 10.0.0.1; B UDP 8 to 10.0.0.2, disabled"_s},
      {R"("do": "replace", "list": {"field": "l", "rows": ">", "cells": "<", "order": ["a", "b"]},
          "rule": {"start": "$b", "name": "n${a}"})",
       "l=1<7>2<8", u"n1 (no protocol) 7 to (no address); n2 (no protocol) 8 to (no address)"_s},
      {R"("do": "replace", "numbered": {"from": 0, "to": 2},
          "rule": {"name": "$n{n}", "start": "$p{n}"})",
       "n0=&p0=&n1=A&p1=5&n2=B&p2=", u"A (no protocol) 5 to (no address)"_s},
      {R"("do": "replace", "each": "$rules", "rule": {"name": "$key", "start": "$item.port"})",
       R"({"rules": {"x": {"port": 5}}})", u"x (no protocol) 5 to (no address)"_s},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(After(c.row, c.body), c.rules) << c.row;
  }
}

TEST(AnswerFile, WhatIsWrongIsNamedWithItsPlace) {
  const std::pair<const char*, const char*> cases[] = {
      {"{\n\n\"a\": }", "Line 3 is not JSON: "},
      {"[]", "The file is not a JSON object."},
      {R"({"answer": []})", "answer is not a known key."},
      {R"({"login": {"user": "a"}})", "login.password is missing."},
      {R"({"pending": 1})", "pending is not true or false."},
      {R"({"answers": [{"on": "/apply"}]})", "answers[0].on is not a method and a path"},
      {R"({"answers": [{"on": "GET /a?b=1"}]})", "answers[0].on has a query"},
      {R"({"answers": [{"on": "GET /", "when": {"a": 1}}]})", "answers[0].when.a is not a text"},
      {R"({"answers": [{"on": "POST /", "do": "append"}]})", "answers[0].do is not one of add"},
      {R"({"answers": [{"on": "POST /", "do": "add"}]})", "answers[0] needs a \"rule\""},
      {R"({"answers": [{"on": "POST /", "do": "remove"}]})", "answers[0] needs \"row\" or"},
      {R"({"answers": [{"on": "POST /", "rule": {"a": "$a"}}]})", "answers[0] needs a \"do\""},
      {R"({"answers": [{"on": "POST /", "do": "add", "rule": {"a": {"map": {}}}}]})",
       "answers[0].rule.a.field is missing."},
      {R"({"answers": [{"on": "GET /", "answer": {"file": "a", "text": "b"}}]})",
       "answers[0].answer has more than one of"},
      {R"({"answers": [{"on": "GET /", "answer": {"headers": {"a": "b\nc"}}}]})",
       "answers[0].answer.headers.a is not a valid header."},
      {R"({"rules": [{"start": "0"}]})", "rules[0].start is not a valid text."},
  };
  for (const auto& [file, sentence] : cases) {
    const auto parsed = ParseAnswerFile(file);
    ASSERT_FALSE(parsed.has_value()) << file;
    EXPECT_TRUE(parsed.error().join(u' ').startsWith(QLatin1String(sentence)))
        << file << ": " << qPrintable(parsed.error().join(u' '));
  }
}

TEST(StubRule, TheRulesOfAJobAreComparedWithoutTheirNames) {
  const QList<PortEntry> entries{{.app_name = u"Web"_s,
                                  .forwarded_to = u"10.0.0.5(Desk)"_s,
                                  .start_port = u"80"_s,
                                  .end_port = u"80"_s,
                                  .protocol = u"TCP/UDP"_s,
                                  .description = {}}};
  const auto rule = [](const char* protocol, const char* enabled = "yes") {
    return StubRule{{u"name"_s, u"W"_s},
                    {u"start"_s, u"80"_s},
                    {u"address"_s, u"10.0.0.5"_s},
                    {u"protocol"_s, QLatin1String(protocol)},
                    {u"enabled"_s, QLatin1String(enabled)}};
  };
  const struct {
    QList<StubRule> rules;
    int differences;
  } cases[] = {{{kTwo[1], rule("TCP/UDP")}, 0},
               {{rule("TCP"), kTwo[1], rule("UDP")}, 0},
               {{kTwo[1], rule("TCP")}, 1},
               {{rule("TCP/UDP")}, 2},
               {{kTwo[1], rule("TCP/UDP"), rule("TCP")}, 1},
               {{kTwo[1], rule("TCP/UDP", "no")}, 4}};
  for (const auto& c : cases) {
    const QStringList found = DifferencesFrom(entries, {kTwo[1]}, c.rules);
    EXPECT_EQ(found.size(), c.differences) << qPrintable(found.join(u' '));
  }
}

}  // namespace
}  // namespace quayline
