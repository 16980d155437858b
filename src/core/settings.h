// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "core/ini_section.h"

namespace quayline {

// The keys of "settings.ini", section "main", in the program's folder.
namespace setting {
inline constexpr char kRouter[] = "router";
inline constexpr char kRouterIp[] = "routerip";
inline constexpr char kHttpPort[] = "httpport";
inline constexpr char kHttpType[] = "httptype";
inline constexpr char kRouterUsername[] = "routerusername";
inline constexpr char kRouterPassword[] = "routerpassword";  // in clear, as typed
inline constexpr char kShowPassword[] = "showpassword";
inline constexpr char kLanguage[] = "language";
inline constexpr char kShowGettingStarted[] = "showgettingstarted";
inline constexpr char kCheckForUpdates[] = "checkforupdates";
inline constexpr char kLastCheck[] = "lastcheck";
inline constexpr char kSilentMode[] = "silentmode";
inline constexpr char kScriptThrottle[] = "scriptthrottle";
inline constexpr char kVerifyAfterUpdate[] = "verifyafterupdate";  // "0": off
inline constexpr char kStaticIp[] = "staticip";
inline constexpr char kListColumns[] = "listcolumns";  // widths that the user gave: "120,,80"
inline constexpr char kWindowSize[] = "windowsize";    // of the main window: "960,720"
}  // namespace setting

// The user's settings. Each value is written at the moment it changes: there is no save step. Two
// instances of the program may write at once: each write reads the file again. What could not be
// written is remembered and written with a later change, or by StorePending().
class Settings final {
 public:
  explicit Settings(QString file_name);

  QString Value(const char* key) const;
  // False when the file could not be written; Value() is the new one even then.
  bool SetValue(const char* key, const QString& value);
  // Writes what could not be written before. False when something is still not written.
  bool StorePending() { return section_.StorePending(); }

  // "True" and "False" in any case, and numbers, of which 0 is false. Any other text gives
  // `otherwise`.
  bool Boolean(const char* key, bool otherwise) const;
  bool SetBoolean(const char* key, bool value);

  const QString& FileName() const { return section_.FileName(); }

 private:
  IniSection section_;
};

}  // namespace quayline
