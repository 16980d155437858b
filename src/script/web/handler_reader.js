// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reads the handlers of elements in the page's own script world, most of all those that the page's
// scripts assigned: the agent's world does not see them. It keeps what it needs of the built-ins
// before the page's first script can replace them. Answers the event `ask`, whose detail names the
// handler ("onclick"), with the event `reply`: a JSON list of [number of the element, source]. The
// elements are numbered as in the agent's all(): those of the document, then those of its open
// shadow roots.
function installHandlerReader(ask, reply) {
  'use strict';

  const bind = Function.prototype.call.bind.bind(Function.prototype.call);
  const getter = (prototype, name) => bind(Object.getOwnPropertyDescriptor(prototype, name).get);
  const line = performance;
  const elementsOf = document.getElementsByTagName.bind(document);
  const elementsIn = bind(DocumentFragment.prototype.querySelectorAll);
  const shadowRootOf = getter(Element.prototype, 'shadowRoot');
  const send = line.dispatchEvent.bind(line);
  const sourceOf = bind(Function.prototype.toString);
  const attributeOf = bind(Element.prototype.getAttribute);
  const detailOf = getter(CustomEvent.prototype, 'detail');
  const toJson = JSON.stringify;
  const Answer = CustomEvent;

  // Nothing for a handler that is empty in the markup: it is no handler, though it has a source.
  function read(element, handler) {
    try {
      const assigned = element[handler];
      return typeof assigned === 'function' && attributeOf(element, handler) !== ''
        ? sourceOf(assigned) : '';
    } catch (error) {
      return '';  // a page can make any property of its elements fail
    }
  }

  line.addEventListener(ask, (event) => {
    const handler = detailOf(event);
    const shadowRoots = [];
    let rootCount = 0;
    let list = '';
    let number = 0;
    const readAll = (elements) => {
      const count = elements.length;
      for (let i = 0; i < count; i += 1) {
        const source = read(elements[i], handler);
        if (source !== '') {
          list += (list === '' ? '' : ',') + '[' + number + ',' + toJson(source) + ']';
        }
        number += 1;
      }
    };
    const gatherRoots = (elements) => {
      const count = elements.length;
      for (let i = 0; i < count; i += 1) {
        const root = shadowRootOf(elements[i]);
        if (root !== null) {
          shadowRoots[rootCount] = root;
          rootCount += 1;
          gatherRoots(elementsIn(root, '*'));
        }
      }
    };
    const elements = elementsOf('*');
    readAll(elements);
    gatherRoots(elements);
    for (let i = 0; i < rootCount; i += 1) {
      readAll(elementsIn(shadowRoots[i], '*'));
    }
    send(new Answer(reply, {detail: '[' + list + ']'}));
  });
}
