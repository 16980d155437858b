// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace quayline {

// The signals that ask a program to end (SIGINT, SIGTERM, SIGHUP, SIGQUIT), as Qt signals. A signal
// that is ignored from the start, as under nohup, stays ignored.
class StopSignals final : public QObject {
  Q_OBJECT

 public:
  // Holds the signals back for an object of this class. To be called first in main(): threads that
  // are started later inherit it.
  static void HoldBack();

  explicit StopSignals(QObject* parent = nullptr);
  ~StopSignals() override;

 Q_SIGNALS:
  void first();
  // The user does not want to wait for anything.
  void second();

 private:
  void Read();

  int file_ = -1;
  int count_ = 0;
};

}  // namespace quayline
