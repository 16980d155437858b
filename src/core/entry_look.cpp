// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/entry_look.h"

namespace quayline {

namespace {

constexpr Message kOnRouter{"On the router"};
constexpr Message kDifferent{"Different: %1"};
constexpr Message kNotThere{"Not on the router"};
constexpr Message kCannotTell{"Cannot tell"};
constexpr Message kToBeChecked{"To be checked"};

// In a list after "Different:". A caption "Port" would share its translation with "port".
constexpr Message kPortDiffers{"the port"};
constexpr Message kAddressDiffers{"the address"};
constexpr Message kProtocolDiffers{"the protocol"};
constexpr Message kIsDisabled{"switched off"};

constexpr Message kStateAt{"%1, %2", "a state, and the time at which it was seen"};
constexpr Message kRouterShows{"The router shows: %1"};
constexpr Message kOnThisComputer{"On this computer: %1"};
constexpr Message kFromOutside{"From outside: %1"};

const Message& FieldText(RuleField field) {
  switch (field) {
    case RuleField::kPort:
      return kPortDiffers;
    case RuleField::kAddress:
      return kAddressDiffers;
    case RuleField::kProtocol:
      return kProtocolDiffers;
    case RuleField::kDisabled:
      break;
  }
  return kIsDisabled;
}

// The day is part of it when it is another one: the program may run for weeks.
QString TimeText(const QDateTime& time) {
  const bool is_today = time.date() == QDate::currentDate();
  return time.toString(is_today ? QStringLiteral("HH:mm") : QStringLiteral("yyyy-MM-dd HH:mm"));
}

QString RouterText(const EntryLook& look, const Translator& translator) {
  return look.on_router
             ? translator.Text(kStateAt).arg(StateText(*look.on_router, look.differs, translator),
                                             TimeText(look.looked_at))
             : QString();
}

// A firewall that lets an entry in need not be named.
std::optional<ReachVerdict> ObstacleOf(const std::optional<ReachVerdict>& firewall) {
  return firewall && firewall->works != true ? firewall : std::nullopt;
}

}  // namespace

EntryLook WithResult(EntryLook look, const EntryResult& result,
                     const std::optional<QDateTime>& looked_at) {
  look.on_router = looked_at ? std::optional(result.own_row.value_or(result.state)) : std::nullopt;
  look.differs = result.differs;
  look.seen = result.seen;
  look.looked_at = looked_at.value_or(QDateTime());
  if (result.listening && result.listening->state != ListenState::kUnknown) {
    look.listening = ReachVerdict{.works = result.listening->state == ListenState::kListens,
                                  .words = ListeningText(*result.listening)};
  }
  return look;
}

QString StateText(EntryState state, const QList<RuleField>& differs, const Translator& translator) {
  switch (state) {
    case EntryState::kOnRouter:
      return translator.Text(kOnRouter);
    case EntryState::kDifferent: {
      QStringList fields;
      for (const RuleField field : differs) {
        fields.append(translator.Text(FieldText(field)));
      }
      return translator.Text(kDifferent).arg(fields.join(QStringLiteral(", ")));
    }
    case EntryState::kMissing:
      return translator.Text(kNotThere);
    case EntryState::kUnknown:
      return translator.Text(kCannotTell);
    case EntryState::kToCheck:
      break;
  }
  return translator.Text(kToBeChecked);
}

QString LookText(const EntryLook& look, const Translator& translator) {
  QStringList others;
  for (const auto& verdict : {look.listening, ObstacleOf(look.firewall), look.outside}) {
    if (verdict) {
      others.append(TextOf(verdict->words, translator));
    }
  }
  const QString router = RouterText(look, translator);
  const QString rest = others.join(QStringLiteral(", "));
  if (router.isEmpty() || rest.isEmpty()) {
    return router + rest;
  }
  return QStringLiteral("%1 (%2)").arg(router, rest);
}

QString LookToolTip(const EntryLook& look, const Translator& translator) {
  QStringList lines;
  if (look.on_router) {
    lines.append(RouterText(look, translator));
  }
  if (!look.seen.isEmpty()) {
    lines.append(translator.Text(kRouterShows).arg(look.seen));
  }
  if (look.listening) {
    lines.append(translator.Text(kOnThisComputer).arg(TextOf(look.listening->words, translator)));
  }
  if (look.firewall && look.firewall->words.message.english != nullptr) {
    lines.append(translator.Text(kOnThisComputer).arg(TextOf(look.firewall->words, translator)));
  }
  if (look.outside) {
    lines.append(translator.Text(kFromOutside).arg(TextOf(look.outside->words, translator)));
  }
  return lines.join(QLatin1Char('\n'));
}

}  // namespace quayline
