// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QPushButton>
#include <QTabBar>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "test_main.h"
#include "window_doubles.h"

namespace quayline::testing {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

template <typename T = QWidget>
T* Child(const QObject* window, const char* name) {
  T* child = window->findChild<T*>(QLatin1String(name));
  EXPECT_NE(child, nullptr) << name;
  return child;
}

// A control by its name, and the text in it.
struct Named {
  const char* name;
  std::string text;
};

// A window on a program folder of its own, worked by the names of its controls. Texts are those of
// the standard library, for which the test framework has matchers.
class WindowTest : public ::testing::Test {
 protected:
  void TearDown() override { delete window_.data(); }

  template <typename T = QWidget>
  T* Find(const char* name) const {
    return Child<T>(window_, name);
  }

  // Of a label, a field, a box or an editor.
  std::string TextOf(const char* name) const {
    const QWidget* control = Find(name);
    return control->property(TextProperty(control)).toString().toStdString();
  }
  void Type(const char* name, const char* text) {
    QWidget* control = Find(name);
    control->setProperty(TextProperty(control), QString::fromUtf8(text));
  }
  void ExpectTexts(std::initializer_list<Named> controls) const {
    for (const Named& control : controls) {
      EXPECT_EQ(TextOf(control.name), control.text) << control.name;
    }
  }
  bool ComesToSay(const char* name, const char* words) const {
    return RunUntil([&] { return TextOf(name).contains(words); });
  }

  void Click(const char* button) { Find<QAbstractButton>(button)->click(); }
  void Trigger(const char* action) { Find<QAction>(action)->trigger(); }
  // As the user does: a box reports these differently from changes by code.
  void Choose(const char* box, int item) {
    auto* combo = Find<QComboBox>(box);
    combo->setCurrentIndex(item);
    Q_EMIT combo->activated(item);
    Q_EMIT combo->textActivated(combo->currentText());
  }
  void Press(const char* control, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    Find(control)->setFocus();
    QTest::keyClick(Find(control), key, modifiers);
  }
  void Activate() {
    window_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_));
  }
  // From now on the texts of `records` are German.
  void SpeakGerman(const QStringList& records) {
    QDir().mkpath(folder_.Path("Languages"));
    ASSERT_TRUE(WriteBytes(folder_.Path("Languages/German.lng"), LanguageFileBytes(records)));
    context_->translator.SetFolder(folder_.Path("Languages"));
    context_->translator.SetLanguage(QStringLiteral("German"));
    QEvent changed(QEvent::LanguageChange);
    QCoreApplication::sendEvent(window_, &changed);
  }
  bool ComesToItsEnd() {
    return RunUntil([this] { return window_.isNull(); });
  }

  // The rows of the list: "name address start-end type description", parted by "; ".
  std::string Rows() const {
    QStringList rows;
    for (const PortEntry& e : context_->port_list.Entries()) {
      rows.append(QStringList{e.app_name, e.forwarded_to, e.start_port + u'-' + e.end_port,
                              e.protocol, e.description}
                      .join(u' '));
    }
    return rows.join(QStringLiteral("; ")).toStdString();
  }
  std::string Stored(const Setting& setting) const {
    return context_->settings.Value(setting).toStdString();
  }
  void ExpectStored(std::initializer_list<std::pair<Setting, std::string>> settings) const {
    for (const auto& [setting, text] : settings) {
      EXPECT_EQ(Stored(setting), text) << setting.key;
    }
  }

  ProgramFolder folder_;
  FakePrompts prompts_;
  std::unique_ptr<AppContext> context_ =
      std::make_unique<AppContext>(folder_.dir.path(), folder_.adapters, folder_.desktop);
  QPointer<QWidget> window_;

 private:
  static const char* TextProperty(const QWidget* control) {
    for (const char* property : {"text", "currentText", "plainText"}) {
      if (control->metaObject()->indexOfProperty(property) >= 0) {
        return property;
      }
    }
    ADD_FAILURE() << control->objectName().toStdString() << " has no text";
    return "";
  }
};

}  // namespace quayline::testing
