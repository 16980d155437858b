// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <chrono>

#include "async/flow.h"
#include "net/router_reply.h"

namespace quayline {

struct DetectionLimits {
  std::chrono::milliseconds connect = std::chrono::seconds(2);
  std::chrono::milliseconds next_block = std::chrono::seconds(2);  // after the first one
  std::chrono::milliseconds reply = std::chrono::seconds(10);      // the whole of it
  qsizetype max_bytes = qsizetype{256} << 10;
};

// Asks a router which model it is: one plain HTTP request, whose reply often names it. Runs in the
// background. Reports nothing but replies: no answer is no finding.
class RouterDetection final : public QObject {
  Q_OBJECT

 public:
  explicit RouterDetection(DetectionLimits limits = {}) : limits_(limits) {}

  // `names` is the list of routers, with its placeholder first. Ends a detection that still runs.
  void Start(const QString& address, int port, const QStringList& names);
  void Cancel() { flow_.Cancel(); }

 Q_SIGNALS:
  // A block of the reply names the router in this row. Later blocks can name another one.
  void named(int row);
  // The reply has ended, and no block of it named a router. `nearest` are the rows that its texts
  // fit best. `names_nothing`: what the first block quotes is in the placeholder, as nothing at all
  // is.
  void ended(const QList<int>& nearest, bool names_nothing);

 private:
  Task<> Run(QString address, int port);
  Task<QByteArray> Ask(WebTarget target, int port);
  void ReadBlock(const QByteArray& block);

  DetectionLimits limits_;
  RouterNames names_;
  bool is_named_ = false;
  bool is_first_block_ = true;
  bool names_nothing_ = false;
  Flow flow_;
};

}  // namespace quayline
