// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace quayline {

// The lines of an INI file as bytes. A change touches one line; all others are given back as they
// came, whatever they hold.
class IniText final {
 public:
  explicit IniText(const QByteArray& bytes);

  // As ReadIniValue() finds it, of any length.
  QString Value(const QString& section, const QString& key) const;
  // Changes the key's line, or adds it after the last line of its section, or adds both.
  void SetValue(const QString& section, const QString& key, const QString& value);

  QByteArray Bytes() const { return mark_ + lines_.join(); }

 private:
  enum class Encoding { kBytes, kUtf16LittleEndian, kUtf16BigEndian };

  // Line numbers; `end` is the number after the last one.
  struct Lines {
    qsizetype begin = 0;
    qsizetype end = 0;
  };

  void Split(QByteArrayView bytes);
  char16_t UnitAt(QByteArrayView bytes, qsizetype at) const;
  QString Decoded(const QByteArray& line) const;
  QByteArray Encoded(const QString& text) const;
  QByteArray LineEnd(const QByteArray& line) const;
  void EndLine(QByteArray& line) const;
  // The lines below the section's heading; `begin` is 0 where there is no such section.
  Lines FindSection(const QString& section) const;
  // The line of the key, or -1.
  qsizetype FindKey(Lines section, const QString& key) const;
  qsizetype AfterLastText(Lines section) const;

  Encoding encoding_ = Encoding::kBytes;
  qsizetype unit_ = 1;  // bytes
  QByteArray mark_;
  QByteArray line_end_;   // of lines that are added
  QByteArrayList lines_;  // each with its line end
};

}  // namespace quayline
