// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/help_dialog.h"

#include <QFile>
#include <QPushButton>

#include "i18n/language_locale.h"
#include "ui_help_dialog.h"

// A library's resources are linked in by their name alone; the macro wants the global namespace.
static void LinkHelp() { Q_INIT_RESOURCE(help_pages); }

namespace quayline {

namespace {

constexpr qreal kMargin = 12;  // around the text

// Of the program's language, or English.
QString HelpFolder(const Translator& translator) {
  const QString code = LocaleOfLanguage(translator.Language()).name().section(u'_', 0, 0);
  const QString folder = QStringLiteral(":/quayline/help/%1/");
  const bool exists = QFile::exists(folder.arg(code) + QStringLiteral("index.md"));
  return folder.arg(exists ? code : QStringLiteral("en"));
}

}  // namespace

HelpDialog::HelpDialog(const Translator& translator, const QString& page, QWidget* parent)
    : QDialog(parent) {
  setAttribute(Qt::WA_DeleteOnClose);
  LinkHelp();
  Ui::HelpDialog form;
  form.setupUi(this);
  QTextBrowser* view = form.help_view;
  view->document()->setDocumentMargin(kMargin);
  view->setSource(
      QUrl(QStringLiteral("qrc") + HelpFolder(translator) + page + QStringLiteral(".md")),
      QTextDocument::MarkdownResource);
  // Links lead to other pages of the same folder only.
  connect(view, &QTextBrowser::anchorClicked, view, [view](const QUrl& link) {
    const QUrl target = view->source().resolved(link);
    if (target.scheme() == QLatin1String("qrc")) {
      view->setSource(target, QTextDocument::MarkdownResource);
    }
  });
  connect(form.back_button, &QPushButton::clicked, view, &QTextBrowser::backward);
  connect(view, &QTextBrowser::backwardAvailable, form.back_button, &QWidget::setEnabled);
}

}  // namespace quayline
