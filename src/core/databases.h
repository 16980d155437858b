// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <expected>
#include <functional>
#include <memory>
#include <optional>

#include "core/records.h"

namespace quayline {

// Why the databases could not be opened; `description` names the file and says what is wrong in a
// sentence for the user.
struct DatabaseError {
  int number = 0;
  QString description;
};

// What the router list shows of a router.
struct RouterName {
  int id = 0;
  QString name;
};

// The three databases of the program's folder, open for the whole run. "routers.mdb", "ports.mdb"
// and "custom.mdb" are SQLite files; one that turns out to be a Jet file is converted once when it
// is opened, and the original is kept beside it with ".jet" behind its name.
class Databases final {
 public:
  Databases();
  ~Databases();
  Databases(const Databases&) = delete;
  Databases& operator=(const Databases&) = delete;

  // Opens all three, or none. A missing file, a file that is no database and a file without its
  // table are errors; an empty table, and an additional field, are not.
  std::expected<void, DatabaseError> Open(const QString& folder);
  void Close();
  bool IsOpen() const;

  int RouterCount() const;
  // Up to `limit` routers whose ID is above `after_id`, in the order of their IDs: the router list
  // is filled by such steps, so that the window stays alive.
  QList<RouterName> RouterNames(int after_id, int limit) const;
  // One find by key.
  std::optional<RouterRecord> FindRouter(int id) const;
  // False when the row is gone or the file cannot be written; the old scripts then stand.
  bool UpdateRouterScripts(int id, const QString& routercommands, const QString& routerportpage);

  int AppPortCount() const;
  QList<AppPortRecord> AppPorts() const;
  // As RouterNames(): up to `limit` programs whose ID is above `after_id`.
  QList<AppPortRecord> AppPorts(int after_id, int limit) const;
  QList<CustomPortRecord> CustomPorts() const;
  bool AddCustomPort(const CustomPortRecord& record);  // record.id is ignored
  // Overwrites the first record of this name, in any case, or adds one.
  bool RememberCustomPort(const CustomPortRecord& record);

 private:
  class Store;
  std::unique_ptr<Store> store_;
};

}  // namespace quayline
