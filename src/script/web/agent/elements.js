// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The page agent finds elements of a page, reads them and acts on them. One copy lives in every
// document, frames included, from before the page's first script runs. It has a script world of its
// own: it shares the page's elements, and nothing that a page does to the built-ins of its scripts
// reaches it.
//
// The files of this folder are joined in the body of one function and see each other's functions;
// the last, entry.js, has the function that sets the agent going.
//
// This file has what all operations share: access to elements and their texts.

'use strict';

// Secret from the page: the mark of messages to the host on the console, and the names of the events
// that the agent and the handler reader (handler_reader.js) exchange.
let beacon = '';
let ask = '';
let reply = '';

// What a page can be asked, by name. Each file adds its own; each gets the document to work on and
// its arguments.
const operations = {};

const SUCCESSFUL = 'successful';
const FAILED = 'failed';
const FAILED_LINK = 'failed_link';

// A control hides the member of its form that it is named after, and an element named "links"
// hides that of its document: whatever either of them has is asked of the prototypes.
function getter(prototype, property) {
  return Function.prototype.call.bind(
    Object.getOwnPropertyDescriptor(prototype, property).get);
}

function method(prototype, name) {
  return Function.prototype.call.bind(prototype[name]);
}

const rootOf = getter(Document.prototype, 'documentElement');
const bodyOf = getter(Document.prototype, 'body');
const formsOf = getter(Document.prototype, 'forms');
const linksOf = getter(Document.prototype, 'links');
const windowOf = getter(Document.prototype, 'defaultView');
const elementsOf = method(Document.prototype, 'getElementsByTagName');
const elementsNamed = method(Document.prototype, 'getElementsByName');
const elementWithId = method(Document.prototype, 'getElementById');
const childrenOf = getter(Element.prototype, 'children');
const markupOf = getter(Element.prototype, 'outerHTML');
const innerMarkupOf = getter(Element.prototype, 'innerHTML');
const attributeOf = method(Element.prototype, 'getAttribute');
const setAttributeOf = method(Element.prototype, 'setAttribute');
const sendTo = method(EventTarget.prototype, 'dispatchEvent');
const listenTo = method(EventTarget.prototype, 'addEventListener');
const stopListeningTo = method(EventTarget.prototype, 'removeEventListener');
const clickOn = method(HTMLElement.prototype, 'click');
const focusOn = method(HTMLElement.prototype, 'focus');
const submitForm = method(HTMLFormElement.prototype, 'submit');

// A property as text. Elements that are hidden behind a form's own member, and attributes that
// are no property of their element, are read as written in the markup.
function textOf(element, property) {
  const value = element[property];
  if (typeof value === 'string') {
    return value;
  }
  return attributeOf(element, property) || '';
}

function all(document_) {
  return Array.from(elementsOf(document_, '*'));
}

// Keeps every character in its place: one letter would become two.
function fold(text) {
  return text.replaceAll('\u0130', 'i').toLowerCase();
}

// Case-insensitive; an empty needle is found in every text but an empty one.
function contains(text, needle) {
  return text !== '' && fold(text).includes(fold(needle));
}

function byIdOrName(document_, name) {
  return elementWithId(document_, name) || elementsNamed(document_, name)[0] || null;
}

// The value that the top document's element of this name was written with.
function probedValue(name) {
  const element = name === '' ? null : byIdOrName(document, name);
  return (element && attributeOf(element, 'value')) || '';
}

function valueOf(element, name) {
  return textOf(element, 'value') || probedValue(name);
}

// The source of every element's handler: as the page's own world sees it, or as it is written in
// the markup where that world has none. The two worlds speak over the window's clock: what
// listens to a document is gone when the page writes itself anew.
function handlerReader(document_, handler) {
  const sources = new Map();
  const elements = elementsOf(document_, '*');
  const line = windowOf(document_).performance;
  const take = (event) => {
    for (const [index, source] of JSON.parse(event.detail)) {
      sources.set(elements[index], source);
    }
  };
  listenTo(line, reply, take);
  sendTo(line, new CustomEvent(ask, {detail: handler}));
  stopListeningTo(line, reply, take);
  return (element) => sources.get(element) || attributeOf(element, handler) || '';
}
