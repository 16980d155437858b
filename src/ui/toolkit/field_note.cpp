// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/field_note.h"

#include <QAccessible>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>

#include "ui/toolkit/theme.h"

namespace quayline {

FieldNote::FieldNote(QLabel* line, QWidget* field)
    : QObject(line), line_(line), field_(field), hint_(line->text()) {
  line_->setTextFormat(Qt::PlainText);
  line_->setForegroundRole(QPalette::PlaceholderText);
  line_->setMinimumHeight(line_->fontMetrics().height());
  if (const auto* box = qobject_cast<QComboBox*>(field)) {
    connect(box, &QComboBox::currentTextChanged, this, &FieldNote::ClearProblem);
  } else if (const auto* edit = qobject_cast<QLineEdit*>(field)) {
    connect(edit, &QLineEdit::textChanged, this, &FieldNote::ClearProblem);
  }
  Update();
}

void FieldNote::SetHint(const QString& hint) {
  hint_ = hint;
  Update();
}

void FieldNote::ShowProblem(const QString& problem) {
  problem_ = problem;
  Update();
  QAccessibleEvent alert(line_, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void FieldNote::ClearProblem() {
  if (HasProblem()) {
    problem_.clear();
    Update();
  }
}

void FieldNote::Update() {
  const bool has_problem = HasProblem();
  QPalette colors;
  colors.setResolveMask(0);  // the system's, but for the role that is set here
  if (has_problem) {
    colors.setColor(QPalette::PlaceholderText, ErrorColor(QGuiApplication::palette()));
  }
  line_->setPalette(colors);
  line_->setText(has_problem ? problem_ : hint_);
  field_->setAccessibleDescription(line_->text());
  field_->setProperty(kHasProblem, has_problem);
  field_->update();
}

}  // namespace quayline
