// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

class QLineEdit;
class QWidget;

namespace quayline {

// A click into `edit` that brings it the focus selects its text, as the Tab key does.
void SelectAllOnClick(QLineEdit* edit);

// Every button and every action of `window` first ends the editing of the field that has the focus,
// as leaving the field would: shortcuts, access keys and menus leave the focus where it is. To be
// called before anything is connected to the actions, and when all controls exist.
void SettleFieldsBeforeCommands(QWidget* window);

// Undo and Redo belong to the field that has the focus while it has something to undo; otherwise
// they reach the actions of `window` that have these keys.
void ShareUndoKeys(QWidget* window);

}  // namespace quayline
