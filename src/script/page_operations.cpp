// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/page_operations.h"

#include <algorithm>
#include <array>

namespace quayline::page_operation {

namespace {

PageCall Call(const char* operation, QJsonArray arguments = {},
              const char* if_gone = page_result::kFailed) {
  return {.operation = QString::fromLatin1(operation),
          .arguments = std::move(arguments),
          .if_gone = QString::fromLatin1(if_gone)};
}

PageCall Question(const char* operation, QJsonArray arguments, QJsonValue if_gone) {
  return {.operation = QString::fromLatin1(operation),
          .arguments = std::move(arguments),
          .if_gone = std::move(if_gone)};
}

}  // namespace

PageCall SelectOptionByText(const QString& text) { return Call("SelectOptionByText", {text}); }

PageCall ClickLinkByHref(const QString& href_part) {
  return Call("ClickLinkByHref", {href_part}, page_result::kFailedLink);
}

PageCall FindLinkByHref(const QString& href_part) {
  return Question("FindLinkByHref", {href_part}, QString());
}

PageCall ClickByOnclick(const QString& onclick_part) {
  return Call("ClickByOnclick", {onclick_part});
}

PageCall ClickButtonByOnclick(const QString& name, const QString& onclick_part) {
  return Call("ClickButtonByOnclick", {name, onclick_part});
}

PageCall ClickButton(const QString& name) { return Call("ClickButton", {name}); }

PageCall SubmitFormByNumber(int number) {
  return Call("SubmitFormByNumber", {number}, page_result::kSuccessful);
}

PageCall PageContainsWords(const QString& words) {
  return Question("PageContainsWords", {words}, false);
}

PageCall ExtractBetweenMarkers(const QString& before, const QString& after) {
  return Question("ExtractBetweenMarkers", {before, after}, QString());
}

PageCall NameNamelessBoxes() { return Call("NameNamelessBoxes"); }

PageCall NameOnchangeBoxes() { return Call("NameOnchangeBoxes"); }

PageCall ComboHasOption(const QString& combo_name, const QString& text) {
  return Question("ComboHasOption", {combo_name, text}, false);
}

PageCall SetElementValue(const QString& name, const QString& value, bool only_if_empty) {
  return Call("SetElementValue", {name, value, only_if_empty});
}

PageCall SetSecondElementValue(const QString& name, const QString& value, bool only_if_empty) {
  return Call("SetSecondElementValue", {name, value, only_if_empty});
}

PageCall GetElementValue(const QString& name) {
  return Question("GetElementValue", {name}, QString());
}

PageCall SetCheckbox(const QString& name, bool checked) {
  return Call("SetCheckbox", {name, checked});
}

PageCall SetCheckboxByPageText(const QString& text, int span, const QString& start_marker,
                               const QString& end_marker, bool checked) {
  return Call("SetCheckboxByPageText", {text, span, start_marker, end_marker, checked});
}

PageCall SetRadioButton(const QString& name, const QString& value) {
  return Call("SetRadioButton", {name, value});
}

PageCall SetSecondRadioButton(const QString& name) { return Call("SetSecondRadioButton", {name}); }

PageCall SetComboValue(const QString& name, const ComboMatch& match) {
  return Call("SetComboValue", {name, match.text, match.second_text, match.partial});
}

PageCall FocusElementByPosition(int position, bool only_if_empty) {
  return Call("FocusElementByPosition", {position, only_if_empty});
}

bool IsAct(const PageCall& call) {
  static constexpr std::array kActs{"Click", "Submit", "Set", "Select", "Focus"};
  return std::ranges::any_of(
      kActs, [&call](const char* act) { return call.operation.startsWith(QLatin1String(act)); });
}

bool IsChoice(const PageCall& call) {
  return (call.operation.startsWith(QLatin1String("Set")) &&
          !call.operation.endsWith(QLatin1String("ElementValue"))) ||
         call.operation.startsWith(QLatin1String("Select"));
}

PageCall ReadMarkupState() { return Question("ReadMarkupState", {}, QString()); }

}  // namespace quayline::page_operation
