// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/fields.h"

#include <QAbstractButton>
#include <QAction>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>

#include "ui/toolkit/settle_focus.h"

namespace quayline {

namespace {

// The editable box around a field has the focus in its place, and its key events.
void Watch(QLineEdit* edit, QObject* filter) {
  edit->installEventFilter(filter);
  if (edit->focusProxy() != nullptr) {
    edit->focusProxy()->installEventFilter(filter);
  }
}

class ClickFilter final : public QObject {
 public:
  explicit ClickFilter(QLineEdit* edit) : QObject(edit), edit_(edit) {}

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::FocusIn) {
      has_come_by_mouse_ = static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason;
    } else if (event->type() == QEvent::MouseButtonRelease && has_come_by_mouse_) {
      has_come_by_mouse_ = false;
      if (!edit_->hasSelectedText()) {  // a drag has selected what the user wants
        edit_->selectAll();
      }
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  QLineEdit* edit_;
  bool has_come_by_mouse_ = false;
};

class UndoFilter final : public QObject {
 public:
  explicit UndoFilter(QLineEdit* edit) : QObject(edit), edit_(edit) {}

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::ShortcutOverride) {
      const auto* key = static_cast<QKeyEvent*>(event);
      if ((key->matches(QKeySequence::Undo) && !edit_->isUndoAvailable()) ||
          (key->matches(QKeySequence::Redo) && !edit_->isRedoAvailable())) {
        event->ignore();
        return true;
      }
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  QLineEdit* edit_;
};

}  // namespace

void SelectAllOnClick(QLineEdit* edit) { Watch(edit, new ClickFilter(edit)); }

// A button is pressed before it is clicked, in whichever way the user triggers it.
void SettleFieldsBeforeCommands(QWidget* window) {
  const auto settle = [window] { SettleFocus(window->window()); };
  for (const QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
    QObject::connect(button, &QAbstractButton::pressed, window, settle);
  }
  for (const QAction* action : window->findChildren<QAction*>()) {
    QObject::connect(action, &QAction::triggered, window, settle);
  }
}

void ShareUndoKeys(QWidget* window) {
  for (QLineEdit* edit : window->findChildren<QLineEdit*>()) {
    Watch(edit, new UndoFilter(edit));
  }
}

}  // namespace quayline
