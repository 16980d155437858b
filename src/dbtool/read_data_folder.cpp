// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFileInfo>

#include "dbtool/program_data.h"

namespace quayline::dbtool {

namespace {

// The paths of the text files of a folder, by name.
QStringList TextFiles(const QDir& folder) {
  QStringList paths = folder.entryList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name);
  for (QString& path : paths) {
    path = folder.filePath(path);
  }
  return paths;
}

}  // namespace

ProgramData ReadDataFolder(const QString& folder, const ScriptLint& lint, Problems& problems) {
  ProgramData data;
  const QDir root(folder);
  const QDir routers(root.filePath(QStringLiteral("routers")));
  for (const QString& file : TextFiles(routers)) {
    const qsizetype known_problems = problems.size();
    const QList<RouterSource> read =
        ReadRouters(ReadTextFile(file, problems), file, lint, problems);
    if (read.isEmpty() && problems.size() == known_problems) {
      problems.append({file, 1, AsItIs(QStringLiteral("There is no router in this file."))});
    }
    data.routers += read;
  }
  if (data.routers.isEmpty() && problems.isEmpty()) {
    problems.append({routers.path(), 1, AsItIs(QStringLiteral("There is no router file here."))});
  }
  const QDir ports(root.filePath(QStringLiteral("ports")));
  const QStringList port_files = TextFiles(ports);
  if (port_files.isEmpty()) {
    problems.append(
        {ports.path(), 1, AsItIs(QStringLiteral("There is no file of programs here."))});
  }
  for (const QString& file : port_files) {
    data.ports += ReadPorts(ReadTextFile(file, problems), file, problems);
  }
  const QString custom = root.filePath(QStringLiteral("custom.txt"));
  if (QFileInfo::exists(custom)) {
    data.custom = ReadCustom(ReadTextFile(custom, problems), custom, problems);
  }
  return data;
}

}  // namespace quayline::dbtool
