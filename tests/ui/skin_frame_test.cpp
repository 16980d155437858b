// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/skin_frame.h"

#include <QAbstractButton>
#include <QLabel>

#include "every_window.h"

namespace quayline::testing {
namespace {

class Framed final : public SkinFrame {
 public:
  explicit Framed(TitleButtons buttons) : SkinFrame(buttons, nullptr) {
    SetContent(new QWidget(this));
    setWindowTitle(u"Harbour"_s);
    ResizeSurface({400, 300});
    MoveSurface({100, 80});
  }
};

void Drag(QWidget* at, const QPoint& way) {
  const QPoint start = at->rect().center();
  QTest::mousePress(at, Qt::LeftButton, {}, start);
  QTest::mouseMove(at, start + way);
  QTest::mouseRelease(at, Qt::LeftButton, {}, start + way);
}

class SkinFrameTest : public WindowTest {
 protected:
  void Open(TitleButtons buttons) {
    delete window_.data();
    window_ = frame_ = new Framed(buttons);
    frame_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(frame_));
  }
  Framed* frame_ = nullptr;
};

TEST_F(SkinFrameTest, TheTitleMovesTheWindowAndADoubleClickMakesItAsLargeAsTheScreenAndBack) {
  Open(TitleButtons::kMinimiseAndClose);
  EXPECT_EQ(TextOf("title_label"), "Harbour");
  const QRect start = frame_->Surface();
  EXPECT_EQ(start, QRect(100, 80, 400, 300));
  Drag(Find("title_label"), {1, 1});
  EXPECT_EQ(frame_->Surface(), start) << "a click with an unsteady hand";
  Drag(Find("title_label"), {60, 40});
  EXPECT_EQ(frame_->Surface(), start.translated(60, 40));
  QTest::mouseDClick(Find("title_label"), Qt::LeftButton);
  ASSERT_TRUE(RunUntil([this] { return frame_->isMaximized(); }));
  EXPECT_TRUE(frame_->contentsMargins().isNull()) << "a shadow takes room of the screen";
  QTest::mouseDClick(Find("title_label"), Qt::LeftButton);
  ASSERT_TRUE(RunUntil([this] { return !frame_->isMaximized(); }));
  EXPECT_EQ(frame_->Surface().size(), start.size());
  Click("title_minimise_button");
  EXPECT_TRUE(frame_->isMinimized());
  Click("title_close_button");
  EXPECT_FALSE(frame_->isVisible());
  Open(TitleButtons::kClose);
  EXPECT_FALSE(Find("title_minimise_button")->isVisible());
  QTest::mouseDClick(Find("title_label"), Qt::LeftButton);
  EXPECT_FALSE(frame_->isMaximized());
}

TEST_F(SkinFrameTest, ThePointerShowsWhichEdgeItWouldMove) {
  Open(TitleButtons::kClose);
  const QRect inside = frame_->rect().marginsRemoved(frame_->contentsMargins());
  const struct {
    QPoint place;
    Qt::CursorShape cursor;
  } cases[] = {
      {{1, frame_->height() / 2}, Qt::SizeHorCursor},
      {{inside.right() + 3, inside.center().y()}, Qt::SizeHorCursor},
      {{inside.right() - 1, inside.center().y()}, Qt::SizeHorCursor},
      {{inside.center().x(), 2}, Qt::SizeVerCursor},
      {{inside.center().x(), inside.bottom() + 2}, Qt::SizeVerCursor},
      {inside.topLeft() - QPoint(2, 2), Qt::SizeFDiagCursor},
      {inside.bottomRight() - QPoint(9, -2), Qt::SizeFDiagCursor},
      {inside.topRight() + QPoint(2, -2), Qt::SizeBDiagCursor},
      {inside.bottomLeft() + QPoint(9, 2), Qt::SizeBDiagCursor},
      {inside.center(), Qt::ArrowCursor},
  };
  for (const auto& c : cases) {
    QTest::mouseMove(frame_, c.place);
    EXPECT_EQ(frame_->cursor().shape(), c.cursor) << c.place.x() << ',' << c.place.y();
  }
}

// F1 is for all windows, and opens a page that there is.
TEST_F(EveryWindowTest, F1ShowsAPageOfTheHelp) {
  ForEach(u"English"_s, [](const char* name, QWidget& window) {
    if (qobject_cast<HelpDialog*>(&window) != nullptr) {
      return;
    }
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window)) << name;
    QWidget* at = window.focusWidget() != nullptr ? window.focusWidget() : &window;
    QTest::keyClick(at, Qt::Key_F1);
    const auto* help = window.findChild<HelpDialog*>();
    ASSERT_NE(help, nullptr) << name;
    const auto* page = help->findChild<QWidget*>(u"help_view"_s);
    EXPECT_NE(page->property("plainText").toString(), QString()) << name;
    delete help;
  });
}

}  // namespace
}  // namespace quayline::testing
