// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <expected>
#include <optional>

#include "core/port_entry.h"
#include "core/protocol.h"
#include "core/router_session.h"
#include "i18n/translator.h"

namespace quayline {

// The fields of an entry as the user typed them.
struct TypedEntry {
  QString name;
  std::optional<Protocol> protocol;
  QString start_port;
  QString end_port;
  QString address;
};

enum class EntryField { kProgram, kName, kProtocol, kStartPort, kEndPort, kAddress };

// Why an entry is refused, in the user's language, and the field that is to be changed.
struct EntryProblem {
  QString message;
  EntryField field = EntryField::kName;
};

inline constexpr qsizetype kMaxNameLength = 10;

// The checks of a typed entry, in the fixed order of its dialog. The first that fails decides.
// Ports are compared as numbers, and those of the rows as at an update.
std::optional<EntryProblem> CheckNewEntry(const TypedEntry& typed, const QList<PortEntry>& entries,
                                          const RouterSession& session,
                                          const Translator& translator);
// The edited row, at index `row`, is not compared with itself, and the address that it has already
// is accepted. -1 if it is no longer in the list.
std::optional<EntryProblem> CheckEditedEntry(const TypedEntry& typed, int row,
                                             const QList<PortEntry>& entries,
                                             const RouterSession& session,
                                             const Translator& translator);

// The checked rows of a typed entry, whose address is still to be set. The start port can be
// several ports and ranges ("80, 443, 6000-6010"): each becomes a row, with a numbered name.
std::expected<QList<PortEntry>, EntryProblem> MakeNewEntries(const TypedEntry& typed,
                                                             const QList<PortEntry>& entries,
                                                             const RouterSession& session,
                                                             const Translator& translator);

// Adding a program needs one, and an address.
std::optional<EntryProblem> CheckProgram(bool is_chosen, const QString& address,
                                         const Translator& translator);

}  // namespace quayline
