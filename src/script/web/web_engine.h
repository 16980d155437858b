// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "async/task.h"
#include "core/router_session.h"
#include "core/trusted_certificates.h"
#include "i18n/translator.h"
#include "script/page_host.h"
#include "script/wait_limits.h"

// What the programs need of the web engine. This header does not include it.
namespace quayline {

// Makes hosts on Qt WebEngine that share one off-the-record profile per factory, so that logins and
// cookies end with the job. The engine starts with the first host. `options` outlives the hosts;
// whether silent mode is on is looked at each time. `translator` outlives them as well, and so does
// `certificates`, which knows which certificate of the router the user trusts; without it none is
// trusted. `limits` are those of the pages; what a run waits for is limited by PageWait.
PageHostFactory WebPageHosts(const JobOptions& options, const Translator& translator,
                             TrustedCertificates* certificates = nullptr,
                             const WaitLimits& limits = {});

// Empties the caches of all browsers of the program, in memory and on the disk. Whether it did: a
// page that is still loading prevents it.
Task<bool> ClearUrlCache();

// Removes what the engine keeps in the folders of the program. Whether nothing is left.
bool RemoveBrowserFiles();
// Whether a browser with a new profile starts, loads a page, and answers.
Task<bool> TryNewBrowser();

// Whether the pages are shown.
enum class PagesAre { kSeen, kUnseen };

// Sets what Qt WebEngine reads from the environment. To be called first in main(), before
// QApplication is made. The browser's sandbox stays on, except for root, under whom it cannot
// start. Pages that are not shown are not rendered, which saves a quarter of a job's time.
void PrepareWebEngine(PagesAre pages = PagesAre::kSeen);

}  // namespace quayline
