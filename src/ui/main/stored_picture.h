// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

#include "async/task.h"

namespace quayline {

// The image of a file that a server sent: JPEG, PNG, GIF or BMP, decided by its contents. It is
// decoded in a process of its own, for a few seconds at most. A null image for anything else.
Task<QImage> ReadStoredPicture(QString path);

}  // namespace quayline
