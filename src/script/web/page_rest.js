// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Tells when a page has come to rest: when nothing that it was told to do can start a navigation any
// more. It lives in the agent's script world, in the top document as in every other, and speaks with
// the watch of each document (page_watch.js) by the events `ask` and `reply`; `beacon` marks what is
// said to the host through the console. All three are secret from the page.
function installPageRest(beacon, ask, reply) {
  'use strict';

  // How long the page's work in hand is waited for: its own timers behind an act are shorter, and a
  // request is answered by then or is one that the page holds open for ever. One that sends
  // something may be a save, and a router takes its time over those.
  const WORK_LIMIT_MS = 8000;
  const SAVE_LIMIT_MS = 30000;
  // A page that leaves by itself within this time is followed.
  const REFRESH_LIMIT_S = 2;
  // How many messages of ours, each sent by the one before it, stand behind the tasks of a page.
  const HOPS = 8;

  // What a page names like a member of its document would hide that member.
  const sendTo = Function.prototype.call.bind(EventTarget.prototype.dispatchEvent);
  const listenTo = Function.prototype.call.bind(EventTarget.prototype.addEventListener);
  const stopListeningTo = Function.prototype.call.bind(EventTarget.prototype.removeEventListener);
  const findIn = Function.prototype.call.bind(Document.prototype.querySelector);

  function tell(text) {
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
  // keeps its listeners when the document is written anew.
  function watchLines() {
    return reachableWindows().map((window_) => window_.performance);
  }

  // The things in hand in all documents, how many of them are saves, and whether a watch keeps
  // silent.
  function askWatches(what) {
    const total = {count: 0, saves: 0, isBlind: false};
    for (const line of watchLines()) {
      let answer = null;
      const hear = (event) => {
        answer = event.detail.split(' ').map(Number);
      };
      listenTo(line, reply, hear);
      sendTo(line, new CustomEvent(ask, {detail: what}));
      stopListeningTo(line, reply, hear);
      if (answer === null) {
        total.isBlind = true;
      } else {
        total.count += answer[0];
        total.saves += answer[1];
      }
    }
    return total;
  }

  // A document that has just been loaded begins its proof by itself, some milliseconds ahead of the
  // engine's word of the load: most often it is through when the host asks. An act ends it.
  let proofOfLoad = null;

  function forgetProofOfLoad() {
    proofOfLoad = null;
  }

  addEventListener('load', () => {
    const proof = {isThrough: false, then: null};
    proofOfLoad = proof;
    behindTasks(() => {
      proof.isThrough = true;
      if (proof.then !== null) {
        proof.then();
      }
    });
  });
  addEventListener('keydown', forgetProofOfLoad, true);

  window.quaylineArm = function() {
    forgetProofOfLoad();
    askWatches('arm');
  };

  // Whether the page has work in hand; with "adopt" also such as it put off before it was armed.
  window.quaylineIsWorking = function(what) {
    return askWatches(what).count > 0;
  };

  // A page that an act has led to and that offers nothing to do is on its way itself: many routers
  // take a save to a page that says "please wait" and sends it on. What it has put off is waited
  // for like the work behind the act.
  function awaitWaitPages() {
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
      parseFloat(meta.content) <= REFRESH_LIMIT_S;
  }

  function isQuiet(inHand) {
    return inHand.count === 0 && !refreshIsNear();
  }

  function afterTimers(number, then) {
    if (number === 0) {
      then();
    } else {
      setTimeout(() => afterTimers(number - 1, then), 0);
    }
  }

  // Behind a timer, and then behind as many tasks in a row as a page may string together without
  // one: what a task queues stands ahead of the next message of ours.
  function behindTasks(then) {
    let left = HOPS;
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

  // For a page whose work cannot be watched: behind four timers in a row (from the fifth on they
  // are held back), and, where the page is painted, behind two frames.
  function proveBlindly(end) {
    const FRAMES_MS = 60;
    const QUIET_MS = 30;
    const start = performance.now();
    let over = false;
    const finish = () => {
      if (!over) {
        over = true;
        setTimeout(end, Math.max(0, QUIET_MS - (performance.now() - start)));
      }
    };
    afterTimers(4, () => {
      if (document.visibilityState === 'visible') {
        requestAnimationFrame(() => requestAnimationFrame(finish));
        setTimeout(finish, FRAMES_MS);
      } else {
        finish();
      }
    });
  }

  // Says `id` on the console when the page has nothing in hand from which a navigation could come:
  // behind the tasks that stand in its queue, and behind whatever work they put off. `isLed`: an
  // act may have led to the page.
  let latest = '';  // an earlier proof that nobody waits for any more must not end this one
  window.quaylineProveQuiet = function(id, isLed) {
    latest = id;
    const start = performance.now();
    let waiting = false;
    const end = () => {
      askWatches('disarm');
      tell('quiet ' + id);
    };
    const look = () => {
      if (id !== latest) {
        return;
      }
      const inHand = askWatches('count');
      const limit = inHand.saves > 0 ? SAVE_LIMIT_MS : WORK_LIMIT_MS;
      if (isQuiet(inHand) || performance.now() - start > limit) {
        if (inHand.isBlind) {
          proveBlindly(() => id === latest && end());
        } else {
          end();
        }
        return;
      }
      if (!waiting) {
        waiting = true;
        tell('working ' + id);
      }
      awaitReply();
    };
    // Looks again when a watch reports that its work is done, and from time to time.
    const awaitReply = () => {
      const AGAIN_MS = 50;
      const lines = watchLines();
      let over = false;
      const wake = () => {
        if (!over) {
          over = true;
          lines.forEach((line) => stopListeningTo(line, reply, wake));
          behindTasks(look);
        }
      };
      lines.forEach((line) => listenTo(line, reply, wake));
      setTimeout(wake, AGAIN_MS);
    };
    if (isLed) {
      awaitWaitPages();
    }
    const ofLoad = proofOfLoad;
    forgetProofOfLoad();
    if (ofLoad === null) {
      behindTasks(look);
    } else if (ofLoad.isThrough) {
      look();
    } else {
      ofLoad.then = look;
    }
  };
}
