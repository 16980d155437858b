// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/prompts.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

#include "ui/toolkit/login_dialog.h"
#include "ui/toolkit/page_dialog.h"
#include "ui/toolkit/theme.h"

namespace quayline {

namespace {

constexpr int kIconSize = 40;

QMessageBox* MakeBox(QWidget* window, QMessageBox::Icon icon, const QString& title,
                     const QString& text, QMessageBox::StandardButtons buttons) {
  // The program's name follows the title.
  auto* box = new QMessageBox(icon, title.endsWith(QLatin1Char(':')) ? title.chopped(1) : title,
                              text, buttons, window);
  // Messages quote what the user typed and what pages sent: none of it may be shown as markup.
  box->setTextFormat(Qt::PlainText);
  box->setTextInteractionFlags(Qt::TextSelectableByMouse);
  box->setIconPixmap(
      ThemeIcon(icon == QMessageBox::Question ? QStringLiteral("help") : QStringLiteral("info"),
                QPalette::Link)
          .pixmap(QSize(kIconSize, kIconSize), box->devicePixelRatioF()));
  box->setAttribute(Qt::WA_DeleteOnClose);
  return box;
}

// A property of boxes that are open, or wait for that.
constexpr char kIsAsked[] = "is_asked";

// The boxes of a window come one after the other: each would cover the one before.
void OpenInTurn(QMessageBox* box, const QWidget* window) {
  const QMessageBox* last = nullptr;
  for (const auto* other :
       window->findChildren<QMessageBox*>(QString(), Qt::FindDirectChildrenOnly)) {
    last = other->property(kIsAsked).toBool() ? other : last;
  }
  box->setProperty(kIsAsked, true);
  QObject::connect(box, &QDialog::finished, box, [box] {
    box->setProperty(kIsAsked, false);
    box->deleteLater();  // one that was never open is not deleted by being closed
  });
  if (last == nullptr) {
    box->open();
    return;
  }
  const auto open = [box] {
    if (!box->parentWidget()->isVisible()) {
      box->reject();
    } else if (box->property(kIsAsked).toBool()) {
      box->open();
    }
  };
  QObject::connect(last, &QDialog::finished, box, open, Qt::QueuedConnection);
}

void OpenQuestion(const QObject* asker, QWidget* window, const QString& title, const QString& text,
                  QMessageBox::StandardButton default_button,
                  std::function<void(bool yes)> answered) {
  QMessageBox* box =
      MakeBox(window, QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No);
  box->setDefaultButton(default_button);
  box->setEscapeButton(QMessageBox::No);
  QObject::connect(
      box, &QMessageBox::finished, asker,
      [answer = std::move(answered)](int button) { answer(button == QMessageBox::Yes); },
      Qt::QueuedConnection);
  QObject::connect(asker, &QObject::destroyed, box, &QDialog::reject);
  OpenInTurn(box, window);
}

QString ProgramTitle() { return QStringLiteral("Quayline"); }

void OpenFileDialog(QWidget* window, const FileQuestion& question,
                    QFileDialog::AcceptMode accept_mode, QFileDialog::FileMode file_mode,
                    std::function<void(const QString& file)> chosen) {
  auto* dialog = new QFileDialog(window, question.title, QString(), question.filter);
  dialog->setAcceptMode(accept_mode);
  dialog->setFileMode(file_mode);
  dialog->setDefaultSuffix(question.default_suffix);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog, &QFileDialog::fileSelected, window, std::move(chosen),
                   Qt::QueuedConnection);
  dialog->open();
}

}  // namespace

void WindowPrompts::Tell(QWidget* window, const QString& text, std::function<void()> closed) {
  QMessageBox* box =
      MakeBox(window, QMessageBox::Information, ProgramTitle(), text, QMessageBox::Ok);
  QObject::connect(box, &QMessageBox::finished, window, std::move(closed), Qt::QueuedConnection);
  OpenInTurn(box, window);
}

void WindowPrompts::TellTitled(QWidget* window, const QString& title, const QString& text) {
  OpenInTurn(MakeBox(window, QMessageBox::Information, title, text, QMessageBox::Ok), window);
}

void WindowPrompts::Notify(QWidget* window, const QString& text) {
  QMessageBox* box =
      MakeBox(window, QMessageBox::Information, ProgramTitle(), text, QMessageBox::Ok);
  box->setWindowModality(Qt::NonModal);
  box->show();
}

void WindowPrompts::Ask(QWidget* window, const QString& title, const QString& text,
                        std::function<void(bool yes)> answered) {
  OpenQuestion(window, window, title, text, QMessageBox::Yes, std::move(answered));
}

void WindowPrompts::AskCarefully(QWidget* window, const QString& title, const QString& text,
                                 std::function<void(bool yes)> answered) {
  AskFor(window, window, title, text, std::move(answered));
}

void WindowPrompts::AskFor(const QObject* asker, QWidget* window, const QString& title,
                           const QString& text, std::function<void(bool yes)> answered) {
  OpenQuestion(asker, window, title, text, QMessageBox::No, std::move(answered));
}

void WindowPrompts::AskChoice(QWidget* window, const QString& title, const QString& text,
                              const QStringList& choices,
                              std::function<void(qsizetype chosen)> answered) {
  QMessageBox* box = MakeBox(window, QMessageBox::Question, title, text, QMessageBox::NoButton);
  QList<QAbstractButton*> buttons;
  for (const QString& choice : choices) {
    buttons.append(box->addButton(choice, QMessageBox::ActionRole));
  }
  box->setDefaultButton(qobject_cast<QPushButton*>(buttons.last()));
  box->setEscapeButton(buttons.last());
  // The box is gone by the time of a queued call: what was pressed is read at once.
  QObject::connect(
      box, &QMessageBox::finished, window, [box, buttons, window, answer = std::move(answered)] {
        const qsizetype chosen = buttons.indexOf(box->clickedButton());
        QMetaObject::invokeMethod(
            window, [answer, chosen = chosen < 0 ? buttons.size() - 1 : chosen] { answer(chosen); },
            Qt::QueuedConnection);
      });
  OpenInTurn(box, window);
}

void WindowPrompts::AskLogin(QWidget* window, const QString& address,
                             std::function<void(std::optional<LoginAnswer>)> answered) {
  auto* dialog = new LoginDialog(address, translator_, window);
  QObject::connect(
      dialog, &QDialog::finished, window,
      [dialog, answer = std::move(answered)](int result) {
        answer(result == QDialog::Accepted ? std::optional(dialog->Answer()) : std::nullopt);
        dialog->deleteLater();
      },
      Qt::QueuedConnection);
  dialog->open();
}

PageBoxAnswer WindowPrompts::AnswerPage(QWidget* window, const PageBox& question) {
  PageBoxDialog dialog(question, window);
  const bool accepted = dialog.exec() == QDialog::Accepted;
  return dialog.Answer(accepted);
}

void WindowPrompts::CloseBoxes(QWidget* window) {
  for (QDialog* box : window->findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly)) {
    box->reject();
  }
}

void WindowPrompts::AskSaveFile(QWidget* window, const FileQuestion& question,
                                std::function<void(const QString& file)> chosen) {
  OpenFileDialog(window, question, QFileDialog::AcceptSave, QFileDialog::AnyFile,
                 std::move(chosen));
}

void WindowPrompts::AskOpenFile(QWidget* window, const FileQuestion& question,
                                std::function<void(const QString& file)> chosen) {
  OpenFileDialog(window, question, QFileDialog::AcceptOpen, QFileDialog::ExistingFile,
                 std::move(chosen));
}

void WindowPrompts::AskFolder(QWidget* window, const QString& title, const QString& start,
                              std::function<void(const QString& folder)> chosen) {
  auto* dialog = new QFileDialog(window, title, start);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog, &QFileDialog::fileSelected, window, std::move(chosen),
                   Qt::QueuedConnection);
  dialog->open();
}

}  // namespace quayline
