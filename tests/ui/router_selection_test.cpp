// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/router_selection.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <sys/stat.h>

#include "transport/scripted_server.h"
#include "ui/main/drawn_picture.h"
#include "ui/main/stored_picture.h"
#include "window_fixture.h"

namespace quayline::testing {
namespace {

QByteArray PictureOf(int width, const char* format = "PNG") {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImage picture(width, 10, QImage::Format_RGB32);
  picture.fill(Qt::white);
  picture.save(&buffer, format);
  return bytes;
}

class RouterSelectionTest : public WindowTest {
 protected:
  RouterSelectionTest() {
    folder_.WriteDatabases({RouterRow(3, u"Alpha 1"_s, u"admin"_s),
                            RouterRow(7, u"Beta 2"_s, u"root"_s), DrawnRouter()});
    EXPECT_TRUE(context_->databases.Open(folder_.dir.path()));
    context_->maker_site.base = server_.Address({}).toString();
    folder_.WriteFile("router.jpg", PictureOf(11));
    QObject::connect(&selection_, &RouterSelection::routerRead, &context_->job_flags,
                     [this] { order_ += u'r'; });
    QObject::connect(&selection_, &RouterSelection::pictureChanged, &context_->job_flags,
                     [this](RouterPicture state, const QImage& picture) {
                       order_ += u"LWP"_s.at(static_cast<int>(state));
                       order_ += QString::number(picture.width());
                     });
  }
  static RouterRecord DrawnRouter() {
    RouterRecord row = RouterRow(9, u"Gamma 3"_s, u"root"_s);
    row.routerpic = u"pictures/demo.svg"_s;
    return row;
  }
  Task<> ReadInto(QImage& picture) {
    picture = co_await ReadStoredPicture(folder_.Path("router.jpg"));
  }
  void Select(int id) { selection_.Select(1, id); }
  void SelectPlaceholder() { selection_.Select(0, 0); }
  void SelectAnother() {
    Select(3);  // its picture is the one on disk
    order_.clear();
    Select(7);
  }
  void Serve(const Reply& picture) { server_.replies["/files/a/b.png"] = picture; }
  bool Comes(const char* order) {
    return RunUntil([&] { return order_ == QLatin1String(order); });
  }

  ScriptedServer server_;
  RouterSelection selection_{*context_};
  QString order_;  // r: row read; L, W, P: logo, waiting, picture, each with the picture's width
};

TEST_F(RouterSelectionTest, TheFirstChoiceShowsThePictureOnDiskAndThePlaceholderIsNoChoice) {
  SelectPlaceholder();
  Select(3);
  context_->session.username = u"me"_s;
  EXPECT_TRUE(Comes("L0rW0P11"));
  SelectPlaceholder();
  EXPECT_EQ(order_, u"L0rW0P11L0"_s);
  EXPECT_EQ(Stored(setting::kRouter), "Alpha 1");
  EXPECT_EQ(context_->session.update_script.size(), 2);
  EXPECT_EQ(context_->session.username, u"me"_s);
  EXPECT_TRUE(server_.requests.isEmpty());
}

TEST_F(RouterSelectionTest, TheNextChoiceFetchesItsPictureAndShowsNoneOfAnotherKind) {
  Serve(Answer("200 OK", PictureOf(22)));
  SelectAnother();
  EXPECT_EQ(order_, u"rW0"_s);
  EXPECT_FALSE(QFile::exists(folder_.Path("router.jpg"))) << "a failure must leave no old picture";
  EXPECT_EQ(context_->session.update_script.size(), 2) << "ready before the picture is";
  EXPECT_EQ(Stored(setting::kRouter), "Alpha 1");
  EXPECT_TRUE(Comes("rW0P22"));
  EXPECT_EQ(Stored(setting::kRouter), "Beta 2");
  EXPECT_EQ(folder_.ReadFile("router.jpg"), PictureOf(22));
  Serve(Answer("200 OK", "<html>sorry</html>"));
  SelectAnother();
  EXPECT_TRUE(Comes("rW0P0"));
}

TEST_F(RouterSelectionTest, TheProgramsOwnDrawingIsShownAtOnceAndNothingIsFetched) {
  Select(9);
  EXPECT_EQ(order_, u"rP800"_s);
  EXPECT_TRUE(server_.requests.isEmpty());
  Serve(Answer("200 OK", PictureOf(22)));
  order_.clear();
  Select(7);
  EXPECT_TRUE(Comes("rW0P22")) << "the picture of the last run is not this router's";
}

TEST_F(RouterSelectionTest, EachShippedRouterHasADrawing) {
  static const QRegularExpression kPicture(u"^routerpic:\\s*(.*)$"_s,
                                           QRegularExpression::MultilineOption);
  const QDir routers(QStringLiteral(QUAYLINE_SOURCE_DIR "/data/routers"));
  for (const QFileInfo& router : routers.entryInfoList({u"*.txt"_s})) {
    QFile file(router.filePath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString path = kPicture.match(QString::fromUtf8(file.readAll())).captured(1).trimmed();
    EXPECT_FALSE(DrawnPicture(path).isNull()) << router.fileName().toStdString();
  }
}

TEST_F(RouterSelectionTest, OnlyPicturesOfKnownKindsAreShownWhateverTheFileIsCalled) {
  const struct {
    const char* kind;
    QByteArray bytes;
    int width;
  } rows[] = {
      {"a drawing, which is a program",
       "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"5\" height=\"5\"/>", 0},
      {"cut", PictureOf(11).first(40), 0},
      {"larger than any screen", PictureOf(3000), 1024},
      {"larger than memory", PictureOf(11).replace(16, 8, QByteArray::fromHex("0000ffff0000ffff")),
       0},
      {"too large a file", PictureOf(11) + QByteArray(17 << 20, ' '), 0},
      {"empty", "", 0},
      {"another format", PictureOf(12, "BMP"), 12},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.kind);
    folder_.WriteFile("router.jpg", row.bytes);
    QImage picture(1, 1, QImage::Format_RGB32);
    EXPECT_TRUE(RunTask(ReadInto(picture)));
    EXPECT_EQ(picture.width(), row.width);
  }
  QFile::remove(folder_.Path("router.jpg"));
  ASSERT_EQ(mkfifo(qPrintable(folder_.Path("router.jpg")), 0600), 0);
  Select(3);
  EXPECT_TRUE(Comes("rW0P0")) << "a pipe, which has no end";
}

TEST_F(RouterSelectionTest, AChoiceDuringAFetchEndsItAndNoNameIsLost) {
  Serve({{}, Reply::Then::kSilence});
  SelectAnother();
  ASSERT_TRUE(RunUntil([&] { return !server_.requests.isEmpty(); }));
  SelectPlaceholder();
  EXPECT_EQ(Stored(setting::kRouter), "Beta 2");
  Select(7);
  Serve(Answer("200 OK", PictureOf(22)));
  Select(3);
  EXPECT_EQ(Stored(setting::kRouter), "Beta 2");
  EXPECT_TRUE(Comes("rW0L0rW0rW0P22"));
  EXPECT_EQ(Stored(setting::kRouter), "Alpha 1");
}

TEST_F(RouterSelectionTest, ARouterThatIsGoneFromTheDatabaseKeepsTheOneBefore) {
  Select(3);
  Select(99);
  EXPECT_EQ(context_->session.router_id, 3);
  EXPECT_EQ(context_->session.username, u"admin"_s);
}

}  // namespace
}  // namespace quayline::testing
