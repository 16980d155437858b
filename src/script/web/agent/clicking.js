// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Clicks buttons and links. What no name, value, handler or address finds is looked for by its
// caption.

function addressOf(link) {
  return String(link.href).trim();
}

function findLink(document_, part) {
  const fitting = (link) => contains(addressOf(link), part);
  return Array.from(linksOf(document_)).find(fitting) ||
    inShadow(document_)('a[href],area[href]').find(fitting) || null;
}

function pressFound(place) {
  forgetKept();
  press(place);
  return SUCCESSFUL;
}

Object.assign(operations, {
  ClickLinkByHref(document_, part) {
    const link = placeOf(() => findLink(document_, part));
    if (link) {
      const href = addressOf(link.element);
      press(link);
      return href;
    }
    const place = findByCaption(document_, part, null);
    return place ? pressFound(place) : FAILED_LINK;
  },

  FindLinkByHref(document_, part) {
    const link = findLink(document_, part);
    return link ? addressOf(link) : '';
  },

  ClickByOnclick(document_, part) {
    const place = placeOf(() => {
      const onclick = handlerReader(document_, 'onclick');
      return all(document_, '*').find((candidate) => contains(onclick(candidate), part)) || null;
    }) || findByCaption(document_, part, null);
    return place ? pressFound(place) : FAILED;
  },

  ClickButtonByOnclick(document_, name, part) {
    const onclick = handlerReader(document_, 'onclick');
    const calls = (candidate) => contains(onclick(candidate), part);
    const place =
      firstIn(document_, (scope) => find(scope, ['name', 'value', 'id'], name, calls)) ||
      findByCaption(document_, name, calls);
    return place ? pressFound(place) : FAILED;
  },

  ClickButton(document_, name) {
    const search = (scope) => find(scope, ['name', 'value', 'id'], name);
    const place = search(inDocument(document_)) || findDirectly(document_, name) ||
      search(inShadow(document_)) || findByCaption(document_, name, null);
    return place ? pressFound(place) : FAILED;
  },
});
