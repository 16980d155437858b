// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/start_up.h"

#include <QDate>

#include <limits>

#include "async/wait.h"
#include "core/save_file.h"
#include "ui/main/main_messages.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kRoutersAStep = 500;  // a step takes much less than an animation frame

// "English | English" where nothing, or a language that is not installed, is stored.
QString CurrentLanguage(const QStringList& languages, const QString& stored) {
  return languages.contains(stored) ? stored : QStringLiteral("English | English");
}

}  // namespace

StartUp::StartUp(AppContext& context, ListCommands& list, RouterListModel& routers, QObject* parent)
    : QObject(parent), context_(context), list_(list), routers_(routers) {}

std::expected<void, QString> StartUp::Prepare() {
  RemoveUnfinishedWrites(context_.program_folder);
  NoteDailyCheck();
  context_.job_options.silent_mode = context_.settings.Boolean(setting::kSilentMode, true);
  context_.job_options.verify_after_update =
      context_.settings.Boolean(setting::kVerifyAfterUpdate, true);
  context_.job_options.throttle = context_.settings.Boolean(setting::kScriptThrottle, true);
  if (const auto opened = context_.databases.Open(context_.program_folder, context_.shipped_folder);
      !opened) {
    return std::unexpected(
        QStringLiteral("ERROR: %1\n%2\n\nLooks like the program had trouble getting started!\n"
                       "Please check for help or report this error at %3\n\n"
                       "The Program Will Now Close.")
            .arg(QString::number(opened.error().number), opened.error().description,
                 context_.maker_site.Forums().toString()));
  }
  return {};
}

void StartUp::NoteDailyCheck() {
  if (!context_.settings.Boolean(setting::kCheckForUpdates, false)) {
    return;
  }
  const QString today = QDate::currentDate().toString(QStringLiteral("MM/dd/yyyy"));
  if (context_.settings.Value(setting::kLastCheck) != today) {
    context_.settings.SetValue(setting::kLastCheck, today);
  }
}

void StartUp::Begin() { flow_.Start(Load()); }

Task<> StartUp::Load() {
  ReadLanguages();
  co_await Sleep(0ms);
  list_.LoadAtStart();
  co_await Sleep(0ms);
  // Read before the routers are loaded: choosing one replaces the stored login by its factory
  // login.
  const StoredFields fields = ReadFields();
  co_await LoadRouters();
  Q_EMIT fieldsRead(fields);
  Q_EMIT finished();
  co_await Sleep(0ms);
  context_.databases.KeepGoodCopies();
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

StoredFields StartUp::ReadFields() const {
  const Settings& settings = context_.settings;
  return {.router = settings.Value(setting::kRouter),
          .router_ip = settings.Value(setting::kRouterIp),
          .http_port = settings.Value(setting::kHttpPort),
          .http_type = settings.Value(setting::kHttpType),
          .username = settings.Value(setting::kRouterUsername),
          .password = settings.Value(setting::kRouterPassword)};
}

}  // namespace quayline
