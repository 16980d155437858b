// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Replaces the built-ins by which a page sends requests, and waits for answers, and fetches images
// and scripts. Each does what it did, and what it started is known as pending until it is answered.
function watchRequests(work, limits, native) {
  'use strict';

  const {apply, listen, toText, lowered} = native;
  const global = window;

  function sends(method) {
    const name = lowered(toText(method || 'get'));
    return name !== 'get' && name !== 'head';
  }

  // Long numbers are left out: they make an address new each time, against the browser's cache.
  const SIGNATURE_LENGTH = 400;
  const LONG_NUMBER = 5;
  function withoutLongNumbers(text) {
    let kept = '';
    let digits = '';
    for (let i = 0; i <= text.length; i += 1) {
      const letter = i < text.length ? text[i] : '';
      if (letter >= '0' && letter <= '9') {
        digits += letter;
      } else {
        kept += (digits.length < LONG_NUMBER ? digits : '') + letter;
        digits = '';
      }
    }
    return kept;
  }

  function signatureOf(method, address, body) {
    const text = toText(method || 'get') + ' ' + toText(address) +
      (typeof body === 'string' ? ' ' + body : '');
    return withoutLongNumbers(native.slice(text, 0, SIGNATURE_LENGTH));
  }

  // ---- XMLHttpRequest and fetch ---------------------------------------------------------------

  const opened = new WeakMap();
  const valueOf = native.method(WeakMap.prototype, 'get');
  const setValue = native.method(WeakMap.prototype, 'set');
  const stateOf = native.getter(XMLHttpRequest.prototype, 'readyState');

  const DONE = 4;
  XMLHttpRequest.prototype.open = function(method, address) {
    if (valueOf(opened, this) === undefined) {
      apply(listen, this, ['readystatechange', () => {
        if (stateOf(this) === DONE) {
          work.settle(valueOf(opened, this).number);
        }
      }]);
    }
    setValue(opened, this, {method, address, number: 0});
    return apply(native.open, this, arguments);
  };

  XMLHttpRequest.prototype.send = function(body) {
    const request = valueOf(opened, this) || {};
    const {method, address} = request;
    const number = work.start('request', signatureOf(method, address, body), true, sends(method));
    request.number = number;
    apply(listen, this, ['loadend', () => work.end(number)]);
    try {
      return apply(native.send, this, arguments);
    } catch (error) {
      work.end(number);
      throw error;
    }
  };

  // Ends the item when the promise is settled and what depends on it has run.
  function endWith(promise, number) {
    const finish = () => {
      work.settle(number);
      apply(native.setTimeout, global, [() => work.end(number), 0]);
    };
    apply(native.then, promise, [finish, finish]);
  }

  global.fetch = function(what, how) {
    const answer = apply(native.fetch, global, arguments);
    const method = (how && how.method) || (what && what.method);
    const address = typeof what === 'string' ? what : (what && (what.url || what.href)) || '';
    const signature = signatureOf(method, address, how && how.body);
    endWith(answer, work.start('request', signature, true, sends(method)));
    return answer;
  };

  if (global.navigator && navigator.sendBeacon) {
    // Nothing reports its end. The browser sends it even if the page goes.
    const send = navigator.sendBeacon;
    navigator.sendBeacon = function() {
      const number = work.start('answer', 'beacon', work.waitsForMore(), true);
      apply(native.setTimeout, global, [() => work.end(number), limits.animationFrame]);
      return apply(send, this, arguments);
    };
  }

  function watchPromised(prototype, name) {
    const start = prototype[name];
    prototype[name] = function() {
      const promise = apply(start, this, arguments);
      endWith(promise, work.start('request', name + ' ' + (this.url || ''), true, false));
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

  // ---- Images and scripts ---------------------------------------------------------------------

  // Scripts build a page while it loads. Of images that is known only when the page turns out to
  // wait for them: they are known from the start, and adopted then.
  const fetched = new WeakMap();

  function startResource(element, isScript) {
    if (valueOf(fetched, element) !== undefined && work.has(valueOf(fetched, element))) {
      return;
    }
    const number = work.start('resource', 'element', work.waitsForMore() || isScript, false);
    setValue(fetched, element, number);
    const finish = () => work.end(number);
    apply(listen, element, ['load', finish]);
    apply(listen, element, ['error', finish]);
  }

  function watchResource(prototype, isScript) {
    const source = native.getDescriptor(prototype, 'src');
    native.defineProperty(prototype, 'src', {
      configurable: true,
      enumerable: true,
      get: source.get,
      set(address) {
        startResource(this, isScript);
        apply(source.set, this, [address]);
      },
    });
    prototype.setAttribute = function(name) {
      if (lowered(toText(name)) === 'src') {
        startResource(this, isScript);
      }
      return apply(native.setAttribute, this, arguments);
    };
  }
  watchResource(HTMLImageElement.prototype, false);
  watchResource(HTMLScriptElement.prototype, true);

  // ---- Workers and sockets --------------------------------------------------------------------

  // What answers by an event of its own. While a document loads that is known, and does not count.
  function awaitAnswer(source, signature, types, whileLoading) {
    const number = work.start('answer', signature, work.waitsForMore() || whileLoading, false);
    const finish = () => work.end(number);
    for (let i = 0; i < types.length; i += 1) {
      apply(listen, source, [types[i], finish]);
    }
    apply(native.setTimeout, global, [finish, limits.message]);
  }

  function watchQuestions(prototype, name, types) {
    const put = prototype[name];
    prototype[name] = function() {
      awaitAnswer(this, name, types, false);
      return apply(put, this, arguments);
    };
  }
  watchQuestions(Worker.prototype, 'postMessage', ['message', 'error']);
  watchQuestions(WebSocket.prototype, 'send', ['message', 'error', 'close']);

  for (const [name, types] of [['WebSocket', ['open', 'error', 'close']],
                               ['EventSource', ['message', 'error']]]) {
    global[name] = new Proxy(global[name], {
      construct(target, args, newTarget) {
        const made = native.construct(target, args, newTarget);
        awaitAnswer(made, name, types, name === 'WebSocket');
        return made;
      },
    });
  }
}
