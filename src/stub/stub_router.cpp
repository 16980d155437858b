// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stub/stub_router.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <algorithm>

#include "stub/rule_changes.h"

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

// Of LoginSession::via.
const QString kPath = u"path"_s;
constexpr qint64 kMaxAnswerBytes = qint64{4} << 20;
constexpr int kUnauthorized = 401;
constexpr int kForbidden = 403;
constexpr int kNotFound = 404;
constexpr int kServerError = 500;

QString RandomText() {
  return QString::number(QRandomGenerator::global()->generate64() | (1ULL << 63), 16);
}

bool IsPath(const QString& pattern, const QString& path) {
  return pattern.endsWith(u'*') ? path.startsWith(pattern.chopped(1)) : path == pattern;
}

bool Meets(const RequestTest& test, const HttpRequest& request, const RequestValues& values) {
  const bool is_method =
      test.method == request.method || (test.method == "GET" && request.method == "HEAD");
  return is_method && IsPath(test.path, request.path) &&
         std::ranges::all_of(test.fields, [&](const FieldTest& field) {
           const std::optional<QString> value = values.FindText(field.path);
           return field.is_present ? *field.is_present == value.has_value()
                                   : value && field.values.contains(*value);
         });
}

bool HasBasicLogin(const HttpRequest& request, const BasicLogin& login) {
  const QByteArray header = request.Header("authorization");
  const QByteArray wanted = (login.user + u':' + login.password).toUtf8();
  return header.first(std::min<qsizetype>(header.size(), 6)).toLower() == "basic " &&
         QByteArray::fromBase64(header.mid(6).trimmed()) == wanted;
}

HttpResponse ErrorPage(int status, const QByteArray& text) {
  HttpResponse response;
  response.status = status;
  response.body =
      "<html><body><h1>" + QByteArray::number(status) + "</h1><p>" + text + "</p></body></html>";
  return response;
}

// The value with the request's values in its texts.
QJsonValue FilledJson(const QJsonValue& value, const RequestValues& request) {
  if (value.isString()) {
    const QString text = value.toString();
    if (text.startsWith(u'$') && !text.startsWith("${"_L1)) {
      const QJsonValue found = request.Find(text.sliced(1));
      return found.isUndefined() ? QJsonValue() : found;
    }
    return request.Filled(text).value_or(QString());
  }
  if (value.isArray()) {
    QJsonArray filled;
    for (const auto& element : value.toArray()) {
      filled.append(FilledJson(element, request));
    }
    return filled;
  }
  QJsonObject filled = value.toObject();
  for (const QString& key : filled.keys()) {
    filled.insert(key, FilledJson(filled.value(key), request));
  }
  return value.isObject() ? QJsonValue(filled) : value;
}

QByteArray JsonBytes(const QJsonValue& value) {
  const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
  return list.sliced(1, list.size() - 2);
}

}  // namespace

std::expected<std::unique_ptr<StubRouter>, QString> StubRouter::Open(const QString& folder,
                                                                     const QString& answers_file) {
  auto pages = PageFolder::Open(folder);
  if (!pages) {
    return std::unexpected(pages.error());
  }
  const QString name = answers_file.isEmpty() ? folder + u"/answers.json"_s : answers_file;
  QFile file(name);
  AnswerFile answers;
  if (file.open(QIODevice::ReadOnly)) {
    const QByteArray bytes = file.read(kMaxAnswerBytes + 1);
    if (bytes.size() > kMaxAnswerBytes) {
      return std::unexpected(u"\"%1\" is larger than 4 MB."_s.arg(name));
    }
    auto parsed = ParseAnswerFile(bytes);
    if (!parsed) {
      return std::unexpected(name + u": "_s + parsed.error().join(u"\n"_s + name + u": "_s));
    }
    answers = *std::move(parsed);
  } else if (!answers_file.isEmpty() || file.exists()) {
    return std::unexpected(u"\"%1\" cannot be read: %2."_s.arg(name, file.errorString()));
  }
  if (!answers.pages.isEmpty() && !pages->TakeTheRestFrom(answers.pages)) {
    return std::unexpected(
        u"There is no folder \"%1\" beside \"%2\"."_s.arg(answers.pages, folder));
  }
  return std::unique_ptr<StubRouter>(new StubRouter(*pages, std::move(answers)));
}

StubRouter::StubRouter(PageFolder folder, AnswerFile answers)
    : folder_(std::move(folder)),
      answers_(std::move(answers)),
      server_([this](const HttpRequest& request) { return Answer(request); }) {
  Reset();
}

void StubRouter::Reset() {
  next_id_ = 0;
  kept_ = answers_.rules;
  for (StubRule& rule : kept_) {
    if (!rule.contains(u"id"_s)) {
      rule.insert(u"id"_s, u"rule%1"_s.arg(++next_id_));
    }
  }
  shown_ = kept_;
  session_.clear();
  RenewToken();
}

std::expected<quint16, QString> StubRouter::Start() { return server_.Listen(0); }

void StubRouter::RenewToken() { token_ = RandomText(); }

HttpResponse StubRouter::Answer(const HttpRequest& received) {
  HttpRequest request = received;
  RequestValues values(request);
  if (answers_.session && answers_.session->via == kPath && TakeSession(request.path)) {
    values = values.With({{kPath, session_}});
  }
  StubExchange exchange{.method = QString::fromLatin1(request.method),
                        .path = request.path,
                        .fields = values.Fields(),
                        .answer = {},
                        .done = {},
                        .problems = {}};
  if (!values.Json().isUndefined()) {
    exchange.fields.append({u"JSON"_s, JsonText(values.Json())});
  }
  std::optional<HttpResponse> response = AnswerBeforeLogin(request, values, exchange);
  if (!response) {
    const bool is_batch = answers_.batches.contains(request.path) && values.Json().isArray();
    response =
        is_batch ? AnswerBatch(request, values, exchange) : AnswerCall(request, values, exchange);
  }
  exchange.status = response->status;
  Q_EMIT exchanged(exchange);
  return *response;
}

// Takes the part of the path that names the session, as in "/5F3A/index.htm" and
// "/;stok=5F3A/index.htm".
bool StubRouter::TakeSession(QString& path) const {
  QStringList parts = path.split(u'/');
  const auto removed = session_.isEmpty() ? 0 : parts.removeIf([this](const QString& part) {
    return part.contains(session_);
  });
  path = parts.join(u'/');
  return removed > 0;
}

bool StubRouter::IsOpen(const HttpRequest& request, const RequestValues& values) const {
  const LoginSession& session = *answers_.session;
  const QString shown = session.via.isEmpty() ? u"cookie:"_s + session.cookie : session.via;
  const AnswerRow* row = FindRow(request, values);
  // Where a value of each call names the session, files have none.
  return (!session_.isEmpty() && values.FindText(shown) == session_) || (row && row->is_open) ||
         (!session.via.isEmpty() && session.via != kPath && row == nullptr) ||
         request.path == session.page ||
         std::ranges::any_of(session.open,
                             [&](const QString& path) { return IsPath(path, request.path); });
}

std::optional<HttpResponse> StubRouter::AnswerBeforeLogin(const HttpRequest& request,
                                                          const RequestValues& values,
                                                          StubExchange& exchange) {
  if (answers_.login && !HasBasicLogin(request, *answers_.login)) {
    HttpResponse response = ErrorPage(kUnauthorized, "A login is required.");
    response.headers.append(
        {"WWW-Authenticate", "Basic realm=\"" + answers_.login->realm.toUtf8() + '"'});
    exchange.answer = u"asks for the login"_s;
    return response;
  }
  if (!answers_.session) {
    return std::nullopt;
  }
  const bool is_batch = answers_.batches.contains(request.path) && values.Json().isArray();
  if (Meets(answers_.session->on, request, values)) {
    return AnswerLogin(values, exchange);
  }
  if (is_batch || IsOpen(request, values)) {
    return std::nullopt;
  }
  if (answers_.session->denied) {
    return Reply(*answers_.session->denied, values, exchange);
  }
  exchange.answer = answers_.session->page;
  return RedirectTo(answers_.session->page.toUtf8());
}

HttpResponse StubRouter::AnswerLogin(const RequestValues& values, StubExchange& exchange) {
  session_ = RandomText();
  RenewToken();
  exchange.done.append(u"logged in"_s);
  HttpResponse response = Reply(answers_.session->answer, values, exchange);
  if (answers_.session->via.isEmpty()) {
    response.headers.append({"Set-Cookie", answers_.session->cookie.toUtf8() + '=' +
                                               session_.toLatin1() + "; Path=/; HttpOnly"});
  }
  return response;
}

// Each call of the list by itself; the answers are JSON and make one list.
HttpResponse StubRouter::AnswerBatch(const HttpRequest& request, const RequestValues& values,
                                     StubExchange& exchange) {
  QJsonArray answers;
  for (const auto& call : values.Json().toArray()) {
    const RequestValues one = values.WithJson(call);
    std::optional<HttpResponse> response;
    if (answers_.session) {
      response = AnswerBeforeLogin(request, one, exchange);
    }
    if (!response) {
      response = AnswerCall(request, one, exchange);
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(response->body, &error);
    if (error.error != QJsonParseError::NoError) {
      exchange.problems.append(u"The answer to a call is not JSON: %1"_s.arg(
          QString::fromUtf8(response->body.first(std::min<qsizetype>(response->body.size(), 80)))));
    }
    answers.append(document.isArray() ? QJsonValue(document.array())
                                      : QJsonValue(document.object()));
  }
  HttpResponse response;
  response.content_type = "application/json";
  response.body = QJsonDocument(answers).toJson(QJsonDocument::Compact);
  return response;
}

const AnswerRow* StubRouter::FindRow(const HttpRequest& request,
                                     const RequestValues& values) const {
  const auto row = std::ranges::find_if(
      answers_.answers, [&](const AnswerRow& r) { return Meets(r.on, request, values); });
  return row == answers_.answers.end() ? nullptr : &*row;
}

bool StubRouter::HasToken(const RequestValues& values) const {
  return !answers_.token || values.FindText(answers_.token->path) == token_;
}

HttpResponse StubRouter::AnswerCall(const HttpRequest& request, const RequestValues& values,
                                    StubExchange& exchange) {
  const AnswerRow* row = FindRow(request, values);
  const bool is_read = request.method == "GET" || request.method == "HEAD";
  if (row == nullptr && !is_read) {
    exchange.problems.append(u"No row of the answers is for this request."_s);
  }
  if (row == nullptr) {
    exchange.is_page = is_read;
    return ServeFile(request.path, values, exchange);
  }
  exchange.is_page = is_read && row->action == RuleAction::kNone;
  if (!is_read && !row->is_open && !HasToken(values)) {
    exchange.problems.append(u"The token of the page is missing or not valid any more."_s);
    exchange.answer = u"refused"_s;
    return ErrorPage(kForbidden, "The token is not valid.");
  }
  if (!is_read && answers_.token && answers_.token->rotates) {
    RenewToken();
  }
  if (CarryOut(*row, values, exchange)) {
    return row->answer ? Reply(*row->answer, values, exchange)
                       : ServeFile(request.path, values, exchange);
  }
  return Reply(row->refusal->answer, values, exchange);
}

// False: the router refuses.
bool StubRouter::CarryOut(const AnswerRow& row, const RequestValues& values,
                          StubExchange& exchange) {
  if (row.action == RuleAction::kCommit) {
    exchange.done.append(u"saved %1 rules"_s.arg(shown_.size()));
    kept_ = shown_;
    return true;
  }
  if (row.action == RuleAction::kDiscard) {
    shown_ = kept_;
    return true;
  }
  const RuleChange change = ChangeRules(shown_, row, values, next_id_);
  shown_ = change.rules;
  if (!answers_.is_pending) {
    kept_ = shown_;
  }
  exchange.done += change.done;
  exchange.problems += change.problems;
  if (change.is_refused) {
    exchange.done.append(u"refused"_s);
  }
  return !change.is_refused;
}

HttpResponse StubRouter::Reply(const StubAnswer& answer, const RequestValues& values,
                               StubExchange& exchange) {
  HttpResponse response;
  if (!answer.redirect.isEmpty()) {
    const QString target =
        QString::fromUtf8(Filled(answer.redirect, Escape::kUrl, values, exchange));
    response = RedirectTo(target.toUtf8());
    exchange.answer = target;
  } else if (!answer.file.isEmpty()) {
    response = ServeFile(u'/' + answer.file, values, exchange);
  } else if (!answer.json.isUndefined()) {
    const QMap<QString, QString> names{
        {u"session"_s, session_},
        {u"token"_s, token_},
        {u"rule.id"_s, shown_.isEmpty() ? QString() : shown_.last().value(u"id"_s)}};
    response.content_type = "application/json";
    response.body = JsonBytes(FilledJson(answer.json, values.With(names)));
    exchange.answer = u"JSON"_s;
  } else {
    response.body =
        Filled(answer.text.value_or(QString()), EscapeOfType(answer.type), values, exchange);
    exchange.answer = u"a text"_s;
  }
  if (answer.status != 200 && response.status == 200) {
    response.status = answer.status;
  }
  if (!answer.type.isEmpty()) {
    response.content_type = answer.type;
  }
  for (const auto& [name, value] : answer.headers) {
    response.headers.append(
        {name, Filled(QString::fromUtf8(value), Escape::kNone, values, exchange)});
  }
  response.hold = std::chrono::milliseconds(answer.delay_ms);
  return response;
}

HttpResponse StubRouter::ServeFile(const QString& path, const RequestValues& values,
                                   StubExchange& exchange) {
  const std::optional<PageFolder::File> file = folder_.Find(path);
  if (!file) {
    exchange.answer = u"no such page"_s;
    return ErrorPage(kNotFound, "There is no such page.");
  }
  exchange.answer = file->name;
  if (file->is_too_large) {
    exchange.problems.append(u"The file is larger than 16 MB, and is not served."_s);
    return ErrorPage(kServerError, "The page is too large.");
  }
  HttpResponse response;
  response.content_type = file->type;
  response.body = file->bytes;
  if (file->is_text && file->bytes.contains("{{")) {
    const qsizetype problems = exchange.problems.size();
    response.body =
        Filled(QString::fromUtf8(file->bytes), EscapeOfType(file->type), values, exchange);
    if (exchange.problems.size() > problems) {
      return ErrorPage(kServerError, "The page has a mark that is not known.");
    }
  }
  return response;
}

QByteArray StubRouter::Filled(const QString& text, Escape escape, const RequestValues& values,
                              StubExchange& exchange) {
  const auto filled = FillPage(
      text, escape,
      {.rules = shown_, .kept = kept_, .token = token_, .session = session_, .request = values});
  if (!filled) {
    exchange.problems.append(filled.error());
    return {};
  }
  return filled->toUtf8();
}

}  // namespace quayline
