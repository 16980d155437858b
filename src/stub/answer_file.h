// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <expected>
#include <optional>
#include <utility>

#include "stub/stub_rule.h"

namespace quayline {

// What "answers.json" says: how the router of a folder of pages answers what its pages send. The
// format is described in docs/writing-a-router-script.md.

// How a value is made from a request.
struct ValueSource {
  QString text;   // with paths; see RequestValues::Filled()
  QString split;  // empty: the value is not divided
  int part = 0;   // of the divided value
  std::optional<QMap<QString, QString>> map;
  std::optional<QString> otherwise;  // where the request does not have it
};

using MemberSources = QMap<QString, ValueSource>;

struct FieldTest {
  QString path;
  std::optional<bool> is_present;  // else its text is one of `values`
  QStringList values;
};

// Which requests a row is for. A path that ends with "*" is every path that begins so.
struct RequestTest {
  QByteArray method;
  QString path;
  QList<FieldTest> fields;
};

struct StubAnswer {
  QString redirect;
  QString file;
  QJsonValue json = QJsonValue::Undefined;
  std::optional<QString> text;
  QByteArray type;
  int status = 200;
  int delay_ms = 0;
  QList<std::pair<QByteArray, QByteArray>> headers;
};

enum class RuleAction { kNone, kAdd, kPut, kEdit, kRemove, kToggle, kReplace, kCommit, kDiscard };

// Several rules in one field: "on>TCP>80<on>UDP>90".
struct ListSource {
  QString field;
  QString rows;
  QString cells;
  QStringList order;  // names of the cells
};

struct Refusal {
  QStringList same;   // a rule with the same values of these members exists
  int more_than = 0;  // rules; 0: no limit
  StubAnswer answer;
};

struct AnswerRow {
  RequestTest on;
  bool is_open = false;  // without a login
  RuleAction action = RuleAction::kNone;
  MemberSources rule;
  std::optional<ValueSource> row;  // the number of the rule, from 0
  MemberSources match;             // or the members by which it is found
  std::optional<ListSource> list;
  QString each;                                 // the path of a JSON list of rules
  std::optional<std::pair<int, int>> numbered;  // {n} in paths takes these numbers
  std::optional<Refusal> refusal;
  std::optional<StubAnswer> answer;  // else the file of the path
};

struct BasicLogin {
  QString realm;
  QString user;
  QString password;
};

struct LoginSession {
  QString page;
  RequestTest on;
  QString cookie;
  // The path of the value that names the session; "path": a part of each address does; empty: the
  // cookie.
  QString via;
  QStringList open;
  StubAnswer answer;
  std::optional<StubAnswer> denied;  // else a redirect to the page
};

struct PageToken {
  QString path;  // of the value in a request
  bool rotates = false;
};

struct AnswerFile {
  QString pages;  // a folder beside this one that has the pages which this one lacks
  std::optional<BasicLogin> login;
  std::optional<LoginSession> session;
  std::optional<PageToken> token;
  bool is_pending = false;  // changes count after a "commit"
  QStringList batches;      // paths that take a list of calls in one request
  QList<StubRule> rules;    // that the router has at the start
  QList<AnswerRow> answers;
};

// Every error of the file, a sentence each, where it has one.
std::expected<AnswerFile, QStringList> ParseAnswerFile(const QByteArray& json);

}  // namespace quayline
