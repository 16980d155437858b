// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/key_sequence.h"

#include <QHash>

#include <algorithm>
#include <optional>
#include <utility>

namespace quayline {

namespace {

constexpr int kMaxRepeat = 1000;

struct NamedKey {
  const char* name;
  Qt::Key key;
  const char* text;
};

constexpr NamedKey kNamedKeys[] = {
    {"BACKSPACE", Qt::Key_Backspace, ""},
    {"BS", Qt::Key_Backspace, ""},
    {"BKSP", Qt::Key_Backspace, ""},
    {"BREAK", Qt::Key_Pause, ""},
    {"CAPSLOCK", Qt::Key_CapsLock, ""},
    {"DELETE", Qt::Key_Delete, ""},
    {"DEL", Qt::Key_Delete, ""},
    {"DOWN", Qt::Key_Down, ""},
    {"END", Qt::Key_End, ""},
    {"ENTER", Qt::Key_Return, "\r"},
    {"ESC", Qt::Key_Escape, ""},
    {"HELP", Qt::Key_Help, ""},
    {"HOME", Qt::Key_Home, ""},
    {"INSERT", Qt::Key_Insert, ""},
    {"INS", Qt::Key_Insert, ""},
    {"LEFT", Qt::Key_Left, ""},
    {"NUMLOCK", Qt::Key_NumLock, ""},
    {"PGDN", Qt::Key_PageDown, ""},
    {"PGUP", Qt::Key_PageUp, ""},
    {"PRTSC", Qt::Key_Print, ""},
    {"RIGHT", Qt::Key_Right, ""},
    {"SCROLLLOCK", Qt::Key_ScrollLock, ""},
    {"TAB", Qt::Key_Tab, "\t"},
    {"UP", Qt::Key_Up, ""},
    {"F1", Qt::Key_F1, ""},
    {"F2", Qt::Key_F2, ""},
    {"F3", Qt::Key_F3, ""},
    {"F4", Qt::Key_F4, ""},
    {"F5", Qt::Key_F5, ""},
    {"F6", Qt::Key_F6, ""},
    {"F7", Qt::Key_F7, ""},
    {"F8", Qt::Key_F8, ""},
    {"F9", Qt::Key_F9, ""},
    {"F10", Qt::Key_F10, ""},
    {"F11", Qt::Key_F11, ""},
    {"F12", Qt::Key_F12, ""},
    {"F13", Qt::Key_F13, ""},
    {"F14", Qt::Key_F14, ""},
    {"F15", Qt::Key_F15, ""},
    {"F16", Qt::Key_F16, ""},
};

// The key that types one character (a UTF-16 pair counts as one).
KeyStroke Typing(const QString& character) {
  const QChar upper = character.at(0).toUpper();
  return {.key = upper.unicode() < 0x80 ? upper.unicode() : Qt::Key_unknown,
          .modifiers = Qt::NoModifier,
          .text = character};
}

std::optional<KeyStroke> Named(const QString& name) {
  const auto* found = std::ranges::find_if(kNamedKeys, [&name](const NamedKey& candidate) {
    return name.compare(QLatin1String(candidate.name), Qt::CaseInsensitive) == 0;
  });
  if (found != std::end(kNamedKeys)) {
    return KeyStroke{
        .key = found->key, .modifiers = Qt::NoModifier, .text = QString::fromLatin1(found->text)};
  }
  return name.size() == 1 ? std::optional(Typing(name)) : std::nullopt;
}

class Parser final {
 public:
  explicit Parser(const QString& notation) : notation_(notation) {}

  QList<KeyStroke> Parse() {
    while (position_ < notation_.size()) {
      Next();
    }
    return std::move(strokes_);
  }

 private:
  void Next() {
    const QChar character = notation_.at(position_++);
    switch (character.unicode()) {
      case '+':
        pending_ |= Qt::ShiftModifier;
        return;
      case '^':
        pending_ |= Qt::ControlModifier;
        return;
      case '%':
        pending_ |= Qt::AltModifier;
        return;
      case '(':
        group_ |= std::exchange(pending_, Qt::NoModifier);
        return;
      case ')':
        group_ = Qt::NoModifier;
        return;
      case '~':
        Add(*Named(QStringLiteral("ENTER")), 1);
        return;
      case '{':
        Braces();
        return;
      case '}':
        return;
      default:
        Character(character);
    }
  }

  void Character(QChar character) {
    QString text(character);
    if (character.isHighSurrogate() && position_ < notation_.size()) {
      text += notation_.at(position_++);
    }
    Add(Typing(text), 1);
  }

  void Braces() {
    // The first character belongs to the name even if it is a brace: {}} types one.
    const qsizetype close = notation_.indexOf(QLatin1Char('}'), position_ + 1);
    if (close < 0) {
      return;
    }
    const QString inside = notation_.mid(position_, close - position_);
    position_ = close + 1;
    const qsizetype blank = inside.lastIndexOf(QLatin1Char(' '));
    bool has_count = false;
    const int count = blank > 0 ? inside.mid(blank + 1).toInt(&has_count) : 1;
    if (const auto stroke = Named(has_count ? inside.left(blank) : inside)) {
      Add(*stroke, has_count ? std::clamp(count, 0, kMaxRepeat) : 1);
    }
  }

  void Add(KeyStroke stroke, int count) {
    stroke.modifiers = group_ | std::exchange(pending_, Qt::NoModifier);
    if (stroke.modifiers & (Qt::ControlModifier | Qt::AltModifier)) {
      stroke.text.clear();
    } else if (stroke.modifiers & Qt::ShiftModifier) {
      stroke.text = stroke.text.toUpper();
    }
    for (int i = 0; i < count; ++i) {
      strokes_.append(stroke);
    }
  }

  const QString& notation_;
  qsizetype position_ = 0;
  Qt::KeyboardModifiers pending_ = Qt::NoModifier;
  Qt::KeyboardModifiers group_ = Qt::NoModifier;
  QList<KeyStroke> strokes_;
};

}  // namespace

QList<KeyStroke> ParseKeys(const QString& notation) { return Parser(notation).Parse(); }

std::optional<QString> KeyNotation(const QString& key) {
  constexpr std::pair<const char*, const char*> kNamesOfPages[] = {
      {"ArrowDown", "DOWN"}, {"ArrowLeft", "LEFT"}, {"ArrowRight", "RIGHT"}, {"ArrowUp", "UP"},
      {"Escape", "ESC"},     {"PageDown", "PGDN"},  {"PageUp", "PGUP"},      {"Space", " "}};
  QString name = key;
  for (const auto& [of_pages, of_notation] : kNamesOfPages) {
    if (key.compare(QLatin1String(of_pages), Qt::CaseInsensitive) == 0) {
      name = QLatin1String(of_notation);
    }
  }
  return Named(name) ? std::optional(QLatin1Char('{') + name + QLatin1Char('}')) : std::nullopt;
}

}  // namespace quayline
