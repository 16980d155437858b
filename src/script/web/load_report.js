// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reports to the host what the engine reports to pages alone: scripts and style sheets that failed
// to load, the error of an error page, a document that is too large to work with, the status of a
// frame's document that came over TLS, and the end of a load. It runs in the agent's script world,
// where the page cannot reach it.
function installLoadReport(beacon) {
  'use strict';

  const MAX_ELEMENTS = 200000;
  const MAX_CHARACTERS = 64 * 1024 * 1024;
  // Twice as long from look to look: each one costs more the larger the document is.
  let pause = 250;

  const listenTo = Function.prototype.call.bind(EventTarget.prototype.addEventListener);
  const elementsOf = Function.prototype.call.bind(Document.prototype.getElementsByTagName);
  const textOf = Function.prototype.call.bind(
    Object.getOwnPropertyDescriptor(Node.prototype, 'textContent').get);

  function tell(text) {
    console.debug(beacon + text);
  }

  function reportResource(event) {
    const element = event.target;
    if (element instanceof HTMLScriptElement && element.src !== '') {
      tell('missing ' + element.src);
    } else if (element instanceof HTMLLinkElement && element.relList.contains('stylesheet')) {
      tell('missing ' + element.href);
    }
  }

  function isTooLarge() {
    return elementsOf(document, '*').length > MAX_ELEMENTS ||
      (document.body !== null && textOf(document.body).length > MAX_CHARACTERS);
  }

  let isReported = false;
  function reportSize() {
    if (isReported) {
      return;
    }
    if (isTooLarge()) {
      isReported = true;
      tell('huge');
    } else if (document.readyState !== 'complete') {
      setTimeout(reportSize, pause);
      pause *= 2;
    }
  }

  const isTop = window === window.top;

  function reportLoad() {
    tell('load ' + Number(isTop) + ' ' + location.href);
  }

  // The status goes ahead of the load. Over plain HTTP the program sees it by itself; over TLS nothing
  // but the page is told, and that only by newer engines (Chromium 109).
  function reportStatusAndLoad() {
    const [entry] = performance.getEntriesByType('navigation');
    if (entry && entry.responseStatus > 0) {
      tell('status ' + entry.responseStatus + ' ' + location.href);
    }
    reportLoad();
  }

  listenTo(window, 'load',
           isTop || location.protocol !== 'https:' ? reportLoad : reportStatusAndLoad);

  if (location.protocol === 'chrome-error:') {
    listenTo(document, 'DOMContentLoaded', () => {
      const name = /ERR_[A-Z0-9_]+/.exec(textOf(document.documentElement));
      tell('neterror ' + (name === null ? '' : name[0]));
    });
    return;
  }
  listenTo(window, 'error', reportResource, true);
  setTimeout(reportSize, pause);
  listenTo(window, 'load', reportSize);
}
