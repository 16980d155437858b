// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QElapsedTimer>

#include "script/command_fields.h"
#include "script/command_table.h"
#include "script/key_sequence.h"
#include "script/page_operations.h"
#include "script/script_texts.h"

// Commands for pages that scripts build: drop-downs made of plain elements, fields that a key
// confirms, content that appears without a page load.
namespace quayline {

namespace {

using FlowResult = Task<std::optional<RunEnd>>;
using std::chrono::milliseconds;

struct Poll {
  QJsonValue answer;
  std::optional<RunEnd> end;  // the wait was ended by a stop or a page error
};

// Asks the page again and again until it answers with something else than `unwanted`: nothing
// signals that an element or a text appears. Without a limit the wait lasts until the job is
// stopped. `what` is shown while it takes long.
Task<Poll> AskWhile(CommandCall& call, PageCall question, QJsonValue unwanted, QString what,
                    std::optional<milliseconds> limit, ErrorBlock block) {
  QElapsedTimer time;
  time.start();
  bool is_shown = false;
  Poll poll;
  for (;;) {
    poll.answer = co_await call.AskOnce(question);
    poll.end = call.TakeInterruption(block);
    const bool is_over = limit && time.elapsed() >= limit->count();
    if (poll.end || poll.answer != unwanted || is_over) {
      break;
    }
    if (!is_shown && time.elapsed() >= call.env.pages.Limits().long_wait.count()) {
      call.env.tell_wait(QLatin1Char('"') + what + QLatin1Char('"'));
      is_shown = true;
    }
    const auto pause = static_cast<int>(call.env.pages.Limits().look_again.count());
    co_await call.Wait(pause, std::nullopt);
  }
  if (is_shown) {
    call.env.tell_wait({});
  }
  co_return poll;
}

// The page's text for the protocol, where the line names no item.
QString WantedItem(const ScriptRun& run) {
  const QString text = run.fields.value(1);
  return text.isEmpty() ? run.TypeChoice().value_or(QString()) : text;
}

bool IsOpen(const QJsonValue& result) {
  return result == QLatin1String(page_result::kOpened) ||
         result == QLatin1String(page_result::kScrolled);
}

// Opens the list, and clicks the item once it is there. A long list shows only a part of its items
// at a time: it is scrolled by the page operation, and asked again when the page is idle.
FlowResult ChooseItem(CommandCall& call) {
  const QString text = WantedItem(call.run);
  if (text.isEmpty()) {
    co_return std::nullopt;  // an entry of no protocol, or one that the script has no text for
  }
  const quint64 mark = call.MarkPage();
  QJsonValue result = co_await call.Ask(page_operation::ChooseItem(call.run.argument, text));
  const QJsonValue failed = QLatin1String(page_result::kFailed);
  constexpr int kMostParts = 200;
  for (int part = 0; IsOpen(result); ++part) {
    if (part == kMostParts) {
      result = failed;
      break;
    }
    if (const auto end = co_await call.AwaitPage(mark, ErrorBlock::kAddress)) {
      co_return end;
    }
    const Poll item = co_await AskWhile(call, page_operation::ChooseOpenItem(text), failed, text,
                                        call.env.pages.Limits().missing, ErrorBlock::kAddress);
    if (item.end) {
      co_return item.end;
    }
    result = item.answer;
  }
  if (call.Stopped()) {
    co_return call.TakeInterruption(ErrorBlock::kAddress);
  }
  call.LogResult(result);
  co_return co_await call.AwaitPage(mark, ErrorBlock::kAddress);
}

FlowResult PressKey(CommandCall& call) {
  const quint64 mark = call.MarkPage();
  const QJsonValue result = co_await call.Ask(page_operation::FocusField(call.run.argument));
  if (call.Stopped()) {
    co_return call.TakeInterruption(ErrorBlock::kAddress);
  }
  call.LogResult(result);
  const std::optional<QString> keys = KeyNotation(call.run.fields.value(1));
  if (keys && result == QLatin1String(page_result::kSuccessful)) {
    call.SendKeys(*keys);
  }
  co_return co_await call.AwaitPage(mark, ErrorBlock::kAddress);
}

FlowResult WaitUntilElement(CommandCall& call) {
  const QString name = call.run.argument;
  const Poll poll = co_await AskWhile(call, page_operation::ElementIsThere(name), false, name,
                                      std::nullopt, ErrorBlock::kWords);
  if (!poll.end) {
    call.LogLine(call.Text(script_text::kSuccessful));
  }
  co_return poll.end;
}

// A save that the router refuses answers with an ordinary page: only its text shows it.
FlowResult ExpectPageText(CommandCall& call) {
  const QString text = call.run.argument.isEmpty() ? call.run.given.entry_name : call.run.argument;
  const Poll poll = co_await AskWhile(call, page_operation::PageShowsText(text), false, text,
                                      call.env.pages.Limits().missing, ErrorBlock::kWords);
  if (poll.end) {
    co_return poll.end;
  }
  if (!poll.answer.toBool()) {
    call.LogEntrySkipped(call.Text(script_text::kTextMissing).arg(text));
    co_return RunEnd::kPageError;
  }
  call.LogLine(call.Text(script_text::kSuccessful));
  co_return std::nullopt;
}

std::optional<PageCall> NamePasswordBoxes(CommandCall&) {
  return page_operation::NamePasswordBoxes();
}

// Some pages take "80-80" for a mistake.
std::optional<PageCall> SetPorts(CommandCall& call) {
  const RunArguments& entry = call.run.given;
  const QString separator =
      call.run.fields.value(2, QLatin1String(command_field::kSeparator.default_value));
  const bool is_range = entry.entry_start_port != entry.entry_end_port;
  return page_operation::SetElementValue(
      call.run.argument, is_range ? entry.entry_start_port + separator + entry.entry_end_port
                                  : entry.entry_start_port);
}

constexpr FieldSpec kPorts[] = {command_field::kBox, command_field::kPosition,
                                command_field::kSeparator};
constexpr FieldSpec kListAndText[] = {
    {.name = "list",
     .kind = FieldKind::kElementName,
     .help = "The name, the id, the label or the text of the drop-down."},
    {.name = "text",
     .when_missing = WhenMissing::kUsesDefault,
     .takes_rest = true,
     .help = "The text of the item; empty for the page's word for the entry's protocol, as "
             "set_type_choices has stated it."}};
constexpr FieldSpec kFieldAndKey[] = {
    {.name = "field",
     .kind = FieldKind::kText,
     .help = "The name, the id or the label of the field; empty for the one that has the focus."},
    {.name = "key",
     .kind = FieldKind::kKey,
     .takes_rest = true,
     .help = "Enter, Tab, Escape, Backspace, Delete, Space, Home, End, PageUp, PageDown, ArrowUp, "
             "ArrowDown, ArrowLeft, ArrowRight, F1 to F16, or one character."}};
constexpr FieldSpec kElement[] = {
    {.name = "name",
     .kind = FieldKind::kElementName,
     .help = "The name, the id, the label or the text of a field or button."}};
constexpr FieldSpec kExpectedText[] = {
    {.name = "text", .help = "The text, in any case of letters; empty for the entry's name."}};

constexpr CommandRow kExtensions[] = {
    {
        .name = "set_ports",
        .use = PageUse::kFills,
        .uses_entry = true,
        .fields = kPorts,
        .ask = SetPorts,
        .help = "Writes the entry's port into a text box; for an entry of several ports the start "
                "port, the separator and the end port.",
    },
    {
        .name = "choose_item",
        .use = PageUse::kPicks,
        .awaits_page = true,
        .fields = kListAndText,
        .flow = ChooseItem,
        .help = "Opens a drop-down made of any elements and clicks the item with this text; in a "
                "combo box, chooses the option.",
    },
    {
        .name = "press_key",
        .use = PageUse::kActs,
        .awaits_page = true,
        .fields = kFieldAndKey,
        .flow = PressKey,
        .help = "Gives the focus to a field, presses a key and waits for the page that this leads "
                "to.",
    },
    {
        .name = "wait_until_element",
        .use = PageUse::kWaits,
        .fields = kElement,
        .flow = WaitUntilElement,
        .help = "Waits, without a limit, until a field or button of this name can be seen.",
    },
    {
        .name = "expect_page_text",
        .use = PageUse::kWaits,
        .fields = kExpectedText,
        .flow = ExpectPageText,
        .help = "Ends the entry as failed where a person cannot read the text on the page, after "
                "waiting a few seconds for it.",
    },
    {
        .name = "give_names_to_password_boxes",
        .use = PageUse::kReads,
        .ask = NamePasswordBoxes,
        .help = "Names the password boxes of the page that have no name: QYL_Password1, "
                "QYL_Password2, ...",
    },
};

}  // namespace

std::span<const CommandRow> PageElementExtensions() { return kExtensions; }

}  // namespace quayline
