// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "firewall_helper/privileges.h"

#include <QtGlobal>

#include <cstdlib>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quayline {

namespace {

constexpr quint64 Bit(int capability) { return quint64{1} << capability; }

bool KeepCapabilities(quint64 kept) {
  for (int capability = 0; prctl(PR_CAPBSET_READ, capability) >= 0; ++capability) {
    if ((kept & Bit(capability)) == 0 && prctl(PR_CAPBSET_DROP, capability) != 0) {
      return false;
    }
  }
  __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
  __user_cap_data_struct now[2] = {};
  if (syscall(SYS_capget, &header, now) != 0) {
    return false;
  }
  for (int half = 0; half < 2; ++half) {
    const auto mask = static_cast<quint32>(kept >> (32 * half)) & now[half].permitted;
    now[half] = {.effective = mask, .permitted = mask, .inheritable = mask};
  }
  return syscall(SYS_capset, &header, now) == 0;
}

}  // namespace

bool DropRights(NeededRights needed) {
  constexpr quint64 kNetwork = Bit(CAP_NET_ADMIN) | Bit(CAP_NET_RAW);
  constexpr quint64 kFiles = Bit(CAP_DAC_OVERRIDE) | Bit(CAP_FOWNER) | Bit(CAP_CHOWN);
  const rlimit no_core{};
  clearenv();
  umask(022);
  return setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1) == 0 && setenv("LC_ALL", "C", 1) == 0 &&
         chdir("/") == 0 && setrlimit(RLIMIT_CORE, &no_core) == 0 &&
         KeepCapabilities(needed == NeededRights::kNetworkOnly ? kNetwork : kNetwork | kFiles) &&
         prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
}

}  // namespace quayline
