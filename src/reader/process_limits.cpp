// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "reader/process_limits.h"

#include <cerrno>
#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace quayline::reader {

namespace {

#ifdef QUAYLINE_SANITIZE
// It reserves terabytes of addresses, and looks into its own process at the end.
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

void Limit(int resource, rlim_t value) {
  const rlimit limit = {value, value};
  setrlimit(static_cast<__rlimit_resource>(resource), &limit);
}

// By name: not every architecture has every call, and its number differs.
constexpr const char* kAllowed[] = {
    // memory
    "brk", "madvise", "mmap", "mmap2", "mprotect", "mremap", "munmap",
    // open files, and files to read
    "access", "close", "dup", "faccessat", "faccessat2", "fcntl", "fcntl64", "fstat", "fstat64",
    "fstatfs", "getcwd", "getdents", "getdents64", "_llseek", "lseek", "lstat", "lstat64",
    "newfstatat", "fstatat64", "poll", "ppoll", "pread64", "read", "readlink", "readlinkat",
    "readv", "stat", "stat64", "statfs", "statx", "write", "writev",
    // time, random numbers, identity
    "clock_getres", "clock_gettime", "clock_gettime64", "clock_nanosleep", "getegid", "geteuid",
    "getgid", "getpid", "getrandom", "gettid", "gettimeofday", "getuid", "nanosleep", "sysinfo",
    "time", "uname",
    // threads of this process, signals, the end
    "exit", "exit_group", "futex", "futex_time64", "get_robust_list", "rseq", "rt_sigaction",
    "rt_sigprocmask", "rt_sigreturn", "sched_getaffinity", "sched_yield", "set_robust_list",
    "set_tid_address", "sigaltstack", "sigreturn", "tgkill"};

void Allow(scmp_filter_ctx filter, const char* name) {
  const int call = seccomp_syscall_resolve_name(name);
  if (call != __NR_SCMP_ERROR) {
    seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 0);
  }
}

}  // namespace

void LimitProcess(uint64_t memory, unsigned seconds) {
  constexpr rlim_t kOpenFiles = 64;
  prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
  if (!kIsSanitized) {
    Limit(RLIMIT_AS, memory);
  }
  Limit(RLIMIT_CPU, seconds);
  Limit(RLIMIT_CORE, 0);
  Limit(RLIMIT_FSIZE, 0);
  Limit(RLIMIT_NOFILE, kOpenFiles);
}

void FilterSystemCalls() {
  if (kIsSanitized) {
    return;
  }
  const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ERRNO(EPERM));
  if (filter == nullptr) {
    return;
  }
  for (const char* name : kAllowed) {
    Allow(filter, name);
  }
  seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(open), 1,
                   SCMP_A1(SCMP_CMP_MASKED_EQ, O_ACCMODE | O_CREAT, O_RDONLY));
  seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(openat), 1,
                   SCMP_A2(SCMP_CMP_MASKED_EQ, O_ACCMODE | O_CREAT, O_RDONLY));
  // Large pictures are scaled by several threads. The newer call hides its flags from a filter; the
  // C library uses the older one when the error is that the call does not exist.
  seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0);
  seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(clone), 1,
                   SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD));
  seccomp_load(filter);
  seccomp_release(filter);
}

}  // namespace quayline::reader
