// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stub/page_template.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QUrl>

#include <optional>

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxRepeats = 1000;

std::optional<Escape> EscapeNamed(const QString& name) {
  constexpr std::pair<const char*, Escape> kNames[] = {{"html", Escape::kHtml},
                                                       {"js", Escape::kScript},
                                                       {"json", Escape::kJson},
                                                       {"url", Escape::kUrl},
                                                       {"raw", Escape::kNone}};
  for (const auto& [word, escape] : kNames) {
    if (name == QLatin1String(word)) {
      return escape;
    }
  }
  return std::nullopt;
}

// The text in a literal of a script; also right inside HTML, since "<" is written as an escape.
QString ScriptEscaped(const QString& text) {
  QString escaped;
  for (const QChar c : text) {
    if (c < u' ' || QStringView(u"\\\"'<>&\u2028\u2029").contains(c)) {
      escaped += u"\\u%1"_s.arg(c.unicode(), 4, 16, QLatin1Char('0'));
    } else {
      escaped += c;
    }
  }
  return escaped;
}

QString JsonEscaped(const QString& text) {
  const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
  return QString::fromUtf8(list.sliced(2, list.size() - 4));  // without [" and "]
}

// Where a mark is, and so what its values are.
struct Scope {
  const StubRule* rule = nullptr;
  qsizetype index = 0;
};

class Filler final {
 public:
  Filler(const QString& text, Escape escape, const PageValues& values)
      : text_(text), escape_(escape), values_(values) {}

  std::expected<QString, QString> Run() {
    const QString filled = Fill(0, text_.size(), {});
    return error_.isEmpty() ? std::expected<QString, QString>(filled) : std::unexpected(error_);
  }

 private:
  // The marks between two places of the text.
  QString Fill(qsizetype start, qsizetype end, const Scope& scope) {
    static const QRegularExpression kMark(u"\\{\\{([a-z][^{}\\n]*)\\}\\}"_s);
    QString filled;
    while (start < end && error_.isEmpty()) {
      const QRegularExpressionMatch mark = kMark.match(text_, start);
      if (!mark.hasMatch() || mark.capturedEnd() > end) {
        break;
      }
      filled += text_.sliced(start, mark.capturedStart() - start);
      start = mark.capturedEnd();
      const QString content = mark.captured(1);
      if (content.startsWith("each "_L1) && scope.rule == nullptr) {
        filled += FillEach(content, start);
      } else {
        filled += Value(content, mark.capturedStart(), scope).value_or(mark.captured());
      }
    }
    return filled + text_.sliced(start, end - start);
  }

  // `start` is after the mark, and moves to the end of the block.
  QString FillEach(const QString& content, qsizetype& start) {
    static const QRegularExpression kEach(u"^each (rules|kept)(?: to (\\d{1,4}))?$"_s);
    const QRegularExpressionMatch each = kEach.match(content);
    const qsizetype end = text_.indexOf("{{end}}"_L1, start);
    if (!each.hasMatch() || end < 0) {
      error_ = end < 0 ? u"{{%1}} has no {{end}}."_s.arg(content)
                       : u"{{%1}} is not known."_s.arg(content);
      return {};
    }
    const qsizetype begin = std::exchange(start, end + QStringView(u"{{end}}").size());
    const auto mark = [&](const QString& name, qsizetype otherwise) {
      const qsizetype at = text_.indexOf(name, begin);
      return at < 0 || at > otherwise ? otherwise : at;
    };
    const qsizetype none = mark(u"{{none}}"_s, end);
    const qsizetype between = mark(u"{{between}}"_s, none);
    const QList<StubRule>& rules = each.captured(1) == "kept"_L1 ? values_.kept : values_.rules;
    const qsizetype count =
        std::max<qsizetype>(rules.size(), std::min(each.captured(2).toInt(), kMaxRepeats));
    if (count == 0) {
      return none == end ? QString() : text_.sliced(none + 8, end - none - 8);
    }
    QString filled;
    for (qsizetype i = 0; i < count; ++i) {
      const StubRule rule = rules.value(i);
      filled += Fill(begin, between, {.rule = &rule, .index = i});
      if (i + 1 < count && between < none) {
        filled += text_.sliced(between + 11, none - between - 11);
      }
    }
    return filled;
  }

  // "name:escape|from=to|..."; nothing for what is not ours.
  std::optional<QString> Value(const QString& content, qsizetype place, const Scope& scope) {
    const QStringList parts = content.split(u'|');
    const QString name = parts.first().section(u':', 0, 0);
    const std::optional<QString> value = Named(name, scope);
    if (!value) {
      const bool is_ours = name.startsWith("rule."_L1) || name.startsWith("each"_L1) ||
                           name == "end"_L1 || name == "index"_L1 || name == "number"_L1;
      if (is_ours) {
        error_ = u"{{%1}} cannot be used here."_s.arg(content);
      }
      return std::nullopt;
    }
    Escape escape = EscapeAt(place);
    if (const QString word = parts.first().section(u':', 1); !word.isEmpty()) {
      const std::optional<Escape> named = EscapeNamed(word);
      error_ = named ? error_ : u"{{%1}}: the escape is html, js, json, url or raw."_s.arg(content);
      escape = named.value_or(escape);
    }
    return Escaped(Mapped(*value, parts.sliced(1)), escape);
  }

  static QString Mapped(const QString& value, const QStringList& map) {
    for (const QString& pair : map) {
      if (pair.section(u'=', 0, 0) == value) {
        return pair.section(u'=', 1);
      }
    }
    return value;
  }

  std::optional<QString> Named(const QString& name, const Scope& scope) const {
    if (scope.rule != nullptr) {
      if (name == "rule.ports"_L1) {
        return PortsOf(*scope.rule);
      }
      if (name.startsWith("rule."_L1)) {
        return scope.rule->value(name.sliced(5));
      }
      if (name == "index"_L1 || name == "number"_L1) {
        return QString::number(scope.index + (name == "index"_L1 ? 0 : 1));
      }
    }
    if (name == "count"_L1) {
      return QString::number(values_.rules.size());
    }
    if (name == "token"_L1) {
      return values_.token;
    }
    if (name == "session"_L1) {
      return values_.session;
    }
    if (name.startsWith("request."_L1)) {
      return values_.request.FindText(name.sliced(8)).value_or(QString());
    }
    return std::nullopt;
  }

  // A page's scripts have literals, not HTML.
  Escape EscapeAt(qsizetype place) const {
    if (escape_ != Escape::kHtml || place == 0) {
      return escape_;
    }
    const QStringView before = QStringView(text_).first(place);
    const qsizetype open = before.lastIndexOf("<script"_L1, -1, Qt::CaseInsensitive);
    const qsizetype closed = before.lastIndexOf("</script"_L1, -1, Qt::CaseInsensitive);
    return open > closed ? Escape::kScript : Escape::kHtml;
  }

  const QString& text_;
  const Escape escape_;
  const PageValues& values_;
  QString error_;
};

}  // namespace

Escape EscapeOfType(const QByteArray& type) {
  if (type.startsWith("text/javascript")) {
    return Escape::kScript;
  }
  if (type.startsWith("application/json")) {
    return Escape::kJson;
  }
  return type.startsWith("text/plain") || type.startsWith("text/css") ? Escape::kNone
                                                                      : Escape::kHtml;
}

QString Escaped(const QString& text, Escape escape) {
  switch (escape) {
    case Escape::kHtml:
      return text.toHtmlEscaped().replace(u'\'', u"&#39;"_s);
    case Escape::kScript:
      return ScriptEscaped(text);
    case Escape::kJson:
      return JsonEscaped(text);
    case Escape::kUrl:
      return QString::fromLatin1(QUrl::toPercentEncoding(text));
    case Escape::kNone:
      return text;
  }
  return {};
}

std::expected<QString, QString> FillPage(const QString& text, Escape escape,
                                         const PageValues& values) {
  return text.contains("{{"_L1) ? Filler(text, escape, values).Run() : text;
}

}  // namespace quayline
