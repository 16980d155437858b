// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "dbtool/router_text.h"

#include <algorithm>

namespace quayline::dbtool {

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
    } else if (!is_blank && !line.text.startsWith(QLatin1Char('#'))) {
      TakeField(line);
    }
  }

  QList<RouterSource> Finish() {
    EndScript();
    return std::move(routers_);
  }

 private:
  void Report(const TextLine& line, const QString& sentence) {
    problems_.append({file_, line.number, sentence});
  }

  RouterSource& Current(const TextLine& line) {
    if (routers_.isEmpty()) {
      Begin(line);
    }
    return routers_.last();
  }

  void Begin(const TextLine& line) {
    EndScript();
    routers_.append({.record = {}, .file = file_, .line = line.number, .lines = {}});
  }

  void EndScript() {
    if (script_) {
      routers_.last().record.*(script_->member) = script_lines_.join(kLineEnd);
    }
    script_ = nullptr;
    script_lines_.clear();
    in_unknown_part_ = false;
  }

  void TakeHeading(const TextLine& line) {
    const QString heading = line.text.trimmed();
    if (heading.startsWith(kFileHeading) && heading.endsWith(QLatin1Char(']'))) {
      Begin(line);
      return;
    }
    RouterSource& router = Current(line);
    EndScript();
    const bool is_closed = heading.endsWith(QLatin1Char(']'));
    const RouterColumn* script =
        is_closed ? FindColumn(heading.sliced(1).chopped(1), true) : nullptr;
    if (script == nullptr) {
      Report(line, QStringLiteral("The heading %1 is not known. A script line that begins with "
                                  "\"[\" has a \"\\\" in front.")
                       .arg(heading));
      in_unknown_part_ = true;
      return;
    }
    const QString name = QLatin1String(script->name);
    if (router.lines.contains(name)) {
      Report(line, QStringLiteral("The script %1 stands here for the second time.").arg(name));
      in_unknown_part_ = true;
      return;
    }
    router.lines.insert(name, line.number);
    script_ = script;
  }

  void TakeScriptLine(const TextLine& line) {
    const auto text = ReadWritten(line.text);
    const bool is_needless = text && *text != line.text && WrittenScriptLine(*text) == *text;
    if (!text || is_needless) {
      Report(line, QLatin1String(kEscapeSentence));
      return;
    }
    script_lines_.append(*text);
    if (!lint_ || text->trimmed().isEmpty()) {
      return;
    }
    for (const ScriptRemark& remark : lint_(*text)) {
      problems_.append({file_, line.number, remark.sentence, remark.is_warning});
    }
  }

  void TakeField(const TextLine& line) {
    RouterSource& router = Current(line);
    const qsizetype colon = line.text.indexOf(QLatin1Char(':'));
    const QString name = line.text.left(std::max<qsizetype>(colon, 0)).trimmed();
    const auto value = ReadValue(line.text.mid(colon + 1).trimmed());
    if (colon < 0) {
      Report(line, QStringLiteral("This is neither \"field: value\" nor a heading."));
    } else if (router.lines.contains(name)) {
      Report(line, QStringLiteral("The field %1 stands here for the second time.").arg(name));
    } else if (!value) {
      Report(line, QLatin1String(kEscapeSentence));
    } else if (!Set(router, name, *value, line)) {
      Report(line, QStringLiteral("There is no field \"%1\".").arg(name));
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

  const QString& file_;
  const ScriptLint& lint_;
  Problems& problems_;
  QList<RouterSource> routers_;
  const RouterColumn* script_ = nullptr;
  QStringList script_lines_;
  bool in_unknown_part_ = false;
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
  for (const RouterColumn& column : kRouterColumns) {
    const QString& stored = record.*(column.member);
    if (column.kind == ColumnKind::kScript) {
      text += QStringLiteral("\n[%1]\n").arg(QLatin1String(column.name)) + ScriptText(stored);
      continue;
    }
    const QString value = WrittenValue(stored);
    text += QLatin1String(column.name) + QLatin1Char(':') +
            (value.isEmpty() ? value : QLatin1Char(' ') + value) + QLatin1Char('\n');
  }
  return text;
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

}  // namespace quayline::dbtool
