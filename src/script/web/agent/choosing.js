// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Chooses options of lists: of selects, and of drop-downs that a page builds of other elements.

function optionsOf(element) {
  const list = fieldOf(element);
  return list.localName === 'select' ? Array.from(list.options) : [];
}

// Selects the option that `pick` finds in the list at a place, as a person would. What the page
// redraws without the choice is chosen once more; a list that the page resets by itself has had its
// effect.
function choose(place, pick) {
  const ROUNDS = 2;
  const select = (list) => {
    const option = list && pick(list);
    attempt(() => {
      option.selected = true;
    });
    return Boolean(option);
  };
  const isChosen = (list) => {
    const option = list && pick(list);
    return Boolean(option) && option.selected;
  };
  for (let round = 0; round < ROUNDS; round += 1) {
    let chosen = current(place);
    if (!select(chosen)) {
      return FAILED;
    }
    announce(fieldOf(chosen), 'input');
    const redrawn = current(place);
    if (redrawn && redrawn !== chosen) {
      chosen = redrawn;
      if (!isChosen(chosen)) {
        select(chosen);
      }
    }
    announce(fieldOf(chosen), 'change');
    const last = current(place);
    if (last && (last === chosen || isChosen(last))) {
      return keep(() => current(place), (now) => !isChosen(now), () => choose(place, pick));
    }
  }
  return select(current(place)) ? SUCCESSFUL : FAILED;
}

// How an option's text or value is compared with what is looked for.
function comboMatcher(text, secondText, partial) {
  const MIN_DIGITS = 8;
  const plain = text.replaceAll('-', '');
  const starred = (wanted, candidate) =>
    candidate === wanted || candidate === '*' + wanted || candidate === wanted + '*';
  return (candidate, exact) => {
    // A network address: written with hyphens, with colons, or with neither.
    if (plain.length >= MIN_DIGITS && candidate.length >= MIN_DIGITS &&
        (contains(candidate.replaceAll('-', ''), plain) ||
         contains(candidate.replaceAll(':', ''), plain))) {
      return true;
    }
    const same = exact
      ? (wanted) => starred(wanted, candidate)
      : (wanted) => starred(fold(wanted), fold(candidate));
    return same(text) || (secondText !== '' && same(secondText)) ||
      (partial && (contains(candidate, text) || contains(candidate, secondText)));
  };
}

// ---- Drop-downs made of other elements ----

const OPENER = '[role=combobox],[aria-haspopup],button,[tabindex]';
const ITEM = '[role=option],[role=menuitem],[role=menuitemradio],[role=menuitemcheckbox],' +
  '[role=treeitem],li';

// Items that were visible before their list was opened, such as the text of the present choice, and
// how many of their list were visible with them.
let seenBefore = new WeakMap();

function visibleAround(item) {
  return Array.from(childrenOf(parentOf(item) || item)).filter(isVisible).length;
}

// Some lists show the present choice in the closed state, and all of their items in the open one.
function isFresh(item) {
  return !seenBefore.has(item) || visibleAround(item) > seenBefore.get(item);
}

// The visible elements that may be items of a list with this text, and the kind of each: made for
// it, or merely showing it.
function itemsNamed(document_, text) {
  const wanted = collapse(text);
  const ranks = new Map();
  const take = (element, kind) => {
    const value = attributeOf(element, 'data-value') || '';
    const like = likeness([collapse(textContentOf(element)), value], wanted);
    if (like > 0 && !ranks.has(element) && isVisible(element)) {
      ranks.set(element, {kind, likeness: like});
    }
  };
  all(document_, ITEM).forEach((element) => take(element, 0));
  elementsWithText(document_, wanted).forEach((element) => take(element, 1));
  return ranks;
}

// What a person clicks to open a list: the element itself, or, where that is hidden, what the page
// shows in its stead.
function openerOf(element) {
  const LEVELS = 3;
  let around = element;
  for (let i = 0; i < LEVELS && around; i += 1) {
    if (isVisible(around)) {
      return around === element ? element
        : Array.from(queryElement(around, OPENER)).find(isVisible) || around;
    }
    around = parentOf(around);
  }
  return element;
}

// The element that scrolls the items of the topmost open list.
function openListOf(document_) {
  const items = all(document_, ITEM).filter((item) => isFresh(item) && isVisible(item));
  const scrollers = new Set();
  for (const start of items.concat(all(document_, '[role=listbox],[role=menu]'))) {
    for (let around = start; around; around = parentOf(around)) {
      if (around.scrollHeight > around.clientHeight + 1 &&
          /auto|scroll/.test(getComputedStyle(around).overflowY)) {
        scrollers.add(around);
        break;
      }
    }
  }
  return bestOf(scrollers, () => ({kind: 0, likeness: 0}));
}

// The lists that have been looked through since a list was opened, each from the top and a part at a
// time.
let rewound = new WeakSet();
let scrolls = 0;

// A list may have no end: it is given up at some time.
function scrollOn(list) {
  const PART = 0.8;
  const MAX_SCROLLS = 100;
  scrolls += 1;
  if (scrolls > MAX_SCROLLS) {
    return FAILED;
  }
  const before = list.scrollTop;
  const moveTo = (top) => attempt(() => list.scrollTo({top, behavior: 'instant'}));
  if (!rewound.has(list)) {
    rewound.add(list);
    moveTo(0);
  }
  if (list.scrollTop === before) {
    moveTo(before + list.clientHeight * PART);
  }
  // A view that is not rendered sends none of its own.
  attempt(() => sendTo(list, new Event('scroll')));
  return list.scrollTop === before ? FAILED : SCROLLED;
}

Object.assign(operations, {
  SelectOptionByText(document_, text) {
    const search = (scope) => {
      for (const same of [(a) => a === text, (a) => fold(a) === fold(text)]) {
        const pick = (element) => optionsOf(element).find((option) => same(option.text)) || null;
        const element = Array.from(scope('select')).find(pick);
        if (element) {
          return {pick, search: () => Array.from(scope('select')).find(pick) || null};
        }
      }
      return null;
    };
    const found = firstIn(document_, search);
    return found ? choose(placeOf(found.search), found.pick) : FAILED;
  },

  ComboHasOption(document_, comboName, text) {
    for (const scope of scopesOf(document_)) {
      for (const same of [(a, b) => a === b, (a, b) => fold(a) === fold(b)]) {
        const found = Array.from(scope(comboName === '' ? '*' : '[name]')).some((element) =>
          same(textOf(element, 'name'), comboName) &&
          optionsOf(element).some((option) => same(option.text, text) ||
            same(option.text, '*' + text) || same(option.text, text + '*')));
        if (found) {
          return true;
        }
      }
    }
    return false;
  },

  SetComboValue(document_, name, text, secondText, partial) {
    const matches = comboMatcher(text, secondText, partial);
    const pick = (element, exact) => optionsOf(element).find((option) =>
      matches(option.text, exact) || matches(option.value, exact)) || null;
    const place = firstIn(document_, (scope) => find(scope, ['name', 'id'], name, pick));
    return place ? choose(place, (list) => pick(list, place.exact)) : FAILED;
  },

  // Chooses an option of a select by its text or value. A drop-down of another kind is opened:
  // ChooseOpenItem() is to follow when the page is idle.
  ChooseItem(document_, name, text) {
    const place = findByAnyName(document_, name, isVisible) ||
      findByAnyName(document_, name, null);
    if (!place) {
      return FAILED;
    }
    const wanted = collapse(text);
    const pick = (list) => [2, 1].map((like) => optionsOf(list).find((option) =>
      likeness([collapse(option.text), option.value], wanted) >= like)).find(Boolean) || null;
    const isSelect = (element) => fieldOf(element).localName === 'select';
    const inner = placeOf(() => queryElement(current(place), 'select')[0] || null);
    const list = [place, inner].find((each) => each && isSelect(each.element));
    if (list) {
      return pick(list.element) ? choose(list, pick) : FAILED;
    }
    const opener = placeOf(() => place.element && openerOf(current(place)));
    rewound = new WeakSet();
    scrolls = 0;
    seenBefore = new WeakMap(Array.from(itemsNamed(document_, text).keys(),
      (item) => [item, visibleAround(item)]));
    if (attributeOf(opener.element, 'aria-expanded') !== 'true') {
      press(opener);
    }
    return OPENED;
  },

  // Clicks an item of the open list. A long list may hold only the items that it shows: it is
  // scrolled on, and asked again when the page is idle.
  ChooseOpenItem(document_, text) {
    const named = itemsNamed(document_, text);
    const shown = Array.from(named.keys());
    const fresh = shown.filter(isFresh);
    const candidates = fresh.length > 0 ? fresh
      : shown.filter((element) => named.get(element).kind === 0);
    const item = bestOf(candidates, (element) => named.get(element));
    if (item) {
      press({element: item, again: () => null});
      return SUCCESSFUL;
    }
    const list = openListOf(document_);
    return list ? scrollOn(list) : FAILED;
  },
});
