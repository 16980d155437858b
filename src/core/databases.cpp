// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/databases.h"

#include <QFileInfo>

#include <algorithm>

#include "core/table_file.h"

namespace quayline {

namespace {

const QStringList kScripts = {QStringLiteral("routercommands"), QStringLiteral("routerportpage")};
const QStringList kRouterName = {QStringLiteral("routername")};

// The fields of each table are in the order of the members of its record.
const TableShape kRouters = {
    QStringLiteral("routers.mdb"),
    QStringLiteral("routers"),
    {QStringLiteral("routername"), QStringLiteral("routerusername"),
     QStringLiteral("routerpassword"), QStringLiteral("routersupportsboth"),
     QStringLiteral("routerneedscomputername"), QStringLiteral("routermaxentries"),
     QStringLiteral("routermaxrange"), QStringLiteral("routerminport"),
     QStringLiteral("routermaxport"), QStringLiteral("routerpic"), QStringLiteral("routercommands"),
     QStringLiteral("routerportpage")}};
const TableShape kPorts = {
    QStringLiteral("ports.mdb"),
    QStringLiteral("ports"),
    {QStringLiteral("appname"), QStringLiteral("nameforrouter"), QStringLiteral("tcpportsonly"),
     QStringLiteral("udpportsonly"), QStringLiteral("tcpudpports")}};
const TableShape kCustom = {QStringLiteral("custom.mdb"),
                            QStringLiteral("custom"),
                            {QStringLiteral("appname"), QStringLiteral("portype"),
                             QStringLiteral("startport"), QStringLiteral("endport")}};

QStringList TextsOf(const CustomPortRecord& record) {
  return {record.appname, record.portype, record.startport, record.endport};
}

QList<AppPortRecord> ReadAppPorts(const TableFile& ports, std::optional<int> after_id, int limit) {
  QList<AppPortRecord> records;
  ports.Read(kPorts.fields, after_id, limit, [&](int id, const QStringList& texts) {
    records.append({id, texts[0], texts[1], texts[2], texts[3], texts[4]});
  });
  return records;
}

// A missing file has been taken away, and is not replaced unasked.
TableFile::Opened OpenOrGoodCopy(const QString& folder, const TableShape& shape,
                                 QStringList& notices) {
  auto opened = TableFile::Open(folder, shape);
  if (opened || !QFileInfo::exists(folder + QLatin1Char('/') + shape.file_name)) {
    return opened;
  }
  auto copy = TableFile::OpenGoodCopy(folder, shape);
  if (!copy) {
    return opened;
  }
  notices.append(opened.error().description +
                 QStringLiteral(" Its last good copy is used for now."));
  return copy;
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

std::expected<void, DatabaseError> Databases::Open(const QString& folder) {
  Close();
  notices_.clear();
  auto store = std::make_unique<Store>();
  for (const auto& [shape, file] : {std::pair(&kRouters, &store->routers),
                                    {&kPorts, &store->ports},
                                    {&kCustom, &store->custom}}) {
    auto opened = OpenOrGoodCopy(folder, *shape, notices_);
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
      names.append({id, texts.first()});
    });
  }
  return names;
}

std::optional<RouterRecord> Databases::FindRouter(int id) const {
  std::optional<RouterRecord> found;
  if (store_) {
    store_->routers->ReadOne(kRouters.fields, id, [&](int row_id, const QStringList& texts) {
      found = {row_id,   texts[0], texts[1], texts[2], texts[3],  texts[4], texts[5],
               texts[6], texts[7], texts[8], texts[9], texts[10], texts[11]};
    });
  }
  return found;
}

bool Databases::UpdateRouterScripts(int id, const QString& routercommands,
                                    const QString& routerportpage) {
  return store_ && store_->routers->Update(id, kScripts, {routercommands, routerportpage});
}

int Databases::AppPortCount() const { return store_ ? store_->ports->Count() : 0; }

QList<AppPortRecord> Databases::AppPorts() const {
  return store_ ? ReadAppPorts(*store_->ports, {}, -1) : QList<AppPortRecord>();
}

QList<AppPortRecord> Databases::AppPorts(int after_id, int limit) const {
  return store_ && limit > 0 ? ReadAppPorts(*store_->ports, after_id, limit)
                             : QList<AppPortRecord>();
}

QList<CustomPortRecord> Databases::CustomPorts() const {
  QList<CustomPortRecord> records;
  if (store_) {
    store_->custom->Read(kCustom.fields, {}, -1, [&](int id, const QStringList& texts) {
      records.append({id, texts[0], texts[1], texts[2], texts[3]});
    });
  }
  return records;
}

bool Databases::AddCustomPort(const CustomPortRecord& record) {
  return store_ && store_->custom->Insert(kCustom.fields, TextsOf(record));
}

bool Databases::RememberCustomPort(const CustomPortRecord& record) {
  const QList<CustomPortRecord> known = CustomPorts();
  const auto same_name = std::ranges::find_if(known, [&](const CustomPortRecord& each) {
    return each.appname.compare(record.appname, Qt::CaseInsensitive) == 0;
  });
  return same_name == known.end()
             ? AddCustomPort(record)
             : store_->custom->Update(same_name->id, kCustom.fields, TextsOf(record));
}

}  // namespace quayline
