// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Clicks buttons and links.

function addressOf(link) {
  return String(link.href).trim();
}

function findLink(document_, part) {
  return Array.from(linksOf(document_)).find((link) => contains(addressOf(link), part)) || null;
}

Object.assign(operations, {
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
});
