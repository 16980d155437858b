// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/idle_reports.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QWebEngineScript>

#include "async/wait.h"
#include "script/wait_limits.h"
#include "script/web/web_profile.h"

namespace quayline {

IdleReports::IdleReports(WebProfile& profile, ScriptCalls& calls, QObject* parent)
    : QObject(parent), profile_(profile), calls_(calls) {}

void IdleReports::Ask(PendingWork work, bool is_led, std::function<void(IdleReport)> report) {
  wait_.Start(Wait(work, is_led, std::move(report)));
}

// "idle", the wait, the number of timers that are left, whether the page gave up, the state of its
// markup; then a line with the error texts as JSON, or an empty one; on lines of their own the
// requests that are periodic.
void IdleReports::Take(const QString& text, bool is_idle) {
  const QStringList lines = text.split(QLatin1Char('\n'));
  const QStringList fields = lines.first().split(QLatin1Char(' '));
  const QJsonDocument complaints = QJsonDocument::fromJson(lines.value(1).toUtf8());
  profile_.AddPeriodicRequests(lines.mid(2));
  Q_EMIT taken(
      fields.value(1), is_idle,
      {.later_timers = fields.value(2).toInt(),
       .gave_up = fields.value(3) == QLatin1String("1"),
       .settled_state = fields.value(4),
       .complaints = complaints.isArray() ? std::optional(complaints.toVariant().toStringList())
                                          : std::nullopt});
}

// A document without our scripts has nothing that could start a navigation. A report is lost when
// the document is written again meanwhile: the page is asked once more.
Task<> IdleReports::Wait(PendingWork work, bool is_led, std::function<void(IdleReport)> report) {
  std::optional<IdleReport> got;
  bool is_pending = false;
  QString id;
  const QObject listener;  // ends the connection with this frame
  connect(this, &IdleReports::taken, &listener,
          [&](const QString& which, bool is_idle, IdleReport page_report) {
            if (which == id) {
              is_pending = true;
              got = is_idle ? std::optional(page_report) : got;
            }
          });
  while (!got) {
    id = QString::number(++waits_);
    is_pending = false;
    OneShot<QVariant> asked;
    calls_.Run(QStringLiteral("window.quaylineReportIdle?.(...%1)")
                   .arg(AsJavaScript(
                       {id, is_led, profile_.PeriodicRequests(), work == PendingWork::kSaves})),
               QWebEngineScript::ApplicationWorld, asked.Callback());
    const QVariant answer = (co_await asked).value_or(QVariant());
    if (answer.typeId() == QMetaType::QString) {
      // All that the page began was announced before this answer.
      Take(answer.toString(), true);
      report(*got);
      co_return;
    }
    if (!answer.toBool()) {
      got = IdleReport{};
      break;
    }
    co_await Until([&] { return got || is_pending; })
        .WokenBy(this, &IdleReports::taken)
        .AtMost(profile_.Limits().report_lost);
    if (is_pending) {
      co_await Until([&got] { return got.has_value(); })
          .WokenBy(this, &IdleReports::taken)
          .AtMost(profile_.Limits().save + profile_.Limits().report_lost);
    }
  }
  // Brings in what all this has announced meanwhile, and is the second look at the markup.
  OneShot<QString> flushed;
  calls_.Run(QStringLiteral("window.quaylineMarkupState?.()"), QWebEngineScript::ApplicationWorld,
             [done = flushed.Callback()](const QVariant& state) { done(state.toString()); });
  if (const std::optional<QString> state = co_await flushed; state != got->settled_state) {
    got->settled_state.clear();
  }
  report(*got);
}

}  // namespace quayline
