// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/download.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <utility>

#include "async/wait.h"
#include "transport/download_text.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kPausedInterval = 100ms;
constexpr qint32 kLeastChunk = 2;  // a chunk of one byte is the last one

}  // namespace

Download::Download(std::unique_ptr<HttpTransfer> transfer, std::function<Links()> links,
                   QObject* parent)
    : QObject(parent), transfer_(std::move(transfer)), links_(std::move(links)) {}

void Download::Cancel() {
  cancel_pending_ = true;
  Q_EMIT Status(QStringLiteral("Cancelling.."));
  if (is_receiving_ && !paused_) {
    transfer_->Cancel();  // the next chunk may never come
  }
}

void Download::Pause(bool paused) {
  paused_ = paused;
  if (!paused) {
    Q_EMIT Status(QStringLiteral("Unpausing"));
  }
  Q_EMIT pauseChanged();
}

bool Download::TestConnection() {
  const Links links = links_ ? links_() : Links();
  constexpr std::pair<Link, const char*> kTexts[] = {
      {Link::kModem, "Connected Via Modem."},
      {Link::kLan, "Connected Via LAN."},
      {Link::kProxy, "Connected Through A Proxy."},
  };
  for (const auto& [link, text] : kTexts) {
    if (links.testFlag(link)) {
      Q_EMIT ConnectionState(QLatin1String(text));
    }
  }
  connected_ = links != Links();
  return connected_;
}

void Download::ReportNoConnection() {
  Q_EMIT DLECode(static_cast<int>(DownloadCode::kNoConnection));
  Q_EMIT DLError(QStringLiteral("No Connection Found!"));
  Q_EMIT Status(QStringLiteral("Download aborted, no connection present!"));
}

Task<bool> Download::WaitForHeaders() {
  co_await Until([this] {
    return !transfer_->StillExecuting();
  }).WokenBy(transfer_.get(), &HttpTransfer::changed);
  co_return transfer_->GetHeader().has_value();
}

Task<> Download::GetFileInformation() {
  cancel_pending_ = false;
  file_exists_ = false;
  file_size_ = 0;
  failure_ = DownloadFailure::kNone;
  transfer_error_.reset();
  if (options.OnlineCheck && !TestConnection()) {
    ReportNoConnection();
    co_return;
  }
  transfer_->SetUrl(QUrl(options.URL));
  transfer_->Execute({});
  Q_EMIT Status(QStringLiteral("Initiating Connection."));
  const bool has_headers = co_await WaitForHeaders();
  if (!has_headers && !cancel_pending_) {
    ReportNoHeaders();
    co_return;
  }
  Q_EMIT Status(QStringLiteral("Connection Accepted, Retrieving File Information."));
  if (cancel_pending_) {
    cancel_pending_ = false;
    Q_EMIT DLECode(static_cast<int>(DownloadCode::kCancelled));
    Q_EMIT Status(QStringLiteral("cancelled."));
  } else if (!TakeHeaders()) {
    ReportNoHeaders();
  }
}

// What the answer's status and headers say. False when they make no sense.
bool Download::TakeHeaders() {
  const QByteArray line = transfer_->GetHeader().value_or(QByteArray());
  const QByteArray status = line.mid(9, 3);
  if (status == "401") {
    Refuse(DownloadCode::kUnauthorized, QStringLiteral("Unauthorized Access, Download Terminated!"),
           QStringLiteral("Unauthorized Access!"), true);
    return true;
  }
  if (status == "403") {
    Refuse(DownloadCode::kForbidden, QStringLiteral("Access Denied, Download Terminated!"),
           QStringLiteral("Access Denied!"), true);
    return true;
  }
  if (status == "404") {
    Q_EMIT DLError(QStringLiteral("File Not Found!"));
    Refuse(DownloadCode::kNotFound, QStringLiteral("File Not Found!"), {}, false);
    return true;
  }
  resume_supported_ = line.mid(5, 3) == "1.1";
  file_exists_ = true;
  start_ = Clock::now() - 1s;  // so that the first rate has a time to divide by
  bool is_number = true;
  const QByteArray length = transfer_->GetHeader("Content-Length").value_or(QByteArray());
  file_size_ = length.isEmpty() ? 0 : length.toInt(&is_number);
  if (!is_number || file_size_ < 0) {
    file_size_ = 0;
    failure_ = DownloadFailure::kTooLarge;
    return false;
  }
  if (file_size_ == 0) {
    failure_ = DownloadFailure::kNoLength;
  }
  Q_EMIT Status(QStringLiteral("Retrieving File Information Complete!"));
  return true;
}

void Download::Refuse(DownloadCode code, const QString& status, const QString& error, bool exists) {
  Q_EMIT Status(status);
  Q_EMIT DLECode(static_cast<int>(code));
  if (!error.isEmpty()) {
    Q_EMIT DLError(error);
    resume_supported_ = false;
  }
  transfer_->Cancel();
  file_exists_ = exists;
  file_size_ = 0;
}

void Download::NoteTransferError() {
  if (const auto header = transfer_->GetHeader(); !header) {
    transfer_error_ = header.error();
    failure_ = DownloadFailure::kTransfer;
  }
}

void Download::ReportNoHeaders() {
  NoteTransferError();
  file_size_ = 0;
  transfer_->Cancel();
  Q_EMIT DLError(QStringLiteral("Error Reading File Headers."));
  Q_EMIT Status(QStringLiteral("Error Reading File Headers!"));
  Q_EMIT DLECode(static_cast<int>(DownloadCode::kNoHeaders));
}

void Download::ReportFailure() {
  transfer_->Cancel();
  Q_EMIT DLError(QStringLiteral("Error Downloading File from : ") + options.URL);
  Q_EMIT Status(QStringLiteral("Download Aborted Due To Error In Download!"));
  Q_EMIT DLECode(static_cast<int>(DownloadCode::kFailed));
}

QString Download::TargetPath() const {
  return options.KeepType ? WithExtensionOf(options.URL, options.SaveLocation)
                          : options.SaveLocation;
}

bool Download::Prepare() {
  if (cancel_pending_) {
    return false;
  }
  if (options.OnlineCheck && !connected_) {
    ReportNoConnection();
    transfer_->Cancel();
    return false;
  }
  transfer_->SetUrl(QUrl(options.URL));
  return true;
}

Task<> Download::DownLoad() {
  if (!Prepare()) {
    co_return;
  }
  const QString path = TargetPath();
  QFile::remove(path);
  // Never a file that somebody else has put there in the meantime.
  co_await Receive(path, QIODevice::WriteOnly | QIODevice::NewOnly);
}

Task<> Download::DLResume() {
  if (!Prepare()) {
    co_return;
  }
  const QString path = TargetPath();
  const QFileInfo file(path);
  if (!file.isFile()) {
    Q_EMIT DLError(QStringLiteral("Resume File Not Found!"));
    Q_EMIT DLECode(static_cast<int>(DownloadCode::kNoFileToResume));
    Q_EMIT Status(QStringLiteral("Resume File Not Found, Aborting Download!"));
    co_return;
  }
  if (!resume_supported_) {
    Q_EMIT DLError(QStringLiteral("Resume Not Supported!"));
    Q_EMIT DLECode(static_cast<int>(DownloadCode::kCannotResume));
    Q_EMIT Status(QStringLiteral("Resume NotSupported, Aborting Download!"));
    co_return;
  }
  const qint64 present = file.size();
  transfer_->Execute("Range: bytes=" + QByteArray::number(present) + "-\r\n");
  const bool has_headers = co_await WaitForHeaders();
  if (!has_headers) {
    NoteTransferError();
    ReportFailure();
    co_return;
  }
  co_await Receive(path, QIODevice::ReadWrite | QIODevice::ExistingOnly);
}

// What the file has already stays before what comes.
Task<> Download::Receive(QString path, QIODevice::OpenMode mode) {
  QFile file(path);
  received_ = 0;
  failure_ = DownloadFailure::kNone;
  if (!file.open(mode | QIODevice::Unbuffered) || !file.seek(file.size())) {
    failure_ = DownloadFailure::kDisk;
    ReportFailure();
    co_return;
  }
  const qint64 present = file.size();
  Q_EMIT Status(QStringLiteral("Opening ") + path + QStringLiteral("..."));
  in_download_ = true;
  is_receiving_ = true;
  const bool is_whole = co_await ReceiveChunks(file, present);
  is_receiving_ = false;
  file.close();
  if (!is_whole && cancel_pending_) {
    cancel_pending_ = false;
    failure_ = DownloadFailure::kNone;
    Q_EMIT DLECode(static_cast<int>(DownloadCode::kCancelled));
    Q_EMIT Status(QStringLiteral("Cancelled."));
    co_return;
  }
  if (is_whole && QFileInfo(path).size() != present + received_) {
    failure_ = DownloadFailure::kDisk;
  }
  if (failure_ != DownloadFailure::kNone) {
    ReportFailure();
    co_return;
  }
  in_download_ = false;
  Q_EMIT DLComplete();
  Q_EMIT Status(QStringLiteral("Download Successful!"));
  transfer_->Cancel();
}

// True at the end of the body; false after a failure, or when a cancel is pending.
Task<bool> Download::ReceiveChunks(QFile& file, qint64 present) {
  while (!cancel_pending_) {
    const auto chunk = co_await transfer_->GetChunk(std::max(options.CHUNK, kLeastChunk));
    if (!chunk) {
      failure_ = DownloadFailure::kTransfer;
      transfer_error_ = chunk.error();
      co_return false;
    }
    if (chunk->isEmpty()) {
      co_return true;
    }
    if (present + received_ + chunk->size() > options.max_bytes) {
      failure_ = DownloadFailure::kTooLarge;
      co_return false;
    }
    if (file.write(*chunk) != chunk->size()) {
      failure_ = DownloadFailure::kDisk;
      co_return false;
    }
    received_ += chunk->size();
    if (!ReportProgress(present)) {
      failure_ = DownloadFailure::kNoLength;
      co_return false;
    }
    co_await WaitWhilePaused();
    if (chunk->size() == 1) {
      co_return true;
    }
  }
  co_return false;
}

// False when there is no percentage, because the answer does not say how long the file is.
bool Download::ReportProgress(qint64 present) {
  const std::chrono::duration<double> time = Clock::now() - start_;
  const double rate = static_cast<double>(received_) / time.count();
  const qint64 total = present + received_;
  Q_EMIT Rate(RateText(rate));
  Q_EMIT TimeLeft(TimeText(static_cast<double>(file_size_ - total) / rate));
  Q_EMIT RecievedBytes(static_cast<qint32>(total));
  const double percent = static_cast<double>(total) * 100 / static_cast<double>(file_size_);
  if (percent > std::numeric_limits<qint32>::max()) {  // also where the size is not known
    return false;
  }
  Q_EMIT Percent(static_cast<qint32>(std::nearbyint(percent)));
  Q_EMIT Status(QStringLiteral("Recieving File..."));
  return true;
}

Task<> Download::WaitWhilePaused() {
  while (paused_) {
    Q_EMIT Status(QStringLiteral("Paused."));
    co_await Until([this] { return !paused_; })
        .WokenBy(this, &Download::pauseChanged)
        .AtMost(kPausedInterval);
  }
}

}  // namespace quayline
