// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reports a new document to the host, and takes the calls of operations.

// Set by page_idle.js: what the page starts from now on counts as started by an action.
const armWatches = window.quaylineArm;

// The document of the last call. A document that cannot be reached leaves it as it is.
let working = document;

function chooseDocument(frame) {
  try {
    working = frame === 0 ? document : window.frames[frame].document || working;
  } catch (error) {
    // A frame that does not exist, or of another host.
  }
  return working;
}

// A target that was not found may still appear: then all pending work of the page counts. A negative
// answer to a question is final only when no pending work may change it, and so are the rows of a
// page.
function hasPendingWork(operation, value, isUserAction) {
  const isNegative = operation === 'ReadRows' || operation !== 'ReadMarkupState' &&
    (value === FAILED || value === FAILED_LINK || value === false || value === '');
  const what = !isNegative ? 'count' : isUserAction ? 'follow' : 'adopt';
  return window.quaylineHasPendingWork(what);
}

// Carries out one operation. `isUserAction`: the page may react with work of its own. The answer is
// {ok: true, value: ..., state: ..., complaints: ..., working: ...}: the result, the state of the
// markup after the call, the error texts if that state is new, and whether the page has pending
// work.
function callOperation(operation, args, frame, isUserAction) {
  try {
    forgetShadowRoots();
    if (isUserAction) {
      armWatches();
      restoreLost();
    }
    const value = operations[operation](chooseDocument(frame), ...args);
    const state = markupState(working);
    return {
      ok: true, value, state, complaints: complaintsOfNewState(state),
      working: hasPendingWork(operation, value, isUserAction),
    };
  } catch (error) {
    return {ok: false, value: String(error)};
  }
}

function installPageAgent(secretBeacon, secretAsk, secretReply) {
  beacon = secretBeacon;
  ask = secretAsk;
  reply = secretReply;
  const tell = (text) => console.debug(beacon + text);
  const isTop = window === window.top;
  tell('new ' + (isTop ? 1 : 0) + ' ' + location.href);
  addEventListener('keyup', (event) => event.isTrusted && tell('key'), true);
  addEventListener('keydown', (event) => event.isTrusted && forgetKept(), true);
  window.quaylineCall = callOperation;
  // For page_idle.js, and the host.
  window.quaylineMarkupState = () => markupState(document);
  window.quaylineComplaints = complaintsOfNewState;
  // Before a script.
  window.quaylineArm = () => {
    armWatches();
    restoreLost();
    forgetKept();
  };
}
