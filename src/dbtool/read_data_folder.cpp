// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFileInfo>

#include "dbtool/program_data.h"

namespace quayline::dbtool {

ProgramData ReadDataFolder(const QString& folder, const ScriptLint& lint, Problems& problems) {
  ProgramData data;
  const QDir root(folder);
  const QDir routers(root.filePath(QStringLiteral("routers")));
  for (const QString& name :
       routers.entryList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name)) {
    const QString file = routers.filePath(name);
    const qsizetype known_problems = problems.size();
    const QList<RouterSource> read =
        ReadRouters(ReadTextFile(file, problems), file, lint, problems);
    if (read.isEmpty() && problems.size() == known_problems) {
      problems.append({file, 1, QStringLiteral("There is no router in this file.")});
    }
    data.routers += read;
  }
  if (data.routers.isEmpty() && problems.isEmpty()) {
    problems.append({routers.path(), 1, QStringLiteral("There is no router file here.")});
  }
  const QString ports = root.filePath(QStringLiteral("ports.txt"));
  data.ports = ReadPorts(ReadTextFile(ports, problems), ports, problems);
  const QString custom = root.filePath(QStringLiteral("custom.txt"));
  if (QFileInfo::exists(custom)) {
    data.custom = ReadCustom(ReadTextFile(custom, problems), custom, problems);
  }
  return data;
}

}  // namespace quayline::dbtool
