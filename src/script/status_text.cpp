// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/status_text.h"

#include <algorithm>
#include <array>

namespace quayline {

namespace {

struct StatusRow {
  const char* symbol;  // another form in which the status may come, or nullptr
  const char* code;
  const char* text;
};

// Later rows win: one status is listed twice.
constexpr StatusRow kStatusRows[] = {
    {nullptr, "502", "BAD_GATEWAY(502)"},
    {nullptr, "405", "BAD_METHOD(405)"},
    {nullptr, "400", "BAD_REQUEST(400)"},
    {nullptr, "409", "CONFLICT(409)"},
    {nullptr, "401", "DENIED(401)"},
    {nullptr, "403", "FORBIDDEN(403)"},
    {nullptr, "504", "GATEWAY_TIMEOUT(504)"},
    {nullptr, "410", "GONE(410)"},
    {nullptr, "411", "LENGTH_REQUIRED(411)"},
    {nullptr, "406", "NONE_ACCEPTABLE(406)"},
    {nullptr, "404", "NOT_FOUND(404)"},
    {nullptr, "501", "NOT_SUPPORTED(501)"},
    {nullptr, "402", "PAYMENT_REQ(402)"},
    {nullptr, "412", "PRECOND_FAILED(412)"},
    {nullptr, "407", "PROXY_AUTH_REQ(407)"},
    {nullptr, "408", "REQUEST_TIMEOUT(408)"},
    {nullptr, "413", "REQUEST_TOO_LARGE(413)"},
    {nullptr, "449", "RETRY_WITH(449)"},
    {nullptr, "500", "SERVER_ERROR(500)"},
    {nullptr, "503", "SERVICE_UNAVAIL(503)"},
    {nullptr, "415", "UNSUPPORTED_MEDIA(415)"},
    {nullptr, "414", "URI_TOO_LONG(414)"},
    {nullptr, "505", "VERSION_NOT_SUP(505)"},
    {nullptr, "-2147024891", "Access Denied(-2147024891)"},
    {"0x800C0009L", "-2146697207", "AUTHENTICATION_REQUIRED(-2146697207)"},
    {"0x800C0004L", "-2146697212", "CANNOT_CONNECT(-2146697212)"},
    {"0x800C0010L", "-2146697200", "CANNOT_INSTANTIATE_OBJECT(-2146697200)"},
    {"0x800C000FL", "-2146697201", "CANNOT_LOAD_DATA(-2146697201)"},
    {"0x800C0016L", "-2146697194", "CANNOT_LOCK_REQUEST(-2146697194)"},
    {"0x800C0300L", "-2146696448", "CANNOT_REPLACE_SFP_FILE(-2146696448)"},
    {"0x800C0100L", "-2146696960", "CODE_DOWNLOAD_DECLINED(-2146696960)"},
    {"0x800C0500L", "-2146695936", "CODE_INSTALL_BLOCKED_BY_HASH_POLICY(-2146695936)"},
    {"0x800C0400L", "-2146696192", "CODE_INSTALL_SUPPRESSED(-2146696192)"},
    {"0x800C000BL", "-2146697205", "CONNECTION_TIMEOUT(-2146697205)"},
    {"0x800C0007L", "-2146697209", "DATA_NOT_AVAILABLE(-2146697209)"},
    {"0x800C0008L", "-2146697208", "DOWNLOAD_FAILURE(-2146697208)"},
    {"0x800C0019L", "-2146697191", "INVALID_CERTIFICATE(-2146697191)"},
    {"0x800C000CL", "-2146697204", "INVALID_REQUEST(-2146697204)"},
    {"0x800C0002L", "-2146697214", "INVALID_URL(-2146697214)"},
    {"0x800C0003L", "-2146697213", "NO_SESSION(-2146697213)"},
    {"0x800C000AL", "-2146697206", "NO_VALID_MEDIA(-2146697206)"},
    {"0x800C0006L", "-2146697210", "OBJECT_NOT_FOUND(-2146697210)"},
    {"0x800C0014L", "-2146697196", "REDIRECT_FAILED(-2146697196)"},
    {"0x800C0015L", "-2146697195", "REDIRECT_TO_DIR(-2146697195)"},
    {"0x800C0014L", "-2146697196", "REDIRECTING(-2146697196)"},
    {"0x800C0005L", "-2146697211", "RESOURCE_NOT_FOUND(-2146697211)"},
    {"0x800C0200L", "-2146696704", "RESULT_DISPATCHED(-2146696704)"},
    {"0x800C000EL", "-2146697202", "SECURITY_PROBLEM(-2146697202)"},
    {"0x800C0018L", "-2146697192", "TERMINATED_BIND(-2146697192)"},
    {"0x800C000DL", "-2146697203", "UNKNOWN_PROTOCOL(-2146697203)"},
    {"0x800C0017L", "-2146697193", "USE_EXTEND_BINDING(-2146697193)"},
    {nullptr, "-1001", "PAGE_TOO_LARGE (over 64 MB or 200,000 elements)"},
    {nullptr, "-1002", "TOO_MANY_WINDOWS (more than eight are open)"},
};

struct NetErrorRow {
  int first;  // the range of the network stack's numbers, from the one nearest 0
  int last;
  int status;
};

// First match wins.
constexpr NetErrorRow kNetErrorRows[] = {
    {-2, -2, -2146697208},      // failed
    {-6, -6, -2146697210},      // file not found
    {-7, -7, -2146697205},      // timed out
    {-10, -10, -2147024891},    // access denied
    {-20, -20, -2146697202},    // blocked by us
    {-21, -21, -2146697212},    // the network changed
    {-27, -30, -2146697202},    // blocked by the page's own rules
    {-105, -105, -2146697211},  // name not resolved
    {-107, -107, -2146697202},  // no TLS at the other end
    {-108, -108, -2146697214},  // invalid address
    {-110, -117, -2146697202},  // TLS
    {-118, -118, -2146697205},  // connection timed out
    {-137, -137, -2146697211},  // name resolution failed
    {-100, -106, -2146697212},  // closed, reset, refused, aborted, failed, disconnected
    {-109, -109, -2146697212},  // unreachable
    {-119, -199, -2146697212},  // other connection errors
    {-200, -299, -2146697191},  // certificates
    {-300, -300, -2146697214},  // invalid address
    {-301, -302, -2146697203},  // unknown scheme
    {-310, -310, -2146697196},  // too many redirects
    {-311, -312, -2146697202},  // unsafe redirect, unsafe port
    {-320, -325, -2146697209},  // invalid or empty answer
    {-330, -330, -2146697201},  // content decoding failed
    {-338, -343, -2146697207},  // login schemes
    {-354, -355, -2146697208},  // the answer ended early
    {-370, -370, -2146697209},  // not HTTP
    {-375, -375, -2146697207},  // too many login tries
};

}  // namespace

QString StatusText(const QString& status) {
  const auto Matches = [&status](const StatusRow& row) {
    return status == QLatin1String(row.code) ||
           (row.symbol != nullptr && status == QLatin1String(row.symbol));
  };
  const auto last_match = std::find_if(std::rbegin(kStatusRows), std::rend(kStatusRows), Matches);
  return last_match == std::rend(kStatusRows) ? QStringLiteral("Unknown Error: ") + status
                                              : QString::fromLatin1(last_match->text);
}

QString StatusText(int status) { return StatusText(QString::number(status)); }

int StatusOfNetError(int net_error) {
  const auto* row = std::ranges::find_if(kNetErrorRows, [net_error](const NetErrorRow& candidate) {
    return net_error <= candidate.first && net_error >= candidate.last;
  });
  return row == std::end(kNetErrorRows) ? net_error : row->status;
}

StatusNotice NoticeOfStatus(const QString& status_text) {
  const auto IsOneOf = [&status_text](const std::array<const char*, 3>& texts) {
    return std::ranges::any_of(
        texts, [&](const char* text) { return status_text == QLatin1String(text); });
  };
  if (IsOneOf(
          {"Access Denied(-2147024891)", "DENIED(401)", "AUTHENTICATION_REQUIRED(-2146697207)"})) {
    return StatusNotice::kAccessDenied;
  }
  if (IsOneOf(
          {"RESOURCE_NOT_FOUND(-2146697211)", "OBJECT_NOT_FOUND(-2146697210)", "NOT_FOUND(404)"})) {
    return StatusNotice::kNotFound;
  }
  return StatusNotice::kNone;
}

}  // namespace quayline
