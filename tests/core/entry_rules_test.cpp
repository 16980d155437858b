// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include "core/entry_checks.h"
#include "core/entry_fields.h"
#include "core/port_range.h"
#include "core/program_entries.h"
#include "test_main.h"

namespace quayline {
namespace {

QString U(const char* text) { return QString::fromUtf8(text); }

RouterSession Router(const char* supports_both = "yes") {
  return {.router_id = 1,
          .supports_both = U(supports_both),
          .max_range = U("100"),
          .min_port = U("1"),
          .max_port = U("65000")};
}

TEST(EntryFields, WhatMayBeTyped) {
  const struct {
    const char* text;
    bool as_port;
    bool as_address;
    bool is_address;
  } cases[] = {
      {"", true, true, false},
      {"80", true, true, false},
      {"-.5", true, false, false},
      {"12345678901234567890", true, false, false},
      {"+80", false, false, false},
      {"8o", false, false, false},
      {"٣", false, false, false},  // a digit, elsewhere
      {"192.168.", true, true, false},
      {"192.168.1.100", true, true, true},
      {"255.255.255.255", true, true, true},
      {"256.", true, false, false},
      {"0001", true, false, false},
      {"1.2.3.4.", true, false, false},
      {"..1", true, true, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(MayBeTypedAsPort(U(c.text)), c.as_port) << c.text;
    EXPECT_TRUE(MayBeTypedAsPorts(U(c.text)) == c.as_port) << c.text;
    EXPECT_EQ(MayBeTypedAsAddress(U(c.text)), c.as_address) << c.text;
    EXPECT_EQ(IsWholeAddress(U(c.text)), c.is_address) << c.text;
  }
}

TEST(EntryFields, SeveralPortsAreTypedWithCommas) {
  EXPECT_TRUE(MayBeTypedAsPorts(U("80, 443,6000-6010")));
  EXPECT_FALSE(MayBeTypedAsPorts(U("80 81"))) << "it is read as one port";
}

TEST(EntryFields, APortThatIsLeftLosesItsZerosAndIsMovedIntoTheRoutersLimits) {
  RouterSession session = Router();
  session.min_port = U("1024");
  const struct {
    const char *typed, *left;
  } cases[] = {{"80", "1024"},
               {"1024", "1024"},
               {"008080", "8080"},
               {"65000", "65000"},
               {"65001", "65000"},
               {"-5", "1024"},
               {"99999999999999999999", "65000"},
               {"", ""},
               {"1.5", "1.5"},
               {"5-6", "5-6"},
               {"-99999999999999999999", "1024"}};
  for (const auto& c : cases) {
    EXPECT_EQ(SettledPort(U(c.typed), LimitsOf(session)), U(c.left)) << c.typed;
  }
  EXPECT_EQ(LimitsHint(session), U("(1024~65000)"));
  EXPECT_EQ(SettledPort(U("70000"), LimitsOf(RouterSession())), U("65535")) << "no router yet";
  session.max_port = U("lots");
  EXPECT_EQ(SettledPort(U("80"), LimitsOf(session)), U("1024"));
  EXPECT_EQ(SettledPort(U("2000"), LimitsOf(session)), U("0")) << "as an update does";
}

TEST(ProgramEntries, OfPortLists) {
  const struct {
    const char* fault;
    const char* supports_both;
    const char* name;
    const char *tcp, *udp, *both;
    const char *shown_tcp, *shown_udp;
    int required;
    const char* rows;
    const char* unreadable = "";
  } cases[] = {
      {"both lists ahead of one another, or numbers that start anew", "NO", "e Mule", "4662-4662",
       "4672-4675|5000", "7000-7001|8000-8000", "(4662)(7000-7001)(8000)",
       "(4672-4675)(5000)(7000-7001)(8000)", 7,
       "eMule01 4662 4662 TCP;eMule02 4672 4675 UDP;eMule03 5000 5000 UDP;"
       "eMule04 7000 7001 TCP;eMule05 7000 7001 UDP;eMule06 8000 8000 TCP;eMule07 8000 8000 UDP"},
      {"two rows where one does", "maybe", "A", "", "", "7000-7000", "(7000)", "(7000)", 1,
       "A01 7000 7000 TCP/UDP"},
      {"blank elements count", "", "A", "||  |5-6|", " ", "", "(5-6)", "-", 1, "A01 5 6 TCP"},
      {"broken ports reach the list, or take the good ones along", "", "A",
       "-|x|6-5|70000|5-6-7|1-99999999999|+5| 9 - 10 ", "", "",
       "()(x)(6-5)(70000)(5-6-7)(1-99999999999)(+5)(9 - 10)", "-", 8, "A01 9 10 TCP",
       "- x 6-5 70000 5-6-7 1-99999999999 +5"},
      {"a bar in a name splits the row", "", "A|B", "5", "", "", "(5)", "-", 1, "AB01 5 5 TCP"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    const AppPortRecord record = {1, U("x|y"), U(c.name), U(c.tcp), U(c.udp), U(c.both)};
    const RouterSession session = Router(c.supports_both);
    const ProgramSummary summary = SummarizeProgram(record, session);
    EXPECT_EQ(summary.tcp, U(c.shown_tcp));
    EXPECT_EQ(summary.udp, U(c.shown_udp));
    EXPECT_EQ(summary.entries, c.required);
    const ProgramEntries made =
        MakeProgramEntries(record, ForwardedTo(U("10.0.0.1"), U("Desk")), session);
    QStringList rows;
    for (const PortEntry& e : made.entries) {
      rows += QStringList{e.app_name, e.start_port, e.end_port, e.protocol}.join(u' ');
      EXPECT_EQ(e.forwarded_to, U("10.0.0.1(Desk)"));
      EXPECT_EQ(e.description, U("x y"));
    }
    EXPECT_EQ(rows.join(u';'), U(c.rows));
    EXPECT_EQ(made.unreadable.join(u' '), U(c.unreadable));
  }
}

TEST(ProgramEntries, AHundredthRowKeepsItsWholeNumber) {
  const AppPortRecord record = {1, {}, U("A"), QString(U("5|")).repeated(100), {}, {}};
  EXPECT_EQ(MakeProgramEntries(record, {}, Router()).entries.last().app_name, U("A100"));
}

const QList<PortEntry> kRows = {
    {U("Web"), U("10.0.0.1()"), U("80"), U("90"), U("TCP"), {}},
    {U("Odd"), U("printer()"), U("?"), U("?"), U("udp"), {}},  // as good as 80 to 90
    {U("Both"), U("10.0.0.1()"), U("500"), U("500"), U("TCP/UDP"), {}}};

struct Typed {
  const char* fault;
  TypedEntry entry;
  const char* message = "";  // the whole of it up to the first line break; empty: accepted
  EntryField field = EntryField::kProgram;
};

TypedEntry Entry(const char* name, const char* protocol, const char* start, const char* end,
                 const char* address = "10.0.0.7") {
  return {U(name), ProtocolOf(U(protocol)), U(start), U(end), U(address)};
}

void ExpectProblem(const std::optional<EntryProblem>& problem, const Typed& c) {
  const EntryProblem found = problem.value_or(EntryProblem{.message = {}, .field = c.field});
  EXPECT_EQ(found.message.section(u'\n', 0, 0), U(c.message)) << c.fault;
  EXPECT_EQ(found.field, c.field) << c.fault;
}

constexpr char kNeedAll[] = "You must enter all information to continue.";
constexpr char kWhole[] = "Start Port and End Port must be whole numbers.";
constexpr char kNoAddress[] = "You must enter an ip address to forward the ports to.";
constexpr char kReversed[] = "Starting port can not be larger than the ending port";
constexpr char kTooFar[] =
    "On this router the End Port can be at most 100 higher than the Start Port.";
constexpr char kNoBar[] = "A name can not contain a vertical bar or a line break.";
constexpr char kMeetsWeb[] = "'Web' Already has the start port in its range.";
constexpr char kMeetsOdd[] = "'Odd' Already has the start port in its range.";
constexpr char kMeetsBoth[] = "'Both' Already has the start port in its range.";

TEST(EntryChecks, OfANewEntryInTheirOrder) {
  using Field = EntryField;
  const Typed cases[] = {
      {"a good entry is refused", Entry("New", "TCP", "1000", "1100")},
      {"other checks ahead of the order", Entry("", "", "9", "8", ""), kReversed, Field::kEndPort},
      {"an empty end port counts as information", Entry("New", "TCP", "9", ""), kReversed,
       Field::kEndPort},
      {"the range is inclusive", Entry("", "TCP", "1000", "1101"), kTooFar, Field::kEndPort},
      {"the range hides the name", Entry("ElevenChars", "TCP", "1000", "1101"), kTooFar,
       Field::kEndPort},
      {"eleven letters pass", Entry("ElevenChars", "", "1", "1"),
       "Name can only be 10 chars or less.", Field::kName},
      {"a bar splits the row in the file", Entry("a|b", "TCP", "1", "1"), kNoBar, Field::kName},
      {"a line break as well", Entry("a\nb", "TCP", "1", "1"), kNoBar, Field::kName},
      {"no name", Entry("", "TCP", "1", "1"), kNeedAll, Field::kName},
      {"no type", Entry("New", "", "1", "1"), kNeedAll, Field::kProtocol},
      {"a blank name", Entry("  ", "TCP", "1", "1"), kNeedAll, Field::kName},
      {"no ports at all", Entry("New", "TCP", "", ""), kNeedAll, Field::kStartPort},
      {"no address", Entry("New", "TCP", "1", "1", ""), kNeedAll, Field::kAddress},
      {"nobody's address", Entry("New", "TCP", "1", "1", "0.0.0.0"), kNoAddress, Field::kAddress},
      {"half an address", Entry("New", "TCP", "1", "1", "192.168."), kNoAddress, Field::kAddress},
      {"a point reaches the list", Entry("New", "TCP", "1.5", "2"), kWhole, Field::kStartPort},
      {"a port beyond all numbers", Entry("New", "TCP", "1", "99999999999999999999"), kWhole,
       Field::kEndPort},
      {"names that differ in case only", Entry("wEB", "UDP", "700", "700"),
       "The name 'wEB' is in your list already. Please choose another one.", Field::kName},
      {"the protocols of another row meet", Entry("New", "UDP", "600", "600")},
      {"start within", Entry("New", "TCP", "90", "95"), kMeetsWeb, Field::kStartPort},
      {"around a whole row", Entry("New", "TCP", "70", "95"), kMeetsWeb, Field::kStartPort},
      {"a row whose ports are no numbers", Entry("New", "UDP", "85", "85"), kMeetsOdd,
       Field::kStartPort},
      {"both protocols against one", Entry("New", "TCP/UDP", "90", "95"), kMeetsWeb,
       Field::kStartPort},
      {"one protocol against both", Entry("New", "udp", "500", "501"), kMeetsBoth,
       Field::kStartPort},
      {"next to a row", Entry("New", "TCP", "91", "99")},
  };
  const Translator english{QString()};
  const auto check = [&](const TypedEntry& typed) {
    return CheckNewEntry(typed, kRows, Router(), english);
  };
  for (const Typed& c : cases) {
    ExpectProblem(check(c.entry), c);
  }
  EXPECT_EQ(check(Entry("New", "TCP", "1000", "1101"))->message,
            U(kTooFar) + U("\n\nYours is 101 higher than the Start Port."));
  EXPECT_EQ(check(Entry("New", "TCP", "90", "90"))->message,
            U(kMeetsWeb) + U("\nYou can not have a port forwarded more than once."));
  EXPECT_FALSE(CheckNewEntry(Entry("New", "TCP", "1", "60000"), {}, {}, english))
      << "without a router there is no range yet";
}

TEST(EntryChecks, OfAnEditedRow) {
  const Typed web[] = {
      {"the row is compared with itself", Entry("Web", "TCP", "80", "90", "10.0.0.1")},
      {"other checks ahead of the empty field", Entry("", "TCP", "9", "8"), kNeedAll,
       EntryField::kName},
      {"reversed", Entry("Web", "TCP", "9", "8"),
       "Starting port can not be larger than the ending port.", EntryField::kEndPort},
      {"too long", Entry("Web", "TCP", "1000", "1101"), kTooFar, EntryField::kEndPort},
      {"no number", Entry("Web", "TCP", "8-", "90"), kWhole, EntryField::kStartPort},
      {"another row's name", Entry("both", "TCP", "80", "90"),
       "The name 'both' is in your list already. Please choose another one.", EntryField::kName},
      {"another row's port", Entry("Web", "TCP", "450", "500"), kMeetsBoth, EntryField::kStartPort},
      {"half an address", Entry("Web", "TCP", "80", "90", "10.0"), kNoAddress,
       EntryField::kAddress},
  };
  const Translator english{QString()};
  for (const Typed& c : web) {
    ExpectProblem(CheckEditedEntry(c.entry, 0, kRows, Router(), english), c);
  }
  const TypedEntry odd = Entry("Odd", "UDP", "600", "600", "printer");
  EXPECT_FALSE(CheckEditedEntry(odd, 1, kRows, Router(), english))
      << "the address that the row has already is refused";
  ExpectProblem(CheckEditedEntry(web[0].entry, -1, kRows, Router(), english),
                {"a row that left the list is not compared with the others",
                 {},
                 "The name 'Web' is in your list already. Please choose another one.",
                 EntryField::kName});
}

TEST(EntryChecks, SeveralPortsBecomeRowsThatAreCheckedAgainstTheListAndEachOther) {
  const struct {
    const char* fault;
    const char *name, *start, *end;
    const char* rows;
    const char* message = "";
    EntryField field = EntryField::kStartPort;
  } cases[] = {
      {"the list is one row", "Web2", "700, 0710,720-730", "",
       "Web201 700 700;Web202 710 710;Web203 720 730"},
      {"a range needs the end port", "Range", "720-730", "5", "Range 720 730"},
      {"the port alone needs a list", "One", "700", "701", "One 700 701"},
      {"a number is read into the list", "X", "700,,710", "", "",
       "Several ports are typed as in 80, 443, 6000-6010."},
      {"a reversed range", "X", "700,730-720", "", "",
       "Several ports are typed as in 80, 443, 6000-6010."},
      {"a port beyond the limits", "X", "700, 65100", "", "",
       "The ports of this router are 1 to 65000."},
      {"a name without room for its number", "NineChars", "700,710", "", "",
       "Several entries get numbered names, so this one can only be 8 chars or less.",
       EntryField::kName},
      {"no name", "", "700,710", "", "", kNeedAll, EntryField::kName},
      {"a port twice", "X", "700, 690-705", "", "",
       "'X01' Already has the start port in its range."},
      {"a row of the list", "X", "700, 85", "", "", kMeetsWeb},
  };
  const Translator english{QString()};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    const auto made =
        MakeNewEntries(Entry(c.name, "TCP", c.start, c.end), kRows, Router(), english);
    QStringList rows;
    for (const PortEntry& e : made.value_or(QList<PortEntry>())) {
      rows += QStringList{e.app_name, e.start_port, e.end_port}.join(u' ');
      EXPECT_EQ(e.description, e.app_name);
    }
    EXPECT_EQ(rows.join(u';'), U(c.rows));
    ExpectProblem(made ? std::nullopt : std::optional(made.error()),
                  {c.fault, {}, c.message, c.field});
  }
}

TEST(EntryChecks, AProgramNeedsAnAddress) {
  const Translator translator{QString()};
  EXPECT_EQ(CheckProgram(false, {}, translator)->message,
            U("Please select a program from the list."));
  for (const char* address : {"", "0.0.0.0", "10.0.0"}) {
    EXPECT_EQ(CheckProgram(true, U(address), translator)->message, U(kNoAddress)) << address;
  }
  EXPECT_FALSE(CheckProgram(true, U("10.0.0.1"), translator));
}

}  // namespace
}  // namespace quayline
