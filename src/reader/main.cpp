// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Parses foreign files for the other programs, in a process that can do nothing else, in case a
// hostile file takes over its parser.
//
//   quayline-reader jet FILE           the tables of a Jet file, as EncodeTables() writes them
//   quayline-reader picture < BYTES    a picture, as ReadPicture() gives it
//   quayline-reader package FILE       the files of a package of databases, as EncodeFiles() writes
//                                      them
//
// Ends with 0, or with 1 and a part of a sentence about the file on standard output.

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/table_stream.h"
#include "reader/process_limits.h"
#include "reader/read_jet_file.h"
#include "reader/read_package.h"
#include "reader/read_picture.h"

namespace quayline::reader {
namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

int Write(const QByteArray& bytes, int status) {
  const bool is_written = std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()),
                                      stdout) == static_cast<size_t>(bytes.size()) &&
                          std::fflush(stdout) == 0;
  return is_written ? status : kUsage;
}

int RunJet(const char* file) {
  LimitProcess(uint64_t{2} << 30, 30);
  FilterSystemCalls();
  const auto tables = ReadJetFile(QFile::decodeName(file));
  return tables ? Write(EncodeTables(*tables), 0) : Write(tables.error().toUtf8(), kFailed);
}

int RunPicture() {
  constexpr qint64 kMaxBytes = qint64{16} << 20;
  LimitProcess(uint64_t{1} << 30, 5);
  LoadPictureFormats();
  FilterSystemCalls();
  QFile input;
  if (!input.open(stdin, QIODevice::ReadOnly)) {
    return kUsage;
  }
  const QByteArray bytes = input.read(kMaxBytes);
  const auto picture = ReadPicture(bytes);
  return picture ? Write(*picture, 0) : Write("It is not a picture.", kFailed);
}

int RunPackage(const char* file) {
  LimitProcess(uint64_t{1} << 30, 30);
  FilterSystemCalls();
  const auto files = ReadPackage(QFile::decodeName(file));
  return files ? Write(EncodeFiles(*files), 0) : Write(files.error().toUtf8(), kFailed);
}

int Run(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "jet") == 0) {
    return RunJet(argv[2]);
  }
  if (argc == 2 && std::strcmp(argv[1], "picture") == 0) {
    return RunPicture();
  }
  if (argc == 3 && std::strcmp(argv[1], "package") == 0) {
    return RunPackage(argv[2]);
  }
  std::fputs("usage: quayline-reader jet FILE | package FILE | picture < FILE\n", stderr);
  return kUsage;
}

}  // namespace
}  // namespace quayline::reader

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);  // finds Qt's image plugins
  // No clean-up: the output is flushed, and a library that read a hostile file may crash in it.
  std::_Exit(quayline::reader::Run(argc, argv));
}
