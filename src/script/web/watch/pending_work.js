// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The list of everything that a page has pending: timers, animation frames, requests, resources,
// answers of workers and sockets. An item counts, or is only known. As long as an item counts, the
// page is not idle, because a save may come of it.
//
// What counts: while the document loads, what it starts until it is first idle; after an action of
// ours, what the action starts, and what that starts in turn. What ran before the action does not
// count, unless it is adopted.
//
// Pages poll. Something that a page starts again and again by itself, whatever we do, is periodic
// and does not count any more. It is recognised by its signature (the address of a request, the
// function of a timer), and only when it was seen to start without an action: a save that is sent
// once for each entry never becomes periodic.
function makePendingWork(limits, native) {
  'use strict';

  const {apply, now, keysOf} = native;

  let armed = true;
  let action = 0;     // the number of the last action; 0: the document loads
  let acting = false;  // the action itself runs: what starts now is started by it
  let waitsForMore = false;  // after an action, or on a page that an action led to
  let armedAt = now();
  // The deferred function that runs now: how many others it came through, since which action.
  let running = {depth: 0, action: 0};
  let count = 0;
  let saves = 0;
  let numbers = 0;
  let onIdle = () => {};
  const items = Object.create(null);
  const seen = Object.create(null);  // what is known of a signature

  // Limits of the memory: a page may use a new address for every request.
  const MAX_SIGNATURES = 1000;
  let signatures = 0;

  function historyOf(signature) {
    if (!seen[signature]) {
      if (signatures >= MAX_SIGNATURES) {
        return {isPeriodic: false, startedByItself: false, live: 0, whileLoading: 0, inAction: 0,
          lastAction: 0, unasked: 0};
      }
      signatures += 1;
      seen[signature] = {isPeriodic: false, startedByItself: false, live: 0, whileLoading: 0,
        inAction: 0, lastAction: 0, unasked: 0};
    }
    return seen[signature];
  }

  // Notes that `signature` starts once more. Rounds follow one another: what starts beside another
  // of its kind is a part of the same round.
  function noteStart(signature, isRequest) {
    const history = historyOf(signature);
    if (acting || history.live > 0) {
      return history;
    }
    if (!armed) {
      history.startedByItself = true;
      history.unasked += 1;
      history.isPeriodic = history.isPeriodic || history.unasked > 1;
    } else if (action === 0) {
      history.startedByItself = true;
      history.whileLoading += 1;
      history.isPeriodic = history.isPeriodic ||
        (isRequest && history.whileLoading >= limits.periodicRounds);
    } else {
      history.inAction = history.lastAction === action ? history.inAction + 1 : 1;
      history.lastAction = action;
    }
    return history;
  }

  function isPeriodic(history, sends) {
    return !acting && (history.isPeriodic ||
      (!sends && history.startedByItself && history.inAction >= limits.periodicRounds));
  }

  function isYoung() {
    return waitsForMore && now() - armedAt < limits.chain;
  }

  function isOfThisAction() {
    return running.depth === 0 || running.action === action;
  }

  // Whether what the page starts now counts.
  function counts() {
    return armed && isOfThisAction() && (running.depth < limits.chainDepth || isYoung());
  }

  function mark(item) {
    if (!item.counted) {
      item.counted = true;
      count += 1;
      saves += item.isSave ? 1 : 0;
    }
  }

  function unmark(item) {
    if (item.counted) {
      item.counted = false;
      count -= 1;
      saves -= item.isSave ? 1 : 0;
    }
  }

  // Starts an item. `kind` is 'timer', 'interval', 'frame', 'request', 'resource' or 'answer';
  // `wanted` is whether an item of this kind and length is waited for at all; a request that
  // `sends` something, and after an action every request, may be a save. Returns its number.
  function start(kind, signature, wanted, sends) {
    const isRequest = kind === 'request' || kind === 'answer';
    const history = noteStart(kind + ' ' + signature, isRequest);
    history.live += 1;
    numbers += 1;
    const item = {kind, history, counted: false, isSettled: false, delay: 0,
      due: 0,
      isSave: kind === 'request' && waitsForMore && (counts() || sends),
      step: {depth: running.depth + 1, action: running.depth === 0 ? action : running.action}};
    items[numbers] = item;
    if (wanted && !isPeriodic(history, sends) && (counts() || (armed && item.isSave))) {
      mark(item);
    }
    return numbers;
  }

  // The answer is there, and what depends on it is about to run: it may start the next round.
  function settle(number) {
    const item = items[number];
    if (item && !item.isSettled) {
      item.isSettled = true;
      item.history.live -= 1;
    }
  }

  function end(number) {
    const item = items[number];
    if (!item) {
      return;
    }
    settle(number);
    delete items[number];
    if (item.counted) {
      unmark(item);
      if (count === 0) {
        onIdle();
      }
    }
  }

  // One run of an interval is over; the interval itself continues. An interval that the action
  // started counts on for a while: it may be a count of seconds.
  function endRound(number) {
    const item = items[number];
    if (!item || !item.counted) {
      return;
    }
    if (item.step.action !== action || !isYoung()) {
      unmark(item);
      if (count === 0) {
        onIdle();
      }
    }
  }

  // Runs a deferred function, so that what it starts is known to come of it.
  function run(number, work, self, args) {
    const before = running;
    running = items[number] ? items[number].step : before;
    try {
      return typeof work === 'function' ? apply(work, self, args) : native.evaluate(work);
    } finally {
      running = before;
    }
  }

  function each(visit) {
    const numbersNow = keysOf(items);
    for (let i = 0; i < numbersNow.length; i += 1) {
      visit(items[numbersNow[i]]);
    }
  }

  function isWithin(item, longest) {
    switch (item.kind) {
      case 'timer':
      case 'interval':
        return item.due - now() <= longest;
      default:
        return true;
    }
  }

  // Before an action. Intervals and animation frames that run already may send what the action
  // queues: their next run counts, where they are fast.
  function arm() {
    if (!armed || action === 0) {
      action += 1;
    }
    armed = true;
    acting = true;
    waitsForMore = true;
    armedAt = now();
    each((item) => {
      if ((item.kind === 'interval' || item.kind === 'timer' || item.kind === 'frame') &&
          isWithin(item, limits.fastInterval)) {
        mark(item);
      }
    });
  }

  // Something is missing on the page: it may come of whatever the page has pending, the periodic
  // included, and of what that starts in turn.
  function follow() {
    arm();
    acting = false;
    each((item) => {
      if (isWithin(item, limits.actionTimer)) {
        item.step.action = action;
        mark(item);
      }
    });
  }

  // A question was answered with no, as most are. Only what the page is about to do may change the
  // answer, and not a periodic timer.
  function adopt() {
    arm();
    acting = false;
    each((item) => {
      if (isWithin(item, limits.questionTimer) && !item.history.isPeriodic &&
          (item.kind !== 'interval' || item.delay <= limits.questionTimer / 2)) {
        item.step.action = action;
        mark(item);
      }
    });
  }

  // The page was reached by an action and has nothing to fill in or to press: it navigates by
  // itself to another page. What it has pending counts like that of the action.
  function await_() {
    if (action === 0 && !waitsForMore) {
      armed = true;
      waitsForMore = true;
      armedAt = now();
      each((item) => {
        if (isWithin(item, limits.actionTimer)) {
          mark(item);
        }
      });
    }
  }

  // The page is idle, or was waited for in vain: requests that a loading document holds open for so
  // long are held open for ever.
  function disarm(inVain) {
    each((item) => {
      if (inVain && item.counted && action === 0 && item.kind === 'request') {
        item.history.isPeriodic = true;
      }
      unmark(item);
    });
    armed = false;
    acting = false;
  }

  // How many timers of the last action have not run yet: they are longer than what is waited for.
  function later() {
    let number = 0;
    each((item) => {
      number += (item.kind === 'timer' || item.kind === 'interval') && action > 0 &&
        item.step.action === action && !item.history.isPeriodic ? 1 : 0;
    });
    return number;
  }

  // The signatures of requests that are periodic, each after a line break: another document of the
  // same job need not find out again.
  function periodicSignatures() {
    const known = keysOf(seen);
    let text = '';
    for (let i = 0; i < known.length; i += 1) {
      if (seen[known[i]].isPeriodic && native.startsWith(known[i], 'request ')) {
        text += '\n' + known[i];
      }
    }
    return text;
  }

  function learn(periodic) {
    for (let i = 0; i < periodic.length; i += 1) {
      historyOf(periodic[i]).isPeriodic = true;
    }
    each((item) => {
      if (item.history.isPeriodic && action === 0) {
        unmark(item);
      }
    });
  }

  return {
    start, settle, end, endRound, run, arm, adopt, follow, await: await_, disarm, later, periodicSignatures,
    learn,
    acted() {
      acting = false;
    },
    setDelay(number, delay) {
      if (items[number]) {
        items[number].delay = delay;
        items[number].due = now() + delay;
      }
    },
    has: (number) => items[number] !== undefined,
    waitsForMore: () => waitsForMore,
    longestTimer: () => (waitsForMore ? limits.actionTimer : limits.loadTimer),
    count: () => count,
    saves: () => saves,
    whenIdle(call) {
      onIdle = call;
    },
  };
}
