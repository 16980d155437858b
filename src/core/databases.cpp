// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/databases.h"

#include <algorithm>

#include "core/database_swap.h"
#include "core/table_file.h"
#include "core/table_stand_in.h"

namespace quayline {

namespace {

const QStringList kScripts = {QStringLiteral("routercommands"), QStringLiteral("routerportpage"),
                              QStringLiteral("routertested")};
const QStringList kRouterName = {QStringLiteral("routername"), QStringLiteral("routertested"),
                                 QStringLiteral("routerversions")};

template <typename Record>
QList<Record> ReadRecords(const TableFile& file, std::optional<int> after_id = {}, int limit = -1) {
  QList<Record> records;
  file.Read(ColumnNames<Record>(), after_id, limit,
            [&](int id, const QStringList& texts) { records.append(RecordOf<Record>(id, texts)); });
  return records;
}

template <typename Record>
TableFile::Opened OpenTable(const QString& folder, const QString& shipped_folder,
                            QList<Notice>& notices) {
  auto opened = TableFile::Open(folder, ShapeOf<Record>());
  return opened ? std::move(opened)
                : OpenStandIn({.folder = folder,
                               .shipped_folder = shipped_folder,
                               .shape = ShapeOf<Record>(),
                               .columns = ColumnNames<Record>(),
                               .error = opened.error()},
                              notices);
}

}  // namespace

class Databases::Store {
 public:
  std::unique_ptr<TableFile> routers;
  std::unique_ptr<TableFile> ports;
  std::unique_ptr<TableFile> custom;
};

Databases::Databases() = default;
Databases::~Databases() = default;

std::expected<void, DatabaseError> Databases::Open(const QString& folder,
                                                   const QString& shipped_folder) {
  Close();
  CompleteSwap(folder);
  notices_.clear();
  auto store = std::make_unique<Store>();
  for (const auto& [open, file] : {std::pair(&OpenTable<RouterRecord>, &store->routers),
                                   {&OpenTable<AppPortRecord>, &store->ports},
                                   {&OpenTable<CustomPortRecord>, &store->custom}}) {
    auto opened = open(folder, shipped_folder, notices_);
    if (!opened) {
      return std::unexpected(opened.error());
    }
    *file = std::move(*opened);
  }
  store_ = std::move(store);
  return {};
}

void Databases::KeepGoodCopies() const {
  if (store_) {
    for (const TableFile* file :
         {store_->routers.get(), store_->ports.get(), store_->custom.get()}) {
      file->KeepGoodCopy();
    }
  }
}

void Databases::Close() { store_.reset(); }

bool Databases::IsOpen() const { return store_ != nullptr; }

int Databases::RouterCount() const { return store_ ? store_->routers->Count() : 0; }

QList<RouterName> Databases::RouterNames(int after_id, int limit) const {
  QList<RouterName> names;
  if (store_ && limit > 0) {
    store_->routers->Read(kRouterName, after_id, limit, [&](int id, const QStringList& texts) {
      names.append({id, texts.at(0), texts.at(1), texts.at(2)});
    });
  }
  return names;
}

std::optional<RouterRecord> Databases::FindRouter(int id) const {
  std::optional<RouterRecord> found;
  if (store_) {
    store_->routers->ReadOne(ColumnNames<RouterRecord>(), id,
                             [&](int row_id, const QStringList& texts) {
                               found = RecordOf<RouterRecord>(row_id, texts);
                             });
  }
  return found;
}

bool Databases::AddRouter(int id, const RouterRecord& record) {
  return store_ && store_->routers->Insert(ColumnNames<RouterRecord>(), TextsOf(record), id);
}

bool Databases::ChangeRouters(const std::function<bool()>& change) {
  return store_ && store_->routers->Transact(change);
}

bool Databases::UpdateRouterScripts(int id, const QString& routercommands,
                                    const QString& routerportpage, const QString& routertested) {
  return store_ &&
         store_->routers->Update(id, kScripts, {routercommands, routerportpage, routertested});
}

int Databases::AppPortCount() const { return store_ ? store_->ports->Count() : 0; }

QList<AppPortRecord> Databases::AppPorts() const {
  return store_ ? ReadRecords<AppPortRecord>(*store_->ports) : QList<AppPortRecord>();
}

QList<AppPortRecord> Databases::AppPorts(int after_id, int limit) const {
  return store_ && limit > 0 ? ReadRecords<AppPortRecord>(*store_->ports, after_id, limit)
                             : QList<AppPortRecord>();
}

QList<CustomPortRecord> Databases::CustomPorts() const {
  return store_ ? ReadRecords<CustomPortRecord>(*store_->custom) : QList<CustomPortRecord>();
}

bool Databases::AddCustomPort(const CustomPortRecord& record) {
  return store_ && store_->custom->Insert(ColumnNames<CustomPortRecord>(), TextsOf(record));
}

bool Databases::RememberCustomPort(const CustomPortRecord& record) {
  const QList<CustomPortRecord> known = CustomPorts();
  const auto same_name = std::ranges::find_if(known, [&](const CustomPortRecord& each) {
    return each.appname.compare(record.appname, Qt::CaseInsensitive) == 0;
  });
  return same_name == known.end()
             ? AddCustomPort(record)
             : store_->custom->Update(same_name->id, ColumnNames<CustomPortRecord>(),
                                      TextsOf(record));
}

}  // namespace quayline
