// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Finds elements. A search returns a place: the element found, and `again`, a function that finds
// the element that a page has put there since. `exact` is whether case counted.

// The element at a place now: the one found, or, once the page has redrawn it, its successor. Null
// if there is none.
function current(place) {
  if (!place.element || !isConnected(place.element)) {
    forgetShadowRoots();
    place.element = place.again();
  }
  return place.element;
}

// The place whose element `search` finds now; null if it finds none.
function placeOf(search) {
  const element = search();
  return element && {element, exact: true, again: search};
}

// All elements that can have a property, or, where given, that have exactly this text as their name
// or id. An element without the property has an empty text.
function selectorFor(property, exactText) {
  if (property === 'value') {
    return 'input,button,select,textarea,option,output,param,data,[value]';
  }
  return exactText === '' ? `[${property}]` : `[${property}="${CSS.escape(exactText)}"]`;
}

// Looks for one element by the given properties, each first to the letter and then ignoring case; a
// later search counts only if the earlier ones found nothing. Of the elements that match and pass
// the test, the one with the given number (from 0) is taken.
function find(scope, properties, wanted, test, number = 0) {
  const folded = fold(wanted);
  for (const property of properties) {
    for (const exact of [true, false]) {
      const selector = wanted === '' ? '*' : selectorFor(property, exact ? wanted : '');
      const matches = (element) => {
        const text = textOf(element, property);
        return exact ? text === wanted : fold(text) === folded;
      };
      let position = 0;
      let passed = 0;
      for (const element of scope(selector)) {
        if (!matches(element)) {
          continue;
        }
        if ((!test || test(element, exact)) && passed++ === number) {
          // The test is not asked again: what was done to the element may have changed its answer.
          const at = position;
          const again = () => Array.from(scope(selector)).filter(matches)[at] || null;
          return {element, exact, again};
        }
        position += 1;
      }
    }
  }
  return null;
}

// The last resort within a document: what the document itself knows by the name.
function findDirectly(document_, name) {
  return placeOf(() => {
    const element = byIdOrName(document_, name);
    if (!element) {
      return null;
    }
    const own = attributeOf(element, 'id') || attributeOf(element, 'name') || '';
    return own === name || fold(own) === fold(name) ? element : null;
  });
}

// ---- By what is shown ----

const ROLES = ['button', 'switch', 'option', 'menuitem', 'menuitemradio', 'menuitemcheckbox', 'tab',
               'link', 'checkbox', 'radio'];
const CLICKABLE = 'button,a,summary,input[type=button i],input[type=submit i],' +
  'input[type=reset i],input[type=image i],' + ROLES.map((role) => `[role=${role}]`).join();

// Where libraries keep the title of an element for which they show a hint of their own.
const MOVED_TITLES = ['data-original-title', 'data-bs-original-title'];

// The texts by which a person would call a button or link.
function captionsOf(element) {
  return [textContentOf(element), fits(element, 'input') ? textOf(element, 'value') : '',
          ...['aria-label', 'title', 'alt', ...MOVED_TITLES].map(
            (name) => attributeOf(element, name) || '')]
    .map(collapse);
}

// 2: to the letter, 1: but for case, 0: not.
function likeness(texts, wanted) {
  return texts.includes(wanted) ? 2
    : texts.some((text) => fold(text) === fold(wanted)) ? 1 : 0;
}

// The elements whose own text is `wanted`, case ignored.
function elementsWithText(document_, wanted) {
  const MAX_BLANKS = 1000;
  const found = new Set();
  for (const root of [document_, ...shadowRootsOf(document_)]) {
    const walker = walkTree(document_, root, NodeFilter.SHOW_TEXT);
    while (walker.nextNode()) {
      const text = walker.currentNode.data;
      const blanks = text.length - wanted.length;
      if (blanks >= 0 && blanks <= MAX_BLANKS && fold(collapse(text)) === fold(wanted)) {
        found.add(parentNodeOf(walker.currentNode));
      }
    }
  }
  return Array.from(found).filter(isElement);
}

// Of several elements the one that a person would mean: a visible one rather than a hidden one, one
// of the topmost dialog rather than one beneath it, then the better kind, then the one that fits to
// the letter, then the inner one, then the first. `rankOf` gives {kind, likeness} of an element.
function bestOf(elements, rankOf) {
  let best = null;
  for (const element of elements) {
    const {kind, likeness: like} = rankOf(element);
    const visible = isVisible(element);
    const rank = [visible ? 1 : 0, visible ? layerOf(element) : 0, -kind, like];
    const order = best === null ? 1 : rank.findIndex((value, i) => value !== best.rank[i]);
    const isBetter = best === null ||
      (order < 0 ? holdsNode(best.element, element) : rank[order] > best.rank[order]);
    if (isBetter) {
      best = {element, rank};
    }
  }
  return best && best.element;
}

// A button, link or other element that can be clicked, by its caption: the kinds are elements made
// for it, then elements with a handler, then those with a hand as the mouse pointer.
function findByCaption(document_, wanted, test) {
  const caption = collapse(wanted);
  if (caption === '') {
    return null;
  }
  return placeOf(() => {
    const onclick = handlerReader(document_, 'onclick');
    const ranks = new Map();
    const take = (element, kind) => {
      const like = likeness(captionsOf(element), caption);
      if (like > 0 && !ranks.has(element) && (!test || test(element))) {
        ranks.set(element, {kind, likeness: like});
      }
    };
    all(document_, CLICKABLE).forEach((element) => take(element, 0));
    const withText = elementsWithText(document_, caption);
    // A handler is on the element with the text, or on one around it.
    const around = withText.flatMap((element) => {
      const chain = [];
      for (let outer = element; outer; outer = parentOf(outer)) {
        chain.push(outer);
      }
      return chain;
    });
    new Set(around.concat(all(document_, '[onclick]'))).forEach((element) => {
      if (onclick(element) !== '') {
        take(element, 1);
      }
    });
    withText.filter((element) => getComputedStyle(element).cursor === 'pointer')
      .forEach((element) => take(element, 2));
    return bestOf(ranks.keys(), (element) => ranks.get(element));
  });
}

const FIELD = 'input:not([type=hidden i]),select,textarea,[role=combobox],[role=listbox],' +
  '[role=textbox],[role=spinbutton],[role=switch],[role=checkbox],[aria-haspopup]';

// The text of a label, without the choices of a list inside it.
function labelText(label) {
  const walker = walkTree(documentOf(label), label, NodeFilter.SHOW_TEXT);
  let text = '';
  while (walker.nextNode()) {
    if (!closestOf(parentNodeOf(walker.currentNode), 'select,button,textarea')) {
      text += walker.currentNode.data;
    }
  }
  return collapse(text).replace(/[\s:*]+$/, '');
}

// The field that follows a label, where the markup does not connect the two: the first one, or
// one inside it, as in a drop-down into which a text of one's own can be typed.
function fieldAfter(label, test) {
  const LEVELS = 3;
  let around = parentNodeOf(label);
  for (let i = 0; i < LEVELS && isElement(around); i += 1) {
    let first = null;
    for (const field of queryElement(around, FIELD + ',[tabindex],button')) {
      if (!(comparePosition(label, field) & Node.DOCUMENT_POSITION_FOLLOWING)) {
        continue;
      }
      first = first || field;
      if (!test || (test(field) && holdsNode(first, field))) {
        return field;
      }
      if (!holdsNode(first, field)) {
        break;
      }
    }
    if (first) {
      return first;
    }
    around = parentNodeOf(around);
  }
  return null;
}

// A field by its label, its hint or what it is called for screen readers.
function findByLabel(document_, wanted, test) {
  const text = collapse(wanted).replace(/[\s:*]+$/, '');
  if (text === '') {
    return null;
  }
  const fields = (scope) => {
    const ranks = new Map();
    const take = (field, texts) => {
      const like = likeness(texts, text);
      if (field && like > 0 && (!test || test(field))) {
        ranks.set(field, {kind: 0, likeness: like});
      }
    };
    for (const field of scope(FIELD)) {
      take(field, ['aria-label', 'placeholder', 'title'].map(
        (name) => collapse(attributeOf(field, name) || '')));
    }
    for (const label of scope('label')) {
      take(label.control || fieldAfter(label, test), [labelText(label)]);
    }
    for (const field of scope('[aria-labelledby]')) {
      const ids = collapse(attributeOf(field, 'aria-labelledby')).split(' ');
      const labels = ids.flatMap((id) => Array.from(scope('#' + CSS.escape(id))));
      take(field, [labels.map(labelText).join(' ')]);
    }
    return bestOf(ranks.keys(), (field) => ranks.get(field));
  };
  return placeOf(() => firstIn(document_, fields));
}

// A field or button by whatever it is called.
function findByAnyName(document_, name, test) {
  const search = (scope) => find(scope, ['name', 'id'], name, test);
  return (name !== '' && firstIn(document_, search)) || findByLabel(document_, name, test) ||
    findByCaption(document_, name, test);
}
