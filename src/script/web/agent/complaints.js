// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Finds the texts by which a page says that something is wrong. Colour alone says nothing: an
// element counts by its class, id or role.

const MOST_COMPLAINTS = 10;
const MOST_PLACES = 200;
const COMPLAINT_PARTS = ['err', 'alert', 'warn', 'invalid', 'messag', 'msg', 'fail'];
// Most elements have none of the three attributes, and are passed over at once.
const COMPLAINT_PLACE = ['class', 'id', 'role'].map((attribute) => `[${attribute}]:is(` +
  COMPLAINT_PARTS.map((part) => `[${attribute}*=${part} i]`).join(',') + ')').join(',');
const COMPLAINT_NAME =
  /[Ee]rror|ERROR|[Aa]lert|ALERT|[Ww]arn|[Ii]nvalid|[Mm]essag|[Ff]ail|(?:^|[-_ ])(?:err|msg)|Err|Msg/;

// Names that also stand for good news, and how good news reads.
const GOOD_NAME = /success|\bok\b|[-_]ok\b|\binfo\b|[-_]info\b|\bdone\b/i;
const GOOD_NEWS = /success|saved|applied|updated|stored|added|complete|\bdone\b|\bok\b/i;
const BAD_NEWS = /\bnot?\b|n't|error|fail|invalid|unable|already|conflict|denied|refused/i;

const NOT_A_MESSAGE = 'html,head,body,form,table,thead,tbody,tr,input,select,option,textarea,' +
  'button,a,script,style,template,noscript';

function namesOfPlace(element) {
  return ['class', 'id', 'role'].map((name) => attributeOf(element, name) || '').join(' ');
}

// Whether a person sees the element: it has a size, and nothing around it hides it.
function isSeen(element) {
  const SMALLEST = 2;  // texts for screen readers are in a box of one pixel
  const bounds = boundsOf(element);
  if (!isShown(element) || bounds.width < SMALLEST || bounds.height < SMALLEST ||
      bounds.right <= 0) {
    return false;
  }
  for (let around = element; around; around = parentOf(around)) {
    const style = getComputedStyle(around);
    const size = boundsOf(around);
    if (style.opacity === '0' ||
        (style.overflow !== 'visible' && (size.width < SMALLEST || size.height < SMALLEST))) {
      return false;
    }
  }
  return true;
}

// A menu that leads to messages is no message, and a region with boxes is a part of the page.
function isMessage(element, text) {
  if (queryElement(element, 'input:not([type=hidden i]):not([type=button i]):not([type=submit i]),' +
      'select,textarea,table').length > 0) {
    return false;
  }
  const links = Array.from(queryElement(element, 'a,button'));
  return collapse(links.map((link) => textContentOf(link)).join(' ')) !== text;
}

function complaintOf(element) {
  const names = namesOfPlace(element);
  if (fits(element, NOT_A_MESSAGE) || !COMPLAINT_NAME.test(names) || !isSeen(element)) {
    return '';
  }
  const text = collapse(shownTextOf(element)).slice(0, LONGEST_CELL);
  const isGood = GOOD_NAME.test(names) ||
    (!/err|warn|invalid|fail/i.test(names) && GOOD_NEWS.test(text) && !BAD_NEWS.test(text));
  return !isGood && /\p{L}{2}/u.test(text) && isMessage(element, text) ? text : '';
}

// The texts, of all frames, whichever of them the script works on.
function complaintsOfPage() {
  const texts = new Set();
  for (const each of documentsBelow(document)) {
    const places = all(each, COMPLAINT_PLACE).slice(0, MOST_PLACES);
    const complaints = places.map((place) => attempt(() => complaintOf(place)) || '');
    places.forEach((place, i) => {
      // Of a message within another, the inner one has the words.
      const isOuter = places.some((other, j) =>
        j !== i && complaints[j] !== '' && holdsNode(place, other));
      if (complaints[i] !== '' && !isOuter && texts.size < MOST_COMPLAINTS) {
        texts.add(complaints[i]);
      }
    });
  }
  return Array.from(texts);
}

Object.assign(operations, {
  ReadComplaints: complaintsOfPage,
});

// The texts ride on the answer that reports a new state of the markup, so that asking for them costs
// no question of its own. Nothing where the state was reported before.
let stateWithComplaints = '';
function complaintsOfNewState(state) {
  if (state === stateWithComplaints) {
    return undefined;
  }
  stateWithComplaints = state;
  return attempt(complaintsOfPage);
}
