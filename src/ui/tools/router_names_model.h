// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>
#include <QList>

#include "core/databases.h"
#include "i18n/translator.h"

namespace quayline {

// The names of the routers, each with the mark of how its scripts were tried.
class RouterNamesModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  RouterNamesModel(const Translator& translator, QObject* parent);

  void SetRouters(const QList<RouterName>& routers);
  const QList<RouterName>& Routers() const { return routers_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  // A screen reader reads the meaning of the mark after the name.
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

 private:
  const Translator& translator_;
  QList<RouterName> routers_;
  QHash<QString, QIcon> marks_;  // drawn once for each kind, not once for each row
  QIcon unknown_mark_;
};

}  // namespace quayline
