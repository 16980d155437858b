// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

namespace quayline {

// One key of an INI file, as the profile calls of the field read and write it. Section and key are
// found ignoring case; a line is split at its first "="; blanks around the key and the value are
// cut, and one pair of quotes around the whole value is taken off, so values that begin or end with
// a blank or a quote are written inside quotes. UTF-8 and UTF-16 (with its mark) are read, and
// bytes that are neither as Windows-1252.

// At most 255 characters; a missing file, section or key gives "". A file of more than 4 MB is
// treated as missing.
QString ReadIniValue(const QString& section, const QString& key, const QString& file_name);

struct IniValue {
  QString section;
  QString key;
  QString value;
};

// Writes one key and keeps every other line of the file as it is; creates the file (mode 0600), the
// section and the key where they are missing. Line breaks in the value become blanks. False when
// the file could not be written: the old file then stays.
bool WriteIniValue(const QString& section, const QString& key, const QString& value,
                   const QString& file_name);
// As WriteIniValue(), for several keys in one write: the file changes as a whole or not at all.
bool WriteIniValues(const QList<IniValue>& values, const QString& file_name);

}  // namespace quayline
