// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/router_session.h"
#include "script/page_host.h"

namespace quayline {

// Makes hosts on Qt WebEngine: one off-the-record profile per factory, so that logins and cookies
// end with the job. `options` says whether the page's own messages are answered at once (silent
// mode); it is looked at each time.
PageHostFactory WebPageHosts(const JobOptions& options);

// Sets what Qt WebEngine reads from the environment. To be called first in main(), ahead of
// QApplication. The browser's sandbox stays on, except for root, under whom it cannot start.
void PrepareWebEngine();

}  // namespace quayline
