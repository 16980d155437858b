// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_table.h"
#include "script/page_operations.h"
#include "script/script_line.h"
#include "script/script_texts.h"

// Whatever makes a page do something: buttons, links, forms and script calls.
namespace quayline {

namespace {

using FlowResult = Task<std::optional<RunEnd>>;

constexpr char kDefaultClickWaitMs[] = "100";

std::optional<PageCall> ClickButton(CommandCall& call) {
  return page_operation::ClickButton(call.run.argument);
}

std::optional<PageCall> ClickButtonByOnclick(CommandCall& call) {
  ScriptRun& run = call.run;
  const QStringList fields = run.argument.split(QLatin1Char(','));
  run.argument = fields[0];
  if (fields.size() > 2) {
    run.position = fields[2];
  }
  return page_operation::ClickButtonByOnclick(
      fields[0], InsertAt(fields.value(1), run.position, run.current_name));
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
  call.run.position = QString::fromLatin1(kDefaultClickWaitMs);
  call.TakeFields(2);
  return ClickAndWait(call);
}

FlowResult CallJavaScript(CommandCall& call) {
  const quint64 mark = call.MarkPage();
  co_await call.RunInPage(call.run.argument);
  if (const auto end = co_await call.AwaitPage(mark, ErrorBlock::kJavaScript)) {
    co_return end;
  }
  call.LogLine(call.Text(script_text::kSuccessful));
  co_return std::nullopt;
}

using enum Condition;
using enum Shape;

constexpr std::string_view kButton = "button";
constexpr std::string_view kCode = "code,position";

constexpr CommandRow kClicks[] = {
    {"click_button_onclick", kAlways, kOwn, "name,onclick text,position", ClickButtonByOnclick,
     nullptr, true},
    {"click_button_onclick_if_in_combo_false", kNotInCombo, kOwn, "name,onclick text,position",
     ClickButtonByOnclick, nullptr, true},
    {"click_button_onclick_if_in_combo_true", kInCombo, kOwn, "name,onclick text,position",
     ClickButtonByOnclick, nullptr, true},
    {"click_onclick", kAlways, kPosition, "onclick text,position", ClickByOnclick, nullptr, true},
    {"click_onclick_first_only", kFirst, kPosition, "onclick text,position", ClickByOnclick,
     nullptr, true},
    {"click_onclick_last_only", kLast, kPosition, "onclick text,position", ClickByOnclick, nullptr,
     true},
    {"click_onclick_if_in_combo_false", kNotInCombo, kPosition, "onclick text,position",
     ClickByOnclick, nullptr, true},
    {"click_onclick_if_in_combo_true", kInCombo, kPosition, "onclick text,position", ClickByOnclick,
     nullptr, true},
    {"click_link", kAlways, kPosition, "href text,position", ClickLink, nullptr, true},
    {"click_link_first_only", kFirst, kPosition, "href text,position", ClickLink, nullptr, true},
    {"click_link_last_only", kLast, kPosition, "href text,position", ClickLink, nullptr, true},
    {"click_link_if_in_combo_false", kNotInCombo, kPosition, "href text,position", ClickLink,
     nullptr, true},
    {"click_link_if_in_combo_true", kInCombo, kPosition, "href text,position", ClickLink, nullptr,
     true},
    {"call_page_submit", kAlways, kWhole, "form number", SubmitForm, nullptr, true},
    {"call_page_submit_if_in_combo_false", kNotInCombo, kWhole, "form number", SubmitForm, nullptr,
     true},
    {"call_page_submit_if_in_combo_true", kInCombo, kWhole, "form number", SubmitForm, nullptr,
     true},
    {"call_page_submit_first_only", kFirst, kWhole, "form number", SubmitForm, nullptr, true},
    {"call_page_submit_last_only", kLast, kWhole, "form number", SubmitForm, nullptr, true},
    {"click_button", kAlways, kWhole, kButton, ClickButton, nullptr, true},
    {"click_button_ignore_page_loading", kAlways, kOwn, "button,milliseconds", nullptr,
     ClickIgnoringPageLoad},
    {"click_button_ignore_page_loading_if_in_combo_false", kNotInCombo, kPosition,
     "button,milliseconds", nullptr, ClickAndWait},
    {"click_button_ignore_page_loading_if_in_combo_true", kInCombo, kPosition,
     "button,milliseconds", nullptr, ClickAndWait},
    {"click_button_if_in_combo_false", kNotInCombo, kWhole, kButton, ClickButton, nullptr, true},
    {"click_button_if_in_combo_true", kInCombo, kWhole, kButton, ClickButton, nullptr, true},
    {"click_button_first_only", kFirst, kWhole, kButton, ClickButton, nullptr, true},
    {"click_button_first_only_if_in_combo_false", kFirstNotInCombo, kWhole, kButton, ClickButton,
     nullptr, true},
    {"click_button_first_only_if_in_combo_true", kFirstInCombo, kWhole, kButton, ClickButton,
     nullptr, true},
    {"click_button_last_only", kLast, kWhole, kButton, ClickButton, nullptr, true},
    {"click_button_not_last_only", kNotLast, kWhole, kButton, ClickButton, nullptr, true},
    // These two look at the list alone, whatever their names say of the last entry.
    {"click_button_last_only_if_in_combo_false", kNotInCombo, kWhole, kButton, ClickButton, nullptr,
     true},
    {"click_button_last_only_if_in_combo_true", kInCombo, kWhole, kButton, ClickButton, nullptr,
     true},
};

constexpr CommandRow kJavaScript[] = {
    {"call_javascript_by_letter_order", kAlways, kPositionByLetter, kCode, nullptr, CallJavaScript},
    {"call_javascript", kAlways, kPosition, kCode, nullptr, CallJavaScript},
    {"call_javascript_first_only", kFirst, kPosition, kCode, nullptr, CallJavaScript},
    {"call_javascript_last_only", kLast, kPosition, kCode, nullptr, CallJavaScript},
    {"call_javascript_if_in_combo_false", kNotInCombo, kPosition, kCode, nullptr, CallJavaScript},
    {"call_javascript_if_in_combo_true", kInCombo, kPosition, kCode, nullptr, CallJavaScript},
};

}  // namespace

std::span<const CommandRow> ClickCommands() { return kClicks; }

std::span<const CommandRow> JavaScriptCommands() { return kJavaScript; }

}  // namespace quayline
