// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/app_context.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;
class QWidget;

namespace quayline {

// How the fields of the entry dialogs behave. Everything lives as long as its control.

// A field that accepts what may be typed as a port, or as several.
void MakePortField(QLineEdit& field, bool takes_several);

// An editable box for an address, with this computer's own in its list. The one that reaches the
// router is the first, and is selected. `detect` opens the chooser of adapters, whose address goes
// into the box.
void MakeAddressBox(QComboBox& box, QToolButton& detect, const AppContext& context);

// Keeps the places of the line and the bar that show what goes on, so that nothing moves when they
// appear.
void KeepStatusPlace(QLabel& line, QWidget& bar);

// "TCP" and "UDP", with "TCP" selected; or these and "TCP/UDP", which is selected then.
void FillProtocols(QComboBox& box, bool offers_both);

}  // namespace quayline
