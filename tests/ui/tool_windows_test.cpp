// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAbstractItemView>
#include <QCheckBox>
#include <QCompleter>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMouseEvent>
#include <QTabWidget>
#include <QTextBlock>

#include "core/files.h"
#include "core/foreign_scripts.h"
#include "core/own_routers.h"
#include "ui/tools/new_router_dialog.h"
#include "ui/tools/router_list_dialog.h"
#include "ui/tools/script_dialog.h"
#include "window_fixture.h"

namespace quayline::testing {
namespace {

class RouterListTest : public WindowTest {
 protected:
  void Open(const QStringList& names) {
    QList<RouterRecord> rows;
    for (const QString& name : names) {
      rows.append(RouterRow(10 + static_cast<int>(rows.size()), name, u"admin"_s));
    }
    context_->databases.Close();
    folder_.WriteDatabases(rows);
    ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
    Reopen();
  }
  void Reopen() {
    delete window_.data();
    window_ = new RouterListDialog(*context_, prompts_, nullptr, [this](int id) { chosen_ = id; });
    window_->show();
    list_ = Find<QListView>("router_list_view");
    ASSERT_TRUE(RunUntil([this] { return !Find("loading_label")->isVisible(); }));
  }
  QString Selected() const { return list_->currentIndex().data().toString(); }
  void TypeKeys(const char* text) { QTest::keyClicks(Find("search_edit"), QLatin1String(text)); }

  QListView* list_ = nullptr;
  int chosen_ = 0;
};

const QStringList kNames{u"Alpha 1"_s, u"Beta-20"_s, u"Gamma (Alpha)"_s, u"ALPHA 2"_s};

TEST_F(RouterListTest, AnyPartOfANameIsFoundUnlessItsBeginningIsAskedFor) {
  Open(kNames);
  TypeKeys("20");
  EXPECT_EQ(Selected(), kNames[1]);
}

TEST_F(RouterListTest, FindNextContinuesAndBeginsAgainOnlyWithTheNextSearch) {
  Open(kNames);
  Find<QCheckBox>("whole_name_check")->setChecked(false);
  TypeKeys("alpha");
  Find("search_edit")->blockSignals(true);  // from here on the button alone
  context_->router_search_position = 0;
  for (const int found : {3, 0, 3, 0}) {
    Press("search_edit", Qt::Key_Return);
    EXPECT_EQ(Selected(), kNames[found]);
  }
  EXPECT_THAT(prompts_.shown, IsEmpty());
  Find<QCheckBox>("whole_name_check")->setChecked(true);
  Press("search_edit", Qt::Key_Return);
  EXPECT_EQ(Selected(), kNames[2]);
  Reopen();
  Find<QCheckBox>("whole_name_check")->setChecked(false);
  TypeKeys("a");
  EXPECT_EQ(Selected(), kNames[3]) << "the place outlives the window";
}

TEST_F(RouterListTest, TypingDoesNotRunIntoABoxAndOneThatIsRightComesLater) {
  Open(kNames);
  Find<QCheckBox>("whole_name_check")->setChecked(false);
  const auto is_reported = [this] { return !prompts_.shown.empty(); };
  TypeKeys("beta");  // each letter searches after the only match
  EXPECT_EQ(Selected(), kNames[1]);
  EXPECT_FALSE(RunUntil(is_reported, std::chrono::milliseconds(800)));
  TypeKeys("x'<b>");
  EXPECT_FALSE(is_reported());
  ASSERT_TRUE(RunUntil(is_reported));
  EXPECT_EQ(Selected(), kNames[1]);
  Click("find_next_button");  // reports at once
  const std::string told = "Tell: Find: Could Not Find 'betax'<b>'";
  EXPECT_THAT(prompts_.shown, ElementsAre(told, told));
}

TEST_F(RouterListTest, EveryWayOfChoosingPassesTheKeyOfTheRow) {
  const auto double_click = [this] {
    const QPoint place = list_->visualRect(list_->currentIndex()).center();
    QTest::mouseClick(list_->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(list_->viewport(), Qt::LeftButton, {}, place);
  };
  const auto press_enter = [this] {
    Activate();
    Press("router_list_view", Qt::Key_Return);
  };
  const auto click_button = [this] { Click("choose_button"); };
  const std::pair<const char*, std::function<void()>> ways[] = {
      {"double click", double_click}, {"Enter", press_enter}, {"button", click_button}};
  for (const auto& [way, choose] : ways) {
    SCOPED_TRACE(way);
    Open(kNames);
    chosen_ = 0;
    list_->setCurrentIndex(list_->model()->index(2, 0));
    choose();
    EXPECT_EQ(chosen_, 12);
    EXPECT_TRUE(ComesToItsEnd());
  }
}

TEST_F(RouterListTest, EachRouterHasAMarkOfHowItWasTriedThatIsAlsoRead) {
  QList<RouterRecord> rows;
  for (const char* way : {"real", "rebuild", "documentation", "", "made up"}) {
    rows.append(RouterRow(10 + static_cast<int>(rows.size()), u"R"_s + QLatin1String(way), {}));
    rows.last().routertested = QLatin1String(way);
  }
  rows[1].routerversions = u"1.0 to 2.0"_s;
  context_->databases.Close();
  folder_.WriteDatabases(rows);
  ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
  Reopen();
  const struct {
    const char* label;
    const char* read;
    int same_mark_as;
  } cases[] = {{"Tried on a real router.", "Rreal. Tried on a real router.", 0},
               {"Tried on a faithful rebuild of its pages.\nFirmware: 1.0 to 2.0",
                "Rrebuild. Tried on a faithful rebuild of its pages.", 1},
               {"Written from documentation; not tried on a real router yet.",
                "Rdocumentation. Written from documentation; not tried on a real router yet.", 2},
               {"It is not known whether anybody has tried it.",
                "R. It is not known whether anybody has tried it.", 3},
               {"It is not known whether anybody has tried it.",
                "Rmade up. It is not known whether anybody has tried it.", 3}};
  QList<QImage> marks;
  for (int row = 0; row < 5; ++row) {
    const QModelIndex index = list_->model()->index(row, 0);
    list_->setCurrentIndex(index);
    EXPECT_EQ(TextOf("tested_label"), cases[row].label);
    EXPECT_EQ(index.data(Qt::AccessibleTextRole).toString().toStdString(), cases[row].read);
    marks.append(index.data(Qt::DecorationRole).value<QIcon>().pixmap(16, 16).toImage());
    EXPECT_EQ(marks.indexOf(marks.last()), cases[row].same_mark_as);
  }
}

TEST_F(RouterListTest, AnEmptyTableIsNothingToSearchIn) {
  Open({});
  EXPECT_EQ(TextOf("router_count_edit"), "Routers Loaded: (0)");
  TypeKeys("a");
  Click("find_next_button");
  EXPECT_FALSE(Find("choose_button")->isEnabled());
  EXPECT_THAT(prompts_.shown, IsEmpty());
  EXPECT_EQ(chosen_, 0);
}

class ScriptWindowTest : public WindowTest {
 protected:
  ScriptWindowTest() {
    folder_.WriteDatabases({RouterRow(3, u"Alpha 1"_s, u"admin"_s)});
    EXPECT_TRUE(context_->databases.Open(folder_.dir.path()));
    SelectRouter(context_->session, *context_->databases.FindRouter(3));
    Open();
  }
  void Open() {
    auto* window = new ScriptDialog(
        *context_, prompts_,
        [this](PageQuestions& questions, QObject* parent) {
          return page_ = new FakePage(questions, parent, new QWidget);
        },
        nullptr, [this] { ++writes_; });
    delete window_.data();
    window_ = window;
    window->open();
    window_->activateWindow();
    update_ = Find<ScriptEditor>("update_script_editor");
  }
  // "the update script | the view script"
  QString Scripts() {
    const RouterRecord stored = *context_->databases.FindRouter(3);
    return stored.routercommands + u" | "_s + stored.routerportpage;
  }

  ScriptEditor* update_ = nullptr;
  QPointer<FakePage> page_;
  int writes_ = 0;
};

TEST_F(ScriptWindowTest, EachButtonWritesItsOwnScriptAndLeavesTheOtherAlone) {
  EXPECT_EQ(window_->windowTitle(), u"Current Scripts For - Alpha 1"_s);
  EXPECT_EQ(TextOf("update_script_editor"), "nav(\"one\")\nnav(\"two\")\n");
  auto* view = Find<ScriptEditor>("view_script_editor");
  EXPECT_FALSE(view->isVisible());
  view->appendPlainText(u"not to be saved"_s);
  update_->setPlainText(u"nav(\"\u00a0\u2192\")\n\nx"_s);
  Click("save_update_script_button");
  EXPECT_EQ(Scripts(), u"nav(\"\u00a0\u2192\")\r\n\r\nx | nav(\"list\")"_s);
  EXPECT_FALSE(Find("save_update_script_button")->isEnabled());

  Find<QTabWidget>("script_pages")->setCurrentIndex(1);
  EXPECT_TRUE(view->isVisible());
  view->clear();
  Click("save_view_script_button");
  EXPECT_EQ(Scripts(), u"nav(\"\u00a0\u2192\")\r\n\r\nx | "_s);
  EXPECT_EQ(writes_, 2);
  EXPECT_THAT(prompts_.shown, IsEmpty());
}

TEST_F(ScriptWindowTest, AWriteThatFailsIsReportedAndTheTextStays) {
  update_->insertPlainText(u"new"_s);
  context_->databases.Close();
  Click("save_update_script_button");
  EXPECT_EQ(writes_, 1) << "what the database holds is read anew in any case";
  EXPECT_TRUE(Find("save_update_script_button")->isEnabled());
  EXPECT_TRUE(update_->document()->isModified());
  context_->session.router_id = 0;
  Open();
  Click("save_update_script_button");
  EXPECT_THAT(prompts_.shown, ElementsAre(StartsWith("Tell: The script cannot be saved"),
                                          StartsWith("Tell: Please choose a router")));
}

TEST_F(ScriptWindowTest, TheShippedScriptComesBackIntoTheEditorAndCanBeUndone) {
  auto* restore = Find<QAbstractButton>("restore_button");
  EXPECT_FALSE(restore->isEnabled()) << "nothing is known of how it was shipped";
  QFile::copy(folder_.Path("routers.mdb"), folder_.Path("routers.mdb.shipped"));
  Open();
  restore = Find<QAbstractButton>("restore_button");
  EXPECT_FALSE(restore->isEnabled()) << "it is the shipped one";
  update_->setPlainText(u"mine"_s);
  ASSERT_TRUE(RunUntil([&] { return restore->isEnabled(); }));
  restore->click();
  EXPECT_EQ(TextOf("update_script_editor"), "mine") << "the answer is No";
  prompts_.answers = {true};
  restore->click();
  EXPECT_EQ(TextOf("update_script_editor"), "nav(\"one\")\nnav(\"two\")\n");
  EXPECT_TRUE(RunUntil([&] { return !restore->isEnabled(); }));
  update_->undo();
  EXPECT_EQ(TextOf("update_script_editor"), "mine");
  EXPECT_EQ(writes_, 0);
  Find<QTabWidget>("script_pages")->setCurrentIndex(1);
  EXPECT_FALSE(restore->isEnabled());
}

TEST_F(ScriptWindowTest, AScriptOfTheUsersOwnIsNotTheOneThatWasTried) {
  RouterRecord row = RouterRow(3, u"Alpha 1"_s, u"admin"_s);
  row.routertested = u"rebuild"_s;
  context_->databases.Close();
  folder_.WriteDatabases({row});
  QFile::copy(folder_.Path("routers.mdb"), folder_.Path("routers.mdb.shipped"));
  ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
  Open();
  for (const auto& [script, tested] :
       {std::pair(u"mine"_s, u""_s), {u"nav(\"one\")\nnav(\"two\")"_s, u"rebuild"_s}}) {
    update_->setPlainText(script);
    Click("save_update_script_button");
    EXPECT_EQ(context_->databases.FindRouter(3)->routertested, tested);
  }
}

TEST_F(ScriptWindowTest, ChangesAreNotThrownAwayUnasked) {
  QTest::keyClicks(update_, u"x"_s);
  window_->close();
  EXPECT_TRUE(window_ && window_->isVisible());
  prompts_.answers = {true};
  window_->close();
  EXPECT_TRUE(ComesToItsEnd());
  Open();
  window_->close();
  EXPECT_TRUE(ComesToItsEnd());
  const auto asked = StartsWith("Careful: ");
  EXPECT_THAT(prompts_.shown, ElementsAre(asked, asked)) << "nothing was changed in the last one";
}

TEST_F(ScriptWindowTest, FaultyLinesAreMarkedAndListedWhileTypingAndLeadToTheirPlace) {
  auto* list = Find<QListWidget>("findings_list");
  EXPECT_EQ(list->count(), 0);
  update_->setPlainText(u"nav(\"one\")\nset_nmae(\"a,\")\ntimeout(\"0\")\na comment"_s);
  ASSERT_TRUE(RunUntil([&] { return list->count() == 2; }));
  for (const int line : {0, 1, 2, 3}) {
    const QTextBlock block = update_->document()->findBlockByNumber(line);
    const bool is_marked = std::ranges::any_of(block.layout()->formats(), [](const auto& range) {
      return range.format.underlineStyle() == QTextCharFormat::WaveUnderline;
    });
    EXPECT_EQ(is_marked, line == 1 || line == 2) << line;
  }
  EXPECT_THAT(list->item(0)->text().toStdString(), StartsWith("Line 2 (warning): There is no"));
  EXPECT_THAT(list->item(1)->text().toStdString(), StartsWith("Line 3: With 0"));
  EXPECT_EQ(TextOf("findings_label"), "Lines to look at: 2 (errors: 1)");
  list->setFocus();
  list->setCurrentRow(1);
  EXPECT_EQ(update_->textCursor().selectedText(), u"0"_s);
  update_->document()->clear();  // the list is updated a moment later
  list->setCurrentRow(0);
  EXPECT_EQ(update_->textCursor().selectedText(), QString());
  EXPECT_TRUE(RunUntil([&] { return list->count() == 0; }));
}

TEST_F(ScriptWindowTest, NamesAreCompletedAtTheBeginningOfALineOnly) {
  QAbstractItemView* popup = update_->findChild<QCompleter*>()->popup();
  const std::string shape = "set_stop_port(\"field,position\")";
  update_->clear();
  QTest::keyClicks(update_, u"set_stop_port"_s);
  ASSERT_TRUE(popup->isVisible()) << "three commands begin so";
  EXPECT_EQ(popup->currentIndex().data().toString().toStdString(), shape);
  QTest::keyClick(popup, Qt::Key_Return);
  ExpectTexts(
      {{"update_script_editor", "set_stop_port(\"\")"}, {"update_script_shape_label", shape}});
  QTest::keyClicks(update_, u"nav"_s);
  EXPECT_FALSE(popup->isVisible());
  EXPECT_EQ(TextOf("update_script_editor"), "set_stop_port(\"nav\")");
  const QString help = Find<QLabel>("update_script_shape_label")->toolTip();
  EXPECT_TRUE(help.contains(u"end port"_s) && help.contains(u"<i>position</i>: How many"_s))
      << help.toStdString();
  update_->clear();
  QTest::keyClicks(update_, u"choose_it"_s);
  EXPECT_EQ(popup->currentIndex().data().toString(), u"choose_item(\"list,text\")"_s);
}

TEST_F(ScriptWindowTest, LinesRunOnAPageBesideTheScript) {
  context_->session.router_ip = u"0.0.0.0"_s;
  Click("bench_button");
  ASSERT_FALSE(page_.isNull());
  update_->setPlainText(u"set_frame_name(\"f\")\nnav(\"a\")\nnav(\"b\")\nnav(\"c\")"_s);
  update_->moveCursor(QTextCursor::End);
  update_->moveCursor(QTextCursor::Up);
  Click("run_line_button");
  EXPECT_THAT(prompts_.shown, ElementsAre("Tell: Please Set Router IP."));
  context_->session.router_ip = u"127.0.0.1"_s;
  const auto ended = [this] { return Find("run_line_button")->isEnabled(); };
  Click("run_line_button");
  ASSERT_TRUE(RunUntil(ended));
  EXPECT_EQ(page_->opened, QStringList(u"http://127.0.0.1/b"_s));
  EXPECT_THAT(TextOf("bench_log_edit"),
              AllOf(HasSubstr("Step 01. set_frame_name"), HasSubstr("Step 02. nav(\"b\")")));
  page_->opened.clear();
  Click("run_to_caret_button");
  ASSERT_TRUE(RunUntil(ended));
  EXPECT_EQ(page_->opened, (QStringList{u"http://127.0.0.1/a"_s, u"http://127.0.0.1/b"_s}));
  context_->job_flags.SetRunning(true);  // a job's window is open
  Click("run_line_button");
  EXPECT_THAT(prompts_.shown.back(), StartsWith("Tell: A job works on the router."));
  context_->job_flags.SetRunning(false);
}

TEST_F(ScriptWindowTest, AnElementIsPickedOnThePageAndItsLineWritten) {
  Click("bench_button");
  page_->element = {{u"tag"_s, u"input"_s},
                    {u"type"_s, u"text"_s},
                    {u"name"_s, u"fport"_s},
                    {u"text"_s, u"First port"_s},
                    {u"number"_s, 12}};
  QWidget* view = page_->Widget();
  update_->setPlainText(u"nav(\"a\")\nclick_button(\"s\")"_s);
  Click("pick_button");
  QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), view->mapToGlobal(QPointF(5, 5)), Qt::NoButton,
                   Qt::NoButton, {});
  QCoreApplication::sendEvent(view, &move);
  EXPECT_TRUE(ComesToSay("picked_label", "Name: fport   Number: 12   Text: First port"));
  QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(5, 5));
  EXPECT_EQ(TextOf("update_script_editor"),
            "nav(\"a\")\nset_start_port(\"fport,\")\nclick_button(\"s\")");
  EXPECT_FALSE(Find<QAbstractButton>("pick_button")->isChecked());
}

TEST_F(ScriptWindowTest, APageIsSavedForOthersAsItLooksWithoutWhatIsSecret) {
  Click("bench_button");
  context_->session.password = u"s3cret"_s;
  const auto part = [](const char* address, const char* kind) {
    return QJsonObject{{u"address"_s, QLatin1String(address)}, {u"kind"_s, QLatin1String(kind)}};
  };
  page_->documents = {QJsonObject{
      {u"address"_s, u"http://router/adv/fw.asp"_s},
      {u"path"_s, u"/adv/fw.asp"_s},
      {u"markup"_s, u"<p style=\"background:url(&quot;dots.gif&quot;)\">s3cret</p>"_s},
      {u"parts"_s,
       QJsonArray{part("http://router/look.css", "picture"),
                  part("http://router/menu.js?v=1", "script"),
                  part("http://elsewhere/a.png", "picture"), part("data:image/png,A", "picture"),
                  part("http://router/gone.png", "picture")}}}};
  const auto file = [](const char* type, const QByteArray& bytes) {
    return QJsonObject{{u"type"_s, QLatin1String(type)},
                       {u"bytes"_s, QLatin1String(bytes.toBase64())}};
  };
  const QByteArray styles = "@import 'more.css'; p{background:url(img/p.png)}";
  page_->parts = {
      {u"http://router/look.css"_s, file("text/css", styles)},
      {u"http://router/more.css"_s, file("text/css", "b{}")},
      {u"http://router/img/p.png"_s, file("image/png", "\x89PNG")},
      {u"http://router/adv/dots.gif"_s, file("image/gif", "GIF")},
      {u"http://router/menu.js?v=1"_s, file("text/javascript", "wpa_psk='one', p='s3cret'")},
      {u"http://router/gone.png"_s, file("text/html", "the login page")}};
  const QString folder = folder_.Path("saved");
  prompts_.files = {folder};
  Click("save_page_button");
  ASSERT_TRUE(RunUntil([this] { return !prompts_.shown.empty(); }));
  const std::pair<const char*, QByteArray> files[] = {
      {"/adv/fw.asp", "<p style=\"background:url(&quot;dots.gif&quot;)\">removed</p>"},
      {"/look.css", styles},
      {"/more.css", "b{}"},
      {"/img/p.png", "\x89PNG"},
      {"/adv/dots.gif", "GIF"},
      {"/menu.js.txt", "wpa_psk='removed', p='removed'"},
      {"/menu.js", ""},
      {"/gone.png", ""}};
  for (const auto& [name, bytes] : files) {
    EXPECT_EQ(ReadBytes(folder + QLatin1String(name)), bytes) << name;
  }
  EXPECT_TRUE(QFile::exists(folder + u"/answers.json"_s));
  EXPECT_THAT(prompts_.shown.back(),
              AllOf(StartsWith("Tell: The page is in the folder"),
                    EndsWith(":\nhttp://elsewhere/a.png\nhttp://router/gone.png")));
}

TEST_F(RouterListTest, ARouterThatIsNotListedIsMadeOutOfAnother) {
  Open({u"Harbour HB-1"_s, u"Quay Q20"_s});
  Click("new_router_button");
  QPointer<QDialog> form = window_->findChild<NewRouterDialog*>();
  ASSERT_FALSE(form.isNull());
  auto* name = Child<QLineEdit>(form, "name_edit");
  const auto create = [&] { Child<QAbstractButton>(form, "create_button")->click(); };
  create();
  QTest::keyClicks(name, u"quay q20"_s);
  EXPECT_EQ(Child<QComboBox>(form, "model_box")->currentText(), u"Quay Q20"_s);
  create();
  EXPECT_THAT(prompts_.shown, ElementsAre(StartsWith("Tell: Please type the name"),
                                          StartsWith("Tell: There is a router \"quay q20\"")));
  QTest::keyClicks(name, u"-B"_s);
  create();
  EXPECT_EQ(chosen_, kFirstOwnRouterId);
  const RouterRecord made = *context_->databases.FindRouter(chosen_);
  EXPECT_EQ(made.routername, u"quay q20-B"_s);
  EXPECT_EQ(made.routercommands, context_->databases.FindRouter(11)->routercommands);
  EXPECT_TRUE(ComesToItsEnd());

  ForeignScripts foreign(folder_.dir.path());
  ASSERT_TRUE(foreign.Note(11, {.name = u"Bob"_s, .key = {}}));
  Open({u"Harbour HB-1"_s, u"Quay Q20"_s});
  Click("new_router_button");
  form = window_->findChild<NewRouterDialog*>();
  QTest::keyClicks(Child<QLineEdit>(form, "name_edit"), u"quay q20-C"_s);
  Child<QAbstractButton>(form, "create_button")->click();
  ASSERT_TRUE(foreign.OriginOf(chosen_)) << "a copy of a script of somebody else";
  EXPECT_EQ(foreign.OriginOf(chosen_)->author.name, u"Bob"_s);
}

TEST_F(RouterListTest, ARouterGoesToOthersAsOneFile) {
  Open({u"Harbour HB-1"_s, u"Quay Q20"_s});
  list_->setCurrentIndex(list_->model()->index(1, 0));
  const QString file = folder_.Path("q20.txt");
  prompts_.files = {file, file, file, file};
  Click("export_button");
  const QByteArray exported = ReadBytes(file);
  ASSERT_TRUE(exported.startsWith("id: 11\nroutername: Quay Q20\n"));
  SpeakGerman({u"\"Line %1: %2\"|\"Zeile %1: %2\""_s,
               u"\"There is no field \"%1\".\"|\"Kein Feld „%1“.\""_s});
  ASSERT_TRUE(WriteBytes(file, "id: 11\ncolour: %1\n"));
  Click("import_button");
  EXPECT_THAT(prompts_.shown.back(), EndsWith(":\nZeile 2: Kein Feld „colour“."));
  context_->translator.SetLanguage(u"English"_s);
  ASSERT_TRUE(WriteBytes(file, exported));
  Click("import_button");
  EXPECT_THAT(prompts_.shown.back(), StartsWith("Tell: There is a router \"Quay Q20\""));
  ASSERT_TRUE(WriteBytes(file, QByteArray(exported).replace("Quay Q20", "Quay Q21")));
  Click("import_button");
  EXPECT_EQ(chosen_, kFirstOwnRouterId);
  EXPECT_EQ(context_->databases.FindRouter(chosen_)->routerportpage,
            context_->databases.FindRouter(11)->routerportpage);
  EXPECT_THAT(prompts_.shown.back(), HasSubstr("before it runs for the first time"));
  EXPECT_TRUE(ForeignScripts(folder_.dir.path()).OriginOf(chosen_));
  EXPECT_TRUE(ComesToItsEnd());
}

TEST_F(RouterListTest, ASignedFileIsTakenAsItWasSigned) {
  Open({u"Harbour HB-1"_s, u"Quay Q20"_s});
  const QString file = folder_.Path("q20.txt");
  prompts_.files = {file, file};
  prompts_.answers = {true};
  Click("export_button");
  EXPECT_THAT(prompts_.shown.back(), HasSubstr("Do you want to sign the file?"));
  const QByteArray written = ReadBytes(file);
  EXPECT_TRUE(written.startsWith("# author: "));
  ASSERT_TRUE(WriteBytes(file, QByteArray(written).replace("Harbour HB-1", "Harbour HB-9")));
  Click("import_button");
  EXPECT_THAT(prompts_.shown.back(), HasSubstr("changed after its author had signed it"));
  EXPECT_EQ(context_->databases.RouterCount(), 2);
}

}  // namespace
}  // namespace quayline::testing
