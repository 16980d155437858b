// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>

#include <chrono>

#include "async/flow.h"
#include "i18n/sentence.h"
#include "platform/adapters.h"
#include "platform/echoes.h"

namespace quayline {

// "1st", "2nd", "3rd", "4th": the place of a router on the way out.
Sentence OrdinalText(int number);

// Whether a router with this address is one of a home, or one that shares a public address. Some
// private networks do not count, since providers use them within their own: of 10.0.0.0/8 only what
// begins with "10.0.0", "10.1.1." or "10.10.".
bool IsHomeRouter(const QString& address);

// Whether this is an address within a private or shared network; false for what is no address.
bool IsPrivateAddress(const QString& address);

struct RouterTrace {
  QStringList addresses;      // gateways of this computer and hops on the way out, each once
  bool is_forbidden = false;  // the system does not let this program look at the hops
  bool is_silent = false;     // no answer came
};

struct RouterCount {
  enum class OutsideAddress { kUnknown, kPublic, kPrivate };

  QStringList routers;  // the addresses that count
  int count = 0;
  // What the outside address of the user's own router says. If it is public, private addresses
  // after it belong to the provider; if it is private, there is another router.
  OutsideAddress outside = OutsideAddress::kUnknown;

  // "1" to "4", "5+", or empty for more than five, which is no home.
  QString Shown() const;
  bool HasSecondRouter() const;
};

// `outside_address` is that of the user's own router on the side of the internet, or empty.
RouterCount CountRouters(const QStringList& addresses, const QString& outside_address);

// Looks for the routers between this computer and the internet: its gateways, and who answers on
// the way to an address of the internet. Sends five small packets at most, and waits for each a
// quarter of a second at most, in the background.
class SecondRouterSearch final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  SecondRouterSearch(const Adapters& adapters, Echoes& echoes)
      : adapters_(adapters), echoes_(echoes) {}

  // Ends a search that still runs.
  void Start() { flow_.Start(Run()); }
  void Cancel() { flow_.Cancel(); }

  static constexpr int kSteps = 5;

 Q_SIGNALS:
  void progressed(int step);  // of kSteps
  void ended(const quayline::RouterTrace& trace);

 private:
  Task<> Run();

  const Adapters& adapters_;
  Echoes& echoes_;
  Flow flow_;
};

}  // namespace quayline
