// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "jobs/job_fixture.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

#include "dbtool/commands.h"
#include "web/shown_job.h"

extern "C" void QuaylinePrepareTestBinary() { quayline::PrepareWebEngine(); }

namespace quayline::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kData = QStringLiteral(QUAYLINE_SOURCE_DIR "/data");

PortEntry Entry(const char* name, const char* forwarded_to, int first, int last,
                const char* protocol) {
  return {.app_name = QLatin1String(name),
          .forwarded_to = QLatin1String(forwarded_to),
          .start_port = QString::number(first),
          .end_port = QString::number(last),
          .protocol = QLatin1String(protocol),
          .description = {}};
}

QString Captured(const QString& text, const char* pattern) {
  const QRegularExpression expression(QLatin1String(pattern), QRegularExpression::MultilineOption);
  return expression.match(text).captured(1).trimmed();
}

}  // namespace

std::unique_ptr<QTemporaryDir> JobTest::folder_;

void JobTest::SetUpTestSuite() {
  folder_ = std::make_unique<QTemporaryDir>();
  const auto built = dbtool::RunCommand({QStringLiteral("build"), kData, folder_->path()});
  ASSERT_EQ(built.exit_code, dbtool::kExitFine) << built.error.toStdString();
}

void JobTest::TearDownTestSuite() { folder_.reset(); }

JobTest::JobTest() : context_(folder_->path(), adapters_, desktop_) {
  context_.job_options.throttle = false;
  questions_.trusts = [](const ShownCertificate& shown) { return !shown.is_changed; };
  const auto opened = context_.databases.Open(folder_->path());
  EXPECT_TRUE(opened.has_value()) << EnglishOf(opened.error().description).toStdString();
}

std::map<QString, QString> JobTest::RoutersByModel() {
  std::map<QString, QString> routers;
  const QDir folder(kData + QStringLiteral("/routers"));
  for (const QString& name : folder.entryList({QStringLiteral("*.txt")})) {
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    const QString text = QString::fromUtf8(file.readAll());
    // The others have a rebuild of their pages; see tests/families.
    if (const QString model = Captured(text, "^# quayline-demo-router --model (.*)$");
        !model.isEmpty()) {
      routers[model] = Captured(text, "^routername:(.*)$");
    }
  }
  return routers;
}

QList<PortEntry> JobTest::Entries() {
  return {Entry("Web", "192.168.1.10(FrontDesk)", 80, 80, "TCP"),
          Entry("Voice", "192.168.1.10(FrontDesk)", 16384, 16403, "UDP"),
          Entry("Cam&<1>+", "192.168.1.23(Attic)", 8080, 8090, "TCP"),
          Entry("Dns", "192.168.1.23(Attic)", 53, 53, "TCP/UDP")};
}

QStringList JobTest::Expected(const QList<PortEntry>& entries) {
  QStringList rules;
  for (const PortEntry& entry : entries) {
    rules.append(u"%1 %2 %3-%4 %5 on"_s.arg(entry.app_name, entry.protocol, entry.start_port,
                                            entry.end_port,
                                            entry.forwarded_to.section(u'(', 0, 0)));
  }
  return rules;
}

QStringList JobTest::Standing() const {
  QStringList rules;
  for (const demo::Rule& rule : router_.Rules()) {
    rules.append(u"%1 %2 %3-%4 %5 %6"_s.arg(rule.name, demo::ProtocolText(rule.protocol),
                                            QString::number(rule.first), QString::number(rule.last),
                                            rule.address, rule.enabled ? u"on"_s : u"off"_s));
  }
  return rules;
}

void JobTest::StartRouter(const QString& model, demo::DemoOptions options) {
  options.delay = {0ms, 20ms};
  const auto port = router_.Start(model, options);
  ASSERT_TRUE(port.has_value()) << port.error().toStdString();
  Choose(model, *port);
  if (options.https) {
    context_.session.http_type = QStringLiteral("https://");
  }
}

void JobTest::Choose(const QString& model, quint16 port) {
  const auto routers = RoutersByModel();
  ASSERT_TRUE(routers.contains(model)) << "no router of the data is for " << model.toStdString();
  const QList<RouterName> names = context_.databases.RouterNames(0, 1000);
  const auto found = std::ranges::find(names, routers.at(model), &RouterName::name);
  ASSERT_NE(found, names.end()) << routers.at(model).toStdString();
  SelectRouter(context_.session, *context_.databases.FindRouter(found->id));
  context_.session.http_type = QStringLiteral("http://");
  context_.session.router_ip = QStringLiteral("127.0.0.1");
  context_.session.http_port = QString::number(port);
}

void JobTest::Begin(const QList<PortEntry>& entries) {
  told_.clear();
  notices_.clear();
  context_.port_list.SetEntries(entries);
  runner_.reset();
  runner_ = OpenShownJob(context_, questions_, [this](JobRunner& runner) {
    QObject::connect(&runner, &JobRunner::statusAppended, &runner,
                     [this](const QString& line) { told_.append(line); });
    QObject::connect(&runner, &JobRunner::noticeRequested, &runner,
                     [this](const QString& text) { notices_.append(text); });
  });
  runner_->Run();
}

bool JobTest::Ends(std::chrono::milliseconds limit) {
  return RunUntil([this] { return !runner_->IsRunning(); }, limit);
}

const JobOutcome& JobTest::Run(const QList<PortEntry>& entries) {
  Begin(entries);
  EXPECT_TRUE(Ends()) << Log().toStdString();
  return runner_->Outcome();
}

}  // namespace quayline::testing
