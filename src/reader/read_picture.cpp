// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "reader/read_picture.h"

#include <QBuffer>
#include <QImageReader>

#include <utility>

namespace quayline::reader {

namespace {

constexpr int kMaxSide = 16'384;
constexpr qint64 kMaxPixels = 50'000'000;
constexpr int kMaxMegabytes = 256;
constexpr QSize kShown(1024, 1024);

// The formats of router images. No others are tried: a decoder can be attacked, and some formats
// are programs.
constexpr std::pair<QByteArrayView, const char*> kFormats[] = {
    {"\xff\xd8\xff", "jpeg"}, {"\x89PNG\r\n\x1a\n", "png"}, {"GIF8", "gif"}, {"BM", "bmp"}};

const char* FormatOf(const QByteArray& bytes) {
  for (const auto& [head, format] : kFormats) {
    if (bytes.startsWith(head)) {
      return format;
    }
  }
  return nullptr;
}

bool IsSmallEnough(const QSize& size) {
  return !size.isEmpty() && size.width() <= kMaxSide && size.height() <= kMaxSide &&
         qint64{size.width()} * size.height() <= kMaxPixels;
}

}  // namespace

void LoadPictureFormats() { QImageReader::supportedImageFormats(); }

std::optional<QByteArray> ReadPicture(const QByteArray& bytes) {
  const char* format = FormatOf(bytes);
  if (format == nullptr) {
    return std::nullopt;
  }
  QImageReader::setAllocationLimit(kMaxMegabytes);
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer, format);
  reader.setAutoDetectImageFormat(false);
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  if (!IsSmallEnough(size)) {
    return std::nullopt;
  }
  if (size.width() > kShown.width() || size.height() > kShown.height()) {
    reader.setScaledSize(size.scaled(kShown, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
  }
  const QImage picture = reader.read().convertToFormat(QImage::Format_ARGB32);
  if (picture.isNull()) {
    return std::nullopt;
  }
  QByteArray result =
      QByteArray::number(picture.width()) + '\n' + QByteArray::number(picture.height()) + '\n';
  result.append(reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes());
  return result;
}

}  // namespace quayline::reader
