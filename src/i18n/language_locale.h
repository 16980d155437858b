// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>

namespace quayline {

// The locale of a language by its English name, as language files are called: "German",
// "Chinese Simplified". The C locale for a name that is no language.
QLocale LocaleOfLanguage(const QString& name);

// Which of the languages `names` is that of the desktop; empty if none of them is.
QString LanguageOfDesktop(const QLocale& desktop, const QStringList& names);

}  // namespace quayline
