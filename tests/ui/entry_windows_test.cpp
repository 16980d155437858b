// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAbstractItemView>
#include <QCompleter>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QTabWidget>

#include "core/port_discovery.h"
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
    ASSERT_TRUE(ComesToSay("program_count_label", "Programs Loaded"));
    EXPECT_EQ(TextOf("program_box"), "") << "no program is chosen by itself";
  }
  void OpenCustom() {
    OpenAdd();
    Find<QTabWidget>("tabs")->setCurrentIndex(1);
    Activate();
  }
  void TypeCustom(const char* name, const char* start, const char* end) {
    Type("name_box", name);
    Type("start_port_edit", start);
    Type("end_port_edit", end);
  }
  // By keys, and without leaving the last field.
  void TypeKeys(const char* field, const char* text) {
    Find(field)->setFocus();
    QTest::keyClick(Find(field), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(Find(field), QLatin1String(text));
  }
  void PressAdd() { QTest::keyClick(window_, Qt::Key_A, Qt::AltModifier); }
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
    Click("update_button");
    return stored_ > before && ComesToItsEnd();
  }

  EntryRig rig_{*context_, prompts_};
  QWidget desk_;
  int stored_ = 0;
};

TEST_F(EntryWindowTest, AProgramIsAddedTwiceUnderTheSameNamesAndItsBrokenPortsAreReported) {
  OpenAdd();
  Choose("program_box", 0);
  ExpectTexts({{"program_count_label", "Programs Loaded: (2)"},
               {"program_address_box", "192.168.1.20"},
               {"entries_required_label", "Entries Required: (3)"},
               {"tcp_ports_label", "(6881-6889)(80-81)"},
               {"udp_ports_label", "(53)(80-81)"}});
  Click("add_button");
  const std::string rows =
      "Game01 192.168.1.20() 6881-6889 TCP Game night; Game02 192.168.1.20() 53-53 UDP Game night; "
      "Game03 192.168.1.20() 80-81 TCP/UDP Game night";
  EXPECT_EQ(Rows(), rows);
  Click("add_button");
  EXPECT_EQ(Rows(), rows + "; " + rows);
  EXPECT_EQ(stored_, 2);
  EXPECT_THAT(prompts_.shown, IsEmpty());
  Choose("program_box", 1);
  Click("add_button");
  EXPECT_THAT(Rows(), EndsWith("; Mail01 192.168.1.20() 25-25 TCP <b>Mail x</b>"));
  EXPECT_THAT(prompts_.shown, ElementsAre(EndsWith("were left out:\nx")));
}

TEST_F(EntryWindowTest, OnlyAProgramThatThereIsAndAWholeAddressAreTaken) {
  OpenAdd();
  const auto says = [this](const char* note, const char* what) {
    Click("add_button");
    EXPECT_EQ(TextOf(note), what);
  };
  says("program_count_label", "Please select a program from the list.");
  const Named cases[] = {{"game NIGHT", "Entries Required: (3)"},
                         {"game", "Entries Required: (0)"}};
  for (const auto& [typed, entries] : cases) {
    Type("program_box", typed);
    Q_EMIT Find<QComboBox>("program_box")->lineEdit()->editingFinished();
    EXPECT_EQ(TextOf("entries_required_label"), entries);
  }
  EXPECT_EQ(TextOf("program_box"), "game");
  says("program_count_label", "Please select a program from the list.");
  Choose("program_box", 0);
  for (const char* address : {"", "0.0.0.0", "192.168."}) {
    Type("program_address_box", address);
    says("program_address_note_label", "You must enter an ip address to forward the ports to.");
  }
  EXPECT_EQ(TextOf("program_count_label"), "Programs Loaded: (2)");
  EXPECT_THAT(prompts_.shown, IsEmpty());
  EXPECT_EQ(stored_, 0);
}

TEST_F(EntryWindowTest, WordsInAnyOrderFindAProgram) {
  OpenAdd();
  const QCompleter* completer = Find<QComboBox>("program_box")->completer();
  const std::pair<const char*, QString> cases[] = {{"IGHT ga", u"Game night"_s},
                                                   {"a", u"Game night|<b>Mail|x</b>"_s},
                                                   {" mail  x ", u"<b>Mail|x</b>"_s},
                                                   {"game mail", u""_s}};
  for (const auto& [typed, wanted] : cases) {
    TypeKeys("program_box", typed);
    QStringList offered;
    for (int row = 0; row < completer->completionModel()->rowCount(); ++row) {
      offered += completer->completionModel()->index(row, 0).data().toString();
    }
    EXPECT_EQ(offered.join(u'|'), wanted) << typed;
    EXPECT_EQ(completer->popup()->isVisible(), !wanted.isEmpty()) << typed;
  }
  TypeKeys("program_box", "night gam");
  QTest::keyClick(completer->popup(), Qt::Key_Down);
  QTest::keyClick(completer->popup(), Qt::Key_Return);
  EXPECT_EQ(TextOf("program_box"), "Game night");
  EXPECT_EQ(TextOf("entries_required_label"), "Entries Required: (3)");
}

TEST_F(EntryWindowTest, AnInstalledProgramTakesTheDatabasesPlace) {
  QDir(rig_.home.path()).mkpath(u".azureus"_s);
  QFile settings(rig_.home.filePath(u".azureus/azureus.config"_s));
  ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
  settings.write("d15:TCP.Listen.Porti41000e15:UDP.Listen.Porti41001ee");
  settings.close();
  OpenAdd();
  Choose("program_box", 0);
  const auto* installed = Find<QComboBox>("installed_box");
  ASSERT_TRUE(QTest::qWaitFor([&] { return installed->itemText(0) == u"Azureus Vuze"_s; }));
  EXPECT_EQ(installed->count(), DiscoverablePrograms().size() + 1) << "with a separator";
  Choose("installed_box", 0);
  ExpectTexts({{"program_box", ""},
               {"discovery_label", "Settings - " + settings.fileName().toStdString()}});
  Click("add_button");
  EXPECT_EQ(Rows(),
            "Azureus01 192.168.1.20() 41000-41000 TCP Azureus Vuze; "
            "Azureus02 192.168.1.20() 41001-41001 UDP Azureus Vuze");
  Choose("installed_box", installed->findText(u"Ares"_s));
  EXPECT_EQ(TextOf("discovery_label"), "Error - Unable to find the settings in the registry.");
  Click("add_button");
  EXPECT_EQ(stored_, 1) << "ports of the program before";
  EXPECT_THAT(prompts_.shown, ElementsAre("Tell: There are no ports of this program to add."));
  Choose("program_box", 0);
  ExpectTexts({{"installed_box", ""}, {"discovery_label", ""}});
}

TEST_F(EntryWindowTest, ATypedEntryIsAddedRememberedAndItsFieldsAreEmptied) {
  OpenCustom();
  TypeCustom("OLD", "21", "22");
  Find<QComboBox>("protocol_box")->setCurrentIndex(0);
  Click("add_button");
  EXPECT_EQ(Rows(), "OLD 192.168.1.20() 21-22 TCP OLD");
  EXPECT_EQ(context_->databases.CustomPorts(),
            (QList<CustomPortRecord>{{5, u"OLD"_s, u"TCP"_s, u"21"_s, u"22"_s}}));
  ExpectTexts({{"name_box", ""},
               {"start_port_edit", ""},
               {"end_port_edit", ""},
               {"protocol_box", "TCP/UDP"}});
  Choose("name_box", 0);
  ExpectTexts({{"start_port_edit", "21"}, {"end_port_edit", "22"}, {"protocol_box", "TCP"}});
  Click("add_button");
  EXPECT_THAT(TextOf("name_note_label"), StartsWith("The name 'OLD'"));
  EXPECT_TRUE(Find("name_box")->hasFocus());
  EXPECT_EQ(stored_, 1);
}

TEST_F(EntryWindowTest, ARouterWithoutACommonRuleOffersNone) {
  context_->session.supports_both = u"No"_s;
  OpenCustom();
  EXPECT_EQ(Find<QComboBox>("protocol_box")->count(), 2);
  EXPECT_EQ(TextOf("protocol_box"), "TCP");
  Choose("name_box", 0);
  EXPECT_EQ(TextOf("protocol_box"), "UDP");
}

TEST_F(EntryWindowTest, AKnownNameThatIsTypedBringsNoPortsAndOneThatIsChosenDoes) {
  OpenCustom();
  TypeKeys("start_port_edit", "21");
  TypeKeys("name_box", "Old");
  Press("name_box", Qt::Key_Tab);
  ExpectTexts({{"start_port_edit", "21"}, {"end_port_edit", "21"}, {"protocol_box", "TCP/UDP"}});
  PressAdd();
  EXPECT_TRUE(RunUntil([this] { return stored_ == 1; }));
  EXPECT_EQ(Rows(), "Old 192.168.1.20() 21-21 TCP/UDP Old");
  Press("name_box", Qt::Key_Down);
  ExpectTexts({{"name_box", "Old"}, {"start_port_edit", "21"}});
}

TEST_F(EntryWindowTest, ACommandTakesWhatWasTypedLastAndAMovedPortIsSeenFirst) {
  context_->session.max_port = u"60000"_s;
  OpenCustom();
  TypeKeys("name_box", "New");
  TypeKeys("start_port_edit", "70000");
  for (const int stored : {0, 1}) {
    PressAdd();
    // The button is pressed by its key for a moment.
    EXPECT_TRUE(RunUntil([&] {
      return stored == 1 ? stored_ == 1 : TextOf("start_port_note_label").starts_with("70000");
    }));
    EXPECT_EQ(stored_, stored);
    if (stored == 0) {
      EXPECT_EQ(TextOf("start_port_note_label"),
                "70000 is not possible: the ports of this router are 1 to 60000. It is 60000 now.");
      EXPECT_TRUE(Find("start_port_edit")->hasFocus());
    }
  }
  EXPECT_EQ(Rows(), "New 192.168.1.20() 60000-60000 TCP/UDP New");
  TypeKeys("name_box", "Zeros");
  TypeKeys("start_port_edit", "0080");
  Click("add_button");
  EXPECT_THAT(Rows(), EndsWith("; Zeros 192.168.1.20() 80-80 TCP/UDP Zeros"));
}

TEST_F(EntryWindowTest, TabGoesThroughTheFieldsInTheirOrder) {
  const auto expect_order = [this](const char* first) {
    Activate();
    Find(first)->setFocus();
    for (const char* next : {"protocol_box", "start_port_edit", "end_port_edit", "address_box"}) {
      QTest::keyClick(window_->focusWidget(), Qt::Key_Tab);
      EXPECT_EQ(window_->focusWidget()->objectName(), QLatin1String(next)) << next;
    }
  };
  OpenCustom();
  expect_order("name_box");
  delete window_.data();
  OpenEdit(0);
  EXPECT_EQ(window_->focusWidget(), Find("name_edit"));
  expect_order("name_edit");
}

TEST_F(EntryWindowTest, ASinglePortIsTypedOnceAndSeveralMakeRows) {
  OpenCustom();
  TypeKeys("start_port_edit", "81");
  EXPECT_EQ(TextOf("end_port_edit"), "81");
  TypeKeys("end_port_edit", "90");
  TypeKeys("start_port_edit", "82");
  EXPECT_EQ(TextOf("end_port_edit"), "90") << "what was typed is replaced";
  TypeKeys("start_port_edit", "6000-6010");
  Press("start_port_edit", Qt::Key_Tab);
  ExpectTexts({{"start_port_edit", "6000"}, {"end_port_edit", "6010"}});
  TypeKeys("name_box", "Web");
  TypeKeys("start_port_edit", "80, 443, 6000-6010");
  EXPECT_FALSE(Find("end_port_edit")->isEnabled());
  Click("add_button");
  EXPECT_EQ(Rows(),
            "Web01 192.168.1.20() 80-80 TCP/UDP Web01; Web02 192.168.1.20() 443-443 TCP/UDP Web02; "
            "Web03 192.168.1.20() 6000-6010 TCP/UDP Web03");
  EXPECT_EQ(stored_, 1);
}

TEST_F(EntryWindowTest, TheAddressThatReachesTheRouterComesFirst) {
  context_->session.router_ip = u"192.168.1.1"_s;
  folder_.adapters.address_table = {u"172.17.0.1"_s, u"10.8.0.2"_s, u"192.168.1.20"_s};
  folder_.adapters.local_addresses = {{u"192.168.1.1"_s, u"192.168.1.20"_s},
                                      {QString(), u"10.8.0.2"_s}};
  OpenAdd();
  ExpectTexts({{"program_address_box", "192.168.1.20"}, {"address_box", "192.168.1.20"}});
}

TEST_F(EntryWindowTest, FieldsTakeOnlyWhatBelongsThere) {
  context_->session.max_port = u"60000"_s;
  OpenCustom();
  Find("start_port_edit")->setFocus();
  QTest::keyClicks(Find("start_port_edit"), u"+6a5 000"_s);
  ExpectTexts({{"end_port_hint_label", "(1~60000)"}, {"start_port_edit", "65000"}});
  Press("start_port_edit", Qt::Key_Tab);
  EXPECT_EQ(TextOf("start_port_edit"), "60000");
  Type("address_box", "");
  QTest::keyClicks(Find<QComboBox>("address_box")->lineEdit(), u"192.168.256.7.9x"_s);
  EXPECT_EQ(TextOf("address_box"), "192.168.25.79");
}

TEST_F(EntryWindowTest, ANameThatIsTooLongHoldsTheFocus) {
  OpenCustom();
  Find("name_box")->setFocus();
  Type("name_box", "ElevenChars");
  Find("start_port_edit")->setFocus();
  EXPECT_TRUE(ComesToSay("name_note_label", "Name can only be 10 chars or less."));
  EXPECT_TRUE(Find("name_box")->hasFocus());
}

TEST_F(EntryWindowTest, AComputersNameGoesIntoTheRowAndItsLackIsAskedAbout) {
  context_->session.needs_computer_name = u"YES"_s;
  rig_.host_names.name = u"FrontDesk"_s;
  OpenAdd();
  Choose("program_box", 0);
  Click("add_button");
  EXPECT_THAT(Rows(), StartsWith("Game01 192.168.1.20(FrontDesk) "));
  rig_.host_names.name.clear();
  prompts_.answers = {false, true};
  Click("add_button");
  EXPECT_EQ(stored_, 1) << "No";
  EXPECT_EQ(prompts_.shown.back(),
            "Ask: Quayline: Couldn't resolve this IP address to its Name.\n\n"
            "Example: 192.168.1.100 Belongs to Computer name 'FrontDesk'\n\n"
            "Are you sure you want to use this IP address?");
  Find<QTabWidget>("tabs")->setCurrentIndex(1);
  TypeCustom("Own", "5", "5");
  Click("add_button");
  EXPECT_THAT(Rows(), EndsWith("; Own 192.168.1.20() 5-5 TCP/UDP Own"));
}

TEST_F(EntryWindowTest, ADeadNameServerHoldsNothingAndClosingChangesNothing) {
  rig_.host_names.hangs = true;
  context_->session.needs_computer_name = u"yes"_s;
  OpenAdd();
  Choose("program_box", 0);
  const auto give_up = [this](const char* button, const char* close) {
    Click(button);
    EXPECT_FALSE(Find(button)->isEnabled()) << "a second search meanwhile";
    EXPECT_TRUE(Find(close)->isEnabled());
    QTest::keyClick(window_, Qt::Key_Escape);
    EXPECT_TRUE(ComesToItsEnd());
  };
  give_up("add_button", "close_button");
  EXPECT_EQ(rig_.host_names.asked, QStringList(u"192.168.1.20"_s));
  EXPECT_EQ(Rows(), "");
  OpenEdit(0);
  give_up("update_button", "cancel_button");
  EXPECT_EQ(stored_, 0);
}

TEST_F(EntryWindowTest, DetectPutsAnAdaptersAddressOrZerosIntoItsOwnBox) {
  OpenAdd();
  const std::pair<QList<Adapter>, const char*> cases[] = {
      {{{.description = u"unplugged"_s}, UsedAdapter()}, "10.0.0.7"}, {{}, "0.0.0.0"}};
  for (const auto& [adapters, address] : cases) {
    folder_.adapters.adapters = adapters;
    Click("detect_program_address_button");
    const QPointer<QWidget> chooser = Find("AdapterDialog");
    EXPECT_FALSE(Child(chooser, "gateway_hint_label")->isVisible());
    auto* ok = Child<QAbstractButton>(chooser, "ok_button");
    ok->click();
    EXPECT_FALSE(ok->isEnabled()) << "a second answer";
    ExpectTexts({{"program_address_box", address}, {"address_box", "192.168.1.20"}});
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
  auto* box = Find<QComboBox>("program_box");
  ASSERT_TRUE(RunUntil([&] { return box->count() > 0; }));
  EXPECT_LT(box->count(), 10000) << "all at once";
  window_->close();
  EXPECT_TRUE(ComesToItsEnd());
}

TEST_F(EntryWindowTest, AnUnchangedRowPassesAndLosesNothingOfWhatItHolds) {
  OpenEdit(1);
  EXPECT_EQ(Find<QComboBox>("protocol_box")->count(), 3)
      << "also for a router without a common rule";
  EXPECT_EQ(TextOf("address_box"), "printer");
  EXPECT_EQ(Find<QComboBox>("address_box")->count(), 2) << "this computer's addresses";
  ASSERT_TRUE(UpdateIsStored());
  EXPECT_EQ(Rows(), std::string(kFirst) + "; LongProgram01 printer() 90-90 TCP/UDP kept");
}

TEST_F(EntryWindowTest, AChangedRowKeepsItsPlaceAndDescription) {
  OpenEdit(0);
  EXPECT_EQ(TextOf("address_box"), "10.0.0.1");
  EXPECT_EQ(Find<QLineEdit>("name_edit")->maxLength(), 10);
  const QList<CustomPortRecord> remembered = context_->databases.CustomPorts();
  Type("name_edit", "Other");
  Type("start_port_edit", "70");
  Type("end_port_edit", "71");
  Find<QComboBox>("protocol_box")->setCurrentIndex(1);
  Type("address_box", "10.0.0.2");
  ASSERT_TRUE(UpdateIsStored());
  EXPECT_EQ(Rows(), std::string("Other 10.0.0.2() 70-71 UDP kept; ") + kSecond);
  EXPECT_EQ(context_->databases.CustomPorts(), remembered);
}

TEST_F(EntryWindowTest, ARefusalLeavesTheRowAndTheWindow) {
  OpenEdit(0);
  Type("end_port_edit", "90");
  EXPECT_FALSE(UpdateIsStored());
  EXPECT_THAT(TextOf("start_port_note_label"), StartsWith("'LongProgram01' Already"));
  EXPECT_EQ(Rows(), std::string(kFirst) + "; " + kSecond);
  EXPECT_TRUE(window_->isVisible());
}

TEST_F(EntryWindowTest, AnEntryThatLeftTheListIsAddedIfTheUserWants) {
  for (const bool wanted : {false, true}) {
    OpenEdit(0);
    Type("name_edit", "Mine");
    context_->port_list.SetEntries({});
    prompts_.answers = {wanted};
    EXPECT_EQ(UpdateIsStored(), wanted);
    EXPECT_EQ(Rows(), wanted ? "Mine 10.0.0.1() 80-80 TCP kept" : "");
    delete window_.data();
  }
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
