// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

// The sentences of the lint.
namespace quayline::lint_text {

inline constexpr Message kBlanksInName{
    "The blanks in the name make this line a comment. The command is written \"%1\"."};
inline constexpr Message kDidYouMean{
    "There is no command \"%1\", so this line does nothing. Did you mean \"%2\"?"};
inline constexpr Message kUnknown{"There is no command \"%1\", so this line does nothing."};
inline constexpr Message kNoArgument{
    "This line runs, and without an argument. The command is written %1."};
inline constexpr Message kNotEnclosed{
    "The argument belongs between (\" and \"), with nothing after them: two characters are cut off "
    "at either end, whatever they are."};

inline constexpr Message kTakesNothing{"The command takes no argument: this is ignored."};
inline constexpr Message kTooManyFields{
    "The argument ends here: the command takes \"%1\", and no field can hold its separator."};
inline constexpr Message kMissing{"The field \"%1\" is missing: the command takes \"%2\"."};
inline constexpr Message kKeepsEarlier{
    "Without the field \"%1\" that of an earlier line is used. Write a comma for an empty one."};
inline constexpr Message kEmpty{"The field \"%1\" is empty."};

inline constexpr Message kNoNumber{"The field \"%1\" should be a number from 0 on, not \"%2\"."};
inline constexpr Message kBeyondField{
    "The position %1 is counted from the end of \"%2\", which is shorter: nothing is inserted."};
inline constexpr Message kNoTruth{"The field \"%1\" should be true or false, not \"%2\"."};
inline constexpr Message kEndless{"With 0 the line never ends: it waits until the job is stopped."};
inline constexpr Message kLeadingSlash{
    "The slash after the router's address is added already: this is a second one."};
inline constexpr Message kAddress{
    "The router's address is added in front of the path: write only what follows it."};

inline constexpr Message kCodeEndsAtComma{
    "The code ends at the first comma. Write run_javascript(\"...\"), which takes commas."};
inline constexpr Message kLongTimer{
    "A page is waited for while its timers take %1 ms at most, and this one takes %2 ms. Write a "
    "timeout line after this one."};
inline constexpr Message kNoKey{"There is no key \"%2\" for the field \"%1\"."};

inline constexpr Message kWaitsWhenNotInCombo{
    "Whatever its name says, this command waits when the entry is not in the list."};
inline constexpr Message kWaitsAfterTheFirst{
    "Whatever its name says, this command waits on every entry but the first."};
inline constexpr Message kClicksOnEveryEntry{
    "Whatever its name says, this command tests the list alone and runs on every entry."};
inline constexpr Message kFirstButton{
    "Whatever its name says, this command acts on the first button of the name."};
inline constexpr Message kOneNumberForTwo{
    "The number is the time to wait, and the position at which the current name goes into the "
    "button's name."};

inline constexpr Message kFirstOption{
    "Whatever its name says, this command chooses the first option that has any text or value."};

// Of a script as a whole.
inline constexpr Message kNoTypeChoices{
    "No line above states the page's words for the protocols: write a set_type_choices line "
    "first."};
inline constexpr Message kNoNameArray{
    "No line above states the names of the page's rows: write a set_name_array line first."};
inline constexpr Message kNoCurrentName{
    "No line above chooses a row of the page, so nothing is inserted at the position."};
inline constexpr Message kNoCheckedText{
    "No line above chooses a text: write a set_string_to_check line first."};
inline constexpr Message kNeverInCombo{
    "This line never runs: no is_in_combo line tests whether the entry is in a list."};
inline constexpr Message kNeverHere{
    "This line never runs: a script of this kind runs once, which is the first and the last time."};
inline constexpr Message kNoPageYet{"No page is open yet: write a nav line first."};
inline constexpr Message kOpensNothing{"The script opens no page."};
inline constexpr Message kLeadsNowhere{
    "The script opens no page, so the router's rules cannot be seen."};
inline constexpr Message kNoLogin{
    "The update script logs in on a page, and this one does not: it ends where the router asks for "
    "the password, not at the table of the rules."};
inline constexpr Message kEndsAtLogin{
    "The script ends where the login leads. The update script goes on to another page from there: "
    "open the page with the table of the rules."};
inline constexpr Message kLoginForEach{
    "The password above is typed for the first entry only, and this line runs for every one. Use "
    "its form that ends with _first_only."};
inline constexpr Message kNoEntryHere{
    "This script runs without an entry: the line has nothing to work with."};
inline constexpr Message kNeverSent{
    "No line below clicks anything, so the page does not send what is set here."};
inline constexpr Message kLeftUnsent{
    "The page is left here, before a click has sent what the lines above have set."};
inline constexpr Message kRemovesNothing{"The script clicks nothing, so it removes nothing."};
inline constexpr Message kShortWait{
    "The click is waited for %1 ms only, and nothing below waits for what it saves. Use "
    "click_button, or write a timeout line after it."};

}  // namespace quayline::lint_text
