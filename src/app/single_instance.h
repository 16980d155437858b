// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLocalServer>
#include <QLocalSocket>
#include <QObject>
#include <QStringList>

namespace quayline {

// What TryAcquire() found.
enum class InstanceState {
  kAcquired,     // no other instance works on the folder
  kRunning,      // another instance works on it, and answers
  kNotAnswering  // another instance has the folder, and does not answer in time
};

// Lets one instance of the program work on a folder; a second one sends what it was asked to open
// to the first one. Another instance is a process of this user that answers on the folder's socket.
// The name of the socket belongs to a process and not to the disk: nothing that remains of a
// process can prevent the program from starting.
class SingleInstance final : public QObject {
  Q_OBJECT

 public:
  // `folder` is the program's folder.
  explicit SingleInstance(const QString& folder);

  // Waits for another instance's answer for about two seconds. Acquired, the folder is this
  // instance's until Release() or the end of the process.
  InstanceState TryAcquire();
  // Starts to emit requested(); what was requested earlier follows at once.
  void Listen();
  // Frees the folder for the next instance, while this one finishes its last pages.
  void Release();
  // Asks the other instance to come to the front, and to open a list unless `file` is empty. False
  // when it does not answer.
  bool HandOver(const QString& file) const;

 Q_SIGNALS:
  // Another instance was started. `file` is the full name of a list, or empty.
  void requested(const QString& file);

 private:
  enum class Answer { kDone, kSilence, kNobody };

  Answer Ask(const QByteArray& request) const;
  void Serve(QLocalSocket* caller);

  QString server_name_;
  QLocalServer server_;
  bool is_listening_ = false;
  QStringList pending_;
};

}  // namespace quayline
