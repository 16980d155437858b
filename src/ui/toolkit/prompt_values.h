// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace quayline {

// What a file dialog offers.
struct FileQuestion {
  QString title;
  QString filter;          // as QFileDialog reads it
  QString default_suffix;  // without a dot; added to a name that has none
};

// A dialog that a web page opens: its text, a field if it is a prompt, and a check box with which
// the user suppresses further ones. Texts are shown as they are.
struct PageBox {
  QString title;
  QString text;
  bool can_refuse = false;
  std::optional<QString> typed;    // the first content of the field
  std::optional<QString> no_more;  // the text of the check box
};

struct PageBoxAnswer {
  bool accepted = false;
  QString typed;
  bool wants_no_more = false;
};

struct LoginAnswer {
  QString username;
  QString password;
};

}  // namespace quayline
