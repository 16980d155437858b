// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include "entry_doubles.h"
#include "test_main.h"
#include "ui/entries/frm_add_new.h"
#include "ui/entries/frm_network_list.h"

namespace quayline::testing {
namespace {

QStringList Fields(std::initializer_list<const char*> texts) {
  QStringList fields;
  for (const char* text : texts) {
    fields.append(QString::fromUtf8(text));
  }
  return fields;
}

class AddWindowTest : public ::testing::Test {
 protected:
  AddWindowTest() {
    folder_.WriteDatabases({RouterRow(3, QStringLiteral("Alpha 1"), QString())},
                           {Fields({"1", "Game night", "Ga me", "6881-6889", "53", "80-81"}),
                            Fields({"2", "<b>Mail|x</b>", "Mail", "25|x|", "", ""})},
                           {Fields({"5", "Old", "UDP", "7", "8"})});
    EXPECT_TRUE(context_.databases.Open(folder_.dir.path()));
    SelectRouter(context_.session, *context_.databases.FindRouter(3));
  }
  ~AddWindowTest() override { delete window_.data(); }

  void Open() {
    window_ = rig_.windows.AddNew(&desk_, [this] { ++stored_; });
    window_->show();
    auto* programs = Find<QComboBox>("Combo3");
    ASSERT_TRUE(RunUntil([&] {
      return Find<QLabel>("Label9")->text().startsWith(QStringLiteral("Programs Loaded"));
    }));
    EXPECT_EQ(programs->currentText(), QString()) << "no program is chosen by itself";
  }
  void OpenCustom() {
    Open();
    Click("Command4");
  }
  void Activate() {
    window_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_));
  }
  template <typename T>
  T* Find(const char* name) {
    T* control = window_->findChild<T*>(QLatin1String(name));
    EXPECT_NE(control, nullptr) << name;
    return control;
  }
  void Click(const char* button) { Find<QAbstractButton>(button)->click(); }
  void Choose(const char* box, int item) {
    auto* combo = Find<QComboBox>(box);
    combo->setCurrentIndex(item);
    Q_EMIT combo->activated(item);
    Q_EMIT combo->textActivated(combo->currentText());
  }
  void TypeCustom(const char* name, const char* start, const char* end) {
    Find<QComboBox>("Combo2")->setEditText(QLatin1String(name));
    Find<QLineEdit>("Text2")->setText(QLatin1String(start));
    Find<QLineEdit>("Text3")->setText(QLatin1String(end));
  }
  // "name address start-end type description", one row after the other.
  QString Rows() const {
    QStringList rows;
    for (const PortEntry& e : context_.port_list.Entries()) {
      rows.append(QStringList{e.app_name, e.forwarded_to, e.start_port, e.end_port, e.protocol,
                              e.description}
                      .join(u' '));
    }
    return rows.join(QStringLiteral("; "));
  }

  ProgramFolder folder_;
  FakePrompts prompts_;
  AppContext context_{folder_.dir.path(), folder_.adapters, folder_.desktop};
  EntryRig rig_{context_, prompts_};
  QWidget desk_;
  QPointer<QDialog> window_;
  int stored_ = 0;
};

TEST_F(AddWindowTest, AProgramIsCountedShownAndAddedTwiceUnderTheSameNames) {
  Open();
  EXPECT_EQ(Find<QLabel>("Label9")->text(), QStringLiteral("Programs Loaded: (2)"));
  EXPECT_EQ(Find<QComboBox>("Combo5")->currentText(), QStringLiteral("192.168.1.20"));
  Choose("Combo3", 0);
  EXPECT_EQ(Find<QLabel>("Label11")->text(), QStringLiteral("Entries Required: (3)"));
  EXPECT_EQ(Find<QLabel>("Label14")->text(), QStringLiteral("(6881-6889)(80-81)"));
  EXPECT_EQ(Find<QLabel>("Label15")->text(), QStringLiteral("(53)(80-81)"));
  Click("Command2");
  const QString rows = QStringLiteral(
      "Game01 192.168.1.20() 6881 6889 TCP Game night; Game02 192.168.1.20() 53 53 UDP Game night; "
      "Game03 192.168.1.20() 80 81 TCP/UDP Game night");
  EXPECT_EQ(Rows(), rows);
  Click("Command2");
  EXPECT_EQ(Rows(), rows + QStringLiteral("; ") + rows);
  EXPECT_EQ(stored_, 2);
  EXPECT_TRUE(prompts_.shown.isEmpty());
}

TEST_F(AddWindowTest, WhatIsMissingIsAskedForAndNothingIsAdded) {
  Open();
  Click("Command2");
  EXPECT_EQ(prompts_.shown.last(), QStringLiteral("Tell: Please select a program from the list."));
  Choose("Combo3", 0);
  for (const char* address : {"", "0.0.0.0", "192.168."}) {
    Find<QComboBox>("Combo5")->setEditText(QLatin1String(address));
    Click("Command2");
    EXPECT_EQ(prompts_.shown.last(),
              QStringLiteral("Tell: You must enter an ip address to forward the ports to."));
  }
  EXPECT_EQ(stored_, 0);
}

TEST_F(AddWindowTest, ATypedNameIsThatProgramAndAnotherTextIsNone) {
  Open();
  auto* box = Find<QComboBox>("Combo3");
  box->setEditText(QStringLiteral("game NIGHT"));
  Q_EMIT box->lineEdit()->editingFinished();
  EXPECT_EQ(Find<QLabel>("Label11")->text(), QStringLiteral("Entries Required: (3)"));
  box->setEditText(QStringLiteral("game"));
  Q_EMIT box->lineEdit()->editingFinished();
  EXPECT_EQ(Find<QLabel>("Label11")->text(), QStringLiteral("Entries Required: (0)"));
  EXPECT_EQ(box->currentText(), QStringLiteral("game"));
  Click("Command2");
  EXPECT_EQ(stored_, 0);
}

TEST_F(AddWindowTest, BrokenPortsAreLeftOutAndTold) {
  Open();
  Choose("Combo3", 1);
  Click("Command2");
  EXPECT_EQ(Rows(), QStringLiteral("Mail01 192.168.1.20() 25 25 TCP <b>Mail x</b>"));
  EXPECT_TRUE(prompts_.shown.last().endsWith(QStringLiteral("were left out:\nx")));
}

TEST_F(AddWindowTest, AnInstalledProgramTakesTheDatabasesPlace) {
  QDir(rig_.home.path()).mkpath(QStringLiteral(".azureus"));
  QFile settings(rig_.home.filePath(QStringLiteral(".azureus/azureus.config")));
  ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
  settings.write("d15:TCP.Listen.Porti41000e15:UDP.Listen.Porti41001ee");
  settings.close();
  Open();
  Choose("Combo3", 0);
  Choose("Combo6", 1);
  EXPECT_EQ(Find<QComboBox>("Combo3")->currentText(), QString());
  EXPECT_EQ(Find<QLabel>("Label19")->text(), QStringLiteral("Settings - ") + settings.fileName());
  Click("Command2");
  EXPECT_EQ(Rows(), QStringLiteral("Azureus01 192.168.1.20() 41000 41000 TCP Azureus Vuze; "
                                   "Azureus02 192.168.1.20() 41001 41001 UDP Azureus Vuze"));
  Choose("Combo6", 0);
  EXPECT_EQ(Find<QLabel>("Label19")->text(),
            QStringLiteral("Error - Unable to find the settings in the registry."));
  Click("Command2");
  EXPECT_EQ(stored_, 1) << "ports of the program before";
  EXPECT_EQ(prompts_.shown.last(),
            QStringLiteral("Tell: There are no ports of this program to add."));
  Choose("Combo3", 0);
  EXPECT_EQ(Find<QComboBox>("Combo6")->currentText(), QString());
  EXPECT_EQ(Find<QLabel>("Label19")->text(), QString());
}

TEST_F(AddWindowTest, ATypedEntryIsAddedRememberedAndItsFieldsAreEmptied) {
  OpenCustom();
  TypeCustom("OLD", "21", "22");
  Find<QComboBox>("Combo1")->setCurrentIndex(0);
  Click("Command1");
  EXPECT_EQ(Rows(), QStringLiteral("OLD 192.168.1.20() 21 22 TCP OLD"));
  EXPECT_EQ(context_.databases.CustomPorts(),
            (QList<CustomPortRecord>{{5, QStringLiteral("OLD"), QStringLiteral("TCP"),
                                      QStringLiteral("21"), QStringLiteral("22")}}));
  EXPECT_EQ(Find<QComboBox>("Combo2")->currentText() + Find<QLineEdit>("Text2")->text() +
                Find<QLineEdit>("Text3")->text(),
            QString());
  EXPECT_EQ(Find<QComboBox>("Combo1")->currentText(), QStringLiteral("TCP/UDP"));
  Choose("Combo2", 0);
  EXPECT_EQ(Find<QLineEdit>("Text3")->text(), QStringLiteral("22"));
  EXPECT_EQ(Find<QComboBox>("Combo1")->currentText(), QStringLiteral("TCP"));
  Click("Command1");
  EXPECT_TRUE(prompts_.shown.last().startsWith(QStringLiteral("Tell: The name 'OLD'")));
  EXPECT_EQ(stored_, 1);
}

TEST_F(AddWindowTest, ARouterWithoutACommonRuleOffersNone) {
  context_.session.supports_both = QStringLiteral("No");
  OpenCustom();
  auto* type = Find<QComboBox>("Combo1");
  EXPECT_EQ(type->count(), 2);
  EXPECT_EQ(type->currentText(), QStringLiteral("TCP"));
  Choose("Combo2", 0);
  EXPECT_EQ(type->currentText(), QStringLiteral("UDP"));
}

TEST_F(AddWindowTest, FieldsTakeOnlyWhatBelongsThereAndAPortIsClampedWhenLeft) {
  context_.session.max_port = QStringLiteral("60000");
  OpenCustom();
  EXPECT_EQ(Find<QLabel>("Label8")->text(), QStringLiteral("(1~60000)"));
  Activate();
  auto* port = Find<QLineEdit>("Text2");
  port->setFocus();
  QTest::keyClicks(port, QStringLiteral("+6a5 000"));
  EXPECT_EQ(port->text(), QStringLiteral("65000"));
  QTest::keyClick(port, Qt::Key_Tab);
  EXPECT_EQ(port->text(), QStringLiteral("60000"));
  auto* address = Find<QComboBox>("Combo4")->lineEdit();
  address->clear();
  QTest::keyClicks(address, QStringLiteral("192.168.256.7.9x"));
  EXPECT_EQ(address->text(), QStringLiteral("192.168.25.79"));
}

TEST_F(AddWindowTest, ANameThatIsTooLongHoldsTheFocus) {
  OpenCustom();
  Activate();
  auto* name = Find<QComboBox>("Combo2");
  name->setFocus();
  name->setEditText(QStringLiteral("ElevenChars"));
  Find<QLineEdit>("Text2")->setFocus();
  EXPECT_EQ(prompts_.shown,
            QStringList(QStringLiteral("Tell: Name can only be 10 chars or less.")));
  EXPECT_TRUE(name->hasFocus());
}

TEST_F(AddWindowTest, AComputersNameGoesIntoTheRowAndItsLackIsAskedAbout) {
  context_.session.needs_computer_name = QStringLiteral("YES");
  rig_.host_names.name = QStringLiteral("FrontDesk");
  Open();
  Choose("Combo3", 0);
  Click("Command2");
  EXPECT_TRUE(Rows().startsWith(QStringLiteral("Game01 192.168.1.20(FrontDesk) ")));
  rig_.host_names.name.clear();
  prompts_.answers = {false, true};
  Click("Command2");
  EXPECT_EQ(stored_, 1) << "No";
  EXPECT_EQ(prompts_.shown.last(),
            QStringLiteral("Ask: Quayline: Couldn't resolve this IP address to its Name.\n\n"
                           "Example: 192.168.1.100 Belongs to Computer name 'FrontDesk'\n\n"
                           "Are you sure you want to use this IP address?"));
  Click("Command4");
  TypeCustom("Own", "5", "5");
  Click("Command1");
  EXPECT_TRUE(Rows().endsWith(QStringLiteral("; Own 192.168.1.20() 5 5 TCP/UDP Own")));
}

TEST_F(AddWindowTest, ADeadNameServerHoldsNothingAndClosingAddsNothing) {
  context_.session.needs_computer_name = QStringLiteral("yes");
  rig_.host_names.hangs = true;
  Open();
  Choose("Combo3", 0);
  Click("Command2");
  EXPECT_EQ(rig_.host_names.asked, QStringList(QStringLiteral("192.168.1.20")));
  EXPECT_FALSE(Find<QPushButton>("Command2")->isEnabled()) << "a second addition meanwhile";
  EXPECT_TRUE(Find<QPushButton>("command_close")->isEnabled());
  QTest::keyClick(window_, Qt::Key_Escape);
  ASSERT_TRUE(RunUntil([&] { return window_.isNull(); }));
  EXPECT_EQ(Rows(), QString());
}

TEST_F(AddWindowTest, DetectPutsAnAdaptersAddressIntoItsOwnBox) {
  folder_.adapters.adapters = {{.description = QStringLiteral("unplugged")},
                               {.description = QStringLiteral("eth0"),
                                .address = QStringLiteral("10.0.0.7"),
                                .mask = QStringLiteral("255.0.0.0"),
                                .gateway = QStringLiteral("10.0.0.1")}};
  Open();
  Click("zCommand4");
  auto* chooser = Find<FrmNetworkList>("FrmNetworkList2");
  EXPECT_FALSE(chooser->findChild<QWidget*>(QStringLiteral("Label3"))->isVisible());
  EXPECT_EQ(chooser->findChild<QComboBox*>(QStringLiteral("Combo1"))->currentText(),
            QStringLiteral("eth0"));
  chooser->findChild<QAbstractButton*>(QStringLiteral("Command1"))->click();
  EXPECT_EQ(Find<QComboBox>("Combo5")->currentText(), QStringLiteral("10.0.0.7"));
  EXPECT_EQ(Find<QComboBox>("Combo4")->currentText(), QStringLiteral("192.168.1.20"));
}

TEST_F(AddWindowTest, WithoutAnyAdapterTheChooserSaysSoInZeros) {
  QString chosen;
  FrmNetworkList chooser(folder_.adapters, AddressPurpose::kRouter, nullptr);
  chooser.setAttribute(Qt::WA_DeleteOnClose, false);
  QObject::connect(&chooser, &FrmNetworkList::chosen, &chooser,
                   [&](const QString& address) { chosen = address; });
  auto* ok = chooser.findChild<QAbstractButton*>(QStringLiteral("Command1"));
  ok->click();
  ok->click();
  EXPECT_EQ(chosen, QStringLiteral("0.0.0.0"));
  EXPECT_FALSE(ok->isEnabled());
}

TEST_F(AddWindowTest, ThousandsOfProgramsComeInStepsAndClosingEndsThem) {
  QList<QStringList> programs;
  for (int id = 1; id <= 10000; ++id) {
    programs.append({QString::number(id), QStringLiteral("P%1").arg(id), {}, {}, {}, {}});
  }
  folder_.WriteDatabases({}, programs);
  ASSERT_TRUE(context_.databases.Open(folder_.dir.path()));
  window_ = rig_.windows.AddNew(&desk_, [] {});
  window_->show();
  auto* box = Find<QComboBox>("Combo3");
  ASSERT_TRUE(RunUntil([&] { return box->count() > 0; }));
  EXPECT_LT(box->count(), 10000) << "all at once";
  window_->close();
  EXPECT_TRUE(RunUntil([&] { return window_.isNull(); }));
}

}  // namespace
}  // namespace quayline::testing
