// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <expected>
#include <optional>

#include "core/data_problem.h"
#include "core/databases.h"
#include "core/foreign_scripts.h"
#include "core/records.h"

namespace quayline {

// Routers that the user adds. They are rows of "routers.mdb" like the shipped ones, with IDs from
// here on, which no shipped router has: a merge with a newer shipped database keeps them.
inline constexpr int kFirstOwnRouterId = 1'000'000'000;

enum class OwnRouterError {
  kNoName,
  kNameTaken,   // in any case of letters
  kCannotRead,  // the file, or what is in it
  kCannotWrite,
  kWrongSignature,  // the file is not as its author has signed it
};

struct OwnRouterFault {
  OwnRouterError error = OwnRouterError::kNoName;
  QString name = {};       // of the router
  Problems problems = {};  // what is wrong with a file
};

// Adds the router under a new ID, which is returned. `author` is who wrote its scripts, if that was
// somebody else; `foreign` keeps that.
std::expected<int, OwnRouterFault> AddOwnRouter(Databases& databases, ForeignScripts& foreign,
                                                const RouterRecord& record,
                                                const std::optional<ScriptAuthor>& author = {});

// Adds the routers of a file that ExportRouter() or a contributor has written, all or none. They
// are noted in `foreign` unless they are signed with `own_key`.
std::expected<QList<int>, OwnRouterFault> ImportRouters(Databases& databases,
                                                        ForeignScripts& foreign,
                                                        const QByteArray& own_key,
                                                        const QString& file);

// With whose name and key a file is signed.
struct ExportSignature {
  QString author;
  AuthorKey key;
};

// Writes the router to a file of the form that data/README.md describes, signed if there is a
// signature. False when it cannot be written.
bool ExportRouter(const RouterRecord& record, const QString& file,
                  const std::optional<ExportSignature>& signature = {});

// Which of `names` is the likeliest to have the same pages as a router of the name that is typed:
// the one with which it shares the longest beginning, if that is a word at least. -1: none.
qsizetype NearestRouter(const QList<RouterName>& names, const QString& typed);

}  // namespace quayline
