// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_lint.h"

#include <algorithm>

#include "script/lint_texts.h"
#include "script/near_name.h"
#include "script/script_line.h"

namespace quayline {

namespace {

enum class FieldKind {
  kText,
  kNeededText,  // an empty one finds nothing
  kPath,
  kNumber,
  kMilliseconds,
  kTruth,
};

enum class WhenMissing { kIsWrong, kKeepsEarlier, kHasDefault };

// What a field's name in a command's usage says about it.
struct FieldRule {
  std::string_view name;
  FieldKind kind;
  WhenMissing when_missing = WhenMissing::kIsWrong;
};

constexpr FieldRule kFieldRules[] = {
    {"path", FieldKind::kPath},
    {"words", FieldKind::kNeededText},
    {"button", FieldKind::kNeededText},
    {"combo box", FieldKind::kNeededText},
    {"field", FieldKind::kNeededText},
    {"first field", FieldKind::kNeededText},
    {"second field", FieldKind::kNeededText},
    {"other field", FieldKind::kNeededText},
    {"href text", FieldKind::kNeededText},
    {"onclick text", FieldKind::kNeededText},
    {"code", FieldKind::kNeededText},
    {"frame number", FieldKind::kNumber},
    {"form number", FieldKind::kNumber},
    {"span", FieldKind::kNumber},
    {"position", FieldKind::kNumber, WhenMissing::kKeepsEarlier},
    {"milliseconds", FieldKind::kMilliseconds, WhenMissing::kKeepsEarlier},
    {"only if empty", FieldKind::kTruth, WhenMissing::kHasDefault},
    {"separator", FieldKind::kText, WhenMissing::kHasDefault},
    {"udp text", FieldKind::kText, WhenMissing::kHasDefault},
    {"both text", FieldKind::kText, WhenMissing::kHasDefault},
};

// Commands that do not do what they say. Scripts in the field rely on it, so they stay.
struct Quirk {
  std::string_view name;
  Message text;
};

constexpr Quirk kQuirks[] = {
    {"timeout_if_in_combo_true", lint_text::kWaitsWhenNotInCombo},
    {"timeout_last_only", lint_text::kWaitsBehindTheFirst},
    {"click_button_last_only_if_in_combo_true", lint_text::kClicksOnEveryEntry},
    {"click_button_last_only_if_in_combo_false", lint_text::kClicksOnEveryEntry},
    {"set_2ndradiobutton_if_in_combo_true", lint_text::kFirstButton},
    {"set_2ndradiobutton_if_in_combo_false", lint_text::kFirstButton},
    {"click_button_ignore_page_loading_if_in_combo_true", lint_text::kOneNumberForTwo},
    {"click_button_ignore_page_loading_if_in_combo_false", lint_text::kOneNumberForTwo},
};

QString Latin1(std::string_view text) {
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

// A field without a rule may hold anything, and has to be there.
FieldRule RuleOf(const QString& field) {
  const auto* rule = std::ranges::find_if(kFieldRules, [&field](const FieldRule& candidate) {
    return field == QLatin1String(candidate.name.data(), candidate.name.size());
  });
  return rule == std::end(kFieldRules) ? FieldRule{{}, FieldKind::kText} : *rule;
}

// A field of the argument and where in the line it stands.
struct Field {
  QString text;
  qsizetype start = 0;
};

QList<Field> SplitFields(const QString& argument, qsizetype start, QChar separator) {
  QList<Field> fields;
  for (const QString& text : argument.split(separator)) {
    fields.append({text, start});
    start += text.size() + 1;
  }
  return fields;
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
  void LintMissing(const CommandRow& row, const QStringList& names, const Field& last);
  void LintField(const Field& field, const FieldRule& rule, bool may_be_empty);
  void LintNumber(const Field& field, const FieldRule& rule);
  void LintPath(const Field& field);
  void LintPosition(const Field& position, const Field& target);

  const QString& line_;
  qsizetype name_size_;
  bool has_parenthesis_ = false;
  QList<LintFinding> findings_;
};

// Any text may serve as a comment. What is told is what somebody has meant as a command.
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
  const auto* quirk = std::ranges::find(kQuirks, row.name, &Quirk::name);
  if (quirk != std::end(kQuirks)) {
    Add(LintSeverity::kWarning, 0, name_size_, quirk->text);
  }
  if (LintEnclosure(row)) {
    LintFields(row);
  }
}

// False: the argument cannot be looked at.
bool LineLint::LintEnclosure(const CommandRow& row) {
  if (!has_parenthesis_) {
    if (!row.usage.empty()) {
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
  const QString usage = Latin1(row.usage);
  const QString argument = ParseScriptLine(line_).argument;
  const Field whole{.text = argument, .start = name_size_ + 2};
  if (usage.isEmpty()) {
    if (!argument.isEmpty()) {
      Add(LintSeverity::kWarning, whole.start, argument.size(), lint_text::kTakesNothing);
    }
    return;
  }
  if (row.shape == Shape::kWhole) {
    LintField(whole, RuleOf(usage), false);
    return;
  }
  const QChar separator = usage.contains(QLatin1Char('|')) ? QLatin1Char('|') : QLatin1Char(',');
  const QList<Field> fields = SplitFields(argument, whole.start, separator);
  const QStringList names = usage.split(separator);
  // A position says where in a field the current name goes, but for the command that counts boxes.
  const qsizetype position = names.indexOf(QLatin1String("position"));
  const bool inserts = position >= 0 && names.first() != QLatin1String("value");
  const qsizetype target = names.indexOf(QLatin1String("onclick text")) == 1 ? 1 : 0;
  const bool inserts_here = inserts && !fields.value(position).text.isEmpty();
  for (qsizetype i = 0; i < std::min(names.size(), fields.size()); ++i) {
    const bool may_be_empty = (inserts && i == position) || (inserts_here && i == target);
    LintField(fields.at(i), RuleOf(names.at(i)), may_be_empty);
  }
  if (!argument.isEmpty()) {
    LintMissing(row, names.mid(fields.size()), fields.last());
  }
  if (inserts_here && target < fields.size()) {
    LintPosition(fields.at(position), fields.at(target));
  }
  if (fields.size() > names.size()) {
    const qsizetype end = fields.at(names.size()).start - 1;
    Add(LintSeverity::kError, end, whole.start + argument.size() - end, lint_text::kTooManyFields,
        {usage});
  }
}

// One finding is enough: whoever adds the field that is needed adds those in front of it.
void LineLint::LintMissing(const CommandRow& row, const QStringList& names, const Field& last) {
  const auto Find = [&names](WhenMissing what) {
    return std::ranges::find_if(
        names, [what](const QString& name) { return RuleOf(name).when_missing == what; });
  };
  if (const auto wrong = Find(WhenMissing::kIsWrong); wrong != names.end()) {
    Wrong(last, lint_text::kMissing, {*wrong, Latin1(row.usage)});
    return;
  }
  // This click waits a tenth of a second where the line does not say how long.
  const bool has_default = row.name == std::string_view("click_button_ignore_page_loading");
  if (const auto kept = Find(WhenMissing::kKeepsEarlier); kept != names.end() && !has_default) {
    Add(LintSeverity::kWarning, last.start, last.text.size(), lint_text::kKeepsEarlier, {*kept});
  }
}

void LineLint::LintField(const Field& field, const FieldRule& rule, bool may_be_empty) {
  const bool is_empty = field.text.isEmpty();
  if (is_empty && may_be_empty) {
    return;
  }
  switch (rule.kind) {
    case FieldKind::kText:
      return;
    case FieldKind::kNeededText:
      if (is_empty) {
        Wrong(field, lint_text::kEmpty, {Latin1(rule.name)});
      }
      return;
    case FieldKind::kPath:
      LintPath(field);
      return;
    case FieldKind::kNumber:
    case FieldKind::kMilliseconds:
      LintNumber(field, rule);
      return;
    case FieldKind::kTruth:
      if (!is_empty && !TruthValue(field.text)) {
        Wrong(field, lint_text::kNoTruth, {Latin1(rule.name), field.text});
      }
      return;
  }
}

void LineLint::LintNumber(const Field& field, const FieldRule& rule) {
  const std::optional<int> number = WholeNumber(field.text);
  if (!number || *number < 0) {
    Wrong(field, lint_text::kNoNumber, {Latin1(rule.name), field.text});
  } else if (*number == 0 && rule.kind == FieldKind::kMilliseconds) {
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

QString CommandShape(const CommandRow& row) {
  return CommandName(row) + QLatin1String("(\"") + Latin1(row.usage) + QLatin1String("\")");
}

QString CommandName(const CommandRow& row) { return Latin1(row.name); }

}  // namespace quayline
