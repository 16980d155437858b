// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/sock_text.h"

#include <cstring>

namespace quayline {

namespace {

constexpr QLatin1String kEnds[] = {QLatin1String("\r\n"), QLatin1String("\n"), QLatin1String("\r")};

SockLines TakeWideLines(QByteArrayView received) {
  QString text(received.size() / 2, Qt::Uninitialized);
  std::memcpy(text.data(), received.data(), static_cast<size_t>(text.size()) * 2);
  SockLines result;
  for (const QLatin1String end : kEnds) {
    if (!text.contains(end)) {
      continue;
    }
    QStringList pieces = text.split(end);
    result.taken = (text.size() - pieces.takeLast().size()) * 2;
    for (const QString& piece : pieces) {
      result.lines.append({.text = piece, .format = 1, .is_not_utf8 = true});
    }
    break;
  }
  return result;
}

SockLine Decode(QByteArrayView line) {
  const bool is_utf8 = IsUtf8(line);
  return {.text = is_utf8 ? QString::fromUtf8(line) : QString::fromLocal8Bit(line),
          .format = 2,
          .is_not_utf8 = !is_utf8};
}

// How many bytes follow a lead byte. None for a single byte.
int Followers(quint8 lead) {
  constexpr struct {
    int first;
    int followers;
  } kLeads[] = {{254, 0}, {252, 5}, {248, 4}, {240, 3}, {224, 2}, {192, 1}, {0, 0}};
  const auto* row = kLeads;
  while (lead < row->first) {
    ++row;
  }
  return row->followers;
}

bool IsFollower(char byte) { return (static_cast<quint8>(byte) & 0xC0U) == 0x80U; }

}  // namespace

bool IsUtf8(QByteArrayView line) {
  for (qsizetype i = 0; i < line.size();) {
    if (IsFollower(line[i])) {
      return false;
    }
    const qsizetype end = std::min(line.size(), i + 1 + Followers(static_cast<quint8>(line[i])));
    for (++i; i < end; ++i) {
      if (!IsFollower(line[i])) {
        return false;
      }
    }
  }
  return !line.isEmpty();
}

SockLines TakeLines(QByteArrayView received) {
  if (SockLines wide = TakeWideLines(received); wide.taken > 0) {
    return wide;
  }
  SockLines result;
  for (const QLatin1String each : kEnds) {
    const QByteArrayView end(each.data(), each.size());
    qsizetype found = received.indexOf(end);
    for (; found >= 0; found = received.indexOf(end, result.taken)) {
      result.lines.append(Decode(received.sliced(result.taken, found - result.taken)));
      result.taken = found + end.size();
    }
    if (result.taken > 0) {
      break;
    }
  }
  return result;
}

}  // namespace quayline
