// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "dbtool/code_tokens.h"

namespace quayline::dbtool {

namespace {

bool IsWordChar(QChar c) { return c.isLetterOrNumber() || c == u'_'; }

class Reader final {
 public:
  explicit Reader(const QString& code) : code_(code) {}

  QList<CodeToken> ReadAll() {
    bool at_line_start = true;
    while (at_ < code_.size()) {
      const QChar c = code_.at(at_);
      if (c == u'\n') {
        at_line_start = true;
        ++at_;
      } else if (c.isSpace()) {
        ++at_;
      } else if (at_line_start && c == u'#') {
        SkipTo(u"\n");
      } else {
        at_line_start = false;
        ReadOne(c);
      }
    }
    return tokens_;
  }

 private:
  void ReadOne(QChar c) {
    const QStringView rest = QStringView(code_).sliced(at_);
    if (rest.startsWith(u"//")) {
      SkipTo(u"\n");
    } else if (rest.startsWith(u"/*")) {
      SkipTo(u"*/");
      at_ += 2;
    } else if (c == u'"') {
      Add(CodeToken::Kind::kLiteral, ReadQuoted(u'"'));
    } else if (c == u'\'') {
      ReadQuoted(u'\'');
      Add(CodeToken::Kind::kMark, QString(u'\''));
    } else if (IsWordChar(c)) {
      ReadWord();
    } else {
      Add(CodeToken::Kind::kMark, QString(c));
      ++at_;
    }
  }

  // A prefix or a suffix of a literal is no word.
  void ReadWord() {
    const qsizetype start = at_;
    while (at_ < code_.size() && (IsWordChar(code_.at(at_)) || IsDigitSeparator(start))) {
      ++at_;
    }
    const QString word = code_.sliced(start, at_ - start);
    const bool is_quote_next = at_ < code_.size() && code_.at(at_) == u'"';
    const bool is_quote_before = start > 0 && code_.at(start - 1) == u'"';
    if (is_quote_next && word.endsWith(u'R')) {
      ReadRaw();
    } else if (!is_quote_next && !is_quote_before) {
      Add(CodeToken::Kind::kWord, word);
    }
  }

  bool IsDigitSeparator(qsizetype start) const {
    return code_.at(at_) == u'\'' && code_.at(start).isDigit();
  }

  void ReadRaw() {
    const qsizetype open = code_.indexOf(u'(', at_);
    const QString end = u')' + code_.sliced(at_ + 1, open - at_ - 1) + u'"';
    const qsizetype close = code_.indexOf(end, open);
    if (open < 0 || close < 0) {
      at_ = code_.size();
      return;
    }
    Add(CodeToken::Kind::kLiteral, code_.sliced(open + 1, close - open - 1));
    at_ = close + end.size();
  }

  QString ReadQuoted(char16_t quote) {
    QString value;
    for (++at_; at_ < code_.size() && code_.at(at_) != quote; ++at_) {
      value += code_.at(at_) == u'\\' ? ReadEscape() : QString(code_.at(at_));
    }
    ++at_;
    return value;
  }

  QString ReadEscape() {
    const char16_t c = code_.at(++at_ < code_.size() ? at_ : at_ - 1).unicode();
    switch (c) {
      case u'n':
        return QStringLiteral("\n");
      case u't':
        return QStringLiteral("\t");
      case u'u': {
        const QString digits = code_.sliced(at_ + 1).first(4);
        at_ += 4;
        return QString(QChar(digits.toUShort(nullptr, 16)));
      }
      default:
        return QString(QChar(c));
    }
  }

  void SkipTo(QStringView end) {
    const qsizetype found = code_.indexOf(end, at_);
    at_ = found < 0 ? code_.size() : found;
  }

  void Add(CodeToken::Kind kind, const QString& text) {
    if (kind == CodeToken::Kind::kLiteral && !tokens_.isEmpty() && tokens_.last().kind == kind) {
      tokens_.last().text += text;
    } else {
      tokens_.append({.kind = kind, .text = text});
    }
  }

  const QString& code_;
  qsizetype at_ = 0;
  QList<CodeToken> tokens_;
};

}  // namespace

QList<CodeToken> ReadCodeTokens(const QString& code) { return Reader(code).ReadAll(); }

}  // namespace quayline::dbtool
