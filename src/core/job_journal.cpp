// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/job_journal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

#include "core/text_bytes.h"

namespace quayline {

namespace {

constexpr Message kRemovalCutOff{"The removal of rules from \"%1\" that began on %2 was cut off.",
                                 "%1 is a router, %2 date and time"};
constexpr Message kUpdateCutOff{"The update of \"%1\" that began on %2 was cut off.",
                                "%1 is a router, %2 date and time"};
constexpr Message kEntriesThere{"On the router: %1.", "%1 are names of entries"};
constexpr Message kEntriesRemoved{"Removed, but not looked for afterwards: %1."};
constexpr Message kEntriesEntered{"Entered, but not seen there afterwards: %1."};
constexpr Message kEntriesFailed{"Failed: %1."};
constexpr Message kEntriesUncertain{"Not certain: %1."};
constexpr Message kEntriesWaiting{"Not begun: %1."};

constexpr qint64 kMostBytes = qint64{4} << 20;
constexpr qsizetype kMostRows = 1000;
constexpr qsizetype kLongestRow = 500;
constexpr qint64 kTailBytes = qint64{64} << 10;
// A shorter password is found in anything.
constexpr qsizetype kShortestMasked = 4;

QString HowName(PassEnd end) {
  switch (end) {
    case PassEnd::kDone:
      return QStringLiteral("done");
    case PassEnd::kExisted:
      return QStringLiteral("existed");
    case PassEnd::kFailed:
      return QStringLiteral("failed");
    case PassEnd::kStopped:
      return QStringLiteral("stopped");
  }
  return {};
}

QJsonArray EntriesOf(const JobPlan& plan) {
  QJsonArray entries;
  for (const PortEntry& entry : plan.entries) {
    entries.append(QJsonObject{{QStringLiteral("entry"), entry.app_name},
                               {QStringLiteral("protocol"), entry.protocol},
                               {QStringLiteral("start"), entry.start_port},
                               {QStringLiteral("end"), entry.end_port},
                               {QStringLiteral("to"), entry.forwarded_to}});
  }
  return entries;
}

// What is known of each entry, by the number of the entry.
class Story final {
 public:
  explicit Story(const QJsonObject& head) : names_(head[QLatin1String("entries")].toArray()) {}

  void Take(const QJsonObject& line) {
    for (const char* when : {"before", "after"}) {
      const QJsonArray results = line[QLatin1String(when)].toArray();
      for (qsizetype i = 0; i < results.size(); ++i) {
        if (results.at(i)[QLatin1String("state")] == QLatin1String("on-router")) {
          seen_.append(i + 1);
        }
      }
    }
    if (line.contains(QLatin1String("pass"))) {
      begun_.append(line[QLatin1String("pass")].toInteger());
    }
    if (line.contains(QLatin1String("passed"))) {
      const qint64 number = line[QLatin1String("passed")].toInteger();
      const QJsonValue how = line[QLatin1String("how")];
      if (how == QLatin1String("failed")) {
        failed_.append(number);
      } else if (how != QLatin1String("stopped")) {
        entered_.append(number);
      }
    }
  }

  void AddTo(CutOffJob& job) const {
    for (qsizetype i = 0; i < names_.size(); ++i) {
      const qint64 number = i + 1;
      QStringList& names = seen_.contains(number)      ? job.on_router
                           : entered_.contains(number) ? job.entered
                           : failed_.contains(number)  ? job.failed
                           : begun_.contains(number)   ? job.uncertain
                                                       : job.waiting;
      names.append(names_.at(i)[QLatin1String("entry")].toString());
    }
  }

 private:
  const QJsonArray names_;
  QList<qint64> seen_;
  QList<qint64> begun_;
  QList<qint64> entered_;
  QList<qint64> failed_;
};

bool WriteWhole(int file, const QByteArray& bytes) {
  return write(file, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size();
}

// Names are in the order of time; the process keeps programs apart that begin at the same moment.
// Below zero when no file can be made.
int MakeFile(const QString& folder) {
  constexpr mode_t kOwnerOnly = 0600;
  constexpr int kMostAtOnce = 10;
  const QString name =
      QStringLiteral("/%1-%2")
          .arg(QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmsszzz")))
          .arg(QCoreApplication::applicationPid());
  int file = -1;
  for (int i = 0; file < 0 && i < kMostAtOnce; ++i) {
    const QByteArray path =
        QFile::encodeName(QStringLiteral("%1%2-%3.jsonl").arg(folder, name).arg(i));
    file = open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, kOwnerOnly);
  }
  return file;
}

// The journal, or the beginning and the end of a very long one: the end says whether the job ended.
QByteArray ReadEnds(QFile& journal) {
  journal.seek(0);
  QByteArray bytes = journal.read(2 * kMostBytes);
  if (!journal.atEnd()) {
    journal.seek(std::max(journal.pos(), journal.size() - kTailBytes));
    bytes += '\n' + journal.read(kTailBytes);
  }
  return bytes;
}

}  // namespace

JobJournal::JobJournal(int file, const JobPlan& plan)
    : file_(file), password_(plan.password.size() < kShortestMasked ? QString() : plan.password) {
  Write({{QStringLiteral("journal"), 1},
         {QStringLiteral("begun"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
         {QStringLiteral("router"), plan.router},
         {QStringLiteral("address"), plan.address},
         {QStringLiteral("job"),
          plan.takes_back ? QStringLiteral("take-back") : QStringLiteral("update")},
         {QStringLiteral("entries"), EntriesOf(plan)}});
}

JobJournal::~JobJournal() {
  if (!has_ended_) {
    NoteEnd(QStringLiteral("stopped"));
  }
  close(file_);
}

QString JobJournal::Masked(QString text) const {
  return password_.isEmpty() ? text : text.replace(password_, QStringLiteral("****"));
}

// A page may show anything.
QString JobJournal::Row(const QString& text) const { return Masked(text).left(kLongestRow); }

void JobJournal::NoteBefore(const QList<EntryResult>& results, const PageRows& page) {
  NoteLook("before", results, page);
}

void JobJournal::NoteAfter(const QList<EntryResult>& results, const PageRows& page) {
  NoteLook("after", results, page);
}

void JobJournal::NoteLook(const char* when, const QList<EntryResult>& results,
                          const PageRows& page) {
  QJsonArray states;
  for (const EntryResult& result : results) {
    states.append(QJsonObject{{QStringLiteral("entry"), result.entry.app_name},
                              {QStringLiteral("state"), StateName(result.state)},
                              {QStringLiteral("seen"), Row(result.seen)}});
  }
  QJsonArray rows;
  for (const PageRow& row : page.rows.mid(0, kMostRows)) {
    rows.append(Row(row.Text()));
  }
  Write({{QLatin1String(when), states}, {QStringLiteral("rows"), rows}});
}

void JobJournal::NotePass(int number, const QString& entry) {
  Write({{QStringLiteral("pass"), number}, {QStringLiteral("entry"), entry}});
}

void JobJournal::NoteLog(const QString& text) {
  const QString line = OnOneLine(text).trimmed();
  if (!line.isEmpty() && written_ < kMostBytes) {
    Write({{QStringLiteral("log"), Masked(line)}});
  }
}

void JobJournal::NotePassEnd(int number, PassEnd end, const QStringList& doubts) {
  QJsonArray masked;
  for (const QString& doubt : doubts) {
    masked.append(Masked(doubt));
  }
  Write({{QStringLiteral("passed"), number},
         {QStringLiteral("how"), HowName(end)},
         {QStringLiteral("doubts"), masked}});
}

void JobJournal::NoteEnd(const QString& end) {
  has_ended_ = true;
  Write({{QStringLiteral("end"), end}});
}

// A line that was cut off by a full disk ends where the next one begins.
void JobJournal::Write(const QJsonObject& line) {
  QByteArray bytes = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
  if (is_torn_) {
    bytes.prepend('\n');
  }
  is_torn_ = !WriteWhole(file_, bytes);
  written_ += bytes.size();
}

QString JobJournals::SystemFolder() {
  const QString given = qEnvironmentVariable("XDG_STATE_HOME");
  const QString state =
      QDir::isAbsolutePath(given) ? given : QDir::homePath() + QStringLiteral("/.local/state");
  return state + QStringLiteral("/quayline/jobs");
}

QStringList JobJournals::Files() const {
  return folder_.isEmpty()
             ? QStringList()
             : QDir(folder_).entryList({QStringLiteral("*.jsonl")}, QDir::Files, QDir::Name);
}

std::unique_ptr<JobJournal> JobJournals::Begin(const JobPlan& plan) const {
  if (folder_.isEmpty() || !QDir().mkpath(folder_)) {
    return nullptr;
  }
  const int file = MakeFile(folder_);
  if (file < 0) {
    return nullptr;
  }
  flock(file, LOCK_EX | LOCK_NB);
  const QStringList files = Files();
  for (qsizetype i = 0; i + kMostKept < files.size(); ++i) {
    QFile::remove(folder_ + QLatin1Char('/') + files.at(i));
  }
  return std::make_unique<JobJournal>(file, plan);
}

QList<CutOffJob> JobJournals::TakeCutOff() const {
  QList<CutOffJob> jobs;
  for (const QString& name : Files()) {
    QFile journal(folder_ + QLatin1Char('/') + name);
    // The lock keeps two programs from reporting the same job, and a job that runs from being
    // reported at all.
    if (!journal.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::ExistingOnly) ||
        flock(journal.handle(), LOCK_EX | LOCK_NB) != 0) {
      continue;
    }
    if (const auto job = ReadCutOffJob(ReadEnds(journal))) {
      jobs.append(*job);
      WriteWhole(journal.handle(), "\n{\"reported\":true}\n");
    }
  }
  return jobs;
}

std::optional<CutOffJob> ReadCutOffJob(const QByteArray& journal) {
  std::optional<Story> story;
  CutOffJob job;
  for (const QByteArray& bytes : journal.split('\n')) {
    const QJsonObject line = QJsonDocument::fromJson(bytes).object();
    if (line.contains(QLatin1String("end")) || line.contains(QLatin1String("reported"))) {
      return std::nullopt;
    }
    if (line.contains(QLatin1String("journal"))) {
      story.emplace(line);
      job.begun =
          QDateTime::fromString(line[QLatin1String("begun")].toString(), Qt::ISODate).toLocalTime();
      job.router = line[QLatin1String("router")].toString();
      job.takes_back = line[QLatin1String("job")] == QLatin1String("take-back");
    } else if (story) {
      story->Take(line);
    }
  }
  if (!story) {
    return std::nullopt;
  }
  story->AddTo(job);
  return job;
}

QString CutOffNotice(const CutOffJob& job, const QString& advice, const Translator& texts) {
  QString text =
      texts.Text(job.takes_back ? kRemovalCutOff : kUpdateCutOff)
          .arg(OnOneLine(job.router), job.begun.toString(QStringLiteral("yyyy-MM-dd, HH:mm")));
  const std::pair<const Message&, const QStringList&> parts[] = {
      {kEntriesThere, job.on_router},
      {job.takes_back ? kEntriesRemoved : kEntriesEntered, job.entered},
      {kEntriesFailed, job.failed},
      {kEntriesUncertain, job.uncertain},
      {kEntriesWaiting, job.waiting}};
  for (const auto& [sentence, names] : parts) {
    if (!names.isEmpty()) {
      text +=
          QLatin1Char('\n') + texts.Text(sentence).arg(OnOneLine(names.join(QStringLiteral(", "))));
    }
  }
  return text + QLatin1Char('\n') + advice;
}

}  // namespace quayline
