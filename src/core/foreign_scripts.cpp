// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/foreign_scripts.h"

#include <QCryptographicHash>

namespace quayline {

namespace {

const QString kOrigin = QStringLiteral("origin");
const QString kAuthor = QStringLiteral("author");
const QString kKey = QStringLiteral("key");
const QString kAllowed = QStringLiteral("allowed");
const QString kForeign = QStringLiteral("imported");
const QString kAuthors = QStringLiteral("authors");

QString SectionOf(int router_id) { return QStringLiteral("router %1").arg(router_id); }

QString DigestOf(const RouterRecord& router) {
  QCryptographicHash hash(QCryptographicHash::Sha256);
  for (const QString& script :
       {router.routercommands, router.routerportpage, router.routerremove}) {
    hash.addData(script.toUtf8());
    hash.addData(QByteArrayView("\0", 1));
  }
  return QString::fromLatin1(hash.result().toHex());
}

QString Hex(const QByteArray& key) { return QString::fromLatin1(key.toHex()); }

}  // namespace

ForeignScripts::ForeignScripts(const QString& program_folder)
    : store_(program_folder + QStringLiteral("/sharedscripts.ini")) {}

std::optional<ScriptOrigin> ForeignScripts::OriginOf(int router_id) const {
  const QString section = SectionOf(router_id);
  if (store_.Value(section, kOrigin) != kForeign) {
    return std::nullopt;
  }
  ScriptOrigin origin;
  origin.author = {.name = store_.Value(section, kAuthor),
                   .key = QByteArray::fromHex(store_.Value(section, kKey).toLatin1())};
  origin.is_known_author =
      origin.IsSigned() && !store_.Value(kAuthors, Hex(origin.author.key)).isEmpty();
  return origin;
}

bool ForeignScripts::Note(int router_id, const ScriptAuthor& author) {
  const QString section = SectionOf(router_id);
  return store_.SetValues({{.section = section, .key = kOrigin, .value = kForeign},
                           {.section = section, .key = kAuthor, .value = author.name},
                           {.section = section, .key = kKey, .value = Hex(author.key)},
                           {.section = section, .key = kAllowed, .value = QString()}});
}

bool ForeignScripts::Forget(int router_id) {
  const QString section = SectionOf(router_id);
  return !OriginOf(router_id) ||
         store_.SetValues({{.section = section, .key = kOrigin, .value = QString()},
                           {.section = section, .key = kAllowed, .value = QString()}});
}

bool ForeignScripts::IsAllowed(const RouterRecord& router) const {
  return store_.Value(SectionOf(router.id), kAllowed) == DigestOf(router);
}

bool ForeignScripts::Allow(const RouterRecord& router) {
  QList<IniValue> values{
      {.section = SectionOf(router.id), .key = kAllowed, .value = DigestOf(router)}};
  if (const auto origin = OriginOf(router.id); origin && origin->IsSigned()) {
    values.append({.section = kAuthors,
                   .key = Hex(origin->author.key),
                   .value = QStringLiteral("name: ") + origin->author.name});
  }
  return store_.SetValues(values);
}

}  // namespace quayline
