// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/start_up.h"

#include <limits>

#include "async/wait.h"
#include "core/save_file.h"
#include "ui/main/main_messages.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kRoutersAStep = 500;  // a step takes much less than an animation frame

// A language that is not installed any more counts as none.
QString CurrentLanguage(const QStringList& languages, const QString& stored) {
  return languages.contains(stored) ? stored : setting::kLanguage.Standard();
}

}  // namespace

StartUp::StartUp(AppContext& context, ListCommands& list, RouterListModel& routers,
                 RouterSelection& selection)
    : context_(context), list_(list), routers_(routers), selection_(selection) {}

std::expected<void, QString> StartUp::Prepare() {
  RemoveUnfinishedWrites(context_.program_folder);
  context_.job_options.silent_mode = context_.settings.Boolean(setting::kSilentMode);
  context_.job_options.verify_after_update = context_.settings.Boolean(setting::kVerifyAfterUpdate);
  context_.job_options.throttle = context_.settings.Boolean(setting::kScriptThrottle);
  if (const auto opened = context_.databases.Open(context_.program_folder, context_.shipped_folder);
      !opened) {
    return std::unexpected(TextOf(Sentence{message::kCannotStart,
                                           {QString::number(opened.error().number),
                                            TextOf(opened.error().description, context_.translator),
                                            context_.maker_site.Forums().toString()}},
                                  context_.translator));
  }
  return {};
}

void StartUp::Begin() { flow_.Start(Load()); }

Task<> StartUp::Load() {
  ReadLanguages();
  co_await Sleep(0ms);
  co_await LoadRouters();
  co_await Until([this] { return is_window_shown_; }).WokenBy(this, &StartUp::windowShown);
  co_await Sleep(100ms);  // until the window is on the screen
  list_.LoadAtStart();
  RestoreSession();
  Q_EMIT finished();
  co_await Sleep(0ms);
  context_.databases.KeepGoodCopies();
}

Task<> StartUp::FillAgain() {
  co_await LoadRouters();
  RestoreSession();
  context_.databases.KeepGoodCopies();
}

void StartUp::NoteWindowShown() {
  is_window_shown_ = true;
  Q_EMIT windowShown();
}

void StartUp::ReadLanguages() {
  const QStringList languages = context_.translator.AvailableLanguages();
  Q_EMIT languagesRead(languages,
                       CurrentLanguage(languages, context_.settings.Value(setting::kLanguage)));
}

Task<> StartUp::LoadRouters() {
  routers_.Reset(context_.translator.Text(message::kChooseRouter));
  const int total = context_.databases.RouterCount();
  int last_id = std::numeric_limits<int>::min();
  while (true) {
    const QList<RouterName> names = context_.databases.RouterNames(last_id, kRoutersAStep);
    if (names.isEmpty()) {
      break;
    }
    last_id = names.last().id;
    routers_.Append(names);
    Q_EMIT routersProgress(routers_.RouterCount(), total);
    co_await Sleep(0ms);
  }
  Q_EMIT routersLoaded(routers_.RouterCount());
}

// The stored login is the user's own one: it wins over that of the router's row. Only an address
// that was looked up is stored.
void StartUp::RestoreSession() {
  RouterSession& session = context_.session;
  context_.session_store.Read(session);
  const int row = routers_.Find(session.router_name);
  session.is_name_unknown = row < 0 && !session.router_name.isEmpty();
  selection_.Restore(row, routers_.RouterId(row));
  if (session.router_ip.isEmpty() || session.router_ip == QLatin1String("0.0.0.0")) {
    session.router_ip = DefaultGateway(context_.adapters.List());
    context_.session_store.Write(session);
  }
  Q_EMIT sessionRead();
}

}  // namespace quayline
