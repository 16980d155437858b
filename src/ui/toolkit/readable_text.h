// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// `text` as a control draws it. In a window that is laid out from right to left, addresses, names
// and ports keep their order; only texts in such a language are read in its direction.
QString ReadableText(const QString& text);

}  // namespace quayline
