// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "script/page_call.h"

namespace quayline {

// The results of an operation; the log shows each as a text in the user's language.
namespace page_result {
inline constexpr char kSuccessful[] = "successful";
inline constexpr char kFailed[] = "failed";
inline constexpr char kFailedLink[] = "failed_link";
inline constexpr char kOpened[] = "opened";
inline constexpr char kScrolled[] = "scrolled";
}  // namespace page_result

// The operations on a page's elements, one call of the agent each. An operation finds one element
// of its document by a fixed ladder of searches, works on it and answers with one of the results
// above, unless noted. How each searches is written in web/agent/. The frame of the call is set by
// whoever sends it.
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

// For commands that work pages as a person sees them. `name` may also be the label of a field or
// the caption of a button.

// Chooses an item by its text or value. Answers kOpened for a drop-down that is not a select: then
// ChooseOpenItem() is to be called when the page is idle.
PageCall ChooseItem(const QString& name, const QString& text);
// Clicks an item of the list that is open. Answers kScrolled while there is more of the list to
// look at: then it is to be called again when the page is idle.
PageCall ChooseOpenItem(const QString& text);
// Gives the field the focus for PageHost::SendKeys(). An empty name leaves the focus as it is.
PageCall FocusField(const QString& name);
// Answers whether a field or button of this name can be seen.
PageCall ElementIsThere(const QString& name);
// Answers an array of at most five names on the page, the nearest first.
PageCall NearestNames(const QString& name);
// As NameNamelessBoxes(), for password boxes.
PageCall NamePasswordBoxes();
// Answers whether the page shows the text; case and line breaks do not count.
PageCall PageShowsText(const QString& text);

// Answers an object: `rows`, each {cells, title, form} with cells {heading, text, checked};
// `headings`, each an array of texts; `isPartial`; `hasNext`. All frames of the page are read. See
// core/page_rows.h, and AddRows() in script/rule_reader.h.
PageCall ReadRows();
// Clicks the one button, link or check box of this name in the row that has these cells. `kind` is
// "button", "link", "checkbox" or "row"; an empty name is any.
PageCall ClickInRow(const QJsonArray& cells, const QString& kind, const QString& name);
// Clicks the link to the next page of a table.
PageCall OpenNextPage();

// Answers an array of the error texts that a person sees on the page, in all its frames.
PageCall ReadComplaints();

// For the author of a script. Answers an object, or an empty text where there is nothing: see
// script/picked_element.h. The place is in pixels of the window.
PageCall DescribeElementAt(int x, int y);
// Answers an array of objects, one for each document of the page: see script/saved_page.h.
PageCall DescribePage();
// A file that the page uses, at an address of the page's own server.
PageCall FetchPart(const QString& address);

// Answers a text that changes whenever the markup of the document's body does; empty for an empty
// body.
PageCall ReadMarkupState();

}  // namespace page_operation
}  // namespace quayline
