// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Chooses options of lists.

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

Object.assign(operations, {
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
});
