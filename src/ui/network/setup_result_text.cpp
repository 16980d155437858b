// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/setup_result_text.h"

#include <algorithm>
#include <iterator>

#include "ui/network/static_address_texts.h"

namespace quayline {

namespace {

struct CodeText {
  SetupCode code;
  const Message& text;
};

constexpr CodeText kCodeTexts[] = {
    {SetupCode::kNotSupported, message::kSetupNotSupported},
    {SetupCode::kUnknownFailure, message::kSetupUnknownFailure},
    {SetupCode::kInvalidMask, message::kSetupInvalidMask},
    {SetupCode::kBadInstance, message::kSetupBadInstance},
    {SetupCode::kInvalidParameter, message::kSetupInvalidParameter},
    {SetupCode::kInvalidAddress, message::kSetupInvalidAddress},
    {SetupCode::kInvalidGateway, message::kSetupInvalidGateway},
    {SetupCode::kInvalidSecurity, message::kSetupInvalidSecurity},
    {SetupCode::kCannotConfigure, message::kSetupCannotConfigure},
    {SetupCode::kCannotConfigureDhcp, message::kSetupCannotConfigureDhcp},
    {SetupCode::kNotEnabled, message::kSetupNotEnabled},
    {SetupCode::kInvalidFrame, message::kSetupInvalidFrame},
    {SetupCode::kInvalidNetwork, message::kSetupInvalidNetwork},
    {SetupCode::kOutOfBounds, message::kSetupOutOfBounds},
    {SetupCode::kAccessDenied, message::kSetupAccessDenied},
    {SetupCode::kOutOfMemory, message::kSetupOutOfMemory},
    {SetupCode::kNotConfigurable, message::kSetupNotConfigurable},
    {SetupCode::kDhcpNotEnabled, message::kSetupDhcpNotEnabled},
};

const Message& CodeMessage(SetupCode code) {
  const auto* found = std::ranges::find(kCodeTexts, code, &CodeText::code);
  return found == std::end(kCodeTexts) ? message::kSetupUnknown : found->text;
}

const Message& UndoMessage(SetupResult::Undo undo) {
  switch (undo) {
    case SetupResult::Undo::kRolledBack:
      return message::kRolledBack;
    case SetupResult::Undo::kFailed:
      return message::kRollBackFailed;
    case SetupResult::Undo::kUnknown:
      return message::kChangeUnknown;
    case SetupResult::Undo::kNotNeeded:
      break;
  }
  return message::kNothingChanged;
}

}  // namespace

QString SetupResultText(const SetupResult& result, const Translator& translator) {
  if (result.is_service_missing) {
    return translator.Text(message::kNoNetworkService);
  }
  QStringList parts{translator.Text(CodeMessage(result.code)),
                    translator.Text(UndoMessage(result.undo))};
  if (!result.detail.isEmpty()) {
    parts.append(translator.Text(message::kSystemSays).arg(result.detail));
  }
  return parts.join(QStringLiteral("\n\n"));
}

const Message& FaultText(AddressFault fault) {
  switch (fault) {
    case AddressFault::kNoAddress:
      break;
    case AddressFault::kNotOfComputer:
      return message::kFaultNotOfComputer;
    case AddressFault::kNoMask:
      return message::kFaultNoMask;
    case AddressFault::kOutsideNetwork:
      return message::kFaultOutside;
    case AddressFault::kNetworkItself:
      return message::kFaultNetwork;
    case AddressFault::kBroadcast:
      return message::kFaultBroadcast;
    case AddressFault::kRoutersOwn:
      return message::kFaultRouters;
  }
  return message::kFaultNoAddress;
}

}  // namespace quayline
