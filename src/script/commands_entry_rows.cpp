// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/added_rules.h"
#include "core/rule_match.h"
#include "script/command_table.h"
#include "script/entry_arguments.h"
#include "script/page_operations.h"
#include "script/rule_reader.h"
#include "script/script_texts.h"

// Commands that find the entry among the rules of the page, by the evidence by which a job decides
// whether the router has it.
namespace quayline {

namespace {

using FlowResult = Task<std::optional<RunEnd>>;

// Unlike the name of an entry, its rule cannot be on the page for another reason; and some
// routers keep no names.
FlowResult CheckIfRuleExists(CommandCall& call) {
  const QJsonObject answer = co_await AskForRows(call);
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  PageRows page;
  AddRows(answer, page);
  if (MatchRules({EntryOf(call.run.given)}, page).first().state != RuleState::kOnRouter) {
    co_return std::nullopt;
  }
  call.LogEntryExists();
  co_return RunEnd::kEntryExists;
}

// The cells of the first row that is the entry, or a part of it.
std::optional<QJsonArray> EntryRow(const RunArguments& given, const QJsonObject& answer) {
  PageRows page;
  AddRows(answer, page);
  RowTexts texts;
  for (const qsizetype row : MatchRules({EntryOf(given)}, page).first().rows) {
    if (!given.rows_to_keep.contains(texts.Of(page.rows.at(row)))) {
      return answer[QLatin1String("rows")].toArray().at(row)[QLatin1String("cells")].toArray();
    }
  }
  return std::nullopt;
}

// The script must not go on without the row: its next line may remove whatever is chosen.
FlowResult ClickInEntryRow(CommandCall& call) {
  constexpr int kMostPages = 20;
  const QString kind = call.run.argument;
  const QString name = call.run.fields.value(1);
  for (int page = 0; page < kMostPages; ++page) {
    const QJsonObject answer = co_await AskForRows(call);
    if (call.Stopped()) {
      co_return RunEnd::kStopped;
    }
    const quint64 mark = call.MarkPage();
    const auto cells = EntryRow(call.run.given, answer);
    const bool has_next = answer[QLatin1String("hasNext")].toBool();
    if (!cells && !has_next) {
      break;
    }
    const QJsonValue result = co_await call.AskOnce(
        cells ? page_operation::ClickInRow(*cells, kind, name) : page_operation::OpenNextPage());
    if (result != QLatin1String(page_result::kSuccessful)) {
      break;
    }
    if (cells) {
      call.LogResult(result);
    }
    const auto end = co_await call.AwaitPage(mark, ErrorBlock::kAddress);
    if (end || cells) {
      co_return end;
    }
  }
  call.LogEntrySkipped(call.Text(script_text::kRowMissing));
  co_return RunEnd::kPageError;
}

constexpr FieldSpec kKindAndName[] = {
    {.name = "kind",
     .kind = FieldKind::kNeededText,
     .help = "button, link, checkbox, or row for the row itself."},
    {.name = "name",
     .when_missing = WhenMissing::kUsesDefault,
     .takes_rest = true,
     .help = "Its caption, name, id or value, or a part of its address or onclick handler; empty "
             "where the row has only one of the kind."}};

constexpr CommandRow kEntryRows[] = {
    {
        .name = "click_in_entry_row",
        .use = PageUse::kActs,
        .uses_entry = true,
        .awaits_page = true,
        .fields = kKindAndName,
        .flow = ClickInEntryRow,
        .help = "Finds the row of the page that is the entry, by its ports with its name or "
                "address, and clicks a button, a link or a check box in it. Where no row is the "
                "entry, or another row is checked as well, the entry ends as failed.",
    },
    {
        .name = "check_if_rule_exists",
        .use = PageUse::kReads,
        .uses_entry = true,
        .flow = CheckIfRuleExists,
        .help =
            "Ends the entry if a row of the page that is shown is its rule, as it is wanted. To "
            "be used before a rule is added: many routers take the same one twice.",
    },
};

}  // namespace

std::span<const CommandRow> EntryRowExtensions() { return kEntryRows; }

}  // namespace quayline
