// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/tools/router_names_model.h"

#include "core/router_tested.h"
#include "ui/toolkit/tested_icon.h"

namespace quayline {

RouterNamesModel::RouterNamesModel(const Translator& translator, QObject* parent)
    : QAbstractListModel(parent), translator_(translator), unknown_mark_(TestedIcon({})) {
  for (const char* way : kWaysOfTesting) {
    marks_.insert(QLatin1String(way), TestedIcon(QLatin1String(way)));
  }
}

void RouterNamesModel::SetRouters(const QList<RouterName>& routers) {
  beginResetModel();
  routers_ = routers;
  endResetModel();
}

int RouterNamesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(routers_.size());
}

QVariant RouterNamesModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= routers_.size()) {
    return {};
  }
  const RouterName& router = routers_.at(index.row());
  switch (role) {
    case Qt::DisplayRole:
      return router.name;
    case Qt::DecorationRole:
      return marks_.value(router.tested, unknown_mark_);
    case Qt::ToolTipRole:
      return TestedText(router.tested, router.versions, translator_);
    case Qt::AccessibleTextRole:
      return router.name + QStringLiteral(". ") + TestedText(router.tested, {}, translator_);
    default:
      return {};
  }
}

}  // namespace quayline
