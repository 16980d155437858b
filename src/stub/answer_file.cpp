// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stub/answer_file.h"

#include <QJsonDocument>

#include <algorithm>

#include "stub/json_reader.h"

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxNumber = 1000;

constexpr std::pair<const char*, RuleAction> kActions[] = {
    {"add", RuleAction::kAdd},       {"put", RuleAction::kPut},
    {"edit", RuleAction::kEdit},     {"remove", RuleAction::kRemove},
    {"toggle", RuleAction::kToggle}, {"replace", RuleAction::kReplace},
    {"commit", RuleAction::kCommit}, {"discard", RuleAction::kDiscard},
};

// Reads the parts of the file; what is wrong goes to `errors`.
class Parser final {
 public:
  explicit Parser(QStringList& errors) : errors_(errors) {}

  AnswerFile Parse(const QJsonObject& object) {
    JsonReader reader(object, QString(), errors_);
    AnswerFile file;
    file.pages = reader.Text("pages");
    if (reader.Has("login")) {
      file.login = ReadLogin(reader.Value("login"));
    }
    if (reader.Has("session")) {
      file.session = ReadSession(reader.Value("session"));
    }
    if (reader.Has("token")) {
      JsonReader token(reader.Value("token"), u"token"_s, errors_);
      file.token = PageToken{.path = token.NeededText("field"), .rotates = token.Flag("rotates")};
    }
    file.is_pending = reader.Flag("pending");
    file.batches = reader.Texts("batches");
    ReadRules(reader.Array("rules"), file.rules);
    int number = 0;
    for (const auto& value : reader.Array("answers")) {
      file.answers.append(ReadRow(value, u"answers[%1]"_s.arg(number++)));
    }
    return file;
  }

 private:
  BasicLogin ReadLogin(const QJsonValue& value) {
    JsonReader reader(value, u"login"_s, errors_);
    return {.realm = reader.Text("realm", u"router"_s),
            .user = reader.NeededText("user"),
            .password = reader.NeededText("password")};
  }

  LoginSession ReadSession(const QJsonValue& value) {
    JsonReader reader(value, u"session"_s, errors_);
    LoginSession session;
    session.page = reader.NeededText("page");
    session.on = ReadTest(reader);
    session.cookie = reader.Text("cookie", u"sid"_s);
    session.via = Path(reader.Text("via"));
    session.open = reader.Texts("open");
    session.answer = {.redirect = u"/"_s};
    if (reader.Has("answer")) {
      session.answer = ReadAnswer(reader.Value("answer"), reader.Place("answer"));
    }
    if (reader.Has("denied")) {
      session.denied = ReadAnswer(reader.Value("denied"), reader.Place("denied"));
    }
    return session;
  }

  void ReadRules(const QJsonArray& array, QList<StubRule>& rules) {
    for (const auto& value : array) {
      StubRule rule;
      const QJsonObject object = value.toObject();
      for (const QString& member : object.keys()) {
        const QString stored = StoredMember(member, object.value(member).toString());
        if (stored.isEmpty()) {
          errors_.append(u"rules[%1].%2 is not a valid text."_s.arg(rules.size()).arg(member));
        }
        rule.insert(member, stored);
      }
      rules.append(rule);
    }
  }

  RequestTest ReadTest(JsonReader& reader) {
    const QString on = reader.NeededText("on");
    RequestTest test{
        .method = on.section(u' ', 0, 0).toLatin1(), .path = on.section(u' ', 1), .fields = {}};
    if (!on.isEmpty() && ((test.method != "GET" && test.method != "POST" && test.method != "PUT" &&
                           test.method != "DELETE") ||
                          !test.path.startsWith(u'/'))) {
      reader.Report(reader.Place("on"), u"is not a method and a path, as in \"POST /apply.cgi\""_s);
    }
    if (test.path.contains(u'?')) {
      reader.Report(reader.Place("on"), u"has a query: write its fields in \"when\""_s);
    }
    if (!reader.Has("when")) {
      return test;
    }
    const QJsonValue when = reader.Value("when");
    if (!when.isObject()) {
      reader.Report(reader.Place("when"), u"is not an object"_s);
    }
    const QJsonObject tests = when.toObject();
    for (const QString& path : tests.keys()) {
      test.fields.append(ReadFieldTest(path, tests.value(path), reader));
    }
    return test;
  }

  FieldTest ReadFieldTest(const QString& path, const QJsonValue& value, JsonReader& reader) {
    FieldTest test{.path = Path(path), .is_present = {}, .values = {}};
    if (value.isBool()) {
      test.is_present = value.toBool();
    } else if (value.isString()) {
      test.values.append(value.toString());
    } else if (value.isArray()) {
      for (const auto& element : value.toArray()) {
        test.values.append(element.toString());
      }
    } else {
      reader.Report(reader.Place("when") + u'.' + path,
                    u"is not a text, a list of texts, or true or false for being there"_s);
    }
    return test;
  }

  // A path may be written with the "$" that it has inside texts.
  static QString Path(const QString& text) { return text.startsWith(u'$') ? text.sliced(1) : text; }

  ValueSource ReadSource(const QJsonValue& value, const QString& place) {
    if (value.isString()) {
      return {.text = value.toString(), .split = {}, .map = {}, .otherwise = {}};
    }
    JsonReader reader(value, place, errors_);
    ValueSource source{.text = reader.NeededText("field"),
                       .split = reader.Text("split"),
                       .part = reader.Number("part", 0, kMaxNumber, 0),
                       .map = {},
                       .otherwise = {}};
    if (reader.Has("map")) {
      source.map = reader.TextMap("map");
    }
    if (reader.Has("otherwise")) {
      source.otherwise = reader.Text("otherwise");
    }
    return source;
  }

  MemberSources ReadSources(JsonReader& reader, const char* key) {
    MemberSources sources;
    const QJsonValue value = reader.Value(key);
    if (!value.isUndefined() && !value.isObject()) {
      reader.Report(reader.Place(key), u"is not an object"_s);
    }
    const QJsonObject object = value.toObject();
    for (const QString& member : object.keys()) {
      sources.insert(member, ReadSource(object.value(member), reader.Place(key) + u'.' + member));
    }
    return sources;
  }

  StubAnswer ReadAnswer(const QJsonValue& value, const QString& place) {
    JsonReader reader(value, place, errors_);
    StubAnswer answer;
    answer.redirect = reader.Text("redirect");
    answer.file = reader.Text("file");
    answer.json = reader.Value("json");
    if (reader.Has("text")) {
      answer.text = reader.Text("text");
    }
    answer.type = reader.Text("type").toLatin1();
    answer.status = reader.Number("status", 200, 599, 200);
    answer.delay_ms = reader.Number("delay_ms", 0, 60'000, 0);
    for (const auto& [name, text] : reader.TextMap("headers").asKeyValueRange()) {
      const bool is_sound =
          !name.contains(u':') && !(name + text).contains(u'\r') && !(name + text).contains(u'\n');
      if (!is_sound) {
        reader.Report(reader.Place("headers") + u'.' + name, u"is not a valid header"_s);
      }
      answer.headers.append({name.toLatin1(), text.toUtf8()});
    }
    const int kinds = (reader.Has("redirect") ? 1 : 0) + (reader.Has("file") ? 1 : 0) +
                      (reader.Has("json") ? 1 : 0) + (reader.Has("text") ? 1 : 0);
    if (kinds > 1) {
      reader.Report(place, u"has more than one of redirect, file, json and text"_s);
    }
    return answer;
  }

  AnswerRow ReadRow(const QJsonValue& value, const QString& place) {
    JsonReader reader(value, place, errors_);
    AnswerRow row;
    row.on = ReadTest(reader);
    row.is_open = reader.Flag("open");
    row.action = ReadAction(reader);
    row.rule = ReadSources(reader, "rule");
    row.match = ReadSources(reader, "match");
    row.each = Path(reader.Text("each"));
    if (reader.Has("row")) {
      row.row = ReadSource(reader.Value("row"), reader.Place("row"));
    }
    if (reader.Has("list")) {
      row.list = ReadList(reader.Value("list"), reader.Place("list"));
    }
    if (reader.Has("numbered")) {
      JsonReader numbers(reader.Value("numbered"), reader.Place("numbered"), errors_);
      row.numbered = {numbers.Number("from", 0, kMaxNumber, 0),
                      numbers.Number("to", 0, kMaxNumber, 0)};
    }
    if (reader.Has("refuse")) {
      JsonReader refuse(reader.Value("refuse"), reader.Place("refuse"), errors_);
      row.refusal = {.same = refuse.Texts("same"),
                     .more_than = refuse.Number("more_than", 0, kMaxNumber, 0),
                     .answer = ReadAnswer(refuse.Value("answer"), refuse.Place("answer"))};
    }
    if (reader.Has("answer")) {
      row.answer = ReadAnswer(reader.Value("answer"), reader.Place("answer"));
    }
    CheckRow(row, reader, place);
    return row;
  }

  RuleAction ReadAction(JsonReader& reader) {
    const QString name = reader.Text("do");
    const auto* const found = std::ranges::find_if(
        kActions, [&](const auto& action) { return name == QLatin1String(action.first); });
    if (found != std::end(kActions)) {
      return found->second;
    }
    if (!name.isEmpty()) {
      reader.Report(reader.Place("do"),
                    u"is not one of add, put, edit, remove, toggle, replace, commit, discard"_s);
    }
    return RuleAction::kNone;
  }

  ListSource ReadList(const QJsonValue& value, const QString& place) {
    JsonReader reader(value, place, errors_);
    return {.field = Path(reader.NeededText("field")),
            .rows = reader.NeededText("rows"),
            .cells = reader.NeededText("cells"),
            .order = reader.Texts("order")};
  }

  void CheckRow(const AnswerRow& row, JsonReader& reader, const QString& place) {
    const bool finds_rule = row.row || !row.match.isEmpty();
    switch (row.action) {
      case RuleAction::kAdd:
      case RuleAction::kReplace:
        if (row.rule.isEmpty() && !row.list) {
          reader.Report(place, u"needs a \"rule\" that says what is stored"_s);
        }
        break;
      case RuleAction::kPut:
      case RuleAction::kEdit:
        if (row.rule.isEmpty() || !finds_rule) {
          reader.Report(place, u"needs a \"rule\", and \"row\" or \"match\" to find it by"_s);
        }
        break;
      case RuleAction::kRemove:
      case RuleAction::kToggle:
        if (!finds_rule) {
          reader.Report(place, u"needs \"row\" or \"match\" to find the rule by"_s);
        }
        break;
      case RuleAction::kNone:
        if (!row.rule.isEmpty() || finds_rule || row.list) {
          reader.Report(place, u"needs a \"do\" that says what happens to the rule"_s);
        }
        break;
      case RuleAction::kCommit:
      case RuleAction::kDiscard:
        break;
    }
  }

  QStringList& errors_;
};

}  // namespace

std::expected<AnswerFile, QStringList> ParseAnswerFile(const QByteArray& json) {
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(json, &error);
  if (error.error != QJsonParseError::NoError) {
    const auto line = json.first(std::min<qsizetype>(error.offset, json.size())).count('\n') + 1;
    return std::unexpected(
        QStringList(u"Line %1 is not JSON: %2."_s.arg(line).arg(error.errorString())));
  }
  QStringList errors;
  AnswerFile file = Parser(errors).Parse(document.object());
  if (!document.isObject()) {
    errors.prepend(u"The file is not a JSON object."_s);
  }
  if (!errors.isEmpty()) {
    return std::unexpected(errors);
  }
  return file;
}

}  // namespace quayline
