// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/entry_windows.h"

#include "ui/entries/frm_add_new.h"
#include "ui/entries/frm_edit.h"
#include "ui/entries/frm_network_list.h"

namespace quayline {

QDialog* EntryWindows::AddNew(QWidget* parent, const std::function<void()>& changed) const {
  auto* window = new FrmAddNew(context, prompts, host_names, foreign_settings, parent);
  QObject::connect(window, &FrmAddNew::entriesAdded, parent, changed);
  return window;
}

QDialog* EntryWindows::Edit(QWidget* parent, int row, const std::function<void()>& changed) const {
  auto* window = new FrmEdit(context, prompts, host_names, row, parent);
  QObject::connect(window, &FrmEdit::entryChanged, parent, changed);
  return window;
}

QDialog* EntryWindows::NetworkList(QWidget* parent,
                                   const std::function<void(const QString&)>& chosen) const {
  auto* window = new FrmNetworkList(context.adapters, AddressPurpose::kRouter, parent);
  QObject::connect(window, &FrmNetworkList::chosen, parent, chosen);
  return window;
}

}  // namespace quayline
