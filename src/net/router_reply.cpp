// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/router_reply.h"

#include <QRegularExpression>
#include <QSet>
#include <QUrl>

#include <algorithm>
#include <cmath>

#include "core/fuzzy_name.h"

namespace quayline {

namespace {

constexpr qsizetype kMostCandidates = 3;
constexpr qsizetype kMostWords = 200;
constexpr qsizetype kShortestWord = 3;  // or two characters, one of them a digit: "v2"
constexpr double kHeadlineWeight = 3;   // of title, server and quoted text, beside 1 of the page

// The value of a header field, or an empty text.
QString HeaderField(const QString& head, const QString& name) {
  for (const QStringView line : QStringView(head).split(u'\n')) {
    const qsizetype colon = line.indexOf(u':');
    if (colon > 0 && line.first(colon).compare(name, Qt::CaseInsensitive) == 0) {
      return line.sliced(colon + 1).trimmed().toString();
    }
  }
  return {};
}

struct Reply {
  QString head;
  QString body;
};

Reply SplitReply(const QByteArray& bytes) {
  const QString text = QString::fromUtf8(bytes);
  const qsizetype end = text.indexOf(QStringLiteral("\r\n\r\n"));
  return end < 0 ? Reply{text, {}} : Reply{text.first(end), text.sliced(end)};
}

// The text between `<name ...>` and `</name>`, or an empty one. Sets `end` to what follows.
QString Element(const QString& html, const QString& name, qsizetype from, qsizetype* end) {
  const qsizetype start = html.indexOf(u'>', from);
  const qsizetype stop =
      html.indexOf(QStringLiteral("</") + name, std::max<qsizetype>(start, 0), Qt::CaseInsensitive);
  *end = stop < 0 ? html.size() : stop;
  return start < 0 || stop < 0 ? QString() : html.sliced(start + 1, stop - start - 1);
}

// What a page shows: without its tags and scripts.
QString VisibleText(const QString& html) {
  QString text;
  for (qsizetype at = 0; at < html.size();) {
    const qsizetype tag = html.indexOf(u'<', at);
    text += QStringView(html).sliced(at, (tag < 0 ? html.size() : tag) - at);
    text += u' ';
    if (tag < 0) {
      break;
    }
    const QStringView rest = QStringView(html).sliced(tag + 1);
    const auto is = [&](QLatin1String name) { return rest.startsWith(name, Qt::CaseInsensitive); };
    qsizetype end = tag;
    if (is(QLatin1String("script"))) {
      Element(html, QStringLiteral("script"), tag, &end);
    } else if (is(QLatin1String("style"))) {
      Element(html, QStringLiteral("style"), tag, &end);
    }
    const qsizetype close = html.indexOf(u'>', end);
    at = close < 0 ? html.size() : close + 1;
  }
  return text;
}

QString Title(const QString& html) {
  const qsizetype tag = html.indexOf(QStringLiteral("<title"), 0, Qt::CaseInsensitive);
  qsizetype end = 0;
  return tag < 0 ? QString() : Element(html, QStringLiteral("title"), tag, &end);
}

bool IsLongEnough(const QString& word) {
  const bool has_digit = std::ranges::any_of(word, [](QChar c) { return c.isDigit(); });
  return word.size() >= (has_digit ? kShortestWord - 1 : kShortestWord);
}

// The words that may be part of a name. Hyphens and dots belong to a word.
void AddWords(const QString& text, double weight, QList<std::pair<QString, double>>& words,
              QSet<QString>& known) {
  static const QRegularExpression separators(QStringLiteral("[^\\w.+-]+|[.+-]+(?=\\s|$)"));
  for (const QString& each : text.split(separators, Qt::SkipEmptyParts)) {
    const QString word = each.toLower();
    if (words.size() < kMostWords && IsLongEnough(word) && !known.contains(word)) {
      known.insert(word);
      words.append({word, weight});
    }
  }
}

}  // namespace

WebTarget SplitWebAddress(const QString& address) {
  const qsizetype scheme = address.indexOf(QStringLiteral("://"));
  const QString rest = scheme < 0 ? address : address.sliced(scheme + 3);
  const qsizetype slash = rest.indexOf(u'/');
  if (slash < 0) {
    return {rest, QStringLiteral("/")};
  }
  const qsizetype colon = rest.indexOf(u':');
  return {rest.first(colon >= 0 && colon < slash ? colon : slash), rest.sliced(slash)};
}

QByteArray DetectionRequest(const WebTarget& target) {
  return "GET " + target.path.toUtf8() + " HTTP/1.0\r\nHost: " + target.host.toUtf8() + "\r\n\r\n";
}

QString RealmOf(const QString& block) {
  QString realm = block.section(u'"', 1, 1);
  realm.remove(u' ');
  return realm.toLower();
}

QString RedirectPath(const QByteArray& reply, const QString& host) {
  const Reply parts = SplitReply(reply);
  const QString location = HeaderField(parts.head, QStringLiteral("Location"));
  static const QRegularExpression redirects(QStringLiteral("^HTTP/1\\.[01] 30[12378]\\b"));
  if (location.isEmpty() || !parts.head.contains(redirects)) {
    return {};
  }
  const QUrl base(QStringLiteral("http://") + host + u'/');
  const QUrl target = base.resolved(QUrl(location));
  const bool is_here = target.scheme() == base.scheme() && target.host() == base.host();
  return is_here ? QString::fromLatin1(target.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority |
                                                        QUrl::RemoveFragment))
                 : QString();
}

RouterNames::RouterNames(const QStringList& names) : names_(names) {
  for (QString key : names) {
    key.removeIf([](QChar c) { return c == u' ' || c == u'-'; });
    keys_.append(key.toLower());
  }
}

int RouterNames::FindRealm(const QString& realm) const {
  const auto found =
      std::ranges::find_if(keys_, [&](const QString& key) { return key.contains(realm); });
  return found == keys_.end() ? -1 : static_cast<int>(found - keys_.begin());
}

QList<int> RouterNames::Nearest(const QByteArray& reply) const {
  const Reply parts = SplitReply(reply);
  QList<std::pair<QString, double>> words;
  QSet<QString> known;
  for (const QString& headline : {parts.head.section(u'"', 1, 1), Title(parts.body),
                                  HeaderField(parts.head, QStringLiteral("Server"))}) {
    AddWords(headline, kHeadlineWeight, words, known);
  }
  AddWords(VisibleText(parts.body), 1, words, known);

  FuzzyNames fuzzy;
  for (const QString& name : names_) {
    fuzzy.Append(name);
  }
  QList<double> scores(names_.size(), 0.0);
  for (const auto& [word, weight] : words) {
    QList<int> hits;
    for (int at = fuzzy.FindByFuzzyName(word, true, 1); at >= 0;
         at = fuzzy.FindByFuzzyName(word, true, at + 1)) {
      hits.append(at);
    }
    const auto rarity =
        std::log((static_cast<double>(names_.size()) + 1) / (static_cast<double>(hits.size()) + 1));
    for (const int hit : hits) {
      scores[hit] += weight * static_cast<double>(word.size()) * rarity;
    }
  }
  QList<int> order;
  for (int i = 1; i < scores.size(); ++i) {
    if (scores[i] > 0) {
      order.append(i);
    }
  }
  std::ranges::sort(order, {}, [&](int i) { return std::pair(-scores[i], i); });
  return order.first(std::min(kMostCandidates, order.size()));
}

}  // namespace quayline
