// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/entry_windows.h"

#include "ui/entries/adapter_dialog.h"
#include "ui/entries/add_entry_dialog.h"
#include "ui/entries/edit_entry_dialog.h"

namespace quayline {

QDialog* EntryWindows::AddNew(QWidget* parent, const std::function<void()>& changed) const {
  auto* window = new AddEntryDialog(context, prompts, host_names, foreign_settings, parent);
  QObject::connect(window, &AddEntryDialog::entriesAdded, parent, changed);
  return window;
}

QDialog* EntryWindows::Edit(QWidget* parent, int row, const std::function<void()>& changed) const {
  auto* window = new EditEntryDialog(context, prompts, host_names, row, parent);
  QObject::connect(window, &EditEntryDialog::entryChanged, parent, changed);
  return window;
}

QDialog* EntryWindows::NetworkList(QWidget* parent,
                                   const std::function<void(const QString&)>& chosen) const {
  auto* window = new AdapterDialog(context.adapters, AddressPurpose::kRouter, parent);
  QObject::connect(window, &AdapterDialog::chosen, parent, chosen);
  return window;
}

}  // namespace quayline
