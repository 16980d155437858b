// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QObject>

#include "async/flow.h"
#include "core/app_context.h"

namespace quayline {

enum class RouterPicture {
  kLogo,     // no router is selected
  kWaiting,  // the picture is being fetched or decoded
  kPicture   // the router's picture, which may be missing
};

// What choosing a router does: its row fills the session, with the user's own login where he has
// one for it; its picture is shown, and the choice is stored. The picture is fetched and decoded in
// the background; another choice, or the end of the owner, cancels that.
class RouterSelection final : public QObject {
  Q_OBJECT

 public:
  explicit RouterSelection(AppContext& context, QObject* parent = nullptr);
  ~RouterSelection() override;

  // The user chose the row `index` of the list, a router with the key `id`. The placeholder
  // (index 0) and a name that is not in the list (below 0) only bring the logo back: login, limits
  // and scripts of the router before them stay.
  void Select(int index, int id);
  // As Select() for the router of the last run: its login is in the session, and nothing is stored.
  void Restore(int index, int id);

 Q_SIGNALS:
  // The session holds another router's login, limits and scripts.
  void routerRead();
  void pictureChanged(quayline::RouterPicture state, const QImage& picture);

 private:
  enum class Storing { kNothing, kChoice };

  void Take(const RouterRecord& record, const Login& login);
  Task<> ShowRouter(Storing storing);
  Task<> FetchPicture();
  QString PictureFile() const { return context_.FileInFolder("router.jpg"); }

  AppContext& context_;
  bool first_picture_pending_ = true;  // the first choice shows the picture of the last run
  Flow flow_;
};

}  // namespace quayline
