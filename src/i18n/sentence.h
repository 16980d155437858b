// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStringList>

#include "i18n/message.h"

namespace quayline {

class Translator;

// A message and what replaces its %1, %2, ...: for code that reports something and does not know in
// which language it is shown.
struct Sentence {
  Message message;
  QStringList values = {};  // shown as they are: paths, names, what another program reported

  // Whether they have the same texts.
  bool operator==(const Sentence& other) const;
};

// A text that is the same in every language, or that only developers read.
Sentence AsItIs(const QString& text);

QString TextOf(const Sentence& sentence, const Translator& translator);
// For the command line, whose texts are English, and for the log.
QString EnglishOf(const Sentence& sentence);

// One after the other, with a blank between them.
QString TextOf(const QList<Sentence>& sentences, const Translator& translator);
QString EnglishOf(const QList<Sentence>& sentences);

// `text` with its %1 to %9 replaced. A value that contains such a mark is not replaced again; a
// mark without a value stays.
QString WithValues(const QString& text, const QStringList& values);

}  // namespace quayline
