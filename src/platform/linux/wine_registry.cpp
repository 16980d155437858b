// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/wine_registry.h"

#include <QByteArray>

namespace quayline {

namespace {

constexpr QByteArrayView kHeading = "WINE REGISTRY Version 2";
constexpr int kTextType = 1;
constexpr int kExpandableTextType = 2;
constexpr int kNumberType = 4;
constexpr int kTextListType = 7;
constexpr int kLongNumberType = 11;

// Takes the first line off `text`.
QByteArrayView TakeLine(QByteArrayView& text) {
  const qsizetype end = text.indexOf('\n');
  QByteArrayView line = end < 0 ? text : text.first(end);
  text = end < 0 ? QByteArrayView() : text.sliced(end + 1);
  if (line.endsWith('\r')) {
    line.chop(1);
  }
  return line;
}

// Takes up to `most` digits of `base` off `text` as the number of a UTF-16 unit.
std::optional<char16_t> TakeUnit(QByteArrayView& text, int base, int most) {
  int length = 0;
  uint unit = 0;
  for (; length < most && length < text.size(); ++length) {
    bool is_digit = false;
    const uint digit = QByteArray(1, text[length]).toUInt(&is_digit, base);
    if (!is_digit) {
      break;
    }
    unit = unit * static_cast<uint>(base) + digit;
  }
  text = text.sliced(length);
  return length > 0 ? std::optional(static_cast<char16_t>(unit)) : std::nullopt;
}

// Removes from `text`, which is not empty, what follows a backslash.
QChar TakeEscaped(QByteArrayView& text) {
  static constexpr QByteArrayView kLetters = "abtnvfre";
  static constexpr QByteArrayView kControls = "\a\b\t\n\v\f\r\x1b";
  if (const auto unit = TakeUnit(text, 8, 3)) {
    return QChar(*unit);
  }
  const char letter = text.front();
  text = text.sliced(1);
  if (letter == 'x') {
    return QChar(TakeUnit(text, 16, 4).value_or(u'x'));
  }
  const qsizetype control = kLetters.indexOf(letter);
  return QLatin1Char(control < 0 ? letter : kControls[control]);
}

// Takes a text with escapes and the letter that closes it off `text`; nothing when it is not
// closed.
std::optional<QString> TakeText(QByteArrayView& text, char closing) {
  QString taken;
  while (!text.isEmpty()) {
    const char c = text.front();
    text = text.sliced(1);
    if (c == closing) {
      return taken;
    }
    if (c == '\\' && !text.isEmpty()) {
      taken += TakeEscaped(text);
    } else {
      taken += QLatin1Char(c);
    }
  }
  return std::nullopt;
}

QString UpToNul(const QString& text) { return text.left(text.indexOf(QChar::Null)); }

// `rest` is what follows the line: hex digits continue there after a backslash.
QByteArray HexBytes(QByteArrayView line, QByteArrayView rest) {
  QByteArray digits;
  while (line.endsWith('\\')) {
    digits.append(line.chopped(1));
    line = TakeLine(rest);
  }
  digits.append(line);
  return QByteArray::fromHex(digits);
}

std::optional<QString> FromBytes(const QByteArray& bytes, int type) {
  QString units;
  quint64 number = 0;
  for (qsizetype at = 0; at + 1 < bytes.size(); at += 2) {
    units += QChar(static_cast<uchar>(bytes[at]), static_cast<uchar>(bytes[at + 1]));
  }
  for (qsizetype at = qMin<qsizetype>(bytes.size(), 8) - 1; at >= 0; --at) {
    number = number << 8 | static_cast<uchar>(bytes[at]);
  }
  switch (type) {
    case kTextType:
    case kExpandableTextType:
    case kTextListType:
      return UpToNul(units);
    case kNumberType:
    case kLongNumberType:
      return bytes.size() == (type == kNumberType ? 4 : 8) ? std::optional(QString::number(number))
                                                           : std::nullopt;
    default:
      return std::nullopt;
  }
}

// The value that `line` has after "=".
std::optional<QString> ReadValue(QByteArrayView line, QByteArrayView rest) {
  const qsizetype colon = line.startsWith('"') ? -1 : line.indexOf(':');
  const QByteArrayView kind = line.first(qMax<qsizetype>(colon, 0));
  line = line.sliced(colon + 1);
  if (kind.isEmpty() || kind.startsWith("str")) {
    const bool is_quoted = line.startsWith('"');
    line = line.sliced(is_quoted ? 1 : 0);
    const auto text = is_quoted ? TakeText(line, '"') : std::nullopt;
    return text ? std::optional(UpToNul(*text)) : std::nullopt;
  }
  if (kind == QByteArrayView("dword")) {
    bool is_number = false;
    const uint number = line.toByteArray().toUInt(&is_number, 16);
    return is_number ? std::optional(QString::number(number)) : std::nullopt;
  }
  if (kind.startsWith("hex(") && kind.endsWith(')')) {
    const QByteArray type = kind.sliced(4).chopped(1).toByteArray();
    return FromBytes(HexBytes(line, rest), type.toInt(nullptr, 16));
  }
  return std::nullopt;
}

bool IsSame(const std::optional<QString>& found, const QString& wanted) {
  return found && found->compare(wanted, Qt::CaseInsensitive) == 0;
}

// Takes the name and the "=" off a value's line; nothing for any other line.
std::optional<QString> TakeName(QByteArrayView& line) {
  std::optional<QString> name;
  if (line.startsWith('@')) {
    name = QString();
    line = line.sliced(1);
  } else if (line.startsWith('"')) {
    line = line.sliced(1);
    name = TakeText(line, '"');
  }
  if (!line.startsWith('=')) {
    return std::nullopt;
  }
  line = line.sliced(1);
  return name;
}

}  // namespace

std::optional<QString> FindWineValue(QByteArrayView hive, const QString& key, const QString& name) {
  if (TakeLine(hive) != kHeading) {
    return std::nullopt;
  }
  bool is_in_key = false;
  while (!hive.isEmpty()) {
    QByteArrayView line = TakeLine(hive);
    if (line.startsWith('[')) {
      line = line.sliced(1);
      is_in_key = IsSame(TakeText(line, ']'), key);
    } else if (is_in_key && IsSame(TakeName(line), name)) {
      return ReadValue(line, hive);
    }
  }
  return std::nullopt;
}

}  // namespace quayline
