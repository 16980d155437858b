// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/exchange_watch.h"

#include <QList>

#include <algorithm>

namespace quayline {

namespace {

constexpr qsizetype kMaxHead = qsizetype{256} << 10;
constexpr qsizetype kMaxLine = 1024;

constexpr int kDataRecord = 23;
constexpr qsizetype kRecordHeader = 5;
// Servers send up to two session tickets before their first answer. Each is a record of its own, of
// about 100 to 300 bytes.
constexpr int kMaxTickets = 2;
constexpr qsizetype kMaxTicket = 400;

// With TLS 1.3 an alert, such as the one before an orderly end, is a data record of this length.
constexpr qsizetype kAlert = 19;

bool IsName(QByteArrayView field, const char* name) {
  return QByteArrayView(field).trimmed().compare(name, Qt::CaseInsensitive) == 0;
}

}  // namespace

qsizetype HeadReader::Take(QByteArrayView bytes) {
  qsizetype taken = 0;
  while (taken < bytes.size() && !is_complete_ && !IsInvalid()) {
    const char next = bytes[taken++];
    // Lines end with CR LF; many small servers send LF alone. Empty lines before the first are
    // skipped.
    if (next == '\n' && (text_.endsWith('\n') || text_.endsWith("\n\r"))) {
      is_complete_ = true;
    } else if (!text_.isEmpty() || (next != '\r' && next != '\n')) {
      text_.append(next);
    }
  }
  return taken;
}

bool HeadReader::IsInvalid() const { return text_.size() > kMaxHead; }

HttpHead HeadReader::Read() const {
  HttpHead head;
  const QList<QByteArray> lines = text_.split('\n');
  head.first_line = lines.value(0).trimmed();
  for (const QByteArray& line : lines.mid(1)) {
    const qsizetype colon = line.indexOf(':');
    const QByteArrayView name = QByteArrayView(line).first(std::max<qsizetype>(colon, 0));
    const QByteArray value = line.mid(colon + 1).trimmed();
    if (IsName(name, "transfer-encoding")) {
      head.is_chunked = head.is_chunked || value.toLower().contains("chunked");
    } else if (IsName(name, "content-length")) {
      bool is_number = false;
      const qint64 length = value.toLongLong(&is_number);
      head.length = is_number && length >= 0 ? length : -1;
    }
  }
  return head;
}

void BodyReader::Begin(const HttpHead& head) {
  left_ = head.length;
  state_ = head.is_chunked    ? State::kChunkSize
           : head.length > 0  ? State::kCounted
           : head.length == 0 ? State::kComplete
                              : State::kUntilClosed;
}

void BodyReader::BeginEmpty() { state_ = State::kComplete; }

qsizetype BodyReader::Take(QByteArrayView bytes) {
  qsizetype taken = 0;
  while (taken < bytes.size() && !IsComplete()) {
    if (state_ == State::kUntilClosed) {
      return bytes.size();
    }
    if (state_ == State::kCounted || state_ == State::kChunk) {
      const qint64 part = std::min<qint64>(left_, bytes.size() - taken);
      taken += part;
      left_ -= part;
      if (left_ == 0) {
        state_ = state_ == State::kCounted ? State::kComplete : State::kChunkEnd;
      }
    } else {
      taken += TakeLine(bytes.sliced(taken));
    }
  }
  return taken;
}

qsizetype BodyReader::TakeLine(QByteArrayView bytes) {
  const qsizetype end = bytes.indexOf('\n');
  const qsizetype taken = end < 0 ? bytes.size() : end + 1;
  line_.append(bytes.first(taken));
  if (end >= 0) {
    EndLine();
    line_.clear();
  } else if (line_.size() > kMaxLine) {
    state_ = State::kUntilClosed;  // not chunks at all
  }
  return taken;
}

void BodyReader::EndLine() {
  if (state_ == State::kChunkSize) {
    bool is_number = false;
    left_ = line_.split(';').value(0).trimmed().toLongLong(&is_number, 16);
    state_ = !is_number || left_ < 0 ? State::kUntilClosed
             : left_ == 0            ? State::kTrailer
                                     : State::kChunk;
  } else if (state_ == State::kChunkEnd) {
    state_ = State::kChunkSize;
  } else if (line_.trimmed().isEmpty()) {
    state_ = State::kComplete;
  }
}

bool HttpExchangeWatch::TakeRequest(QByteArrayView bytes) {
  if (is_open_ended_) {
    return true;
  }
  if (is_answered_ && is_request_complete_ && !bytes.isEmpty()) {
    return false;
  }
  const qsizetype taken = request_head_.Take(bytes);
  if (request_head_.IsComplete() && requests_ == 0) {
    requests_ = 1;
    ReadRequestHead();
  }
  if (request_head_.IsComplete()) {
    request_body_.Take(bytes.sliced(taken));
    is_request_complete_ = request_body_.IsComplete();
  }
  return true;
}

void HttpExchangeWatch::ReadRequestHead() {
  HttpHead head = request_head_.Read();
  const QList<QByteArray> words = head.first_line.split(' ');
  method_ = words.value(0);
  target_ = words.value(1);
  if (!head.is_chunked && head.length < 0) {
    request_body_.BeginEmpty();
  } else {
    request_body_.Begin(head);
  }
}

void HttpExchangeWatch::TakeAnswer(QByteArrayView bytes) {
  while (!bytes.isEmpty() && !is_over_ && !is_open_ended_) {
    if (!is_answered_) {
      bytes = bytes.sliced(answer_head_.Take(bytes));
      if (answer_head_.IsInvalid()) {
        is_answered_ = true;  // by what is not HTTP; it lasts until the connection ends
      } else if (answer_head_.IsComplete()) {
        ReadAnswerHead();
      }
    } else {
      bytes = bytes.sliced(answer_body_.Take(bytes));
      if (answer_body_.IsComplete()) {
        bytes = {};
      }
    }
    is_over_ = is_answered_ && answer_body_.IsComplete();
  }
}

void HttpExchangeWatch::ReadAnswerHead() {
  const HttpHead head = answer_head_.Read();
  const QList<QByteArray> words = head.first_line.split(' ');
  status_ = words.value(0).startsWith("HTTP/") ? words.value(1).toInt() : 0;
  constexpr int kSwitching = 101;
  constexpr int kFirstFinal = 200;
  constexpr int kNoContent = 204;
  constexpr int kNotModified = 304;
  if (status_ == kSwitching) {
    is_answered_ = true;
    is_open_ended_ = true;
  } else if (status_ > 0 && status_ < kFirstFinal) {
    answer_head_ = {};  // only an announcement; the answer follows
    status_ = 0;
  } else {
    is_answered_ = true;
    if (status_ == kNoContent || status_ == kNotModified || method_ == "HEAD") {
      answer_body_.BeginEmpty();
    } else {
      answer_body_.Begin(head);
    }
  }
}

template <typename Callback>
void TlsExchangeWatch::RecordReader::Take(QByteArrayView bytes, Callback record) {
  while (!bytes.isEmpty()) {
    if (left_ > 0) {
      const qsizetype part = std::min(left_, bytes.size());
      bytes = bytes.sliced(part);
      left_ -= part;
      continue;
    }
    const qsizetype part = std::min(kRecordHeader - header_.size(), bytes.size());
    header_.append(bytes.first(part));
    bytes = bytes.sliced(part);
    if (header_.size() == kRecordHeader) {
      const auto byte = [this](int at) { return static_cast<unsigned char>(header_.at(at)); };
      left_ = byte(3) * 256 + byte(4);
      record(byte(0), left_);
      header_.clear();
    }
  }
}

bool TlsExchangeWatch::TakeRequest(QByteArrayView bytes) {
  bool is_allowed = true;
  from_client_.Take(bytes, [this, &is_allowed](int type, qsizetype length) {
    // With TLS 1.3 the end of the handshake is sent like data.
    if (type != kDataRecord || (++client_data_ == 1 && is_tls13_) ||
        (is_tls13_ && length == kAlert)) {
      return;
    }
    if (requests_ == 0 || (is_answered_ && !is_open_ended_)) {
      is_allowed = is_allowed && (requests_ == 0 || !is_retired_);
      ++requests_;
      is_answered_ = false;
    }
  });
  return is_allowed;
}

void TlsExchangeWatch::TakeAnswer(QByteArrayView bytes) {
  from_server_.Take(bytes, [this](int type, qsizetype length) {
    if (type == kDataRecord) {
      TakeServerData(length);
    }
  });
}

void TlsExchangeWatch::TakeServerData(qsizetype length) {
  if (client_data_ == 0) {
    is_tls13_ = true;  // the server's part of the handshake, sent like data
    return;
  }
  if (is_tls13_ && length == kAlert) {
    return;
  }
  if (is_tls13_ && length <= kMaxTicket && tickets_ < kMaxTickets) {
    ++tickets_;  // or a very short answer: then a second request may share its connection
    return;
  }
  is_answered_ = requests_ > 0;
}

}  // namespace quayline
