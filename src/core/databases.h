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

#include "core/database_error.h"
#include "core/records.h"

namespace quayline {

// What the router list shows of a router.
struct RouterName {
  int id = 0;
  QString name;
  QString tested = {};    // routertested
  QString versions = {};  // routerversions
};

// The three databases of the program's folder, open for the whole run. "routers.mdb", "ports.mdb"
// and "custom.mdb" are SQLite files; a Jet file is converted once when it is opened, and the
// original is kept beside it with ".jet" added to its name. Of each file that was good the program
// keeps a copy with ".good" added to its name, which is used when the file itself is damaged or
// locked. Where there is no copy yet, a damaged file gets ".damaged" added to its name, and the one
// that came with the program, or an empty one, takes its place.
class Databases final {
 public:
  Databases();
  ~Databases();
  Databases(const Databases&) = delete;
  Databases& operator=(const Databases&) = delete;

  // Opens all three, or none. A missing file is an error unless `shipped_folder`, where the
  // databases that came with the program are, has one. A file that is invalid in any other way is
  // replaced. An empty table and an additional field are allowed. Ends in a limited time whatever
  // the files contain.
  std::expected<void, DatabaseError> Open(const QString& folder,
                                          const QString& shipped_folder = {});
  // One for each file that Open() replaced.
  const QList<Notice>& Notices() const { return notices_; }
  // Copies what is open and has changed since the last copy. Takes a moment for large files, so it
  // is called after the window is shown.
  void KeepGoodCopies() const;
  void Close();
  bool IsOpen() const;

  int RouterCount() const;
  // Up to `limit` routers whose ID is above `after_id`, in the order of their IDs: the router list
  // is filled in such steps, so that the window stays responsive.
  QList<RouterName> RouterNames(int after_id, int limit) const;
  // One find by key.
  std::optional<RouterRecord> FindRouter(int id) const;
  // False when the ID is taken or the file cannot be written. record.id is ignored.
  bool AddRouter(int id, const RouterRecord& record);
  // All that `change` does to the routers, or nothing of it if that returns false. No other program
  // writes to them meanwhile. False when nothing was changed.
  bool ChangeRouters(const std::function<bool()>& change);
  // `routertested`: how these scripts were tried. False when the row is gone or the file cannot be
  // written; the old scripts are unchanged then.
  bool UpdateRouterScripts(int id, const QString& routercommands, const QString& routerportpage,
                           const QString& routertested = {});

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
  QList<Notice> notices_;
};

}  // namespace quayline
