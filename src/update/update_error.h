// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "i18n/message.h"
#include "transport/download.h"
#include "update/manifest.h"

namespace quayline {

// Why something was not updated, in a sentence for the user.
const Message& TextOf(ManifestError error);
// Null for a download that has not failed, or whose code says everything.
const Message* TextOf(const Download& download);

}  // namespace quayline
