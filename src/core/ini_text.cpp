// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/ini_text.h"

#include <QStringConverter>

#include <algorithm>

#include "core/text_bytes.h"

namespace quayline {

namespace {

constexpr QLatin1Char kEquals('=');

bool IsBlank(QChar c) { return c <= QLatin1Char(' '); }

bool IsQuote(QChar c) { return c == QLatin1Char('"') || c == QLatin1Char('\''); }

QStringView Trimmed(QStringView text) {
  while (!text.isEmpty() && IsBlank(text.front())) {
    text = text.sliced(1);
  }
  while (!text.isEmpty() && IsBlank(text.back())) {
    text.chop(1);
  }
  return text;
}

bool IsSame(QStringView a, QStringView b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

QString Unquoted(QStringView value) {
  if (value.size() >= 2 && IsQuote(value.front()) && value.front() == value.back()) {
    value = value.sliced(1, value.size() - 2);
  }
  return value.toString();
}

QString Quoted(const QString& value) {
  const auto needs_quotes = [](QChar c) { return IsBlank(c) || IsQuote(c); };
  if (value.isEmpty() || !(needs_quotes(value.front()) || needs_quotes(value.back()))) {
    return value;
  }
  return QLatin1Char('"') + value + QLatin1Char('"');
}

// The name between the brackets of a section's heading; null for any other line.
QString HeadingName(const QString& line) {
  const QStringView text = Trimmed(line);
  const qsizetype close = text.lastIndexOf(QLatin1Char(']'));
  if (!text.startsWith(QLatin1Char('[')) || close < 0) {
    return {};
  }
  const QStringView name = Trimmed(text.sliced(1, close - 1));
  return name.isEmpty() ? QStringLiteral("") : name.toString();
}

}  // namespace

IniText::IniText(const QByteArray& bytes) {
  if (bytes.startsWith("\xff\xfe")) {
    encoding_ = Encoding::kUtf16LittleEndian;
  } else if (bytes.startsWith("\xfe\xff")) {
    encoding_ = Encoding::kUtf16BigEndian;
  }
  unit_ = encoding_ == Encoding::kBytes ? 1 : 2;
  if (unit_ == 2 || bytes.startsWith("\xef\xbb\xbf")) {
    mark_ = bytes.first(unit_ == 2 ? 2 : 3);
  }
  Split(QByteArrayView(bytes).sliced(mark_.size()));
  const QByteArray line_feed = Encoded(QStringLiteral("\n"));
  const bool has_line_feeds = !lines_.isEmpty() && LineEnd(lines_.first()) == line_feed;
  line_end_ = has_line_feeds ? line_feed : Encoded(QStringLiteral("\r\n"));
}

QString IniText::Value(const QString& section, const QString& key) const {
  const qsizetype at = FindKey(FindSection(section), key);
  if (at < 0) {
    return {};
  }
  const QString line = Decoded(lines_.at(at));
  return Unquoted(Trimmed(QStringView(line).sliced(line.indexOf(kEquals) + 1)));
}

void IniText::SetValue(const QString& section, const QString& key, const QString& value) {
  const QByteArray line = Encoded(key + kEquals + Quoted(OnOneLine(value)));
  const Lines lines = FindSection(section);
  if (const qsizetype at = FindKey(lines, key); at >= 0) {
    lines_[at] = line + LineEnd(lines_.at(at));
    return;
  }
  if (lines.begin > 0) {
    const qsizetype at = AfterLastText(lines);
    EndLine(lines_[at - 1]);
    lines_.insert(at, line + line_end_);
    return;
  }
  if (!lines_.isEmpty()) {
    EndLine(lines_.last());
  }
  lines_.append(Encoded(QLatin1Char('[') + section + QLatin1Char(']')) + line_end_);
  lines_.append(line + line_end_);
}

void IniText::Split(QByteArrayView bytes) {
  qsizetype from = 0;
  for (qsizetype at = 0; at + unit_ <= bytes.size(); at += unit_) {
    const char16_t unit = UnitAt(bytes, at);
    const bool is_half_of_pair =
        unit == u'\r' && at + 2 * unit_ <= bytes.size() && UnitAt(bytes, at + unit_) == u'\n';
    if ((unit == u'\r' && !is_half_of_pair) || unit == u'\n') {
      lines_.append(bytes.sliced(from, at + unit_ - from).toByteArray());
      from = at + unit_;
    }
  }
  if (from < bytes.size()) {
    lines_.append(bytes.sliced(from).toByteArray());
  }
}

char16_t IniText::UnitAt(QByteArrayView bytes, qsizetype at) const {
  const auto first = static_cast<uchar>(bytes[at]);
  if (unit_ == 1) {
    return first;
  }
  const auto second = static_cast<uchar>(bytes[at + 1]);
  return encoding_ == Encoding::kUtf16LittleEndian ? first | second << 8 : first << 8 | second;
}

// Each line for itself: one stray line of another encoding leaves the others readable.
QString IniText::Decoded(const QByteArray& line) const {
  if (encoding_ == Encoding::kBytes) {
    return FromUtf8OrWindows1252(line);
  }
  QString text;
  for (qsizetype at = 0; at + 1 < line.size(); at += 2) {
    text += QChar(UnitAt(line, at));
  }
  return text;
}

QByteArray IniText::Encoded(const QString& text) const {
  if (encoding_ == Encoding::kBytes) {
    return text.toUtf8();
  }
  QStringEncoder encode(encoding_ == Encoding::kUtf16LittleEndian ? QStringEncoder::Utf16LE
                                                                  : QStringEncoder::Utf16BE);
  return encode(text);
}

QByteArray IniText::LineEnd(const QByteArray& line) const {
  for (const auto* end : {u"\r\n", u"\n", u"\r"}) {
    const QByteArray bytes = Encoded(QString::fromUtf16(end));
    if (line.size() % unit_ == 0 && line.endsWith(bytes)) {
      return bytes;
    }
  }
  return {};
}

void IniText::EndLine(QByteArray& line) const {
  if (line.size() % unit_ != 0) {
    line.append(
        '\0');  // The file ends inside a character: what follows must begin at a whole unit.
  }
  if (LineEnd(line).isEmpty()) {
    line.append(line_end_);
  }
}

IniText::Lines IniText::FindSection(const QString& section) const {
  Lines found;
  for (qsizetype at = 0; at < lines_.size(); ++at) {
    const QString name = HeadingName(Decoded(lines_.at(at)));
    if (name.isNull()) {
      continue;
    }
    if (found.begin > 0) {
      found.end = at;
      return found;
    }
    if (IsSame(name, section)) {
      found.begin = at + 1;
    }
  }
  found.end = found.begin > 0 ? lines_.size() : 0;
  return found;
}

qsizetype IniText::FindKey(Lines section, const QString& key) const {
  for (qsizetype at = section.begin; at < section.end; ++at) {
    const QString line = Decoded(lines_.at(at));
    const qsizetype equals = line.indexOf(kEquals);
    if (equals >= 0 && IsSame(Trimmed(QStringView(line).first(equals)), key)) {
      return at;
    }
  }
  return -1;
}

qsizetype IniText::AfterLastText(Lines section) const {
  qsizetype at = section.end;
  while (at > section.begin && Trimmed(Decoded(lines_.at(at - 1))).isEmpty()) {
    --at;
  }
  return at;
}

}  // namespace quayline
