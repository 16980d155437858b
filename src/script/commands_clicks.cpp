// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_fields.h"
#include "script/command_table.h"
#include "script/lint_texts.h"
#include "script/page_operations.h"
#include "script/script_line.h"
#include "script/script_texts.h"

// Whatever makes a page do something: buttons, links, forms and script calls.
namespace quayline {

namespace {

using FlowResult = Task<std::optional<RunEnd>>;

constexpr FieldSpec kClickTime{
    .name = "milliseconds",
    .kind = FieldKind::kMilliseconds,
    .when_missing = WhenMissing::kUsesDefault,
    .default_value = "100",
    .kept_as = KeptAs::kPosition,
    .help = "How long to wait.",
};

std::optional<PageCall> ClickButton(CommandCall& call) {
  return page_operation::ClickButton(call.run.argument);
}

std::optional<PageCall> ClickButtonByOnclick(CommandCall& call) {
  return page_operation::ClickButtonByOnclick(call.run.fields[0], call.run.fields[1]);
}

std::optional<PageCall> ClickByOnclick(CommandCall& call) {
  return page_operation::ClickByOnclick(call.run.argument);
}

std::optional<PageCall> ClickLink(CommandCall& call) {
  call.LogLine(QStringLiteral("Looking For Link: ") + call.run.argument);
  return page_operation::ClickLinkByHref(call.run.argument);
}

// A text that is no number has no form, and the outcome is the same as for a missing one.
std::optional<PageCall> SubmitForm(CommandCall& call) {
  return page_operation::SubmitFormByNumber(WholeNumber(call.run.argument).value_or(-1));
}

// The field `position` is the time to wait as well. Whether the page loads does not matter.
FlowResult ClickAndWait(CommandCall& call) {
  const QJsonValue result = co_await call.Ask(page_operation::ClickButton(call.run.argument));
  if (call.Stopped()) {
    co_return call.TakeInterruption(ErrorBlock::kAddress);
  }
  call.LogResult(result);
  call.SetTimer(call.run.position);
  co_return co_await call.Wait(call.env.flags.script_timer_ms, ErrorBlock::kAddress);
}

FlowResult ClickIgnoringPageLoad(CommandCall& call) {
  if (call.run.fields.size() < 2) {
    call.run.position = FromAscii(kClickTime.default_value);
  }
  return ClickAndWait(call);
}

FlowResult CallJavaScript(CommandCall& call) {
  const quint64 mark = call.MarkPage();
  const QString error = co_await call.RunInPage(call.run.argument);
  if (const auto end = co_await call.AwaitPage(mark, ErrorBlock::kJavaScript)) {
    co_return end;
  }
  call.LogLine(call.Text(script_text::kSuccessful));
  if (!error.isEmpty()) {
    call.LogLine(call.Text(script_text::kScriptFailed).arg(error));
  }
  co_return std::nullopt;
}

using enum Condition;

constexpr FieldSpec kButton[] = {command_field::kButton};
constexpr FieldSpec kButtonOnclick[] = {
    {.name = "name", .help = "The name, the caption or the id of the button."},
    command_field::kOnclickText,
    command_field::kPosition};
constexpr FieldSpec kOnclick[] = {command_field::kOnclickText, command_field::kPosition};
constexpr FieldSpec kHref[] = {command_field::kHrefText, command_field::kPosition};
constexpr FieldSpec kFormNumber[] = {{.name = "form number",
                                      .kind = FieldKind::kWholeNumber,
                                      .help = "The form's number on the page, from 0."}};
constexpr FieldSpec kButtonAndTime[] = {command_field::kButton, kClickTime};
constexpr FieldSpec kButtonAndKeptTime[] = {
    {.name = "button",
     .kind = FieldKind::kElementName,
     .inserted = Inserted::kCurrentName,
     .help = command_field::kButton.help},
    {.name = "milliseconds",
     .kind = FieldKind::kMilliseconds,
     .when_missing = WhenMissing::kKeepsEarlier,
     .kept_as = KeptAs::kPosition,
     .help = "How long to wait, and the position at which the current name is inserted."}};
constexpr FieldSpec kCode[] = {{.name = "code",
                                .kind = FieldKind::kJavaScript,
                                .inserted = Inserted::kCurrentName,
                                .help = "JavaScript without a comma, which would end the field."},
                               command_field::kPosition};
constexpr FieldSpec kCodeWithLetter[] = {{.name = "code",
                                          .kind = FieldKind::kJavaScript,
                                          .inserted = Inserted::kLetter,
                                          .help = kCode[0].help},
                                         command_field::kPosition};

constexpr CommandRow kClickButtonOnclick{
    .name = "click_button_onclick",
    .use = PageUse::kActs,
    .awaits_page = true,
    .fields = kButtonOnclick,
    .ask = ClickButtonByOnclick,
    .help = "Clicks the button of this name whose onclick handler holds the text.",
};
constexpr CommandRow kClickOnclick{
    .name = "click_onclick",
    .use = PageUse::kActs,
    .awaits_page = true,
    .fields = kOnclick,
    .ask = ClickByOnclick,
    .help = "Clicks the first element whose onclick handler holds the text.",
};
constexpr CommandRow kClickLink{
    .name = "click_link",
    .use = PageUse::kActs,
    .awaits_page = true,
    .fields = kHref,
    .ask = ClickLink,
    .help = "Clicks the first link whose address holds the text.",
};
constexpr CommandRow kCallPageSubmit{
    .name = "call_page_submit",
    .use = PageUse::kActs,
    .awaits_page = true,
    .fields = kFormNumber,
    .ask = SubmitForm,
    .help = "Submits a form of the page without its onsubmit handler.",
};
constexpr CommandRow kClickButton{
    .name = "click_button",
    .use = PageUse::kActs,
    .awaits_page = true,
    .fields = kButton,
    .ask = ClickButton,
    .help = "Clicks a button and waits for the page that this leads to.",
};
constexpr CommandRow kClickIgnoringPage{
    .name = "click_button_ignore_page_loading",
    .use = PageUse::kActs,
    .awaits_page = true,
    .fields = kButtonAndKeptTime,
    .flow = ClickAndWait,
    .help = "Clicks a button and waits for a time, whether a page loads or not.",
    .quirk = &lint_text::kOneNumberForTwo,
};

constexpr CommandRow kClicks[] = {
    kClickButtonOnclick,
    kClickButtonOnclick.Member("click_button_onclick_if_in_combo_false", kNotInCombo),
    kClickButtonOnclick.Member("click_button_onclick_if_in_combo_true", kInCombo),
    kClickOnclick,
    kClickOnclick.Member("click_onclick_first_only", kFirst),
    kClickOnclick.Member("click_onclick_last_only", kLast),
    kClickOnclick.Member("click_onclick_if_in_combo_false", kNotInCombo),
    kClickOnclick.Member("click_onclick_if_in_combo_true", kInCombo),
    kClickLink,
    kClickLink.Member("click_link_first_only", kFirst),
    kClickLink.Member("click_link_last_only", kLast),
    kClickLink.Member("click_link_if_in_combo_false", kNotInCombo),
    kClickLink.Member("click_link_if_in_combo_true", kInCombo),
    kCallPageSubmit,
    kCallPageSubmit.Member("call_page_submit_if_in_combo_false", kNotInCombo),
    kCallPageSubmit.Member("call_page_submit_if_in_combo_true", kInCombo),
    kCallPageSubmit.Member("call_page_submit_first_only", kFirst),
    kCallPageSubmit.Member("call_page_submit_last_only", kLast),
    kClickButton,
    {
        .name = "click_button_ignore_page_loading",
        .use = PageUse::kActs,
        .awaits_page = true,
        .fields = kButtonAndTime,
        .flow = ClickIgnoringPageLoad,
        .help = kClickIgnoringPage.help,
    },
    kClickIgnoringPage.Member("click_button_ignore_page_loading_if_in_combo_false", kNotInCombo),
    kClickIgnoringPage.Member("click_button_ignore_page_loading_if_in_combo_true", kInCombo),
    kClickButton.Member("click_button_if_in_combo_false", kNotInCombo),
    kClickButton.Member("click_button_if_in_combo_true", kInCombo),
    kClickButton.Member("click_button_first_only", kFirst),
    kClickButton.Member("click_button_first_only_if_in_combo_false", kFirstNotInCombo),
    kClickButton.Member("click_button_first_only_if_in_combo_true", kFirstInCombo),
    kClickButton.Member("click_button_last_only", kLast),
    kClickButton.Member("click_button_not_last_only", kNotLast),
    // These two test the list alone, although their names mention the last entry.
    kClickButton.Member("click_button_last_only_if_in_combo_false", kNotInCombo,
                        &lint_text::kClicksOnEveryEntry),
    kClickButton.Member("click_button_last_only_if_in_combo_true", kInCombo,
                        &lint_text::kClicksOnEveryEntry),
};

constexpr CommandRow kCallJavaScript{
    .name = "call_javascript",
    .use = PageUse::kActs,
    .awaits_page = true,
    .fields = kCode,
    .flow = CallJavaScript,
    .help = "Runs code as a script of the top page and waits for the page that this leads to.",
};

constexpr CommandRow kJavaScript[] = {
    {
        .name = "call_javascript_by_letter_order",
        .use = PageUse::kActs,
        .awaits_page = true,
        .fields = kCodeWithLetter,
        .flow = CallJavaScript,
        .help = "Runs code with the entry's letter inserted: A for the first entry.",
    },
    kCallJavaScript,
    kCallJavaScript.Member("call_javascript_first_only", kFirst),
    kCallJavaScript.Member("call_javascript_last_only", kLast),
    kCallJavaScript.Member("call_javascript_if_in_combo_false", kNotInCombo),
    kCallJavaScript.Member("call_javascript_if_in_combo_true", kInCombo),
};

constexpr FieldSpec kWholeCode[] = {
    {.name = "code", .kind = FieldKind::kJavaScript, .help = "JavaScript, commas included."}};

constexpr CommandRow kWholeJavaScript[] = {
    {
        .name = "run_javascript",
        .use = PageUse::kActs,
        .awaits_page = true,
        .fields = kWholeCode,
        .flow = CallJavaScript,
        .help = "Runs code as a script of the top page and waits for the page that this leads to.",
    },
};

}  // namespace

std::span<const CommandRow> ClickCommands() { return kClicks; }

std::span<const CommandRow> JavaScriptCommands() { return kJavaScript; }

std::span<const CommandRow> JavaScriptExtensions() { return kWholeJavaScript; }

}  // namespace quayline
