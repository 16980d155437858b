// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The rows of the whole page, and work on one of them.

// What leads to the following page of a table. Many pagers show an arrow without a text.
const NEXT_PAGE = /^(?:(?:go to )?next(?: page)?|>|\u203a|\u00bb|\u4e0b\u4e00?\u9875)$/i;
const NEXT_MARK = /(?:^|[-_\s])next(?:$|[-_\s])/i;

// A wizard has a button "Next" as well: one for the pages of a table has a way back beside it, or
// says so by its name.
const PREVIOUS_PAGE = /^(?:prev(?:ious)?(?: page)?|<|\u2039|\u00ab)$/i;
const PAGER = /paginat|paging|pager|page[-_]?(?:nav|num|item|link|bar|btn|button|next)|\bpage\b/i;

function markOf(element) {
  return `${attributeOf(element, 'class') || ''} ${attributeOf(element, 'id') || ''}`;
}

function isOfPager(control) {
  for (let element = control, level = 0; element !== null && level < 4;
    element = parentOf(element), ++level) {
    if (PAGER.test(markOf(element)) ||
      Array.from(queryElement(element, 'a,button,input,[role=button],span,li')).some((other) =>
        captionsOf(other).some((caption) => PREVIOUS_PAGE.test(caption)))) {
      return true;
    }
  }
  return false;
}

function leadsToNextPage(control) {
  const captions = captionsOf(control).filter((caption) => NEXT_PAGE.test(caption));
  const isSure = captions.some((caption) => /page|\u9875/i.test(caption)) ||
    (captions.length > 0 && fits(control, 'a[href]'));
  return isSure || ((captions.length > 0 || NEXT_MARK.test(markOf(control))) && isOfPager(control));
}

function nextPageControl(document_) {
  const isDisabled = (control) => control.disabled === true ||
    [control, parentOf(control)].some((element) => element !== null &&
      (attributeOf(element, 'aria-disabled') === 'true' ||
        /\bdisabled\b/i.test(attributeOf(element, 'class') || '')));
  const CONTROLS = 'a,button,input[type=button i],[role=button],[role=link],li[title],li[class*=next]';
  return all(document_, CONTROLS).find((control) =>
    leadsToNextPage(control) && isShown(control) && !isDisabled(control)) || null;
}

// Long tables often have only those rows that can be seen, and say how many there are.
function isCutShort(table) {
  const total = Number(attributeOf(table, 'aria-rowcount'));
  const rows = Array.from(queryElement(table, 'tr,[role=row]'));
  const numbers = new Set(rows.map((row) => attributeOf(row, 'aria-rowindex')));
  return total > (numbers.size > 1 ? numbers.size : rows.length);
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
    let head = null;
    for (const rows of tablesOf(each, styled)) {
      head = readTable(rows, found, head);
    }
    readLists(each, found, styled);
    readDefinitions(each, found);
    readBlocks(each, found, styled);
    found.isPartial = found.isPartial || all(each, '[aria-rowcount]').some(isCutShort);
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
