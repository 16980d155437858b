// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Knows what a page has pending (pending_work.js). A page without pending work starts no navigation
// by itself: a click on it is over at once, and a save that the page sends a moment later is waited
// for.
//
// It lives in the page's own script world, from before the page's first script, and replaces the
// built-ins that start pending work (timers.js, requests.js). It keeps references of its own: what
// a page does to the built-ins later does not reach it.
//
// The page's idle reporter (page_idle.js) sends the event `ask`: "arm" before an action, "adopt"
// after a question that was answered with no, "follow" when something is missing, "wait" on a page
// in between, "known" with the signatures that are periodic, "count", and at the end "disarm", or
// "give up" when the wait was in vain. Each is answered with the event `reply`: the number of
// pending items, of those that may be saves, and of timers of the last action that are too long to
// be waited for; after "disarm" and "give up" also the periodic signatures. The event comes by
// itself when the last item is done, and contains "closing" when the page closes its window.
function installPageWatch(ask, reply, limits) {
  'use strict';

  const callOf = (call) => Function.prototype.call.bind(call);
  const method = (prototype, name) => callOf(prototype[name]);
  const descriptor = Object.getOwnPropertyDescriptor;
  const global = window;
  // The line to the idle reporter; page_idle.js explains why it is this object.
  const line = performance;
  const send = line.dispatchEvent.bind(line);
  const Answer = CustomEvent;
  const detailOf = callOf(descriptor(CustomEvent.prototype, 'detail').get);
  const parse = JSON.parse;

  const native = {
    method,
    getter: (prototype, name) => callOf(descriptor(prototype, name).get),
    apply: Reflect.apply,
    construct: Reflect.construct,
    now: performance.now.bind(performance),
    keysOf: Object.keys,
    defineProperty: Object.defineProperty,
    getDescriptor: descriptor,
    evaluate: ((run) => (text) => run(String(text)))(global.eval),
    toText: ((text) => (value) => text(value))(String),
    toNumber: Number,
    sourceOf: method(Function.prototype, 'toString'),
    lowered: method(String.prototype, 'toLowerCase'),
    slice: method(String.prototype, 'slice'),
    startsWith: method(String.prototype, 'startsWith'),
    listen: EventTarget.prototype.addEventListener,
    then: Promise.prototype.then,
    setTimeout: global.setTimeout,
    clearTimeout: global.clearTimeout,
    setInterval: global.setInterval,
    clearInterval: global.clearInterval,
    requestAnimationFrame: global.requestAnimationFrame,
    cancelAnimationFrame: global.cancelAnimationFrame,
    requestIdleCallback: global.requestIdleCallback,
    cancelIdleCallback: global.cancelIdleCallback,
    fetch: global.fetch,
    open: XMLHttpRequest.prototype.open,
    send: XMLHttpRequest.prototype.send,
    setAttribute: Element.prototype.setAttribute,
  };

  const work = makePendingWork(limits, native);
  watchTimers(work, limits, native);
  watchRequests(work, limits, native);

  function answer(more) {
    send(new Answer(reply, {
      detail: work.count() + ' ' + work.saves() + ' ' + work.later() + (more || '')}));
  }
  work.whenIdle(answer);

  const KNOWN = 'known ';
  line.addEventListener(ask, (event) => {
    const what = detailOf(event);
    work.acted();
    if (native.startsWith(what, KNOWN)) {
      work.learn(parse(native.slice(what, KNOWN.length)));
    }
    switch (what) {
      case 'arm':
        work.arm();
        break;
      case 'adopt':
        work.adopt();
        break;
      case 'follow':
        work.follow();
        break;
      case 'wait':
        work.await();
        break;
      case 'disarm':
      case 'give up':
        work.disarm(what === 'give up');
        answer(work.periodicSignatures());
        return;
      default:
    }
    answer();
  });

  // The engine stops every request of a window that closes: the one that saves as well. So the
  // window is left open, and the program closes it when its requests are answered.
  if (global === global.top) {
    let isClosed = false;
    global.close = function() {
      isClosed = global.opener !== null;
      send(new Answer(reply, {detail: 'closing'}));
    };
    native.defineProperty(global, 'closed', {configurable: true, get: () => isClosed});
  }
}
