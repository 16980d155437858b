// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/foreign_scripts.h"

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/own_routers.h"
#include "core/test_databases.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;
using testing::MakeTestDatabases;
using testing::ReadBytes;
using testing::WriteBytes;

class ForeignScriptsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(MakeTestDatabases(folder_.path(), {{.id = 3, .routername = u"Shipped"_s}}, {}, {}));
    ASSERT_TRUE(databases_.Open(folder_.path()));
  }
  std::expected<QList<int>, OwnRouterFault> Import(const QByteArray& bytes) {
    EXPECT_TRUE(WriteBytes(file_, bytes));
    ForeignScripts foreign(folder_.path());
    return ImportRouters(databases_, foreign, own_.for_everybody, file_);
  }
  QByteArray Export(const QString& name, const std::optional<ExportSignature>& signature) {
    const RouterRecord router{.id = 5,
                              .routername = name,
                              .routersupportsboth = u"yes"_s,
                              .routerneedscomputername = u"no"_s,
                              .routermaxrange = u"1"_s,
                              .routerminport = u"1"_s,
                              .routermaxport = u"2"_s,
                              .routercommands = u"nav(\"a\")"_s,
                              .routerportpage = u"nav(\"b\")"_s};
    EXPECT_TRUE(ExportRouter(router, file_, signature));
    return ReadBytes(file_);
  }

  QTemporaryDir folder_;
  QString file_ = folder_.filePath(u"router.txt"_s);
  Databases databases_;
  AuthorKey own_ = OwnAuthorKey(folder_.filePath(u"author.key"_s));
  AuthorKey other_ = OwnAuthorKey(folder_.filePath(u"other.key"_s));
};

TEST_F(ForeignScriptsTest, ASignatureHoldsForTheWholeFileAndItsAuthor) {
  const QByteArray signed_file = Export(u"Signed"_s, ExportSignature{u"Jane \u00c4"_s, other_});
  const auto author = ReadAuthor(signed_file);
  ASSERT_TRUE(author);
  EXPECT_EQ(author->name, u"Jane \u00c4"_s);
  EXPECT_EQ(author->key, other_.for_everybody);
  EXPECT_TRUE(ReadAuthor(QByteArray(signed_file).replace("\n", "\r\n"))) << "sent by mail";
  const struct {
    const char* name;
    QByteArray bytes;
  } cases[] = {
      {"script changed", QByteArray(signed_file).replace("nav(\"a\")", "nav(\"x\")")},
      {"line added", signed_file + "nav(\"x\")\n"},
      {"cut", signed_file.chopped(3)},
      {"author changed", QByteArray(signed_file).replace("Jane", "Joan")},
      {"key changed", QByteArray(signed_file)
                          .replace(other_.for_everybody.toBase64(), own_.for_everybody.toBase64())},
      {"signature removed", QByteArray(signed_file).replace("# signature: ", "# signed: ")},
      {"signature is nonsense", "# author: a\n# key: b\n# signature: c\nid: 5\n"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    ASSERT_NE(each.bytes, signed_file);
    EXPECT_FALSE(ReadAuthor(each.bytes));
    const auto imported = Import(each.bytes);
    ASSERT_FALSE(imported);
    EXPECT_EQ(imported.error().error, OwnRouterError::kWrongSignature);
  }
  EXPECT_EQ(databases_.RouterCount(), 1);
}

TEST_F(ForeignScriptsTest, ScriptsOfOthersAreNotAllowedBeforeTheUserAllowsThem) {
  const auto from_other = Import(Export(u"Signed"_s, ExportSignature{u"Jane"_s, other_}));
  const auto second = Import(Export(u"Second"_s, ExportSignature{u"Jane"_s, other_}));
  const auto unsigned_one = Import("# author: Bo\u202eb\n" + Export(u"Unsigned"_s, std::nullopt));
  const auto mine = Import(Export(u"Mine"_s, ExportSignature{u"Me"_s, own_}));
  ASSERT_TRUE(from_other && second && unsigned_one && mine);
  ForeignScripts foreign(folder_.path());
  EXPECT_FALSE(foreign.OriginOf(3));
  EXPECT_FALSE(foreign.OriginOf(mine->first()));
  const auto bob = foreign.OriginOf(unsigned_one->first());
  ASSERT_TRUE(bob);
  EXPECT_FALSE(bob->IsSigned());
  EXPECT_EQ(bob->author.name, u"Bob"_s) << "as it can be shown";
  const auto jane = foreign.OriginOf(from_other->first());
  ASSERT_TRUE(jane);
  EXPECT_TRUE(jane->IsSigned());
  EXPECT_FALSE(jane->is_known_author);

  RouterRecord router = *databases_.FindRouter(from_other->first());
  EXPECT_FALSE(foreign.IsAllowed(router));
  EXPECT_TRUE(foreign.Allow(router));
  const ForeignScripts later(folder_.path());
  EXPECT_TRUE(later.IsAllowed(router));
  EXPECT_TRUE(later.OriginOf(second->first())->is_known_author);
  EXPECT_FALSE(later.IsAllowed(*databases_.FindRouter(second->first()))) << "each is asked for";
  router.routerremove = u"call_javascript(\"x\")"_s;
  EXPECT_FALSE(later.IsAllowed(router)) << "it is another script now";
}

TEST_F(ForeignScriptsTest, AFileIsImportedAsAWholeOrNotAtAll) {
  const QByteArray one = Export(u"One"_s, std::nullopt);
  const auto named = [&one](const char* name) { return QByteArray(one).replace("One", name); };
  const struct {
    const char* name;
    QByteArray bytes;
    OwnRouterError error;
  } cases[] = {
      {"the same name twice", "[file a]\n" + one + "[file b]\n" + named("ONE"),
       OwnRouterError::kNameTaken},
      {"a name that exists", "[file a]\n" + one + "[file b]\n" + named("shipped "),
       OwnRouterError::kNameTaken},
      {"no name", "[file a]\n" + one + "[file b]\n" + named(" "), OwnRouterError::kNoName},
      {"nothing", "", OwnRouterError::kNoName},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    const auto imported = Import(each.bytes);
    ASSERT_FALSE(imported);
    EXPECT_EQ(imported.error().error, each.error);
    EXPECT_EQ(databases_.RouterCount(), 1);
  }
  ASSERT_TRUE(databases_.AddRouter(2'147'483'646, {.routername = u"Last but one"_s}));
  EXPECT_FALSE(Import("[file a]\n" + one + "[file b]\n" + named("Two"))) << "no IDs are left";
  EXPECT_TRUE(Import(one));
}

TEST_F(ForeignScriptsTest, TheKeyIsMadeOnceAndIsTheUsersAlone) {
  const QString path = folder_.filePath(u"author.key"_s);
  EXPECT_EQ(OwnAuthorKey(path).secret, own_.secret);
  EXPECT_NE(own_.secret, other_.secret);
  EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), 0);
  ASSERT_TRUE(WriteBytes(path, "damaged"));
  EXPECT_FALSE(OwnAuthorKey(path).IsValid());
  EXPECT_TRUE(SignText("x", u"a"_s, OwnAuthorKey(path)).isEmpty());
}

}  // namespace
}  // namespace quayline
