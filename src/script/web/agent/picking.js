// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Describes elements and pages to the author of a script.

const elementAt = method(Document.prototype, 'elementFromPoint');

// What is written beside a field: its label, the cell in front of it, or what it is called for
// screen readers.
function labelOf(field) {
  const label = field.labels && field.labels[0];
  if (label) {
    return labelText(label);
  }
  const cell = closestOf(field, 'td,dd');
  const before = cell && cell.previousElementSibling;
  return before ? collapse(textContentOf(before)).replace(/[\s:*]+$/, '')
    : ['aria-label', 'placeholder', 'title'].map((name) => attributeOf(field, name) || '')
      .find((text) => text !== '') || '';
}

function describe(element) {
  const LONGEST = 80;
  const isButton = fits(element, CLICKABLE);
  const text = isButton ? captionsOf(element).find((caption) => caption !== '') || ''
    : fits(element, FIELD) ? labelOf(element) : collapse(textContentOf(element));
  const document_ = documentOf(element);
  return {
    tag: fold(element.tagName),
    type: fold(textOf(element, 'type')),
    name: textOf(element, 'name'),
    id: textOf(element, 'id'),
    text: text.slice(0, LONGEST),
    value: fold(textOf(element, 'type')) === 'password' ? '' : textOf(element, 'value').slice(0, LONGEST),
    href: attributeOf(element, 'href') || '',
    onclick: (attributeOf(element, 'onclick') || '').slice(0, LONGEST),
    options: fits(element, 'select')
      ? Array.from(element.options, (option) => collapse(textContentOf(option))).slice(0, 20) : [],
    number: Array.from(elementsOf(document_, '*')).indexOf(element),
  };
}

// The files that the document uses, but for those that its styles name.
function partsOf(document_) {
  const USED = 'script[src],link[rel~=stylesheet][href],link[rel~=icon][href],img[src],' +
    'input[type=image][src],[background]';
  return Array.from(queryDocument(document_, USED)).flatMap((part) => {
    const path = ['src', 'href', 'background'].map((name) => attributeOf(part, name)).find(Boolean);
    const address = attempt(() => new URL(path, document_.baseURI).href);
    return address ? [{address, kind: fits(part, 'script') ? 'script' : 'picture'}] : [];
  });
}

// The engine has most of these files already, and answers at once.
function fetchNow(address) {
  const MOST_BYTES = 4 * 1024 * 1024;
  const request = new XMLHttpRequest();
  request.open('GET', address, false);
  request.overrideMimeType('text/plain; charset=x-user-defined');  // each byte is a character
  request.send();
  const text = request.responseText;
  if (request.status !== 200 || text.length > MOST_BYTES) {
    return null;
  }
  const bytes = Array.from(text, (character) => String.fromCharCode(character.charCodeAt(0) & 0xff));
  return {type: request.getResponseHeader('Content-Type') || '', bytes: btoa(bytes.join(''))};
}

function describeForm(form) {
  return {
    action: new URL(attributeOf(form, 'action') || '', documentOf(form).baseURI).pathname,
    method: fold(attributeOf(form, 'method') || 'get'),
    fields: Array.from(queryElement(form, 'input,select,textarea')).slice(0, 500)
      .map((field) => ({...describe(field), options: []})),
  };
}

// What the markup says that the frame shows, and the path of what it does show; an empty path where
// that is the same, or no page of the router.
function describeFrame(frame) {
  const pathOf = (address) => attempt(() => new URL(address, documentOf(frame).baseURI).pathname);
  const src = attributeOf(frame, 'src') || '';
  const shown = attempt(() => frame.contentDocument.URL) || '';
  const path = /^https?:/.test(shown) ? pathOf(shown) : '';
  return {src, path: src !== '' && path === pathOf(src) ? '' : path};
}

Object.assign(operations, {
  // The element that a person means with a place of the window, and the number of its frame: 0 is
  // the page itself, and -1 a frame that no script can name.
  DescribeElementAt(document_, x, y) {
    let within = document;
    let frame = 0;
    let element = elementAt(within, x, y);
    while (element && fits(element, 'iframe,frame')) {
      const inner = attempt(() => element.contentDocument);
      if (!inner) {
        break;
      }
      const bounds = boundsOf(element);
      x -= bounds.left + element.clientLeft;
      y -= bounds.top + element.clientTop;
      frame = within !== document ? -1
        : Array.from(window.frames).indexOf(element.contentWindow) || -1;
      within = inner;
      element = elementAt(within, x, y);
    }
    if (!element) {
      return '';
    }
    const meant = closestOf(element, CLICKABLE + ',' + FIELD + ',[onclick]') || element;
    return {...describe(meant), frame};
  },

  // A file that the page uses, as {type, bytes in base64}; null where it could not be read.
  FetchPart(document_, address) {
    return attempt(() => fetchNow(address)) || null;
  },

  // Each document of the page: its address, path, markup, forms, frames and the files it uses.
  DescribePage() {
    return documentsBelow(document).filter((each) => /^https?:/.test(each.URL)).map((each) => ({
      address: each.URL,
      path: new URL(each.URL).pathname,
      markup: '<!DOCTYPE html>\n' + markupOf(rootOf(each)),
      forms: Array.from(formsOf(each), describeForm),
      frames: Array.from(queryDocument(each, 'frame,iframe'), describeFrame),
      parts: partsOf(each),
    }));
  },
});
