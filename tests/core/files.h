// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

namespace quayline::testing {

inline bool WriteBytes(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray ReadBytes(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QStringList Names(const QString& folder) {
  return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

// What `work` gives while no file of this process can grow beyond `bytes`, as on a disk that is
// full.
template <typename Work>
auto OnFullDisk(rlim_t bytes, const Work& work) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit former = {};
  getrlimit(RLIMIT_FSIZE, &former);
  const rlimit limit = {bytes, former.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  auto result = work();
  setrlimit(RLIMIT_FSIZE, &former);
  return result;
}

// While it lives, `folder` and its files can be read but not written, also where the tests run as
// root, who could write anyway.
class ReadOnlyFolder final {
 public:
  explicit ReadOnlyFolder(const QString& folder) : folder_(folder) {
    const auto readable = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    for (const QString& name : Names(folder)) {
      QFile::setPermissions(folder + QLatin1Char('/') + name, readable);
    }
    QFile::setPermissions(folder, readable | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther);
    if (geteuid() == 0) {
      is_root_ = seteuid(65534) == 0;
    }
  }
  ~ReadOnlyFolder() {
    if (is_root_ && seteuid(0) != 0) {
      std::abort();
    }
    QFile::setPermissions(folder_, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  ReadOnlyFolder(const ReadOnlyFolder&) = delete;
  ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

 private:
  QString folder_;
  bool is_root_ = false;
};

}  // namespace quayline::testing
