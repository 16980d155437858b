// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Writes into boxes, checks them, and clicks.

// A step that fails is skipped: the page has the last word on its elements.
function attempt(step) {
  try {
    step();
  } catch (error) {
    // Nothing to be told: the outcome is the same as for a page that ignores the step.
  }
}

function click(element) {
  try {
    clickOn(element);
  } catch (error) {
    // No HTML element: a drawing, for example.
    attempt(() => sendTo(element, new MouseEvent('click', {bubbles: true, cancelable: true})));
  }
}

function focus(element) {
  attempt(() => focusOn(element));
}

function announce(element, event) {
  attempt(() => sendTo(element, new Event(event, {bubbles: true})));
}

// As typing would: pages that keep their fields in a model of their own hear of it.
function write(element, value) {
  attempt(() => {
    element.value = value;
  });
  announce(element, 'input');
}

function check(element, checked) {
  click(element);
  attempt(() => {
    element.checked = checked;
  });
}

function checkDirectly(element) {
  attempt(() => {
    element.checked = true;
  });
  click(element);
}

function setValue(document_, name, value, onlyIfEmpty, number) {
  const isEmpty = (element) => valueOf(element, textOf(element, 'name')) === '';
  const element = find(document_, ['name', 'id'], name, onlyIfEmpty ? isEmpty : null, number);
  if (element) {
    focus(element);
    write(element, value);
    return SUCCESSFUL;
  }
  const direct = findDirectly(document_, name);
  if (!direct || (onlyIfEmpty && !isEmpty(direct))) {
    return FAILED;
  }
  attempt(() => setAttributeOf(direct, 'value', value));
  write(direct, value);
  return SUCCESSFUL;
}

Object.assign(operations, {
  SetElementValue(document_, name, value, onlyIfEmpty) {
    return setValue(document_, name, value, onlyIfEmpty, 0);
  },

  SetSecondElementValue(document_, name, value, onlyIfEmpty) {
    return setValue(document_, name, value, onlyIfEmpty, 1);
  },

  SetCheckbox(document_, name, checked) {
    const element = find(document_, ['name', 'id', 'value'], name);
    if (element) {
      check(element, checked);
      return SUCCESSFUL;
    }
    const direct = findDirectly(document_, name);
    if (!direct) {
      return FAILED;
    }
    checkDirectly(direct);
    return SUCCESSFUL;
  },

  SetCheckboxByPageText(document_, text, span, startMarker, endMarker, checked) {
    const body = bodyOf(document_);
    const html = body ? innerMarkupOf(body) : '';
    const position = fold(html).indexOf(fold(text));
    if (html === '' || position < 0) {
      return FAILED;
    }
    const left = html.slice(0, position + 1);
    // A span that cannot be cuts nothing off.
    const cut = span < 0 ? left : left.slice(Math.max(0, left.length - span));
    const behindStart = startMarker === '' ? '' : cut.split(startMarker)[1] || '';
    const name = endMarker === '' ? behindStart : behindStart.split(endMarker)[0];
    return operations.SetCheckbox(document_, name, checked);
  },

  SetRadioButton(document_, name, value) {
    const element = find(document_, ['name', 'id'], name, (candidate, exact) => {
      const own = textOf(candidate, 'value');
      return exact ? own === value : fold(own) === fold(value);
    });
    if (element) {
      check(element, true);
      return SUCCESSFUL;
    }
    const direct = findDirectly(document_, name);
    if (!direct) {
      return FAILED;
    }
    checkDirectly(direct);
    return SUCCESSFUL;
  },

  SetSecondRadioButton(document_, name) {
    const element = find(document_, ['name', 'id'], name, null, 1);
    if (!element) {
      return FAILED;
    }
    check(element, true);
    return SUCCESSFUL;
  },

  FocusElementByPosition(document_, position, onlyIfEmpty) {
    const element = elementsOf(document_, '*')[position];
    if (!element || (onlyIfEmpty && valueOf(element, textOf(element, 'name')) !== '')) {
      return FAILED;
    }
    focus(element);
    return SUCCESSFUL;
  },

  SubmitFormByNumber(document_, number) {
    attempt(() => submitForm(formsOf(document_)[number]));
    return SUCCESSFUL;
  },
});
