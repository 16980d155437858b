// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariant>

#include "script/page_host.h"

namespace quayline {

// The text that runs a script in the page's own world. `var` and functions become the page's, as
// they do in a script of the page; `let`, `const` and `class` end with the script.
QString TextOfPageScript(const PageScript& script);

// What the script failed with, from the value that its text came to; empty where it did not fail. A
// text that is no JavaScript comes to nothing: the page's console tells what is wrong with it.
QString ErrorOfPageScript(const QVariant& result);

}  // namespace quayline
