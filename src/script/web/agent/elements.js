// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The page agent finds elements of a page, reads them and performs user actions on them. One copy
// lives in every document, frames included, from before the page's first script runs. It has a
// script world of its own: it shares the page's elements, and nothing that a page does to the
// built-ins of its scripts reaches it.
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
const OPENED = 'opened';
const SCROLLED = 'scrolled';

// A control hides the member of its form that it is named after, and an element named "links"
// hides that of its document: the members of either are taken from the prototypes.
function getter(prototype, property) {
  return Function.prototype.call.bind(Object.getOwnPropertyDescriptor(prototype, property).get);
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
const queryDocument = method(Document.prototype, 'querySelectorAll');
const walkTree = method(Document.prototype, 'createTreeWalker');
const queryRoot = method(DocumentFragment.prototype, 'querySelectorAll');
const documentOf = getter(Node.prototype, 'ownerDocument');
const activeElementOf = getter(Document.prototype, 'activeElement');
const activeElementInRoot = getter(ShadowRoot.prototype, 'activeElement');
const hostOf = getter(ShadowRoot.prototype, 'host');
const isConnected = getter(Node.prototype, 'isConnected');
const nodeTypeOf = getter(Node.prototype, 'nodeType');
const parentNodeOf = getter(Node.prototype, 'parentNode');
const textContentOf = getter(Node.prototype, 'textContent');
const treeOf = method(Node.prototype, 'getRootNode');
const holdsNode = method(Node.prototype, 'contains');
const comparePosition = method(Node.prototype, 'compareDocumentPosition');
const childrenOf = getter(Element.prototype, 'children');
const childrenOfRoot = getter(DocumentFragment.prototype, 'children');
const markupOf = getter(Element.prototype, 'outerHTML');
const innerMarkupOf = getter(Element.prototype, 'innerHTML');
const shadowRootOf = getter(Element.prototype, 'shadowRoot');
const slotOf = getter(Element.prototype, 'assignedSlot');
const attributeOf = method(Element.prototype, 'getAttribute');
const setAttributeOf = method(Element.prototype, 'setAttribute');
const fits = method(Element.prototype, 'matches');
const closestOf = method(Element.prototype, 'closest');
const queryElement = method(Element.prototype, 'querySelectorAll');
const boundsOf = method(Element.prototype, 'getBoundingClientRect');
const scrollTo = method(Element.prototype, 'scrollIntoView');
const shownTextOf = getter(HTMLElement.prototype, 'innerText');
const sendTo = method(EventTarget.prototype, 'dispatchEvent');
const listenTo = method(EventTarget.prototype, 'addEventListener');
const stopListeningTo = method(EventTarget.prototype, 'removeEventListener');
const clickOn = method(HTMLElement.prototype, 'click');
const focusOn = method(HTMLElement.prototype, 'focus');
const blurFrom = method(HTMLElement.prototype, 'blur');
const submitForm = method(HTMLFormElement.prototype, 'submit');

// A property as text. Elements that are hidden by a form's own member, and attributes that are no
// property of their element, are read as written in the markup.
function textOf(element, property) {
  const value = element[property];
  if (typeof value === 'string') {
    return value;
  }
  return attributeOf(element, property) || '';
}

// Keeps every character in its place: one letter would become two.
function fold(text) {
  return text.replaceAll('\u0130', 'i').toLowerCase();
}

// Case-insensitive; an empty needle is found in every text but an empty one.
function contains(text, needle) {
  return text !== '' && fold(text).includes(fold(needle));
}

// Without the white space that a page does not show.
function collapse(text) {
  return text.replace(/\s+/g, ' ').trim();
}

// ---- Where searches look ----

// The shadow roots of a document as last found: looking for them takes time.
let knownRoots = null;

// All elements but the many of a table or a form: these can have no shadow root that is open.
const MAY_HAVE_ROOT = ':not(tr,td,th,table,tbody,thead,input,select,option,textarea,button,label,' +
  'form,a,b,i,br,ul,ol,li,img,script,style,link,meta)';

// Called when a page may have changed.
function forgetShadowRoots() {
  knownRoots = null;
}

// The open shadow roots of a document, each before those inside it.
function shadowRootsOf(document_) {
  if (knownRoots && knownRoots.document_ === document_) {
    return knownRoots.roots;
  }
  const roots = [];
  const gather = (elements) => {
    for (const element of elements) {
      const root = shadowRootOf(element);
      if (root) {
        roots.push(root);
        gather(queryRoot(root, MAY_HAVE_ROOT));
      }
    }
  };
  gather(queryDocument(document_, MAY_HAVE_ROOT));
  knownRoots = {document_, roots};
  return roots;
}

// A scope is a function from a selector to the elements that fit it, in source order. Searches look
// through all of the document first, and then through all of its open shadow roots.
function inDocument(document_) {
  return (selector) => queryDocument(document_, selector);
}

function inShadow(document_) {
  return (selector) => shadowRootsOf(document_).flatMap(
    (root) => Array.from(queryRoot(root, selector)));
}

function scopesOf(document_) {
  return [inDocument(document_), inShadow(document_)];
}

function all(document_, selector) {
  return scopesOf(document_).flatMap((scope) => Array.from(scope(selector)));
}

// The first result of `search` in one of the scopes.
function firstIn(document_, search) {
  for (const scope of scopesOf(document_)) {
    const found = search(scope);
    if (found) {
      return found;
    }
  }
  return null;
}

// ---- Values and handlers ----

function byIdOrName(document_, name) {
  return elementWithId(document_, name) || elementsNamed(document_, name)[0] || null;
}

// The value that the markup gives the top document's element of this name.
function probedValue(name) {
  const element = name === '' ? null : byIdOrName(document, name);
  return (element && attributeOf(element, 'value')) || '';
}

function valueOf(element, name) {
  return textOf(element, 'value') || probedValue(name);
}

// A function from an element to the source of its handler: as the page's own world sees it, or as
// it is written in the markup if that world has none. The two worlds exchange events of the
// window's performance object: listeners of a document are gone when the page rewrites itself.
function handlerReader(document_, handler) {
  const sources = new Map();
  const elements = all(document_, '*');
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

// ---- What is shown ----

// An element of a frame belongs to other classes than those of this window: kinds of nodes are
// distinguished apart by number.
function isElement(node) {
  return node !== null && nodeTypeOf(node) === Node.ELEMENT_NODE;
}

function isShadowRoot(node) {
  return node !== null && nodeTypeOf(node) === Node.DOCUMENT_FRAGMENT_NODE;
}

// The element around another one as the page is rendered: through slots and out of shadow roots.
function parentOf(element) {
  const parent = slotOf(element) || parentNodeOf(element);
  if (isShadowRoot(parent)) {
    return hostOf(parent);
  }
  return isElement(parent) ? parent : null;
}

function isVisible(element) {
  const bounds = boundsOf(element);
  return bounds.width > 0 && bounds.height > 0 && getComputedStyle(element).visibility === 'visible';
}

// How far above the page an element lies: each dialog around it counts more than any z-index.
function layerOf(element) {
  const DIALOG = 'dialog[open],[role=dialog],[role=alertdialog],[aria-modal=true]';
  const DIALOG_HEIGHT = 1e10;
  let dialogs = 0;
  let highest = 0;
  for (let around = element; around; around = parentOf(around)) {
    if (fits(around, DIALOG)) {
      dialogs += DIALOG_HEIGHT;
    }
    const style = getComputedStyle(around);
    if (style.position === 'fixed' || style.position === 'absolute') {
      highest = Math.max(highest, Number(style.zIndex) || 0);
    }
  }
  return dialogs + highest;
}
