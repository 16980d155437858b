// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QWidget>

#include <memory>

#include "core/app_context.h"
#include "core/entry_checks.h"
#include "core/entry_fields.h"
#include "ui/toolkit/field_note.h"

class QLineEdit;

namespace Ui {
class EntryForm;
}

namespace quayline {

// The fields of one entry, for the dialogs that add and edit entries. The end port follows the
// start port until the user types one. What is wrong is shown below its field.
class EntryForm final : public QWidget {
  Q_OBJECT

 public:
  enum class Purpose {
    kNew,  // the start port can be several ports; the types are those of the selected router
    kEdit  // one port or range, all types
  };

  // `name_field` becomes the first field of the form, which owns it.
  EntryForm(const AppContext& context, Purpose purpose, QWidget* name_field, QWidget* parent);
  ~EntryForm() override;

  // The Tab key goes from the name through the fields to `next`. To be called when all of them are
  // in their window.
  void OrderTabs(QWidget* name_field, QWidget* next = nullptr);

  // What the fields contain. The name is the dialog's.
  TypedEntry Typed(const QString& name) const;
  void ShowPorts(const QString& start, const QString& end);
  // A type that is not offered changes nothing, if the form is for a new entry.
  void ShowProtocol(const QString& protocol);
  void ShowAddress(const QString& address);

  // Shows the problem at its field, and moves the focus there.
  void ShowProblem(const EntryProblem& problem);
  void ClearProblems();
  // Whether the user has seen the ports. One that has just been moved into the router's limits gets
  // the focus instead.
  bool ArePortsSeen();
  void FocusAddress();

 private:
  void ConnectPorts();
  void AddNote(EntryField field, QLabel* line, QWidget* control);
  void SplitRange();
  void SettlePort(EntryField field);
  void FollowStart(const QString& start);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  const AppContext& context_;
  const Purpose purpose_;
  const PortLimits limits_;
  std::unique_ptr<Ui::EntryForm> ui_;
  QHash<EntryField, FieldNote*> notes_;
  QList<EntryField> moved_;  // ports that were moved into the limits, until the user has seen them
  bool end_follows_ = true;
};

}  // namespace quayline
