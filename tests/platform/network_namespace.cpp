// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/network_namespace.h"

#include <QStandardPaths>

#include <cstdio>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quayline::testing {

namespace {

constexpr int kNotAllowed = 77;

bool RunIp(const QByteArray& program, const QByteArray& commands) {
  FILE* ip = popen((program + " -batch - >/dev/null").constData(), "w");
  if (ip == nullptr) {
    return false;
  }
  fwrite(commands.constData(), 1, static_cast<std::size_t>(commands.size()), ip);
  return pclose(ip) == 0;
}

[[noreturn]] void BeChild(int out, const QByteArray& program, const QByteArray& commands,
                          const std::function<QString()>& look) {
  const int flags = geteuid() == 0 ? CLONE_NEWNET : CLONE_NEWNET | CLONE_NEWUSER;
  if (unshare(flags) != 0) {
    _exit(kNotAllowed);
  }
  const QByteArray seen =
      RunIp(program, commands) ? look().toUtf8() : QByteArrayLiteral("setup failed");
  const bool is_written = write(out, seen.constData(), static_cast<std::size_t>(seen.size())) ==
                          static_cast<ssize_t>(seen.size());
  _exit(is_written ? 0 : 1);
}

}  // namespace

std::optional<QString> InNetworkOfItsOwn(const QByteArray& commands,
                                         const std::function<QString()>& look) {
  const QString program = QStandardPaths::findExecutable(
      QStringLiteral("ip"), {QStringLiteral("/sbin"), QStringLiteral("/usr/sbin")});
  int ends[2] = {};
  if (program.isEmpty() || pipe(ends) != 0) {
    return std::nullopt;
  }
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    BeChild(ends[1], program.toLocal8Bit(), commands, look);
  }
  close(ends[1]);
  QByteArray seen;
  char buffer[4096];
  for (ssize_t size = 0; (size = read(ends[0], buffer, sizeof(buffer))) > 0;) {
    seen.append(buffer, size);
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status) && WEXITSTATUS(status) == kNotAllowed) {
    return std::nullopt;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? QString::fromUtf8(seen)
                                                       : QStringLiteral("the child died");
}

}  // namespace quayline::testing
