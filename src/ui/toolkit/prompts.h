// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <functional>
#include <optional>

#include "i18n/translator.h"
#include "ui/toolkit/prompt_values.h"

class QWidget;

namespace quayline {

// Everything that a window asks the user in a box of its own. Only AnswerPage() waits: the answer
// comes through a callback, once, from the event loop. When `window` is destroyed first, its boxes
// go with it and the callback never comes. Tests put a double in its place that answers in advance.
class Prompts {
 public:
  virtual ~Prompts() = default;

  // A message with the button OK, modal to `window`.
  virtual void Tell(QWidget* window, const QString& text, std::function<void()> closed) = 0;
  void Tell(QWidget* window, const QString& text) {
    Tell(window, text, [] {});
  }
  virtual void TellTitled(QWidget* window, const QString& title, const QString& text) = 0;
  // A message that does not block its window.
  virtual void Notify(QWidget* window, const QString& text) = 0;
  // Yes or No; a box that is closed otherwise answers No.
  virtual void Ask(QWidget* window, const QString& title, const QString& text,
                   std::function<void(bool yes)> answered) = 0;
  // As Ask(), for what is risky: No is the button that Enter presses.
  virtual void AskCarefully(QWidget* window, const QString& title, const QString& text,
                            std::function<void(bool yes)> answered) = 0;
  // The same, as long as `asker` exists: with it the box goes away, and no answer comes.
  virtual void AskFor(const QObject* asker, QWidget* window, const QString& title,
                      const QString& text, std::function<void(bool yes)> answered) = 0;
  // One of `choices`, by its index. A box that is closed otherwise answers the last one.
  virtual void AskChoice(QWidget* window, const QString& title, const QString& text,
                         const QStringList& choices,
                         std::function<void(qsizetype chosen)> answered) = 0;
  // A login for `address`; nothing when the dialog is cancelled.
  virtual void AskLogin(QWidget* window, const QString& address,
                        std::function<void(std::optional<LoginAnswer>)> answered) = 0;
  // Waits in an event loop of its own, since the browser's engine asks from inside the page's
  // script. The caller keeps `window` alive meanwhile. A box that is closed otherwise refuses.
  virtual PageBoxAnswer AnswerPage(QWidget* window, const PageBox& question) = 0;
  // Closes the boxes that `window` has open, as Esc does.
  virtual void CloseBoxes(QWidget* window) = 0;
  // The chosen file; the callback does not come when the dialog is cancelled. A save dialog has
  // asked already whether an existing file may be replaced.
  virtual void AskSaveFile(QWidget* window, const FileQuestion& question,
                           std::function<void(const QString& file)> chosen) = 0;
  virtual void AskOpenFile(QWidget* window, const FileQuestion& question,
                           std::function<void(const QString& file)> chosen) = 0;
  // A folder that exists, or that the user makes in the dialog. It opens with `start`, unless that
  // is empty.
  virtual void AskFolder(QWidget* window, const QString& title, const QString& start,
                         std::function<void(const QString& folder)> chosen) = 0;
};

// The real boxes. They are titled "Quayline" unless the question brings its own title.
class WindowPrompts final : public Prompts {
 public:
  // `translator` outlives it.
  explicit WindowPrompts(const Translator& translator) : translator_(translator) {}

  using Prompts::Tell;
  void Tell(QWidget* window, const QString& text, std::function<void()> closed) override;
  void TellTitled(QWidget* window, const QString& title, const QString& text) override;
  void Notify(QWidget* window, const QString& text) override;
  void Ask(QWidget* window, const QString& title, const QString& text,
           std::function<void(bool yes)> answered) override;
  void AskCarefully(QWidget* window, const QString& title, const QString& text,
                    std::function<void(bool yes)> answered) override;
  void AskFor(const QObject* asker, QWidget* window, const QString& title, const QString& text,
              std::function<void(bool yes)> answered) override;
  void AskChoice(QWidget* window, const QString& title, const QString& text,
                 const QStringList& choices,
                 std::function<void(qsizetype chosen)> answered) override;
  void AskLogin(QWidget* window, const QString& address,
                std::function<void(std::optional<LoginAnswer>)> answered) override;
  PageBoxAnswer AnswerPage(QWidget* window, const PageBox& question) override;
  void CloseBoxes(QWidget* window) override;
  void AskSaveFile(QWidget* window, const FileQuestion& question,
                   std::function<void(const QString& file)> chosen) override;
  void AskOpenFile(QWidget* window, const FileQuestion& question,
                   std::function<void(const QString& file)> chosen) override;
  void AskFolder(QWidget* window, const QString& title, const QString& start,
                 std::function<void(const QString& folder)> chosen) override;

 private:
  const Translator& translator_;
};

}  // namespace quayline
