// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/sock_value.h"

#include <QtEndian>

#include <bit>
#include <cstring>
#include <type_traits>
#include <utility>

namespace quayline {

namespace {

using sock_type::kArray;

constexpr quint16 kTrue = 0xFFFF;

// The bytes of a single value on the wire, as an unsigned number, and back.
quint16 ToWire(qint16 value) { return static_cast<quint16>(value); }
quint32 ToWire(qint32 value) { return static_cast<quint32>(value); }
quint32 ToWire(float value) { return std::bit_cast<quint32>(value); }
quint64 ToWire(double value) { return std::bit_cast<quint64>(value); }
quint64 ToWire(SockCurrency value) { return static_cast<quint64>(value.ten_thousandths); }
quint64 ToWire(SockDate value) { return ToWire(value.days); }
quint16 ToWire(bool value) { return value ? kTrue : quint16{0}; }
quint8 ToWire(quint8 value) { return value; }

void FromWire(quint16 wire, qint16& value) { value = static_cast<qint16>(wire); }
void FromWire(quint32 wire, qint32& value) { value = static_cast<qint32>(wire); }
void FromWire(quint32 wire, float& value) { value = std::bit_cast<float>(wire); }
void FromWire(quint64 wire, double& value) { value = std::bit_cast<double>(wire); }
void FromWire(quint64 wire, SockCurrency& value) {
  value.ten_thousandths = static_cast<qint64>(wire);
}
void FromWire(quint64 wire, SockDate& value) { FromWire(wire, value.days); }
void FromWire(quint16 wire, bool& value) { value = wire != 0; }
void FromWire(quint8 wire, quint8& value) { value = wire; }

template <typename T>
constexpr qsizetype kWireSize = sizeof(decltype(ToWire(T{})));

template <typename T>
void AppendSingle(QByteArray& bytes, T value) {
  const auto wire = qToLittleEndian(ToWire(value));
  bytes.append(reinterpret_cast<const char*>(&wire), sizeof wire);
}

template <typename T>
T ReadSingle(QByteArrayView bytes) {
  decltype(ToWire(T{})) wire = 0;
  std::memcpy(&wire, bytes.data(), std::min<size_t>(sizeof wire, bytes.size()));
  T value{};
  FromWire(qFromLittleEndian(wire), value);
  return value;
}

template <typename T>
QList<T> ReadArray(QByteArrayView bytes) {
  QList<T> array;
  array.reserve(bytes.size() / kWireSize<T>);
  for (; bytes.size() >= kWireSize<T>; bytes = bytes.sliced(kWireSize<T>)) {
    array.append(ReadSingle<T>(bytes));
  }
  return array;
}

QStringList SplitText(const QString& text) {
  for (const QStringView end : {u"\r\n", u"\n", u"\r"}) {
    if (text.contains(end)) {
      return text.split(end.toString());
    }
  }
  return text.split(QChar(0));
}

// Calls `visit` with a value of the single type of that code; false for any other code.
bool VisitSingle(int type, auto&& visit) {
  switch (type) {
    case sock_type::kInt16:
      return visit(qint16{}), true;
    case sock_type::kInt32:
      return visit(qint32{}), true;
    case sock_type::kSingle:
      return visit(float{}), true;
    case sock_type::kDouble:
      return visit(double{}), true;
    case sock_type::kCurrency:
      return visit(SockCurrency{}), true;
    case sock_type::kDate:
      return visit(SockDate{}), true;
    case sock_type::kBoolean:
      return visit(bool{}), true;
    case sock_type::kByte:
      return visit(quint8{}), true;
    default:
      return false;
  }
}

}  // namespace

int TypeOf(const SockValue& value) {
  using namespace sock_type;
  constexpr int kCodes[] = {kInt16,
                            kInt32,
                            kSingle,
                            kDouble,
                            kCurrency,
                            kDate,
                            kText,
                            kBoolean,
                            kByte,
                            kArray | kInt16,
                            kArray | kInt32,
                            kArray | kSingle,
                            kArray | kDouble,
                            kArray | kCurrency,
                            kArray | kDate,
                            kArray | kText,
                            kArray | kBoolean,
                            kArray | kByte};
  static_assert(std::size(kCodes) == std::variant_size_v<SockValue>);
  return kCodes[value.index()];
}

std::optional<qsizetype> BytesOfType(int type, qsizetype available) {
  const int element = type & ~kArray;
  if (element == sock_type::kText) {
    return available;
  }
  std::optional<qsizetype> bytes;
  VisitSingle(element, [&](auto single) {
    constexpr qsizetype kSize = kWireSize<decltype(single)>;
    bytes = type == element ? std::min(kSize, available) : available / kSize * kSize;
  });
  return bytes;
}

QByteArray ToBytes(const SockValue& value) {
  return std::visit(
      [](const auto& held) -> QByteArray {
        using T = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<T, QByteArray>) {
          return held;
        } else if constexpr (std::is_same_v<T, QString>) {
          return held.toLocal8Bit();
        } else if constexpr (std::is_same_v<T, QStringList>) {
          return held.join(QStringLiteral("\r\n")).toLocal8Bit();
        } else {
          QByteArray bytes;
          if constexpr (requires { held.begin(); }) {
            for (const auto& element : held) {
              AppendSingle(bytes, element);
            }
          } else {
            AppendSingle(bytes, held);
          }
          return bytes;
        }
      },
      value);
}

SockValue FromBytes(QByteArray bytes, int type) {
  switch (type) {
    case sock_type::kText:
      return QString::fromLocal8Bit(bytes);
    case kArray | sock_type::kText:
      return SplitText(QString::fromLocal8Bit(bytes));
    case kArray | sock_type::kByte:
      return bytes;
    default:
      break;
  }
  SockValue value;
  VisitSingle(type & ~kArray, [&](auto single) {
    using T = decltype(single);
    if ((type & kArray) == 0) {
      value = ReadSingle<T>(bytes);
    } else if constexpr (!std::is_same_v<T, quint8>) {
      value = ReadArray<T>(bytes);
    }
  });
  return value;
}

}  // namespace quayline
