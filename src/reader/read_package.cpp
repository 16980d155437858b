// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "reader/read_package.h"

#include <QFile>

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <memory>

namespace quayline::reader {

namespace {

constexpr std::size_t kBlockBytes = 64 << 10;

struct FreeArchive {
  void operator()(archive* opened) const { archive_read_free(opened); }
};

bool IsKnown(const QByteArray& name) {
  return std::ranges::any_of(kPackageNames, [&](const char* known) { return name == known; });
}

std::expected<PackedFile, QString> ReadFile(archive* opened, archive_entry* entry) {
  const char* name = archive_entry_pathname(entry);
  PackedFile file{.name = name == nullptr ? QByteArray() : QByteArray(name), .bytes = {}};
  if (!IsKnown(file.name) || archive_entry_filetype(entry) != AE_IFREG) {
    return std::unexpected(QStringLiteral("It contains other files than the databases."));
  }
  if (archive_entry_is_encrypted(entry) != 0) {
    return std::unexpected(QStringLiteral("It is encrypted."));
  }
  while (true) {
    const qsizetype before = file.bytes.size();
    file.bytes.resize(before + static_cast<qsizetype>(kBlockBytes));
    const auto count = archive_read_data(opened, file.bytes.data() + before, kBlockBytes);
    if (count < 0) {
      return std::unexpected(QStringLiteral("Its content is damaged."));
    }
    file.bytes.resize(before + count);
    if (count == 0) {
      return file;
    }
    if (file.bytes.size() > kMaxPackedFileBytes) {
      return std::unexpected(QStringLiteral("It contains a file that is too large."));
    }
  }
}

}  // namespace

std::expected<QList<PackedFile>, QString> ReadPackage(const QString& path) {
  const std::unique_ptr<archive, FreeArchive> opened(archive_read_new());
  // By the directory at its end, as programs in front of it leave it.
  archive_read_support_format_zip_seekable(opened.get());
  if (archive_read_open_filename(opened.get(), QFile::encodeName(path).constData(), kBlockBytes) !=
      ARCHIVE_OK) {
    return std::unexpected(QStringLiteral("It is not a package of databases."));
  }
  QList<PackedFile> files;
  while (true) {
    archive_entry* entry = nullptr;
    const int result = archive_read_next_header(opened.get(), &entry);
    if (result == ARCHIVE_EOF) {
      break;
    }
    if (result != ARCHIVE_OK) {
      return std::unexpected(files.isEmpty() ? QStringLiteral("It is not a package of databases.")
                                             : QStringLiteral("Its content is damaged."));
    }
    auto file = ReadFile(opened.get(), entry);
    if (!file) {
      return std::unexpected(file.error());
    }
    if (std::ranges::any_of(files,
                            [&](const PackedFile& each) { return each.name == file->name; })) {
      return std::unexpected(QStringLiteral("It contains a file twice."));
    }
    files.append(std::move(*file));
  }
  return files;
}

}  // namespace quayline::reader
