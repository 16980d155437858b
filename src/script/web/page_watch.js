// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Knows what a page still has in hand: timers, frames of the painting, requests and pictures that
// it waits for. A page that has nothing in hand starts no navigation of its own, and so a click can
// be told to be over at once, while a save that the page sends by itself in a moment is waited for.
//
// It lives in the page's own script world, from before the page's first script, and stands in for
// the built-ins by which a page puts work off; each does what it did. It keeps its own references:
// what pages do to the built-ins later does not reach it.
//
// Work counts while the watch is armed: from the start of the document until it has first come to
// rest, and from each act of ours until the page has come to rest behind it. What the page does
// meanwhile counts as well. The agent says "arm", "disarm" and "count" by the event `ask`; the
// event `reply` answers each with the number of things in hand and, of these, of the requests that
// send something; it comes by itself when the last of them is done.
function installPageWatch(ask, reply) {
  'use strict';

  // Timers up to this long are waited for. A document that loads often starts clocks; behind an act
  // of ours a timer is more likely to be a save.
  const LOAD_TIMER_MS = 50;
  const ACT_TIMER_MS = 2500;
  // Work that puts off work that puts off work: a clock, from here on.
  const MAX_DEPTH = 8;
  // The answer to a fetch is there before its text is.
  const FETCHED_TEXT_MS = 20;

  const apply = Reflect.apply;
  // The line to the agent; page_rest.js tells why it is this object.
  const line = performance;
  const send = line.dispatchEvent.bind(line);
  const detailOf = Function.prototype.call.bind(
    Object.getOwnPropertyDescriptor(CustomEvent.prototype, 'detail').get);
  const Answer = CustomEvent;
  const global = window;
  const evaluate = global.eval;
  const performanceNow = performance.now.bind(performance);
  const listen = EventTarget.prototype.addEventListener;
  const defineProperty = Object.defineProperty;
  const getDescriptor = Object.getOwnPropertyDescriptor;
  const native = {
    setTimeout: global.setTimeout,
    clearTimeout: global.clearTimeout,
    setInterval: global.setInterval,
    clearInterval: global.clearInterval,
    requestAnimationFrame: global.requestAnimationFrame,
    cancelAnimationFrame: global.cancelAnimationFrame,
    requestIdleCallback: global.requestIdleCallback,
    fetch: global.fetch,
    open: XMLHttpRequest.prototype.open,
    send: XMLHttpRequest.prototype.send,
    then: Promise.prototype.then,
  };

  let armed = true;
  let longestTimer = LOAD_TIMER_MS;
  let depth = 0;  // of the work that runs now
  let count = 0;
  let saves = 0;  // of these, requests that send something
  const inHand = Object.create(null);  // by kind and number: 'work' or 'save'

  function tellCount() {
    send(new Answer(reply, {detail: count + ' ' + saves}));
  }

  function take(key, isSave) {
    if (!inHand[key]) {
      inHand[key] = isSave ? 'save' : 'work';
      count += 1;
      saves += isSave ? 1 : 0;
    }
  }

  function drop(key) {
    if (inHand[key]) {
      count -= 1;
      saves -= inHand[key] === 'save' ? 1 : 0;
      delete inHand[key];
      if (count === 0) {
        tellCount();
      }
    }
  }

  line.addEventListener(ask, (event) => {
    switch (detailOf(event)) {
      case 'arm':
        armed = true;
        longestTimer = ACT_TIMER_MS;
        break;
      case 'disarm':
        armed = false;
        break;
      default:
    }
    tellCount();
  });

  // Runs put-off work as what it is: one step deeper than the work that put it off.
  function runDeeper(level, work, self, args) {
    const before = depth;
    depth = level;
    try {
      return typeof work === 'function' ? apply(work, self, args) : evaluate(String(work));
    } finally {
      depth = before;
    }
  }

  function counts() {
    return armed && depth < MAX_DEPTH;
  }

  function replaceTimer(name, clearName) {
    const start = native[name];
    const clear = native[clearName];
    global[name] = function(work, delay, ...args) {
      const time = Number(delay) || 0;
      if (!counts() || time > longestTimer || work === undefined) {
        return apply(start, global, arguments);
      }
      const level = depth + 1;
      let key = '';
      const id = apply(start, global, [function() {
        try {
          return runDeeper(level, work, global, args);
        } finally {
          drop(key);
        }
      }, delay]);
      key = 't' + id;
      take(key);
      return id;
    };
    global[clearName] = function(id) {
      drop('t' + id);
      return apply(clear, global, arguments);
    };
  }
  replaceTimer('setTimeout', 'clearTimeout');
  replaceTimer('setInterval', 'clearInterval');

  // A page that is not painted gets no frames: a timer stands in for them.
  const LONGEST_FRAME_MS = 40;
  const substitutes = Object.create(null);  // timers, by the number of the frame's request

  global.requestAnimationFrame = function(work) {
    if (typeof work !== 'function') {
      return apply(native.requestAnimationFrame, global, arguments);
    }
    const isCounted = counts();
    const level = depth + 1;
    let id = 0;
    const run = (time) => {
      if (substitutes[id] === undefined) {
        return;
      }
      apply(native.clearTimeout, global, [substitutes[id]]);
      apply(native.cancelAnimationFrame, global, [id]);
      delete substitutes[id];
      try {
        runDeeper(level, work, global, [time]);
      } finally {
        drop('f' + id);
      }
    };
    id = apply(native.requestAnimationFrame, global, [run]);
    substitutes[id] = apply(native.setTimeout, global,
                            [() => run(performanceNow()), LONGEST_FRAME_MS]);
    if (isCounted) {
      take('f' + id);
    }
    return id;
  };

  global.cancelAnimationFrame = function(id) {
    if (substitutes[id] !== undefined) {
      apply(native.clearTimeout, global, [substitutes[id]]);
      delete substitutes[id];
    }
    drop('f' + id);
    return apply(native.cancelAnimationFrame, global, arguments);
  };

  let idleRequests = 0;
  global.requestIdleCallback = function(work, ...rest) {
    if (!counts()) {
      return apply(native.requestIdleCallback, global, arguments);
    }
    const level = depth + 1;
    idleRequests += 1;
    const key = 'i' + idleRequests;
    take(key);
    return apply(native.requestIdleCallback, global, [function(...args) {
      try {
        return runDeeper(level, work, global, args);
      } finally {
        drop(key);
      }
    }, ...rest]);
  };

  let requests = 0;
  const methods = new WeakMap();
  const methodOf = Function.prototype.call.bind(WeakMap.prototype.get);
  const setMethod = Function.prototype.call.bind(WeakMap.prototype.set);

  function sends(method) {
    return !/^(get|head)$/i.test(String(method || 'get'));
  }

  XMLHttpRequest.prototype.open = function(method) {
    setMethod(methods, this, method);
    return apply(native.open, this, arguments);
  };

  XMLHttpRequest.prototype.send = function() {
    if (counts()) {
      requests += 1;
      const key = 'x' + requests;
      take(key, sends(methodOf(methods, this)));
      apply(listen, this, ['loadend', () => drop(key)]);
      try {
        return apply(native.send, this, arguments);
      } catch (error) {
        drop(key);
        throw error;
      }
    }
    return apply(native.send, this, arguments);
  };

  global.fetch = function(what, how) {
    const answer = apply(native.fetch, global, arguments);
    if (counts()) {
      requests += 1;
      const key = 'r' + requests;
      take(key, sends((how && how.method) || (what && what.method)));
      const finish = () => apply(native.setTimeout, global, [() => drop(key), FETCHED_TEXT_MS]);
      apply(native.then, answer, [finish, finish]);
    }
    return answer;
  };

  // Pictures and scripts that a page fetches for what it does when they arrive.
  let resources = 0;
  for (const prototype of [HTMLImageElement.prototype, HTMLScriptElement.prototype]) {
    const source = getDescriptor(prototype, 'src');
    defineProperty(prototype, 'src', {
      configurable: true,
      enumerable: true,
      get: source.get,
      set(address) {
        if (counts() && longestTimer === ACT_TIMER_MS) {
          resources += 1;
          const key = 's' + resources;
          take(key);
          const finish = () => drop(key);
          apply(listen, this, ['load', finish]);
          apply(listen, this, ['error', finish]);
        }
        apply(source.set, this, [address]);
      },
    });
  }
}
