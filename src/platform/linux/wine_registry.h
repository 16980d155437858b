// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace quayline {

// Finds one value in `hive`, the bytes of a file in which Wine keeps a part of the registry
// ("user.reg", "system.reg"). `key` is separated by single backslashes; an empty `name` is the
// default value. Text comes up to its first NUL, a number in decimal. Nothing for what is missing,
// damaged or of another type, and for a file without Wine's heading.
std::optional<QString> FindWineValue(QByteArrayView hive, const QString& key, const QString& name);

}  // namespace quayline
