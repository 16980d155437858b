// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace quayline {

struct ProgramOutput {
  int exit_code = -1;  // -1 where it was ended
  QByteArray output;
  QByteArray errors;
};

// A program of the system that only root can replace. Searched in the folders of the system, never
// in PATH.
class FixedProgram final {
 public:
  explicit FixedProgram(const QString& name);

  bool Exists() const { return !path_.isEmpty(); }
  // Waits for it, for a minute at most. No shell is involved.
  ProgramOutput Run(const QStringList& arguments, const QByteArray& input = {}) const;

 private:
  QString path_;
};

}  // namespace quayline
