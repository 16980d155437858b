// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quayline {

// A text that the user reads. A language file finds its translation by the English text. Messages
// are constants; the Translator gives their text when it is shown.
struct Message {
  const char* english;            // UTF-8
  const char* context = nullptr;  // a note for translators, where the text alone is ambiguous
};

}  // namespace quayline
