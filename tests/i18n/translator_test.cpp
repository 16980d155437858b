// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "i18n/translator.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "i18n/isolated.h"
#include "i18n/language_locale.h"
#include "i18n/sentence.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(LanguageFile, EachLineIsReadByItsMarks) {
  const struct {
    const char* line;
    const char* left;
    const char* right;
    int number = 0;
    const char* key = "";
  } rows[] = {
      {R"("Close"|"Schließen")", "Close", "Schließen"},
      {R"(   12 {quit}: "Exit" | "Ende"   )", "Exit", "Ende", 12, "quit"},
      {R"(12 {quit} "Exit"|"Ende")", "Exit", "Ende", 12},  // without a colon no key
      {R"(7 "Exit" "Ende")", "", "", 7},                   // without a bar no texts
      {R"("Press "Stop" now"|"Drücken Sie "Halt"")", R"(Press "Stop" now)",
       R"(Drücken Sie "Halt")"},
      {R"("a|b"|"c")", "", R"(|"c)"},  // the first bar separates
      {R"("Only one|"Nur eines")", "", "Nur eines"},
      {R"("No translation"|"")", "No translation", ""},
      {R"("A"|"x | y")", "A", "x | y"},
      {R"(99999999999 "A"|"B")", "A", "B"},
      {"{}: [x]", "", ""},
  };
  for (const auto& row : rows) {
    const QList<LanguageRecord> records = ParseLanguageText(QString::fromUtf8(row.line));
    ASSERT_EQ(records.size(), 1) << row.line;
    EXPECT_EQ(records[0].left_text.toStdString(), row.left) << row.line;
    EXPECT_EQ(records[0].right_text.toStdString(), row.right) << row.line;
    EXPECT_EQ(records[0].number, row.number) << row.line;
    EXPECT_EQ(records[0].braced_key.toStdString(), row.key) << row.line;
  }
}

TEST(LanguageFile, CommentsAndSectionsAreNoRecords) {
  const QList<LanguageRecord> records = ParseLanguageText(
      u"   ' \"A\"|\"x\"\r\n\r\n[one] two]\r\n\"B\"|\"y\"\r\n  [three]\r\n\"C\"|\"z\"\n\"D\"|\"w\""_s);
  ASSERT_EQ(records.size(), 2);  // a line feed alone ends no line
  EXPECT_EQ(records[0].section, u"one] two"_s);
  EXPECT_EQ(records[1].section, u"three"_s);
  EXPECT_EQ(records[1].left_text, u"C"_s);
}

class TranslatorTest : public ::testing::Test {
 protected:
  void Write(const QString& name, const QByteArray& bytes) {
    QFile file(dir_.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    translator_.SetFolder(dir_.path());
  }
  void WriteLanguage(const QString& name, const QStringList& lines) {
    Write(name + u".lng"_s, LanguageFileBytes(lines));
  }
  std::string Text(const char* english) const {
    return translator_.Text(QString::fromUtf8(english)).toStdString();
  }

  QTemporaryDir dir_;
  Translator translator_{QString()};
};

TEST_F(TranslatorTest, TheFirstRecordOfATextWinsInWhateverCaseAndSection) {
  WriteLanguage(u"German"_s, {u"\"Open\"|\"Öffnen\""_s, u"[menu]"_s, u"\"OPEN\"|\"Auf\""_s,
                              u"\"Straße\"|\"Weg\""_s, u"\"Empty\"|\"\""_s, u"\"A\"|\"B\""_s});
  translator_.SetLanguage(u"gErMaN"_s);
  for (const auto& [english, text] : std::initializer_list<std::pair<const char*, const char*>>{
           {"Open", "Öffnen"},
           {"oPEN", "Öffnen"},
           {"STRAßE", "Weg"},
           {"Empty", "Empty"},  // an empty translation does not count
           {"Other", "Other"},
           {"&Open", "Öffnen"},  // the access key belongs to this program's caption
           {"O&pen && shut", "O&pen && shut"},
           {"A\n\nOpen\nOther", "B\n\nÖffnen\nOther"}}) {
    EXPECT_EQ(Text(english), text);
  }
  EXPECT_EQ(translator_.Translate(u"Empty"_s), QString());
  EXPECT_EQ(translator_.Translate(u"Other"_s), QString());
  EXPECT_EQ(translator_.Folder().back(), u'/');
}

TEST_F(TranslatorTest, RecordsAreFoundByNumberAndByKey) {
  WriteLanguage(u"X"_s, {u"3 {b}: \"one\"|\"eins\""_s, u"3 {B}: \"two\"|\"zwei\""_s,
                         u"4 {c}: \"three\"|\"drei\""_s});
  translator_.SetLanguage(u"X"_s);
  translator_.SetLookupMode(LookupMode::kNumber);
  EXPECT_EQ(translator_.Translate(u"3"_s), u"eins"_s);
  EXPECT_EQ(translator_.Translate(u"04"_s), u"drei"_s);
  translator_.SetLookupMode(LookupMode::kBracedKey);
  EXPECT_EQ(translator_.Translate(u"B"_s), u"eins"_s);
  translator_.SetReturnLeft(true);
  EXPECT_EQ(translator_.Translate(u"C"_s), u"three"_s);
}

TEST_F(TranslatorTest, EnglishComesBackThroughAnyFileAndWithoutAFileNothingChanges) {
  WriteLanguage(u"German"_s, {u"\"Close\"|\"Schließen\""_s});
  translator_.SetLanguage(u"German"_s);
  EXPECT_EQ(translator_.LanguageFile(), u"German.lng"_s);
  WriteLanguage(u"Aramaic"_s, {u"\"Close\"|\"sgr\""_s});
  translator_.SetLanguage(u"ENGLISH"_s);
  EXPECT_EQ(translator_.LanguageFile(), u"Aramaic.lng"_s);
  EXPECT_EQ(translator_.Translate(u"close"_s), u"Close"_s);
  EXPECT_EQ(translator_.Language(), u"English"_s);

  // A file that is missing or empty leaves the records as they are.
  translator_.SetLanguage(u"German"_s);
  Write(u"Empty.lng"_s, "");
  for (const char* name : {"Empty", "Klingon", "../German", ""}) {
    translator_.SetLanguage(QString::fromLatin1(name));
    EXPECT_EQ(Text("Close"), "Schließen") << name;
  }
}

TEST_F(TranslatorTest, OneByteTooManyAndAnyMarkAreReadAsText) {
  QByteArray bytes = LanguageFileBytes({u"\"A\"|\"\u4e2d\u0641\""_s});
  bytes[0] = 'x';  // the first character is dropped whatever it is
  Write(u"Odd.lng"_s, bytes + 'z');
  translator_.SetLanguage(u"Odd"_s);
  EXPECT_EQ(Text("A"), "\u4e2d\u0641");
}

TEST_F(TranslatorTest, TheListIsReadOnlyInItsEncoding) {
  const QString lines = u"German | Deutsch\r\n\r\n  French | Français \r\nEnglish | English\r\n"_s;
  const QString english = QString::fromLatin1(kEnglish);
  QByteArray little = LanguageFileBytes(lines.split(u"\r\n"_s));
  QByteArray big = little;
  big[0] = '\xfe';
  big[1] = '\xff';
  const QByteArray utf8 = "\xef\xbb\xbf" + lines.toUtf8();
  Write(u"_Current_Languages.txt"_s, little);
  EXPECT_THAT(translator_.AvailableLanguages(),
              ElementsAre(english, u"German | Deutsch"_s, u"French | Français"_s));
  for (const QByteArray& bytes : {big, utf8, QByteArray(), QByteArray("\xff")}) {
    Write(u"_Current_Languages.txt"_s, bytes);
    EXPECT_THAT(translator_.AvailableLanguages(), ElementsAre(english));
  }
  WriteLanguage(u"German"_s, {u"\"A\"|\"B\""_s});
  for (const char* choice : {"German | Deutsch", "german|", "Deutsch | German", "German"}) {
    translator_.SetLanguage(u"English"_s);
    translator_.Choose(QString::fromLatin1(choice).replace(u'|', u" | "_s).simplified());
    EXPECT_EQ(Text("A"), "B") << choice;
  }
  translator_.Choose({});
  EXPECT_EQ(Text("A"), "A");
}

TEST_F(TranslatorTest, AStringShowsWhichTextItIs) {
  WriteLanguage(u"German"_s, {u"\"Open\"|\"Öffnen\""_s, u"\"Show\"|\"Öffnen\""_s});
  const QString english = translator_.Text(u"Show"_s);
  translator_.SetLanguage(u"German"_s);
  const QString open = translator_.Text(u"Open"_s);
  const QString show = translator_.Text(u"Show"_s);
  EXPECT_EQ(translator_.EnglishOf(english), u"Show"_s);
  EXPECT_EQ(translator_.EnglishOf(open), u"Open"_s);
  EXPECT_EQ(translator_.EnglishOf(show), u"Show"_s);
  EXPECT_EQ(translator_.EnglishOf(u"Öffnen"_s), std::nullopt);  // what a user typed
  EXPECT_EQ(translator_.EnglishOf({}), std::nullopt);
}

TEST_F(TranslatorTest, TextsThatDifferInCaseShareATranslationButNotTheirEnglish) {
  WriteLanguage(u"German"_s, {u"\"Unknown\"|\"Unbekannt\""_s});
  translator_.SetLanguage(u"German"_s);
  EXPECT_EQ(Text("unknown"), "Unbekannt");
  translator_.SetLanguage(u"English"_s);
  EXPECT_EQ(Text("unknown"), "unknown");
}

TEST_F(TranslatorTest, AVariantIsTheSameTextInTheNextLanguage) {
  WriteLanguage(u"German"_s, {u"\"&Open\"|\"&Öffnen\""_s});
  translator_.SetLanguage(u"German"_s);
  const QString variant = translator_.GivenAs(u"Öff&nen"_s, u"&Open"_s);
  EXPECT_EQ(translator_.EnglishOf(variant), u"&Open"_s);
  EXPECT_EQ(variant.constData(), translator_.GivenAs(u"Öff&nen"_s, u"&Open"_s).constData());
}

TEST_F(TranslatorTest, ValuesInATextFromRightToLeftAreIsolated) {
  const QStringList lines{u"\"%1 of %2\"|\"%2 / %1\""_s};
  WriteLanguage(u"German"_s, lines);
  WriteLanguage(u"Arabic"_s, lines);
  translator_.SetLanguage(u"German"_s);
  EXPECT_EQ(Text("%1 of %2"), "%2 / %1");
  EXPECT_EQ(Isolated(u"10.0.0.1(Desk)"_s, translator_), u"10.0.0.1(Desk)"_s);
  translator_.SetLanguage(u"Arabic"_s);
  EXPECT_EQ(Text("%1 of %2"), "\u2068%2\u2069 / \u2068%1\u2069");
  EXPECT_EQ(Isolated(u"10.0.0.1(Desk)"_s, translator_), u"\u206610.0.0.1(Desk)\u2069"_s);
  translator_.SetLanguage(u"English"_s);
  EXPECT_EQ(Text("%1 of %2"), "%1 of %2");
}

TEST(Sentences, ValuesAreShownAsTheyAre) {
  const struct {
    const char* english;
    QStringList values;
    const char* text;
  } rows[] = {{"%2 of %1, %1", {u"a"_s, u"b"_s}, "b of a, a"},
              {"%1 and %2", {u"%2"_s, u"%1"_s}, "%2 and %1"},
              {"%1 and %2", {u"a"_s}, "a and %2"},
              {"100% %0 %", {u"a"_s}, "100% %0 %"},
              {"%1", {QString()}, ""}};
  for (const auto& row : rows) {
    EXPECT_EQ(EnglishOf(Sentence{{row.english}, row.values}).toStdString(), row.text);
  }
  EXPECT_EQ(EnglishOf(QList<Sentence>{{{"One."}}, {{"%1."}, {u"Two"_s}}}), u"One. Two."_s);
}

TEST(LanguageLocale, IsFoundByTheLanguagesEnglishName) {
  EXPECT_EQ(LocaleOfLanguage(u"German"_s).language(), QLocale::German);
  EXPECT_EQ(LocaleOfLanguage(u"chinese Simplified"_s).language(), QLocale::Chinese);
  EXPECT_EQ(LocaleOfLanguage(u"Arabic"_s).textDirection(), Qt::RightToLeft);
  EXPECT_EQ(LocaleOfLanguage(u"Pirate"_s), QLocale::c());
  const QStringList names{u"English"_s, u"Pirate"_s, u"German"_s, u"Chinese"_s};
  const struct {
    const char* desktop;
    const char* language;
  } rows[] = {{"de_AT", "German"}, {"zh_CN", "Chinese"}, {"zh_TW", ""}, {"en_GB", "English"},
              {"C", ""},           {"fr_FR", ""}};
  for (const auto& row : rows) {
    EXPECT_EQ(LanguageOfDesktop(QLocale(QLatin1String(row.desktop)), names).toStdString(),
              row.language)
        << row.desktop;
  }
}

}  // namespace
}  // namespace quayline
