// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QFlags>

#include <chrono>
#include <functional>
#include <limits>
#include <memory>
#include <optional>

#include "transport/http_transfer.h"

namespace quayline {

// How this computer is connected; nothing: not at all.
enum class Link { kModem = 1, kLan = 2, kProxy = 4 };
using Links = QFlags<Link>;

// What DLECode() reports.
enum class DownloadCode {
  kFailed = 1,
  kNotFound = 2,
  kNoHeaders = 3,
  kCancelled = 4,
  kNoConnection = 5,
  kNoFileToResume = 6,
  kCannotResume = 7,
  kUnauthorized = 401,
  kForbidden = 403
};

// Why a download failed, for a text that says more than its code.
enum class DownloadFailure { kNone, kTransfer, kDisk, kTooLarge, kNoLength };

// Fetches one file over HTTP into a local file, chunk by chunk. The names of its members are fixed.
//
// GetFileInformation() comes first. Its request stays open, and DownLoad() reads the body of it;
// DLResume() sends one of its own. Each of them is a task of its owner, who runs one at a time, and
// ends it by destroying it. Nothing is returned: the signals report everything, in a fixed order.
class Download final : public QObject {
  Q_OBJECT

 public:
  struct Options {
    QString URL = QStringLiteral("https://quayline.example/");
    QString SaveLocation = QStringLiteral("C:\\File1.tmp");
    qint32 CHUNK = 1024;           // bytes of one read
    bool KeepType = false;         // the file gets the extension of the address
    bool OnlineCheck = false;      // fails at once where the computer is not connected
    bool PromptOverwrite = false;  // has no effect, like the next one
    qint32 ROLLBACK = 0;
    qint32 max_bytes = std::numeric_limits<qint32>::max();  // of the file
  };

  explicit Download(std::unique_ptr<HttpTransfer> transfer, std::function<Links()> links = {},
                    QObject* parent = nullptr);

  Options options;

  Task<> GetFileInformation();
  Task<> DownLoad();
  Task<> DLResume();
  // Takes effect before the next chunk, or, before the headers are there, after them.
  void Cancel();
  void Pause(bool paused);

  bool AResume() const { return resume_supported_; }  // the answer was of HTTP 1.1
  bool ResumeSupported() const { return resume_supported_; }
  bool CCancel() const { return cancel_pending_; }
  bool CPause() const { return paused_; }
  bool Connected() const { return connected_; }
  bool FileExists() const { return file_exists_; }
  qint32 FileSize() const { return file_size_; }  // 0: the answer does not say it
  bool InDL() const { return in_download_; }      // stays set after a cancelled or failed transfer
  // Also kNoLength after a GetFileInformation() that found a file without a size.
  DownloadFailure Failure() const { return failure_; }
  std::optional<TransferError> FailedTransfer() const { return transfer_error_; }

 Q_SIGNALS:
  void DLComplete();
  void DLError(const QString& text);
  void DLECode(int code);
  void RecievedBytes(qint32 total);
  void Percent(qint32 percent);
  void Status(const QString& text);
  void Rate(const QString& rate);
  void TimeLeft(const QString& time);
  void ConnectionState(const QString& text);
  // Pause() was called.
  void pauseChanged();

 private:
  using Clock = std::chrono::steady_clock;

  bool TestConnection();
  // Whether a transfer can begin. If not, the reason is reported, unless it was cancelled.
  bool Prepare();
  void ReportNoConnection();
  void Refuse(DownloadCode code, const QString& status, const QString& error, bool exists);
  void NoteTransferError();
  void ReportNoHeaders();
  void ReportFailure();
  Task<bool> WaitForHeaders();
  bool TakeHeaders();
  Task<> Receive(QString path, QIODevice::OpenMode mode);
  Task<bool> ReceiveChunks(QFile& file, qint64 present);
  bool ReportProgress(qint64 present);
  Task<> WaitWhilePaused();
  QString TargetPath() const;

  std::unique_ptr<HttpTransfer> transfer_;
  std::function<Links()> links_;
  bool resume_supported_ = false;
  bool cancel_pending_ = false;
  bool paused_ = false;
  bool connected_ = false;
  bool file_exists_ = false;
  bool in_download_ = false;
  bool is_receiving_ = false;
  qint32 file_size_ = 0;
  qint64 received_ = 0;  // in this run
  Clock::time_point start_;
  DownloadFailure failure_ = DownloadFailure::kNone;
  std::optional<TransferError> transfer_error_;
};

}  // namespace quayline
