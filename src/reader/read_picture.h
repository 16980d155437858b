// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

namespace quayline::reader {

// Loads the decoders of the formats that are read.
void LoadPictureFormats();

// The picture that `bytes` hold as JPEG, PNG, GIF (its first frame) or BMP, decided by their first
// bytes. A large one is scaled down. The result is the width and the height as text, each followed
// by a line break, and the pixels as QImage::Format_ARGB32. Nothing for anything else.
std::optional<QByteArray> ReadPicture(const QByteArray& bytes);

}  // namespace quayline::reader
