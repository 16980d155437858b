// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "i18n/sentence.h"

#include "i18n/translator.h"

namespace quayline {

namespace {

template <typename ToText>
QString Joined(const QList<Sentence>& sentences, const ToText& to_text) {
  QStringList texts;
  for (const Sentence& sentence : sentences) {
    texts.append(to_text(sentence));
  }
  return texts.join(u' ');
}

}  // namespace

bool Sentence::operator==(const Sentence& other) const {
  return qstrcmp(message.english, other.message.english) == 0 && values == other.values;
}

QString WithValues(const QString& text, const QStringList& values) {
  QString result;
  for (qsizetype at = 0; at < text.size(); ++at) {
    const int digit =
        text.at(at) == u'%' && at + 1 < text.size() ? text.at(at + 1).digitValue() : 0;
    if (digit > 0 && digit <= values.size()) {
      result += values.at(digit - 1);
      ++at;
    } else {
      result += text.at(at);
    }
  }
  return result;
}

Sentence AsItIs(const QString& text) {
  constexpr Message kText{"%1"};
  return {kText, {text}};
}

QString TextOf(const Sentence& sentence, const Translator& translator) {
  return WithValues(translator.Text(sentence.message), sentence.values);
}

QString EnglishOf(const Sentence& sentence) {
  return WithValues(QString::fromUtf8(sentence.message.english), sentence.values);
}

QString TextOf(const QList<Sentence>& sentences, const Translator& translator) {
  return Joined(sentences, [&](const Sentence& each) { return TextOf(each, translator); });
}

QString EnglishOf(const QList<Sentence>& sentences) {
  return Joined(sentences, [](const Sentence& each) { return EnglishOf(each); });
}

}  // namespace quayline
