// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reads pages, and names their nameless boxes.

function nameBoxes(document_, qualifies) {
  let named = false;
  for (const [type, mark] of [['text', 'QYL_Text'], ['checkbox', 'QYL_CheckBox'],
                              ['select-one', 'QYL_DropDownBox']]) {
    let counter = 1;
    for (const element of all(document_)) {
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

// The markup below the root element, one text per child: what any element below the root holds
// is in one of them.
function markup(document_) {
  return Array.from(childrenOf(rootOf(document_)), markupOf);
}

// Walks the elements below `element` in source order, leaving out those that do not hold
// `before`.
function extract(element, before, after) {
  const pieces = markupOf(element).split(before);
  if (pieces.length < 2) {
    return '';
  }
  const found = pieces[1].split(after)[0];
  if (found !== '') {
    return found;
  }
  for (const child of childrenOf(element)) {
    const inner = extract(child, before, after);
    if (inner !== '') {
      return inner;
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

Object.assign(operations, {
  GetElementValue(document_, name) {
    for (const property of ['name', 'id']) {
      const element = find(document_, [property], name);
      if (element) {
        return valueOf(element, textOf(element, property));
      }
    }
    return '';
  },

  PageContainsWords(document_, words) {
    return markup(document_).some((text) => contains(text, words));
  },

  ExtractBetweenMarkers(document_, before, after) {
    if (before === '' || after === '') {
      return '';
    }
    for (const child of childrenOf(rootOf(document_))) {
      const found = extract(child, before, after);
      if (found !== '') {
        return found;
      }
    }
    return '';
  },

  NameNamelessBoxes(document_) {
    return nameBoxes(document_, () => true);
  },

  NameOnchangeBoxes(document_) {
    const onchange = handlerReader(document_, 'onchange');
    return nameBoxes(document_, (element, type) => type !== 'text' || onchange(element) !== '');
  },

  ReadMarkupState(document_) {
    return markupState(document_);
  },
});
