// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>

namespace quayline {

// Keeps two copies of the program from working on one folder, where each would write its list and
// its settings over those of the other. The second copy sends what it was asked to open to the
// first one, and ends.
class OneCopy final : public QObject {
  Q_OBJECT

 public:
  // `folder` is the program's folder.
  explicit OneCopy(const QString& folder);

  // True when no other copy has the folder. It is this copy's from then on, until it is released or
  // the process ends, in whatever way. Also true where the folder does not let anybody claim it.
  bool Claim();
  // The first copy is to listen once it can do what it is asked for.
  void Listen();
  // Leaves the folder to the next copy, while this one brings its last pages to their end.
  void Release();
  // Asks the copy that has the folder to show itself, and to open a list unless `file` is empty.
  // Waits some seconds at most; false when nobody answers.
  bool AskOther(const QString& file) const;

 Q_SIGNALS:
  // Another copy was started. `file` is the full name of a list, or empty.
  void asked(const QString& file);

 private:
  void Answer(QLocalSocket* caller);

  QString server_name_;
  QLockFile lock_;
  QLocalServer server_;
};

}  // namespace quayline
