// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/own_routers.h"

#include <QFile>

#include <algorithm>
#include <limits>

#include "core/router_text.h"
#include "core/save_file.h"

namespace quayline {

namespace {

constexpr int kStep = 1000;

// All names; empty where the databases are closed.
QList<RouterName> AllNames(const Databases& databases) {
  QList<RouterName> all;
  for (QList<RouterName> step = databases.RouterNames(std::numeric_limits<int>::min(), kStep);
       !step.isEmpty(); step = databases.RouterNames(step.last().id, kStep)) {
    all += step;
  }
  return all;
}

bool IsTaken(const QList<RouterName>& names, const QString& name) {
  return std::ranges::any_of(names, [&](const RouterName& each) {
    return each.name.trimmed().compare(name, Qt::CaseInsensitive) == 0;
  });
}

std::unexpected<OwnRouterFault> Fault(OwnRouterError error, const QString& detail = {}) {
  return std::unexpected(OwnRouterFault{.error = error, .detail = detail});
}

int NextId(const QList<RouterName>& names) {
  const int highest = names.isEmpty() ? 0 : names.last().id;
  return std::max(kFirstOwnRouterId - 1, highest) + 1;
}

}  // namespace

std::expected<int, OwnRouterFault> AddOwnRouter(Databases& databases, RouterRecord record) {
  record.routername = record.routername.trimmed();
  if (record.routername.isEmpty()) {
    return Fault(OwnRouterError::kNoName);
  }
  const QList<RouterName> names = AllNames(databases);
  if (IsTaken(names, record.routername)) {
    return Fault(OwnRouterError::kNameTaken, record.routername);
  }
  const int id = NextId(names);
  return databases.AddRouter(id, record) ? std::expected<int, OwnRouterFault>(id)
                                         : Fault(OwnRouterError::kCannotWrite, record.routername);
}

std::expected<QList<int>, OwnRouterFault> ImportRouters(Databases& databases,
                                                        ForeignScripts& foreign,
                                                        const QByteArray& own_key,
                                                        const QString& file) {
  QFile opened(file);
  opened.open(QIODevice::ReadOnly);
  const auto author = ReadAuthor(opened.read(kMaxTextFileBytes));
  if (!author) {
    return Fault(OwnRouterError::kWrongSignature, file);
  }
  Problems problems;
  const QList<RouterSource> routers = ReadRouters(ReadTextFile(file, problems), file, {}, problems);
  if (HoldErrors(problems)) {
    return Fault(OwnRouterError::kCannotRead, FormatProblems(problems).trimmed());
  }
  const QList<RouterName> names = AllNames(databases);
  for (const RouterSource& router : routers) {
    const QString name = router.record.routername.trimmed();
    if (name.isEmpty()) {
      return Fault(OwnRouterError::kNoName);
    }
    if (IsTaken(names, name)) {
      return Fault(OwnRouterError::kNameTaken, name);
    }
  }
  if (routers.isEmpty()) {
    return Fault(OwnRouterError::kNoName);
  }
  QList<int> ids;
  for (const RouterSource& router : routers) {
    // First, so that no script of somebody else is ever taken for one of the user's own.
    const bool is_own = !author->key.isEmpty() && author->key == own_key;
    if (!is_own && !foreign.Note(NextId(AllNames(databases)), *author)) {
      return Fault(OwnRouterError::kCannotWrite, router.record.routername);
    }
    const auto id = AddOwnRouter(databases, router.record);
    if (!id) {
      return std::unexpected(id.error());
    }
    ids.append(*id);
  }
  return ids;
}

bool ExportRouter(const RouterRecord& record, const QString& file,
                  const std::optional<ExportSignature>& signature) {
  const QByteArray text = FormatRouter(record).toUtf8();
  const QByteArray bytes = signature ? SignText(text, signature->author, signature->key) : text;
  return !bytes.isEmpty() && SaveFile(file, bytes);
}

qsizetype NearestRouter(const QList<RouterName>& names, const QString& typed) {
  constexpr qsizetype kShortestWord = 3;
  qsizetype best = -1;
  qsizetype longest = kShortestWord - 1;
  const QString wanted = typed.trimmed().toLower();
  for (qsizetype i = 0; i < names.size(); ++i) {
    const QString name = names.at(i).name.toLower();
    const auto same = std::ranges::mismatch(name, wanted).in1 - name.begin();
    if (same > longest) {
      longest = same;
      best = i;
    }
  }
  return best;
}

}  // namespace quayline
