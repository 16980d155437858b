// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quayline {

// A text that the user reads, under the name by which a language file replaces it: the window and
// the text box that own it. The English text is the default. Messages are constants; their text is
// asked of the Translator at the moment of use.
struct Message {
  const char* window;   // for example "FrmMain"
  const char* box;      // for example "Text19"
  const char* english;  // UTF-8
};

}  // namespace quayline
