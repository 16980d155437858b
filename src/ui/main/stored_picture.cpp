// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/stored_picture.h"

#include <QFile>
#include <QFileInfo>

#include "core/reader_process.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr qint64 kMaxFileBytes = qint64{16} << 20;
constexpr int kMaxSide = 1024;  // the reader scales larger images down
constexpr qsizetype kMaxOutput = qsizetype{kMaxSide} * kMaxSide * 4 + 64;

// A pipe or a device under this name would be waited for.
QByteArray BytesOf(const QString& path) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || file.size() > kMaxFileBytes || !file.open(QIODevice::ReadOnly)) {
    return {};
  }
  return file.read(kMaxFileBytes);
}

// Width and height, a line each, and four bytes for each pixel.
QImage ImageOf(const QByteArray& bytes) {
  const qsizetype first = bytes.indexOf('\n');
  const qsizetype second = bytes.indexOf('\n', first + 1);
  const int width = bytes.first(std::max<qsizetype>(first, 0)).toInt();
  const int height = bytes.mid(first + 1, second - first - 1).toInt();
  const QByteArray pixels = bytes.mid(second + 1);
  if (first < 0 || second < 0 || width < 1 || height < 1 || width > kMaxSide || height > kMaxSide ||
      pixels.size() != qsizetype{width} * height * 4) {
    return {};
  }
  return QImage(reinterpret_cast<const uchar*>(pixels.constData()), width, height, width * 4,
                QImage::Format_ARGB32)
      .copy();
}

}  // namespace

Task<QImage> ReadStoredPicture(QString path) {
  QByteArray bytes = BytesOf(path);
  if (bytes.isEmpty()) {
    co_return QImage();
  }
  ReaderRequest request{.arguments = {QStringLiteral("picture")},
                        .input = std::move(bytes),
                        .time_limit = 10s,
                        .max_output = kMaxOutput};
  const ReaderResult result = co_await RunReaderInBackground(std::move(request));
  co_return result ? ImageOf(*result) : QImage();
}

}  // namespace quayline
