// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/router_tested.h"

namespace quayline {

namespace {

constexpr Message kReal{"Tried on a real router."};
constexpr Message kRebuild{"Tried on a faithful rebuild of its pages."};
constexpr Message kDocumentation{"Written from documentation; not tried on a real router yet."};
constexpr Message kUnknown{"It is not known whether anybody has tried it."};
constexpr Message kVersions{"Firmware: %1"};

const Message& SentenceOf(const QString& tested) {
  if (tested == QLatin1String("real")) {
    return kReal;
  }
  if (tested == QLatin1String("rebuild")) {
    return kRebuild;
  }
  return tested == QLatin1String("documentation") ? kDocumentation : kUnknown;
}

}  // namespace

QString TestedText(const QString& tested, const QString& versions, const Translator& translator) {
  const QString sentence = translator.Text(SentenceOf(tested));
  return versions.isEmpty()
             ? sentence
             : sentence + QLatin1Char('\n') + translator.Text(kVersions).arg(versions);
}

}  // namespace quayline
