// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/translator.h"

class QWidget;

namespace quayline {

// Makes the access keys of translated captions unique in `window`, and those of its menus in any
// language: a caption is the same in many windows, so that no language file can choose keys that
// fit them all. A caption keeps its key where no earlier one has it. Otherwise, and where a file
// has left the key out, it gets another letter of its own, the first ones of words before others,
// or a Latin letter in brackets after it where its language has no letters to type.
//
// Captions that are shown come first. Only those that the translator gave are changed.
void SettleAccessKeys(QWidget& window, const Translator& translator);

}  // namespace quayline
