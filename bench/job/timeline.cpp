// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "bench/job/timeline.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <utility>

namespace quayline::bench {

namespace {

struct Event {
  qint64 time = 0;
  qsizetype order = 0;  // of events of the same time
  QString what;
};

QList<Event> SortedEvents(const QStringList& lines) {
  QList<Event> events;
  for (const QString& line : lines) {
    const qsizetype blank = line.indexOf(QLatin1Char(' '));
    events.append({.time = line.left(blank).toLongLong(),
                   .order = events.size(),
                   .what = line.mid(blank + 1)});
  }
  std::ranges::sort(events, {},
                    [](const Event& event) { return std::pair(event.time, event.order); });
  return events;
}

// Turns the events of one entry into spans.
class EntryReader final {
 public:
  void Take(const Event& event) {
    if (event.what.startsWith(QLatin1String("log "))) {
      TakeLog(event);
    } else if (event.what.startsWith(QLatin1String("host."))) {
      TakeBrowser(event);
    } else {
      TakePage(event);
    }
  }

  EntryTrace Finish(qint64 end) {
    Close(Lane::kScript, end);
    entry_.end = end;
    return std::exchange(entry_, {});
  }

 private:
  void TakeLog(const Event& event) {
    static const QRegularExpression step(QStringLiteral("Step \\d+\\. (\\w+)"));
    // The first log entry after a load means that the page was found to be idle.
    Close(Lane::kBrowser, event.time);
    const QRegularExpressionMatch match = step.match(event.what);
    if (!match.hasMatch()) {
      return;
    }
    if (entry_.begin == 0) {
      entry_.begin = event.time;
    }
    Close(Lane::kScript, event.time);
    Open(Lane::kScript, match.captured(1), event.time);
  }

  void TakeBrowser(const Event& event) {
    Close(Lane::kBrowser, event.time);
    if (event.what == QLatin1String("host.started")) {
      Open(Lane::kBrowser, QStringLiteral("fetch"), event.time);
    } else if (event.what == QLatin1String("host.document")) {
      Open(Lane::kBrowser, QStringLiteral("build"), event.time);
    } else {
      Open(Lane::kBrowser, QStringLiteral("proof"), event.time);
    }
  }

  // Each of a page's times ends what the one before it began.
  void TakePage(const Event& event) {
    static const std::array<std::pair<const char*, const char*>, 4> kEnds{{
        {"page.responseStart", "answer"},
        {"page.responseEnd", "body"},
        {"page.domInteractive", "document"},
        {"page.loadEventEnd", "load"},
    }};
    const auto end = std::ranges::find_if(
        kEnds, [&event](const auto& row) { return event.what == QLatin1String(row.first); });
    if (end != kEnds.end()) {
      entry_.spans.append({.lane = Lane::kPage,
                           .what = QLatin1String(end->second),
                           .begin = page_time_,
                           .end = event.time});
    }
    const bool is_within = event.what == QLatin1String("page.domComplete");
    page_time_ = is_within ? page_time_ : event.time;
  }

  void Open(Lane lane, const QString& what, qint64 time) {
    open_.append({.lane = lane, .what = what, .begin = time, .end = 0});
  }

  void Close(Lane lane, qint64 time) {
    for (qsizetype i = open_.size(); i-- > 0;) {
      if (open_[i].lane == lane) {
        Span span = open_.takeAt(i);
        span.end = time;
        entry_.spans.append(span);
      }
    }
  }

  EntryTrace entry_;
  QList<Span> open_;
  qint64 page_time_ = 0;
};

constexpr int kWidth = 1000;
constexpr int kLeft = 90;
constexpr int kRowHeight = 26;
constexpr int kRowGap = 52;
constexpr int kTop = 30;

struct LaneStyle {
  const char* name;
  const char* colours[3];
};
constexpr LaneStyle kLanes[] = {
    {"script", {"#0b5563", "#1f7f8f", "#0b5563"}},
    {"browser", {"#c9833a", "#e3b27c", "#8c5a22"}},
    {"page", {"#5b6c8f", "#8d9bb8", "#3c4a68"}},
};

QString Rectangle(const Span& span, const QString& colour, double scale, qint64 origin, int y) {
  const double x = kLeft + static_cast<double>(span.begin - origin) * scale;
  const double width = std::max(1.0, static_cast<double>(span.end - span.begin) * scale);
  constexpr double kUsPerMs = 1000;
  QString text =
      QStringLiteral(
          "<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" fill=\"%5\" "
          "stroke=\"#fff\" stroke-width=\"0.5\"><title>%6: %7 ms</title></rect>\n")
          .arg(QString::number(x, 'f', 1), QString::number(y), QString::number(width, 'f', 1),
               QString::number(kRowHeight), colour, span.what,
               QString::number(static_cast<double>(span.end - span.begin) / kUsPerMs, 'f', 2));
  constexpr double kLabelWidth = 34;
  if (width >= kLabelWidth) {
    text += QStringLiteral("<text x=\"%1\" y=\"%2\" font-size=\"11\">%3</text>\n")
                .arg(QString::number(x, 'f', 1), QString::number(y + kRowHeight + 13), span.what);
  }
  return text;
}

QString Axis(double scale, qint64 length) {
  QString text;
  constexpr qint64 kTick = 10'000;
  for (qint64 time = 0; time <= length; time += kTick) {
    const QString x = QString::number(kLeft + static_cast<double>(time) * scale, 'f', 1);
    text += QStringLiteral(
                "<line x1=\"%1\" y1=\"18\" x2=\"%1\" y2=\"%2\" stroke=\"#ccd\"/>"
                "<text x=\"%1\" y=\"13\" font-size=\"11\" text-anchor=\"middle\">%3</text>\n")
                .arg(x, QString::number(kTop + 3 * kRowGap), QString::number(time / 1000));
  }
  return text;
}

}  // namespace

QList<EntryTrace> ReadTrace(const QStringList& lines) {
  QList<EntryTrace> entries;
  EntryReader reader;
  bool is_within = false;
  for (const Event& event : SortedEvents(lines)) {
    is_within = is_within || event.what.startsWith(QLatin1String("log Step 01."));
    if (!is_within) {
      continue;
    }
    reader.Take(event);
    if (event.what.startsWith(QLatin1String("log Finished"))) {
      entries.append(reader.Finish(event.time));
      is_within = false;
    }
  }
  return entries;
}

const EntryTrace& MedianEntry(QList<EntryTrace>& entries) {
  const auto middle = entries.begin() + entries.size() / 2;
  std::ranges::nth_element(entries, middle, {}, &EntryTrace::Length);
  return *middle;
}

QByteArray TimelineSvg(const EntryTrace& entry) {
  const double scale =
      static_cast<double>(kWidth - kLeft - 20) / static_cast<double>(entry.Length());
  QString text = QStringLiteral(
                     "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %1 %2\" "
                     "font-family=\"sans-serif\" fill=\"#223\">\n"
                     "<rect width=\"%1\" height=\"%2\" fill=\"#fff\"/>\n<text x=\"8\" y=\"13\" "
                     "font-size=\"11\">ms</text>\n")
                     .arg(kWidth)
                     .arg(kTop + 3 * kRowGap + 8) +
                 Axis(scale, entry.Length());
  for (const Lane lane : {Lane::kScript, Lane::kBrowser, Lane::kPage}) {
    const LaneStyle& style = kLanes[static_cast<int>(lane)];
    const int y = kTop + static_cast<int>(lane) * kRowGap;
    text += QStringLiteral("<text x=\"8\" y=\"%1\" font-size=\"13\">%2</text>\n")
                .arg(y + 17)
                .arg(QLatin1String(style.name));
    QStringList kinds;  // of one colour each
    for (const Span& span : entry.spans) {
      if (span.lane == lane) {
        if (!kinds.contains(span.what)) {
          kinds.append(span.what);
        }
        const auto kind = static_cast<size_t>(kinds.indexOf(span.what));
        const char* colour = style.colours[kind % std::size(style.colours)];
        text += Rectangle(span, QLatin1String(colour), scale, entry.begin, y);
      }
    }
  }
  return (text + QStringLiteral("</svg>\n")).toUtf8();
}

}  // namespace quayline::bench
