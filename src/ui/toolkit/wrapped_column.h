// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

class QTreeView;

namespace quayline {

// Wraps the texts of this column at its width; the rows are as high as that takes.
void WrapColumn(QTreeView& view, int column);

}  // namespace quayline
