// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/language_choice.h"

#include "i18n/language_locale.h"
#include "ui/main/main_messages.h"

namespace quayline {

LanguageChoice::LanguageChoice(AppContext& context, Prompts& prompts, QComboBox* box,
                               QWidget* main_window)
    : QObject(main_window),
      context_(context),
      prompts_(prompts),
      box_(box),
      main_window_(main_window) {
  connect(box_, &QComboBox::textActivated, this, &LanguageChoice::Use);
}

void LanguageChoice::Show(const QStringList& languages, const QString& current) {
  box_->clear();
  box_->addItems(languages);
  box_->setCurrentText(current);
}

void LanguageChoice::Use(const QString& choice) {
  context_.settings.SetValue(setting::kLanguage, choice);
  context_.translator.Choose(choice);
}

// The question and its answers are in the language that is offered.
void LanguageChoice::OfferDesktopLanguage() {
  if (context_.settings.IsSet(setting::kLanguage)) {
    return;
  }
  const QStringList choices = context_.translator.AvailableLanguages();
  QStringList names;
  for (const QString& choice : choices) {
    names.append(context_.translator.LanguageOf(choice));
  }
  const qsizetype offered = names.indexOf(LanguageOfDesktop(context_.desktop_locale, names));
  if (offered <= 0) {
    return;  // unknown, or English
  }
  Translator texts{QString()};
  texts.SetFolder(context_.translator.Folder());
  texts.SetLanguage(names.at(offered));
  const QString own_name = choices.at(offered).section(QStringLiteral(" | "), 1);
  prompts_.AskChoice(main_window_, texts.Text(message::kLanguageTitle),
                     texts.Text(message::kLanguageQuestion).arg(own_name),
                     {QStringLiteral("English"), own_name},
                     [this, choice = choices.at(offered)](qsizetype answer) {
                       const QString used = answer == 1 ? choice : QString::fromLatin1(kEnglish);
                       box_->setCurrentText(used);
                       Use(used);
                     });
}

}  // namespace quayline
