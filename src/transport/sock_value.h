// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace quayline {

// An amount of money, in steps of a ten-thousandth.
struct SockCurrency {
  qint64 ten_thousandths = 0;
  bool operator==(const SockCurrency&) const = default;
};

// A date as the number of days since 1899-12-30, with the time as the fraction.
struct SockDate {
  double days = 0;
  bool operator==(const SockDate&) const = default;
};

// The type codes of the values below. An array adds kArray to the code of its elements.
namespace sock_type {
inline constexpr int kInt16 = 2;
inline constexpr int kInt32 = 3;
inline constexpr int kSingle = 4;
inline constexpr int kDouble = 5;
inline constexpr int kCurrency = 6;
inline constexpr int kDate = 7;
inline constexpr int kText = 8;
inline constexpr int kBoolean = 11;
inline constexpr int kByte = 17;
inline constexpr int kArray = 0x2000;
}  // namespace sock_type

// What UniSock sends, and what received bytes are read as. Numbers are little-endian; a boolean has
// two bytes. Text is in the system's code page. An array has one element after the other; an array
// of texts is one text, with CR LF between them.
using SockValue =
    std::variant<qint16, qint32, float, double, SockCurrency, SockDate, QString, bool, quint8,
                 QList<qint16>, QList<qint32>, QList<float>, QList<double>, QList<SockCurrency>,
                 QList<SockDate>, QStringList, QList<bool>, QByteArray>;

// The code of the type that `value` has.
int TypeOf(const SockValue& value);

// How many of `available` bytes a value of this type takes: a single value its own size at most, an
// array whole elements, a text all. Nothing for a type that SockValue does not have.
std::optional<qsizetype> BytesOfType(int type, qsizetype available);

QByteArray ToBytes(const SockValue& value);

// The value of this type that `bytes` hold. Where a single value lacks bytes, they count as 0. An
// array of texts is split at CR LF, else at LF, else at CR, else at NUL. `type` is one of
// SockValue's.
SockValue FromBytes(QByteArray bytes, int type);

}  // namespace quayline
