// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/router_detector.h"

#include <QWidget>

#include "ui/main/main_messages.h"

namespace quayline {

RouterDetector::RouterDetector(const AppContext& context, const RouterListModel& routers,
                               Prompts& prompts, QWidget* window)
    : QObject(window), context_(context), routers_(routers), prompts_(prompts), window_(window) {
  connect(&detection_, &RouterDetection::named, this, &RouterDetector::OnNamed);
  connect(&detection_, &RouterDetection::ended, this, &RouterDetector::OnEnded);
}

void RouterDetector::DetectForUser() {
  is_wanted_by_user_ = true;
  Start();
}

void RouterDetector::Start() {
  name_ = context_.session.router_name;
  detection_.Start(context_.session.router_ip, context_.session.http_port.toInt(),
                   routers_.Names());
}

void RouterDetector::OnNamed(int row) {
  if (!is_wanted_by_user_ && context_.session.router_name != name_) {
    return;  // the user has chosen meanwhile
  }
  Q_EMIT found(row);
  name_ = context_.session.router_name;
  if (std::exchange(is_wanted_by_user_, false)) {
    ShowFound(row);
  }
}

void RouterDetector::OnEnded(const QList<int>& nearest, bool names_nothing) {
  if (!std::exchange(is_wanted_by_user_, false)) {
    return;
  }
  if (!nearest.isEmpty()) {
    OfferNearest(nearest);
  } else if (names_nothing) {
    Q_EMIT found(0);
    ShowFound(0);
  } else {
    prompts_.Tell(window_,
                  Text(message::kRouterNotFound) + u'\n' + Text(message::kRouterNotFoundHint));
  }
}

void RouterDetector::OfferNearest(const QList<int>& nearest) {
  QStringList choices;
  for (const int row : nearest) {
    choices.append(routers_.Name(row).replace(u'&', QStringLiteral("&&")));
  }
  choices.append(Text(message::kNoneOfTheseRouters));
  prompts_.AskChoice(window_, QStringLiteral("Quayline"), Text(message::kWhichRouter), choices,
                     [this, nearest](qsizetype chosen) {
                       if (chosen < nearest.size()) {
                         Q_EMIT found(nearest[chosen]);
                       }
                       Q_EMIT shown();
                     });
}

void RouterDetector::ShowFound(int row) {
  prompts_.Tell(window_,
                Text(message::kRouterFound) + u'\n' + routers_.Name(row) + u'\n' +
                    Text(message::kRouterFoundHint),
                [this] { Q_EMIT shown(); });
}

}  // namespace quayline
