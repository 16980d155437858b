// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>

#include <memory>
#include <vector>

#include "i18n/sentence.h"
#include "transport/unisock.h"

namespace quayline {

// Waits on a port of this computer until the test site's probe arrives there, and then closes the
// port. What a listener hears goes nowhere: the first bytes are compared with the word of the
// probe, so that a stranger's packet is not taken for it, and are thrown away.
class PortListener final : public QObject {
  Q_OBJECT

 public:
  // Listens at once, on this address alone; IsOpen() says whether it could.
  PortListener(SockProtocol protocol, int port, const QString& address, const QByteArray& word,
               QObject* parent = nullptr);
  ~PortListener() override;

  bool IsOpen() const { return socket_.State() != SockState::kClosed; }
  bool HasArrived() const { return has_arrived_; }
  // The site sends no word: whatever arrives from now on is the probe.
  void TakeAnything();

 Q_SIGNALS:
  // Something came; a line about it for the user. Not for each of very many.
  void heard(const quayline::Sentence& line);
  // The probe came. The port is closed.
  void arrived();

 private:
  void OnCaller(int request_id);
  void OnDatagram();
  void OnCallersBytes(UniSock& caller);
  void LogArrival();
  void Arrive();

  UniSock socket_;
  std::vector<std::unique_ptr<UniSock>> callers_;  // who may still say the word
  QByteArray word_;                                // empty: the arrival itself is all that counts
  int reported_ = 0;
  bool has_arrived_ = false;
};

}  // namespace quayline
