// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/package_stream.h"

#include <QDataStream>
#include <QIODevice>

#include <algorithm>

namespace quayline {

namespace {

constexpr quint32 kMark = 0x51595031;

bool IsExpected(const PackedFile& file, const QList<PackedFile>& before) {
  const bool is_known =
      std::ranges::any_of(kPackageNames, [&](const char* name) { return file.name == name; });
  const bool is_double =
      std::ranges::any_of(before, [&](const PackedFile& other) { return other.name == file.name; });
  return is_known && !is_double && file.bytes.size() <= kMaxPackedFileBytes;
}

}  // namespace

QByteArray EncodeFiles(const QList<PackedFile>& files) {
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setVersion(QDataStream::Qt_6_4);
  out << kMark << static_cast<quint32>(files.size());
  for (const PackedFile& file : files) {
    out << file.name << file.bytes;
  }
  return bytes;
}

std::optional<QList<PackedFile>> DecodeFiles(const QByteArray& bytes) {
  QDataStream in(bytes);
  in.setVersion(QDataStream::Qt_6_4);
  quint32 mark = 0;
  quint32 count = 0;
  in >> mark >> count;
  QList<PackedFile> files;
  bool is_expected = mark == kMark;
  for (quint32 i = 0; i < count && is_expected && in.status() == QDataStream::Ok; ++i) {
    PackedFile file;
    in >> file.name >> file.bytes;
    is_expected = IsExpected(file, files);
    files.append(file);
  }
  if (!is_expected || in.status() != QDataStream::Ok || !in.atEnd()) {
    return std::nullopt;
  }
  return files;
}

}  // namespace quayline
