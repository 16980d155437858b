// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// What UniSock refuses, and what it reports.
struct SockError {
  int number = 0;
  QString description;
  QString source;  // the member concerned: "UniSock.Listen"
};

// The numbers that code compares or gives itself.
namespace sock_error {
inline constexpr int kAddressNotAvailable = 10049;
inline constexpr int kHostNotFound = 11001;
inline constexpr int kTryAgain = 11002;
inline constexpr int kLookupFailed = 11003;
inline constexpr int kNoAddress = 11004;
inline constexpr int kWrongState = 40006;
inline constexpr int kBadArgument = 40014;
inline constexpr int kBadType = 40018;
inline constexpr int kInvalidOperation = 40020;
}  // namespace sock_error

// The text of a number. For a number without one, the system's own text; else empty.
QString SockErrorText(int number);

// The number of an errno value. A value without one keeps its own.
int SockErrorNumber(int system_error);

// The number of a result of getaddrinfo().
int LookupErrorNumber(int lookup_error);

}  // namespace quayline
