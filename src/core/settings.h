// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <string_view>

#include "core/ini_store.h"
#include "i18n/translator.h"

namespace quayline {

// A key of "settings.ini", section "main", in the program's folder, and the value that counts where
// the file has none.
struct Setting {
  const char* key;
  const char* standard = "";

  constexpr bool IsOn() const { return std::string_view(standard) == "True"; }
  QString Standard() const { return QString::fromLatin1(standard); }
};

namespace setting {
inline constexpr Setting kRouter{"router"};
inline constexpr Setting kRouterIp{"routerip"};
inline constexpr Setting kHttpPort{"httpport", "80"};
inline constexpr Setting kHttpType{"httptype", "http://"};
inline constexpr Setting kRouterUsername{"routerusername"};
inline constexpr Setting kRouterPassword{"routerpassword"};  // in clear, as typed
inline constexpr Setting kShowPassword{"showpassword", "0"};
inline constexpr Setting kLanguage{"language", kEnglish};
inline constexpr Setting kShowGettingStarted{"showgettingstarted", "0"};
inline constexpr Setting kCheckForUpdates{"checkforupdates", "0"};
inline constexpr Setting kLastCheck{"lastcheck"};
inline constexpr Setting kSilentMode{"silentmode", "True"};
inline constexpr Setting kScriptThrottle{"scriptthrottle", "True"};  // of the windows' jobs
inline constexpr Setting kVerifyAfterUpdate{"verifyafterupdate", "1"};
inline constexpr Setting kJobDetails{"jobdetails", "False"};  // page and log of a job are shown
inline constexpr Setting kStaticIp{"staticip"};
inline constexpr Setting kTestSite{"testsite"};  // the site that tests ports; empty: the maker's
inline constexpr Setting kUpdateSite{"updatesite"};  // where updates come from; empty: the maker's
inline constexpr Setting kUpdateKey{"updatekey"};    // whose signature that site's updates need
inline constexpr Setting kUseInstaller{"useinstaller", "False"};  // in spite of a package manager
inline constexpr Setting kListColumns{"listcolumns"};  // widths that the user gave: "120,,80"
inline constexpr Setting kWindowSize{"windowsize"};    // of the main window: "960,720"
}  // namespace setting

// The user's settings. Each value is written at the moment it changes: there is no save step. Two
// instances of the program may write at once: each write reads the file again. What could not be
// written is remembered, and written with a later change or when the disk has room again.
class Settings final : public QObject {
  Q_OBJECT

 public:
  explicit Settings(QString file_name);

  // Whether the file has a value.
  bool IsSet(const Setting& setting) const;
  // The setting's standard value where the file has none.
  QString Value(const Setting& setting) const;
  // A value of another section, or an empty text.
  QString Value(const QString& section, const QString& key) const;
  // False when the file could not be written; Value() is the new one even then.
  bool SetValue(const Setting& setting, const QString& value);
  // Changes all of them in one write: the file has either all old values or all new ones.
  bool SetValues(const QList<IniValue>& values);
  // Writes what could not be written before. False when it is still not written.
  bool StorePending();

  // "True" and "False" in any case, and numbers, of which 0 is false. Any other text gives the
  // setting's standard value.
  bool Boolean(const Setting& setting) const;
  bool SetBoolean(const Setting& setting, bool value);

  const QString& FileName() const { return store_.FileName(); }

 Q_SIGNALS:
  // A value cannot be written, and is tried again every few seconds. Not repeated meanwhile.
  void writeFailed();

 private:
  bool NoteStored(bool is_stored);

  IniStore store_;
  QTimer retry_timer_;
};

// The place of a setting in the file, with a new value.
IniValue ValueOf(const Setting& setting, const QString& value);

}  // namespace quayline
