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

// How the fields that both entry dialogs have behave. Everything lives as long as its control.

// A field for a port of the selected router: accepts what may be typed as a port, and moves it into
// the router's limits when it loses the focus.
void MakePortField(QLineEdit& field, const RouterSession& session);

// An editable box for an address, with this computer's own in its list and the first one selected.
// `detect` opens the chooser of adapters, whose address goes into the box.
void MakeAddressBox(QComboBox& box, QToolButton& detect, const Adapters& adapters, QWidget* window);

// Reserves the space of the status line and the progress bar, so that nothing moves when they
// appear.
void KeepStatusPlace(QLabel& line, QWidget& bar);

// "TCP" and "UDP" and, where one rule can have both, "TCP/UDP"; the last one is selected, or "TCP"
// for a router without it.
void FillProtocols(QComboBox& box, bool offers_both);

}  // namespace quayline
