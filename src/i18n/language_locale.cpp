// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "i18n/language_locale.h"

#include <algorithm>

namespace quayline {

// The first word is the language; what follows tells files of one language apart.
QLocale LocaleOfLanguage(const QString& name) {
  const QString language = name.section(u' ', 0, 0, QString::SectionSkipEmpty);
  for (int each = QLocale::C + 1; each <= QLocale::LastLanguage; ++each) {
    const auto candidate = static_cast<QLocale::Language>(each);
    if (QLocale::languageToString(candidate).compare(language, Qt::CaseInsensitive) == 0) {
      return QLocale(candidate);
    }
  }
  return QLocale::c();
}

QString LanguageOfDesktop(const QLocale& desktop, const QStringList& names) {
  const auto found = std::ranges::find_if(names, [&desktop](const QString& name) {
    const QLocale locale = LocaleOfLanguage(name);
    return desktop.language() != QLocale::C && locale.language() == desktop.language() &&
           locale.script() == desktop.script();
  });
  return found == names.end() ? QString() : *found;
}

}  // namespace quayline
