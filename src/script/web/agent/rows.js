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

function isTick(control) {
  return fits(control, 'input[type=checkbox i],input[type=radio i]');
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
    if (!isElement(node) || fits(node, 'script,style,template,noscript')) {
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
      words += ' ' + (textOf(node, 'alt') || textOf(node, 'title')) + ' ';
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
  const ticks = [];
  if (fits(place, CONTROL) && isTick(place)) {
    ticks.push(place);
  }
  ticks.push(...Array.from(queryElement(place, CONTROL)).filter(isTick));
  const cells = ticks.map((tick) => ({
    // A box alone in a column is what the column says; of several, each is what its label says.
    heading: ticks.length === 1 && heading !== '' ? heading : captionOfTick(tick),
    text: '',
    checked: tick.checked === true,
  }));
  const words = wordsOf(place);
  if (words !== '' || cells.length === 0) {
    cells.unshift({heading, text: words});
  }
  return cells;
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
  if (named.length > 0) {
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
    addRow(found, cells);
  }
}

function addRow(found, cells) {
  if (cells.every((cell) => cell.text === '' && cell.checked === undefined)) {
    return;
  }
  if (found.rows.length >= MOST_ROWS) {
    found.isPartial = true;
    return;
  }
  found.rows.push(cells.slice(0, MOST_CELLS));
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

// Items of lists, and options of a list box: the whole rule in one text.
function readLists(document_, found, styled) {
  for (const item of all(document_, 'li,[role=listitem],[role=option]')) {
    if (!styled.has(item) && isShown(item) && queryElement(item, 'li,tr').length === 0) {
      addRow(found, Array.from(childrenOf(item)).length > 1
        ? Array.from(childrenOf(item)).flatMap((child) => cellsOf(child, ''))
        : cellsOf(item, ''));
    }
  }
  for (const list of all(document_, 'select')) {
    if ((list.size > 1 || list.multiple) && isShown(list)) {
      for (const option of queryElement(list, 'option')) {
        addRow(found, [{heading: '', text: collapse(textContentOf(option)).slice(0, LONGEST_CELL)}]);
      }
    }
  }
}

// Blocks of one kind side by side are the rows of pages that are made without tables.
function readBlocks(document_, found, styled) {
  const isLike = (block, other) => other.tagName === block.tagName &&
    attributeOf(other, 'class') === attributeOf(block, 'class');
  for (const block of all(document_, 'div[class],section,article,fieldset')) {
    const parts = Array.from(childrenOf(block));
    const parent = parentOf(block);
    const isRow = parts.length > 1 && closestOf(block, 'tr,li') === null && parent !== null &&
      !styled.has(block) &&
      Array.from(childrenOf(parent)).some((other) => other !== block && isLike(block, other));
    if (isRow && isShown(block) && queryElement(block, 'tr,li,fieldset').length === 0) {
      addRow(found, parts.flatMap((part) => cellsOf(part, attributeOf(part, 'data-title') ||
        attributeOf(part, 'data-label') || '')));
    }
  }
}

// What leads to the following page of a table.
const NEXT_PAGE = /^(?:next(?: page)?|>|\u203a|\u00bb)$/i;

function nextPageControl(document_) {
  const isDisabled = (control) => control.disabled === true ||
    [control, parentOf(control)].some((element) => element !== null &&
      (attributeOf(element, 'aria-disabled') === 'true' ||
        /\bdisabled\b/i.test(attributeOf(element, 'class') || '')));
  return all(document_, 'a[href],button,input[type=button i],[role=button]').find((control) =>
    isShown(control) && !isDisabled(control) &&
    NEXT_PAGE.test(collapse(textContentOf(control) || textOf(control, 'value')))) || null;
}

// Only a link that fetches a page is followed: whatever else a control does may change the router.
function isPlainLink(control) {
  return fits(control, 'a[href]:not([onclick]):not([target])') &&
    /^https?:$/.test(control.protocol) && !/^#/.test(attributeOf(control, 'href'));
}

Object.assign(operations, {
  // Answers {rows, headings, isPartial, hasNext}.
  ReadRows(document_) {
    const found = {rows: [], headings: [], isPartial: false, hasNext: false};
    for (const each of documentsBelow(document_)) {
      const styled = new Set(styledRows(each));
      for (const rows of tablesOf(each, styled)) {
        readTable(rows, found);
      }
      readLists(each, found, styled);
      readBlocks(each, found, styled);
      const next = nextPageControl(each);
      found.hasNext = found.hasNext || (next !== null && isPlainLink(next));
      found.isPartial = found.isPartial || (next !== null && !isPlainLink(next));
    }
    return found;
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
