// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "core/router_text.h"

#include <algorithm>
#include <utility>

namespace quayline {

namespace {

using RouterColumn = Column<RouterRecord>;

const RouterColumn* FindColumn(const QString& name, bool is_script) {
  for (const RouterColumn& column : kRouterColumns) {
    if (name == QLatin1String(column.name) && (column.kind == ColumnKind::kScript) == is_script) {
      return &column;
    }
  }
  return nullptr;
}

constexpr QLatin1String kLineEnd("\r\n");
constexpr QLatin1String kFileHeading("[file ");
constexpr QLatin1String kModels("models");

constexpr Message kUnknownHeading{
    "The heading %1 is not known. In a script, write a \"\\\" before a line that begins with "
    "\"[\"."};
constexpr Message kSecondHeading{"The heading [%1] appears a second time."};
constexpr Message kNoModel{"This line should be \"ID; name\"."};
constexpr Message kNoField{"This line is neither \"field: value\" nor a heading."};
constexpr Message kSecondField{"The field %1 appears a second time."};
constexpr Message kUnknownField{"There is no field \"%1\"."};

constexpr QLatin1Char kCellEnd(';');

QString WrittenScriptLine(const QString& line) {
  const bool is_plain = !line.trimmed().isEmpty() && !HasControlCharacter(line) &&
                        !line.startsWith(QLatin1Char('[')) && !line.startsWith(QLatin1Char('\\'));
  return is_plain ? line : EscapedText(line);
}

// Reads the lines of one file, one after the other.
class Reader final {
 public:
  Reader(const QString& file, const ScriptLint& lint, Problems& problems)
      : file_(file), lint_(lint), problems_(problems) {}

  void Take(const TextLine& line) {
    const bool is_blank = line.text.trimmed().isEmpty();
    if (line.text.startsWith(QLatin1Char('['))) {
      TakeHeading(line);
    } else if (in_unknown_part_) {
      return;
    } else if (script_) {
      if (!is_blank) {
        TakeScriptLine(line);
      }
    } else if (in_models_ && !is_blank && !line.text.startsWith(QLatin1Char('#'))) {
      TakeModel(line);
    } else if (!is_blank && !line.text.startsWith(QLatin1Char('#'))) {
      TakeField(line);
    }
  }

  QList<RouterSource> Finish() {
    EndRouter();
    return std::move(routers_);
  }

 private:
  void Report(const TextLine& line, const Sentence& sentence) {
    problems_.append({file_, line.number, sentence});
  }

  RouterSource& Current(const TextLine& line) {
    if (routers_.isEmpty()) {
      Begin(line);
    }
    return routers_.last();
  }

  void Begin(const TextLine& line) {
    EndRouter();
    routers_.append({.record = {}, .file = file_, .line = line.number, .lines = {}});
  }

  void EndRouter() {
    EndPart();
    if (models_.isEmpty()) {
      return;
    }
    const RouterSource router = routers_.last();
    for (const Model& model : std::exchange(models_, {})) {
      RouterSource other = router;
      other.record.id = model.id;
      other.record.routername = model.name;
      other.line = model.line;
      other.lines[QStringLiteral("id")] = model.line;
      other.lines[QStringLiteral("routername")] = model.line;
      other.is_other_model = true;
      routers_.append(other);
    }
  }

  void EndPart() {
    if (script_) {
      routers_.last().record.*(script_->member) = script_lines_.join(kLineEnd);
      LintLines();
    }
    script_ = nullptr;
    script_lines_.clear();
    seen_.clear();
    seen_numbers_.clear();
    in_unknown_part_ = false;
    in_models_ = false;
  }

  void TakeHeading(const TextLine& line) {
    const QString heading = line.text.trimmed();
    if (heading.startsWith(kFileHeading) && heading.endsWith(QLatin1Char(']'))) {
      Begin(line);
      return;
    }
    RouterSource& router = Current(line);
    EndPart();
    const bool is_closed = heading.endsWith(QLatin1Char(']'));
    const QString name = is_closed ? heading.sliced(1).chopped(1) : QString();
    const RouterColumn* script = FindColumn(name, true);
    if (script == nullptr && name != kModels) {
      Report(line, {kUnknownHeading, {heading}});
      in_unknown_part_ = true;
      return;
    }
    if (router.lines.contains(name)) {
      Report(line, {kSecondHeading, {name}});
      in_unknown_part_ = true;
      return;
    }
    router.lines.insert(name, line.number);
    script_ = script;
    in_models_ = script == nullptr;
  }

  void TakeModel(const TextLine& line) {
    const qsizetype end = line.text.indexOf(kCellEnd);
    const QString id_text = line.text.left(std::max<qsizetype>(end, 0)).trimmed();
    const auto id = ReadId(id_text);
    const auto name = ReadValue(line.text.mid(end + 1).trimmed());
    if (end < 0) {
      Report(line, {kNoModel});
    } else if (!id) {
      Report(line, IdSentence(id_text));
    } else if (!name) {
      Report(line, {kEscapeSentence});
    } else {
      models_.append({.id = *id, .name = *name, .line = line.number});
    }
  }

  void TakeScriptLine(const TextLine& line) {
    const auto text = ReadWritten(line.text);
    const bool is_needless = text && *text != line.text && WrittenScriptLine(*text) == *text;
    if (!text || is_needless) {
      Report(line, {kEscapeSentence});
      return;
    }
    script_lines_.append(*text);
    for (const QString& seen : ScriptLines(*text)) {  // more than one: a written line feed
      seen_.append(seen);
      seen_numbers_.append(line.number);
    }
  }

  void LintLines() {
    if (!lint_) {
      return;
    }
    const RouterSource& router = routers_.last();
    const QString name = QLatin1String(script_->name);
    const SourceScript script{
        .column = name, .lines = seen_, .update_lines = ScriptLines(router.record.routercommands)};
    for (const ScriptRemark& remark : lint_(script)) {
      const int line = seen_numbers_.value(remark.line - 1, router.lines.value(name, 1));
      problems_.append({file_, line, AsItIs(remark.sentence), remark.is_warning});
    }
  }

  void TakeField(const TextLine& line) {
    RouterSource& router = Current(line);
    const qsizetype colon = line.text.indexOf(QLatin1Char(':'));
    const QString name = line.text.left(std::max<qsizetype>(colon, 0)).trimmed();
    const auto value = ReadValue(line.text.mid(colon + 1).trimmed());
    if (colon < 0) {
      Report(line, {kNoField});
    } else if (router.lines.contains(name)) {
      Report(line, {kSecondField, {name}});
    } else if (!value) {
      Report(line, {kEscapeSentence});
    } else if (!Set(router, name, *value, line)) {
      Report(line, {kUnknownField, {name}});
    }
  }

  bool Set(RouterSource& router, const QString& name, const QString& value, const TextLine& line) {
    const RouterColumn* field = FindColumn(name, false);
    const bool is_id = name == QLatin1String("id");
    if (field != nullptr) {
      router.record.*(field->member) = value;
    } else if (is_id) {
      router.record.id = ReadId(value).value_or(0);
      if (router.record.id == 0) {
        Report(line, IdSentence(value));
      }
    } else {
      return false;
    }
    router.lines.insert(name, line.number);
    return true;
  }

  struct Model {
    int id = 0;
    QString name;
    int line = 1;
  };

  const QString& file_;
  const ScriptLint& lint_;
  Problems& problems_;
  QList<RouterSource> routers_;
  const RouterColumn* script_ = nullptr;
  QStringList script_lines_;
  QStringList seen_;  // by the lint: the lines that are not blank
  QList<int> seen_numbers_;
  bool in_unknown_part_ = false;
  bool in_models_ = false;
  QList<Model> models_;
};

QString ScriptText(const QString& script) {
  if (script.isEmpty()) {
    return {};
  }
  QString text;
  for (const QString& line : script.split(kLineEnd)) {
    text += WrittenScriptLine(line) + QLatin1Char('\n');
  }
  return text;
}

QString FileName(const RouterRecord& record) {
  QString words = record.routername.toLower();
  for (QChar& c : words) {
    const bool is_word = (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
                         (c >= QLatin1Char('0') && c <= QLatin1Char('9'));
    c = is_word ? c : QLatin1Char(' ');
  }
  const QString name = words.simplified().replace(QLatin1Char(' '), QLatin1Char('-'));
  return QStringLiteral("%1-%2.txt").arg(QString::number(record.id), name);
}

}  // namespace

QList<RouterSource> ReadRouters(const QList<TextLine>& lines, const QString& file,
                                const ScriptLint& lint, Problems& problems) {
  Reader reader(file, lint, problems);
  for (const TextLine& line : lines) {
    reader.Take(line);
  }
  return reader.Finish();
}

QString FormatRouter(const RouterRecord& record) {
  QString text = QStringLiteral("id: %1\n").arg(record.id);
  QString scripts;
  for (const RouterColumn& column : kRouterColumns) {
    const QString& stored = record.*(column.member);
    if (column.is_optional && stored.isEmpty()) {
      continue;
    }
    if (column.kind == ColumnKind::kScript) {
      scripts += QStringLiteral("\n[%1]\n").arg(QLatin1String(column.name)) + ScriptText(stored);
      continue;
    }
    const QString value = WrittenValue(stored);
    text += QLatin1String(column.name) + QLatin1Char(':') +
            (value.isEmpty() ? value : QLatin1Char(' ') + value) + QLatin1Char('\n');
  }
  return text + scripts;
}

QString FormatRouters(const QList<RouterRecord>& records) {
  QString text;
  for (const RouterRecord& record : records) {
    if (records.size() > 1) {
      text += QStringLiteral("%1[file %2]\n")
                  .arg(text.isEmpty() ? QString() : QStringLiteral("\n"), FileName(record));
    }
    text += FormatRouter(record);
  }
  return text;
}

}  // namespace quayline
