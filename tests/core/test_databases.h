// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "core/records.h"
#include "core/table_data.h"

namespace quayline::testing {

// Table `routers` as it stands in "routers.mdb", for tests that bend it first.
TableData RouterTable(const QList<RouterRecord>& routers);

// Makes "routers.mdb", "ports.mdb" and "custom.mdb" in `folder`, in the place of what is there.
// False when one could not be written.
bool MakeTestDatabases(const QString& folder, const QList<RouterRecord>& routers,
                       const QList<AppPortRecord>& ports = {},
                       const QList<CustomPortRecord>& custom = {});

}  // namespace quayline::testing
