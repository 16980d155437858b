// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "script/page_call.h"

namespace quayline {

// What the agent says an operation came to; the log shows each as a text of the user's language.
namespace page_result {
inline constexpr char kSuccessful[] = "successful";
inline constexpr char kFailed[] = "failed";
inline constexpr char kFailedLink[] = "failed_link";
}  // namespace page_result

// The operations on a page's elements, one call of the agent each. An operation finds one element
// of its document by a fixed ladder of searches, acts on it and answers with one of the results
// above, unless told otherwise. How each searches is written in web/agent/. The frame of the call is
// set by whoever sends it.
namespace page_operation {

PageCall SelectOptionByText(const QString& text);
// Answers the link's address, or kFailedLink.
PageCall ClickLinkByHref(const QString& href_part);
// Answers the link's address, or an empty text.
PageCall FindLinkByHref(const QString& href_part);
PageCall ClickByOnclick(const QString& onclick_part);
PageCall ClickButtonByOnclick(const QString& name, const QString& onclick_part);
PageCall ClickButton(const QString& name);
PageCall SubmitFormByNumber(int number);
// Answers true or false.
PageCall PageContainsWords(const QString& words);
// Answers the text between two markers, or an empty one.
PageCall ExtractBetweenMarkers(const QString& before, const QString& after);
PageCall NameNamelessBoxes();
PageCall NameOnchangeBoxes();
// Answers true or false.
PageCall ComboHasOption(const QString& combo_name, const QString& text);
PageCall SetElementValue(const QString& name, const QString& value, bool only_if_empty = false);
PageCall SetSecondElementValue(const QString& name, const QString& value,
                               bool only_if_empty = false);
// Answers the element's value, or an empty text.
PageCall GetElementValue(const QString& name);
PageCall SetCheckbox(const QString& name, bool checked = true);
PageCall SetCheckboxByPageText(const QString& text, int span, const QString& start_marker,
                               const QString& end_marker, bool checked = true);
PageCall SetRadioButton(const QString& name, const QString& value);
PageCall SetSecondRadioButton(const QString& name);

struct ComboMatch {
  QString text;
  QString second_text;
  bool partial = false;
};
PageCall SetComboValue(const QString& name, const ComboMatch& match);
PageCall FocusElementByPosition(int position, bool only_if_empty = false);

// Answers a text that changes whenever the markup of the document's body does; empty for an empty
// body.
PageCall ReadMarkupState();

}  // namespace page_operation
}  // namespace quayline
