// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reads pages, and gives names to boxes that have none.

function nameBoxes(document_, kinds, qualifies) {
  let named = false;
  for (const [type, mark] of kinds) {
    let counter = 1;
    for (const element of all(document_, '*')) {
      if (textOf(element, 'name') === '' && fold(textOf(element, 'type')) === type &&
          qualifies(element, type)) {
        attempt(() => {
          element.name = mark + counter;
        });
        counter += 1;
        named = true;
      }
    }
  }
  return named ? SUCCESSFUL : FAILED;
}

const NAMED_KINDS = [['text', 'QYL_Text'], ['checkbox', 'QYL_CheckBox'],
                     ['select-one', 'QYL_DropDownBox']];

// The markup below the root element, one text per child: the markup of any element below the root
// is part of one of them. Shadow roots are no part of the markup around them.
function markup(document_) {
  return Array.from(childrenOf(rootOf(document_)), markupOf);
}

function shadowChildren(document_) {
  return shadowRootsOf(document_).flatMap((root) => Array.from(childrenOfRoot(root)));
}

// Walks the elements below `element` in source order, leaving out those without `before` in their
// markup.
function extract(element, before, after) {
  const pieces = markupOf(element).split(before);
  if (pieces.length < 2) {
    return '';
  }
  const found = pieces[1].split(after)[0];
  return found !== '' ? found : extractFromAny(childrenOf(element), before, after);
}

function extractFromAny(elements, before, after) {
  for (const element of elements) {
    const found = extract(element, before, after);
    if (found !== '') {
      return found;
    }
  }
  return '';
}

// A number for every document and one for every change of its markup.
const states = new WeakMap();
let documentsSeen = 0;

function markupState(document_) {
  const body = bodyOf(document_);
  if (!body || !body.hasChildNodes()) {
    return '';
  }
  let state = states.get(document_);
  if (!state) {
    documentsSeen += 1;
    state = {number: documentsSeen, changes: 0, observer: null};
    state.observer = new MutationObserver((records) => {
      state.changes += records.length;
    });
    state.observer.observe(document_, {
      attributes: true, characterData: true, childList: true, subtree: true,
    });
    states.set(document_, state);
  }
  state.changes += state.observer.takeRecords().length;
  return state.number + '.' + state.changes;
}

// ---- Names near to one that was not found ----

// How many letters must be put in, left out or replaced to get from one text to the other; more
// than `limit` is not counted to its end.
function distance(from, to, limit) {
  if (Math.abs(from.length - to.length) > limit) {
    return limit + 1;
  }
  let row = Array.from({length: to.length + 1}, (_, i) => i);
  for (let i = 1; i <= from.length; i += 1) {
    const next = [i];
    for (let j = 1; j <= to.length; j += 1) {
      const replaced = row[j - 1] + (from[i - 1] === to[j - 1] ? 0 : 1);
      next.push(Math.min(row[j] + 1, next[j - 1] + 1, replaced));
    }
    if (Math.min(...next) > limit) {
      return limit + 1;
    }
    row = next;
  }
  return row[to.length];
}

// The names by which the page's fields and buttons can be addressed.
function namesOf(document_) {
  const LONGEST = 60;
  const names = new Set();
  for (const element of all(document_, 'input,' + FIELD + ',' + CLICKABLE)) {
    names.add(textOf(element, 'name')).add(textOf(element, 'id'));
    if (fits(element, CLICKABLE)) {
      captionsOf(element).forEach((caption) => names.add(caption));
    }
  }
  return Array.from(names).filter((name) => name !== '' && name.length <= LONGEST);
}

function nearestNames(document_, wanted) {
  const MOST = 5;
  const SHARE = 2;  // half of the letters may differ
  const MIN_PART = 3;
  const text = fold(wanted);
  const limit = Math.max(1, Math.floor(text.length / SHARE));
  const rank = (name) => {
    const [shorter, longer] = name.length < text.length ? [name, text] : [text, name];
    const isPart = shorter.length >= MIN_PART && longer.includes(shorter);
    return isPart ? 1 : distance(text, name, limit);
  };
  return namesOf(document_)
    .map((name) => ({name, rank: rank(fold(name))}))
    .filter((each) => each.rank <= limit)
    .sort((a, b) => a.rank - b.rank)
    .slice(0, MOST)
    .map((each) => each.name);
}

Object.assign(operations, {
  GetElementValue(document_, name) {
    for (const scope of scopesOf(document_)) {
      for (const property of ['name', 'id']) {
        const place = find(scope, [property], name);
        if (place) {
          const field = fieldOf(place.element);
          return valueOf(field, textOf(place.element, property));
        }
      }
    }
    return '';
  },

  PageContainsWords(document_, words) {
    const holds = (text) => contains(text, words);
    return markup(document_).some(holds) || shadowChildren(document_).map(markupOf).some(holds);
  },

  ExtractBetweenMarkers(document_, before, after) {
    if (before === '' || after === '') {
      return '';
    }
    return extractFromAny(childrenOf(rootOf(document_)), before, after) ||
      extractFromAny(shadowChildren(document_), before, after);
  },

  NameNamelessBoxes(document_) {
    return nameBoxes(document_, NAMED_KINDS, () => true);
  },

  NameOnchangeBoxes(document_) {
    const onchange = handlerReader(document_, 'onchange');
    return nameBoxes(document_, NAMED_KINDS,
                     (element, type) => type !== 'text' || onchange(element) !== '');
  },

  NamePasswordBoxes(document_) {
    return nameBoxes(document_, [['password', 'QYL_Password']], () => true);
  },

  // Whether a field or button of this name can be seen.
  ElementIsThere(document_, name) {
    return findByAnyName(document_, name, isVisible) !== null;
  },

  NearestNames(document_, name) {
    return nearestNames(document_, name);
  },

  // Whether a person can read the text on the page.
  PageShowsText(document_, text) {
    const wanted = collapse(text);
    const shows = (element) => contains(collapse(shownTextOf(element)), wanted);
    const body = bodyOf(document_);
    return (body !== null && shows(body)) ||
      shadowChildren(document_).some((element) => attempt(() => shows(element)));
  },

  ReadMarkupState(document_) {
    return markupState(document_);
  },
});
