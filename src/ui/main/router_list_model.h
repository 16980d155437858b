// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QStringList>

#include "core/databases.h"

namespace quayline {

// The routers to choose from. Row 0 is a placeholder without a router (id 0), which has a text in a
// list, and none in a field; the others follow in the order in which they are appended.
class RouterListModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  explicit RouterListModel(QObject* parent = nullptr) : QAbstractListModel(parent) {}

  // Starts again with nothing but the placeholder.
  void Reset(const QString& placeholder);
  void Append(const QList<RouterName>& routers);
  void SetPlaceholder(const QString& placeholder);

  int RouterCount() const { return std::max<int>(0, static_cast<int>(rows_.size()) - 1); }
  // All rows, the placeholder among them.
  QStringList Names() const;
  QString Name(int row) const { return rows_.at(row).name; }
  QString Placeholder() const { return rows_.isEmpty() ? QString() : rows_.first().name; }
  // 0 for the placeholder and for rows that do not exist.
  int RouterId(int row) const;
  // The row of a router, or -1.
  int RowOf(int id) const;
  // The first row of exactly this name, else the first one in another case, else -1. An empty name
  // is never found, nor is the placeholder.
  int Find(const QString& name) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

 private:
  QList<RouterName> rows_;
};

}  // namespace quayline
