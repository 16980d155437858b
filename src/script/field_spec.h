// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string_view>

namespace quayline {

// What a field of an argument may hold.
enum class FieldKind {
  kText,          // any text, an empty one as well
  kNeededText,    // an empty text finds nothing
  kElementName,   // by which an element of the page is found
  kPath,          // a page of the router: what follows the host and the slash
  kWholeNumber,   // from 0 on
  kMilliseconds,  // from 1 on: a wait of 0 has no end
  kTruth,         // true or false; empty is false
  kPosition,      // where a text is inserted: so many characters before the end; empty: nowhere
  kJavaScript,
  kKey,  // a name that key_sequence.h knows, or one character
};

enum class WhenMissing {
  kIsError,       // the command cannot do what it says
  kKeepsEarlier,  // the field of an earlier line is used
  kUsesDefault,
};

// Where the run keeps a field, so that a later line can leave it out.
enum class KeptAs { kNothing, kPosition, kExtraField };

// What is inserted into a field, at the run's position.
enum class Inserted {
  kNothing,
  kCurrentName,
  kLetter,   // of the entry
  kRowName,  // by the handler, which tries every name of the name array
};

// One field of a command's argument.
struct FieldSpec {
  std::string_view name;  // as people read it in "field,position"
  FieldKind kind = FieldKind::kText;
  WhenMissing when_missing = WhenMissing::kIsError;
  std::string_view default_value;  // for kUsesDefault
  KeptAs kept_as = KeptAs::kNothing;
  Inserted inserted = Inserted::kNothing;
  bool takes_rest = false;  // for the last field: separators after it belong to it
  std::string_view help;    // one sentence
};

// The texts of the tables are ASCII.
inline QString FromAscii(std::string_view text) {
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace quayline
