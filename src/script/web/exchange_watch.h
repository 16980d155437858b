// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace quayline {

// What the head of an HTTP message says about its body.
struct HttpHead {
  QByteArray first_line;
  bool is_chunked = false;
  qint64 length = -1;  // -1: not declared
};

// Collects a message's head, byte by byte, up to a limit.
class HeadReader final {
 public:
  // Takes bytes up to the end of the head and returns how many it took.
  qsizetype Take(QByteArrayView bytes);
  bool IsComplete() const { return is_complete_; }
  // Too long for a head, or not beginning like one.
  bool IsInvalid() const;
  HttpHead Read() const;
  const QByteArray& Text() const { return text_; }

 private:
  QByteArray text_;
  bool is_complete_ = false;
};

// Follows the bytes of one connection and knows the state of its current exchange (a request and
// its answer). It changes nothing and stores no content.
class ExchangeWatch {
 public:
  virtual ~ExchangeWatch() = default;

  // Bytes from the browser. False when they begin a request that this connection may not carry.
  virtual bool TakeRequest(QByteArrayView bytes) = 0;
  // Bytes from the router.
  virtual void TakeAnswer(QByteArrayView bytes) = 0;

  // How many requests have begun.
  int Requests() const { return requests_; }
  // The whole request was seen. Never known over TLS.
  bool IsRequestComplete() const { return is_request_complete_; }
  bool IsAnswered() const { return is_answered_; }
  // The whole answer was seen. False as well if only the end of the connection shows it.
  bool IsOver() const { return is_over_; }
  // Both sides send freely from now on (a web socket).
  bool IsOpenEnded() const { return is_open_ended_; }

  // Of plain HTTP: as in the request line and the status line; empty and 0 until they were seen.
  const QByteArray& RequestHead() const { return request_head_.Text(); }
  const QByteArray& Method() const { return method_; }
  const QByteArray& Target() const { return target_; }
  int Status() const { return status_; }

 protected:
  HeadReader request_head_;
  int requests_ = 0;
  bool is_request_complete_ = false;
  bool is_answered_ = false;
  bool is_over_ = false;
  bool is_open_ended_ = false;
  QByteArray method_;
  QByteArray target_;
  int status_ = 0;
};

// Follows a message's body to its end.
class BodyReader final {
 public:
  // With neither a length nor chunks the body ends with the connection.
  void Begin(const HttpHead& head);
  void BeginEmpty();
  // Returns how many bytes belong to the body.
  qsizetype Take(QByteArrayView bytes);
  bool IsComplete() const { return state_ == State::kComplete; }

 private:
  enum class State { kCounted, kUntilClosed, kChunkSize, kChunk, kChunkEnd, kTrailer, kComplete };

  qsizetype TakeLine(QByteArrayView bytes);
  void EndLine();

  State state_ = State::kUntilClosed;
  qint64 left_ = 0;
  QByteArray line_;
};

// An exchange over plain HTTP/1.
class HttpExchangeWatch final : public ExchangeWatch {
 public:
  bool TakeRequest(QByteArrayView bytes) override;
  void TakeAnswer(QByteArrayView bytes) override;

 private:
  void ReadRequestHead();
  void ReadAnswerHead();

  BodyReader request_body_;
  HeadReader answer_head_;
  BodyReader answer_body_;
};

// The exchanges within TLS, known by the kinds and sizes of the records alone.
class TlsExchangeWatch final : public ExchangeWatch {
 public:
  bool TakeRequest(QByteArrayView bytes) override;
  void TakeAnswer(QByteArrayView bytes) override;
  // A web socket was announced: the browser may send as it likes.
  void SetOpenEnded() { is_open_ended_ = true; }
  // The connection may carry no further request.
  void Retire() { is_retired_ = true; }

 private:
  // Cuts a stream into records. Calls back with each record's type and length.
  class RecordReader final {
   public:
    template <typename Callback>
    void Take(QByteArrayView bytes, Callback record);

   private:
    QByteArray header_;
    qsizetype left_ = 0;
  };

  void TakeServerData(qsizetype length);

  RecordReader from_client_;
  RecordReader from_server_;
  bool is_retired_ = false;
  bool is_tls13_ = false;
  int client_data_ = 0;  // records of application data
  int tickets_ = 0;
};

}  // namespace quayline
