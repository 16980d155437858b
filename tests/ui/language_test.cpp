// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QDialogButtonBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QStyle>
#include <QTreeView>

#include "main_fixture.h"
#include "ui/toolkit/access_keys.h"
#include "ui/toolkit/readable_text.h"
#include "ui/toolkit/theme.h"
#include "ui/toolkit/window_language.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

class LanguageTest : public MainWindowTest {
 protected:
  void WriteLanguage(const QString& name, const QStringList& lines) {
    const QString languages = folder_.Path("Languages");
    QDir().mkpath(languages);
    WriteBytes(languages + u'/' + name + u".lng"_s, LanguageFileBytes(lines));
    WriteBytes(languages + u"/_Current_Languages.txt"_s,
               LanguageFileBytes({u"German | Deutsch"_s, u"Arabic | العربية"_s}));
  }
  void TearDown() override {
    MainWindowTest::TearDown();
    QApplication::setLayoutDirection(Qt::LeftToRight);
  }

  // Without the access key, which the program chooses where the file has none.
  std::string Caption(const char* button) const {
    return QString::fromStdString(TextOf(button)).remove(u'&').toStdString();
  }
  std::string Header(int column) const {
    return Find<QTreeView>("port_list_view")
        ->model()
        ->headerData(column, Qt::Horizontal, Qt::DisplayRole)
        .toString()
        .toStdString();
  }

 private:
  static void WriteBytes(const QString& file_name, const QByteArray& bytes) {
    QFile file(file_name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
};

// Captions, menus, tool tips, names, placeholders, models, and what code puts together.
TEST_F(LanguageTest, TheMainWindowFollowsTheLanguageAndComesBackToEnglish) {
  WriteLanguage(u"German"_s,
                {u"\"Update Router\"|\"Router einrichten\""_s, u"\"&File\"|\"&Datei\""_s,
                 u"\"Right Click For More Options\"|\"Rechtsklick für mehr\""_s,
                 u"\"Exit Program\"|\"Beenden\""_s, u"\"App Name\"|\"Eintrag\""_s,
                 u"\"Total Entries To Add:\"|\"Einträge:\""_s, u"\"Routers Loaded:\"|\"Router:\""_s,
                 u"\"(((Please Choose A Router)))\"|\"(((Bitte wählen)))\""_s,
                 u"\"No ports yet\"|\"Noch keine Ports\""_s, u"\"Alpha 1\"|\"falsch\""_s,
                 u"\"Max Router Can Hold:\"|\"Höchstens:\""_s, u"\"&Yes\"|\"&Ja\""_s});
  folder_.WriteFile("list.qyl", "App Name|192.168.1.10()|21|21|TCP|Update Router\r\n");
  Start("language=German | Deutsch\r\n");
  const auto expect = [this](bool german) {
    const auto text = [german](const char* own, const char* english) {
      return std::string(german ? own : english);
    };
    EXPECT_EQ(Caption("update_button"), text("Router einrichten", "Update Router"));
    EXPECT_EQ(Find<QMenu>("file_menu")->title().toStdString(), text("&Datei", "&File"));
    EXPECT_EQ(Find<QAction>("exit_action")->text().toStdString(), text("Beenden", "Exit Program"));
    EXPECT_EQ(Find("port_list_view")->toolTip().toStdString(),
              text("Rechtsklick für mehr", "Right Click For More Options"));
    EXPECT_EQ(Header(0), text("Eintrag", "App Name"));
    EXPECT_EQ(Header(4), "TCP/UDP");
    EXPECT_THAT(TextOf("total_entries_label"),
                StartsWith(text("Einträge: (1)", "Total Entries To Add: (1)")));
    EXPECT_EQ(TextOf("router_count_label"), text("Router: (2)", "Routers Loaded: (2)"));
    EXPECT_EQ(TextOf("max_entries_label"), text("Höchstens: (NA)", "Max Router Can Hold: (NA)"));
    EXPECT_EQ(FieldOf("router_box")->placeholderText().toStdString(),
              text("(((Bitte wählen)))", "(((Please Choose A Router)))"));
    EXPECT_EQ(Find("port_list_view")->property("hintTitle").toString().toStdString(),
              text("Noch keine Ports", "No ports yet"));
    // What the user has entered stays, whatever it is called.
    EXPECT_EQ(Rows(), "App Name 192.168.1.10() 21-21 TCP Update Router");
    EXPECT_EQ(Find<QComboBox>("router_box")->itemText(1).toStdString(), "Alpha 1");
    const QDialogButtonBox buttons(QDialogButtonBox::Yes);
    EXPECT_EQ(buttons.button(QDialogButtonBox::Yes)->text().toStdString(), text("&Ja", "&Yes"));
  };
  ASSERT_TRUE(ComesToSay("total_entries_label", "(1)"));
  expect(true);
  Choose("language_box", 0);
  expect(false);
  ExpectStored({{setting::kLanguage, "English | English"}});
  Choose("language_box", 1);
  expect(true);
  ExpectStored({{setting::kLanguage, "German | Deutsch"}});
}

// The third caption has one letter, which the first one gives up; the fourth has its key in
// brackets, before a colon.
TEST_F(LanguageTest, EachCaptionOfAWindowHasAnAccessKeyOfItsOwn) {
  WriteLanguage(u"German"_s, {u"\"&One\"|\"&Ab\""_s, u"\"&Two\"|\"&Ac\""_s, u"\"&Three\"|\"A\""_s,
                              u"\"&Four\"|\"文(&A):\""_s, u"\"Five\"|\"Fünf\""_s});
  Translator translator(folder_.dir.path());
  translator.SetLanguage(u"German"_s);
  QWidget window;
  QList<QPushButton*> buttons;
  for (const char* english : {"&One", "&Two", "&Three", "&Four", "Five"}) {
    buttons.append(new QPushButton(translator.Text(QString::fromLatin1(english)), &window));
  }
  buttons.append(new QPushButton(u"&Fritz"_s, &window));  // typed by the user
  const auto captions = [&] {
    QStringList texts;
    for (const QPushButton* button : std::as_const(buttons)) {
      texts.append(button->text());
    }
    return texts.join(u' ').toStdString();
  };
  for (int time = 0; time < 2; ++time) {
    SettleAccessKeys(window, translator);
    EXPECT_EQ(captions(), "A&b A&c &A 文(&O): Fünf &Fritz");
  }
  translator.SetLanguage(u"English"_s);
  ApplyLanguage(window, translator);
  SettleAccessKeys(window, translator);
  EXPECT_EQ(captions(), "&One &Two &Three &Four Five &Fritz");
}

TEST_F(LanguageTest, ControlsOfATurnedWindowKeepAddressesAndNamesInOrder) {
  QApplication::setLayoutDirection(Qt::RightToLeft);
  const struct {
    QString text;
    bool is_kept;
  } rows[] = {{u"192.168.1.10(FrontDesk)"_s, true},
              {u"192.168.1.10(مكتب)"_s, true},
              {u"C:\\Games (2)"_s, true},
              {u"\u2068على الموجّه\u2069, \u206814:05\u2069"_s, false},
              {u"http://"_s, true},
              {u"منفذ 21"_s, false}};
  for (const auto& row : rows) {
    EXPECT_EQ(ReadableText(row.text).startsWith(QChar(0x2066)), row.is_kept)
        << row.text.toStdString();
  }
  QApplication::setLayoutDirection(Qt::LeftToRight);
  EXPECT_EQ(ReadableText(rows[0].text), rows[0].text);
  const Theme theme(*qApp);
  const auto drawn = [](Qt::LayoutDirection direction, const QString& text) {
    QApplication::setLayoutDirection(direction);
    QImage image(100, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QApplication::style()->drawItemText(&painter, image.rect(), Qt::AlignLeft | Qt::AlignAbsolute,
                                        QPalette(Qt::gray), true, text);
    return image;
  };
  EXPECT_EQ(drawn(Qt::RightToLeft, u"http://"_s), drawn(Qt::LeftToRight, u"http://"_s));
  EXPECT_NE(drawn(Qt::RightToLeft, u"http://"_s), drawn(Qt::LeftToRight, u"//:http"_s));
}

TEST_F(LanguageTest, TheDesktopsLanguageIsOfferedOnceInItsOwnWords) {
  WriteLanguage(u"German"_s, {u"\"Language\"|\"Sprache\""_s,
                              u"\"Do you want to use Quayline in %1?\"|\"Quayline auf %1?\""_s,
                              u"\"Update Router\"|\"Router einrichten\""_s});
  const struct {
    const char* desktop;
    const char* settings;
    QList<qsizetype> answers;
    std::vector<std::string> asked;
    const char* language;
  } rows[] = {
      {"fr_FR", "", {}, {}, "English | English"},
      {"en_GB", "", {}, {}, "English | English"},
      {"de_AT", "", {0}, {"Choose: Sprache: Quayline auf Deutsch?"}, "English | English"},
      {"de_AT", "", {1}, {"Choose: Sprache: Quayline auf Deutsch?"}, "German | Deutsch"},
      {"de_AT", "language=English | English\r\n", {}, {}, "English | English"},
  };
  for (const auto& row : rows) {
    WriteSettings(row.settings);
    Make();
    context_->desktop_locale = QLocale(QLatin1String(row.desktop));
    prompts_.choices = row.answers;
    prompts_.shown.clear();
    Show();
    AwaitReady();
    EXPECT_EQ(prompts_.shown, row.asked) << row.desktop;
    EXPECT_EQ(TextOf("language_box"), row.language);
    EXPECT_EQ(Caption("update_button"),
              *row.language == 'G' ? "Router einrichten" : "Update Router");
    // Asked once: the answer is stored.
    EXPECT_EQ(context_->settings.IsSet(setting::kLanguage),
              !row.asked.empty() || *row.settings != '\0');
  }
}

}  // namespace
}  // namespace quayline::testing
