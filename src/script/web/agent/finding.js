// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Finds elements by their names and other properties.

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
