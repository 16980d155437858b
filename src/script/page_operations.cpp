// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/page_operations.h"

namespace quayline::page_operation {

namespace {

using enum PageCallKind;

// The result of a call that no page answers.
enum class IfGone { kFailed, kFailedLink, kSuccessful, kEmptyText, kFalse, kEmptyList };

// What the engine must know about an operation.
struct Operation {
  const char* name;  // the agent's
  PageCallKind kind;
  IfGone if_gone;
};

constexpr Operation kSelectOptionByText{"SelectOptionByText", kChoice, IfGone::kFailed};
constexpr Operation kClickLinkByHref{"ClickLinkByHref", kClick, IfGone::kFailedLink};
constexpr Operation kFindLinkByHref{"FindLinkByHref", kQuestion, IfGone::kEmptyText};
constexpr Operation kClickByOnclick{"ClickByOnclick", kClick, IfGone::kFailed};
constexpr Operation kClickButtonByOnclick{"ClickButtonByOnclick", kClick, IfGone::kFailed};
constexpr Operation kClickButton{"ClickButton", kClick, IfGone::kFailed};
// A form that does not exist counts as submitted.
constexpr Operation kSubmitFormByNumber{"SubmitFormByNumber", kClick, IfGone::kSuccessful};
constexpr Operation kPageContainsWords{"PageContainsWords", kQuestion, IfGone::kFalse};
constexpr Operation kExtractBetweenMarkers{"ExtractBetweenMarkers", kQuestion, IfGone::kEmptyText};
constexpr Operation kNameNamelessBoxes{"NameNamelessBoxes", kQuestion, IfGone::kFailed};
constexpr Operation kNameOnchangeBoxes{"NameOnchangeBoxes", kQuestion, IfGone::kFailed};
constexpr Operation kComboHasOption{"ComboHasOption", kQuestion, IfGone::kFalse};
constexpr Operation kSetElementValue{"SetElementValue", kInput, IfGone::kFailed};
constexpr Operation kSetSecondElementValue{"SetSecondElementValue", kInput, IfGone::kFailed};
constexpr Operation kGetElementValue{"GetElementValue", kQuestion, IfGone::kEmptyText};
constexpr Operation kSetCheckbox{"SetCheckbox", kChoice, IfGone::kFailed};
constexpr Operation kSetCheckboxByPageText{"SetCheckboxByPageText", kChoice, IfGone::kFailed};
constexpr Operation kSetRadioButton{"SetRadioButton", kChoice, IfGone::kFailed};
constexpr Operation kSetSecondRadioButton{"SetSecondRadioButton", kChoice, IfGone::kFailed};
constexpr Operation kSetComboValue{"SetComboValue", kChoice, IfGone::kFailed};
constexpr Operation kFocusElementByPosition{"FocusElementByPosition", kInput, IfGone::kFailed};
constexpr Operation kChooseItem{"ChooseItem", kChoice, IfGone::kFailed};
constexpr Operation kChooseOpenItem{"ChooseOpenItem", kChoice, IfGone::kFailed};
constexpr Operation kFocusField{"FocusField", kInput, IfGone::kFailed};
constexpr Operation kElementIsThere{"ElementIsThere", kQuestion, IfGone::kFalse};
constexpr Operation kNearestNames{"NearestNames", kQuestion, IfGone::kEmptyList};
constexpr Operation kNamePasswordBoxes{"NamePasswordBoxes", kQuestion, IfGone::kFailed};
constexpr Operation kPageShowsText{"PageShowsText", kQuestion, IfGone::kFalse};
constexpr Operation kReadRows{"ReadRows", kQuestion, IfGone::kEmptyText};
constexpr Operation kClickInRow{"ClickInRow", kClick, IfGone::kFailed};
constexpr Operation kOpenNextPage{"OpenNextPage", kClick, IfGone::kFailed};
constexpr Operation kReadComplaints{"ReadComplaints", kQuestion, IfGone::kEmptyList};
constexpr Operation kDescribeElementAt{"DescribeElementAt", kQuestion, IfGone::kEmptyText};
constexpr Operation kDescribePage{"DescribePage", kQuestion, IfGone::kEmptyList};
constexpr Operation kFetchPart{"FetchPart", kQuestion, IfGone::kEmptyText};
constexpr Operation kReadMarkupState{"ReadMarkupState", kQuestion, IfGone::kEmptyText};

QJsonValue ResultIfGone(IfGone if_gone) {
  switch (if_gone) {
    case IfGone::kFailed:
      return QLatin1String(page_result::kFailed);
    case IfGone::kFailedLink:
      return QLatin1String(page_result::kFailedLink);
    case IfGone::kSuccessful:
      return QLatin1String(page_result::kSuccessful);
    case IfGone::kEmptyText:
      return QString();
    case IfGone::kFalse:
      return false;
    case IfGone::kEmptyList:
      return QJsonArray();
  }
  return {};
}

PageCall Call(const Operation& operation, QJsonArray arguments) {
  return {.operation = QString::fromLatin1(operation.name),
          .kind = operation.kind,
          .arguments = std::move(arguments),
          .if_gone = ResultIfGone(operation.if_gone)};
}

}  // namespace

PageCall SelectOptionByText(const QString& text) { return Call(kSelectOptionByText, {text}); }

PageCall ClickLinkByHref(const QString& href_part) { return Call(kClickLinkByHref, {href_part}); }

PageCall FindLinkByHref(const QString& href_part) { return Call(kFindLinkByHref, {href_part}); }

PageCall ClickByOnclick(const QString& onclick_part) {
  return Call(kClickByOnclick, {onclick_part});
}

PageCall ClickButtonByOnclick(const QString& name, const QString& onclick_part) {
  return Call(kClickButtonByOnclick, {name, onclick_part});
}

PageCall ClickButton(const QString& name) { return Call(kClickButton, {name}); }

PageCall SubmitFormByNumber(int number) { return Call(kSubmitFormByNumber, {number}); }

PageCall PageContainsWords(const QString& words) { return Call(kPageContainsWords, {words}); }

PageCall ExtractBetweenMarkers(const QString& before, const QString& after) {
  return Call(kExtractBetweenMarkers, {before, after});
}

PageCall NameNamelessBoxes() { return Call(kNameNamelessBoxes, {}); }

PageCall NameOnchangeBoxes() { return Call(kNameOnchangeBoxes, {}); }

PageCall ComboHasOption(const QString& combo_name, const QString& text) {
  return Call(kComboHasOption, {combo_name, text});
}

PageCall SetElementValue(const QString& name, const QString& value, bool only_if_empty) {
  return Call(kSetElementValue, {name, value, only_if_empty});
}

PageCall SetSecondElementValue(const QString& name, const QString& value, bool only_if_empty) {
  return Call(kSetSecondElementValue, {name, value, only_if_empty});
}

PageCall GetElementValue(const QString& name) { return Call(kGetElementValue, {name}); }

PageCall SetCheckbox(const QString& name, bool checked) {
  return Call(kSetCheckbox, {name, checked});
}

PageCall SetCheckboxByPageText(const QString& text, int span, const QString& start_marker,
                               const QString& end_marker, bool checked) {
  return Call(kSetCheckboxByPageText, {text, span, start_marker, end_marker, checked});
}

PageCall SetRadioButton(const QString& name, const QString& value) {
  return Call(kSetRadioButton, {name, value});
}

PageCall SetSecondRadioButton(const QString& name) { return Call(kSetSecondRadioButton, {name}); }

PageCall SetComboValue(const QString& name, const ComboMatch& match) {
  return Call(kSetComboValue, {name, match.text, match.second_text, match.partial});
}

PageCall FocusElementByPosition(int position, bool only_if_empty) {
  return Call(kFocusElementByPosition, {position, only_if_empty});
}

PageCall ChooseItem(const QString& name, const QString& text) {
  return Call(kChooseItem, {name, text});
}

PageCall ChooseOpenItem(const QString& text) { return Call(kChooseOpenItem, {text}); }

PageCall FocusField(const QString& name) { return Call(kFocusField, {name}); }

PageCall ElementIsThere(const QString& name) { return Call(kElementIsThere, {name}); }

PageCall NearestNames(const QString& name) { return Call(kNearestNames, {name}); }

PageCall NamePasswordBoxes() { return Call(kNamePasswordBoxes, {}); }

PageCall PageShowsText(const QString& text) { return Call(kPageShowsText, {text}); }

PageCall ReadRows() { return Call(kReadRows, {}); }

PageCall ClickInRow(const QJsonArray& cells, const QString& kind, const QString& name) {
  return Call(kClickInRow, {cells, kind, name});
}

PageCall OpenNextPage() { return Call(kOpenNextPage, {}); }

PageCall ReadComplaints() { return Call(kReadComplaints, {}); }

PageCall DescribeElementAt(int x, int y) { return Call(kDescribeElementAt, {x, y}); }

PageCall DescribePage() { return Call(kDescribePage, {}); }

PageCall FetchPart(const QString& address) { return Call(kFetchPart, {address}); }

PageCall ReadMarkupState() { return Call(kReadMarkupState, {}); }

}  // namespace quayline::page_operation
