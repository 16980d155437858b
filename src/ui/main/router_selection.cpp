// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/router_selection.h"

#include <QFile>
#include <QImageReader>
#include <QLoggingCategory>
#include <QScopeGuard>

#include "core/save_file.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_router, "quayline.ui.router")

constexpr FetchLimits kPictureLimits{.max_bytes = qint64{4} << 20,
                                     .timeout = std::chrono::seconds(10)};

}  // namespace

RouterSelection::RouterSelection(AppContext& context, QObject* parent)
    : QObject(parent), context_(context) {}

RouterSelection::~RouterSelection() = default;

void RouterSelection::Select(int index, int id, const QString& name) {
  flow_.Cancel();
  if (index <= 0) {
    Q_EMIT pictureChanged(RouterPicture::kLogo, {});
    return;
  }
  if (const auto record = context_.databases.FindRouter(id)) {
    SelectRouter(context_.session, *record);
  } else {
    qCWarning(log_router) << "router" << id << "is not in the database any more";
  }
  context_.session.router_name = name;
  Q_EMIT routerRead();
  flow_.Start(ShowRouter(name));
}

Task<> RouterSelection::ShowRouter(QString name) {
  // The name is stored behind the picture, and also when the wait for the picture is cut short.
  const auto store = qScopeGuard([&] { context_.settings.SetValue(setting::kRouter, name); });
  if (first_picture_pending_) {
    first_picture_pending_ = false;
    Q_EMIT pictureChanged(RouterPicture::kPicture, ReadStoredPicture());
    co_return;
  }
  Q_EMIT pictureChanged(RouterPicture::kWaiting, {});
  co_await FetchPicture();
  Q_EMIT pictureChanged(RouterPicture::kPicture, ReadStoredPicture());
}

Task<> RouterSelection::FetchPicture() {
  QFile::remove(PictureFile());
  if (context_.session.picture_path.isEmpty()) {
    co_return;
  }
  const QUrl address = context_.maker_site.Picture(context_.session.picture_path);
  const auto bytes = co_await context_.http_fetch.Get(address, kPictureLimits);
  if (!bytes) {
    qCInfo(log_router) << "no picture from" << address.host();
    co_return;
  }
  if (!SaveFile(PictureFile(), *bytes)) {
    qCWarning(log_router) << "the picture cannot be stored";
  }
}

QImage RouterSelection::ReadStoredPicture() const {
  QImageReader reader(PictureFile());
  reader.setDecideFormatFromContent(true);  // the file is always called .jpg
  reader.setAutoTransform(true);
  return reader.read();
}

}  // namespace quayline
