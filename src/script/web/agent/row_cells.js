// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reads the rows of tables, lists and forms as a person sees them, in every frame: what
// core/page_rows.h describes. Nothing on the page is changed.

const MOST_ROWS = 5000;
const MOST_CELLS = 40;
const LONGEST_CELL = 300;
const MOST_STYLED = 20000;

// The documents of this window and of all frames inside that scripts of this host can reach.
function documentsBelow(document_) {
  const documents = [document_];
  const gather = (window_) => {
    for (let i = 0; i < window_.length; i += 1) {
      attempt(() => {
        documents.push(window_[i].document);
        gather(window_[i]);
      });
    }
  };
  gather(windowOf(document_));
  return documents;
}

function isShown(element) {
  return attempt(() => isVisible(element)) === true;
}

const CONTROL = 'input:not([type=hidden i]),select,textarea';

const TICKED_BOX = 'input[type=checkbox i],input[type=radio i],[role=checkbox],[role=switch]';

function isTicked(control) {
  return fits(control, 'input') ? control.checked === true
    : attributeOf(control, 'aria-checked') === 'true';
}

// Pictures for "on" and "off" without a text.
function wordOfImage(image) {
  const file = /(?:^|[/_-])(on|off|enabled?|disabled?|active|inactive)\.\w{3,4}$/i.exec(
    attributeOf(image, 'src') || '');
  return textOf(image, 'alt') || textOf(image, 'title') || (file ? file[1] : '');
}

// The words that an element shows, with the values of its boxes where they are. Check boxes are
// cells of their own. Of radio buttons, only the caption of the chosen one is there.
function wordsOf(element) {
  let words = '';
  const gather = (node) => {
    if (words.length > LONGEST_CELL) {
      return;
    }
    if (nodeTypeOf(node) === Node.TEXT_NODE) {
      words += textContentOf(node);
      return;
    }
    if (!isElement(node) || fits(node, 'script,style,template,noscript') || isUnchosenLabel(node) ||
        (node !== element && getComputedStyle(node).display === 'none')) {
      return;
    }
    if (fits(node, 'select')) {
      const chosen = node.selectedOptions ? Array.from(node.selectedOptions) : [];
      words += ' ' + chosen.map((option) => textContentOf(option)).join(', ') + ' ';
    } else if (fits(node, 'input,textarea')) {
      const holdsText = fits(node, 'textarea,input:not([type]),input[type=text i],' +
        'input[type=number i],input[type=tel i],input[type=search i],input[type=url i]');
      words += holdsText ? ' ' + textOf(node, 'value') + ' ' : ' ';
    } else if (fits(node, 'img')) {
      words += ' ' + wordOfImage(node) + ' ';
    } else {
      const root = shadowRootOf(node);
      let before = null;
      for (const child of (root || node).childNodes) {
        // The text after a button is its caption where it has no label.
        if (nodeTypeOf(child) !== Node.TEXT_NODE || !isUnchosen(before) || hasLabel(before)) {
          gather(child);
        }
        before = nodeTypeOf(child) === Node.TEXT_NODE ? before : child;
      }
      words += ' ';
    }
  };
  gather(element);
  return collapse(words).slice(0, LONGEST_CELL);
}

const RADIO = 'input[type=radio i],[role=radio]';

function isUnchosen(node) {
  return node !== null && isElement(node) && fits(node, RADIO) && !isTicked(node);
}

function hasLabel(control) {
  return Boolean(control.labels) && control.labels.length > 0;
}

// Its caption is among the words of its place.
function hasCaption(radio) {
  const after = radio.nextSibling;
  return hasLabel(radio) || (after !== null && nodeTypeOf(after) === Node.TEXT_NODE &&
    collapse(textContentOf(after)) !== '');
}

function isUnchosenLabel(node) {
  return fits(node, 'label') && Boolean(node.control) && isUnchosen(node.control);
}

// What is the heading of a check box outside of a column: its label, or its own name.
function captionOfTick(control) {
  const labels = control.labels ? Array.from(control.labels) : [];
  return collapse(labels.map((label) => textContentOf(label)).join(' ')) ||
    textOf(control, 'title') || textOf(control, 'name') || textOf(control, 'id');
}

// The caption of boxes that are all empty says nothing of the rule: "UDP" beside no port. Words with
// a number are no caption: an address beside a box for a note.
function isEmptyBox(place, words) {
  const boxes = Array.from(queryElement(place, CONTROL));
  return boxes.length > 0 && !/\d/.test(words) &&
    boxes.every((box) => fits(box, TYPED) && textOf(box, 'value') === '');
}

// The cells that one place of a row makes: its words, and each of its check boxes. What is not
// chosen of several radio buttons says nothing.
function cellsOf(place, heading) {
  const boxes = [...(fits(place, TICKED_BOX) ? [place] : []), ...queryElement(place, TICKED_BOX)];
  const ticks = boxes.filter((box) => !fits(box, RADIO) || (isTicked(box) && !hasCaption(box)));
  const cells = ticks.map((tick) => ({
    // A box alone in a column is what the column says; of several, each is what its label says.
    heading: boxes.length === 1 && heading !== '' ? heading : captionOfTick(tick),
    text: '',
    checked: isTicked(tick),
  }));
  const shown = wordsOf(place);
  const words = isEmptyBox(place, shown) ? '' : shown;
  if (words !== '' || cells.length === 0) {
    cells.unshift({heading, text: words});
  }
  return cells;
}

// ---- Boxes for a new rule ----

// A form often still has what was typed last. Its boxes are no rule of the router; those of a table
// in which every rule is a row of boxes are.
const ADDS = new RegExp('^(?:add|new|create|insert|hinzuf\u00fcgen|neu|anlegen|ajouter|nouveau|' +
  'cr\u00e9er|a\u00f1adir|agregar|nuevo|crear|\u6dfb\u52a0|\u65b0\u589e|\u65b0\u5efa|\\+)(?![a-z])', 'i');
const TYPED = 'textarea,input:not([type]),input[type=text i],input[type=number i],' +
  'input[type=tel i],input[type=search i]';

// The kinds and names of the boxes; the numbers in names are those of the rows.
function shapeOf(element) {
  return Array.from(queryElement(element, CONTROL)).map((control) => control.tagName +
    (attributeOf(control, 'type') || '') + ':' +
    (textOf(control, 'name') || textOf(control, 'id')).replace(/\d+/g, '#'));
}

// `peers` are the rows, items or blocks beside this one, with itself.
function isEntryForm(element, peers) {
  const FEWEST = 3;
  const typed = Array.from(queryElement(element, TYPED)).filter((box) =>
    box.disabled !== true && box.readOnly !== true && /\d/.test(textOf(box, 'value')));
  if (typed.length === 0) {
    return false;
  }
  const adds = Array.from(queryElement(element, 'a,button,input[type=submit i],' +
    'input[type=button i],[role=button]')).some((control) =>
    captionsOf(control).some((caption) => ADDS.test(caption)));
  const shape = shapeOf(element);
  const key = shape.join();
  return adds || shape.length < FEWEST ||
    peers.filter((peer) => shapeOf(peer).join() === key).length < 2;
}

// The heading above a table or list: its caption, or the nearest heading before it.
function titleOf(element) {
  const HEADING = 'h1,h2,h3,h4,h5,h6,legend,caption,[role=heading]';
  const MOST_UP = 4;
  const MOST_BACK = 4;
  const own = queryElement(element, 'caption')[0];
  if (own) {
    return collapse(textContentOf(own)).slice(0, LONGEST_CELL);
  }
  let around = element;
  for (let up = 0; around && up < MOST_UP; up += 1) {
    let before = around.previousElementSibling;
    for (let back = 0; before && back < MOST_BACK; back += 1) {
      const heading = fits(before, HEADING) ? before : queryElement(before, HEADING)[0];
      if (heading) {
        return collapse(textContentOf(heading)).slice(0, LONGEST_CELL);
      }
      if (fits(before, 'table')) {
        return '';
      }
      before = before.previousElementSibling;
    }
    around = parentOf(around);
  }
  return '';
}

