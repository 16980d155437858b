// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/help_key.h"

#include <QApplication>
#include <QKeyEvent>

#include "ui/main/help_dialog.h"

namespace quayline {

namespace {

QString PageOf(const QWidget* window) {
  for (; window != nullptr; window = window->parentWidget()) {
    if (const QString page = window->property("helpPage").toString(); !page.isEmpty()) {
      return page;
    }
  }
  return QStringLiteral("index");
}

bool IsHelpKey(const QEvent& event) {
  if (event.type() != QEvent::KeyPress) {
    return false;
  }
  const auto& key = static_cast<const QKeyEvent&>(event);
  return key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier;
}

}  // namespace

HelpKey::HelpKey(const Translator& translator, QObject* parent)
    : QObject(parent), translator_(translator) {
  qApp->installEventFilter(this);
}

// A key that no widget has used arrives at its window.
bool HelpKey::eventFilter(QObject* watched, QEvent* event) {
  auto* window = qobject_cast<QWidget*>(watched);
  if (window == nullptr || !window->isWindow() || window->windowType() == Qt::Popup ||
      !IsHelpKey(*event) || qobject_cast<HelpDialog*>(window) != nullptr) {
    return false;
  }
  (new HelpDialog(translator_, PageOf(window), window))->open();
  return true;
}

}  // namespace quayline
