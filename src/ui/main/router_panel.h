// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QWidget>

#include <memory>

#include "core/router_session.h"
#include "i18n/translator.h"
#include "ui/main/router_list_model.h"
#include "ui/main/router_selection.h"

namespace Ui {
class RouterPanel;
}

namespace quayline {

// The router on the main window: which one, its address, its picture. Shows the session; what the
// user types goes into the session and is reported.
class RouterPanel final : public QWidget {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  RouterPanel(RouterSession& session, RouterListModel& routers, const Translator& translator,
              QWidget* parent);
  ~RouterPanel() override;

  void Show();
  void ShowProgress(int loaded, int total);
  void ShowRouterCount(int count);
  void ShowPicture(RouterPicture state, const QImage& picture);
  // As the user choosing this row.
  void Choose(int row);
  // No router is chosen or named.
  bool IsAtPlaceholder() const;
  void FocusRouter();
  void FocusAddress();

 Q_SIGNALS:
  // The user chose this row of the routers.
  void routerChosen(int row);
  // The user changed a field of the session other than the router.
  void edited();
  void routerListWanted();
  void detectionWanted();
  void adaptersWanted();
  void routerRequestWanted();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void SetIcons();
  void ConnectRouterBox();
  void ConnectAddress();
  void OnNameTyped(const QString& name);
  void OnRowChosen(int row);
  void OnNameLeft();
  void ShowAddress();
  void ShowTested();
  int ChosenRow() const { return routers_.RowOf(session_.router_id); }

  RouterSession& session_;
  RouterListModel& routers_;
  const Translator& translator_;
  std::unique_ptr<Ui::RouterPanel> ui_;
  std::optional<int> router_count_;  // as shown
};

}  // namespace quayline
