// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/router_selection.h"

#include <QBuffer>
#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include "test_main.h"
#include "window_doubles.h"

namespace quayline::testing {
namespace {

QByteArray PictureOf(int width) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImage picture(width, 10, QImage::Format_RGB32);
  picture.fill(Qt::white);
  picture.save(&buffer, "PNG");
  return bytes;
}

// Hands out one body for every address, or holds the connection open when it has none.
class PictureServer final {
 public:
  PictureServer() {
    server_.listen(QHostAddress::LocalHost);
    QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
      QTcpSocket* socket = server_.nextPendingConnection();
      QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
        asked += socket->readAll();
        if (!body.isNull()) {
          socket->write("HTTP/1.0 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) +
                        "\r\n\r\n" + body);
          socket->disconnectFromHost();
        }
      });
    });
  }
  QString Address() const {
    return QStringLiteral("http://127.0.0.1:%1").arg(server_.serverPort());
  }

  QByteArray body;
  QByteArray asked;

 private:
  QTcpServer server_;
};

class RouterSelectionTest : public ::testing::Test {
 protected:
  RouterSelectionTest() {
    folder_.WriteDatabases({RouterRow(3, QStringLiteral("Alpha 1"), QStringLiteral("admin")),
                            RouterRow(7, QStringLiteral("Beta 2"), QStringLiteral("root"))});
    EXPECT_TRUE(context_.databases.Open(folder_.dir.path()));
    context_.maker_site.base = server_.Address();
    folder_.WriteFile("router.jpg", PictureOf(11));
    QObject::connect(&selection_, &RouterSelection::routerRead, &context_.job_flags,
                     [this] { order_ += u'r'; });
    QObject::connect(&selection_, &RouterSelection::pictureChanged, &context_.job_flags,
                     [this](RouterPicture state, const QImage& picture) {
                       order_ += QStringLiteral("LWP").at(static_cast<int>(state));
                       order_ += QString::number(picture.width());
                     });
  }
  void Select(int id, const char* name) { selection_.Select(1, id, QLatin1String(name)); }
  bool Comes(const char* order) {
    return RunUntil([&] { return order_ == QLatin1String(order); }, std::chrono::seconds(5));
  }

  PictureServer server_;
  ProgramFolder folder_;
  AppContext context_{folder_.dir.path(), folder_.adapters, folder_.desktop};
  RouterSelection selection_{context_};
  QString order_;  // r: row read; L, W, P: logo, waiting, picture, each with the picture's width
};

TEST_F(RouterSelectionTest, TheFirstChoiceShowsThePictureOnDiskAndAsksNobody) {
  selection_.Select(0, 0, QStringLiteral("placeholder"));
  Select(3, "Alpha 1");
  EXPECT_EQ(order_, QStringLiteral("L0rP11")) << "the placeholder is no choice";
  EXPECT_EQ(context_.settings.Value(setting::kRouter), QStringLiteral("Alpha 1"));
  EXPECT_TRUE(server_.asked.isEmpty());
}

TEST_F(RouterSelectionTest, TheNextChoiceFetchesItsPictureAndKeepsIt) {
  server_.body = PictureOf(22);
  Select(3, "Alpha 1");
  order_.clear();
  Select(7, "Beta 2");
  EXPECT_EQ(order_, QStringLiteral("rW0"));
  EXPECT_FALSE(QFile::exists(folder_.Path("router.jpg"))) << "a failure must leave no old picture";
  EXPECT_EQ(context_.session.update_script.size(), 2) << "ready before the picture is";
  EXPECT_EQ(context_.settings.Value(setting::kRouter), QStringLiteral("Alpha 1"));
  EXPECT_TRUE(Comes("rW0P22"));
  EXPECT_TRUE(server_.asked.startsWith("GET /files/a/b.png ")) << server_.asked.toStdString();
  EXPECT_EQ(context_.settings.Value(setting::kRouter), QStringLiteral("Beta 2"));
  EXPECT_EQ(folder_.ReadFile("router.jpg"), PictureOf(22));
}

TEST_F(RouterSelectionTest, AnAnswerThatIsNoPictureShowsNone) {
  server_.body = "<html>sorry</html>";
  Select(3, "Alpha 1");
  order_.clear();
  Select(7, "Beta 2");
  EXPECT_TRUE(Comes("rW0P0"));
}

TEST_F(RouterSelectionTest, AChoiceDuringAFetchEndsItAndNoNameIsLost) {
  Select(3, "Alpha 1");
  order_.clear();
  Select(7, "Beta 2");  // the server never answers
  ASSERT_TRUE(RunUntil([&] { return !server_.asked.isEmpty(); }));
  server_.body = PictureOf(22);
  Select(3, "Alpha 1");
  EXPECT_EQ(context_.settings.Value(setting::kRouter), QStringLiteral("Beta 2"));
  EXPECT_TRUE(Comes("rW0rW0P22"));
  EXPECT_EQ(context_.settings.Value(setting::kRouter), QStringLiteral("Alpha 1"));
}

TEST_F(RouterSelectionTest, ARouterThatIsGoneFromTheDatabaseKeepsTheOneBefore) {
  Select(3, "Alpha 1");
  Select(99, "Ghost");
  EXPECT_EQ(context_.session.router_id, 3);
  EXPECT_EQ(context_.session.username, QStringLiteral("admin"));
}

}  // namespace
}  // namespace quayline::testing
