// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHostAddress>
#include <QList>
#include <QString>

#include <chrono>
#include <utility>

namespace quayline {

// What one client may send. Everything beyond is refused, never stored.
inline constexpr qsizetype kMaxHeadBytes = qsizetype{32} << 10;
inline constexpr qsizetype kMaxTargetBytes = qsizetype{8} << 10;
inline constexpr qsizetype kMaxHeaders = 100;
inline constexpr qsizetype kMaxBodyBytes = qsizetype{1} << 20;
inline constexpr qsizetype kMaxFormFields = 2000;

struct HttpRequest {
  QByteArray method;                                 // as sent: "GET", "POST", ...
  QString path;                                      // decoded, begins with "/"
  QByteArray query;                                  // as sent, without "?"
  QList<std::pair<QByteArray, QByteArray>> headers;  // names in lower case
  QByteArray body;
  bool keep_alive = false;
  QHostAddress peer;  // the client; set by the server

  // The first header of that name (given in lower case); empty if it is missing.
  QByteArray Header(QByteArrayView name) const;
};

enum class ParseStatus { kIncomplete, kComplete, kRefused };

struct ParsedRequest {
  ParseStatus status = ParseStatus::kIncomplete;
  HttpRequest request;     // kComplete
  qsizetype consumed = 0;  // kComplete: the bytes up to the end of the body
  int refusal = 0;         // kRefused: the HTTP status for the reason
};

// Reads the first request of `bytes`. HTTP/1.0 and HTTP/1.1 with Content-Length; no chunks, no
// folded headers, no lone line feeds. kIncomplete asks for more bytes; a refused connection cannot
// be read any further, since it is not known where the next request begins.
ParsedRequest ParseRequest(QByteArrayView bytes);

struct HttpResponse {
  int status = 200;
  QByteArray content_type = "text/html; charset=utf-8";
  QList<std::pair<QByteArray, QByteArray>> headers;
  QByteArray body;
  std::chrono::milliseconds hold{0};  // how long the answer is kept back, as for a long poll
};

HttpResponse RedirectTo(const QByteArray& location);

// The bytes on the wire. With `head_only` the body is counted but not sent.
QByteArray FormatResponse(const HttpResponse& response, bool keep_alive, bool head_only);

// The fields of a posted form (application/x-www-form-urlencoded, UTF-8).
class FormFields final {
 public:
  // A "%" without two hex digits after it is kept; fields past kMaxFormFields are dropped.
  explicit FormFields(QByteArrayView body);

  bool Has(const QString& name) const;
  // The first field of that name; empty if it is missing.
  QString Value(const QString& name) const;
  // Names and values, in their order.
  const QList<std::pair<QString, QString>>& All() const { return fields_; }

 private:
  QList<std::pair<QString, QString>> fields_;
};

QByteArray PercentDecoded(QByteArrayView text);

}  // namespace quayline
