// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "async/task.h"
#include "async/wait.h"
#include "core/text_bytes.h"
#include "script/page_call.h"
#include "script/run_environment.h"
#include "script/script_line.h"
#include "script/script_run.h"

namespace quayline {

// What is logged when the page fails while a command waits for it.
enum class ErrorBlock {
  kAddress,               // with the router's address and the argument as its path
  kAddressWithPageError,  // and with what the browser reported, on lines of its own
  kWords,
  kJavaScript,
};

// One command that is carried out: what handlers work with. It lives as long as the command.
class CommandCall final {
 public:
  CommandCall(RunEnvironment& environment, ScriptRun& script_run)
      : env(environment), run(script_run) {}

  QString Text(const Message& message) const { return env.translator.Text(message); }

  // Logs a line break and `text` as one line: line breaks in the text of a page are removed.
  void LogLine(const QString& text) const { env.log.Append(LineBreak() + OnOneLine(text)); }
  // Logs the text for the result of an operation.
  void LogResult(const QJsonValue& result) const;
  // Logs "(Successful) (" and `value` and ")".
  void LogSuccessWith(const QString& value) const;

  // Logs that the entry is on the router, and is left out.
  void LogEntryExists() const;
  // Logs that the entry ends as failed, and why.
  void LogEntrySkipped(const QString& why) const;

  // Asks the page agent about the run's frame. If the page is gone or gives no answer, the call's
  // default answer is returned; a stop ends the wait. Check Stopped() before the answer is used. If
  // the target is missing, or a question is answered with no, the page is asked again after its
  // pending work: pages write their fields late.
  Task<QJsonValue> Ask(PageCall call) const;
  // The same, once.
  Task<QJsonValue> AskOnce(PageCall call) const;

  bool Stopped() const { return env.flags.JobStopRequested(); }

  // To be taken before anything that may navigate; see PageWait.
  quint64 MarkPage() const { return env.pages.Mark(); }
  // Waits until no navigation that began since `mark` is under way and the page is idle. Nothing:
  // the run continues. Logs the error block when the page failed.
  Task<std::optional<RunEnd>> AwaitPage(quint64 mark, ErrorBlock block);

  // To be called before a navigation that would end what the page has pending: a box may save by
  // itself when it is set, and a command that ignores page loads may have left a save under way.
  // Logs what is lost. Nothing: the run continues.
  Task<std::optional<RunEnd>> LeavePage() const;

  // Ends a wait of any kind: a page error (whose block is logged) or a stop.
  std::optional<RunEnd> TakeInterruption(ErrorBlock block);
  // Waits for a time; with 0 for ever. A stop ends the wait, and so does a page error where an
  // error block is named.
  Task<std::optional<RunEnd>> Wait(int time_ms, std::optional<ErrorBlock> block);
  // Sets the interval of the script's timer, which stays until another line sets it. A text that is
  // no such number leaves it.
  void SetTimer(const QString& time_ms) const;

  // Types into the control of the page that has the focus.
  void SendKeys(const QString& keys) const;
  // Runs code as a script of the top page, with the entry in it as `quayline`. Returns what the
  // code failed with; empty where it did not.
  Task<QString> RunInPage(QString code) const;
  // Reports which names of the page are nearest to one that was not found.
  Task<> ShowNearestNames(QString name) const;
  // Empties the browser's cache; false when it could not, or the run was stopped.
  Task<bool> ClearCache() const;

  RunEnvironment& env;
  ScriptRun& run;

 private:
  // Keeps the error texts that came with the markup's `state`.
  void NoteComplaints(const QString& state, const std::optional<QStringList>& texts) const;
  std::optional<RunEnd> EndOf(WaitEnd end, ErrorBlock block);
  void LogErrorBlock(ErrorBlock block) const;
  // Ends the wait for an answer of `host` with a stop, and with the host itself. A popup that the
  // call opens does not end it.
  template <typename T>
  void GiveUpWithRun(OneShot<T>& answer, PageHost* host) const;
};

// The label by which some routers list a rule: "Web [TCP/80~80]". An entry of both protocols goes
// by its TCP label. Nothing for an unknown protocol.
std::optional<QString> EntryLabel(const RunArguments& entry);

}  // namespace quayline
