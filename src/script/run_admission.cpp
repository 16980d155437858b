// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/run_admission.h"

#include "async/wait.h"
#include "core/foreign_scripts.h"
#include "script/foreign_script.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

// Nothing signals that another program has let go of the router.
constexpr auto kLockPoll = 250ms;

}  // namespace

RunAdmission::RunAdmission(AppContext& context, PageQuestions& questions, const RunnerTexts& texts)
    : context_(context), questions_(questions), texts_(texts) {}

Task<> RunAdmission::AwaitOtherRuns(QString router_host) {
  JobFlags& flags = context_.job_flags;
  const auto is_free = [&flags] { return flags.LeavingRuns() == 0 || flags.JobStopRequested(); };
  if (!is_free()) {
    Q_EMIT waitingFor(router_host);
    co_await Until(is_free).WokenBy(&flags, &JobFlags::changed);
    Q_EMIT waitingFor({});
  }
}

// A script that cannot be looked up, because the databases are being updated or its row is gone,
// is refused as well: the user cannot have seen it.
Task<bool> RunAdmission::AskPermission(int router_id) {
  ForeignScripts scripts(context_.program_folder);
  const auto origin = scripts.OriginOf(router_id);
  is_confined_ = origin && !origin->IsSigned();
  if (!origin) {
    co_return true;
  }
  const auto router = context_.databases.FindRouter(router_id);
  if (!router) {
    co_return false;
  }
  if (scripts.IsAllowed(*router)) {
    co_return true;
  }
  const bool is_allowed = co_await AskUser(DescribeScripts(*router, *origin));
  if (is_allowed) {
    scripts.Allow(*router);
  }
  co_return is_allowed;
}

Task<bool> RunAdmission::AskUser(ForeignScript script) {
  OneShot<bool> answer;
  questions_.AskForeignScript(script, answer.Callback());
  JobFlags& flags = context_.job_flags;
  answer.GiveUpWhen(&flags, &JobFlags::changed, [&flags] { return flags.JobStopRequested(); });
  const std::optional<bool> is_allowed = co_await answer;
  co_return is_allowed.value_or(false);
}

Task<> RunAdmission::LockRouter(RouterSession router) {
  JobFlags& flags = context_.job_flags;
  const QString key = RouterKey(router);
  lock_ = context_.router_locks.TryTake(key);
  if (lock_ != nullptr) {
    co_return;
  }
  Q_EMIT waitingFor(context_.translator.Text(texts_.other_program).arg(RouterHost(router)));
  while (lock_ == nullptr && !flags.JobStopRequested()) {
    co_await Until([&flags] { return flags.JobStopRequested(); })
        .WokenBy(&flags, &JobFlags::changed)
        .AtMost(kLockPoll);
    lock_ = context_.router_locks.TryTake(key);
  }
  Q_EMIT waitingFor({});
}

}  // namespace quayline
