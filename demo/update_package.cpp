// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "demo/update_package.h"

#include <archive.h>
#include <archive_entry.h>
#include <memory>

namespace quayline::demo {

namespace {

struct FreeArchive {
  void operator()(archive* made) const { archive_write_free(made); }
};
struct FreeEntry {
  void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

la_ssize_t Append(archive* /*made*/, void* bytes, const void* block, std::size_t size) {
  static_cast<QByteArray*>(bytes)->append(static_cast<const char*>(block),
                                          static_cast<qsizetype>(size));
  return static_cast<la_ssize_t>(size);
}

}  // namespace

QByteArray MakePackage(const QList<PackedFile>& files, const QByteArray& program) {
  QByteArray package;
  const std::unique_ptr<archive, FreeArchive> made(archive_write_new());
  archive_write_set_format_zip(made.get());
  archive_write_set_bytes_in_last_block(made.get(), 1);
  archive_write_open(made.get(), &package, nullptr, &Append, nullptr);
  for (const PackedFile& file : files) {
    const std::unique_ptr<archive_entry, FreeEntry> entry(archive_entry_new());
    archive_entry_set_pathname(entry.get(), file.name.constData());
    archive_entry_set_size(entry.get(), file.bytes.size());
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), 0644);
    archive_write_header(made.get(), entry.get());
    archive_write_data(made.get(), file.bytes.constData(),
                       static_cast<std::size_t>(file.bytes.size()));
  }
  archive_write_close(made.get());
  return program + package;
}

}  // namespace quayline::demo
