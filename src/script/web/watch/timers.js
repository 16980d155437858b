// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Replaces the built-ins by which a page runs a function later. Each does what it did, and the
// function is known as pending until it has run or is cancelled.
function watchTimers(work, limits, native) {
  'use strict';

  const {apply, now} = native;
  const global = window;
  const numbers = Object.create(null);  // of the pending items, by the kind and number of the timer

  // The same function with the same delay. Two functions of one text are one to us.
  const SIGNATURE_LENGTH = 80;
  function signatureOf(task, delay) {
    const source = typeof task === 'function' ? native.sourceOf(task) : native.toText(task);
    return delay + ' ' + source.length + ' ' + native.slice(source, 0, SIGNATURE_LENGTH);
  }

  function forget(key) {
    const number = numbers[key];
    if (number !== undefined) {
      delete numbers[key];
      work.end(number);
    }
  }

  function replaceTimer(name, clearName, kind) {
    const start = native[name];
    const clear = native[clearName];
    const repeats = kind === 'interval';
    global[name] = function(task, delay, ...args) {
      if (task === undefined) {
        return apply(start, global, arguments);
      }
      const time = native.toNumber(delay) || 0;
      const number = work.start(kind, signatureOf(task, time), time <= work.longestTimer(), false);
      work.setDelay(number, time);
      let key = '';
      const id = apply(start, global, [function() {
        work.setDelay(number, time);
        try {
          return work.run(number, task, global, args);
        } finally {
          if (repeats) {
            work.endRound(number);
          } else {
            forget(key);
          }
        }
      }, delay]);
      key = kind + id;
      numbers[key] = number;
      return id;
    };
    // The two kinds share their numbers, and each function cancels both.
    global[clearName] = function(id) {
      forget('timer' + id);
      forget('interval' + id);
      return apply(clear, global, arguments);
    };
  }
  replaceTimer('setTimeout', 'clearTimeout', 'timer');
  replaceTimer('setInterval', 'clearInterval', 'interval');

  // A page that is not rendered gets no animation frames: a timer runs them.
  const frames = Object.create(null);  // by their number: {number, timer}

  function forgetFrame(id) {
    const frame = frames[id];
    if (frame !== undefined) {
      delete frames[id];
      apply(native.clearTimeout, global, [frame.timer]);
      work.end(frame.number);
    }
  }

  global.requestAnimationFrame = function(task) {
    if (typeof task !== 'function') {
      return apply(native.requestAnimationFrame, global, arguments);
    }
    const number = work.start('frame', signatureOf(task, 0), true, false);
    let id = 0;
    const run = (time) => {
      const frame = frames[id];
      if (frame === undefined) {
        return;
      }
      apply(native.clearTimeout, global, [frame.timer]);
      apply(native.cancelAnimationFrame, global, [id]);
      try {
        work.run(number, task, global, [time]);
      } finally {
        forgetFrame(id);
      }
    };
    id = apply(native.requestAnimationFrame, global, [run]);
    frames[id] = {number,
      timer: apply(native.setTimeout, global, [() => run(now()), limits.animationFrame])};
    return id;
  };

  global.cancelAnimationFrame = function(id) {
    forgetFrame(id);
    return apply(native.cancelAnimationFrame, global, arguments);
  };

  global.requestIdleCallback = function(task, options) {
    if (typeof task !== 'function') {
      return apply(native.requestIdleCallback, global, arguments);
    }
    const number = work.start('frame', signatureOf(task, -1), true, false);
    const id = apply(native.requestIdleCallback, global, [function(...args) {
      try {
        return work.run(number, task, global, args);
      } finally {
        work.end(number);
      }
    }, options]);
    numbers['idle' + id] = number;
    return id;
  };

  global.cancelIdleCallback = function(id) {
    forget('idle' + id);
    return apply(native.cancelIdleCallback, global, arguments);
  };
}
