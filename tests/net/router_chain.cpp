// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/router_chain.h"

#include <QProcess>

#include <fcntl.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quayline::testing {

namespace {

using namespace Qt::StringLiterals;

constexpr const char* kThisNamespace = "/proc/thread-self/ns/net";

}  // namespace

RouterChain::RouterChain(const QStringList& networks)
    : networks_(networks), home_(open(kThisNamespace, O_RDONLY | O_CLOEXEC)) {
  const qsizetype count = networks.isEmpty() ? 1 : networks.size() + 1;
  is_ready_ = home_ >= 0;
  for (qsizetype i = 0; i < count && is_ready_; ++i) {
    is_ready_ = AddNode();
  }
  for (int i = 0; i < networks.size() && is_ready_; ++i) {
    is_ready_ = Link(i, networks[i]);
  }
  if (is_ready_) {
    AddRoutes();
    AllowEchoes(true);
  }
  if (!nodes_.isEmpty()) {
    Enter(0);
  }
}

RouterChain::~RouterChain() {
  setns(home_, CLONE_NEWNET);
  for (const int file : nodes_ + QList<int>{home_}) {
    close(file);
  }
}

bool RouterChain::AddNode() {
  const int file = unshare(CLONE_NEWNET) == 0 ? open(kThisNamespace, O_RDONLY | O_CLOEXEC) : -1;
  if (file < 0) {
    return false;
  }
  nodes_.append(file);
  // Errors come from the side of the packet, and as many as there are.
  return RunAt(static_cast<int>(nodes_.size()) - 1,
               u"ip link set lo up && cd /proc/sys/net/ipv4 && echo 1 > ip_forward && "
               "echo 0 > icmp_ratelimit && echo 1 > icmp_errors_use_inbound_ifaddr"_s);
}

bool RouterChain::Enter(int node) const { return setns(nodes_[node], CLONE_NEWNET) == 0; }

// The outer end of the cable is made in the next node.
bool RouterChain::Link(int node, const QString& network) {
  const QString next = u"/proc/%1/fd/%2"_s.arg(getpid()).arg(nodes_[node + 1]);
  return RunAt(node,
               u"ip link add name out type veth peer name in netns %1 && "
               "ip addr add %2.2/24 dev out && ip link set out up"_s.arg(next, network)) &&
         RunAt(node + 1, u"ip addr add %1.1/24 dev in && ip link set in up"_s.arg(network)) &&
         RunAt(node, u"ip route add default via %1.1"_s.arg(network));
}

// Back to the networks before, and the address that is looked for at the end.
void RouterChain::AddRoutes() {
  for (int node = 2; node < nodes_.size(); ++node) {
    for (int network = 0; network < node - 1; ++network) {
      RunAt(node, u"ip route add %1.0/24 via %2.2"_s.arg(networks_[network], networks_[node - 1]));
    }
  }
  if (nodes_.size() > 1) {
    RunAt(static_cast<int>(nodes_.size()) - 1, u"ip addr add 208.67.222.222/32 dev lo"_s);
  }
}

void RouterChain::Silence(int router) {
  RunAt(router, u"ip rule add from %1.1 blackhole priority 1"_s.arg(networks_[router - 1]));
  Enter(0);
}

int RouterChain::SocketOutside(int type) const {
  const int opened = Enter(1) ? socket(AF_INET, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0) : -1;
  Enter(0);
  return opened;
}

void RouterChain::AllowEchoes(bool allowed) {
  RunAt(0, u"echo '%1' > /proc/sys/net/ipv4/ping_group_range"_s.arg(allowed ? u"0 2147483647"_s
                                                                            : u"1 0"_s));
  Enter(0);
}

bool RouterChain::RunAt(int node, const QString& commands) const {
  if (!Enter(node)) {
    return false;
  }
  QProcess shell;
  shell.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  shell.start(u"sh"_s, {u"-c"_s, commands});
  return shell.waitForFinished() && shell.exitStatus() == QProcess::NormalExit &&
         shell.exitCode() == 0;
}

}  // namespace quayline::testing
