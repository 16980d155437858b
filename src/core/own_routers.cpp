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

std::unexpected<OwnRouterFault> Fault(OwnRouterError error, const QString& name = {}) {
  return std::unexpected(OwnRouterFault{.error = error, .name = name});
}

// Nothing where the IDs are used up.
std::optional<int> NextId(const QList<RouterName>& names, qsizetype count) {
  const int highest =
      std::max(kFirstOwnRouterId - 1, names.isEmpty() ? kFirstOwnRouterId - 1 : names.last().id);
  return count > std::numeric_limits<int>::max() - highest ? std::nullopt
                                                           : std::optional(highest + 1);
}

// Adds the routers one after the other. Each ID is noted as that of `author`, or as the user's own,
// before its row is there: an interrupted import may have noted it for another router.
std::expected<QList<int>, OwnRouterFault> AddEach(Databases& databases, ForeignScripts& foreign,
                                                  const QList<RouterRecord>& records,
                                                  const std::optional<ScriptAuthor>& author) {
  QList<RouterName> names = AllNames(databases);
  const std::optional<int> first = NextId(names, records.size());
  QList<int> ids;
  for (RouterRecord record : records) {
    record.routername = record.routername.trimmed();
    if (record.routername.isEmpty()) {
      return Fault(OwnRouterError::kNoName);
    }
    if (IsTaken(names, record.routername)) {
      return Fault(OwnRouterError::kNameTaken, record.routername);
    }
    const int id = first.value_or(0) + static_cast<int>(ids.size());
    if (!first || !(author ? foreign.Note(id, *author) : foreign.Forget(id)) ||
        !databases.AddRouter(id, record)) {
      return Fault(OwnRouterError::kCannotWrite, record.routername);
    }
    names.append({.id = id, .name = record.routername});
    ids.append(id);
  }
  return ids;
}

std::expected<QList<int>, OwnRouterFault> AddAll(Databases& databases, ForeignScripts& foreign,
                                                 const QList<RouterRecord>& records,
                                                 const std::optional<ScriptAuthor>& author) {
  std::expected<QList<int>, OwnRouterFault> ids =
      Fault(OwnRouterError::kCannotWrite, records.first().routername);
  const auto add = [&] {
    ids = AddEach(databases, foreign, records, author);
    return ids.has_value();
  };
  if (!databases.ChangeRouters(add) && ids) {
    return Fault(OwnRouterError::kCannotWrite, records.first().routername);
  }
  return ids;
}

}  // namespace

std::expected<int, OwnRouterFault> AddOwnRouter(Databases& databases, ForeignScripts& foreign,
                                                const RouterRecord& record,
                                                const std::optional<ScriptAuthor>& author) {
  const auto ids = AddAll(databases, foreign, {record}, author);
  return ids ? std::expected<int, OwnRouterFault>(ids->first()) : std::unexpected(ids.error());
}

std::expected<QList<int>, OwnRouterFault> ImportRouters(Databases& databases,
                                                        ForeignScripts& foreign,
                                                        const QByteArray& own_key,
                                                        const QString& file) {
  QFile opened(file);
  opened.open(QIODevice::ReadOnly);
  const auto author = ReadAuthor(opened.read(kMaxTextFileBytes));
  if (!author) {
    return Fault(OwnRouterError::kWrongSignature);
  }
  Problems problems;
  const QList<RouterSource> routers = ReadRouters(ReadTextFile(file, problems), file, {}, problems);
  if (HoldErrors(problems)) {
    return std::unexpected(
        OwnRouterFault{.error = OwnRouterError::kCannotRead, .problems = problems});
  }
  QList<RouterRecord> records;
  for (const RouterSource& router : routers) {
    records.append(router.record);
  }
  if (records.isEmpty()) {
    return Fault(OwnRouterError::kNoName);
  }
  const bool is_own = !author->key.isEmpty() && author->key == own_key;
  return AddAll(databases, foreign, records, is_own ? std::nullopt : std::optional(*author));
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
