// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reads, in the page's own script world, the handlers of elements, most of all those that the page's
// scripts assigned: the agent's world does not see them. It keeps what it needs of the built-ins
// before the page's first script can replace them. Answers the event `ask`, whose detail names the
// handler ("onclick"), with the event `reply`: a JSON list of [number of the element, source].
function installHandlerReader(ask, reply) {
  'use strict';

  const line = performance;
  const elementsOf = document.getElementsByTagName.bind(document);
  const send = line.dispatchEvent.bind(line);
  const sourceOf = Function.prototype.call.bind(Function.prototype.toString);
  const attributeOf = Function.prototype.call.bind(Element.prototype.getAttribute);
  const detailOf = Function.prototype.call.bind(
    Object.getOwnPropertyDescriptor(CustomEvent.prototype, 'detail').get);
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
    const elements = elementsOf('*');
    const count = elements.length;
    let list = '';
    for (let i = 0; i < count; i += 1) {
      const source = read(elements[i], handler);
      if (source !== '') {
        list += (list === '' ? '' : ',') + '[' + i + ',' + toJson(source) + ']';
      }
    }
    send(new Answer(reply, {detail: '[' + list + ']'}));
  });
}
