// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "core/records.h"

namespace quayline::testing {

// Makes "routers.mdb", "ports.mdb" and "custom.mdb" in `folder`, and replaces existing ones. False
// when one could not be written.
bool MakeTestDatabases(const QString& folder, const QList<RouterRecord>& routers,
                       const QList<AppPortRecord>& ports = {},
                       const QList<CustomPortRecord>& custom = {});

}  // namespace quayline::testing
