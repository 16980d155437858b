// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_lint.h"

#include <QRegularExpression>

#include <algorithm>

#include "script/key_sequence.h"
#include "script/lint_texts.h"
#include "script/near_name.h"
#include "script/script_line.h"
#include "script/wait_limits.h"

namespace quayline {

namespace {

// A field of the argument, and where it begins in the line.
struct Field {
  QString text;
  qsizetype start = 0;
};

QList<Field> SplitFields(const CommandRow& row, const Field& argument) {
  const auto count = static_cast<qsizetype>(row.fields.size());
  if (count < 2) {
    return {argument};
  }
  QList<Field> fields;
  qsizetype start = argument.start;
  for (const QString& text : argument.text.split(QLatin1Char(row.separator))) {
    if (fields.size() == count && row.fields.back().takes_rest) {
      fields.last().text += QLatin1Char(row.separator) + text;
    } else {
      fields.append({text, start});
    }
    start += text.size() + 1;
  }
  return fields;
}

// Code that continues after a comma, where a position or nothing is meant to follow.
bool LosesCode(const CommandRow& row, const QList<Field>& fields) {
  const bool is_code = row.fields.front().kind == FieldKind::kJavaScript;
  const QString after = fields.value(1).text;
  return is_code && fields.size() > 1 &&
         (fields.size() > static_cast<qsizetype>(row.fields.size()) ||
          (!after.isEmpty() && !WholeNumber(after)));
}

const FieldSpec* FieldOfKind(const CommandRow& row, FieldKind kind) {
  const auto found = std::ranges::find(row.fields, kind, &FieldSpec::kind);
  return found == row.fields.end() ? nullptr : &*found;
}

// The lint of one line.
class LineLint final {
 public:
  explicit LineLint(const QString& line) : line_(line), name_size_(line.indexOf(QLatin1Char('('))) {
    has_parenthesis_ = name_size_ >= 0;
    name_size_ = has_parenthesis_ ? name_size_ : line.size();
  }

  QList<LintFinding> Run() {
    const QString name = line_.left(name_size_);
    if (const CommandRow* row = FindCommand(name.toLower())) {
      LintCommand(*row);
    } else if (!line_.trimmed().isEmpty()) {
      LintUnknown(name);
    }
    return findings_;
  }

 private:
  void Add(LintSeverity severity, qsizetype start, qsizetype length, const Message& text,
           const QStringList& values = {}) {
    if (length == 0) {  // something that is not there: the line as a whole lacks it
      start = 0;
      length = line_.size();
    }
    findings_.append(
        {.severity = severity, .start = start, .length = length, .text = text, .values = values});
  }
  void Wrong(const Field& field, const Message& text, const QStringList& values = {}) {
    Add(LintSeverity::kError, field.start, field.text.size(), text, values);
  }

  void LintUnknown(const QString& name);
  void LintCommand(const CommandRow& row);
  bool LintEnclosure(const CommandRow& row);
  void LintFields(const CommandRow& row);
  void LintMissing(const CommandRow& row, const QList<Field>& fields);
  void LintField(const Field& field, const FieldSpec& spec);
  void LintNeeded(const Field& field, const FieldSpec& spec);
  void LintTimers(const Field& code);
  void LintNumber(const Field& field, const FieldSpec& spec);
  void LintPath(const Field& field);
  void LintPosition(const Field& position, const Field& target);

  const QString& line_;
  qsizetype name_size_;
  bool has_parenthesis_ = false;
  QList<LintFinding> findings_;
};

// Any text may serve as a comment. Only what was probably meant as a command is reported.
void LineLint::LintUnknown(const QString& name) {
  QString squeezed = name.toLower();
  squeezed.removeIf([](QChar c) { return c.isSpace(); });
  if (has_parenthesis_ && FindCommand(squeezed) != nullptr) {
    Add(LintSeverity::kError, 0, name_size_, lint_text::kBlanksInName, {squeezed});
    return;
  }
  const bool is_call = QStringView(line_).sliced(name_size_).startsWith(QLatin1String("(\""));
  const QString trimmed = name.trimmed();
  const QString near = NearestCommandName(trimmed.toLower(), is_call);
  if (!near.isEmpty()) {
    Add(LintSeverity::kWarning, 0, name_size_, lint_text::kDidYouMean, {trimmed, near});
  } else if (is_call) {
    Add(LintSeverity::kWarning, 0, name_size_, lint_text::kUnknown, {trimmed});
  }
}

void LineLint::LintCommand(const CommandRow& row) {
  if (row.quirk != nullptr) {
    Add(LintSeverity::kWarning, 0, name_size_, *row.quirk);
  }
  if (LintEnclosure(row)) {
    LintFields(row);
  }
}

// False: the argument cannot be judged.
bool LineLint::LintEnclosure(const CommandRow& row) {
  if (!has_parenthesis_) {
    if (!row.fields.empty()) {
      Add(LintSeverity::kError, 0, name_size_, lint_text::kNoArgument, {CommandShape(row)});
    }
    return false;
  }
  constexpr qsizetype kShortest = 4;  // ("")
  const QStringView raw = QStringView(line_).sliced(name_size_);
  const bool is_enclosed = raw.size() >= kShortest && raw.startsWith(QLatin1String("(\"")) &&
                           raw.endsWith(QLatin1String("\")"));
  if (!is_enclosed) {
    Add(LintSeverity::kError, name_size_, raw.size(), lint_text::kNotEnclosed);
  }
  return is_enclosed;
}

void LineLint::LintFields(const CommandRow& row) {
  const Field argument{.text = ParseScriptLine(line_).argument, .start = name_size_ + 2};
  if (row.fields.empty()) {
    if (!argument.text.isEmpty()) {
      Add(LintSeverity::kWarning, argument.start, argument.text.size(), lint_text::kTakesNothing);
    }
    return;
  }
  const QList<Field> fields = SplitFields(row, argument);
  if (LosesCode(row, fields)) {
    const qsizetype end = fields.at(1).start - 1;
    Add(LintSeverity::kError, end, argument.start + argument.text.size() - end,
        lint_text::kCodeEndsAtComma);
    return;
  }
  const FieldSpec* position = FieldOfKind(row, FieldKind::kPosition);
  const Field inserted_at =
      position == nullptr ? Field() : fields.value(position - row.fields.data());
  const auto count = static_cast<qsizetype>(row.fields.size());
  for (qsizetype i = 0; i < std::min(count, fields.size()); ++i) {
    const FieldSpec& spec = row.fields[static_cast<size_t>(i)];
    const bool is_target = spec.inserted != Inserted::kNothing && !inserted_at.text.isEmpty();
    // What is inserted may be the whole text.
    if (!is_target || !fields.at(i).text.isEmpty()) {
      LintField(fields.at(i), spec);
    }
    if (is_target) {
      LintPosition(inserted_at, fields.at(i));
    }
  }
  if (!argument.text.isEmpty()) {
    LintMissing(row, fields);
  }
  if (fields.size() > count) {
    const qsizetype end = fields.at(count).start - 1;
    Add(LintSeverity::kError, end, argument.start + argument.text.size() - end,
        lint_text::kTooManyFields, {CommandUsage(row)});
  }
}

// One finding is enough: adding the field that is needed adds those in front of it.
void LineLint::LintMissing(const CommandRow& row, const QList<Field>& fields) {
  const auto missing =
      row.fields.subspan(std::min(row.fields.size(), static_cast<size_t>(fields.size())));
  const auto Find = [missing](WhenMissing what) {
    return std::ranges::find(missing, what, &FieldSpec::when_missing);
  };
  const Field& last = fields.last();
  if (const auto wrong = Find(WhenMissing::kIsError); wrong != missing.end()) {
    Wrong(last, lint_text::kMissing, {FromAscii(wrong->name), CommandUsage(row)});
  } else if (const auto kept = Find(WhenMissing::kKeepsEarlier); kept != missing.end()) {
    Add(LintSeverity::kWarning, last.start, last.text.size(), lint_text::kKeepsEarlier,
        {FromAscii(kept->name)});
  }
}

void LineLint::LintField(const Field& field, const FieldSpec& spec) {
  const bool is_empty = field.text.isEmpty();
  switch (spec.kind) {
    case FieldKind::kText:
      return;
    case FieldKind::kNeededText:
    case FieldKind::kElementName:
      LintNeeded(field, spec);
      return;
    case FieldKind::kJavaScript:
      LintNeeded(field, spec);
      LintTimers(field);
      return;
    case FieldKind::kKey:
      if (!KeyNotation(field.text)) {
        Wrong(field, lint_text::kNoKey, {FromAscii(spec.name), field.text});
      }
      return;
    case FieldKind::kPath:
      LintPath(field);
      return;
    case FieldKind::kPosition:
      if (!is_empty) {
        LintNumber(field, spec);
      }
      return;
    case FieldKind::kWholeNumber:
    case FieldKind::kMilliseconds:
      LintNumber(field, spec);
      return;
    case FieldKind::kTruth:
      if (!is_empty && !TruthValue(field.text)) {
        Wrong(field, lint_text::kNoTruth, {FromAscii(spec.name), field.text});
      }
      return;
  }
}

void LineLint::LintNeeded(const Field& field, const FieldSpec& spec) {
  if (field.text.isEmpty()) {
    Wrong(field, lint_text::kEmpty, {FromAscii(spec.name)});
  }
}

// Code whose timer is written as a number and is longer than what the wait after it heeds.
void LineLint::LintTimers(const Field& code) {
  static const QRegularExpression kTimer(
      QStringLiteral(R"(\bsetTimeout\s*\([^;]*?,\s*(\d{4,9})\s*\))"));
  const auto heeded = WaitLimits().action_timer.count();
  const QRegularExpressionMatch timer = kTimer.match(code.text);
  if (timer.hasMatch() && timer.captured(1).toLongLong() > heeded) {
    Add(LintSeverity::kWarning, code.start + timer.capturedStart(1), timer.capturedLength(1),
        lint_text::kLongTimer, {QString::number(heeded), timer.captured(1)});
  }
}

void LineLint::LintNumber(const Field& field, const FieldSpec& spec) {
  const std::optional<int> number = WholeNumber(field.text);
  if (!number || *number < 0) {
    Wrong(field, lint_text::kNoNumber, {FromAscii(spec.name), field.text});
  } else if (*number == 0 && spec.kind == FieldKind::kMilliseconds) {
    Wrong(field, lint_text::kEndless);
  }
}

void LineLint::LintPath(const Field& field) {
  if (field.text.startsWith(QLatin1Char('/'))) {
    Add(LintSeverity::kWarning, field.start, 1, lint_text::kLeadingSlash);
  } else if (field.text.startsWith(QLatin1String("http://"), Qt::CaseInsensitive) ||
             field.text.startsWith(QLatin1String("https://"), Qt::CaseInsensitive)) {
    Wrong(field, lint_text::kAddress);
  }
}

void LineLint::LintPosition(const Field& position, const Field& target) {
  if (const std::optional<int> number = WholeNumber(position.text);
      number && *number > target.text.size()) {
    Wrong(position, lint_text::kBeyondField, {QString::number(*number), target.text});
  }
}

QString Filled(const QString& text, const QStringList& values) {
  switch (values.size()) {
    case 0:
      return text;
    case 1:
      return text.arg(values.at(0));
    default:
      return text.arg(values.at(0), values.at(1));
  }
}

}  // namespace

QList<LintFinding> LintScriptLine(const QString& line) { return LineLint(line).Run(); }

QString LintSentence(const LintFinding& finding, const Translator& translator) {
  return Filled(translator.Text(finding.text), finding.values);
}

QString LintSentence(const LintFinding& finding) {
  return Filled(QString::fromUtf8(finding.text.english), finding.values);
}

}  // namespace quayline
