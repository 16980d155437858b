// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/entry_inputs.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QValidator>

#include "core/entry_fields.h"
#include "core/protocol.h"
#include "ui/entries/adapter_dialog.h"
#include "ui/toolkit/address_box.h"
#include "ui/toolkit/controls.h"
#include "ui/toolkit/theme.h"

namespace quayline {

namespace {

// Accepts no letters while the user types or pastes. What it accepts need not be complete: the
// checks look at that when the entry is added.
class TypingFilter final : public QValidator {
 public:
  TypingFilter(bool (*may_be_typed)(const QString&), QObject* parent)
      : QValidator(parent), may_be_typed_(may_be_typed) {}

  State validate(QString& text, int& cursor) const override {
    text = text.trimmed();  // what is pasted; two ports with a blank between them are not one port
    cursor = std::min(cursor, static_cast<int>(text.size()));
    return may_be_typed_(text) ? Acceptable : Invalid;
  }

 private:
  bool (*may_be_typed_)(const QString&);
};

}  // namespace

void MakePortField(QLineEdit& field, bool takes_several) {
  field.setValidator(
      new TypingFilter(takes_several ? &MayBeTypedAsPorts : &MayBeTypedAsPort, &field));
}

void MakeAddressBox(QComboBox& box, QToolButton& detect, const AppContext& context) {
  const Adapters& adapters = context.adapters;
  box.setCompleter(nullptr);  // would finish half an address by one of the list
  box.lineEdit()->setValidator(new TypingFilter(&MayBeTypedAsAddress, &box));
  IgnoreWheel(&box);
  FillLocalAddresses(box,
                     ForwardableAddresses(adapters.AddressTable(),
                                          AddressTowards(context.session.router_ip, adapters)));
  detect.setIcon(ThemeIcon(QStringLiteral("detect")));
  QObject::connect(&detect, &QToolButton::clicked, &box, [&box, &adapters] {
    auto* chooser = new AdapterDialog(adapters, AddressPurpose::kOwn, box.window());
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
  box.addItems({ProtocolText(Protocol::kTcp), ProtocolText(Protocol::kUdp)});
  if (offers_both) {
    box.addItem(ProtocolText(Protocol::kBoth));
    box.setCurrentIndex(2);
  }
  IgnoreWheel(&box);
}

}  // namespace quayline
