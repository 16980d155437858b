// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/port_list_file.h"
#include "core/port_list_model.h"
#include "core/port_totals.h"

namespace quayline {
namespace {

using testing::ReadBytes;
using testing::WriteBytes;

QString U(const char* text) { return QString::fromUtf8(text); }

PortEntry Row(const char* start, const char* end, const char* protocol = "TCP") {
  return {U("Ftp"), U("192.168.1.10()"), U(start), U(end), U(protocol), U("Ftp")};
}

PortEntry Fields(const QString& first, const QString& second = {}) {
  return {first, second, {}, {}, {}, {}};
}

TEST(PortNumber, TakesWholeNumbersAndNothingElse) {
  const struct {
    const char* text;
    std::optional<int> number;
  } rows[] = {{"21", 21},
              {" +21\t", 21},
              {"-1", -1},
              {"0021", 21},
              {"2147483647", 2147483647},
              {"2147483648", {}},
              {"-2147483649", {}},
              {"", {}},
              {"  ", {}},
              {"21x", {}},
              {"2 1", {}},
              {"0x15", {}},
              {"2e3", {}},
              {"1,000", {}},
              {"21.0", {}},
              {"- 1", {}},
              {"٢١", {}}};
  for (const auto& row : rows) {
    EXPECT_EQ(PortNumber(U(row.text)), row.number) << row.text;
  }
}

TEST(PortListFile, ReadsEveryLineThatIsThere) {
  const struct {
    const char* fault;
    QByteArray bytes;
    QList<PortEntry> entries;
  } rows[] = {
      {"the plain row", "Ftp|192.168.1.10()|21|21|TCP|Ftp\r\n", {Row("21", "21")}},
      {"no line end", "Ftp|192.168.1.10()|21|21|TCP|Ftp", {Row("21", "21")}},
      {"line ends of other systems, empty lines",
       "\n\r\na\rb\n\nc\r\r\n",
       {Fields(U("a")), Fields(U("b")), Fields(U("c"))}},
      {"too few fields", "a|b|\r\n", {Fields(U("a"), U("b"))}},
      {"too many fields",
       "a|b|1|2|TCP|d|x|y\r\n",
       {{U("a"), U("b"), U("1"), U("2"), U("TCP"), U("d")}}},
      {"blanks are kept", " a |\r\n", {Fields(U(" a "))}},
      {"zeros", QByteArray("a\0b\0\r\n\0", 7), {Fields(U("ab"))}},
      {"UTF-8 with its mark", "\xef\xbb\xbf\xc3\xa9|\xe2\x82\xac", {Fields(U("é"), U("€"))}},
      {"Windows-1252, also at the end of a line",
       "\x80|\x81\xe9\r\n\xc3\xa9",
       {Fields(U("€"), U("\u0081é")), Fields(U("é"))}},
      {"UTF-16", QByteArray("\xff\xfe\x61\0|\0\xe9\0\r\0\n\0", 12), {Fields(U("a"), U("é"))}},
      {"empty file", "", {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ParsePortList(row.bytes), row.entries) << row.fault;
  }
}

TEST(PortListFile, WritesTheBytesThatAreExchanged) {
  EXPECT_EQ(FormatPortList({Row("21", "21"), Row("80", "90", "TCP/UDP")}),
            "Ftp|192.168.1.10()|21|21|TCP|Ftp\r\nFtp|192.168.1.10()|80|90|TCP/UDP|Ftp\r\n");
  EXPECT_EQ(FormatPortList({}), "");
  PortEntry broken = Row("21", "21");
  broken.description = U("one\r\ntwo\nthree\rЖ 😀");
  const QList<PortEntry> read = ParsePortList(FormatPortList({broken, Row("1", "1")}));
  ASSERT_EQ(read.size(), 2);
  EXPECT_EQ(read[0].description, U("one two three Ж 😀"));
  // Half of a pair has no form in any encoding: the rest of the list must not go with it.
  broken.description = QString(QChar(0xD83D)) + U("kept");
  EXPECT_TRUE(ParsePortList(FormatPortList({broken}))[0].description.endsWith(U("kept")));
}

class PortListOnDisk : public ::testing::Test {
 protected:
  QTemporaryDir folder_;
  QString path_ = folder_.filePath(QStringLiteral("list.qyl"));
};

TEST_F(PortListOnDisk, ADiskThatFillsAtAnyByteLeavesTheOldList) {
  ASSERT_TRUE(SavePortList({Row("1", "2")}, path_));
  const QByteArray old = ReadBytes(path_);
  const QList<PortEntry> entries = {Row("21", "21"), Row("80", "90", "TCP/UDP")};
  const qsizetype size = FormatPortList(entries).size();
  for (qsizetype room = 0; room < size; ++room) {
    std::expected<void, ListFileError> saved;
    {
      const testing::FullDisk disk(room);
      saved = SavePortList(entries, path_);
    }
    ASSERT_FALSE(saved) << room;
    ASSERT_EQ(saved.error(), ListFileError::kCannotWrite);
    ASSERT_EQ(ReadBytes(path_), old) << room;
  }
  EXPECT_EQ(testing::Names(folder_.path()).size(), 1);
  EXPECT_TRUE(SavePortList(entries, path_));
  EXPECT_EQ(LoadPortList(path_), entries);
  EXPECT_TRUE(SavePortList({}, path_));
  EXPECT_EQ(LoadPortList(path_), QList<PortEntry>());
}

TEST_F(PortListOnDisk, FilesThatCannotBeAListAreToldApart) {
  const auto error = [](const QString& path) {
    const auto loaded = LoadPortList(path);
    return loaded ? std::nullopt : std::optional(loaded.error());
  };
  EXPECT_EQ(error(path_), ListFileError::kCannotOpen);
  EXPECT_EQ(error(folder_.path()), ListFileError::kCannotOpen);
  EXPECT_EQ(error(QStringLiteral("/dev/zero")), ListFileError::kCannotOpen);

  QFile file(path_);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(qint64{4} << 30));
  EXPECT_EQ(error(path_), ListFileError::kTooLarge);
  file.close();
  ASSERT_TRUE(WriteBytes(path_, QByteArray("a\n").repeated(kMaxListRows)));
  EXPECT_EQ(error(path_), std::nullopt);
  ASSERT_TRUE(WriteBytes(path_, QByteArray("a\n").repeated(kMaxListRows + 1)));
  EXPECT_EQ(error(path_), ListFileError::kTooLarge);

  ASSERT_TRUE(WriteBytes(path_, "old"));
  const testing::ReadOnlyFolder folder(folder_.path());
  EXPECT_FALSE(SavePortList({}, path_));
  EXPECT_EQ(LoadPortList(path_)->size(), 1);
}

TEST_F(PortListOnDisk, AMillionRowsLoadWithoutALongWait) {
  const QByteArray row = "Ftp|192.168.1.10(FrontDesk)|21|21|TCP|A program of some name\r\n";
  ASSERT_TRUE(WriteBytes(path_, row.repeated(1'000'000)));
  const qint64 begun = testing::WorkedMs();
  EXPECT_EQ(LoadPortList(path_)->size(), 1'000'000);
  EXPECT_LT(testing::WorkedMs() - begun, 5000);
}

// Ranges as "first-last,protocol".
QString Ranges(const PortTotals& totals) {
  QStringList texts;
  for (const ForwardedRange& range : totals.forwarded) {
    texts.append(QStringLiteral("%1-%2,%3")
                     .arg(range.first)
                     .arg(range.last)
                     .arg(static_cast<int>(range.protocol)));
  }
  return texts.join(QLatin1Char(' '));
}

TEST(PortTotals, CountsAsTheListShowsIt) {
  const struct {
    const char* fault;
    QList<PortEntry> entries;
    qint64 tcp, udp;
    const char* ranges;
  } rows[] = {
      {"empty", {}, 0, 0, ""},
      {"single port", {Row("100", "100")}, 1, 0, "100-100,6"},
      {"both count twice", {Row("1", "10", "tcp/Udp")}, 10, 10, "1-10,6 1-10,17"},
      {"UDP", {Row("5", "6", "udp")}, 0, 2, "5-6,17"},
      {"unknown protocol", {Row("5", "6", "SCTP")}, 0, 0, ""},
      {"not a number at first", {Row("x", "3")}, 4, 0, "0-3,6"},
      {"not a number later", {Row("5", "9", "SCTP"), Row("x", "y")}, 5, 0, "5-9,6"},
      {"ends before it starts", {Row("9", "5"), Row("1", "10")}, 7, 0, "1-10,6"},
      {"the whole of 32 bits",
       {Row("-2147483648", "2147483647")},
       qint64{1} << 32,
       0,
       "-2147483648-2147483647,6"},
  };
  for (const auto& row : rows) {
    const PortTotals totals = ComputeTotals(row.entries);
    EXPECT_EQ(totals.rows, row.entries.size()) << row.fault;
    EXPECT_EQ(totals.tcp, row.tcp) << row.fault;
    EXPECT_EQ(totals.udp, row.udp) << row.fault;
    EXPECT_EQ(totals.total, row.tcp + row.udp) << row.fault;
    EXPECT_EQ(Ranges(totals), U(row.ranges)) << row.fault;
  }
}

TEST(PortListModel, AViewHearsOfEveryChangeAndWrongRowsChangeNothing) {
  PortListModel model;
  const QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.Append({});
  model.Append({Row("1", "2"), Row("3", "4")});
  model.Replace(1, Row("5", "6", "UDP"));
  model.Replace(2, Row("7", "8"));
  model.Remove({-1, 2});
  EXPECT_EQ(model.Entries(), (QList{Row("1", "2"), Row("5", "6", "UDP")}));
  QStringList cells;
  for (int column = 0; column < model.columnCount(); ++column) {
    cells.append(model.index(1, column).data().toString());
  }
  EXPECT_EQ(cells.join(QLatin1Char('|')), U("Ftp|192.168.1.10()|5|6|UDP|Ftp"));
  model.Remove({0});
  EXPECT_EQ(model.Entries(), QList{Row("5", "6", "UDP")});
  model.SetEntries({Row("0", "0"), Row("1", "1"), Row("2", "2"), Row("3", "3"), Row("4", "4")});
  model.Remove({4, 0, 3, 0});  // neighbours, out of order, one twice
  EXPECT_EQ(model.Entries(), (QList{Row("1", "1"), Row("2", "2")}));
  model.SetEntries({});
  EXPECT_EQ(model.rowCount(), 0);
}

}  // namespace
}  // namespace quayline
