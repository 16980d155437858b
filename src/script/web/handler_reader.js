// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reads, in the page's own script world, the handlers that the page's scripts assigned to elements:
// the agent's world does not see them. It keeps what it needs of the built-ins before the page's
// first script can replace them. Answers the event `ask`, whose detail names the handler
// ("onclick"), with the event `reply`: a JSON list of [number of the element, source].
function installHandlerReader(ask, reply) {
  'use strict';

  const elementsOf = document.getElementsByTagName.bind(document);
  const send = document.dispatchEvent.bind(document);
  const sourceOf = Function.prototype.call.bind(Function.prototype.toString);
  const hasAttribute = Function.prototype.call.bind(Element.prototype.hasAttribute);
  const toJson = JSON.stringify;
  const Answer = CustomEvent;

  document.addEventListener(ask, (event) => {
    const handler = event.detail;
    const elements = elementsOf('*');
    const count = elements.length;
    let list = '';
    for (let i = 0; i < count; i += 1) {
      const element = elements[i];
      const assigned = element[handler];
      if (typeof assigned === 'function' && !hasAttribute(element, handler)) {
        list += (list === '' ? '' : ',') + '[' + i + ',' + toJson(sourceOf(assigned)) + ']';
      }
    }
    send(new Answer(reply, {detail: '[' + list + ']'}));
  });
}
