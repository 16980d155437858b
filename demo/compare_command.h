// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QString>

#include <functional>

namespace quayline::demo {

// Asks a demo router on loopback for its state and compares a list file with it.
class CompareCommand final : public QObject {
 public:
  struct Outcome {
    bool has_every_entry = false;
    QString output;  // the comparison; empty on an error
    QString error;   // a sentence; empty when there is a comparison
  };

  // Over https any certificate is accepted: the address is on loopback.
  CompareCommand(QString list_file, quint16 port, bool https = false);

  // Calls `done` once, from the event loop. Destroying the command takes the call back.
  void Start(std::function<void(const Outcome&)> done);

 private:
  Outcome Compare(QNetworkReply* reply) const;

  QString list_file_;
  quint16 port_;
  bool https_;
  QNetworkAccessManager network_;
};

}  // namespace quayline::demo
