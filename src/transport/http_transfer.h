// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>
#include <QUrl>

#include <expected>

#include "async/task.h"

namespace quayline {

enum class TransferError {
  kBadAddress,    // not an address that may be fetched, also after a redirect
  kNoConnection,  // the name is unknown, no answer comes, or it is not HTTP
  kNotTrusted,    // no certificate that this system trusts
  kTimeout,       // nothing has come for too long
  kCutOff,        // the connection ended before the body did
};

// The six operations of an HTTP client that Download is made of: one GET request at a time, whose
// headers come first and whose body is read in chunks, whenever the reader wants the next one.
class HttpTransfer : public QObject {
  Q_OBJECT

 public:
  // For the next request. A request that runs goes on.
  virtual void SetUrl(const QUrl& url) = 0;
  // Starts a GET request and returns at once; ends the one before. `extra_headers` are lines that
  // end with CR LF.
  virtual void Execute(const QByteArray& extra_headers) = 0;
  // Until the headers are there, or the request has failed.
  virtual bool StillExecuting() const = 0;
  // The status line without a name, else the value of that header, or nothing where the answer has
  // none. An error when there is no answer.
  virtual std::expected<QByteArray, TransferError> GetHeader(const QByteArray& name = {}) const = 0;
  // The next `size` bytes of the body; fewer at its end, and none after it.
  virtual Task<std::expected<QByteArray, TransferError>> GetChunk(qsizetype size) = 0;
  // Ends the request.
  virtual void Cancel() = 0;

 Q_SIGNALS:
  // StillExecuting() may have changed, or there is more to read.
  void changed();
};

}  // namespace quayline
