// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

class CacheTest : public WebTest {
 protected:
  CacheTest() {
    qputenv("XDG_CACHE_HOME", folder_.path().toLocal8Bit());
    const QByteArray lasting = "Cache-Control: max-age=3600\r\n";
    server.replies["/kept.js"] =
        Answer("200 OK", "var kept = 1;", lasting + "Content-Type: text/javascript\r\n");
    for (const char* page : {"/a", "/b", "/c", "/d"}) {
      server.replies[page] = Html("<script src='/kept.js'></script>");
    }
  }
  ~CacheTest() override { qunsetenv("XDG_CACHE_HOME"); }

  // How often the part was fetched until this page was there.
  qsizetype FetchesAfter(const char* page) {
    Open(page);
    Settle();
    EXPECT_EQ(Read("kept"), u"1"_s);
    return std::ranges::count_if(server.requests, [](const QByteArray& request) {
      return request.startsWith("GET /kept.js ");
    });
  }
  bool Clear() {
    bool cleared = false;
    const auto run = [](bool* result) -> Task<> { *result = co_await ClearUrlCache(); };
    EXPECT_TRUE(RunTask(run(&cleared)));
    return cleared;
  }

  QTemporaryDir folder_;
};

TEST_F(CacheTest, WhatWasKeptIsFetchedAgainAfterwardsAndNothingIsLeftOnTheDisk) {
  const QString on_disk =
      QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + u"/QtWebEngine/Default"_s;
  ASSERT_TRUE(on_disk.startsWith(folder_.path()) && QDir().mkpath(on_disk));
  QFile file(on_disk + u"/data_0"_s);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  EXPECT_EQ(FetchesAfter("/a"), 1);
  EXPECT_EQ(FetchesAfter("/b"), 1) << "the browser does not keep it: this test shows nothing";
  EXPECT_TRUE(Clear());
  EXPECT_FALSE(file.exists());
  EXPECT_EQ(FetchesAfter("/c"), 2);
  EXPECT_TRUE(Clear()) << "there is nothing to remove on the disk";

  // As a script does it, for its own browser.
  bool cleared = false;
  host->ClearCache([&cleared](bool done) { cleared = done; });
  EXPECT_TRUE(RunUntil([&cleared] { return cleared; }));
  EXPECT_EQ(FetchesAfter("/d"), 3);
}

TEST_F(CacheTest, WhatCannotBeEmptiedIsNoSuccess) {
  server.replies["/never"] = {.then = Reply::Then::kSilence};
  host->Navigate2(server.Address(u"/never"_s).toString(), {});
  ASSERT_TRUE(RunUntil([this] { return !server.requests.isEmpty(); }));
  EXPECT_FALSE(Clear()) << "a page is loading";
  std::optional<bool> by_script;
  host->ClearCache([&by_script](bool done) { by_script = done; });
  EXPECT_TRUE(RunUntil([&by_script] { return by_script.has_value(); }));
  EXPECT_FALSE(by_script.value_or(true));
  host.reset();
  EXPECT_TRUE(Clear()) << "the page has gone";
  // A link is removed, and not what it leads to.
  const QTemporaryDir others;
  QFile file(others.filePath(u"file"_s));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  const QString parent = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
  ASSERT_TRUE(QDir().mkpath(parent) && QFile::link(others.path(), parent + u"/QtWebEngine"_s));
  EXPECT_TRUE(Clear());
  EXPECT_TRUE(file.exists());
  EXPECT_TRUE(QDir(parent).isEmpty());
}

TEST_F(CacheTest, ANewBrowserIsTriedBesideTheOneThatIsOpen) {
  Open("/a");
  bool works = false;
  const auto run = [](bool* result) -> Task<> { *result = co_await TryNewBrowser(); };
  EXPECT_TRUE(RunTask(run(&works)));
  EXPECT_TRUE(works);
  EXPECT_EQ(Read("kept"), u"1"_s);
}

}  // namespace
}  // namespace quayline::testing
