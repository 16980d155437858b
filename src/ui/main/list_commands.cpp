// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/list_commands.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QWidget>

#include "ui/main/main_messages.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_list, "quayline.ui.list")

QString FileFilter() { return QStringLiteral("Quayline File (*.qyl);;All Files (*)"); }

FileQuestion QuestionOf(const QString& title) {
  return {.title = title, .filter = FileFilter(), .default_suffix = QStringLiteral("qyl")};
}

}  // namespace

ListCommands::ListCommands(AppContext& context, Prompts& prompts, QWidget* window)
    : QObject(window), context_(context), prompts_(prompts), window_(window) {}

void ListCommands::LoadAtStart() {
  const auto entries = LoadPortList(WorkingFile());
  if (entries) {
    context_.port_list.Append(*entries);
  } else if (QFileInfo::exists(WorkingFile())) {
    qCWarning(log_list) << "the list of the last run cannot be read and is left as it is";
    Q_EMIT listWritten();
    return;
  }
  Keep();
}

void ListCommands::Remove(int row) {
  const QModelIndex index = context_.port_list.index(row, PortListModel::kAppName);
  if (!index.isValid()) {
    return;
  }
  const QString question = Text(message::kDeleteEntry) + QLatin1Char('\n') +
                           context_.port_list.Entries().at(row).app_name;
  prompts_.Ask(window_, Text(message::kConfirmDelete), question,
               [this, asked = QPersistentModelIndex(index)](bool yes) {
                 if (yes && asked.isValid()) {
                   context_.port_list.Remove(asked.row());
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
  // This title stays English, unlike that of the open dialog.
  prompts_.AskSaveFile(window_, QuestionOf(QStringLiteral("Select a file")),
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
  prompts_.AskOpenFile(window_, QuestionOf(Text(message::kSelectFile)),
                       [this](const QString& file) { OpenFile(file); });
}

void ListCommands::OpenFile(const QString& file) {
  auto entries = LoadPortList(file);
  if (!entries) {
    const Message& why = entries.error() == ListFileError::kTooLarge ? message::kListTooLarge
                                                                     : message::kCannotOpenList;
    prompts_.Tell(window_, Text(why) + QLatin1Char('\n') + QDir::toNativeSeparators(file));
    return;
  }
  context_.port_list.SetEntries(std::move(*entries));
  Keep();
}

void ListCommands::Keep() {
  if (!SavePortList(context_.port_list.Entries(), WorkingFile())) {
    qCWarning(log_list) << "the list cannot be written";
    if (!told_of_failure_) {
      told_of_failure_ = true;
      prompts_.Tell(window_, Text(message::kCannotKeepList));
    }
  }
  Q_EMIT listWritten();
}

}  // namespace quayline
