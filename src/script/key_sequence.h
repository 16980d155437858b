// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace quayline {

// One key press of a sequence.
struct KeyStroke {
  int key = 0;  // Qt::Key
  Qt::KeyboardModifiers modifiers = Qt::NoModifier;
  QString text;  // what the key types; empty for a key that types nothing

  bool operator==(const KeyStroke&) const = default;
};

// Reads the notation of the classic key sending: + ^ % hold Shift, Ctrl or Alt for the next key or
// for a group in parentheses, ~ is Enter, a name in braces is a key ({RIGHT}, {F5}) or the literal
// character ({+}), with a count after a blank ({TAB 3}). Braces without a known key and parentheses
// that do not match are dropped, everything else is typed as it is.
QList<KeyStroke> ParseKeys(const QString& notation);

// The notation of one key: "Enter" or "ArrowDown" as pages call their keys, {ENTER} or F5 as the
// notation does, or one character. Nothing for any other text.
std::optional<QString> KeyNotation(const QString& key);

}  // namespace quayline
