// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMap>
#include <QString>

#include <utility>

#include "core/ini_file.h"

namespace quayline {

// An INI file whose values are written as they change. What could not be written is remembered, and
// written with a later change or by StorePending(). Other programs may write to the file too: each
// write reads it again.
class IniStore final {
 public:
  explicit IniStore(QString file_name);

  // The new value even where it could not be written yet; empty where there is none.
  QString Value(const QString& section, const QString& key) const;
  // Changes all of them in one write: the file has either all old values or all new ones. False
  // when something is not written yet.
  bool SetValues(const QList<IniValue>& values);
  // Writes what could not be written before. False when it is still not written.
  bool StorePending();

  const QString& FileName() const { return file_name_; }

 private:
  QString file_name_;
  QMap<std::pair<QString, QString>, QString> pending_;  // by section and key
};

}  // namespace quayline
