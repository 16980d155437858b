// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/sock_error.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <netdb.h>

namespace quayline {

namespace {

struct ErrorText {
  int number;
  const char* text;
};

constexpr ErrorText kTexts[] = {
    {6, "Specified event object handle is invalid."},
    {7, "Out of memory."},
    {8, "Insufficient memory available."},
    {87, "One or more parameters are invalid."},
    {380, "Invalid property value."},
    {383, "Property is read-only."},
    {394, "Property is write-only."},
    {995, "Overlapped operation aborted."},
    {996, "Overlapped I/O event object not in signaled state."},
    {997, "Overlapped operations will complete later."},
    {10004, "Interrupted function call."},
    {10009, "File handle is not valid."},
    {10013, "Permission denied."},
    {10014, "Bad address."},
    {10022, "Invalid argument."},
    {10024, "Too many open files."},
    {10035, "Resource temporarily unavailable."},
    {10036, "Operation now in progress."},
    {10037, "Operation already in progress."},
    {10038, "Socket operation on nonsocket."},
    {10039, "Destination address required."},
    {10040, "Message too long."},
    {10041, "Protocol wrong type for socket."},
    {10042, "Bad protocol option."},
    {10043, "Protocol not supported."},
    {10044, "Socket type not supported."},
    {10045, "Operation not supported."},
    {10046, "Protocol family not supported."},
    {10047, "Address family not supported by protocol family."},
    {10048, "Address already in use."},
    {10049, "Cannot assign requested address."},
    {10050, "Network is down."},
    {10051, "Network is unreachable."},
    {10052, "Network dropped connection on reset."},
    {10053, "Software caused connection abort."},
    {10054, "Connection reset by peer."},
    {10055, "No buffer space available."},
    {10056, "Socket is already connected."},
    {10057, "Socket is not connected."},
    {10058, "Cannot send after socket shutdown."},
    {10059, "Too many references."},
    {10060, "Connection timed out."},
    {10061, "Connection refused."},
    {10062, "Cannot translate name."},
    {10063, "Name too long."},
    {10064, "Host is down."},
    {10065, "No route to host."},
    {10066, "Directory not empty."},
    {10067, "Too many processes."},
    {10068, "User quota exceeded."},
    {10069, "Disk quota exceeded."},
    {10070, "Stale file handle reference."},
    {10071, "Item is remote."},
    {10091, "Network subsystem is unavailable."},
    {10092, "Winsock.dll version out of range."},
    {10093, "Successful WSAStartup not yet performed."},
    {10101, "Graceful shutdown in progress."},
    {10102, "No more results."},
    {10103, "Call has been canceled."},
    {10104, "Procedure call table is invalid."},
    {10105, "Service provider is invalid."},
    {10106, "Service provider failed to initialize."},
    {10107, "System call failure."},
    {10108, "Service not found."},
    {10109, "Class type not found."},
    {10110, "No more results."},
    {10111, "Call was canceled."},
    {10112, "Database query was refused."},
    {11001, "Host not found."},
    {11002, "Nonauthoritative host not found."},
    {11003, "This is a nonrecoverable error."},
    {11004, "Valid name, no data record of requested type."},
    {11005, "QOS receivers."},
    {11006, "QOS senders."},
    {11007, "No QOS senders."},
    {11008, "QOS no receivers."},
    {11009, "QOS request confirmed."},
    {11010, "QOS admission error."},
    {11011, "QOS policy failure."},
    {11012, "QOS bad style."},
    {11013, "QOS bad object."},
    {11014, "QOS traffic control error."},
    {11015, "QOS generic error."},
    {11016, "QOS service type error."},
    {11017, "QOS flowspec error."},
    {11018, "Invalid QOS provider buffer."},
    {11019, "Invalid QOS filter style."},
    {11020, "Invalid QOS filter type."},
    {11021, "Incorrect QOS filter count."},
    {11022, "Invalid QOS object length."},
    {11023, "Incorrect QOS flow count."},
    {11024, "Unrecognized QOS object."},
    {11025, "Invalid QOS policy object."},
    {11026, "Invalid QOS flow descriptor."},
    {11027, "Invalid QOS provider-specific flowspec."},
    {11028, "Invalid QOS provider-specific filterspec."},
    {11029, "Invalid QOS shape discard mode object."},
    {11030, "Invalid QOS shaping rate object."},
    {11031, "Reserved policy QOS element type."},
    {40006, "Wrong protocol or connection state for the requested transaction or request."},
    {40014,
     "The argument passed to a function was not in the correct format or in the specified range."},
    {40017, "Successful."},
    {40018, "Unsupported variant types."},
    {40020, "Invalid operation at current state."},
    {40021, "Argument is out of range."},
    {40026, "Wrong protocol for the requested transaction or request."},
};
static_assert(std::ranges::is_sorted(kTexts, {}, &ErrorText::number));

struct SystemError {
  int system;
  int number;
};

constexpr SystemError kSystemErrors[] = {
    {EINTR, 10004},        {EBADF, 10009},           {EACCES, 10013},
    {EPERM, 10013},        {EFAULT, 10014},          {EINVAL, 10022},
    {EMFILE, 10024},       {ENFILE, 10024},          {EWOULDBLOCK, 10035},
    {EINPROGRESS, 10036},  {EALREADY, 10037},        {ENOTSOCK, 10038},
    {EDESTADDRREQ, 10039}, {EMSGSIZE, 10040},        {EPROTOTYPE, 10041},
    {ENOPROTOOPT, 10042},  {EPROTONOSUPPORT, 10043}, {ESOCKTNOSUPPORT, 10044},
    {EOPNOTSUPP, 10045},   {EPFNOSUPPORT, 10046},    {EAFNOSUPPORT, 10047},
    {EADDRINUSE, 10048},   {EADDRNOTAVAIL, 10049},   {ENETDOWN, 10050},
    {ENETUNREACH, 10051},  {ENETRESET, 10052},       {ECONNABORTED, 10053},
    {ECONNRESET, 10054},   {ENOBUFS, 10055},         {ENOMEM, 10055},
    {EISCONN, 10056},      {ENOTCONN, 10057},        {ESHUTDOWN, 10058},
    {EPIPE, 10058},        {ETOOMANYREFS, 10059},    {ETIMEDOUT, 10060},
    {ECONNREFUSED, 10061}, {ELOOP, 10062},           {ENAMETOOLONG, 10063},
    {EHOSTDOWN, 10064},    {EHOSTUNREACH, 10065},    {ENOTEMPTY, 10066},
    {EUSERS, 10068},       {EDQUOT, 10069},          {ESTALE, 10070},
    {EREMOTE, 10071},
};

}  // namespace

QString SockErrorText(int number) {
  const auto* const found = std::ranges::lower_bound(kTexts, number, {}, &ErrorText::number);
  if (found != std::end(kTexts) && found->number == number) {
    return QString::fromLatin1(found->text);
  }
  const char* const name = strerrordesc_np(number);
  return number == 0 || name == nullptr ? QString() : QString::fromLatin1(name);
}

int SockErrorNumber(int system_error) {
  const auto* const found = std::ranges::find(kSystemErrors, system_error, &SystemError::system);
  return found == std::end(kSystemErrors) ? system_error : found->number;
}

int LookupErrorNumber(int lookup_error) {
  switch (lookup_error) {
    case EAI_NONAME:
      return sock_error::kHostNotFound;
    case EAI_AGAIN:
      return sock_error::kTryAgain;
    case EAI_NODATA:
      return sock_error::kNoAddress;
    default:
      return sock_error::kLookupFailed;
  }
}

}  // namespace quayline
