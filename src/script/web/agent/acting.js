// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Performs user actions on elements. Each event may make the page redraw the element: so it is
// looked up again after every event, and an operation is successful only if the element that is in
// the page at the end is as wanted.

// A step that fails is skipped: the page may have refused the change.
function attempt(step) {
  try {
    return step();
  } catch (error) {
    // The outcome is the same as for a page that ignores the step.
    return undefined;
  }
}

function announce(element, type) {
  attempt(() => sendTo(element, new Event(type, {bubbles: true, composed: type === 'input'})));
}

// A component is worked through the one element inside it that a person uses.
function innerOf(element, selector) {
  const root = shadowRootOf(element);
  const inner = root ? queryRoot(root, selector) : [];
  return inner.length === 1 ? innerOf(inner[0], selector) : element;
}

function fieldOf(element) {
  return element && innerOf(element, 'input,textarea,select');
}

// Moves the focus. In a window that is not active the engine moves it without events, and a page
// that listens for them would not work there.
function focus(element) {
  const tree = treeOf(element);
  const activeElement = () => isShadowRoot(tree) ? activeElementInRoot(tree) : activeElementOf(tree);
  const before = attempt(activeElement);
  let heard = false;
  const hear = () => {
    heard = true;
  };
  listenTo(element, 'focus', hear);
  attempt(() => focusOn(element, {preventScroll: true}));
  stopListeningTo(element, 'focus', hear);
  if (heard || before === element || attempt(activeElement) !== element) {
    return;
  }
  const send = (target, type, bubbles) =>
    attempt(() => sendTo(target, new FocusEvent(type, {bubbles, composed: true})));
  if (before && before !== bodyOf(documentOf(element))) {
    send(before, 'blur', false);
    send(before, 'focusout', true);
  }
  send(element, 'focus', false);
  send(element, 'focusin', true);
}

const FOCUSABLE = 'a[href],area[href],button,input,select,textarea,summary,[tabindex],' +
  '[contenteditable]';

// What pressing the button of a mouse does to the focus.
function focusByMouse(element) {
  let around = element;
  while (around && !(fits(around, FOCUSABLE) && !fits(around, ':disabled'))) {
    around = parentOf(around);
  }
  if (around) {
    focus(around);
    return;
  }
  const active = activeElementOf(documentOf(element));
  if (active) {
    attempt(() => blurFrom(active));
  }
}

const DISABLED = 'button:disabled,input:disabled,select:disabled,textarea:disabled';

// A click like a person's. A page may take the element away in the middle of it; then the rest has
// no target, as for a person.
function press(place) {
  const CLICK = 'button,a[href],input,[role=button]';
  const target = () => {
    const element = current(place);
    return element && innerOf(element, CLICK);
  };
  const first = target();
  if (!first || closestOf(first, DISABLED)) {
    return;
  }
  attempt(() => scrollTo(first, {block: 'nearest', inline: 'nearest', behavior: 'instant'}));
  const bounds = boundsOf(first);
  const details = {
    bubbles: true, cancelable: true, composed: true, view: windowOf(documentOf(first)), detail: 1,
    clientX: bounds.x + bounds.width / 2, clientY: bounds.y + bounds.height / 2,
    pointerId: 1, pointerType: 'mouse', isPrimary: true,
  };
  // False where the page prevented what follows from the event.
  const send = (Kind, type, buttons) => {
    const element = target();
    return element &&
      attempt(() => sendTo(element, new Kind(type, {...details, buttons}))) !== false;
  };
  const hasMouse = send(PointerEvent, 'pointerdown', 1);
  if (!hasMouse || send(MouseEvent, 'mousedown', 1)) {
    const element = target();
    if (element) {
      focusByMouse(element);
    }
  }
  send(PointerEvent, 'pointerup', 0);
  if (hasMouse) {
    send(MouseEvent, 'mouseup', 0);
  }
  const last = target();
  if (!last) {
    return;
  }
  try {
    clickOn(last);
  } catch (error) {
    // No HTML element: a drawing, for example.
    send(MouseEvent, 'click', 0);
  }
}

// ---- Text ----

// Of the page's own state: what a page puts over the property of its element is not seen here.
function write(element, value) {
  attempt(() => {
    element.value = value;
  });
}

// Whether an element has the value, in the form that the page may have given it: in capitals, or
// with other separators.
function hasValue(element, value) {
  const own = textOf(element, 'value');
  const plain = (text) => fold(text).replace(/[^\p{L}\p{N}]+/gu, ' ').trim();
  return own === value || (plain(value) !== '' && plain(own) === plain(value));
}

// Leaving a box announces a change; other elements are not left.
const TYPED_INTO = 'select,textarea,input:not([type=checkbox i],[type=radio i],[type=hidden i],' +
  '[type=button i],[type=submit i],[type=reset i],[type=image i])';

function announceChange(element) {
  if (fits(element, TYPED_INTO)) {
    announce(element, 'change');
  }
}

// Writes as typing would, and as leaving the box would; `before` is the text that was there. What
// the page redraws without the value is written once more; what it refuses in the same element stays
// refused.
function fill(place, value, before) {
  const ROUNDS = 2;
  const box = () => fieldOf(current(place));
  const isLost = (now) => before !== value && textOf(now, 'value') === before;
  for (let round = 0; round < ROUNDS; round += 1) {
    let written = box();
    if (!written) {
      return FAILED;
    }
    write(written, value);
    announce(written, 'input');
    const redrawn = box();
    if (redrawn && redrawn !== written) {
      written = redrawn;
      if (!hasValue(written, value)) {
        write(written, value);
      }
    }
    if (before !== value) {
      announceChange(written);
    }
    const last = box();
    if (last && hasValue(last, value)) {
      return keep(box, isLost, () => fill(place, value, before));
    }
    if (last === written) {
      return FAILED;
    }
  }
  const last = box();
  if (last) {
    write(last, value);
  }
  return last && hasValue(last, value) ? SUCCESSFUL : FAILED;
}

function setValue(document_, name, value, onlyIfEmpty, number) {
  const isEmpty = (element) => valueOf(element, textOf(element, 'name')) === '';
  const test = onlyIfEmpty ? isEmpty : null;
  const textIn = (place) => textOf(fieldOf(place.element), 'value');
  const type = (place) => {
    const before = textIn(place);
    focus(fieldOf(place.element));
    return fill(place, value, before);
  };
  const place = find(inDocument(document_), ['name', 'id'], name, test, number);
  if (place) {
    return type(place);
  }
  const direct = findDirectly(document_, name);
  if (direct && (!onlyIfEmpty || isEmpty(direct.element))) {
    const before = textIn(direct);
    attempt(() => setAttributeOf(direct.element, 'value', value));
    return fill(direct, value, before);
  }
  const inner = find(inShadow(document_), ['name', 'id'], name, test, number);
  if (inner) {
    return type(inner);
  }
  // Some pages give their fields other names each time: then the label says which one it is.
  const isBox = (element) => fits(fieldOf(element), TYPED_INTO) && (!test || test(element));
  const labelled = number === 0 ? findByLabel(document_, name, isBox) : null;
  return labelled ? type(labelled) : FAILED;
}

// ---- Boxes that are checked ----

const TICK = 'input[type=checkbox i],input[type=radio i]';

// A box that is not as wanted after a click is clicked again: so the page's handler has run and has
// seen the state that stays. Only a page that takes its clicks back has the state set for it.
function check(place, wanted) {
  const CLICKS = 2;
  const box = () => fieldOf(current(place));
  const first = box();
  if (!fits(first, TICK)) {
    // Components may redraw themselves only after the call, so that a second click would come too
    // early.
    if (attributeOf(first, 'aria-checked') !== String(wanted)) {
      press(place);
    }
    return SUCCESSFUL;
  }
  const wasAsWanted = first.checked === wanted;
  for (let i = 0; i < CLICKS; i += 1) {
    press(place);
    const clicked = box();
    if (!clicked) {
      return FAILED;
    }
    if (clicked.checked === wanted) {
      const isLost = (now) => !wasAsWanted && now.checked !== wanted;
      return keep(box, isLost, () => check(place, wanted));
    }
  }
  const last = box();
  attempt(() => {
    last.checked = wanted;
  });
  return last.checked === wanted ? SUCCESSFUL : FAILED;
}

function checkDirectly(place) {
  attempt(() => {
    place.element.checked = true;
  });
  press(place);
  return SUCCESSFUL;
}

function checkNamed(document_, properties, name, test, wanted) {
  const place = find(inDocument(document_), properties, name, test);
  if (place) {
    return check(place, wanted);
  }
  const direct = findDirectly(document_, name);
  if (direct) {
    return checkDirectly(direct);
  }
  const inner = find(inShadow(document_), properties, name, test) ||
    findByLabel(document_, name, (element) => fits(fieldOf(element), TICK) && (!test || test(element)));
  return inner ? check(inner, wanted) : FAILED;
}

Object.assign(operations, {
  SetElementValue(document_, name, value, onlyIfEmpty) {
    return setValue(document_, name, value, onlyIfEmpty, 0);
  },

  SetSecondElementValue(document_, name, value, onlyIfEmpty) {
    return setValue(document_, name, value, onlyIfEmpty, 1);
  },

  SetCheckbox(document_, name, checked) {
    return checkNamed(document_, ['name', 'id', 'value'], name, null, checked);
  },

  SetCheckboxByPageText(document_, text, span, startMarker, endMarker, checked) {
    const body = bodyOf(document_);
    const html = body ? innerMarkupOf(body) : '';
    const position = fold(html).indexOf(fold(text));
    if (html === '' || position < 0) {
      return FAILED;
    }
    const left = html.slice(0, position + 1);
    // An invalid span cuts nothing off.
    const cut = span < 0 ? left : left.slice(Math.max(0, left.length - span));
    const afterStart = startMarker === '' ? '' : cut.split(startMarker)[1] || '';
    const name = endMarker === '' ? afterStart : afterStart.split(endMarker)[0];
    return operations.SetCheckbox(document_, name, checked);
  },

  SetRadioButton(document_, name, value) {
    const hasOwnValue = (candidate, exact) => {
      const own = textOf(candidate, 'value');
      return exact ? own === value : fold(own) === fold(value);
    };
    return checkNamed(document_, ['name', 'id'], name, hasOwnValue, true);
  },

  SetSecondRadioButton(document_, name) {
    const place = firstIn(document_, (scope) => find(scope, ['name', 'id'], name, null, 1));
    return place ? check(place, true) : FAILED;
  },

  FocusElementByPosition(document_, position, onlyIfEmpty) {
    const elements = elementsOf(document_, '*');
    const element = elements[position] ||
      inShadow(document_)('*')[position - elements.length];
    if (!element || (onlyIfEmpty && valueOf(element, textOf(element, 'name')) !== '')) {
      return FAILED;
    }
    focus(element);
    return SUCCESSFUL;
  },

  // An empty name leaves the focus where it is.
  FocusField(document_, name) {
    const place = name === '' ? null :
      findByAnyName(document_, name, isVisible) || findByAnyName(document_, name, null);
    if (place) {
      focus(fieldOf(place.element));
    }
    return place || name === '' ? SUCCESSFUL : FAILED;
  },

  SubmitFormByNumber(document_, number) {
    const forms = formsOf(document_);
    forgetKept();
    attempt(() => submitForm(forms[number] || inShadow(document_)('form')[number - forms.length]));
    return SUCCESSFUL;
  },
});
