// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QProcess>

namespace quayline {

// A router to practise on: the demo router, as a process of this program on the loopback address.
// It ends with this object, and with the program, however that ends.
class PracticeRouter final : public QObject {
  Q_OBJECT

 public:
  // Its row in the list of routers, and its login.
  static constexpr char kName[] = "Demo Router HR-100 (form)";
  static constexpr char kLogin[] = "admin";  // the user name, and the password

  explicit PracticeRouter(QObject* parent = nullptr);
  ~PracticeRouter() override;

  void Start();
  void Stop();
  bool IsRunning() const { return !port_.isEmpty(); }
  // On which it answers; empty before started().
  const QString& Port() const { return port_; }

 Q_SIGNALS:
  void started();
  // It cannot be started, or has ended by itself.
  void failed();

 private:
  void ReadPort();

  QProcess process_;
  QByteArray output_;
  QString port_;
};

}  // namespace quayline
