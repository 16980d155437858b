// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/files.h"
#include "core/port_list_file.h"
#include "core/port_list_model.h"
#include "core/port_rows.h"
#include "core/port_totals.h"
#include "test_main.h"

namespace quayline {
namespace {

using testing::OnFullDisk;
using testing::PortRows;
using testing::ReadBytes;
using testing::WriteBytes;

QString U(const char* text) { return QString::fromUtf8(text); }

TEST(PortNumber, TakesWholeNumbersAndNothingElse) {
  const struct {
    const char* text;
    std::optional<int> number = {};
  } rows[] = {{"21", 21},     {" +21\t", 21},  {"-1", -1}, {"0021", 21}, {"2147483647", 2147483647},
              {"2147483648"}, {"-2147483649"}, {""},       {"  "},       {"21x"},
              {"2 1"},        {"0x15"},        {"2e3"},    {"1,000"},    {"21.0"},
              {"- 1"},        {"٢١"}};
  for (const auto& row : rows) {
    EXPECT_EQ(PortNumber(U(row.text)), row.number) << row.text;
  }
}

// The fields of each row, with "|" after each and "\n" after the row.
QString Fields(const QList<PortEntry>& entries) {
  QString text;
  for (const PortEntry& e : entries) {
    for (const QString& field :
         {e.app_name, e.forwarded_to, e.start_port, e.end_port, e.protocol, e.description}) {
      text += field + u'|';
    }
    text += u'\n';
  }
  return text;
}

TEST(PortListFile, ReadsEveryLineThatIsThere) {
  const struct {
    const char* fault;
    QByteArray bytes;
    const char* fields;
  } rows[] = {
      {"the plain row", "Ftp|1.1.1.1()|21|22|TCP|x\r\n", "Ftp|1.1.1.1()|21|22|TCP|x|\n"},
      {"no line end", "Ftp|1.1.1.1()|21|22|TCP|x", "Ftp|1.1.1.1()|21|22|TCP|x|\n"},
      {"line ends of other systems, empty lines", "\n\r\na\rb\n\nc\r\r\n",
       "a||||||\nb||||||\nc||||||\n"},
      {"too few fields", "a|b|\r\n", "a|b|||||\n"},
      {"too many fields", "a|b|1|2|TCP|d|x|y\r\n", "a|b|1|2|TCP|d|\n"},
      {"blanks are kept", " a |\r\n", " a ||||||\n"},
      {"zeros", QByteArray("a\0b\0\r\n\0", 7), "ab||||||\n"},
      {"UTF-8 with its mark", "\xef\xbb\xbf\xc3\xa9|\xe2\x82\xac", "é|€|||||\n"},
      {"Windows-1252, also at the end of a line", "\x80|\x81\xe9\r\n\xc3\xa9",
       "€|\u0081é|||||\né||||||\n"},
      {"UTF-16", QByteArray("\xff\xfe\x61\0|\0\xe9\0\r\0\n\0", 12), "a|é|||||\n"},
      {"empty file", "", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Fields(ParsePortList(row.bytes)), U(row.fields)) << row.fault;
  }
}

TEST(PortListFile, LinesThatAreNoEntriesAreNamed) {
  const QByteArray bytes =
      "A|1.1.1.1()|1|65535|tcp|x\r\n\r\nonly text\rB|x|70000|70000|TCP|\nC||9|8|UDP\nD||1|2|SCTP\n"
      "E||x|2|TCP\nF||0|2|TCP\nG||007|7|TCP/UDP|";
  QStringList lines;
  for (const ListFault& fault : FindListFaults(bytes)) {
    lines += U("%1:%2:%3").arg(fault.row).arg(fault.line).arg(fault.text);
  }
  EXPECT_EQ(lines.join(u'\n'),
            U("1:3:only text\n2:4:B|x|70000|70000|TCP|\n3:5:C||9|8|UDP\n4:6:D||1|2|SCTP\n"
              "5:7:E||x|2|TCP\n6:8:F||0|2|TCP"));
}

TEST(PortListFile, WritesTheBytesThatAreExchanged) {
  EXPECT_EQ(FormatPortList(PortRows("Ftp 21..21; Web 80..90 TCP/UDP")),
            "Ftp|10.0.0.9()|21|21|TCP|note\r\nWeb|10.0.0.9()|80|90|TCP/UDP|note\r\n");
  EXPECT_EQ(FormatPortList({}), "");
  const QList<PortEntry> broken = {{.description = U("one\r\ntwo\nthree\rЖ 😀")}, {U("next")}};
  EXPECT_EQ(Fields(ParsePortList(FormatPortList(broken))),
            U("|||||one two three Ж 😀|\nnext||||||\n"));
  // Half of a pair has no form in any encoding: the rest of the list must not be lost.
  const PortEntry half = {.description = QString(QChar(0xD83D)) + U("kept")};
  EXPECT_TRUE(ParsePortList(FormatPortList({half}))[0].description.endsWith(U("kept")));
}

class PortListOnDisk : public ::testing::Test {
 protected:
  QTemporaryDir folder_;
  QString path_ = folder_.filePath(QStringLiteral("list.qyl"));
};

TEST_F(PortListOnDisk, ADiskThatFillsAtAnyByteLeavesTheOldList) {
  ASSERT_TRUE(SavePortList(PortRows("Old 1..2"), path_));
  const QByteArray old = ReadBytes(path_);
  const QList<PortEntry> entries = PortRows("Ftp 21..21; Web 80..90 TCP/UDP");
  const qsizetype size = FormatPortList(entries).size();
  for (qsizetype room = 0; room < size; ++room) {
    const auto saved = OnFullDisk(room, [&] { return SavePortList(entries, path_); });
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

TEST_F(PortListOnDisk, FilesThatCannotBeAListAreDistinguished) {
  const auto error = [](const QString& path) {
    const auto loaded = LoadPortList(path);
    return loaded ? std::nullopt : std::optional(loaded.error());
  };
  EXPECT_EQ(error(path_), ListFileError::kCannotOpen);
  EXPECT_EQ(error(folder_.path()), ListFileError::kCannotOpen);
  EXPECT_EQ(error(QStringLiteral("/dev/zero")), ListFileError::kCannotOpen);
  const QString pipe = folder_.filePath(QStringLiteral("pipe.qyl"));
  ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  EXPECT_EQ(error(pipe), ListFileError::kCannotOpen);
  // A file that is reported as empty, and is not.
  EXPECT_EQ(error(QStringLiteral("/proc/self/maps")), ListFileError::kNotAList);

  QFile file(path_);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(qint64{4} << 30));
  EXPECT_EQ(error(path_), ListFileError::kTooLarge);
  file.close();
  ASSERT_TRUE(WriteBytes(path_, QByteArray("a|\n").repeated(kMaxListRows)));
  EXPECT_EQ(error(path_), std::nullopt);
  ASSERT_TRUE(WriteBytes(path_, QByteArray("a|\n").repeated(kMaxListRows + 1)));
  EXPECT_EQ(error(path_), ListFileError::kTooLarge);

  for (const QByteArray& bytes :
       {QByteArray("\x89PNG\r\n\x1a\n|"), QByteArray("name,address,port\r\n"), QByteArray("\1")}) {
    ASSERT_TRUE(WriteBytes(path_, bytes));
    EXPECT_EQ(error(path_), ListFileError::kNotAList) << bytes.constData();
  }

  ASSERT_TRUE(SavePortList({{.app_name = U("a"), .description = U("x\v\x01y")}}, path_));
  EXPECT_EQ(error(path_), std::nullopt) << "what the program wrote itself is read again";

  ASSERT_TRUE(WriteBytes(path_, "old|"));
  const testing::ReadOnlyFolder folder(folder_.path());
  EXPECT_FALSE(SavePortList({}, path_));
  EXPECT_EQ(LoadPortList(path_)->size(), 1);
}

TEST(PortTotals, CountsAsTheListShowsIt) {
  const struct {
    const char* fault;
    const char* entries;
    qint64 tcp, udp;
    const char* ranges;
  } rows[] = {
      {"empty", "", 0, 0, ""},
      {"single port", "a 100..100", 1, 0, "100-100,6"},
      {"both count twice", "a 1..10 tcp/Udp", 10, 10, "1-10,6 1-10,17"},
      {"UDP", "a 5..6 udp", 0, 2, "5-6,17"},
      {"unknown protocol", "a 5..6 SCTP", 0, 0, ""},
      {"not a number at first", "a x..3", 4, 0, "0-3,6"},
      {"not a number later", "a 5..9 SCTP; b x..y", 5, 0, "5-9,6"},
      {"ends before it starts", "a 9..5; b 1..10", 7, 0, "1-10,6"},
      {"the whole of 32 bits", "a -2147483648..2147483647", qint64{1} << 32, 0,
       "-2147483648-2147483647,6"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    const QList<PortEntry> entries = PortRows(row.entries);
    const PortTotals totals = ComputeTotals(entries);
    EXPECT_EQ(totals.rows, entries.size());
    EXPECT_EQ(totals.tcp, row.tcp);
    EXPECT_EQ(totals.udp, row.udp);
    EXPECT_EQ(totals.total, row.tcp + row.udp);
    QStringList ranges;
    for (const auto& [first, last, protocol] : totals.forwarded) {
      ranges += U("%1-%2,%3").arg(first).arg(last).arg(static_cast<int>(protocol));
    }
    EXPECT_EQ(ranges.join(u' '), U(row.ranges));
  }
}

TEST(PortListModel, AViewHearsOfEveryChangeAndWrongRowsChangeNothing) {
  PortListModel model;
  const QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.Append({});
  model.Append(PortRows("a 1..2; b 3..4"));
  model.Replace(1, PortRows("c 5..6 UDP")[0]);
  model.Replace(2, PortRows("d 7..8")[0]);
  model.Remove({-1, 2});
  EXPECT_EQ(model.Entries(), PortRows("a 1..2; c 5..6 UDP"));
  QString cells;
  for (int column = 0; column < model.columnCount(); ++column) {
    cells += model.index(1, column).data().toString() + u'|';
  }
  EXPECT_EQ(cells, U("c|10.0.0.9|5|6|UDP||note|")) << "a computer without a name";
  model.SetEntries(PortRows("a 0..0; b 1..1; c 2..2; d 3..3; e 4..4; f 5..5"));
  model.Remove({5, 0, 4, 2, 0});  // neighbours, out of order, one twice
  EXPECT_EQ(model.Entries(), PortRows("b 1..1; d 3..3"));
  model.SetEntries({});
  EXPECT_EQ(model.rowCount(), 0);
}

// A view's selection is held by such indexes.
TEST(PortListModel, AnotherListKeepsThePlacesOfTheRowsThatStay) {
  const struct {
    const char *before, *after;
    int row, place;  // -1: the row is gone
  } rows[] = {{"a 1..1; b 2..2; c 3..3", "a 1..1; c 3..3", 2, 1},
              {"a 1..1; c 3..3", "a 1..1; b 2..2; c 3..3", 1, 2},
              {"a 1..1; c 3..3", "a 1..1; b 2..2; c 3..3", 0, 0},
              {"a 1..1; b 2..2", "a 1..1; x 2..2", 1, 1},
              {"a 1..1; a 1..1", "a 1..1", 0, 0},
              {"a 1..1", "", 0, -1}};
  for (const auto& row : rows) {
    PortListModel model;
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.SetEntries(PortRows(row.before));
    const QPersistentModelIndex index = model.index(row.row, 0);
    model.SetEntries(PortRows(row.after));
    EXPECT_EQ(model.Entries(), PortRows(row.after));
    EXPECT_EQ(index.row(), row.place) << row.before << " to " << row.after;
  }
}

TEST(PortListModel, WhatWasSeenOfAnEntryStaysWithItUntilItChanges) {
  const QList<PortEntry> list = PortRows("a 1..1; b 2..2; c 3..3");
  const struct {
    const char* change;
    std::function<void(PortListModel&)> apply;
    const char* seen;  // of each row, "-" for a row of which nothing is known
  } rows[] = {
      {"none", [](PortListModel&) {}, "abc"},
      {"the same again", [&](PortListModel& m) { m.Replace(1, list[1]); }, "abc"},
      {"edited", [](PortListModel& m) { m.Replace(1, PortRows("b 2..9")[0]); }, "a-c"},
      {"added", [](PortListModel& m) { m.Append(PortRows("d 4..4")); }, "abc-"},
      {"removed", [](PortListModel& m) { m.Remove({0}); }, "bc"},
      {"one in between",
       [](PortListModel& m) { m.SetEntries(PortRows("a 1..1; x 9..9; b 2..2; c 3..3")); }, "a-bc"},
      {"two replaced by one", [](PortListModel& m) { m.SetEntries(PortRows("a 1..1; x 9..9")); },
       "a-"},
      {"ends changed", [](PortListModel& m) { m.SetEntries(PortRows("x 1..1; b 2..2; y 3..3")); },
       "-b-"},
      {"another router", [](PortListModel& m) { m.ForgetLooks(); }, "---"},
  };
  for (const auto& row : rows) {
    PortListModel model;
    model.SetLookTexts({.cell = [](const EntryLook& look) { return look.seen; }, .tool_tip = {}});
    model.SetEntries(list);
    model.NoteLooks({{PortRows("gone 7..7")[0], {.seen = U("?")}}});
    for (const PortEntry& entry : list) {
      model.NoteLooks({{entry, {.seen = entry.app_name}}});
    }
    row.apply(model);
    QString seen;
    for (int i = 0; i < model.rowCount(); ++i) {
      const QString cell = model.index(i, PortListModel::kOnRouter).data().toString();
      seen += cell.isEmpty() ? U("-") : cell;
    }
    EXPECT_EQ(seen, U(row.seen)) << row.change;
  }
}

TEST(EntryLook, IsShownOnOneLineWithItsTime) {
  const Translator english{QString()};
  const QDateTime now(QDate::currentDate(), QTime(14, 5));
  const QDateTime before(QDate(2026, 1, 2), QTime(9, 0));
  const ReachVerdict listens{true, {{"%1 listens"}, {U("sshd")}}};
  const ReachVerdict closed{false, {{"not reached"}}};
  const struct {
    EntryLook look;
    const char* text;
  } rows[] = {
      {{}, ""},
      {{.on_router = EntryState::kOnRouter, .looked_at = now}, "On the router, 14:05"},
      {{.on_router = EntryState::kMissing, .looked_at = before},
       "Not on the router, 2026-01-02 09:00"},
      {{.on_router = EntryState::kDifferent,
        .differs = {RuleField::kPort, RuleField::kDisabled},
        .looked_at = now,
        .listening = listens,
        .outside = closed},
       "Different: the port, switched off, 14:05 (sshd listens, not reached)"},
      {{.listening = listens}, "sshd listens"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LookText(row.look, english), U(row.text));
  }
}

}  // namespace
}  // namespace quayline
