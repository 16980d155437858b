// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/drawn_picture.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

// Outside of the namespace, as Qt requires. The linker leaves out resources of a library that
// nothing refers to.
static void InitRouterPictures() { Q_INIT_RESOURCE(router_pictures); }

namespace quayline {

namespace {

// Larger than the place where it is shown, for screens with more than one pixel to a point.
constexpr int kWidth = 800;

}  // namespace

QImage DrawnPicture(const QString& picture_path) {
  InitRouterPictures();
  const QString path = QStringLiteral(":/quayline/") + picture_path;
  if (!picture_path.startsWith(QLatin1String("pictures/")) || !QFile::exists(path)) {
    return {};
  }
  QSvgRenderer drawing(path);
  const QSize size = drawing.defaultSize().scaled(kWidth, kWidth, Qt::KeepAspectRatio);
  if (!drawing.isValid() || size.isEmpty()) {
    return {};
  }
  QImage picture(size, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  drawing.render(&painter);
  return picture;
}

}  // namespace quayline
