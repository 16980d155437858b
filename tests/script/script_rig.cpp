// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_rig.h"

#include <QRegularExpression>

namespace quayline::testing {

using namespace Qt::StringLiterals;

QStringList Lines(const Texts& lines) {
  QStringList all;
  for (const char* line : lines) {
    all.append(QString::fromUtf8(line));
  }
  return all;
}

ScriptRig::ScriptRig(std::chrono::milliseconds missing)
    : RunParts(pages.Factory(), {.missing = missing}),
      entry{.http_type = u"http://"_s,
            .router_host = u"192.168.1.1"_s,
            .username = u"admin"_s,
            .password = u"secret"_s,
            .shown_password = u"******"_s,
            .entry_name = u"Web"_s,
            .entry_protocol = u"TCP"_s,
            .entry_start_port = u"80"_s,
            .entry_end_port = u"90"_s,
            .entry_ip = u"192.168.1.100"_s,
            .entry_computer_name = u"FrontDesk"_s} {
  QObject::connect(&log, &JobLog::appended, &browsers, [this](const QString& text) {
    if (text.trimmed().startsWith(u"Step "_s)) {
      order.append(text.trimmed().left(7));
    } else if (text.contains(u"Proceed To Next Command"_s)) {
      order.append(u"hold"_s);
    }
  });
}

std::optional<RunEnd> ScriptRig::Run(const Texts& lines, std::chrono::milliseconds limit) {
  Start(lines);
  Ends(limit);
  return end_;
}

void ScriptRig::Start(const Texts& lines) {
  entry.commands = Lines(lines);
  end_.reset();
  flow_.Start(RunToEnd());
}

bool ScriptRig::Ends(std::chrono::milliseconds limit) {
  return RunUntil([this] { return !flow_.IsRunning(); }, limit);
}

Task<> ScriptRig::RunToEnd() { end_ = co_await RunRouterCommands(environment, entry); }

QStringList ScriptRig::Results() const {
  QStringList results;
  for (const QString& line : log.Text().split(LineBreak(), Qt::SkipEmptyParts)) {
    const bool is_frame = line == LogSeparator() || line.startsWith(u"Step "_s) ||
                          line.startsWith(u"Running Script From"_s);
    if (!is_frame) {
      results.append(line);
    }
  }
  return results;
}

namespace {

struct Transcript {
  explicit Transcript(const char* text);

  QByteArrayList script;
  QStringList calls;
  QStringList results;
};

Transcript::Transcript(const char* text) {
  static const QRegularExpression kBetween(u"\\s+(?=[>=] )"_s);
  bool has_result = true;
  const auto end_line = [&] {
    results.append(has_result ? QStringList() : Lines({kOk}));
    has_result = false;
  };
  for (const QString& line : QString::fromUtf8(text).split(u'\n')) {
    for (const QString& part : line.trimmed().split(kBetween)) {
      if (part.startsWith(u"> "_s)) {
        calls.append(part.mid(2));
      } else if (part.startsWith(u"= "_s)) {
        const QString result = part.mid(2);
        results.append(result == u"-"_s ? QStringList()
                                        : QStringList(result.startsWith(u"ok"_s)
                                                          ? QLatin1String(kOk) + result.mid(2)
                                                          : result));
        has_result = true;
      } else {
        end_line();
        script.append(part.toUtf8());
      }
    }
  }
  end_line();
}

}  // namespace

void CheckScript(ScriptRig& rig, const char* transcript) {
  const Transcript expected(transcript);
  EXPECT_EQ(rig.Run(Texts(expected.script.begin(), expected.script.end())), RunEnd::kAllLinesDone);
  EXPECT_EQ(rig.pages.calls, expected.calls);
  EXPECT_EQ(rig.Results(), expected.results);
}

void CheckScripts(const std::vector<ScriptCase>& cases) {
  for (const ScriptCase& c : cases) {
    SCOPED_TRACE(c.fault);
    ScriptRig rig;
    if (c.prepare) {
      c.prepare(rig);
    }
    CheckScript(rig, c.transcript);
  }
}

}  // namespace quayline::testing
