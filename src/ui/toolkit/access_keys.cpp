// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/access_keys.h"

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QHash>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSet>
#include <QTabWidget>

#include <algorithm>
#include <functional>

namespace quayline {

namespace {

struct Caption {
  QString text;
  bool is_shown;
  std::function<void(const QString&)> write;
};
using Captions = QList<Caption>;

// The letter after "&", in one case; a null character without one. "&&" is a plain "&".
QChar KeyOf(const QString& text) {
  for (qsizetype at = text.indexOf(u'&'); at >= 0 && at + 1 < text.size();
       at = text.indexOf(u'&', at + 2)) {
    if (text.at(at + 1) != u'&' && !text.at(at + 1).isSpace()) {
      return text.at(at + 1).toCaseFolded();
    }
  }
  return {};
}

const QRegularExpression& KeyInBrackets() {
  static const QRegularExpression pattern(QStringLiteral(" ?\\(&[^&\\s]\\)"));
  return pattern;
}

// Without the key; also without the brackets that contain nothing else.
QString WithoutKey(QString text) {
  static const QRegularExpression mark(QStringLiteral("&(?=[^&\\s])"));
  static const QString kKept(QChar(0xfffc));
  return text.replace(QStringLiteral("&&"), kKept)
      .remove(KeyInBrackets())
      .remove(mark)
      .replace(kKept, QStringLiteral("&&"));
}

// Chinese and Japanese captions have letters that no key types.
bool IsTyped(QChar c) {
  return c.isLetter() && c.script() != QChar::Script_Han && c.script() != QChar::Script_Hiragana &&
         c.script() != QChar::Script_Katakana;
}

bool BeginsWord(const QString& text, qsizetype at) { return at == 0 || text.at(at - 1) == u' '; }

bool IsInBrackets(const QString& text) {
  const bool is_typed =
      std::ranges::all_of(text, [](QChar c) { return !c.isLetter() || IsTyped(c); });
  return text.contains(KeyInBrackets()) || !is_typed;
}

// The letters that can be the key of `text`, the better ones first: its own, or, where its key is
// in brackets, those of the English caption and then any.
QString Candidates(const QString& text, const QString& english) {
  if (IsInBrackets(text)) {
    return WithoutKey(english) + QStringLiteral("abcdefghijklmnopqrstuvwxyz");
  }
  QString first;
  QString others;
  const QString plain = WithoutKey(text);
  for (qsizetype at = 0; at < plain.size(); ++at) {
    (BeginsWord(plain, at) ? first : others) += IsTyped(plain.at(at)) ? plain.at(at) : QChar(u'&');
  }
  return QString(first + others).remove(u'&');
}

// Before the colon or the dots at the end of a caption.
qsizetype EndOfWords(const QString& caption) {
  qsizetype end = caption.size();
  while (end > 0 && QStringLiteral(":.\u2026\uff1a").contains(caption.at(end - 1))) {
    --end;
  }
  return end;
}

QString WithKey(const QString& text, QChar key) {
  QString plain = WithoutKey(text);
  if (IsInBrackets(text)) {
    const QString old = KeyInBrackets().match(text).captured();
    const QString brackets =
        QStringLiteral("%1(&%2)").arg(old.startsWith(u' ') ? u" " : u"").arg(key.toUpper());
    return plain.insert(EndOfWords(plain), brackets);
  }
  qsizetype place = -1;
  for (qsizetype at = 0; at < plain.size(); ++at) {
    if (plain.at(at).toCaseFolded() == key && (place < 0 || BeginsWord(plain, at))) {
      place = at;
    }
  }
  return place < 0 ? plain : QString(plain).insert(place, u'&');
}

void AddActions(Captions& captions, const QList<QAction*>& actions) {
  for (QAction* action : actions) {
    captions.append({.text = action->text(),
                     .is_shown = action->isVisible(),
                     .write = [action](const QString& text) { action->setText(text); }});
  }
}

void AddTabs(Captions& captions, QTabWidget& tabs) {
  for (int tab = 0; tab < tabs.count(); ++tab) {
    captions.append({.text = tabs.tabText(tab),
                     .is_shown = tabs.isVisible(),
                     .write = [&tabs, tab](const QString& text) { tabs.setTabText(tab, text); }});
  }
}

// What the keys of one window reach: a menu has keys of its own.
Captions CaptionsOf(QWidget& window) {
  Captions captions;
  for (auto* widget : window.findChildren<QWidget*>()) {
    const auto add = [&](auto* control, const QString& text, auto set) {
      captions.append({.text = text,
                       .is_shown = control->isVisible(),
                       .write = [control, set](const QString& other) { (control->*set)(other); }});
    };
    if (widget->window() != &window) {
      continue;
    }
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
      add(button, button->text(), &QAbstractButton::setText);
    } else if (auto* label = qobject_cast<QLabel*>(widget); label && label->buddy()) {
      add(label, label->text(), &QLabel::setText);
    } else if (auto* group = qobject_cast<QGroupBox*>(widget)) {
      add(group, group->title(), &QGroupBox::setTitle);
    } else if (auto* tabs = qobject_cast<QTabWidget*>(widget)) {
      AddTabs(captions, *tabs);
    } else if (auto* bar = qobject_cast<QMenuBar*>(widget)) {
      AddActions(captions, bar->actions());
    }
  }
  return captions;
}

// Which caption has which key. A caption that finds none free takes that of another one, if that
// one finds another.
class KeyOwners final {
 public:
  KeyOwners(const Captions& captions, const Translator& translator)
      : captions_(captions), translator_(translator) {}

  void Settle() {
    QList<qsizetype> without;
    for (const bool is_shown : {true, false}) {
      for (qsizetype i = 0; i < captions_.size(); ++i) {
        const QChar key = KeyOf(captions_[i].text);
        if (captions_[i].is_shown != is_shown) {
          continue;
        }
        if (!key.isNull() && !owners_.contains(key)) {
          owners_.insert(key, i);
        } else if (!key.isNull() || !KeyOf(EnglishOf(i)).isNull()) {
          without.append(i);
        }
      }
    }
    for (const qsizetype i : without) {
      QSet<QChar> tried;
      Find(i, tried);
    }
    for (qsizetype i = 0; i < captions_.size(); ++i) {
      Write(i);
    }
  }

 private:
  // Empty for a text that is not the translator's, which keeps its key.
  QString EnglishOf(qsizetype caption) const {
    return translator_.EnglishOf(captions_[caption].text).value_or(QString());
  }

  bool Find(qsizetype caption, QSet<QChar>& tried) {
    const QString english = EnglishOf(caption);
    if (english.isEmpty()) {
      return false;
    }
    const QString letters = Candidates(captions_[caption].text, english).toCaseFolded();
    for (const QChar key : letters) {
      if (key.isLetter() && !owners_.contains(key)) {
        owners_.insert(key, caption);
        return true;
      }
    }
    for (const QChar key : letters) {
      if (!key.isLetter() || tried.contains(key)) {
        continue;
      }
      tried.insert(key);
      if (Find(owners_.value(key), tried)) {
        owners_.insert(key, caption);
        return true;
      }
    }
    return false;
  }

  void Write(qsizetype i) const {
    const Caption& caption = captions_[i];
    const QString english = EnglishOf(i);
    const QChar key = owners_.key(i);
    if (english.isEmpty() || key == KeyOf(caption.text)) {
      return;
    }
    const QString text = key.isNull() ? WithoutKey(caption.text) : WithKey(caption.text, key);
    caption.write(translator_.GivenAs(text, english));
  }

  const Captions& captions_;
  const Translator& translator_;
  QHash<QChar, qsizetype> owners_;
};

}  // namespace

void SettleAccessKeys(QWidget& window, const Translator& translator) {
  if (translator.IsTranslated()) {  // the English captions of each window have keys of their own
    KeyOwners(CaptionsOf(window), translator).Settle();
  }
  for (const auto* menu : window.findChildren<QMenu*>()) {
    Captions captions;
    AddActions(captions, menu->actions());
    KeyOwners(captions, translator).Settle();
  }
}

}  // namespace quayline
