// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Removes from the page what opens a channel to another host besides HTTP. The engine's flags keep
// such channels from sending anything; without the names a page does not try.
function removePageChannels() {
  'use strict';

  for (const name of ['RTCPeerConnection', 'webkitRTCPeerConnection', 'WebTransport']) {
    delete window[name];
  }
}
