// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

#include "core/ini_store.h"
#include "core/records.h"
#include "core/script_signature.h"

namespace quayline {

// Where the script of a router came from that was imported.
struct ScriptOrigin {
  ScriptAuthor author;
  bool is_known_author = false;  // the user has allowed a script with this signature before

  bool IsSigned() const { return !author.key.isEmpty(); }
};

// Which routers have scripts of somebody else, and which of these scripts the user has allowed to
// run. Stored in a file of the program's folder, a section for each router.
class ForeignScripts final {
 public:
  explicit ForeignScripts(const QString& program_folder);

  // Nothing for a router that came with the program, or that the user made.
  std::optional<ScriptOrigin> OriginOf(int router_id) const;
  // False if it could not be stored.
  bool Note(int router_id, const ScriptAuthor& author);
  bool Forget(int router_id);

  // Whether the user has allowed exactly these scripts.
  bool IsAllowed(const RouterRecord& router) const;
  bool Allow(const RouterRecord& router);

 private:
  IniStore store_;
};

}  // namespace quayline
