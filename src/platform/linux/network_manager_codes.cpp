// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/network_manager_codes.h"

#include <algorithm>
#include <iterator>

namespace quayline {

namespace {

constexpr char kPrefix[] = "org.freedesktop.NetworkManager.";

struct ErrorRow {
  const char* name;  // of the error, or its end
  SetupCode code;
};

// Errors of NetworkManager, without the beginning that they share.
constexpr ErrorRow kServiceErrors[] = {
    {"PermissionDenied", SetupCode::kAccessDenied},
    {"Settings.PermissionDenied", SetupCode::kAccessDenied},
    {"Settings.NotPrivileged", SetupCode::kAccessDenied},
    {"Settings.NotSupported", SetupCode::kNotSupported},
    {"Settings.ReadOnlyConnection", SetupCode::kNotConfigurable},
    {"UnknownDevice", SetupCode::kNotConfigurable},
    {"Device.IncompatibleConnection", SetupCode::kNotConfigurable},
    {"Device.InvalidConnection", SetupCode::kInvalidParameter},
    {"Device.NotActive", SetupCode::kNotEnabled},
    {"ConnectionNotActive", SetupCode::kNotEnabled},
    {"ConnectionNotAvailable", SetupCode::kNotEnabled},
    {"UnknownConnection", SetupCode::kBadInstance},
    {"Settings.InvalidConnection", SetupCode::kInvalidParameter},
    {"Settings.Connection.InvalidProperty", SetupCode::kInvalidParameter},
    {"Connection.InvalidProperty", SetupCode::kInvalidParameter},
    {"Connection.MissingProperty", SetupCode::kInvalidParameter},
    {"Connection.InvalidSetting", SetupCode::kInvalidParameter},
    {"Connection.MissingSetting", SetupCode::kInvalidParameter},
    {"InvalidArguments", SetupCode::kInvalidParameter},
    {"AgentManager.NoSecrets", SetupCode::kInvalidSecurity},
    {"SecretAgent.NoSecrets", SetupCode::kInvalidSecurity},
};

// Errors of the bus and of others on it, by their full names.
constexpr ErrorRow kOtherErrors[] = {
    {"org.freedesktop.DBus.Error.AccessDenied", SetupCode::kAccessDenied},
    {"org.freedesktop.DBus.Error.AuthFailed", SetupCode::kAccessDenied},
    {"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", SetupCode::kAccessDenied},
    {"org.freedesktop.PolicyKit1.Error.NotAuthorized", SetupCode::kAccessDenied},
    {"org.freedesktop.PolicyKit1.Error.Cancelled", SetupCode::kAccessDenied},
    {"org.freedesktop.DBus.Error.NoMemory", SetupCode::kOutOfMemory},
    {"org.freedesktop.DBus.Error.LimitsExceeded", SetupCode::kOutOfBounds},
    {"org.freedesktop.DBus.Error.InvalidArgs", SetupCode::kInvalidParameter},
    {"org.freedesktop.DBus.Error.InvalidSignature", SetupCode::kBadInstance},
    {"org.freedesktop.DBus.Error.UnknownObject", SetupCode::kBadInstance},
    {"org.freedesktop.DBus.Error.UnknownProperty", SetupCode::kBadInstance},
    {"org.freedesktop.DBus.Error.UnknownMethod", SetupCode::kNotSupported},
    {"org.freedesktop.DBus.Error.UnknownInterface", SetupCode::kNotSupported},
    {"org.freedesktop.DBus.Error.NotSupported", SetupCode::kNotSupported},
    {"org.freedesktop.DBus.Error.ServiceUnknown", SetupCode::kNotSupported},
    {"org.freedesktop.DBus.Error.NameHasNoOwner", SetupCode::kNotSupported},
    {"org.freedesktop.DBus.Error.Disconnected", SetupCode::kNotSupported},
    {"org.freedesktop.DBus.Error.NoServer", SetupCode::kNotSupported},
    {"org.freedesktop.DBus.Error.FileNotFound", SetupCode::kNotSupported},
    {"org.freedesktop.systemd1.NoSuchUnit", SetupCode::kNotSupported},
};

// A refused profile: the message begins with the setting that is at fault.
constexpr ErrorRow kSettings[] = {
    {"ipv4.address", SetupCode::kInvalidAddress},  // and "ipv4.addresses", "ipv4.address-data"
    {"ipv4.gateway", SetupCode::kInvalidGateway},
    {"ipv4.dhcp", SetupCode::kCannotConfigureDhcp},
};

constexpr const char* kServiceMissing[] = {
    "org.freedesktop.DBus.Error.ServiceUnknown", "org.freedesktop.DBus.Error.NameHasNoOwner",
    "org.freedesktop.DBus.Error.Disconnected",   "org.freedesktop.DBus.Error.NoServer",
    "org.freedesktop.DBus.Error.FileNotFound",   "org.freedesktop.systemd1.NoSuchUnit"};

template <size_t kSize>
SetupCode Find(const ErrorRow (&rows)[kSize], QStringView name) {
  const auto found = std::ranges::find_if(
      rows, [name](const ErrorRow& row) { return name == QLatin1String(row.name); });
  return found == std::end(rows) ? SetupCode::kUnknownFailure : found->code;
}

}  // namespace

SetupResult ResultOfError(const QDBusError& error) {
  const QString name = error.name();
  const QLatin1String prefix(kPrefix);
  const bool is_service = name.startsWith(prefix);
  SetupResult result{.code = is_service ? Find(kServiceErrors, name.sliced(prefix.size()))
                                        : Find(kOtherErrors, name),
                     .detail = error.message().simplified()};
  if (result.code == SetupCode::kInvalidParameter) {
    for (const ErrorRow& setting : kSettings) {
      if (result.detail.startsWith(QLatin1String(setting.name))) {
        result.code = setting.code;
      }
    }
  }
  result.is_service_missing = std::ranges::any_of(
      kServiceMissing, [&name](const char* missing) { return name == QLatin1String(missing); });
  return result;
}

SetupCode CodeOfStateReason(quint32 reason) {
  switch (reason) {
    case 4:  // the configuration failed
    case 5:  // no IP configuration could be had
    case 6:  // nor kept
      return SetupCode::kCannotConfigure;
    case 7:  // secrets were required and not given
      return SetupCode::kInvalidSecurity;
    case 15:  // DHCP could not be started
    case 16:  // or failed
    case 17:
      return SetupCode::kCannotConfigureDhcp;
    case 40:  // the cable was pulled out
      return SetupCode::kNotEnabled;
    case 64:  // another device has the address
      return SetupCode::kInvalidAddress;
    default:
      return SetupCode::kUnknownFailure;
  }
}

}  // namespace quayline
