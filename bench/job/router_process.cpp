// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "bench/job/router_process.h"

#include <cstdio>
#include <cstdlib>
#include <curl/curl.h>

namespace quayline::bench {

namespace {

size_t Append(char* bytes, size_t size, size_t count, void* body) {
  const size_t length = size * count;
  static_cast<QByteArray*>(body)->append(bytes, static_cast<qsizetype>(length));
  return length;
}

[[noreturn]] void Fail(const QString& sentence) {
  std::fprintf(stderr, "%s\n", qPrintable(sentence));
  std::exit(2);
}

QByteArray Ask(int port, const char* path, bool post) {
  QByteArray body;
  CURL* curl = curl_easy_init();
  const QByteArray url = "http://127.0.0.1:" + QByteArray::number(port) + path;
  curl_easy_setopt(curl, CURLOPT_URL, url.constData());
  curl_easy_setopt(curl, CURLOPT_NOPROXY, "*");
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, Append);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &body);
  if (post) {
    curl_easy_setopt(curl, CURLOPT_COPYPOSTFIELDS, "");
  }
  curl_easy_perform(curl);
  curl_easy_cleanup(curl);
  return body;
}

std::vector<std::string> Words(const QString& program, int rows, int delay_ms) {
  return {
      program.toStdString(),   "--model", "longlist", "--entries", std::to_string(rows), "--delay",
      std::to_string(delay_ms)};
}

}  // namespace

RouterProcess::RouterProcess(const QString& program, int rows, int delay_ms, bool verbose)
    : process_(Words(program, rows, delay_ms), verbose) {
  const std::optional<std::string> line = process_.ReadLine(std::chrono::seconds(10));
  const QString said = QString::fromStdString(line.value_or(""));
  port_ = said.section(QLatin1Char(':'), -1).chopped(said.endsWith(u'/') ? 1 : 0).toInt();
  if (port_ == 0) {
    Fail(QStringLiteral("The demo router does not start: \"%1\"").arg(said));
  }
}

demo::RouterState RouterProcess::State() const {
  const auto state = demo::ReadState(Ask(port_, "/__state", false));
  if (!state) {
    Fail(state.error());
  }
  return *state;
}

void RouterProcess::Reset() const { Ask(port_, "/__reset", true); }

}  // namespace quayline::bench
