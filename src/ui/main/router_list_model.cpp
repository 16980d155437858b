// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/router_list_model.h"

namespace quayline {

void RouterListModel::Reset(const QString& placeholder) {
  beginResetModel();
  rows_ = {RouterName{.id = 0, .name = placeholder}};
  endResetModel();
}

void RouterListModel::Append(const QList<RouterName>& routers) {
  if (routers.isEmpty()) {
    return;
  }
  const int first = static_cast<int>(rows_.size());
  beginInsertRows({}, first, first + static_cast<int>(routers.size()) - 1);
  rows_ += routers;
  endInsertRows();
}

void RouterListModel::SetPlaceholder(const QString& placeholder) {
  if (!rows_.isEmpty()) {
    rows_.first().name = placeholder;
    Q_EMIT dataChanged(index(0), index(0));
  }
}

QStringList RouterListModel::Names() const {
  QStringList names;
  names.reserve(rows_.size());
  for (const RouterName& row : rows_) {
    names.append(row.name);
  }
  return names;
}

int RouterListModel::RouterId(int row) const {
  return row >= 0 && row < rows_.size() ? rows_.at(row).id : 0;
}

int RouterListModel::RowOf(int id) const {
  const auto row = std::find_if(rows_.begin() + std::min<qsizetype>(1, rows_.size()), rows_.end(),
                                [id](const RouterName& router) { return router.id == id; });
  return row == rows_.end() ? -1 : static_cast<int>(row - rows_.begin());
}

int RouterListModel::Find(const QString& name) const {
  int other_case = -1;
  for (int row = 1; row < rows_.size() && !name.isEmpty(); ++row) {
    const QString& each = rows_.at(row).name;
    if (each == name) {
      return row;
    }
    if (other_case < 0 && each.compare(name, Qt::CaseInsensitive) == 0) {
      other_case = row;
    }
  }
  return other_case;
}

int RouterListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant RouterListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rows_.size()) {
    return {};
  }
  if (role == Qt::EditRole && index.row() == 0) {
    return QString();
  }
  if (role == Qt::DisplayRole || role == Qt::EditRole) {
    return rows_.at(index.row()).name;
  }
  return role == Qt::UserRole ? QVariant(rows_.at(index.row()).id) : QVariant();
}

}  // namespace quayline
