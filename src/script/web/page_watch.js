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
// meanwhile counts as well. By the event `ask` the agent says "arm" ahead of an act, "adopt" to have
// what was put off before it waited for, too, "wait" of a new page that is on its way to another,
// "disarm", and "count"; the event `reply` answers each with the number of things in hand and, of
// these, of the requests that send something; it comes by itself when the last of them is done.
function installPageWatch(ask, reply) {
  'use strict';

  // Timers up to this long are waited for. A document that loads often starts clocks; behind an act
  // of ours a timer is more likely to be a save.
  const LOAD_TIMER_MS = 50;
  const ACT_TIMER_MS = 2500;
  // Work that puts off work that puts off work: a clock, from here on. Behind an act it may be a
  // picture that fades or a count of seconds, with a save at its end: such work has time as well.
  const MAX_DEPTH = 8;
  const CHAIN_MS = 4000;
  // A clock that runs already may be what empties a queue of saves: where it is fast, its next turn
  // is waited for.
  const FAST_CLOCK_MS = 250;

  const apply = Reflect.apply;
  // The line to the agent; page_rest.js tells why it is this object.
  const line = performance;
  const send = line.dispatchEvent.bind(line);
  const detailOf = Function.prototype.call.bind(
    Object.getOwnPropertyDescriptor(CustomEvent.prototype, 'detail').get);
  const Answer = CustomEvent;
  const global = window;
  const evaluate = global.eval;
  const toText = String;
  const toNumber = Number;
  const lowered = Function.prototype.call.bind(String.prototype.toLowerCase);
  const keysOf = Object.keys;
  const now = performance.now.bind(performance);
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
    setAttribute: Element.prototype.setAttribute,
    then: Promise.prototype.then,
  };

  let armed = true;
  let acts = 0;  // how often the watch was armed anew; 0: the document loads
  let longestTimer = LOAD_TIMER_MS;
  let armedAt = now();
  let running = {depth: 0, act: 0};  // the put-off work that runs now; of depth 0 when none does
  let count = 0;
  let saves = 0;  // of these, requests that send something
  const inHand = Object.create(null);  // by kind and number: 'work' or 'save'
  const timers = Object.create(null);  // all that are set, by number
  const substitutes = Object.create(null);  // timers, by the number of their frame
  const pictures = Object.create(null);  // and scripts that are on their way, counted or not, by key

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

  // What was waited for in vain is not waited for again.
  function forget() {
    const keys = keysOf(inHand);
    for (let i = 0; i < keys.length; i += 1) {
      delete inHand[keys[i]];
    }
    count = 0;
    saves = 0;
  }

  function arm() {
    if (!armed || acts === 0) {
      acts += 1;
    }
    armed = true;
    longestTimer = ACT_TIMER_MS;
    armedAt = now();
  }

  // Waits for the next turn of timers that were set before. A clock that sets itself anew stays a
  // clock: of what it starts, only what sends something counts.
  function adopt(longest) {
    const frames = keysOf(substitutes);
    for (let i = 0; i < frames.length; i += 1) {
      take('f' + frames[i]);
    }
    const ids = keysOf(timers);
    for (let i = 0; i < ids.length; i += 1) {
      const timer = timers[ids[i]];
      if (timer.due - now() <= longest) {
        take('t' + ids[i]);
      }
    }
  }

  function adoptPictures() {
    const keys = keysOf(pictures);
    for (let i = 0; i < keys.length; i += 1) {
      take(keys[i]);
    }
  }

  line.addEventListener(ask, (event) => {
    switch (detailOf(event)) {
      case 'arm':
        arm();
        adopt(FAST_CLOCK_MS);
        break;
      case 'adopt':
        arm();
        adopt(ACT_TIMER_MS);
        break;
      case 'wait':
        if (acts === 0 && !isBehindAct()) {
          armed = true;
          longestTimer = ACT_TIMER_MS;
          armedAt = now();
          adopt(ACT_TIMER_MS);
          adoptPictures();
        }
        break;
      case 'disarm':
        armed = false;
        forget();
        break;
      default:
    }
    tellCount();
  });

  // What is put off now: one step deeper than the work that puts it off.
  function nextStep() {
    return {depth: running.depth + 1, act: running.depth === 0 ? acts : running.act};
  }

  function runAs(step, work, self, args) {
    const before = running;
    running = step;
    try {
      return typeof work === 'function' ? apply(work, self, args) : evaluate(toText(work));
    } finally {
      running = before;
    }
  }

  // Whether the page may have a save of ours in hand.
  function isBehindAct() {
    return longestTimer === ACT_TIMER_MS;
  }

  function isYoung() {
    return isBehindAct() && now() - armedAt < CHAIN_MS;
  }

  // Whether what the page starts now counts.
  function counts() {
    return armed && (running.depth === 0 || running.act === acts) &&
      (running.depth < MAX_DEPTH || isYoung());
  }

  function replaceTimer(name, clearName) {
    const start = native[name];
    const clear = native[clearName];
    const repeats = name === 'setInterval';
    global[name] = function(work, delay, ...args) {
      if (work === undefined) {
        return apply(start, global, arguments);
      }
      const time = toNumber(delay) || 0;
      const step = nextStep();
      let timer = null;
      const id = apply(start, global, [function() {
        timer.due = now() + time;
        if (!repeats) {
          delete timers[id];
        }
        try {
          return runAs(step, work, global, args);
        } finally {
          if (!repeats || step.act !== acts || !isYoung()) {
            drop('t' + id);
          }
        }
      }, delay]);
      timer = {due: now() + time};
      timers[id] = timer;
      if (counts() && time <= longestTimer) {
        take('t' + id);
      }
      return id;
    };
    global[clearName] = function(id) {
      delete timers[id];
      drop('t' + id);
      return apply(clear, global, arguments);
    };
  }
  replaceTimer('setTimeout', 'clearTimeout');
  replaceTimer('setInterval', 'clearInterval');

  // A page that is not painted gets no frames: a timer stands in for them.
  const LONGEST_FRAME_MS = 40;

  global.requestAnimationFrame = function(work) {
    if (typeof work !== 'function') {
      return apply(native.requestAnimationFrame, global, arguments);
    }
    const step = nextStep();
    let id = 0;
    const run = (time) => {
      if (substitutes[id] === undefined) {
        return;
      }
      apply(native.clearTimeout, global, [substitutes[id]]);
      apply(native.cancelAnimationFrame, global, [id]);
      delete substitutes[id];
      try {
        runAs(step, work, global, [time]);
      } finally {
        drop('f' + id);
      }
    };
    id = apply(native.requestAnimationFrame, global, [run]);
    substitutes[id] = apply(native.setTimeout, global, [() => run(now()), LONGEST_FRAME_MS]);
    if (counts()) {
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
    const step = nextStep();
    idleRequests += 1;
    const key = 'i' + idleRequests;
    take(key);
    return apply(native.requestIdleCallback, global, [function(...args) {
      try {
        return runAs(step, work, global, args);
      } finally {
        drop(key);
      }
    }, ...rest]);
  };

  let requests = 0;
  const methods = new WeakMap();
  const valueOf = Function.prototype.call.bind(WeakMap.prototype.get);
  const setValue = Function.prototype.call.bind(WeakMap.prototype.set);

  function sends(method) {
    const name = lowered(toText(method || 'get'));
    return name !== 'get' && name !== 'head';
  }

  // What is sent while the document loads is no save of ours. Behind an act even a question may be
  // one: some routers save by a GET.
  function maySave(method) {
    return isBehindAct() && (counts() || sends(method));
  }

  // The key of a request that is taken in hand; nothing where it does not count.
  function takeRequest(isSave) {
    if (!counts() && !(armed && isSave)) {
      return '';
    }
    requests += 1;
    const key = 'r' + requests;
    take(key, isSave);
    return key;
  }

  XMLHttpRequest.prototype.open = function(method) {
    setValue(methods, this, method);
    return apply(native.open, this, arguments);
  };

  XMLHttpRequest.prototype.send = function() {
    const key = takeRequest(maySave(valueOf(methods, this)));
    if (key !== '') {
      apply(listen, this, ['loadend', () => drop(key)]);
    }
    try {
      return apply(native.send, this, arguments);
    } catch (error) {
      drop(key);
      throw error;
    }
  };

  // Drops the key when the promise is settled and what hangs on it has had its turn.
  function dropBehind(promise, key) {
    const finish = () => apply(native.setTimeout, global, [() => drop(key), 0]);
    apply(native.then, promise, [finish, finish]);
  }

  global.fetch = function(what, how) {
    const answer = apply(native.fetch, global, arguments);
    const key = takeRequest(maySave((how && how.method) || (what && what.method)));
    if (key !== '') {
      dropBehind(answer, key);
    }
    return answer;
  };

  function watchPromised(prototype, name) {
    const start = prototype[name];
    prototype[name] = function() {
      const promise = apply(start, this, arguments);
      const key = takeRequest(false);
      if (key !== '') {
        dropBehind(promise, key);
      }
      return promise;
    };
  }
  // A slow router sends the text of an answer long after its head.
  for (const name of ['text', 'json', 'blob', 'arrayBuffer', 'formData']) {
    watchPromised(Response.prototype, name);
  }
  watchPromised(ReadableStreamDefaultReader.prototype, 'read');
  // A password is hashed before it is sent. Only pages that came safely can do it this way.
  if (global.SubtleCrypto) {
    for (const name of ['digest', 'encrypt', 'sign', 'importKey', 'deriveBits', 'deriveKey']) {
      watchPromised(SubtleCrypto.prototype, name);
    }
  }

  // Pictures and scripts that a page fetches for what it does when they arrive. Scripts build a
  // page while it loads, too; of pictures that is known only when the page turns out to wait.
  let pictureCount = 0;
  const pictureKeys = new WeakMap();

  function takeResource(element, isScript) {
    let key = valueOf(pictureKeys, element);
    if (key === undefined) {
      pictureCount += 1;
      key = 'p' + pictureCount;
      setValue(pictureKeys, element, key);
      const finish = () => {
        delete pictures[key];
        drop(key);
      };
      apply(listen, element, ['load', finish]);
      apply(listen, element, ['error', finish]);
    }
    pictures[key] = true;
    if (counts() && (isBehindAct() || isScript)) {
      take(key);
    }
  }

  function watchResource(prototype, isScript) {
    const source = getDescriptor(prototype, 'src');
    defineProperty(prototype, 'src', {
      configurable: true,
      enumerable: true,
      get: source.get,
      set(address) {
        takeResource(this, isScript);
        apply(source.set, this, [address]);
      },
    });
    prototype.setAttribute = function(name) {
      if (lowered(toText(name)) === 'src') {
        takeResource(this, isScript);
      }
      return apply(native.setAttribute, this, arguments);
    };
  }
  watchResource(HTMLImageElement.prototype, false);
  watchResource(HTMLScriptElement.prototype, true);

  // What answers by an event of its own: its answer is waited for as long as a timer would be.
  function takeAnswer(source, types) {
    const key = takeRequest(false);
    if (key !== '') {
      const finish = () => drop(key);
      for (let i = 0; i < types.length; i += 1) {
        apply(listen, source, [types[i], finish]);
      }
      apply(native.setTimeout, global, [finish, ACT_TIMER_MS]);
    }
  }

  function watchQuestions(prototype, name, types) {
    const put = prototype[name];
    prototype[name] = function() {
      if (isBehindAct()) {
        takeAnswer(this, types);
      }
      return apply(put, this, arguments);
    };
  }
  watchQuestions(Worker.prototype, 'postMessage', ['message', 'error']);
  watchQuestions(WebSocket.prototype, 'send', ['message', 'error', 'close']);

  const construct = Reflect.construct;
  for (const [name, types] of [['WebSocket', ['open', 'error', 'close']],
                               ['EventSource', ['message', 'error']]]) {
    global[name] = new Proxy(global[name], {
      construct(target, args, newTarget) {
        const made = construct(target, args, newTarget);
        if (isBehindAct() || name === 'WebSocket') {
          takeAnswer(made, types);
        }
        return made;
      },
    });
  }
}
