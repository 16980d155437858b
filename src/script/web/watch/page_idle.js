// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reports when a page is idle: when nothing that it was asked to do can start a navigation any
// more. It lives in the agent's script world, in the top document as in every frame, and
// communicates with the watch of each document (page_watch.js) by the events `ask` and `reply`;
// `beacon` marks what is reported to the host through the console. All three are secret from the
// page.
function installPageIdle(beacon, ask, reply, limits) {
  'use strict';

  // What a page names like a member of its document would hide that member.
  const sendTo = Function.prototype.call.bind(EventTarget.prototype.dispatchEvent);
  const listenTo = Function.prototype.call.bind(EventTarget.prototype.addEventListener);
  const stopListeningTo = Function.prototype.call.bind(EventTarget.prototype.removeEventListener);
  const findIn = Function.prototype.call.bind(Document.prototype.querySelector);

  function report(text) {
    console.debug(beacon + text);
  }

  // The windows of all documents that scripts of this page can reach.
  function reachableWindows() {
    const windows = [window];
    const gather = (window_) => {
      for (let i = 0; i < window_.length; i += 1) {
        try {
          if (window_[i].document) {
            windows.push(window_[i]);
          }
          gather(window_[i]);
        } catch (error) {
          // A frame of another host: none of its work is ours.
        }
      }
    };
    gather(window);
    return windows;
  }

  // The line to the watch of a document is the window's performance object: unlike the document it
  // keeps its listeners when the document is written again.
  function watchLines() {
    return reachableWindows().map((window_) => window_.performance);
  }

  // The pending items of all documents, how many of them may be saves, how many timers are too long
  // to be waited for, which requests are periodic, and whether a watch gives no answer.
  function askWatches(what) {
    const total = {count: 0, saves: 0, later: 0, periodic: [], isBlind: false};
    for (const line of watchLines()) {
      let answer = null;
      const hear = (event) => {
        answer = event.detail.split('\n');
      };
      listenTo(line, reply, hear);
      sendTo(line, new CustomEvent(ask, {detail: what}));
      stopListeningTo(line, reply, hear);
      if (answer === null) {
        total.isBlind = true;
      } else {
        const [count, saves, later] = answer[0].split(' ').map(Number);
        total.count += count;
        total.saves += saves;
        total.later += later;
        total.periodic.push(...answer.slice(1));
      }
    }
    return total;
  }

  listenTo(performance, reply, (event) => {
    if (event.detail === 'closing') {
      report('closing');
    }
  });

  // ---- What the host and the agent ask ---------------------------------------------------------

  // The state of the markup as the agent numbers it.
  function markupState() {
    return window.quaylineMarkupState();
  }

  // A document that has just been loaded runs through its queued tasks by itself, some milliseconds
  // before the engine reports the load: most often it is through when the host asks. An action ends
  // it. `state` is that of the markup when the tasks were done.
  let tasksOfLoad = null;

  function forgetTasksOfLoad() {
    tasksOfLoad = null;
  }

  addEventListener('load', () => {
    const tasks = {areDone: false, then: null, state: ''};
    tasksOfLoad = tasks;
    afterTasks(() => {
      tasks.areDone = true;
      tasks.state = markupState();
      if (tasks.then !== null) {
        tasks.then();
      }
    });
  });

  function armWatches() {
    forgetTasksOfLoad();
    askWatches('arm');
  }
  // What the user does himself is an action, too.
  for (const kind of ['keydown', 'pointerdown', 'click']) {
    addEventListener(kind, (event) => event.isTrusted && armWatches(), true);
  }

  // Called before an action.
  window.quaylineArm = armWatches;

  // Called after an action or a question: whether the page has pending work. With "adopt" and
  // "follow" also such as it started before; see page_watch.js.
  window.quaylineHasPendingWork = function(what) {
    return askWatches(what).count > 0;
  };

  // How many timers of the last action have not run yet.
  window.quaylineLaterTimers = function() {
    return askWatches('count').later;
  };

  // A page that an action has led to and that offers nothing to do will navigate by itself: many
  // routers answer a save with a "please wait" page that redirects.
  function awaitPagesBetween() {
    const CONTROLS = 'input:not([type="hidden" i]), select, textarea, button, a[href], frameset';
    for (const window_ of reachableWindows()) {
      if (findIn(window_.document, CONTROLS) === null) {
        sendTo(window_.performance, new CustomEvent(ask, {detail: 'wait'}));
      }
    }
  }

  // Whether the page is about to leave for another by its own markup.
  function refreshIsNear() {
    const meta = findIn(document, 'meta[http-equiv="refresh" i]');
    return meta !== null && document.readyState === 'complete' &&
      parseFloat(meta.content) * 1000 <= limits.refresh;
  }

  // How long requests that ask for something are waited for. A page that was only opened, and whose
  // router answered it at once, holds a request open that is not answered for seconds.
  function requestLimit(isLed) {
    const load = performance.getEntriesByType('navigation')[0];
    if (isLed || !load) {
      return limits.request;
    }
    const slow = limits.heldRequestFactor * (load.responseStart - load.requestStart);
    return Math.min(limits.request, Math.max(limits.heldRequest, slow));
  }

  function afterTimers(number, then) {
    if (number === 0) {
      then();
    } else {
      setTimeout(() => afterTimers(number - 1, then), 0);
    }
  }

  // Calls `then` after a timer, and after as many tasks in a row as a page may queue one from the
  // other without a timer: what a task queues runs before our next message.
  function afterTasks(then) {
    let left = limits.taskHops;
    const line = new MessageChannel();
    line.port1.onmessage = () => {
      left -= 1;
      if (left > 0) {
        line.port2.postMessage(0);
      } else {
        line.port1.close();
        then();
      }
    };
    setTimeout(() => line.port2.postMessage(0), 0);
  }

  // For a page whose work cannot be watched: after four timers in a row (from the fifth on they are
  // held back), and, where the page is rendered, after two animation frames.
  function afterTime(then) {
    const start = performance.now();
    let over = false;
    const finish = () => {
      if (!over) {
        over = true;
        setTimeout(then, Math.max(0, limits.unwatched - (performance.now() - start)));
      }
    };
    afterTimers(4, () => {
      if (document.visibilityState === 'visible') {
        requestAnimationFrame(() => requestAnimationFrame(finish));
        setTimeout(finish, limits.unwatchedFrames);
      } else {
        finish();
      }
    });
  }

  // Reports "idle `id` LATER GAVE_UP STATE", the error texts if the state is new, and the periodic
  // requests when the page has no pending work: after the tasks that it has queued, and after whatever these start. Before, "pending `id`"
  // where there is work to wait for. `isLed`: an action may have led to the page. `periodic`: the
  // requests that other documents of the job found to be periodic. With `savesOnly` requests that may
  // be a save are the only work that is waited for.
  //
  // Answers true where the report will come. A page that was loaded, has run its tasks and is idle
  // answers with the report itself; its STATE is empty unless the markup is the same as before.
  let latest = '';  // an earlier wait that has no listener any more must not end this one
  window.quaylineReportIdle = function(id, isLed, periodic, savesOnly) {
    latest = id;
    const start = performance.now();
    let isWaiting = false;
    const reportOf = (gaveUp, state) => {
      const {later, periodic: found} = askWatches(gaveUp ? 'give up' : 'disarm');
      const complaints = window.quaylineComplaints(state);
      return [['idle', id, later, Number(gaveUp), state].join(' '),
        complaints ? JSON.stringify(complaints) : '', ...new Set(found)].join('\n');
    };
    const end = (gaveUp) => report(reportOf(gaveUp, markupState()));
    const isIdle = (pending) =>
      savesOnly ? pending.saves === 0 : pending.count === 0 && !refreshIsNear();
    const look = () => {
      if (id !== latest) {
        return;
      }
      const pending = askWatches('count');
      const limit = pending.saves > 0 ? limits.save : requestLimit(isLed);
      const gaveUp = !isIdle(pending) && performance.now() - start > limit;
      if (gaveUp || isIdle(pending)) {
        if (pending.isBlind) {
          afterTime(() => id === latest && end(gaveUp));
        } else {
          end(gaveUp);
        }
        return;
      }
      if (!isWaiting) {
        isWaiting = true;
        report('pending ' + id);
      }
      awaitReply();
    };
    // Looks again when a watch reports that its work is done, and from time to time.
    const awaitReply = () => {
      const lines = watchLines();
      let over = false;
      const wake = () => {
        if (!over) {
          over = true;
          lines.forEach((line) => stopListeningTo(line, reply, wake));
          afterTasks(look);
        }
      };
      lines.forEach((line) => listenTo(line, reply, wake));
      setTimeout(wake, limits.lookAgain);
    };
    if (periodic.length > 0) {
      askWatches('known ' + JSON.stringify(periodic));
    }
    if (isLed) {
      awaitPagesBetween();
    }
    const tasks = tasksOfLoad;
    forgetTasksOfLoad();
    if (tasks === null) {
      afterTasks(look);
      return true;
    }
    if (!tasks.areDone) {
      tasks.then = look;
      return true;
    }
    const pending = askWatches('count');
    if (isIdle(pending) && !pending.isBlind) {
      return reportOf(false, tasks.state === markupState() ? tasks.state : '');
    }
    look();
    return true;
  };
}
