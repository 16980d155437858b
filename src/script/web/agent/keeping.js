// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Keeps what was set until it is used. A page may redraw a box after the operation, from a microtask
// or a timer, and lose what was set. So before the next action each box is looked at: one that is
// another element by now, in the state from before the operation, is set once more.
const MAX_KEPT = 500;
let kept = [];
let isRestoring = false;

// `find` gives the element that is in the page now, `isLost` whether that has lost what was set, and
// `again` sets it. Gives the answer of an operation that was successful.
function keep(find, isLost, again) {
  if (!isRestoring && kept.length < MAX_KEPT) {
    kept.push({element: find(), find, isLost, again});
  }
  return SUCCESSFUL;
}

function restoreLost() {
  const boxes = kept;
  kept = [];
  for (const box of boxes) {
    const element = isConnected(box.element) ? box.element : attempt(box.find);
    if (element && element !== box.element && box.isLost(element)) {
      isRestoring = true;
      attempt(box.again);
      isRestoring = false;
    } else if (element) {
      kept.push({...box, element});
    }
  }
}

// A click, a key or a script uses what was set: what the page makes of it then is its own affair.
function forgetKept() {
  kept = [];
}
