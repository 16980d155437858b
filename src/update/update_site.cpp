// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/update_site.h"

namespace quayline {

namespace {

const QString kDayFormat = QStringLiteral("MM/dd/yyyy");
constexpr qsizetype kKeyBytes = 32;
// Of the settings: the serial of the last manifest that was signed with a key, by the key.
const QString kSerials = QStringLiteral("updateserials");

// A text that is no key is not the same as none: no signature fits it.
QByteArray KeyOf(const QByteArray& hex) {
  const QByteArray key = QByteArray::fromHex(hex);
  return hex.isEmpty() || key.size() == kKeyBytes ? key : QByteArray("invalid");
}

QString SerialKey(const QByteArray& key) { return QString::fromLatin1(key.toHex()); }

}  // namespace

QUrl UpdateSite::Page(const char* path) const {
  QUrl url = base;
  url.setPath(QLatin1String(path));
  return url;
}

UpdateSite FindUpdateSite(const AppContext& context) {
  UpdateSite site{.base = {}, .key = KeyOf(QUAYLINE_UPDATE_KEY)};
  const QString named = context.settings.Value(setting::kUpdateSite);
  if (named.isEmpty()) {
    site.base = context.maker_site.Exists() ? QUrl(context.maker_site.base) : QUrl();
    return site;
  }
  site.base = QUrl(named);
  const QString key = context.settings.Value(setting::kUpdateKey);
  if (!key.isEmpty()) {
    site.key = KeyOf(key.toLatin1());
  }
  return site;
}

bool TakeDailyCheck(AppContext& context, const QDate& today) {
  const QString day = today.toString(kDayFormat);
  if (context.settings.Value(setting::kCheckForUpdates).toDouble() != 1 ||
      context.settings.Value(setting::kLastCheck) == day || !FindUpdateSite(context).Exists()) {
    return false;
  }
  context.settings.SetValue(setting::kLastCheck, day);
  return true;
}

void NoteManifest(AppContext& context, const Manifest& manifest) {
  if (const QByteArray key = FindUpdateSite(context).key; !key.isEmpty()) {
    context.settings.SetValues(
        {{.section = kSerials, .key = SerialKey(key), .value = QString::number(manifest.serial)}});
  }
}

qint64 LeastSerial(const AppContext& context) {
  return context.settings.Value(kSerials, SerialKey(FindUpdateSite(context).key)).toLongLong();
}

}  // namespace quayline
