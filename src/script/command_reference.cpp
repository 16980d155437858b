// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_reference.h"

#include <algorithm>
#include <vector>

#include "script/wait_limits.h"

namespace quayline {

namespace {

// A part of the page. Commands whose family is not among its rows follow their family's first row.
struct Chapter {
  const char* title;
  const char* text;
  std::vector<std::span<const CommandRow>> rows;
};

const std::vector<Chapter>& Chapters() {
  static const std::vector<Chapter> chapters{
      {"Pages",
       "Open pages of the router, and wait for them.",
       {NavigationCommands(), TimeoutCommands()}},
      {"Login", "For routers that ask for the login on a page of their own.", {LoginCommands()}},
      {"Text boxes",
       "Write the values of the entry. None of these waits for a page.",
       {NameBoxCommands(), PortBoxCommands()}},
      {"Check boxes and radio buttons",
       "A check box is only ever checked, never cleared.",
       {ToggleCommands()}},
      {"Combo boxes",
       "A choice is followed by the page's own change handler; a page that loads another form "
       "then is waited for.",
       {TypeChoiceCommands(), ComboCommands()}},
      {"Buttons, links and forms",
       "Each waits for the page that it leads to. A button that is not there is logged, and the "
       "script goes on.",
       {ClickCommands()}},
      {"JavaScript", "For what no other command can do.", {JavaScriptCommands()}},
      {"Rows of a page",
       "For pages that number their rows, and for pages that list the rules they hold.",
       {NameArrayCommands(), FreeRowCommands(), ComboTestCommands()}},
      {"Boxes without a name",
       "Found by their number on the page, or named first.",
       {TypingCommands(), FirmwareCommands()}},
  };
  return chapters;
}

QString Seconds(WaitLimits::Time time) {
  return QString::number(static_cast<double>(time.count()) / 1000) + QStringLiteral(" s");
}

QString Limits() {
  const WaitLimits limits;
  return QStringLiteral(R"(## What is waited for

After a line that may load a page, and before a line that acts on one, the page is waited for until
it has nothing left to do. A slow page is waited for without a limit. A page that puts its own work
off is waited for within these limits; where a page exceeds one, write a `timeout` line, or
`wait_until_words_found`, after the line that starts the work.

| What the page does | Is waited for |
|---|---|
| It leaves for another page, or sends something, by a timer after a click or a choice | up to %1 |
| It counts down, fades, or starts one timer from another after a click | up to %2 |
| It fetches something by a script | up to %3 |
| It sends something by a script, or fetches something because of a click | up to %4 |
| It starts a timer while it loads | up to %5 |
| It leaves for another page by its own markup (a refresh) | up to %6 |
| It leaves for another page as soon as it is loaded | up to %7 times in a row |
| It builds the element of a line after the line has not found it | up to %8 |

)")
      .arg(Seconds(limits.action_timer), Seconds(limits.chain), Seconds(limits.request),
           Seconds(limits.save), Seconds(limits.load_timer), Seconds(limits.refresh),
           QString::number(limits.hops), Seconds(limits.missing));
}

constexpr char kIntroduction[] = R"(# Script commands

<!-- Made by `quayline-cli commands --markdown` from the rows of the command table. Change it there. -->

A router's script is run once for each entry of the port list, from the first line to the last. A
line is written

    command_name("argument")

The name is everything in front of the first parenthesis, in any case of letters and without a blank
in front of it. The argument is what remains of the line when two characters are cut off at either
end. A line that is no command is a comment.

Most commands split their argument at commas. A separator cannot be written inside a field. A field
that is missing keeps the value of an earlier line where this page says so; a comma with nothing after
it makes the field empty.

**The current name.** Pages that number their rows have names such as `port3_start`. Lines that choose
a row (`set_next_name_array`, `set_next_letter`, `set_name_to_check`) set the current name, and a line
with a position inserts it into its field, so many characters before the end: with the current name
`3`, `set_start_port("port_start,6")` writes into `port3_start`.

**Conditions.** The end of a name says when the command runs: `_first_only` and `_last_only` speak of
the entry's place in the job, `_if_in_combo_true` and `_if_in_combo_false` of the last `is_in_combo`.
Exceptions are noted with their command.

)";

constexpr char kExtensionsText[] = R"(## Extensions

Commands for pages that scripts build: drop-downs made of any elements, content that appears without
a page load. They came to the language later than the commands above.

In `run_javascript` and in the commands of the family `call_javascript` the constant `quayline` holds
the entry: `quayline.name`, `quayline.ip`, `quayline.startPort`, `quayline.endPort`,
`quayline.protocol` and `quayline.computerName`. What `var` and `function` declare becomes the
page's; `let`, `const` and `class` end with the line. An error of the code is in the log, after the
line's result.

)";

QString Code(const QString& text) { return QLatin1Char('`') + text + QLatin1Char('`'); }

const char* KindSentence(FieldKind kind) {
  switch (kind) {
    case FieldKind::kText:
    case FieldKind::kNeededText:
    case FieldKind::kElementName:
    case FieldKind::kPath:
    case FieldKind::kPosition:
    case FieldKind::kJavaScript:
    case FieldKind::kKey:
      return "";
    case FieldKind::kWholeNumber:
      return " A whole number from 0 on.";
    case FieldKind::kMilliseconds:
      return " Milliseconds from 1 on; 0 waits until the job is stopped.";
    case FieldKind::kTruth:
      return " true or false.";
  }
  return "";
}

QString MissingSentence(const FieldSpec& field) {
  switch (field.when_missing) {
    case WhenMissing::kIsError:
      return {};
    case WhenMissing::kKeepsEarlier:
      return QStringLiteral(" Without it, that of an earlier line is used.");
    case WhenMissing::kUsesDefault:
      return field.default_value.empty()
                 ? QStringLiteral(" It can be left out.")
                 : QStringLiteral(" Without it, %1.").arg(FromAscii(field.default_value));
  }
  return {};
}

const char* InsertedSentence(Inserted inserted) {
  switch (inserted) {
    case Inserted::kNothing:
      return "";
    case Inserted::kCurrentName:
      return " The current name is inserted into it.";
    case Inserted::kLetter:
      return " The entry's letter is inserted into it.";
    case Inserted::kRowName:
      return " Each name of the name array is inserted into it in turn.";
  }
  return "";
}

QString Quirk(const CommandRow& row) {
  return row.quirk == nullptr ? QString() : QString::fromUtf8(row.quirk->english);
}

// One row that no other is a member of, with its members.
QString Family(const CommandRow& head, const std::vector<const CommandRow*>& members) {
  QString text = QStringLiteral("### ") + CommandName(head) + QStringLiteral("\n\n    ") +
                 CommandShape(head) + QStringLiteral("\n\n") + FromAscii(head.help) +
                 QLatin1Char('\n');
  const QString condition = ConditionSentence(head.condition);
  text += condition.isEmpty() ? QString() : condition + QLatin1Char('\n');
  if (!Quirk(head).isEmpty()) {
    text += QStringLiteral("**Note:** ") + Quirk(head) + QLatin1Char('\n');
  }
  text += QLatin1Char('\n');
  for (const FieldSpec& field : head.fields) {
    text += QStringLiteral("- ") + Code(FromAscii(field.name)) + QStringLiteral(": ") +
            FieldSentences(head, field) + QLatin1Char('\n');
  }
  if (!members.empty()) {
    text += head.fields.empty() ? QString() : QStringLiteral("\n");
    text += QStringLiteral("| Also | |\n|---|---|\n");
    for (const CommandRow* member : members) {
      const bool has_own_quirk = member->quirk != head.quirk;
      const QString note =
          has_own_quirk ? QStringLiteral(" **Note:** ") + Quirk(*member) : QString();
      text += QStringLiteral("| %1 | %2%3 |\n")
                  .arg(Code(CommandName(*member)), ConditionSentence(member->condition), note);
    }
  }
  text += text.endsWith(QLatin1String("\n\n")) ? QString() : QStringLiteral("\n");
  return text;
}

QString Families(const std::vector<std::span<const CommandRow>>& parts) {
  QString text;
  for (const auto part : parts) {
    for (const CommandRow& head : part) {
      if (!head.family.empty()) {
        continue;
      }
      std::vector<const CommandRow*> members;
      for (const CommandRow& row : part) {
        if (row.family == head.name) {
          members.push_back(&row);
        }
      }
      text += Family(head, members);
    }
  }
  return text;
}

}  // namespace

QString ConditionSentence(Condition condition) {
  switch (condition) {
    case Condition::kAlways:
      return {};
    case Condition::kFirst:
      return QStringLiteral("Runs for the first entry of the job.");
    case Condition::kNotFirst:
      return QStringLiteral("Runs for every entry of the job but the first.");
    case Condition::kLast:
      return QStringLiteral("Runs for the last entry of the job.");
    case Condition::kNotLast:
      return QStringLiteral("Runs for every entry of the job but the last.");
    case Condition::kInCombo:
      return QStringLiteral("Runs when the entry is in the list.");
    case Condition::kNotInCombo:
      return QStringLiteral("Runs when the entry is not in the list.");
    case Condition::kFirstInCombo:
      return QStringLiteral("Runs for the first entry of the job when it is in the list.");
    case Condition::kFirstNotInCombo:
      return QStringLiteral("Runs for the first entry of the job when it is not in the list.");
  }
  return {};
}

QString FieldSentences(const CommandRow& row, const FieldSpec& field) {
  QString text = FromAscii(field.help) + QLatin1String(KindSentence(field.kind)) +
                 QLatin1String(InsertedSentence(field.inserted));
  return row.fields.size() < 2 ? text : text + MissingSentence(field);
}

QString CommandManual(const CommandRow& row) {
  QString text = CommandShape(row) + QStringLiteral("\n\n") + FromAscii(row.help);
  for (const QString& sentence : {ConditionSentence(row.condition), Quirk(row)}) {
    text += sentence.isEmpty() ? QString() : QLatin1Char('\n') + sentence;
  }
  text += QLatin1Char('\n');
  for (const FieldSpec& field : row.fields) {
    text += QStringLiteral("\n  ") + FromAscii(field.name) + QStringLiteral("\n      ") +
            FieldSentences(row, field) + QLatin1Char('\n');
  }
  return text;
}

QString CommandList() {
  QString text;
  for (const CommandRow& row : AllCommands()) {
    text += CommandShape(row) + QLatin1Char('\n');
  }
  return text;
}

QString CommandReferencePage() {
  QString text = QString::fromUtf8(kIntroduction) + Limits();
  for (const Chapter& chapter : Chapters()) {
    text += QStringLiteral("## %1\n\n%2\n\n")
                .arg(QLatin1String(chapter.title), QLatin1String(chapter.text)) +
            Families(chapter.rows);
  }
  text += QString::fromUtf8(kExtensionsText) + Families({ExtensionCommands()});
  return text.trimmed() + QLatin1Char('\n');
}

}  // namespace quayline
