// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The rows of tables, lists and blocks.

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

// How many lines of the table the rule at line `r` takes. A box or button that spans several lines,
// which have different boxes each, belongs to all of them. Beside words, or boxes that are the same in
// each line, it belongs to a group of rules.
function linesOfRule(rows, grid, r) {
  const spans = (cell) => cell && spanOf(cell, 'rowSpan') > 1 &&
    queryElement(cell, CONTROL + ',button').length > 0;
  const shared = Array.from(grid[r]).find((cell) =>
    spans(cell) && (r === 0 || !grid[r - 1].includes(cell)));
  const shapes = shapeOf(rows[r]);
  let lines = 1;
  while (shared && r + lines < grid.length && grid[r + lines].includes(shared)) {
    const shape = shapeOf(rows[r + lines]);
    if (shape.length === 0 || shape.some((box) => shapes.includes(box))) {
      return 1;
    }
    shapes.push(...shape);
    lines += 1;
  }
  return lines;
}

// The names of the columns below `head`, a table of nothing but headings: where rows scroll below a
// fixed head, the two are different tables. The head may have one column more, above the scroll bar.
function namesFrom(head, cells) {
  const isBelow = (cell, column) => {
    const {left, right} = head.cells[column].getBoundingClientRect();
    const own = cell.getBoundingClientRect();
    const middle = (own.left + own.right) / 2;
    return left < middle && middle < right;
  };
  const more = head === null ? -1 : head.cells.length - cells.length;
  return (more === 0 || more === 1) && cells.every(isBelow) ? head.names : [];
}

// Whether the list makes further rows when it is scrolled: there is room for them in an element that
// scrolls these rows and nothing else.
function hasRowsToCome(rows) {
  const LEVELS = 6;
  const filled = rows.filter((row) => collapse(textContentOf(row)) !== '');
  if (filled.length === 0) {
    return false;
  }
  const own = new Set(rows);
  let inner = filled.at(-1);
  // Those above may be a head that does not scroll.
  const scrolled = filled.filter((row) => parentOf(row) === parentOf(inner));
  for (let level = 0; level < LEVELS && parentOf(inner); level += 1) {
    const outer = parentOf(inner);
    const isOther = (other) => other !== inner && !own.has(other) && isShown(other) &&
      collapse(textContentOf(other)) !== '';
    if (Array.from(childrenOf(outer)).some(isOther)) {
      return false;
    }
    if (outer.scrollHeight > outer.clientHeight + 1 &&
        /auto|scroll/.test(getComputedStyle(outer).overflowY)) {
      const height = scrolled.at(-1).getBoundingClientRect().bottom -
        scrolled[0].getBoundingClientRect().top;
      return outer.scrollHeight - height > 2 * height / scrolled.length;
    }
    inner = outer;
  }
  return false;
}

// Returns its headings, if the table has nothing else, as the `head` of the following one.
function readTable(rows, found, head) {
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
  const own = Array.from(headings, (heading) => heading || '');
  const isHead = first > 0 && first === rows.length && isShown(rows[first - 1]);
  const named = own.length > 0 || first === rows.length ? own : namesFrom(head, grid[first]);
  const table = closestOf(rows[0], 'table,[role=table],[role=grid]') || rows[0];
  const title = first > 0 && new Set(grid[0]).size < 2 ? wordsOf(grid[0][0] || table)
    : titleOf(table);
  const shown = rows.slice(first).filter(isShown);
  found.isPartial = found.isPartial || hasRowsToCome(rows.filter(isShown));
  const forms = new Set(shown.filter((row) => isEntryForm(row, shown)));
  // Above nothing but boxes, headings are those of a form.
  const hasRules = shown.length > forms.size;
  if (named.length > 0 && (hasRules || (shown.length === 0 && rows.slice(0, first).some(isShown)))) {
    found.headings.push(named);
  }
  for (let r = first, lines = 1; r < grid.length; r += lines) {
    lines = linesOfRule(rows, grid, r);
    if (!isShown(rows[r])) {
      continue;
    }
    const cells = [];
    const read = new Set();
    for (const line of grid.slice(r, r + lines)) {
      line.forEach((cell, column) => {
        if (!read.has(cell)) {
          read.add(cell);
          cells.push(...cellsOf(cell, named[column] || ''));
        }
      });
    }
    addRow(found, rows[r], cells, {title, form: forms.has(rows[r])});
  }
  return isHead ? {names: own, cells: grid[first - 1]} : null;
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
