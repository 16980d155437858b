// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>

#include <array>
#include <chrono>

namespace quayline {

// Every time and count by which Quayline waits for the pages of a router. The first part is handed
// to the scripts that watch a page, as JSON; the second is used by PageWait and the hosted browser.
// docs/architecture.md describes how a wait works.
struct WaitLimits {
  using Time = std::chrono::milliseconds;

  // Read by page_watch and page_idle.

  // Timers that a document starts while it loads: longer ones show the time or refresh something
  // far more often than they load content.
  Time load_timer{50};
  // Timers that a page starts after an action, or had started when something is missing on it.
  Time action_timer{2500};
  // Timers that a page had started before a question which it answers with no; intervals of half
  // this time.
  Time question_timer{1000};
  // An interval that ran before the action and is as fast as this: its next run may send what the
  // action queued.
  Time fast_interval{250};
  // Timers that start timers, and intervals, after an action: a fade, a count of seconds, a poll.
  Time chain{4000};
  // The same while a document loads, counted in timers.
  int chain_depth = 8;
  // Requests of a page that ask for something.
  Time request{8000};
  // The same on a page that was only opened: this factor times what the router took for the page,
  // and at least this time. Once a job: later pages know the requests that are held open.
  int held_request_factor = 8;
  Time held_request{3000};
  // Requests that may be a save: those that an action starts, and those that send something.
  Time save{30000};
  // Answers of a worker, a web socket or an event source.
  Time message{2500};
  // How often the same request or timer is seen before it counts as periodic.
  int periodic_rounds = 3;
  // A page that is not rendered gets no animation frames: a timer runs them after this time.
  Time animation_frame{40};
  // A page whose own markup leaves for another within this time is followed.
  Time refresh{2000};
  // Messages that a page's script sends to itself, one after the other, so that the tasks which the
  // page has queued run first.
  int task_hops = 8;
  // The interval at which a page with pending work is checked again.
  Time look_again{50};
  // A document that cannot be watched: four timers, two animation frames, and this time in all.
  Time unwatched{30};
  Time unwatched_frames{60};

  // Used by PageWait and the hosted browser.

  // A page that leaves for another as soon as it is there is followed this often.
  int hops = 10;
  // The user is shown what is waited for after this time.
  Time long_wait{1500};
  // A page that gives no answer: a script of it never ends, or its process hangs.
  Time silence{30000};
  // Pending work of a page before a navigation that would end it. Longer than the request of a
  // navigation takes that a command ignores; pages that never become idle are rare.
  Time before_leaving{5000};
  // The same after the last line of a job: nothing else is waiting.
  Time end_of_job{30000};
  // Saves under way when a window is closed or a run is stopped; and other work of the page,
  // including the time until the page reports it.
  Time after_stop{10000};
  Time work_after_stop{1800};
  // A page that gives no answer when a run is stopped.
  Time silence_after_stop{1500};
  // Something that an action or a question did not find, while the page has pending work.
  Time missing{4000};
  // The interval at which a page is searched for words that a script waits for.
  Time words_poll{10};

  // A load that the program asked for and the engine never starts: it starts in the same turn of
  // the event loop, or not at all.
  Time load_start{3000};
  // A navigation within the page, which has neither start nor end.
  Time move_in_page{1000};
  // A frame that has not arrived, while no request of the page is under way; one that a form is
  // sent into; and one whose request was answered and that has no new document: that follows the
  // answer at once, unless the answer was empty.
  Time frame{8000};
  Time form_in_frame{20000};
  Time answered_frame{1000};
  // Keys that no document takes.
  Time keys{250};
  // The engine reports no end of emptying its cache. On a busy machine 50 ms were too few.
  Time cache_clearing{250};
  // A page is asked again to report that it is idle: its document was written again meanwhile.
  Time report_lost{1000};
  // The interval at which a page that gives no answer is checked, and the same after a stop.
  Time silence_look{1000};
  Time silence_look_after_stop{200};

  // A router that restarts after a save is back after 10 to 60 s. A page of ours is requested again
  // after these pauses, within `absence` in all and within `action_memory` after the last action.
  std::array<Time, 6> load_pauses{Time(500),  Time(1000), Time(2000),
                                  Time(4000), Time(8000), Time(12000)};
  Time absence{30000};
  Time action_memory{60000};
};

// The part of the limits that the page's scripts read: times in milliseconds.
QJsonObject PageScriptLimits(const WaitLimits& limits);

}  // namespace quayline
