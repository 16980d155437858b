// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The page agent. One copy lives in every document, frames included, from before the page's first
// script runs. It lives in a script world of its own: it shares the page's elements, and nothing
// that a page does to the built-ins of its scripts reaches it.
//
// The top document's agent answers the questions of PageOperations, one call each; the page cannot
// change under a call. An answer is {ok: true, value: ..., state: ...}, with the state of the markup
// behind the call, and whether the page has work in hand. `beacon` marks what is said to the host
// through the console, `ask` and `reply` are the names under which it speaks with the handler
// reader (handler_reader.js). All three are secret from the page.
function installPageAgent(beacon, ask, reply) {
  'use strict';

  const SUCCESSFUL = 'successful';
  const FAILED = 'failed';
  const FAILED_LINK = 'failed_link';

  // ---- What the host is told ----------------------------------------------------------------

  function tell(text) {
    console.debug(beacon + text);
  }

  const isTop = window === window.top;
  tell('new ' + (isTop ? 1 : 0) + ' ' + location.href);
  addEventListener('load', () => tell('load ' + (isTop ? 1 : 0) + ' ' + location.href));
  addEventListener('keyup', (event) => event.isTrusted && tell('key'), true);

  // ---- What names on the page cannot hide ---------------------------------------------------

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

  // ---- Reading elements ---------------------------------------------------------------------

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

  // ---- Finding elements ---------------------------------------------------------------------

  // Looks for one element by the given properties, each first to the letter and then ignoring
  // case; a later search counts only where the earlier ones took nothing. Within a search the
  // element with the given number (0: the first) of those that match and pass the test is taken.
  function find(document_, properties, wanted, test, number) {
    if (!test && !number && wanted !== '' && properties[0] === 'name') {
      const quick = elementsNamed(document_, wanted)[0];
      if (quick) {
        return quick;
      }
    }
    const folded = fold(wanted);
    const elements = all(document_);
    for (const property of properties) {
      for (const exact of [true, false]) {
        let seen = 0;
        for (const element of elements) {
          const text = textOf(element, property);
          const matches = exact ? text === wanted : fold(text) === folded;
          if (matches && (!test || test(element, exact)) && seen++ === (number || 0)) {
            return element;
          }
        }
      }
    }
    return null;
  }

  // The last resort: what the document itself knows under the name.
  function findDirectly(document_, name) {
    const element = byIdOrName(document_, name);
    if (!element) {
      return null;
    }
    const own = attributeOf(element, 'id') || attributeOf(element, 'name') || '';
    return own === name || fold(own) === fold(name) ? element : null;
  }

  // ---- Acting on elements -------------------------------------------------------------------

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

  function choose(element, option) {
    attempt(() => {
      option.selected = true;
    });
    announce(element, 'input');
    announce(element, 'change');
  }

  function optionsOf(element) {
    return element.localName === 'select' ? Array.from(element.options) : [];
  }

  // ---- Operations ---------------------------------------------------------------------------

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

  function addressOf(link) {
    return String(link.href).trim();
  }

  function findLink(document_, part) {
    return Array.from(linksOf(document_)).find((link) => contains(addressOf(link), part)) || null;
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

  const operations = {
    SelectOptionByText(document_, text) {
      for (const same of [(a) => a === text, (a) => fold(a) === fold(text)]) {
        for (const element of all(document_)) {
          const option = optionsOf(element).find((candidate) => same(candidate.text));
          if (option) {
            choose(element, option);
            return SUCCESSFUL;
          }
        }
      }
      return FAILED;
    },

    ClickLinkByHref(document_, part) {
      const link = findLink(document_, part);
      if (!link) {
        return FAILED_LINK;
      }
      const href = addressOf(link);
      click(link);
      return href;
    },

    FindLinkByHref(document_, part) {
      const link = findLink(document_, part);
      return link ? addressOf(link) : '';
    },

    ClickByOnclick(document_, part) {
      const onclick = handlerReader(document_, 'onclick');
      const element = all(document_).find((candidate) => contains(onclick(candidate), part));
      if (!element) {
        return FAILED;
      }
      click(element);
      return SUCCESSFUL;
    },

    ClickButtonByOnclick(document_, name, part) {
      const onclick = handlerReader(document_, 'onclick');
      const element = find(document_, ['name', 'value', 'id'], name,
                           (candidate) => contains(onclick(candidate), part));
      if (!element) {
        return FAILED;
      }
      click(element);
      return SUCCESSFUL;
    },

    ClickButton(document_, name) {
      const element = find(document_, ['name', 'value', 'id'], name) ||
        findDirectly(document_, name);
      if (!element) {
        return FAILED;
      }
      click(element);
      return SUCCESSFUL;
    },

    SubmitFormByNumber(document_, number) {
      attempt(() => submitForm(formsOf(document_)[number]));
      return SUCCESSFUL;
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

    ComboHasOption(document_, comboName, text) {
      for (const same of [(a, b) => a === b, (a, b) => fold(a) === fold(b)]) {
        const found = all(document_).some((element) => same(textOf(element, 'name'), comboName) &&
          optionsOf(element).some((option) => same(option.text, text) ||
            same(option.text, '*' + text) || same(option.text, text + '*')));
        if (found) {
          return true;
        }
      }
      return false;
    },

    SetElementValue(document_, name, value, onlyIfEmpty) {
      return setValue(document_, name, value, onlyIfEmpty, 0);
    },

    SetSecondElementValue(document_, name, value, onlyIfEmpty) {
      return setValue(document_, name, value, onlyIfEmpty, 1);
    },

    GetElementValue(document_, name) {
      for (const property of ['name', 'id']) {
        const element = find(document_, [property], name);
        if (element) {
          return valueOf(element, textOf(element, property));
        }
      }
      return '';
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

    SetComboValue(document_, name, text, secondText, partial) {
      const matches = comboMatcher(text, secondText, partial);
      const elements = all(document_);
      for (const property of ['name', 'id']) {
        for (const exact of [true, false]) {
          for (const element of elements) {
            const own = textOf(element, property);
            if (exact ? own !== name : fold(own) !== fold(name)) {
              continue;
            }
            const option = optionsOf(element).find((candidate) =>
              matches(candidate.text, exact) || matches(candidate.value, exact));
            if (option) {
              choose(element, option);
              return SUCCESSFUL;
            }
          }
        }
      }
      return FAILED;
    },

    FocusElementByPosition(document_, position, onlyIfEmpty) {
      const element = elementsOf(document_, '*')[position];
      if (!element || (onlyIfEmpty && valueOf(element, textOf(element, 'name')) !== '')) {
        return FAILED;
      }
      focus(element);
      return SUCCESSFUL;
    },

    ReadMarkupState(document_) {
      return markupState(document_);
    },
  };

  // ---- The door -----------------------------------------------------------------------------

  // Operations behind which a page may have something to do.
  const ACTS = /^(Click|Submit|Set|Select|Focus)/;

  // The document of the last call: one that cannot be had leaves it in use.
  let working = document;

  function chooseDocument(frame) {
    try {
      working = frame === 0 ? document : window.frames[frame].document || working;
    } catch (error) {
      // A frame that is not there, or of another host.
    }
    return working;
  }

  // What is not there may be on its way: then all that the page has pending counts. A negative
  // answer to a question is good when nothing that may change it is pending.
  function hasPendingWork(operation, value) {
    const isNegative = operation !== 'ReadMarkupState' &&
      (value === FAILED || value === FAILED_LINK || value === false || value === '');
    const what = !isNegative ? 'count' : ACTS.test(operation) ? 'follow' : 'adopt';
    return window.quaylineHasPendingWork(what);
  }

  window.quaylineCall = function(operation, args, frame) {
    try {
      if (ACTS.test(operation)) {
        window.quaylineArm();
      }
      const value = operations[operation](chooseDocument(frame), ...args);
      return {ok: true, value, state: markupState(working), working: hasPendingWork(operation, value)};
    } catch (error) {
      return {ok: false, value: String(error)};
    }
  };
}
