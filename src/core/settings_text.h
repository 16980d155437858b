// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace quayline {

enum class SettingsFormat {
  kIni,    // key "section/key"
  kJson,   // key "member/0/member" of the last object of the file, which may follow others
  kXml,    // key "element/element" below the root
  kLines,  // "key value", "key = value" or "key: value" lines, in which "#", ";" and "//" begin a
           // comment; keys are found ignoring case
};

// The texts that a settings file of another program holds for a key, in the order of the file;
// empty if it holds none. Numbers and the words true and false of JSON are given as text. The bytes
// are untrusted: any bytes give an answer, in time proportional to their number.
QStringList SettingsValues(SettingsFormat format, const QByteArray& bytes, const QString& key);

}  // namespace quayline
