// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/list_commands.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QWidget>

#include "ui/main/main_messages.h"
#include "ui/toolkit/short_list.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_list, "quayline.ui.list")

FileQuestion ListQuestion(const Translator& translator) {
  return {.title = translator.Text(message::kSelectFile),
          .filter = translator.Text(message::kListFilter),
          .default_suffix = QStringLiteral("qyl")};
}

const Message& WhyNot(ListFileError error) {
  switch (error) {
    case ListFileError::kTooLarge:
      return message::kListTooLarge;
    case ListFileError::kNotAList:
      return message::kNotAList;
    case ListFileError::kCannotOpen:
    case ListFileError::kCannotWrite:
    case ListFileError::kChangedElsewhere:
      break;
  }
  return message::kCannotOpenList;
}

// The first free name for a list file: "list-unread.qyl", "list-unread-2.qyl".
QString FreeName(const QString& stem) {
  QString name = stem + QStringLiteral(".qyl");
  for (int number = 2; QFileInfo::exists(name); ++number) {
    name = QStringLiteral("%1-%2.qyl").arg(stem, QString::number(number));
  }
  return name;
}

}  // namespace

ListCommands::ListCommands(AppContext& context, Prompts& prompts, QWidget* window)
    : QObject(window),
      context_(context),
      prompts_(prompts),
      window_(window),
      working_list_(context.FileInFolder("list.qyl")) {
  connect(&retry_timer_, &QTimer::timeout, this, &ListCommands::StorePending);
}

void ListCommands::LoadAtStart() {
  const auto entries = working_list_.Load();
  if (!entries && QFileInfo::exists(working_list_.Path())) {
    aside_ = FreeName(context_.FileInFolder("list-unread"));
    prompts_.Tell(window_, Text(message::kListUnread).arg(QFileInfo(aside_).fileName()));
    Q_EMIT listWritten();
    return;
  }
  context_.port_list.Append(entries.value_or(QList<PortEntry>()));
  history_.Begin(context_.port_list.Entries());
  Keep();
}

void ListCommands::Remove(const QList<int>& rows) {
  QList<QPersistentModelIndex> asked;
  QStringList names;
  for (const int row : rows) {
    if (const QModelIndex index = context_.port_list.index(row, PortListModel::kAppName);
        index.isValid()) {
      asked.append(index);
      names.append(context_.port_list.Entries().at(row).app_name);
    }
  }
  if (asked.isEmpty()) {
    return;
  }
  const QString question = names.size() == 1
                               ? Text(message::kDeleteEntry) + QLatin1Char('\n') + names.first()
                               : Text(message::kDeleteEntries).arg(names.size()) +
                                     QLatin1Char('\n') + ShortList(names, QStringLiteral("\n"));
  prompts_.Ask(window_, Text(message::kConfirmDelete), question, [this, asked](bool yes) {
    if (yes) {
      QList<int> still_there;
      for (const QPersistentModelIndex& index : asked) {
        still_there.append(index.row());
      }
      context_.port_list.Remove(still_there);
      Keep();
    }
  });
}

void ListCommands::RemoveAll() {
  if (context_.port_list.rowCount() == 0) {
    return;
  }
  prompts_.Ask(window_, Text(message::kConfirmDelete), Text(message::kDeleteList),
               [this](bool yes) {
                 if (yes) {
                   context_.port_list.SetEntries({});
                   Keep();
                 }
               });
}

void ListCommands::SaveAs() {
  if (context_.port_list.rowCount() == 0) {
    prompts_.Tell(window_, Text(message::kNothingToSave));
    return;
  }
  prompts_.AskSaveFile(window_, ListQuestion(context_.translator),
                       [this](const QString& file) { SaveFile(file); });
}

void ListCommands::SaveFile(const QString& file) {
  if (!SavePortList(context_.port_list.Entries(), file)) {
    prompts_.Tell(window_, Text(message::kCannotSaveList) + QLatin1Char('\n') +
                               QDir::toNativeSeparators(file));
    return;
  }
  Q_EMIT listWritten();
}

void ListCommands::Open() {
  prompts_.AskOpenFile(window_, ListQuestion(context_.translator),
                       [this](const QString& file) { OpenFile(file); });
}

void ListCommands::OpenFile(const QString& file, const std::function<void()>& opened) {
  const auto list = ReadFile(file);
  if (list && list->faults.isEmpty()) {
    Take(list->entries);
    opened();
  } else if (list) {
    AskAboutFaults(file, *list, opened);
  }
}

void ListCommands::OfferFile(const QString& file) {
  const auto list = ReadFile(file);
  if (!list || list->entries == context_.port_list.Entries()) {
    return;
  }
  if (!list->faults.isEmpty()) {
    AskAboutFaults(file, *list, [] {});
    return;
  }
  if (context_.port_list.rowCount() == 0) {
    Take(list->entries);
    return;
  }
  prompts_.Ask(window_, Text(message::kOpenListTitle),
               Text(message::kReplaceList)
                   .arg(QString::number(context_.port_list.rowCount()), QFileInfo(file).fileName(),
                        QString::number(list->entries.size())),
               [this, entries = list->entries](bool yes) {
                 if (yes) {
                   Take(entries);
                 }
               });
}

void ListCommands::AskAboutFaults(const QString& file, const OpenedList& list,
                                  const std::function<void()>& opened) {
  QList<PortEntry> sound = list.entries;
  QStringList lines;
  for (const ListFault& fault : list.faults) {
    lines.append(Text(message::kLine).arg(fault.line).arg(fault.text));
    sound[fault.row] = {};
  }
  sound.removeAll(PortEntry{});
  QStringList choices = {Text(message::kOpenSoundLines), Text(message::kOpenAllLines),
                         Text(message::kOpenNothing)};
  QList<std::optional<QList<PortEntry>>> outcomes = {sound, list.entries, std::nullopt};
  if (sound.isEmpty()) {
    choices.removeFirst();
    outcomes.removeFirst();
  }
  prompts_.AskChoice(window_, Text(message::kOpenListTitle),
                     Text(message::kFaultyLines)
                         .arg(QFileInfo(file).fileName(), ShortList(lines, QStringLiteral("\n"))),
                     choices, [this, outcomes, opened](qsizetype choice) {
                       if (const auto& entries = outcomes.at(choice)) {
                         Take(*entries);
                         opened();
                       }
                     });
}

// Shows the user why a file cannot be read.
std::optional<ListCommands::OpenedList> ListCommands::ReadFile(const QString& file) {
  const auto bytes = ReadListBytes(file);
  const auto entries = bytes ? CheckedPortList(*bytes) : std::unexpected(bytes.error());
  if (!entries) {
    prompts_.Tell(window_, Text(WhyNot(entries.error())) + QLatin1Char('\n') +
                               QDir::toNativeSeparators(file));
    return std::nullopt;
  }
  return OpenedList{.entries = *entries, .faults = FindListFaults(*bytes)};
}

void ListCommands::Take(QList<PortEntry> entries) {
  context_.port_list.SetEntries(std::move(entries));
  Keep();
}

void ListCommands::ShowState(std::optional<QList<PortEntry>> state) {
  if (state) {
    Take(std::move(*state));
  }
}

void ListCommands::Keep() {
  history_.Note(context_.port_list.Entries());
  // The answer to the question writes the rows as they are then.
  if (!is_asking_) {
    const auto written = WriteWorkingFile();
    if (written || written.error() != ListFileError::kChangedElsewhere) {
      NoteWritten(written.has_value());
    } else {
      AskWhichList();
    }
  }
  Q_EMIT listWritten();
}

std::expected<void, ListFileError> ListCommands::WriteWorkingFile() {
  if (!aside_.isEmpty()) {
    if (!QFile::rename(working_list_.Path(), aside_)) {
      return std::unexpected(ListFileError::kCannotWrite);
    }
    aside_.clear();
  }
  return working_list_.Save(context_.port_list.Entries());
}

// The first failure is shown, the next ones while the retries last are not.
void ListCommands::NoteWritten(bool is_written) {
  if (is_written) {
    retry_timer_.stop();
    return;
  }
  qCWarning(log_list) << "the list cannot be written";
  if (!retry_timer_.isActive()) {
    retry_timer_.start(std::chrono::seconds(5));
    prompts_.Tell(window_, Text(message::kCannotKeepList));
  }
}

bool ListCommands::StorePending() {
  if (retry_timer_.isActive() && WriteWorkingFile()) {
    retry_timer_.stop();
  }
  return !retry_timer_.isActive();
}

void ListCommands::Finish() {
  if (is_asking_ || !StorePending()) {
    SavePortList(context_.port_list.Entries(), FreeName(context_.FileInFolder("list-other")));
  }
  retry_timer_.stop();
  is_asking_ = false;
}

void ListCommands::AskWhichList() {
  is_asking_ = true;
  const QString copy = FreeName(context_.FileInFolder("list-other"));
  const auto other = LoadPortList(working_list_.Path());
  prompts_.AskChoice(
      window_, Text(message::kListChangedTitle),
      Text(message::kListChanged)
          .arg(QString::number(context_.port_list.rowCount()),
               other ? QString::number(other->size()) : QStringLiteral("?"),
               QFileInfo(copy).fileName()),
      {Text(message::kKeepMyList), Text(message::kTakeOtherList), Text(message::kKeepBothLists)},
      [this, copy](qsizetype choice) { KeepChosen(choice, copy); });
}

// The file may have changed once more during the question: what it contains now counts.
void ListCommands::KeepChosen(qsizetype choice, const QString& copy) {
  is_asking_ = false;
  const auto other = LoadPortList(working_list_.Path());
  QList<PortEntry> entries = context_.port_list.Entries();
  const bool takes_other = choice == 1 && other;
  const bool is_kept =
      takes_other ? SavePortList(entries, copy).has_value() && working_list_.Load().has_value()
                  : working_list_.KeepCopy(copy);
  if (!is_kept) {
    NoteWritten(false);
    return;
  }
  if (takes_other) {
    entries = *other;
  } else if (choice == 2 && other) {
    for (const PortEntry& entry : *other) {
      if (!entries.contains(entry)) {
        entries.append(entry);
      }
    }
  }
  Take(std::move(entries));
}

}  // namespace quayline
