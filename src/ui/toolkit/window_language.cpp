// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/window_language.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QHeaderView>
#include <QLibraryInfo>
#include <QPointer>
#include <QTabWidget>
#include <QThread>
#include <QTreeView>

#include <functional>

#include "i18n/language_locale.h"
#include "ui/toolkit/access_keys.h"

namespace quayline {

namespace {

// The texts of widgets and actions. A property that a class does not have is skipped.
constexpr const char* kTextProperties[] = {
    "windowTitle",     "title",           "text",
    "toolTip",         "statusTip",       "whatsThis",
    "accessibleName",  "placeholderText", "accessibleDescription",
    "emptyText",       "hintTitle",       "hintText",
    "informativeText", "suffix",          "specialValueText"};

// Qt's own classes: QLineEdit and the like.
bool IsOfQt(const char* context) {
  return context != nullptr && context[0] == 'Q' && context[1] >= 'A' && context[1] <= 'Z';
}

// What the code that is generated from forms calls, and Qt for the texts of its own.
class FormTexts final : public QTranslator {
 public:
  explicit FormTexts(const Translator& translator) : translator_(translator) {}

  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char* /*disambiguation*/,
                    int /*n*/) const override {
    if (QThread::currentThread() != thread()) {
      return {};
    }
    const QString english = QString::fromUtf8(source);
    if (!IsOfQt(context)) {
      return translator_.Text(english);
    }
    const QString text = translator_.Translate(english);
    return text.isEmpty() ? QString() : text;
  }

 private:
  const Translator& translator_;
};

using Write = std::function<void(const QString&)>;

void ApplyTo(const QString& text, const Translator& translator, const Write& write) {
  if (const auto english = translator.EnglishOf(text)) {
    write(translator.Text(*english));
  }
}

void ApplyToProperties(QObject& object, const Translator& translator) {
  for (const char* property : kTextProperties) {
    if (object.metaObject()->indexOfProperty(property) >= 0) {
      ApplyTo(object.property(property).toString(), translator,
              [&](const QString& text) { object.setProperty(property, text); });
    }
  }
}

void ApplyToItems(QObject& object, const Translator& translator) {
  if (auto* box = qobject_cast<QComboBox*>(&object)) {
    for (int item = 0; item < box->count(); ++item) {
      ApplyTo(box->itemText(item), translator,
              [&](const QString& text) { box->setItemText(item, text); });
    }
  } else if (auto* tabs = qobject_cast<QTabWidget*>(&object)) {
    for (int tab = 0; tab < tabs->count(); ++tab) {
      ApplyTo(tabs->tabText(tab), translator,
              [&](const QString& text) { tabs->setTabText(tab, text); });
    }
  } else if (auto* header = qobject_cast<QHeaderView*>(&object);
             header != nullptr && header->count() > 0) {
    header->headerDataChanged(header->orientation(), 0, header->count() - 1);
  } else if (auto* view = qobject_cast<QAbstractItemView*>(&object)) {
    view->viewport()->update();  // models ask the translator for each cell
  }
}

}  // namespace

void ApplyLanguage(QWidget& window, const Translator& translator) {
  ApplyToProperties(window, translator);
  QList<QPointer<QObject>> children;
  for (QObject* each : window.findChildren<QObject*>()) {
    children.append(each);
  }
  for (const QPointer<QObject>& each : std::as_const(children)) {
    if (each != nullptr) {  // a label with another text makes its inner objects again
      ApplyToProperties(*each, translator);
      ApplyToItems(*each, translator);
    }
  }
}

WindowLanguage::WindowLanguage(QApplication& application, const Translator& translator)
    : application_(application),
      translator_(translator),
      form_texts_(std::make_unique<FormTexts>(translator)) {
  QCoreApplication::installTranslator(form_texts_.get());
  connect(&translator, &Translator::languageChanged, this, &WindowLanguage::Apply);
  application.installEventFilter(this);
  FollowLanguage();
}

WindowLanguage::~WindowLanguage() = default;  // a QTranslator removes itself

void WindowLanguage::FollowLanguage() {
  const QLocale locale = LocaleOfLanguage(translator_.Language());
  application_.setLayoutDirection(locale.textDirection());
  QCoreApplication::removeTranslator(&qt_texts_);
  if (qt_texts_.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                     QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(&qt_texts_);
  }
}

void WindowLanguage::Apply() {
  FollowLanguage();
  const QWidgetList windows = QApplication::topLevelWidgets();
  for (QWidget* window : windows) {
    ApplyLanguage(*window, translator_);
  }
  for (QWidget* window : windows) {
    QEvent event(QEvent::LanguageChange);
    QCoreApplication::sendEvent(window, &event);
    SettleAccessKeys(*window, translator_);
  }
}

bool WindowLanguage::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show && watched->isWidgetType()) {
    auto& widget = static_cast<QWidget&>(*watched);
    if (widget.isWindow()) {
      SettleAccessKeys(widget, translator_);
    }
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace quayline
