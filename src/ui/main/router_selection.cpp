// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/router_selection.h"

#include <QFile>
#include <QLoggingCategory>
#include <QScopeGuard>

#include "core/save_file.h"
#include "ui/main/drawn_picture.h"
#include "ui/main/stored_picture.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_router, "quayline.ui.router")

constexpr FetchLimits kPictureLimits{.max_bytes = qint64{4} << 20,
                                     .timeout = std::chrono::seconds(10)};

}  // namespace

RouterSelection::RouterSelection(AppContext& context, QObject* parent)
    : QObject(parent), context_(context) {}

RouterSelection::~RouterSelection() = default;

void RouterSelection::Select(int index, int id) {
  flow_.Cancel();
  if (index <= 0) {
    Q_EMIT pictureChanged(RouterPicture::kLogo, {});
    return;
  }
  context_.session_store.Write(context_.session);  // the login of the router that is left
  const auto record = context_.databases.FindRouter(id);
  if (!record) {
    qCWarning(log_router) << "router" << id << "is no longer in the database";
    context_.session.router_name = context_.session.chosen_router;
    Q_EMIT routerRead();
    return;
  }
  Take(*record, context_.session_store.LoginFor(context_.session, *record));
  flow_.Start(ShowRouter(Storing::kChoice));
}

void RouterSelection::Restore(int index, int id) {
  const auto record = index > 0 ? context_.databases.FindRouter(id) : std::nullopt;
  if (!record) {
    Q_EMIT pictureChanged(RouterPicture::kLogo, {});
    return;
  }
  Take(*record, context_.session.CurrentLogin());
  flow_.Start(ShowRouter(Storing::kNothing));
}

void RouterSelection::Take(const RouterRecord& record, const Login& login) {
  SelectRouter(context_.session, record);
  context_.session.username = login.username;
  context_.session.password = login.password;
  Q_EMIT routerRead();
}

Task<> RouterSelection::ShowRouter(Storing storing) {
  // The choice is stored after the picture, also when the wait for the picture is cancelled.
  const auto store = qScopeGuard([this, storing] {
    if (storing == Storing::kChoice) {
      context_.session_store.Write(context_.session);
    }
  });
  if (const QImage drawn = DrawnPicture(context_.session.picture_path); !drawn.isNull()) {
    first_picture_pending_ = false;
    Q_EMIT pictureChanged(RouterPicture::kPicture, drawn);
    co_return;
  }
  Q_EMIT pictureChanged(RouterPicture::kWaiting, {});
  if (first_picture_pending_) {
    first_picture_pending_ = false;
  } else {
    co_await FetchPicture();
  }
  const QImage picture = co_await ReadStoredPicture(PictureFile());
  Q_EMIT pictureChanged(RouterPicture::kPicture, picture);
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

}  // namespace quayline
