// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QDialog>
#include <QDir>
#include <QLineEdit>

#include "window_fixture.h"

namespace quayline::testing {
namespace {

constexpr char kFirst[] = "First 10.0.0.1(Desk) 80-80 TCP kept";
constexpr char kSecond[] = "LongProgram01 printer 90-90 tcp/udp kept";

class EntryWindowTest : public WindowTest {
 protected:
  EntryWindowTest() {
    folder_.WriteDatabases({RouterRow(3, u"Alpha 1"_s, QString())},
                           {{1, u"Game night"_s, u"Ga me"_s, u"6881-6889"_s, u"53"_s, u"80-81"_s},
                            {2, u"<b>Mail|x</b>"_s, u"Mail"_s, u"25|x|"_s, u""_s, u""_s}},
                           {{5, u"Old"_s, u"UDP"_s, u"7"_s, u"8"_s}});
    EXPECT_TRUE(context_->databases.Open(folder_.dir.path()));
    SelectRouter(context_->session, *context_->databases.FindRouter(3));
  }

  void OpenAdd() {
    window_ = rig_.windows.AddNew(&desk_, [this] { ++stored_; });
    window_->show();
    ASSERT_TRUE(ComesToSay("Label9", "Programs Loaded"));
    EXPECT_EQ(TextOf("Combo3"), "") << "no program is chosen by itself";
  }
  void OpenCustom() {
    OpenAdd();
    Click("Command4");
  }
  void TypeCustom(const char* name, const char* start, const char* end) {
    Type("Combo2", name);
    Type("Text2", start);
    Type("Text3", end);
  }
  void OpenEdit(int row) {
    context_->session.supports_both = u"no"_s;
    context_->port_list.SetEntries(
        {{u"First"_s, u"10.0.0.1(Desk)"_s, u"80"_s, u"80"_s, u"TCP"_s, u"kept"_s},
         {u"LongProgram01"_s, u"printer"_s, u"90"_s, u"90"_s, u"tcp/udp"_s, u"kept"_s}});
    window_ = rig_.windows.Edit(&desk_, row, [this] { ++stored_; });
    window_->show();
  }
  bool UpdateIsStored() {
    const int before = stored_;
    Click("Command1");
    return stored_ > before && ComesToItsEnd();
  }

  EntryRig rig_{*context_, prompts_};
  QWidget desk_;
  int stored_ = 0;
};

TEST_F(EntryWindowTest, AProgramIsAddedTwiceUnderTheSameNamesAndItsBrokenPortsAreTold) {
  OpenAdd();
  Choose("Combo3", 0);
  ExpectTexts({{"Label9", "Programs Loaded: (2)"},
               {"Combo5", "192.168.1.20"},
               {"Label11", "Entries Required: (3)"},
               {"Label14", "(6881-6889)(80-81)"},
               {"Label15", "(53)(80-81)"}});
  Click("Command2");
  const std::string rows =
      "Game01 192.168.1.20() 6881-6889 TCP Game night; Game02 192.168.1.20() 53-53 UDP Game night; "
      "Game03 192.168.1.20() 80-81 TCP/UDP Game night";
  EXPECT_EQ(Rows(), rows);
  Click("Command2");
  EXPECT_EQ(Rows(), rows + "; " + rows);
  EXPECT_EQ(stored_, 2);
  EXPECT_THAT(prompts_.shown, IsEmpty());
  Choose("Combo3", 1);
  Click("Command2");
  EXPECT_THAT(Rows(), EndsWith("; Mail01 192.168.1.20() 25-25 TCP <b>Mail x</b>"));
  EXPECT_THAT(prompts_.shown, ElementsAre(EndsWith("were left out:\nx")));
}

TEST_F(EntryWindowTest, OnlyAProgramThatThereIsAndAWholeAddressAreTaken) {
  OpenAdd();
  const auto told_about = [this](const char* what) {
    prompts_.shown.clear();
    Click("Command2");
    EXPECT_THAT(prompts_.shown, ElementsAre(StartsWith(what)));
  };
  told_about("Tell: Please select a program from the list.");
  const Named cases[] = {{"game NIGHT", "Entries Required: (3)"},
                         {"game", "Entries Required: (0)"}};
  for (const auto& [typed, entries] : cases) {
    Type("Combo3", typed);
    Q_EMIT Find<QComboBox>("Combo3")->lineEdit()->editingFinished();
    EXPECT_EQ(TextOf("Label11"), entries);
  }
  EXPECT_EQ(TextOf("Combo3"), "game");
  told_about("Tell: Please select a program from the list.");
  Choose("Combo3", 0);
  for (const char* address : {"", "0.0.0.0", "192.168."}) {
    Type("Combo5", address);
    told_about("Tell: You must enter an ip address to forward the ports to.");
  }
  EXPECT_EQ(stored_, 0);
}

TEST_F(EntryWindowTest, AnInstalledProgramTakesTheDatabasesPlace) {
  QDir(rig_.home.path()).mkpath(u".azureus"_s);
  QFile settings(rig_.home.filePath(u".azureus/azureus.config"_s));
  ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
  settings.write("d15:TCP.Listen.Porti41000e15:UDP.Listen.Porti41001ee");
  settings.close();
  OpenAdd();
  Choose("Combo3", 0);
  Choose("Combo6", 1);
  ExpectTexts({{"Combo3", ""}, {"Label19", "Settings - " + settings.fileName().toStdString()}});
  Click("Command2");
  EXPECT_EQ(Rows(),
            "Azureus01 192.168.1.20() 41000-41000 TCP Azureus Vuze; "
            "Azureus02 192.168.1.20() 41001-41001 UDP Azureus Vuze");
  Choose("Combo6", 0);
  EXPECT_EQ(TextOf("Label19"), "Error - Unable to find the settings in the registry.");
  Click("Command2");
  EXPECT_EQ(stored_, 1) << "ports of the program before";
  EXPECT_THAT(prompts_.shown, ElementsAre("Tell: There are no ports of this program to add."));
  Choose("Combo3", 0);
  ExpectTexts({{"Combo6", ""}, {"Label19", ""}});
}

TEST_F(EntryWindowTest, ATypedEntryIsAddedRememberedAndItsFieldsAreEmptied) {
  OpenCustom();
  TypeCustom("OLD", "21", "22");
  Find<QComboBox>("Combo1")->setCurrentIndex(0);
  Click("Command1");
  EXPECT_EQ(Rows(), "OLD 192.168.1.20() 21-22 TCP OLD");
  EXPECT_EQ(context_->databases.CustomPorts(),
            (QList<CustomPortRecord>{{5, u"OLD"_s, u"TCP"_s, u"21"_s, u"22"_s}}));
  ExpectTexts({{"Combo2", ""}, {"Text2", ""}, {"Text3", ""}, {"Combo1", "TCP/UDP"}});
  Choose("Combo2", 0);
  ExpectTexts({{"Text2", "21"}, {"Text3", "22"}, {"Combo1", "TCP"}});
  Click("Command1");
  EXPECT_THAT(prompts_.shown, ElementsAre(StartsWith("Tell: The name 'OLD'")));
  EXPECT_EQ(stored_, 1);
}

TEST_F(EntryWindowTest, ARouterWithoutACommonRuleOffersNone) {
  context_->session.supports_both = u"No"_s;
  OpenCustom();
  EXPECT_EQ(Find<QComboBox>("Combo1")->count(), 2);
  EXPECT_EQ(TextOf("Combo1"), "TCP");
  Choose("Combo2", 0);
  EXPECT_EQ(TextOf("Combo1"), "UDP");
}

TEST_F(EntryWindowTest, FieldsTakeOnlyWhatBelongsThereAndAPortIsClampedWhenLeft) {
  context_->session.max_port = u"60000"_s;
  OpenCustom();
  Activate();
  Find("Text2")->setFocus();
  QTest::keyClicks(Find("Text2"), u"+6a5 000"_s);
  ExpectTexts({{"Label8", "(1~60000)"}, {"Text2", "65000"}});
  Press("Text2", Qt::Key_Tab);
  EXPECT_EQ(TextOf("Text2"), "60000");
  Type("Combo4", "");
  QTest::keyClicks(Find<QComboBox>("Combo4")->lineEdit(), u"192.168.256.7.9x"_s);
  EXPECT_EQ(TextOf("Combo4"), "192.168.25.79");
}

TEST_F(EntryWindowTest, ANameThatIsTooLongHoldsTheFocus) {
  OpenCustom();
  Activate();
  Find("Combo2")->setFocus();
  Type("Combo2", "ElevenChars");
  Find("Text2")->setFocus();
  EXPECT_THAT(prompts_.shown, ElementsAre("Tell: Name can only be 10 chars or less."));
  EXPECT_TRUE(Find("Combo2")->hasFocus());
}

TEST_F(EntryWindowTest, AComputersNameGoesIntoTheRowAndItsLackIsAskedAbout) {
  context_->session.needs_computer_name = u"YES"_s;
  rig_.host_names.name = u"FrontDesk"_s;
  OpenAdd();
  Choose("Combo3", 0);
  Click("Command2");
  EXPECT_THAT(Rows(), StartsWith("Game01 192.168.1.20(FrontDesk) "));
  rig_.host_names.name.clear();
  prompts_.answers = {false, true};
  Click("Command2");
  EXPECT_EQ(stored_, 1) << "No";
  EXPECT_EQ(prompts_.shown.back(),
            "Ask: Quayline: Couldn't resolve this IP address to its Name.\n\n"
            "Example: 192.168.1.100 Belongs to Computer name 'FrontDesk'\n\n"
            "Are you sure you want to use this IP address?");
  Click("Command4");
  TypeCustom("Own", "5", "5");
  Click("Command1");
  EXPECT_THAT(Rows(), EndsWith("; Own 192.168.1.20() 5-5 TCP/UDP Own"));
}

TEST_F(EntryWindowTest, ADeadNameServerHoldsNothingAndClosingChangesNothing) {
  rig_.host_names.hangs = true;
  context_->session.needs_computer_name = u"yes"_s;
  OpenAdd();
  Choose("Combo3", 0);
  const auto give_up = [this](const char* button) {
    Click(button);
    EXPECT_FALSE(Find(button)->isEnabled()) << "a second search meanwhile";
    EXPECT_TRUE(Find("command_close")->isEnabled());
    QTest::keyClick(window_, Qt::Key_Escape);
    EXPECT_TRUE(ComesToItsEnd());
  };
  give_up("Command2");
  EXPECT_EQ(rig_.host_names.asked, QStringList(u"192.168.1.20"_s));
  EXPECT_EQ(Rows(), "");
  OpenEdit(0);
  give_up("Command1");
  EXPECT_EQ(stored_, 0);
}

TEST_F(EntryWindowTest, DetectPutsAnAdaptersAddressOrZerosIntoItsOwnBox) {
  OpenAdd();
  const std::pair<QList<Adapter>, const char*> cases[] = {
      {{{.description = u"unplugged"_s}, UsedAdapter()}, "10.0.0.7"}, {{}, "0.0.0.0"}};
  for (const auto& [adapters, address] : cases) {
    folder_.adapters.adapters = adapters;
    Click("zCommand4");
    const QPointer<QWidget> chooser = Find("FrmNetworkList2");
    EXPECT_FALSE(Child(chooser, "Label3")->isVisible());
    auto* ok = Child<QAbstractButton>(chooser, "Command1");
    ok->click();
    EXPECT_FALSE(ok->isEnabled()) << "a second answer";
    ExpectTexts({{"Combo5", address}, {"Combo4", "192.168.1.20"}});
    EXPECT_TRUE(RunUntil([&] { return chooser.isNull(); }));
  }
}

TEST_F(EntryWindowTest, ThousandsOfProgramsComeInStepsAndClosingEndsThem) {
  QList<AppPortRecord> programs;
  for (int id = 1; id <= 10000; ++id) {
    programs.append({.id = id, .appname = u"P%1"_s.arg(id)});
  }
  folder_.WriteDatabases({}, programs);
  ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
  window_ = rig_.windows.AddNew(&desk_, [] {});
  window_->show();
  auto* box = Find<QComboBox>("Combo3");
  ASSERT_TRUE(RunUntil([&] { return box->count() > 0; }));
  EXPECT_LT(box->count(), 10000) << "all at once";
  window_->close();
  EXPECT_TRUE(ComesToItsEnd());
}

TEST_F(EntryWindowTest, AnUnchangedRowPassesAndLosesNothingOfWhatItHolds) {
  OpenEdit(1);
  EXPECT_EQ(Find<QComboBox>("Combo1")->count(), 3) << "also for a router without a common rule";
  EXPECT_EQ(TextOf("Combo4"), "printer");
  EXPECT_EQ(Find<QComboBox>("Combo4")->count(), 2) << "this computer's addresses";
  ASSERT_TRUE(UpdateIsStored());
  EXPECT_EQ(Rows(), std::string(kFirst) + "; LongProgram01 printer() 90-90 TCP/UDP kept");
}

TEST_F(EntryWindowTest, AChangedRowKeepsItsPlaceAndDescription) {
  OpenEdit(0);
  EXPECT_EQ(TextOf("Combo4"), "10.0.0.1");
  EXPECT_EQ(Find<QLineEdit>("Text1")->maxLength(), 10);
  const QList<CustomPortRecord> remembered = context_->databases.CustomPorts();
  Type("Text1", "Other");
  Type("Text2", "70");
  Type("Text3", "71");
  Find<QComboBox>("Combo1")->setCurrentIndex(1);
  Type("Combo4", "10.0.0.2");
  ASSERT_TRUE(UpdateIsStored());
  EXPECT_EQ(Rows(), std::string("Other 10.0.0.2() 70-71 UDP kept; ") + kSecond);
  EXPECT_EQ(context_->databases.CustomPorts(), remembered);
}

TEST_F(EntryWindowTest, ARefusalLeavesTheRowAndTheWindow) {
  OpenEdit(0);
  Type("Text3", "90");
  EXPECT_FALSE(UpdateIsStored());
  EXPECT_THAT(prompts_.shown, ElementsAre(StartsWith("Tell: 'LongProgram01' Already")));
  EXPECT_EQ(Rows(), std::string(kFirst) + "; " + kSecond);
  EXPECT_TRUE(window_->isVisible());
}

TEST_F(EntryWindowTest, ANamelessComputerIsAskedAboutOnce) {
  context_->session.needs_computer_name = u"yes"_s;
  OpenEdit(0);
  EXPECT_FALSE(UpdateIsStored()) << "the answer is No";
  EXPECT_THAT(Rows(), StartsWith(kFirst));
  prompts_.answers = {true};
  ASSERT_TRUE(UpdateIsStored());
  EXPECT_THAT(prompts_.shown, SizeIs(2));
  EXPECT_THAT(Rows(), StartsWith("First 10.0.0.1() "));
}

}  // namespace
}  // namespace quayline::testing
