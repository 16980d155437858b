// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

namespace quayline {

// The program's own drawing of a router, for a picture path such as "pictures/demo.svg". The
// drawings are the files of data/pictures and part of the program: nothing is fetched for them. A
// null image for any other path.
QImage DrawnPicture(const QString& picture_path);

}  // namespace quayline
