// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>

namespace quayline {

// One section of an INI file whose values are written as they change. A value that could not be
// written is remembered, and written with a later change or by StorePending(). Other programs may
// write to the file too: each write reads it again.
class IniSection final {
 public:
  IniSection(QString section, QString file_name);

  QString Value(const QString& key) const;
  // False when something is not written yet; Value() is the new one all the same.
  bool SetValue(const QString& key, const QString& value);
  // Writes what could not be written before. False when something is still not written.
  bool StorePending();

  const QString& FileName() const { return file_name_; }

 private:
  QString section_;
  QString file_name_;
  QHash<QString, QString> pending_;  // by key
};

}  // namespace quayline
