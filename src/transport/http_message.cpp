// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "transport/http_message.h"

#include <algorithm>
#include <expected>
#include <optional>

namespace quayline {

namespace {

constexpr QByteArrayView kLineEnd("\r\n");
constexpr QByteArrayView kHeadEnd("\r\n\r\n");

ParsedRequest Refused(int status) {
  ParsedRequest parsed;
  parsed.status = ParseStatus::kRefused;
  parsed.refusal = status;
  return parsed;
}

bool IsTokenCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         QByteArrayView("!#$%&'*+-.^_`|~").contains(c);
}

bool IsToken(QByteArrayView text) {
  return !text.isEmpty() && std::all_of(text.begin(), text.end(), IsTokenCharacter);
}

bool IsTarget(QByteArrayView text) {
  return text.startsWith('/') &&
         std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7f'; });
}

bool HasLoneLineFeed(QByteArrayView text) {
  for (qsizetype i = text.indexOf('\n'); i >= 0; i = text.indexOf('\n', i + 1)) {
    if (i == 0 || text.at(i - 1) != '\r') {
      return true;
    }
  }
  return false;
}

// 0 when the line is good, else the status that refuses it.
int ReadRequestLine(QByteArrayView line, HttpRequest& request) {
  const qsizetype first = line.indexOf(' ');
  const qsizetype last = line.lastIndexOf(' ');
  if (first < 0 || last == first) {
    return 400;
  }
  const QByteArrayView target = line.sliced(first + 1, last - first - 1);
  const QByteArrayView version = line.sliced(last + 1);
  if (target.size() > kMaxTargetBytes) {
    return 414;
  }
  if (!IsToken(line.first(first)) || !IsTarget(target) || !version.startsWith("HTTP/")) {
    return 400;
  }
  if (version != QByteArrayView("HTTP/1.0") && version != QByteArrayView("HTTP/1.1")) {
    return 505;
  }
  const qsizetype question = target.indexOf('?');
  request.method = line.first(first).toByteArray();
  request.path = QString::fromUtf8(PercentDecoded(question < 0 ? target : target.first(question)));
  request.query = question < 0 ? QByteArray() : target.sliced(question + 1).toByteArray();
  request.keep_alive = version == QByteArrayView("HTTP/1.1");
  return 0;
}

int ReadHeaders(QByteArrayView lines, HttpRequest& request) {
  while (!lines.isEmpty()) {
    const qsizetype end = lines.indexOf(kLineEnd);
    const QByteArrayView line = end < 0 ? lines : lines.first(end);
    lines = end < 0 ? QByteArrayView() : lines.sliced(end + kLineEnd.size());
    const qsizetype colon = line.indexOf(':');
    if (colon < 0 || !IsToken(line.first(colon)) || line.contains('\r') || line.contains('\0')) {
      return 400;
    }
    if (request.headers.size() == kMaxHeaders) {
      return 431;
    }
    request.headers.append({line.first(colon).toByteArray().toLower(),
                            line.sliced(colon + 1).trimmed().toByteArray()});
  }
  return 0;
}

// The length of the body, or the status that refuses the request.
std::expected<qsizetype, int> BodyLength(const HttpRequest& request) {
  std::optional<QByteArray> text;
  for (const auto& [name, value] : request.headers) {
    if (name == "transfer-encoding") {
      return std::unexpected(501);
    }
    // Two lengths, even equal ones, leave it open where the next request begins.
    if (name == "content-length" && std::exchange(text, value)) {
      return std::unexpected(400);
    }
  }
  if (!text) {
    return 0;
  }
  const bool is_digits =
      std::all_of(text->begin(), text->end(), [](char c) { return c >= '0' && c <= '9'; });
  if (text->isEmpty() || !is_digits) {
    return std::unexpected(400);
  }
  bool fits = false;
  const qlonglong length = text->toLongLong(&fits);
  if (!fits || length > kMaxBodyBytes) {
    return std::unexpected(413);
  }
  return length;
}

void ReadKeepAlive(HttpRequest& request) {
  const QByteArray connection = request.Header("connection").toLower();
  if (connection.contains("close")) {
    request.keep_alive = false;
  } else if (connection.contains("keep-alive")) {
    request.keep_alive = true;
  }
}

constexpr int kSwitchingProtocols = 101;

QByteArray ReasonPhrase(int status) {
  switch (status) {
    case kSwitchingProtocols:
      return "Switching Protocols";
    case 200:
      return "OK";
    case 204:
      return "No Content";
    case 302:
      return "Found";
    case 400:
      return "Bad Request";
    case 401:
      return "Unauthorized";
    case 403:
      return "Forbidden";
    case 404:
      return "Not Found";
    case 405:
      return "Method Not Allowed";
    case 413:
      return "Content Too Large";
    case 414:
      return "URI Too Long";
    case 431:
      return "Request Header Fields Too Large";
    case 501:
      return "Not Implemented";
    case 505:
      return "HTTP Version Not Supported";
    default:
      return "Status";
  }
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

QString FormText(QByteArrayView text) {
  QByteArray bytes = text.toByteArray();
  bytes.replace('+', ' ');
  return QString::fromUtf8(PercentDecoded(bytes));
}

}  // namespace

QByteArray HttpRequest::Header(QByteArrayView name) const {
  for (const auto& [header, value] : headers) {
    if (header == name) {
      return value;
    }
  }
  return {};
}

ParsedRequest ParseRequest(QByteArrayView bytes) {
  // Some clients end a form's body with a line end that its length does not count.
  qsizetype start = 0;
  while (start < kMaxHeadBytes && bytes.sliced(start).startsWith(kLineEnd)) {
    start += kLineEnd.size();
  }
  const QByteArrayView rest = bytes.sliced(start);
  const qsizetype head_size = rest.first(std::min(rest.size(), kMaxHeadBytes)).indexOf(kHeadEnd);
  const QByteArrayView head = head_size < 0 ? rest : rest.first(head_size);
  if (HasLoneLineFeed(head)) {
    return Refused(400);
  }
  if (head_size < 0) {
    return bytes.size() < kMaxHeadBytes ? ParsedRequest()
           : head.contains('\n')        ? Refused(431)
                                        : Refused(414);
  }

  ParsedRequest parsed;
  const qsizetype line_end = head.indexOf(kLineEnd);
  if (int status = ReadRequestLine(line_end < 0 ? head : head.first(line_end), parsed.request)) {
    return Refused(status);
  }
  const QByteArrayView header_lines =
      line_end < 0 ? QByteArrayView() : head.sliced(line_end + kLineEnd.size());
  if (int status = ReadHeaders(header_lines, parsed.request)) {
    return Refused(status);
  }
  const auto length = BodyLength(parsed.request);
  if (!length) {
    return Refused(length.error());
  }
  const qsizetype body_start = head_size + kHeadEnd.size();
  if (rest.size() - body_start < *length) {
    return {};
  }
  ReadKeepAlive(parsed.request);
  parsed.request.body = rest.sliced(body_start, *length).toByteArray();
  parsed.consumed = start + body_start + *length;
  parsed.status = ParseStatus::kComplete;
  return parsed;
}

HttpResponse RedirectTo(const QByteArray& location) {
  HttpResponse response;
  response.status = 302;
  response.headers.append({"Location", location});
  response.body = "<html><body>The page is <a href=\"" + location + "\">here</a>.</body></html>";
  return response;
}

QByteArray FormatResponse(const HttpResponse& response, bool keep_alive, bool head_only) {
  QByteArray bytes = "HTTP/1.1 " + QByteArray::number(response.status) + ' ' +
                     ReasonPhrase(response.status) + "\r\n";
  for (const auto& [name, value] : response.headers) {
    bytes += name + ": " + value + "\r\n";
  }
  if (response.status == kSwitchingProtocols) {
    return bytes + "Connection: Upgrade\r\n\r\n";
  }
  const bool has_body = response.status != 204;
  if (has_body) {
    bytes += "Content-Type: " + response.content_type +
             "\r\nContent-Length: " + QByteArray::number(response.body.size()) + "\r\n";
  }
  bytes += "Cache-Control: no-cache\r\nConnection: ";
  bytes += keep_alive ? "keep-alive\r\n\r\n" : "close\r\n\r\n";
  if (has_body && !head_only) {
    bytes += response.body;
  }
  return bytes;
}

FormFields::FormFields(QByteArrayView body) {
  while (!body.isEmpty() && fields_.size() < kMaxFormFields) {
    const qsizetype end = body.indexOf('&');
    const QByteArrayView field = end < 0 ? body : body.first(end);
    body = end < 0 ? QByteArrayView() : body.sliced(end + 1);
    const qsizetype equals = field.indexOf('=');
    fields_.append({FormText(equals < 0 ? field : field.first(equals)),
                    equals < 0 ? QString() : FormText(field.sliced(equals + 1))});
  }
}

bool FormFields::Has(const QString& name) const {
  return std::any_of(fields_.begin(), fields_.end(),
                     [&](const auto& field) { return field.first == name; });
}

QString FormFields::Value(const QString& name) const {
  for (const auto& [field, value] : fields_) {
    if (field == name) {
      return value;
    }
  }
  return {};
}

QByteArray PercentDecoded(QByteArrayView text) {
  QByteArray bytes;
  bytes.reserve(text.size());
  for (qsizetype i = 0; i < text.size(); ++i) {
    const int high = text[i] == '%' && i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
    const int low = high < 0 ? -1 : HexDigit(text[i + 2]);
    if (low < 0) {
      bytes += text[i];
    } else {
      bytes += static_cast<char>(high * 16 + low);
      i += 2;
    }
  }
  return bytes;
}

}  // namespace quayline
