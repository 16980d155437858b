// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_rig.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline::testing {

QStringList Lines(const std::vector<const char*>& lines) {
  QStringList all;
  for (const char* line : lines) {
    all.append(QString::fromUtf8(line));
  }
  return all;
}

ScriptRig::ScriptRig()
    : entry{.http_type = QStringLiteral("http://"),
            .router_host = QStringLiteral("192.168.1.1"),
            .username = QStringLiteral("admin"),
            .password = QStringLiteral("secret"),
            .shown_password = QStringLiteral("******"),
            .entry_name = QStringLiteral("Web"),
            .entry_protocol = QStringLiteral("TCP"),
            .entry_start_port = QStringLiteral("80"),
            .entry_end_port = QStringLiteral("90"),
            .entry_ip = QStringLiteral("192.168.1.100"),
            .entry_computer_name = QStringLiteral("FrontDesk")},
      browsers(pages.Factory(), flags, flags.active_browser_index),
      environment_{
          .flags = flags,
          .options = options,
          .translator = translator_,
          .log = log,
          .browsers = browsers,
          .browser = [this] { return browsers.Active(); },
          .enable_proceed =
              [this](bool enabled) {
                order.append(enabled ? QStringLiteral("button on") : QStringLiteral("button off"));
              },
          .tell_wait = [this](const QString& what) { waits.append(what); }} {
  QObject::connect(&log, &JobLog::appended, &browsers, [this](const QString& text) {
    if (text.trimmed().startsWith(QStringLiteral("Step "))) {
      order.append(text.trimmed().left(7));
    } else if (text.contains(QStringLiteral("Proceed To Next Command"))) {
      order.append(QStringLiteral("hold"));
    }
  });
}

std::optional<RunEnd> ScriptRig::Run(const QStringList& lines, std::chrono::milliseconds limit) {
  Start(lines);
  RunUntil([this] { return !IsRunning(); }, limit);
  return end_;
}

void ScriptRig::Start(const QStringList& lines) {
  entry.commands = lines;
  end_.reset();
  flow_.Start(RunToEnd());
}

Task<> ScriptRig::RunToEnd() { end_ = co_await RunRouterCommands(environment_, entry); }

QStringList ScriptRig::Results() const {
  QStringList results;
  for (const QString& line : log.Text().split(LineBreak(), Qt::SkipEmptyParts)) {
    const bool is_frame = line == LogSeparator() || line.startsWith(QStringLiteral("Step ")) ||
                          line.startsWith(QStringLiteral("Running Script From"));
    if (!is_frame) {
      results.append(line);
    }
  }
  return results;
}

void CheckScripts(const std::vector<ScriptCase>& cases) {
  for (const ScriptCase& c : cases) {
    ScriptRig rig;
    if (c.prepare) {
      c.prepare(rig);
    }
    const std::optional<RunEnd> end = rig.Run(Lines(c.script));
    EXPECT_EQ(end, c.end) << c.fault;
    EXPECT_EQ(rig.pages.calls, Lines(c.calls)) << c.fault;
    EXPECT_EQ(rig.Results(), Lines(c.results)) << c.fault;
  }
}

}  // namespace quayline::testing
