// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class QLabel;
class QWidget;

namespace quayline {

// The line below a field: a hint, or what is wrong with the field, which then has a red frame. The
// problem disappears when the field's text changes. A screen reader reads it with the field.
class FieldNote final : public QObject {
  Q_OBJECT

 public:
  // `line` owns it; its text is the first hint. It keeps the room of one line while it is empty.
  // `field` is a line edit or a combo box, and outlives it.
  FieldNote(QLabel* line, QWidget* field);

  void SetHint(const QString& hint);
  void ShowProblem(const QString& problem);
  void ClearProblem();
  bool HasProblem() const { return !problem_.isEmpty(); }
  QWidget* Field() const { return field_; }

 private:
  void Update();

  QLabel* line_;
  QWidget* field_;
  QString hint_;
  QString problem_;
};

}  // namespace quayline
