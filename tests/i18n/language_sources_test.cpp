// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The texts of the program, as the sources have them, and the languages made of data/languages.

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dbtool/language_source.h"
#include "i18n/complete_languages.h"
#include "i18n/translator.h"
#include "test_main.h"

namespace quayline::dbtool {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> English(const QList<ProgramText>& texts) {
  std::vector<std::string> english;
  for (const ProgramText& text : texts) {
    english.push_back(text.english.toStdString());
  }
  return english;
}

TEST(ProgramTexts, EveryKindOfMessageIsFound) {
  const QString code =
      uR"~(
    // Message kNot{"a comment"};
    /* Message kNot{"Another one"}; */
    #define NOT Message{"a macro"}
    constexpr Message kOne{"One " "text"  // with a comment
                           " \"of\" three", "a note, for translators"};
    inline constexpr Message kMany[] = {{"First"}, {"Second\n\nThird | line"}};
    struct Row { int number; Message text{}; };
    constexpr Row kRows[] = {{1, {"In a row"}}, {.number = 2, .text = {"Designated"}}};
    const std::array<Message, 2> both{{{R"x(Raw "text")x"}, {"%1 (%2)"}}};
    const char c = '"'; const int big = 1'000; auto text = Message{"On the spot"};
    void Show(const Message& message) { Tell(QStringLiteral("The user reads this one.")); }
    void Log() { qCWarning(log) << "The user never reads it"; Use("%1 listens", "Word"); Query("SELECT a from b"); }
  )~"_s;
  const QStringList structs = FindMessageStructs(code);
  EXPECT_EQ(structs, QStringList(u"Row"_s));
  const ProgramTexts found = ReadCode(code, u"ui/main/a.cpp"_s, structs);
  EXPECT_THAT(English(found.texts),
              ElementsAre("One text \"of\" three", "First", "Second", "In a row", "Designated",
                          "Raw \"text\"", "On the spot"));
  EXPECT_EQ(found.texts[0].note, u"a note, for translators"_s);
  EXPECT_THAT(English(found.unreachable),
              ElementsAre("Third | line", "The user reads this one.", "%1 listens"));
  EXPECT_THAT(ReadCode(code, u"demo/a.cpp"_s, structs).unreachable, ::testing::SizeIs(1));
}

TEST(ProgramTexts, FormsGiveAllTextsButKeysAndWhatIsNotTranslated) {
  const ProgramTexts found = ReadForm(
      "<ui><widget><property name='text'><string comment='a note'>Open "
      "&amp;List</string></property>"
      "<property name='shortcut'><string>Ctrl+Return</string></property>"
      "<property name='text'><string notr='true'>TCP</string></property>"
      "<property name='toolTip'><string>Line one\nLine two</string></property>"
      "<property name='text'><string>(1~65535)</string></property></widget></ui>",
      u"a.ui"_s);
  EXPECT_THAT(English(found.texts), ElementsAre("Open &List", "Line one", "Line two"));
  EXPECT_EQ(found.texts[0].note, u"a note"_s);
}

TEST(LanguageSource, FindingsNameWhatIsMissingUnusedAndWrong) {
  const ProgramTexts program = ReadCode(
      u"Message a[] = {{\"&Open\"}, {\"%1 of %2\"}, {\"Same\"}, {\"Lost\"}, {\"Empty\"}};"_s,
      u"a.h"_s, {});
  const LanguageSource language{
      .records = ParseLanguageText(u"\"&open\"|\"Öffnen\"\r\n\"%1 of %2\"|\"%2: %1\"\r\n"
                                   "\"Same\"|\"gleich \"\r\n\"same\"|\"noch einmal\"\r\n"
                                   "\"Old\"|\"Alt\"\r\n\"Empty\"|\"\""_s)};
  const LanguageFindings found = CompareLanguage(language, program);
  EXPECT_EQ(found.missing, (QStringList{u"\"Lost\"|\"\""_s, u"\"Empty\"|\"\""_s}));
  EXPECT_EQ(found.unused, QStringList(u"\"Old\"|\"Alt\""_s));
  EXPECT_EQ(found.wrong.size(), 3);
}

// Each language of data/languages is what the program reads, and its list names it.
TEST(LanguageSource, TheLanguagesAreMadeInTheFormatOfTheProgram) {
  const QTemporaryDir folder;
  const QString data = QStringLiteral(QUAYLINE_SOURCE_DIR "/data");
  const auto written = WriteLanguages(data, folder.path());
  ASSERT_TRUE(written) << qPrintable(written.error());
  Translator translator(folder.path());
  const QStringList sources = QDir(data + u"/languages"_s).entryList({u"*.txt"_s});
  ASSERT_FALSE(sources.isEmpty());
  EXPECT_EQ(translator.AvailableLanguages().size(), sources.size() + 1);
  for (const QString& choice : translator.AvailableLanguages().sliced(1)) {
    const auto source =
        ReadLanguageSource(data + u"/languages/"_s + translator.LanguageOf(choice) + u".txt"_s);
    ASSERT_TRUE(source) << qPrintable(choice);
    translator.Choose(choice);
    EXPECT_EQ(translator.Translate(source->records.first().left_text),
              source->records.first().right_text);
  }
}

TEST(Languages, NoTextOfTheProgramIsOutOfTheirReach) {
  EXPECT_THAT(English(ReadProgramTexts(QStringLiteral(QUAYLINE_SOURCE_DIR "/src")).unreachable),
              IsEmpty());
}

TEST(Languages, ACompleteLanguageHasEveryText) {
  const ProgramTexts program = ReadProgramTexts(QStringLiteral(QUAYLINE_SOURCE_DIR "/src"));
  ASSERT_FALSE(program.texts.isEmpty());
  for (const QString& name : testing::kCompleteLanguages) {
    const auto language =
        ReadLanguageSource(QStringLiteral(QUAYLINE_SOURCE_DIR "/data/languages/%1.txt").arg(name));
    ASSERT_TRUE(language) << qPrintable(language.error());
    const LanguageFindings found = CompareLanguage(*language, program);
    EXPECT_EQ(found.missing.join(u'\n').toStdString(), "") << qPrintable(name);
    EXPECT_EQ(found.unused.join(u'\n').toStdString(), "") << qPrintable(name);
    EXPECT_EQ(found.wrong.join(u'\n').toStdString(), "") << qPrintable(name);
  }
}

// A caption without what the help leaves out: access keys, dots and colons, what follows a colon.
QString NameInHelp(QString caption) {
  static const QRegularExpression key(u"\\(&.\\)"_s);
  static const QRegularExpression rest(u"(\\.\\.\\.|[:：].*)$"_s);
  return caption.remove(key).remove(u'&').remove(rest);
}

// The help quotes the names of buttons, menus and columns: each has to be in the windows.
TEST(Help, NamesOnlyWhatTheWindowsHaveAndLinksToItsOwnPages) {
  const QString source = QStringLiteral(QUAYLINE_SOURCE_DIR);
  const QStringList terms{u"settings.ini"_s, u"DMZ"_s,          u"bridge mode"_s, u"exposed host"_s,
                          u"Bridge-Modus"_s, u"Exposed Host"_s, u"桥接模式"_s,    u"暴露主机"_s};
  static const QRegularExpression quoted(u"„([^“]*)“|“([^”]*)”|\"([^\"]*)\""_s);
  static const QRegularExpression link(u"\\]\\(([^)]*)\\)"_s);
  const QDir english(source + u"/docs/help/en"_s);
  for (const auto& [folder, language] :
       {std::pair{u"en"_s, QString()}, {u"de"_s, u"German"_s}, {u"zh"_s, u"Chinese"_s}}) {
    QStringList known = terms;
    for (const ProgramText& text : ReadProgramTexts(source + u"/src"_s).texts) {
      known.append(language.isEmpty() ? NameInHelp(text.english) : QString());
    }
    if (const auto file = ReadLanguageSource(source + u"/data/languages/%1.txt"_s.arg(language))) {
      for (const LanguageRecord& record : file->records) {
        known.append(NameInHelp(record.right_text));
      }
    }
    const QDir pages(source + u"/docs/help/"_s + folder);
    EXPECT_EQ(pages.entryList(QDir::Files), english.entryList(QDir::Files)) << qPrintable(folder);
    for (const QString& page : pages.entryList(QDir::Files)) {
      QFile file(pages.filePath(page));
      ASSERT_TRUE(file.open(QIODevice::ReadOnly));
      QString text = QString::fromUtf8(file.readAll());
      for (const auto& match : link.globalMatch(text)) {
        EXPECT_TRUE(pages.exists(match.captured(1))) << qPrintable(page + match.captured(1));
      }
      text.remove(
          QRegularExpression(u"^    .*$"_s, QRegularExpression::MultilineOption));  // scripts
      for (const auto& match : quoted.globalMatch(text)) {
        const QString name = match.captured(match.lastCapturedIndex()).simplified();
        EXPECT_TRUE(known.contains(name)) << qPrintable(folder + u'/' + page + u": "_s + name);
      }
    }
  }
}

}  // namespace
}  // namespace quayline::dbtool
