// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/entry_checks.h"

#include <algorithm>
#include <optional>

#include "core/entry_fields.h"
#include "core/program_entries.h"
#include "core/row_ports.h"
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
constexpr Message kPlainName{"A name can not contain \"|\" or a line break."};

constexpr Message kAddStartAboveEnd{"Starting port can not be larger than the ending port"};
constexpr Message kEditStartAboveEnd{"Starting port can not be larger than the ending port."};
constexpr Message kNameTooLong{"Name can only be 10 chars or less."};
constexpr Message kProgramNeeded{"Please select a program from the list."};

using Refusal = std::optional<EntryVerdict>;

EntryVerdict Refused(const QString& message, EntryField focus = EntryField::kNone) {
  return {.accepted = false, .message = message, .focus = focus};
}

bool IsBlank(const QString& text) { return QStringView(text).trimmed().isEmpty(); }

bool EndsField(QChar c) {
  return c == QLatin1Char('|') || c.category() == QChar::Other_Control ||
         c.category() == QChar::Separator_Line || c.category() == QChar::Separator_Paragraph;
}

bool DoProtocolsMeet(const QString& one, const QString& other) {
  const auto is = [](const QString& protocol, const QString& what) {
    return protocol.compare(what, Qt::CaseInsensitive) == 0;
  };
  const QString both = QStringLiteral("TCP/UDP");
  return is(one, other) || is(one, both) || is(other, both);
}

// The single checks. Each gives its refusal, or nothing.
class EntryCheck final {
 public:
  EntryCheck(const TypedEntry& typed, const RouterSession& session, const Translator& translator)
      : typed_(typed),
        max_range_(LimitsOf(session).max_range),
        translator_(translator),
        ports_{.start = PortNumber(typed.start_port).value_or(0),
               .end = PortNumber(typed.end_port).value_or(0)} {}

  Refusal WholeNumbers() const {
    const auto is_other = [](const QString& port) { return !IsBlank(port) && !PortNumber(port); };
    return is_other(typed_.start_port) || is_other(typed_.end_port)
               ? Refusal(Refused(Text(kWholeNumbers)))
               : std::nullopt;
  }

  Refusal Order(const Message& message) const {
    return ports_.start > ports_.end ? Refusal(Refused(Text(message))) : std::nullopt;
  }

  Refusal Range() const {
    if (ports_.Length() <= max_range_) {
      return std::nullopt;
    }
    return Refused(QStringLiteral("%1 %2 %3\n\n%4 %5 %3")
                       .arg(Text(kRangeLimit), QString::number(max_range_), Text(kRangeUnit),
                            Text(kRangeIs), QString::number(ports_.Length())));
  }

  Refusal Name() const {
    return std::ranges::any_of(typed_.name, EndsField)
               ? Refusal(Refused(Text(kPlainName), EntryField::kName))
               : std::nullopt;
  }

  Refusal Everything() const {
    const bool is_missing = IsBlank(typed_.name) || IsBlank(typed_.protocol) ||
                            IsBlank(typed_.start_port) || IsBlank(typed_.end_port) ||
                            IsBlank(typed_.address);
    return is_missing ? Refusal(Refused(Text(kEverything))) : std::nullopt;
  }

  Refusal Address() const {
    return IsWholeAddress(typed_.address)
               ? std::nullopt
               : Refusal(Refused(Text(kAddressNeeded), EntryField::kAddress));
  }

  // The rows in their order, but for the one at `skipped`. Ports of a row that are no numbers count
  // as those of the row before it.
  Refusal Rows(const QList<PortEntry>& entries, int skipped = -1) const {
    RowPorts other;
    for (int row = 0; row < entries.size(); ++row) {
      const PortEntry& entry = entries.at(row);
      if (row == skipped) {
        continue;
      }
      other.Take(entry);
      if (entry.app_name.compare(typed_.name, Qt::CaseInsensitive) == 0) {
        return Refused(
            QStringLiteral("%1 '%2' %3").arg(Text(kTheName), typed_.name, Text(kNameTaken)));
      }
      if (!DoProtocolsMeet(typed_.protocol, entry.protocol)) {
        continue;
      }
      if (ClashesAtStart(ports_, other)) {
        return Conflict(entry, kStartTaken);
      }
      if (ClashesAtEnd(ports_, other)) {
        return Conflict(entry, kEndTaken);
      }
    }
    return std::nullopt;
  }

 private:
  EntryVerdict Conflict(const PortEntry& entry, const Message& reason) const {
    return Refused(QStringLiteral("'%1' %2\n%3").arg(entry.app_name, Text(reason), Text(kOnce)));
  }

  QString Text(const Message& message) const { return translator_.Text(message); }

  const TypedEntry& typed_;
  int max_range_;
  const Translator& translator_;
  RowPorts ports_;
};

// Accepted when no check refuses.
EntryVerdict FirstOf(std::initializer_list<Refusal> refusals) {
  const auto* refused = std::ranges::find_if(refusals, &Refusal::has_value);
  return refused == refusals.end() ? EntryVerdict{.accepted = true} : **refused;
}

}  // namespace

EntryVerdict CheckNewEntry(const TypedEntry& typed, const QList<PortEntry>& entries,
                           const RouterSession& session, const Translator& translator) {
  const EntryCheck check(typed, session, translator);
  const Refusal too_long = typed.name.size() > kMaxNameLength
                               ? Refusal(Refused(translator.Text(kNameTooLong), EntryField::kName))
                               : std::nullopt;
  const Refusal no_address =
      typed.address == QLatin1String("0.0.0.0")
          ? Refusal(Refused(translator.Text(kAddressNeeded), EntryField::kAddress))
          : std::nullopt;
  return FirstOf({check.WholeNumbers(), check.Order(kAddStartAboveEnd), check.Range(), too_long,
                  check.Name(), check.Everything(), no_address, check.Address(),
                  check.Rows(entries)});
}

EntryVerdict CheckEditedEntry(const TypedEntry& typed, int row, const QList<PortEntry>& entries,
                              const RouterSession& session, const Translator& translator) {
  const EntryCheck check(typed, session, translator);
  const bool keeps_address = typed.address == AddressOf(entries.at(row).forwarded_to);
  return FirstOf({check.Everything(), check.WholeNumbers(), check.Order(kEditStartAboveEnd),
                  check.Range(), check.Name(), keeps_address ? std::nullopt : check.Address(),
                  check.Rows(entries, row)});
}

EntryVerdict CheckProgram(bool is_chosen, const QString& address, const Translator& translator) {
  if (!is_chosen) {
    return Refused(translator.Text(kProgramNeeded), EntryField::kProgram);
  }
  if (!IsWholeAddress(address) || address == QLatin1String("0.0.0.0")) {
    return Refused(translator.Text(kAddressNeeded), EntryField::kAddress);
  }
  return {.accepted = true};
}

}  // namespace quayline
