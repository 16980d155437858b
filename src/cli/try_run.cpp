// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/try_run.h"

#include <QRegularExpression>

#include <algorithm>

#include "cli/terminal.h"
#include "core/port_list_file.h"
#include "core/router_text.h"
#include "core/text_bytes.h"
#include "core/update_command.h"

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

std::unexpected<CliError> Failure(CliExit exit, const QString& message) {
  return std::unexpected(CliError{.exit = exit, .message = message});
}

QList<PortEntry> SampleEntries() {
  return {{.app_name = u"Web"_s,
           .forwarded_to = u"192.168.1.100(FrontDesk)"_s,
           .start_port = u"8080"_s,
           .end_port = u"8080"_s,
           .protocol = u"TCP"_s,
           .description = {}},
          {.app_name = u"Voice"_s,
           .forwarded_to = u"192.168.1.101(Attic)"_s,
           .start_port = u"16384"_s,
           .end_port = u"16403"_s,
           .protocol = u"UDP"_s,
           .description = {}}};
}

// A value as the report shows it: one line, and no password.
QString Shown(const QString& name, const QString& value, const QString& password) {
  static const QRegularExpression kPassword(u"pass|pwd|psw|secret"_s,
                                            QRegularExpression::CaseInsensitiveOption);
  constexpr qsizetype kLongest = 300;
  if (name.contains(kPassword) || (!password.isEmpty() && value == password)) {
    return u"****"_s;
  }
  QString shown = OnOneLine(value);
  if (name == "JSON"_L1 && password.size() > 2) {
    shown.replace(password, u"****"_s);
  }
  return shown.size() > kLongest ? shown.first(kLongest) + u"..."_s : shown;
}

}  // namespace

std::expected<RouterRecord, CliError> ReadRouterFile(const QString& file) {
  Problems problems;
  const QList<TextLine> lines = ReadTextFile(file, problems);
  const QList<RouterSource> routers = ReadRouters(lines, file, {}, problems);
  if (HoldErrors(problems)) {
    return Failure(CliExit::kUsage, FormatProblems(problems).trimmed());
  }
  if (routers.isEmpty()) {
    return Failure(CliExit::kUsage, u"\"%1\" has no router."_s.arg(file));
  }
  return routers.first().record;
}

std::expected<std::unique_ptr<TryRun>, CliError> TryRun::Prepare(const TryArguments& arguments,
                                                                 AppContext& context,
                                                                 PageHostFactory make_host) {
  const auto record = ReadRouterFile(arguments.router_file);
  if (!record) {
    return std::unexpected(record.error());
  }
  auto router = StubRouter::Open(arguments.pages, arguments.answers);
  if (!router) {
    return Failure(CliExit::kUsage, router.error());
  }
  const auto port = (*router)->Start();
  if (!port) {
    return Failure(CliExit::kFailed, port.error());
  }
  QList<PortEntry> entries = SampleEntries();
  if (!arguments.list.isEmpty()) {
    const auto list = LoadPortList(arguments.list);
    if (!list) {
      return Failure(CliExit::kUsage, u"The list %1 cannot be read."_s.arg(arguments.list));
    }
    entries = *list;
  }
  SelectRouter(context.session, *record);
  context.session.username = record->routerusername;
  context.session.password = record->routerpassword;
  context.session.http_type = u"http://"_s;
  context.session.router_ip = u"127.0.0.1"_s;
  context.session.http_port = QString::number(*port);
  context.job_options.silent_mode = true;
  context.job_options.throttle = false;
  context.job_options.verify_after_update = true;
  ClampPorts(entries, context.session);
  const UpdateVerdict verdict = CheckUpdate(entries, context.session, context.translator);
  if (!verdict.accepted) {
    return Failure(CliExit::kRefused, verdict.message);
  }
  context.port_list.SetEntries(std::move(entries));
  // A script that waits for words which never appear would wait forever: no user is there to stop
  // it.
  constexpr int kLongestTrial = 300;
  UpdateArguments update;
  update.is_trial = true;
  update.timeout_seconds = arguments.timeout_seconds.value_or(kLongestTrial);
  return std::unique_ptr<TryRun>(
      new TryRun(*std::move(router), context, std::move(make_host), update));
}

TryRun::TryRun(std::unique_ptr<StubRouter> router, AppContext& context, PageHostFactory make_host,
               const UpdateArguments& arguments)
    : context_(context),
      router_(std::move(router)),
      run_(std::make_unique<UpdateRun>(context, std::move(make_host), arguments)) {
  connect(router_.get(), &StubRouter::exchanged, this, &TryRun::ReportExchange);
  connect(run_.get(), &UpdateRun::entered, this,
          [this](int exit_status) { entered_ = JudgeEntered(exit_status); });
  connect(run_.get(), &UpdateRun::finished, this, [this](int exit_status) {
    Q_EMIT finished(entered_ ? JudgeRemoved(exit_status) : JudgeEntered(exit_status));
  });
}

void TryRun::ReportExchange(const StubExchange& exchange) {
  if (exchange.IsPlain()) {
    return;
  }
  const QString& password = context_.session.password;
  QStringList fields;
  for (const auto& [name, value] : exchange.fields) {
    fields.append(name + u'=' + Shown(name, value, password));
  }
  const QString indent = LineBreak() + u"    "_s;
  WriteLog(indent +
           u"%1 %2 %3"_s.arg(exchange.method, OnOneLine(exchange.path), fields.join(u' ')));
  WriteLog(indent + u"  -> %1, %2"_s.arg(QString::number(exchange.status), exchange.answer));
  for (const QString& done : exchange.done) {
    WriteLog(indent + u"  "_s + OnOneLine(done));
  }
  for (const QString& problem : exchange.problems) {
    WriteLog(indent + u"  PROBLEM: "_s + OnOneLine(problem));
  }
}

int TryRun::Judge(int exit_status, const QList<PortEntry>& wanted) {
  const QStringList differences =
      DifferencesFrom(wanted, router_->FirstRules(), router_->KeptRules());
  for (const QString& difference : differences) {
    WriteLines(difference + u'\n');
  }
  if (router_->HasPendingChanges()) {
    WriteLines(u"Changes were sent and never applied.\n"_s);
  }
  const bool is_wrong = exit_status == static_cast<int>(CliExit::kDone) && !differences.isEmpty();
  return is_wrong ? static_cast<int>(CliExit::kNotAsWanted) : exit_status;
}

// What the router kept counts beside what its page shows.
int TryRun::JudgeEntered(int exit_status) {
  const int judged = Judge(exit_status, context_.port_list.Entries());
  const QList<EntryResult>& results = run_->Outcome().results;
  const bool is_seen = std::ranges::all_of(
      results, [](const EntryResult& result) { return result.state == EntryState::kOnRouter; });
  const bool is_taken =
      DifferencesFrom(context_.port_list.Entries(), router_->FirstRules(), router_->KeptRules())
          .isEmpty();
  if (judged == static_cast<int>(CliExit::kNotAsWanted) && is_taken && !is_seen) {
    WriteLines(
        u"The router has taken every rule, but its page does not show them. A page that was saved "
        "shows for ever what it showed then: write {{each rules}} into its list, as \"Writing a "
        "router script\" describes.\n"_s);
  }
  if (judged != static_cast<int>(CliExit::kDone)) {
    return judged;
  }
  if (!is_seen) {
    WriteLines(
        u"The page that the script [routerportpage] leads to does not show the rules. Does it end "
        u"at "
        "the table?\n"_s);
    return static_cast<int>(CliExit::kNotAsWanted);
  }
  WriteLines(u"The router has every rule as it is wanted, and its page shows it.\n"_s);
  if (!context_.session.remove_script.isEmpty() && !run_->TakesBack()) {
    WriteLines(
        u"The script [routerremove] was not tried: what the page showed before the entries does "
        u"not "
        "tell which rules are new.\n"_s);
  }
  return judged;
}

int TryRun::JudgeRemoved(int exit_status) {
  const int judged = Judge(exit_status, {});
  if (*entered_ != static_cast<int>(CliExit::kDone)) {
    return *entered_;
  }
  if (judged == static_cast<int>(CliExit::kDone)) {
    WriteLines(u"The script [routerremove] has removed every rule again, and no other.\n"_s);
  }
  return judged;
}

}  // namespace quayline
