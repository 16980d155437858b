// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <expected>
#include <optional>

namespace quayline {

// The files of a folder by the paths of a router's pages. Never gives a file that is outside the
// folder, whatever the path or a symbolic link says, nor a hidden one, nor "answers.json".
class PageFolder final {
 public:
  struct File {
    QString name;  // below the folder
    QByteArray bytes;
    QByteArray type;            // as Content-Type has it
    bool is_text = false;       // a page, script, style or data file: may be a template
    bool is_too_large = false;  // more than kMaxFileBytes, which are not read
  };

  static constexpr qint64 kMaxFileBytes = qint64{16} << 20;

  // An error is a sentence.
  static std::expected<PageFolder, QString> Open(const QString& folder);
  // Whatever this folder lacks is taken from the folder beside it that has this name. False where
  // there is no such folder.
  bool TakeTheRestFrom(const QString& sibling);

  // The file for a path that begins with "/"; "/" at its end stands for "index.html", and ".html"
  // may be left out. A file that is there with ".txt" after its name only is empty.
  std::optional<File> Find(const QString& path) const;

 private:
  explicit PageFolder(QString root) : root_(std::move(root)) {}
  std::optional<File> Read(const QString& name) const;

  QString root_;   // canonical
  QString other_;  // canonical; empty: none
};

}  // namespace quayline
