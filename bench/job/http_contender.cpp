// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <curl/curl.h>

#include "bench/job/contender.h"
#include "bench/job/job_data.h"

namespace quayline::bench {

namespace {

size_t Drop(char*, size_t size, size_t count, void*) { return size * count; }

// Three exchanges an entry on one connection: the page, the save, the page that the save leads to.
class HttpContender final : public Contender {
 public:
  explicit HttpContender(const JobSite& site)
      : entries_(site.entries), page_(site.page.toEncoded()), curl_(curl_easy_init()) {
    const QByteArray login =
        (site.router.routerusername + QLatin1Char(':') + site.router.routerpassword).toUtf8();
    curl_easy_setopt(curl_, CURLOPT_URL, page_.constData());
    curl_easy_setopt(curl_, CURLOPT_USERPWD, login.constData());
    curl_easy_setopt(curl_, CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
    curl_easy_setopt(curl_, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl_, CURLOPT_NOPROXY, "*");
    curl_easy_setopt(curl_, CURLOPT_WRITEFUNCTION, Drop);
  }
  ~HttpContender() override { curl_easy_cleanup(curl_); }
  HttpContender(const HttpContender&) = delete;
  HttpContender& operator=(const HttpContender&) = delete;

  Task<> Prepare() override {
    Get();
    co_return;
  }

  Task<> Do(QString what) override {
    if (what == QLatin1String("prepare")) {
      co_return;
    }
    for (const PortEntry& entry : entries_) {
      Get();
      Save(FieldsOf(entry));
    }
    co_return;
  }

 private:
  void Get() {
    curl_easy_setopt(curl_, CURLOPT_HTTPGET, 1L);
    curl_easy_perform(curl_);
  }

  void Save(const FieldValues& fields) {
    const QString form =
        QStringLiteral(
            "rule_name=%1&start_port=%2&end_port=%3&protocol=%4&server_ip=%5&enabled=1&btn_add=Add")
            .arg(fields.name, fields.start, fields.end, fields.protocol.toLower(), fields.address);
    curl_easy_setopt(curl_, CURLOPT_COPYPOSTFIELDS, form.toUtf8().constData());
    curl_easy_perform(curl_);
  }

  QList<PortEntry> entries_;
  QByteArray page_;
  CURL* curl_;
};

}  // namespace

std::unique_ptr<Contender> MakeHttpContender(const JobSite& site) {
  return std::make_unique<HttpContender>(site);
}

}  // namespace quayline::bench
