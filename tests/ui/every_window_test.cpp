// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "every_window.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDirIterator>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QTabBar>
#include <QXmlStreamReader>

#include "dbtool/language_source.h"
#include "i18n/complete_languages.h"

namespace quayline::testing {
namespace {

constexpr QChar kMark(0x2691);  // in each text of a language that is made for the test

// A language with a mark before each text, so that a text without one is not translated.
QStringList MarkedTexts() {
  QStringList lines;
  const dbtool::ProgramTexts program =
      dbtool::ReadProgramTexts(QStringLiteral(QUAYLINE_SOURCE_DIR "/src"));
  for (const dbtool::ProgramText& text : program.texts) {
    lines.append(u"\"%1\"|\"%2%1\""_s.arg(text.english, QString(kMark)));
  }
  return lines;
}

bool HasWords(const QString& text) {
  return std::ranges::any_of(text, [](QChar c) { return c.isLower(); });
}

// Also of the menus that they open.
void AddActions(QStringList& texts, const QList<QAction*>& actions) {
  for (const QAction* action : actions) {
    if (action->isVisible()) {
      texts.append(action->text());
      AddActions(texts, action->menu() ? action->menu()->actions() : QList<QAction*>());
    }
  }
}

// What a user sees, hears or points at of a widget and its actions.
QStringList ShownTexts(const QWidget& widget) {
  QStringList texts{widget.windowTitle(), widget.toolTip(), widget.accessibleName()};
  for (const char* property : {"text", "title", "placeholderText", "hintTitle", "hintText"}) {
    if (qobject_cast<const QLineEdit*>(&widget) == nullptr || property != std::string("text")) {
      texts.append(widget.property(property).toString());
    }
  }
  AddActions(texts, widget.actions());
  if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) {
    for (int tab = 0; tab < tabs->count(); ++tab) {
      texts.append(tabs->tabText(tab));
    }
  }
  return texts;
}

// Texts without a language: names, addresses, what the user entered.
bool IsData(const QString& text) {
  static const QStringList data{u"Quayline"_s, u"http"_s,   u"Alpha"_s, u"Beta"_s,
                                u"qt_"_s,      u"enp3s0"_s, u"eth0"_s,  u"v.3"_s};
  return std::ranges::any_of(data, [&](const QString& each) { return text.contains(each); });
}

QWidgetList VisibleWidgets(QWidget& window) {
  QWidgetList widgets{&window};
  for (auto* widget : window.findChildren<QWidget*>()) {
    if (widget->isVisible()) {
      widgets.append(widget);
    }
  }
  return widgets;
}

std::string Named(const char* window, const QWidget& widget) {
  return std::string(window) + ": " + widget.metaObject()->className() + " " +
         widget.objectName().toStdString();
}

std::string ShownTextsOf(QWidget& window) {
  QStringList texts;
  for (const QWidget* widget : VisibleWidgets(window)) {
    texts += ShownTexts(*widget);
  }
  return texts.join(u'\n').toStdString();
}

void ExpectReached(const char* name, QWidget& window) {
  for (const QWidget* widget : VisibleWidgets(window)) {
    for (const QString& text : ShownTexts(*widget)) {
      EXPECT_TRUE(!HasWords(text) || text.contains(kMark) || IsData(text))
          << Named(name, *widget) << ": " << text.toStdString();
    }
  }
}

// The names of the controls in a form, without the one that is the window itself.
QStringList ControlsOf(const QString& form) {
  QXmlStreamReader reader(ReadBytes(form));
  QStringList names;
  while (!reader.atEnd()) {
    if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == u"widget") {
      names.append(reader.attributes().value(QLatin1String("name")).toString());
    }
  }
  return names.sliced(std::min<qsizetype>(1, names.size()));
}

// A window that is added to the program is added to these tests as well.
TEST_F(EveryWindowTest, EachFormIsShown) {
  QHash<QString, QStringList> forms;
  QDirIterator files(QStringLiteral(QUAYLINE_SOURCE_DIR "/src/ui"), {u"*.ui"_s}, QDir::Files,
                     QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString form = files.next();
    forms.insert(form, ControlsOf(form));
  }
  ASSERT_FALSE(forms.isEmpty());
  ForEach(u"English"_s, [&](const char*, QWidget& window) {
    forms.removeIf([&](const std::pair<const QString&, QStringList&>& form) {
      return std::ranges::all_of(form.second, [&](const QString& control) {
        return window.findChild<QWidget*>(control) != nullptr;
      });
    });
  });
  EXPECT_EQ(forms.keys(), QStringList());
}

TEST_F(EveryWindowTest, ALanguageFileReachesEveryText) {
  QDir().mkpath(folder_.Path("Languages"));
  ASSERT_TRUE(WriteBytes(folder_.Path("Languages/Marked.lng"), LanguageFileBytes(MarkedTexts())));
  ForEach(u"Marked"_s, ExpectReached);
}

// Also one that was open before, and when the windows are turned round.
TEST_F(EveryWindowTest, AnOpenWindowFollowsTheLanguageAndComesBackToEnglish) {
  QDir().mkpath(folder_.Path("Languages"));
  ASSERT_TRUE(WriteBytes(folder_.Path("Languages/Arabic.lng"), LanguageFileBytes(MarkedTexts())));
  ForEach(u"English"_s, [this](const char* name, QWidget& window) {
    if (window.isModal()) {
      return;  // keeps the user from the box of languages
    }
    context_->translator.SetLanguage(u"English"_s);  // what comes late is shown now
    const std::string english = ShownTextsOf(window);
    context_->translator.SetLanguage(u"Arabic"_s);
    EXPECT_EQ(window.layoutDirection(), Qt::RightToLeft) << name;
    ExpectReached(name, window);
    context_->translator.SetLanguage(u"English"_s);
    EXPECT_EQ(window.layoutDirection(), Qt::LeftToRight) << name;
    EXPECT_EQ(ShownTextsOf(window), english) << name;
  });
}

// Tab goes through all controls, and comes back to the first one.
TEST_F(EveryWindowTest, TabComesBackToWhereItBegan) {
  ForEach(u"English"_s, [](const char* name, QWidget& window) {
    if (window.windowType() == Qt::SplashScreen) {
      return;  // takes no keys
    }
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window)) << name;
    ASSERT_NE(window.focusWidget(), nullptr) << name;
    QWidgetList visited{window.focusWidget()};
    constexpr int kMostKeys = 200;  // a text goes through its links first
    for (int key = 0; key < kMostKeys; ++key) {
      QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
      if (window.focusWidget() == visited.first() && visited.size() > 1) {
        break;
      }
      if (!visited.contains(window.focusWidget())) {
        visited.append(window.focusWidget());
      }
    }
    EXPECT_EQ(window.focusWidget(), visited.first()) << name;
    for (const QWidget* widget : VisibleWidgets(window)) {
      const bool is_choice = qobject_cast<const QPushButton*>(widget) != nullptr ||
                             qobject_cast<const QLineEdit*>(widget) != nullptr ||
                             qobject_cast<const QCheckBox*>(widget) != nullptr;
      const bool takes_focus = is_choice && widget->isEnabled() &&
                               widget->focusProxy() == nullptr &&
                               (widget->focusPolicy() & Qt::TabFocus) != 0;
      EXPECT_TRUE(!takes_focus || visited.contains(widget) ||
                  visited.contains(widget->parentWidget()))
          << Named(name, *widget);
    }
  });
}

// Keys have to do something: they go to a field, a button, or a list with rows.
bool TakesKeys(const QWidget* widget) {
  const auto* list = qobject_cast<const QAbstractItemView*>(widget);
  return widget != nullptr && widget->isEnabled() && widget->isVisible() &&
         (list == nullptr || (list->model() != nullptr && list->model()->rowCount() > 0));
}

TEST_F(EveryWindowTest, OpensWithTheFocusOnWhatTakesKeys) {
  ForEach(u"English"_s, [](const char* name, QWidget& window) {
    if (window.windowType() == Qt::SplashScreen) {
      return;
    }
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window)) << name;
    // Some lists are filled soon after their window has opened.
    EXPECT_TRUE(RunUntil([&] { return TakesKeys(window.focusWidget()); })) << name;
  });
}

// What a screen reader reads of a control.
void ExpectNamed(const char* window, QAccessibleInterface& each) {
  const auto* widget = qobject_cast<const QWidget*>(each.object());
  if (widget != nullptr && each.state().focusable && !each.state().invisible) {
    EXPECT_NE(each.role(), QAccessible::NoRole) << Named(window, *widget);
    const bool is_area = each.role() == QAccessible::Client || each.role() == QAccessible::Window ||
                         each.role() == QAccessible::Dialog;
    // The field of a box is read with the box, and a label by its text.
    const bool is_part = qobject_cast<const QComboBox*>(widget->parentWidget()) != nullptr ||
                         qobject_cast<const QLabel*>(widget) != nullptr;
    EXPECT_TRUE(is_area || is_part || !each.text(QAccessible::Name).isEmpty())
        << Named(window, *widget);
  }
  const auto* label = qobject_cast<const QLabel*>(widget);
  if (label != nullptr && !label->text().isEmpty()) {
    EXPECT_EQ(widget->accessibleName(), QString()) << "is read instead of the label's text";
  }
  if (widget != nullptr && each.role() == QAccessible::StaticText && !widget->isVisible()) {
    EXPECT_TRUE(each.state().invisible) << Named(window, *widget);
  }
  for (int child = 0; child < each.childCount() && child < 200; ++child) {
    if (QAccessibleInterface* inner = each.child(child)) {
      ExpectNamed(window, *inner);
    }
  }
}

// Why a widget does not show its whole text, or an empty text.
std::string Cut(const QWidget& widget) {
  const auto* label = qobject_cast<const QLabel*>(&widget);
  if (label != nullptr && !label->text().isEmpty()) {
    const bool wraps = label->wordWrap();
    if (!wraps && label->sizeHint().width() > label->width() + 1) {
      return "is too narrow";
    }
    if (wraps && label->heightForWidth(label->width()) > label->height() + 1) {
      return "is too low";
    }
  }
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  if (button != nullptr && !button->text().isEmpty() &&
      button->minimumSizeHint().width() > button->width() + 1) {
    return "is too narrow by " +
           std::to_string(button->minimumSizeHint().width() - button->width());
  }
  return {};
}

// Labels and buttons of one parent that lie over each other.
void ExpectApart(const char* window, const QWidgetList& widgets) {
  QHash<const QWidget*, QWidgetList> siblings;
  for (QWidget* widget : widgets) {
    const bool is_text = qobject_cast<QLabel*>(widget) || qobject_cast<QAbstractButton*>(widget) ||
                         qobject_cast<QLineEdit*>(widget);
    if (is_text && widget->parentWidget() != nullptr && !widget->isWindow()) {
      for (const QWidget* other : siblings[widget->parentWidget()]) {
        EXPECT_FALSE(other->geometry().intersects(widget->geometry()))
            << Named(window, *widget) << " over " << Named("", *other);
      }
      siblings[widget->parentWidget()].append(widget);
    }
  }
}

// No key stands for two of `captions`.
void ExpectOwnKeys(const char* window, const QStringList& captions) {
  QHash<QKeySequence, QString> users;
  for (const QString& caption : captions) {
    if (const QKeySequence key = QKeySequence::mnemonic(caption); !key.isEmpty()) {
      EXPECT_EQ(users.value(key, caption), caption) << window;
      users.insert(key, caption);
    }
  }
}

QStringList TextsOf(const QList<QAction*>& actions) {
  QStringList texts;
  for (const QAction* action : actions) {
    texts.append(action->isVisible() ? action->text() : QString());
  }
  return texts;
}

// Each button has an access key, but for those of a message, which Qt makes, and the one that Enter
// presses.
void ExpectAccessKeys(const char* name, QWidget& window) {
  QStringList captions;
  QWidgetList with_label;
  for (const QWidget* widget : VisibleWidgets(window)) {
    const auto* label = qobject_cast<const QLabel*>(widget);
    if (label != nullptr && label->buddy() != nullptr) {
      captions.append(label->text());
      with_label.append(label->buddy());
    }
  }
  for (QWidget* widget : VisibleWidgets(window)) {
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (button != nullptr) {
      captions.append(button->text());
      const bool needs_key =
          qobject_cast<const QPushButton*>(widget) && !with_label.contains(widget) &&
          !qobject_cast<const QPushButton*>(widget)->isDefault() &&
          qobject_cast<const QDialogButtonBox*>(widget->parentWidget()) == nullptr;
      EXPECT_TRUE(!needs_key || !QKeySequence::mnemonic(button->text()).isEmpty())
          << Named(name, *widget) << ": " << button->text().toStdString();
    } else if (const auto* tabs = qobject_cast<const QTabBar*>(widget)) {
      for (int tab = 0; tab < tabs->count(); ++tab) {
        captions.append(tabs->tabText(tab));
      }
    } else if (const auto* bar = qobject_cast<const QMenuBar*>(widget)) {
      captions += TextsOf(bar->actions());
    }
  }
  ExpectOwnKeys(name, captions);
  for (const auto* menu : window.findChildren<QMenu*>()) {
    ExpectOwnKeys(name, TextsOf(menu->actions()));
  }
}

// In English and each fitting language: names for screen readers, access keys that no
// other control has, nothing cut, nothing over something else, and a size that fits a small screen.
TEST_F(EveryWindowTest, IsWholeAndReadableInEachLanguage) {
  const auto made =
      dbtool::WriteLanguages(QStringLiteral(QUAYLINE_SOURCE_DIR "/data"), folder_.dir.path());
  ASSERT_TRUE(made) << made.error().toStdString();
  for (const QString& language : QStringList{u"English"_s} + kFittingLanguages) {
    SCOPED_TRACE(language.toStdString());
    ForEach(language, [&](const char* name, QWidget& window) {
      for (int pass = 0; pass < 3; ++pass) {
        QCoreApplication::sendPostedEvents();  // the layout follows the texts
      }
      ExpectAccessKeys(name, window);
      ExpectNamed(name, *QAccessible::queryAccessibleInterface(&window));
      const QWidgetList widgets = VisibleWidgets(window);
      ExpectApart(name, widgets);
      for (const QWidget* widget : widgets) {
        // A layout follows a text that was just set with the next events.
        RunUntil([&] { return Cut(*widget).empty(); }, std::chrono::seconds(2));
        EXPECT_EQ(Cut(*widget), "")
            << Named(name, *widget) << ": " << widget->property("text").toString().toStdString();
      }
      constexpr QSize kSmallScreen(1024, 600);
      constexpr QSize kSystemFrame(16, 48);
      const bool has_own_frame = window.windowFlags().testFlag(Qt::FramelessWindowHint);
      const QSize room = has_own_frame ? kSmallScreen : kSmallScreen - kSystemFrame;
      const QSize least = window.minimumSizeHint().shrunkBy(window.contentsMargins());
      if (window.devicePixelRatioF() == 1) {  // a small screen has no dense pixels
        EXPECT_EQ(least.boundedTo(room), least) << name;
      }
    });
  }
}

}  // namespace
}  // namespace quayline::testing
