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
// cells of their own.
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
    if (!isElement(node) || fits(node, 'script,style,template,noscript') ||
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
      for (const child of (root || node).childNodes) {
        gather(child);
      }
      words += ' ';
    }
  };
  gather(element);
  return collapse(words).slice(0, LONGEST_CELL);
}

// What stands for the heading of a check box outside of a column: its label, or its own name.
function captionOfTick(control) {
  const labels = control.labels ? Array.from(control.labels) : [];
  return collapse(labels.map((label) => textContentOf(label)).join(' ')) ||
    textOf(control, 'title') || textOf(control, 'name') || textOf(control, 'id');
}

// The cells that one place of a row makes: its words, and each of its check boxes.
function cellsOf(place, heading) {
  const ticks = [...(fits(place, TICKED_BOX) ? [place] : []), ...queryElement(place, TICKED_BOX)];
  const cells = ticks.map((tick) => ({
    // A box alone in a column is what the column says; of several, each is what its label says.
    heading: ticks.length === 1 && heading !== '' ? heading : captionOfTick(tick),
    text: '',
    checked: isTicked(tick),
  }));
  const words = wordsOf(place);
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

// ---- Tables ----

function spanOf(cell, property) {
  const MOST = 50;
  return Math.min(MOST, Math.max(1, Number(cell[property]) || 1));
}

// The cells of a table's rows by column; a cell that spans several is in each.
function gridOf(rows) {
  const grid = rows.map(() => []);
  rows.forEach((row, r) => {
    let column = 0;
    for (const cell of Array.from(childrenOf(row)).slice(0, MOST_CELLS)) {
      while (grid[r][column]) {
        column += 1;
      }
      for (let down = 0; down < spanOf(cell, 'rowSpan') && r + down < rows.length; down += 1) {
        for (let right = 0; right < spanOf(cell, 'colSpan'); right += 1) {
          grid[r + down][column + right] = cell;
        }
      }
      column += spanOf(cell, 'colSpan');
    }
  });
  return grid;
}

// A row of words without digits and without boxes, or of heading cells, above the others.
function isHeading(cells) {
  const own = cells.filter((cell) => cell);
  if (own.length < 2) {
    return false;
  }
  if (own.every((cell) => fits(cell, 'th,[role=columnheader]'))) {
    return true;
  }
  return own.every((cell) => queryElement(cell, CONTROL + ',button,a[href]').length === 0 &&
    !/\d/.test(wordsOf(cell))) && own.some((cell) => wordsOf(cell) !== '');
}

function readTable(rows, found) {
  const grid = gridOf(rows);
  let first = 0;
  // A title above the headings is one cell that spans the table.
  while (first < grid.length && new Set(grid[first]).size < 2) {
    first += 1;
  }
  const headings = [];
  while (first < grid.length && isHeading(grid[first])) {
    grid[first].forEach((cell, column) => {
      const words = wordsOf(cell);
      if (!(headings[column] || '').endsWith(words)) {
        headings[column] = collapse((headings[column] || '') + ' ' + words);
      }
    });
    first += 1;
    // Words alone are headings in one row; heading cells may be in several.
    if (queryElement(rows[first - 1], 'th,[role=columnheader]').length === 0) {
      break;
    }
  }
  const named = Array.from(headings, (heading) => heading || '');
  const table = closestOf(rows[0], 'table,[role=table],[role=grid]') || rows[0];
  const title = first > 0 && new Set(grid[0]).size < 2 ? wordsOf(grid[0][0] || table)
    : titleOf(table);
  const shown = rows.slice(first).filter(isShown);
  const forms = new Set(shown.filter((row) => isEntryForm(row, shown)));
  // Above nothing but boxes, headings are those of a form.
  if (named.length > 0 && (shown.length === 0 || shown.length > forms.size)) {
    found.headings.push(named);
  }
  for (let r = first; r < grid.length; r += 1) {
    if (!isShown(rows[r])) {
      continue;
    }
    const cells = [];
    let before = null;
    grid[r].forEach((cell, column) => {
      if (cell !== before) {
        cells.push(...cellsOf(cell, named[column] || ''));
      }
      before = cell;
    });
    addRow(found, rows[r], cells, {title, form: forms.has(rows[r])});
  }
}

function addRow(found, element, cells, {title = '', form = false} = {}) {
  if (cells.every((cell) => cell.text === '' && cell.checked === undefined)) {
    return;
  }
  if (found.rows.length >= MOST_ROWS) {
    found.isPartial = true;
    return;
  }
  found.rows.push({cells: cells.slice(0, MOST_CELLS), title, form});
  found.places.push(element);
}

// Rows of tables that are made of other elements by their style.
function styledRows(document_) {
  const isRow = (element) => attempt(() => getComputedStyle(element).display) === 'table-row' &&
    queryElement(element, 'table,tr,li,fieldset').length === 0;
  return all(document_, 'div,li').slice(0, MOST_STYLED).filter(isRow);
}

// The rows of each table that hold no table themselves: many pages are laid out by tables.
function tablesOf(document_, styled) {
  const tables = new Map();
  for (const row of [...all(document_, 'tr,[role=row]'), ...styled]) {
    if (queryElement(row, 'tr,[role=row]').length === 0) {
      const table = (styled.has(row) ? null : closestOf(row, 'table,[role=table],[role=grid]')) ||
        parentOf(row);
      if (!tables.has(table)) {
        tables.set(table, []);
      }
      tables.get(table).push(row);
    }
  }
  return tables.values();
}

// ---- Lists and blocks ----

// The text of a part of a card: "Port: 80", also where the page has label and value in elements.
function cellsOfPart(part) {
  const [label, value, more] = Array.from(childrenOf(part));
  const isPair = value && !more && queryElement(part, TICKED_BOX).length === 0 &&
    collapse(textContentOf(part)) === collapse(textContentOf(label) + ' ' + textContentOf(value));
  return isPair
    ? [{heading: '', text: wordsOf(label).replace(/\s*[:\uff1a]$/, '') + ': ' + wordsOf(value)}]
    : cellsOf(part, '');
}

// Items of lists, and options of a list box: the whole rule in one text.
function readLists(document_, found, styled) {
  for (const item of all(document_, 'li,[role=listitem],[role=option]')) {
    if (!styled.has(item) && isShown(item) && queryElement(item, 'li,tr,dl').length === 0) {
      const cells = Array.from(childrenOf(item)).length > 1
        ? Array.from(childrenOf(item)).flatMap(cellsOfPart) : cellsOf(item, '');
      const list = parentOf(item);
      const peers = list ? Array.from(childrenOf(list)) : [item];
      addRow(found, item, cells, {title: titleOf(list || item), form: isEntryForm(item, peers)});
    }
  }
  for (const list of all(document_, 'select')) {
    if ((list.size > 1 || list.multiple) && isShown(list)) {
      for (const option of queryElement(list, 'option')) {
        const text = collapse(textContentOf(option)).slice(0, LONGEST_CELL);
        addRow(found, option, [{heading: '', text}]);
      }
    }
  }
}

// A list of names and values is one row, or, where its first name comes again, several.
function readDefinitions(document_, found) {
  for (const list of all(document_, 'dl')) {
    if (!isShown(list)) {
      continue;
    }
    const title = titleOf(list);
    const form = isEntryForm(list, [list]);
    let first = '';
    let name = '';
    let cells = [];
    for (const part of queryElement(list, 'dt,dd')) {
      const words = wordsOf(part);
      if (fits(part, 'dt')) {
        if (words === first) {
          addRow(found, list, cells, {title, form});
          cells = [];
        }
        first = first || words;
        name = words.replace(/\s*[:\uff1a]$/, '');
      } else {
        const values = cellsOf(part, '');
        cells.push(...values.map((cell) => cell.checked === undefined
          ? {heading: '', text: name + ': ' + cell.text} : {...cell, heading: name}));
      }
    }
    addRow(found, list, cells, {title, form});
  }
}

// Blocks of one kind side by side are the rows of pages that are made without tables.
function readBlocks(document_, found, styled) {
  const isLike = (block, other) => other.tagName === block.tagName &&
    attributeOf(other, 'class') === attributeOf(block, 'class');
  for (const block of all(document_, 'div[class],section,article,fieldset')) {
    const parts = Array.from(childrenOf(block));
    const parent = parentOf(block);
    const peers = parent === null ? []
      : Array.from(childrenOf(parent)).filter((other) => isLike(block, other));
    const isRow = parts.length > 1 && closestOf(block, 'tr,li,dl,[role=row]') === null &&
      peers.length > 1 && !styled.has(block);
    if (isRow && isShown(block) &&
        queryElement(block, 'tr,li,dl,fieldset,[role=row]').length === 0) {
      const cells = parts.flatMap((part) => {
        const label = attributeOf(part, 'data-title') || attributeOf(part, 'data-label') || '';
        return label === '' ? cellsOfPart(part) : cellsOf(part, label);
      });
      addRow(found, block, cells, {title: titleOf(parent), form: isEntryForm(block, peers)});
    }
  }
}

// What leads to the following page of a table.
const NEXT_PAGE = /^(?:next(?: page)?|>|\u203a|\u00bb)$/i;

// A wizard has a button "Next" as well: one for the pages of a table has a way back beside it, or
// says so by its name.
const PREVIOUS_PAGE = /^(?:prev(?:ious)?(?: page)?|<|\u2039|\u00ab)$/i;
const PAGER = /pag(?:e|er|ing|ination)\b|pagination/i;

function captionOf(control) {
  return collapse(textContentOf(control) || textOf(control, 'value'));
}

function isOfPager(control) {
  for (let element = control, level = 0; element !== null && level < 4;
    element = parentOf(element), ++level) {
    if (PAGER.test(`${attributeOf(element, 'class') || ''} ${attributeOf(element, 'id') || ''}`) ||
      Array.from(queryElement(element, 'a,button,input,[role=button],span,li')).some((other) =>
        PREVIOUS_PAGE.test(captionOf(other)))) {
      return true;
    }
  }
  return false;
}

function nextPageControl(document_) {
  const isDisabled = (control) => control.disabled === true ||
    [control, parentOf(control)].some((element) => element !== null &&
      (attributeOf(element, 'aria-disabled') === 'true' ||
        /\bdisabled\b/i.test(attributeOf(element, 'class') || '')));
  return all(document_, 'a[href],button,input[type=button i],[role=button]').find((control) =>
    isShown(control) && !isDisabled(control) && NEXT_PAGE.test(captionOf(control)) &&
    (fits(control, 'a') || /page/i.test(captionOf(control)) || isOfPager(control))) || null;
}

// Only a link that fetches a page is followed: whatever else a control does may change the router.
function isPlainLink(control) {
  return fits(control, 'a[href]:not([onclick]):not([target])') &&
    /^https?:$/.test(control.protocol) && !/^#/.test(attributeOf(control, 'href'));
}

// The rows of the page, with the element of each in `places`.
function readPage(document_) {
  const found = {rows: [], places: [], headings: [], isPartial: false, hasNext: false};
  for (const each of documentsBelow(document_)) {
    const styled = new Set(styledRows(each));
    for (const rows of tablesOf(each, styled)) {
      readTable(rows, found);
    }
    readLists(each, found, styled);
    readDefinitions(each, found);
    readBlocks(each, found, styled);
    const next = nextPageControl(each);
    found.hasNext = found.hasNext || (next !== null && isPlainLink(next));
    found.isPartial = found.isPartial || (next !== null && !isPlainLink(next));
  }
  return found;
}

// ---- Work on one row ----

const IN_ROW = {
  button: 'button,input[type=submit i],input[type=button i],input[type=image i],[role=button],' +
    'img[onclick],input[onclick]:not([type=checkbox i],[type=radio i])',
  link: 'a[href],a[onclick]',
  checkbox: TICKED_BOX,
};

function cellsAsText(cells) {
  return JSON.stringify(cells.map((cell) => [cell.heading, cell.text, cell.checked ?? null]));
}

// The elements of a kind in a row; an empty name: all. A row that is clicked itself is clicked in its
// first cell.
function elementsInRow(row, kind, name) {
  if (kind === 'row') {
    return [Array.from(childrenOf(row)).find(isShown) || row];
  }
  const isNamed = (element) => name === '' || captionsOf(element).some((caption) =>
    fold(caption) === fold(name)) ||
    ['name', 'id', 'value'].some((property) => textOf(element, property) === name) ||
    ['href', 'onclick', 'src'].some((attribute) =>
      contains(attributeOf(element, attribute) || '', name));
  return Array.from(queryElement(row, IN_ROW[kind] || 'nothing'))
    .filter((element) => isNamed(element) && isShown(element));
}

Object.assign(operations, {
  // Answers {rows, headings, isPartial, hasNext}.
  ReadRows(document_) {
    const {rows, headings, isPartial, hasNext} = readPage(document_);
    return {rows, headings, isPartial, hasNext};
  },

  // Clicks the one element of this kind and name in the row that has these cells. Where it is a
  // check box, no box like it may be checked in another row: a button would count for that one, too.
  ClickInRow(document_, cells, kind, name) {
    const {rows, places} = readPage(document_);
    const wanted = cellsAsText(cells);
    const fitting = new Set(places.filter((place, i) => cellsAsText(rows[i].cells) === wanted));
    const targets = new Set(Array.from(fitting)
      .flatMap((place) => elementsInRow(place, kind, name)));
    if (targets.size !== 1) {
      return FAILED;
    }
    const [target] = targets;
    const place = {element: target, exact: true, again: () => null};
    if (kind !== 'checkbox') {
      return pressFound(place);
    }
    const others = places.filter((other) => !fitting.has(other))
      .flatMap((other) => elementsInRow(other, kind, name));
    return others.some((other) => other !== target && isTicked(other)) ? FAILED
      : check(place, true);
  },

  // Goes to the next page of a table.
  OpenNextPage(document_) {
    for (const each of documentsBelow(document_)) {
      const next = nextPageControl(each);
      if (next !== null && isPlainLink(next)) {
        clickOn(next);
        return SUCCESSFUL;
      }
    }
    return FAILED;
  },
});
