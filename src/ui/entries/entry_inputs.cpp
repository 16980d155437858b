// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/entry_inputs.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QValidator>

#include "core/entry_fields.h"
#include "ui/entries/adapter_dialog.h"
#include "ui/toolkit/address_box.h"
#include "ui/toolkit/theme.h"

namespace quayline {

namespace {

// Keeps letters out while they are typed or pasted. The text need not be complete: the entry is
// checked when it is added.
class TypingFilter final : public QValidator {
 public:
  TypingFilter(bool (*may_be_typed)(const QString&), QObject* parent)
      : QValidator(parent), may_be_typed_(may_be_typed) {}

  State validate(QString& text, int& cursor) const override {
    text = text.trimmed();  // what is pasted; two ports with a blank between them are not one
    cursor = std::min(cursor, static_cast<int>(text.size()));
    return may_be_typed_(text) ? Acceptable : Invalid;
  }

 private:
  bool (*may_be_typed_)(const QString&);
};

}  // namespace

void MakePortField(QLineEdit& field, const RouterSession& session) {
  field.setValidator(new TypingFilter(&MayBeTypedAsPort, &field));
  QObject::connect(
      &field, &QLineEdit::editingFinished, &field,
      [&field, limits = LimitsOf(session)] { field.setText(ClampedPort(field.text(), limits)); });
}

void MakeAddressBox(QComboBox& box, QToolButton& detect, const Adapters& adapters,
                    QWidget* window) {
  box.setCompleter(nullptr);  // would complete a part of an address by one of the list
  box.lineEdit()->setValidator(new TypingFilter(&MayBeTypedAsAddress, &box));
  FillLocalAddresses(box, ForwardableAddresses(adapters.AddressTable()));
  detect.setIcon(ThemeIcon(QStringLiteral("detect")));
  QObject::connect(&detect, &QToolButton::clicked, &box, [&box, &adapters, window] {
    auto* chooser = new AdapterDialog(adapters, AddressPurpose::kOwn, window);
    QObject::connect(chooser, &AdapterDialog::chosen, &box, &QComboBox::setEditText);
    chooser->open();
  });
}

void KeepStatusPlace(QLabel& line, QWidget& bar) {
  line.setMinimumHeight(line.fontMetrics().height());
  QSizePolicy policy = bar.sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  bar.setSizePolicy(policy);
}

void FillProtocols(QComboBox& box, bool offers_both) {
  box.addItems({QStringLiteral("TCP"), QStringLiteral("UDP")});
  if (offers_both) {
    box.addItem(QStringLiteral("TCP/UDP"));
    box.setCurrentIndex(2);
  }
}

}  // namespace quayline
