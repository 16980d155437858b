// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "core/port_entry.h"
#include "core/router_session.h"
#include "i18n/translator.h"

namespace quayline {

// The fields of an entry as the user typed them.
struct TypedEntry {
  QString name;
  QString protocol;
  QString start_port;
  QString end_port;
  QString address;
};

// Where a dialog sets the focus after a refusal.
enum class EntryField { kNone, kProgram, kName, kAddress };

struct EntryVerdict {
  bool accepted = false;
  QString message;  // why not, in the user's language; empty when accepted
  EntryField focus = EntryField::kNone;
};

inline constexpr qsizetype kMaxNameLength = 10;

// The checks of a typed entry, in the fixed order of its dialog; the first that fails decides.
// Ports are compared as numbers, and those of the rows as at an update.
EntryVerdict CheckNewEntry(const TypedEntry& typed, const QList<PortEntry>& entries,
                           const RouterSession& session, const Translator& translator);
// `row` is the row that is edited: it is not compared with itself, and an address that it has
// already is accepted.
EntryVerdict CheckEditedEntry(const TypedEntry& typed, int row, const QList<PortEntry>& entries,
                              const RouterSession& session, const Translator& translator);

// Adding a program needs one, and an address.
EntryVerdict CheckProgram(bool is_chosen, const QString& address, const Translator& translator);

}  // namespace quayline
