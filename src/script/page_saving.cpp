// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/page_saving.h"

#include <QJsonObject>
#include <QQueue>
#include <QRegularExpression>
#include <QSet>
#include <QUrl>

#include <utility>

#include "async/wait.h"
#include "core/text_bytes.h"
#include "script/page_operations.h"

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono_literals;

constexpr int kMostParts = 200;
constexpr qsizetype kMostBytes = qsizetype{16} << 20;  // of all parts
constexpr auto kLongestAnswer = 10s;

// A file that a page uses.
struct Part {
  QUrl address;
  bool is_script = false;
};

Task<QJsonValue> Ask(QPointer<PageHost> host, PageCall call) {
  if (host.isNull()) {
    co_return call.if_gone;
  }
  OneShot<PageAnswer> answer;
  host->Call(call, answer.Callback());
  answer.GiveUpWhen(host.data(), &QObject::destroyed, [host] { return host.isNull(); });
  answer.GiveUpAfter(kLongestAnswer);
  const std::optional<PageAnswer> got = co_await answer;
  co_return got && got->answered ? got->value : call.if_gone;
}

// What a style sheet, or the styles in a page's markup, refer to.
QList<Part> PartsOfStyle(const QString& text, const QUrl& base) {
  static const QRegularExpression kReference(
      u"(?:url\\(\\s*|@import\\s+)(?:&quot;|[\"'])?([^\"'()&;\\s]+)"_s,
      QRegularExpression::CaseInsensitiveOption);
  QList<Part> parts;
  for (const QRegularExpressionMatch& match : kReference.globalMatch(text)) {
    parts.append({.address = base.resolved(QUrl(match.captured(1)))});
  }
  return parts;
}

bool IsText(const QString& type) {
  return type.startsWith("text/"_L1) || type.contains("javascript"_L1) ||
         type.contains("json"_L1) || type.contains("xml"_L1);
}

// Fetches the parts of a page, and the parts of its style sheets.
class PartsOfPage final {
 public:
  PartsOfPage(QPointer<PageHost> host, PageSecrets secrets)
      : host_(std::move(host)), secrets_(std::move(secrets)) {}

  Task<> Fetch(QJsonArray documents) {
    router_ = QUrl(documents.first()["address"_L1].toString());
    for (const auto& value : std::as_const(documents)) {
      const QJsonObject document = value.toObject();
      for (const auto& part : document["parts"_L1].toArray()) {
        Add({.address = QUrl(part["address"_L1].toString()),
             .is_script = part["kind"_L1] == "script"_L1});
      }
      const QUrl base(document["address"_L1].toString());
      for (const Part& part : PartsOfStyle(document["markup"_L1].toString(), base)) {
        Add(part);
      }
    }
    while (!waiting_.isEmpty() && !host_.isNull()) {
      const Part part = waiting_.dequeue();
      const QJsonValue answer =
          co_await Ask(host_, page_operation::FetchPart(part.address.toString()));
      Take(part, answer.toObject());
    }
  }

  const QMap<QString, QByteArray>& Files() const { return files_; }
  const QStringList& Missing() const { return missing_; }

 private:
  // Only the router is asked: a page may name any other server.
  void Add(const Part& part) {
    const QUrl address = part.address.adjusted(QUrl::RemoveFragment);
    if (!address.isValid() || address.scheme() == "data"_L1 || known_.contains(address)) {
      return;
    }
    known_.insert(address);
    const bool is_routers =
        address.scheme() == router_.scheme() && address.authority() == router_.authority();
    if (is_routers && known_.size() <= kMostParts) {
      waiting_.enqueue({.address = address, .is_script = part.is_script});
    } else {
      missing_.append(address.toString());
    }
  }

  // A router answers many a wrong address with a page, its login perhaps.
  void Take(const Part& part, const QJsonObject& answer) {
    const QString type = answer["type"_L1].toString().toLower();
    const QByteArray bytes = QByteArray::fromBase64(answer["bytes"_L1].toString().toLatin1());
    const bool is_page = type.startsWith("text/html"_L1) && !part.is_script;
    if (answer.isEmpty() || is_page || size_ + bytes.size() > kMostBytes) {
      missing_.append(part.address.toString());
      return;
    }
    size_ += bytes.size();
    const QString name = FileNameOf(CleanedPage(part.address.path(), secrets_)) +
                         (part.is_script ? u".txt"_s : QString());
    if (!part.is_script && !IsText(type)) {
      files_.insert(name, bytes);
      return;
    }
    const QString text = FromUtf8OrWindows1252(bytes);
    files_.insert(name, CleanedPage(text, secrets_).toUtf8());
    if (type.contains("css"_L1)) {
      for (const Part& used : PartsOfStyle(text, part.address)) {
        Add(used);
      }
    }
  }

  const QPointer<PageHost> host_;
  const PageSecrets secrets_;
  QUrl router_;
  QSet<QUrl> known_;
  QQueue<Part> waiting_;
  qsizetype size_ = 0;
  QMap<QString, QByteArray> files_;
  QStringList missing_;
};

}  // namespace

Task<SavingReport> SavePage(QPointer<PageHost> host, QString folder, PageSecrets secrets) {
  const QJsonValue described = co_await Ask(host, page_operation::DescribePage());
  const QJsonArray documents = described.toArray();
  if (documents.isEmpty()) {
    co_return SavingReport();
  }
  PartsOfPage parts(host, secrets);
  co_await parts.Fetch(documents);
  SavingReport report{.is_written = WriteSavedPage(folder, documents, secrets, parts.Files()),
                      .missing = parts.Missing()};
  co_return report;
}

}  // namespace quayline
