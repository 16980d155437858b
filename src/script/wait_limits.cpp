// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/wait_limits.h"

namespace quayline {

QJsonObject PageScriptLimits(const WaitLimits& limits) {
  const auto Ms = [](WaitLimits::Time time) { return static_cast<qint64>(time.count()); };
  return {
      {QStringLiteral("loadTimer"), Ms(limits.load_timer)},
      {QStringLiteral("actionTimer"), Ms(limits.action_timer)},
      {QStringLiteral("questionTimer"), Ms(limits.question_timer)},
      {QStringLiteral("fastInterval"), Ms(limits.fast_interval)},
      {QStringLiteral("chain"), Ms(limits.chain)},
      {QStringLiteral("chainDepth"), limits.chain_depth},
      {QStringLiteral("request"), Ms(limits.request)},
      {QStringLiteral("heldRequestFactor"), limits.held_request_factor},
      {QStringLiteral("heldRequest"), Ms(limits.held_request)},
      {QStringLiteral("save"), Ms(limits.save)},
      {QStringLiteral("message"), Ms(limits.message)},
      {QStringLiteral("periodicRounds"), limits.periodic_rounds},
      {QStringLiteral("animationFrame"), Ms(limits.animation_frame)},
      {QStringLiteral("refresh"), Ms(limits.refresh)},
      {QStringLiteral("taskHops"), limits.task_hops},
      {QStringLiteral("lookAgain"), Ms(limits.look_again)},
      {QStringLiteral("unwatched"), Ms(limits.unwatched)},
      {QStringLiteral("unwatchedFrames"), Ms(limits.unwatched_frames)},
  };
}

}  // namespace quayline
