// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/entry_checks.h"

#include <algorithm>
#include <array>

#include "core/entry_fields.h"
#include "core/port_range.h"
#include "core/program_entries.h"
#include "i18n/message.h"

namespace quayline {

namespace {

constexpr Message kOnce{"You can not have a port forwarded more than once."};
constexpr Message kStartTaken{"Already has the start port in its range."};
constexpr Message kEndTaken{"Already has the end port in its range."};
constexpr Message kEverything{"You must enter all information to continue."};
constexpr Message kAddressNeeded{"You must enter an ip address to forward the ports to."};
constexpr Message kRangeLimit{"On this router the End Port can be at most"};
constexpr Message kRangeUnit{"higher than the Start Port."};
constexpr Message kRangeIs{"Yours is"};
constexpr Message kTheName{"The name"};
constexpr Message kNameTaken{"is in your list already. Please choose another one."};
constexpr Message kWholeNumbers{"Start Port and End Port must be whole numbers."};
constexpr Message kPlainName{"A name can not contain a vertical bar or a line break."};

constexpr Message kAddStartAboveEnd{"Starting port can not be larger than the ending port"};
constexpr Message kEditStartAboveEnd{"Starting port can not be larger than the ending port."};
constexpr Message kNameTooLong{"Name can only be 10 chars or less."};
constexpr Message kStemTooLong{
    "Several entries get numbered names, so this one can only be 8 chars or less."};
constexpr Message kPortsUnreadable{"Several ports are typed as in 80, 443, 6000-6010."};
constexpr Message kPortOutside{"The ports of this router are %1 to %2."};
constexpr Message kProgramNeeded{"Please select a program from the list."};

using Problem = std::optional<EntryProblem>;

constexpr qsizetype kNumberLength = 2;

bool IsBlank(const QString& text) { return QStringView(text).trimmed().isEmpty(); }

bool EndsField(QChar c) {
  return c == QLatin1Char('|') || c.category() == QChar::Other_Control ||
         c.category() == QChar::Separator_Line || c.category() == QChar::Separator_Paragraph;
}

// Rows from a file can have any text as their protocol.
bool DoProtocolsMeet(std::optional<Protocol> one, std::optional<Protocol> other) {
  return one == other || one == Protocol::kBoth || other == Protocol::kBoth;
}

bool IsWholeNumber(const QString& port) { return IsBlank(port) || PortNumber(port).has_value(); }

// The single checks of an entry.
class EntryCheck final {
 public:
  EntryCheck(const TypedEntry& typed, const RouterSession& session, const Translator& translator)
      : typed_(typed),
        max_range_(LimitsOf(session).max_range),
        translator_(translator),
        ports_{.start = PortNumber(typed.start_port).value_or(0),
               .end = PortNumber(typed.end_port).value_or(0)} {}

  Problem WholeNumbers() const {
    if (!IsWholeNumber(typed_.start_port)) {
      return EntryProblem{Text(kWholeNumbers), EntryField::kStartPort};
    }
    return If(!IsWholeNumber(typed_.end_port), kWholeNumbers, EntryField::kEndPort);
  }

  Problem Order(const Message& message) const {
    return If(ports_.start > ports_.end, message, EntryField::kEndPort);
  }

  Problem Range() const {
    if (ports_.Length() <= max_range_) {
      return std::nullopt;
    }
    return EntryProblem{QStringLiteral("%1 %2 %3\n\n%4 %5 %3")
                            .arg(Text(kRangeLimit), QString::number(max_range_), Text(kRangeUnit),
                                 Text(kRangeIs), QString::number(ports_.Length())),
                        EntryField::kEndPort};
  }

  Problem NameLength() const {
    return If(typed_.name.size() > kMaxNameLength, kNameTooLong, EntryField::kName);
  }

  Problem Name() const {
    return If(std::ranges::any_of(typed_.name, EndsField), kPlainName, EntryField::kName);
  }

  Problem Everything() const {
    const std::array<std::pair<bool, EntryField>, 5> missing = {
        {{IsBlank(typed_.name), EntryField::kName},
         {!typed_.protocol.has_value(), EntryField::kProtocol},
         {IsBlank(typed_.start_port), EntryField::kStartPort},
         {IsBlank(typed_.end_port), EntryField::kEndPort},
         {IsBlank(typed_.address), EntryField::kAddress}}};
    for (const auto& [is_missing, field] : missing) {
      if (is_missing) {
        return EntryProblem{Text(kEverything), field};
      }
    }
    return std::nullopt;
  }

  Problem Address() const {
    return If(!IsWholeAddress(typed_.address), kAddressNeeded, EntryField::kAddress);
  }
  Problem AnyAddress() const {
    return If(typed_.address == QLatin1String("0.0.0.0"), kAddressNeeded, EntryField::kAddress);
  }

  // The rows in their order, without the one at `skipped`.
  Problem Rows(const QList<PortEntry>& entries, int skipped = -1) const {
    PortRange other;
    for (int row = 0; row < entries.size(); ++row) {
      const PortEntry& entry = entries.at(row);
      if (row == skipped) {
        continue;
      }
      other = RangeOf(entry, other);
      if (entry.app_name.compare(typed_.name, Qt::CaseInsensitive) == 0) {
        return EntryProblem{
            QStringLiteral("%1 '%2' %3").arg(Text(kTheName), typed_.name, Text(kNameTaken)),
            EntryField::kName};
      }
      if (!DoProtocolsMeet(typed_.protocol, ProtocolOf(entry.protocol))) {
        continue;
      }
      if (ClashesAtStart(ports_, other)) {
        return Conflict(entry, kStartTaken, EntryField::kStartPort);
      }
      if (ClashesAtEnd(ports_, other)) {
        return Conflict(entry, kEndTaken, EntryField::kEndPort);
      }
    }
    return std::nullopt;
  }

 private:
  Problem If(bool is_wrong, const Message& message, EntryField field) const {
    return is_wrong ? Problem(EntryProblem{Text(message), field}) : std::nullopt;
  }
  EntryProblem Conflict(const PortEntry& entry, const Message& reason, EntryField field) const {
    return {QStringLiteral("'%1' %2\n%3").arg(entry.app_name, Text(reason), Text(kOnce)), field};
  }
  QString Text(const Message& message) const { return translator_.Text(message); }

  const TypedEntry& typed_;
  int max_range_;
  const Translator& translator_;
  PortRange ports_;
};

Problem FirstOf(std::initializer_list<Problem> problems) {
  const auto* found = std::ranges::find_if(problems, &Problem::has_value);
  return found == problems.end() ? std::nullopt : *found;
}

// One typed entry for each port or range of the start port.
std::expected<QList<TypedEntry>, EntryProblem> SplitPorts(const TypedEntry& typed,
                                                          const RouterSession& session,
                                                          const Translator& translator) {
  const auto problem = [&translator](const Message& message, EntryField field) {
    return std::unexpected(EntryProblem{translator.Text(message), field});
  };
  const auto ranges = ParsePortRanges(typed.start_port);
  if (!ranges) {
    return problem(kPortsUnreadable, EntryField::kStartPort);
  }
  if (ranges->size() > 1 && typed.name.size() > kMaxNameLength - kNumberLength) {
    return problem(kStemTooLong, EntryField::kName);
  }
  const PortLimits limits = LimitsOf(session);
  QList<TypedEntry> entries;
  for (const PortRange& range : *ranges) {
    if (range.start < limits.min_port || range.end > limits.max_port) {
      return std::unexpected(
          EntryProblem{translator.Text(kPortOutside)
                           .arg(QString::number(limits.min_port), QString::number(limits.max_port)),
                       EntryField::kStartPort});
    }
    TypedEntry entry = typed;
    entry.start_port = QString::number(range.start);
    entry.end_port = QString::number(range.end);
    if (ranges->size() > 1 && !IsBlank(typed.name)) {
      entry.name = NumberedName(typed.name, static_cast<int>(entries.size()) + 1);
    }
    entries.append(entry);
  }
  return entries;
}

}  // namespace

std::optional<EntryProblem> CheckNewEntry(const TypedEntry& typed, const QList<PortEntry>& entries,
                                          const RouterSession& session,
                                          const Translator& translator) {
  const EntryCheck check(typed, session, translator);
  return FirstOf({check.WholeNumbers(), check.Order(kAddStartAboveEnd), check.Range(),
                  check.NameLength(), check.Name(), check.Everything(), check.AnyAddress(),
                  check.Address(), check.Rows(entries)});
}

std::optional<EntryProblem> CheckEditedEntry(const TypedEntry& typed, int row,
                                             const QList<PortEntry>& entries,
                                             const RouterSession& session,
                                             const Translator& translator) {
  const EntryCheck check(typed, session, translator);
  const bool keeps_address = row >= 0 && typed.address == AddressOf(entries.at(row).forwarded_to);
  return FirstOf({check.Everything(), check.WholeNumbers(), check.Order(kEditStartAboveEnd),
                  check.Range(), check.Name(), keeps_address ? std::nullopt : check.Address(),
                  check.Rows(entries, row)});
}

std::expected<QList<PortEntry>, EntryProblem> MakeNewEntries(const TypedEntry& typed,
                                                             const QList<PortEntry>& entries,
                                                             const RouterSession& session,
                                                             const Translator& translator) {
  const auto parts = IsPortList(typed.start_port) ? SplitPorts(typed, session, translator)
                                                  : QList<TypedEntry>{typed};
  if (!parts) {
    return std::unexpected(parts.error());
  }
  QList<PortEntry> made;
  for (const TypedEntry& part : *parts) {
    if (auto problem = CheckNewEntry(part, entries + made, session, translator)) {
      return std::unexpected(*std::move(problem));
    }
    made.append({.app_name = part.name,
                 .forwarded_to = {},
                 .start_port = part.start_port,
                 .end_port = part.end_port,
                 .protocol = ProtocolText(*part.protocol),
                 .description = part.name});
  }
  return made;
}

std::optional<EntryProblem> CheckProgram(bool is_chosen, const QString& address,
                                         const Translator& translator) {
  if (!is_chosen) {
    return EntryProblem{translator.Text(kProgramNeeded), EntryField::kProgram};
  }
  if (!IsWholeAddress(address) || address == QLatin1String("0.0.0.0")) {
    return EntryProblem{translator.Text(kAddressNeeded), EntryField::kAddress};
  }
  return std::nullopt;
}

}  // namespace quayline
