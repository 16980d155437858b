// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/update_error.h"

namespace quayline {

namespace {

constexpr Message kManifestTooLarge{
    "The server's answer is not a description of updates: it is too large."};
constexpr Message kNotSigned{
    "The description of updates is not signed by Quayline's makers, so nothing was updated."};
constexpr Message kWrongSignature{
    "The signature of the description of updates is wrong: it was changed on the way, or is not of "
    "Quayline's makers. Nothing was updated."};
constexpr Message kIncomplete{
    "The description of updates does not say everything that it should, so nothing was updated."};
constexpr Message kExpired{
    "The description of updates is out of date, so nothing was updated. Is the date of this "
    "computer right?"};
constexpr Message kOlder{
    "The server sent an older description of updates than before, so nothing was updated."};

constexpr Message kBadAddress{
    "The address is not safe: updates come from https addresses only, also after a redirect."};
constexpr Message kNoConnection{
    "The server does not answer. Is this computer connected to the internet?"};
constexpr Message kNotTrusted{
    "This computer does not trust the server's certificate, so nothing was fetched."};
constexpr Message kTimeout{"The server sent nothing for too long."};
constexpr Message kCutOff{"The connection ended before the file was complete."};
constexpr Message kDisk{"The file cannot be written. Is the disk full?"};
constexpr Message kTooLarge{"The file on the server is too large."};
constexpr Message kNoLength{"The server does not say how large the file is."};

const Message& TextOfTransfer(TransferError error) {
  switch (error) {
    case TransferError::kBadAddress:
      return kBadAddress;
    case TransferError::kNoConnection:
      return kNoConnection;
    case TransferError::kNotTrusted:
      return kNotTrusted;
    case TransferError::kTimeout:
      return kTimeout;
    case TransferError::kCutOff:
      break;
  }
  return kCutOff;
}

}  // namespace

const Message& TextOf(ManifestError error) {
  switch (error) {
    case ManifestError::kTooLarge:
      return kManifestTooLarge;
    case ManifestError::kNotSigned:
      return kNotSigned;
    case ManifestError::kWrongSignature:
      return kWrongSignature;
    case ManifestError::kExpired:
      return kExpired;
    case ManifestError::kOlder:
      return kOlder;
    case ManifestError::kIncomplete:
      break;
  }
  return kIncomplete;
}

const Message* TextOf(const Download& download) {
  switch (download.Failure()) {
    case DownloadFailure::kNone:
      return nullptr;
    case DownloadFailure::kDisk:
      return &kDisk;
    case DownloadFailure::kTooLarge:
      return &kTooLarge;
    case DownloadFailure::kNoLength:
      return &kNoLength;
    case DownloadFailure::kTransfer:
      break;
  }
  return &TextOfTransfer(download.FailedTransfer().value_or(TransferError::kCutOff));
}

}  // namespace quayline
