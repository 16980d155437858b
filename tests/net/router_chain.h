// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace quayline::testing {

// A computer, routers in a row, and the internet behind them, each in a network namespace of its
// own. While it exists, the calling thread is at the computer: the sockets that it opens are there.
// Nothing of it is left when it is destroyed.
class RouterChain final {
 public:
  // `networks` are the first three numbers of each, from the computer's to the last router's:
  // "192.168.1". In each the outer end is ".1", and the inner one ".2". One network more than
  // routers. Without networks: a computer without any.
  explicit RouterChain(const QStringList& networks);
  ~RouterChain();
  RouterChain(const RouterChain&) = delete;
  RouterChain& operator=(const RouterChain&) = delete;

  // False where the system gives no right to make network namespaces, or has no iproute2.
  bool IsReady() const { return is_ready_; }

  // This router, from 1 on, does not report the packets whose time to live ends at it.
  void Silence(int router);
  // Runs commands of the shell at the computer.
  bool Run(const QString& commands) const { return RunAt(0, commands); }
  // A socket of the next node, for IPv4.
  int SocketOutside(int type) const;
  // Whether the computer's programs may send echo requests.
  void AllowEchoes(bool allowed);

 private:
  bool AddNode();
  bool Enter(int node) const;
  bool Link(int node, const QString& network);
  void AddRoutes();
  bool RunAt(int node, const QString& commands) const;

  QStringList networks_;
  int home_ = -1;
  QList<int> nodes_;  // open files of the namespaces: computer, routers, internet
  bool is_ready_ = false;
};

}  // namespace quayline::testing
