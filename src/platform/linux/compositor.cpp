// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/compositor.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QWindow>

#include <cstdlib>
#include <iterator>
#include <memory>
#include <xcb/xcb.h>

namespace quayline {

namespace {

template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_atom_t Atom(xcb_connection_t* server, const QByteArray& name) {
  const ReplyPtr<xcb_intern_atom_reply_t> atom(
      xcb_intern_atom_reply(
          server,
          xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.constData()),
          nullptr),
      &std::free);
  return atom == nullptr ? XCB_ATOM_NONE : atom->atom;
}

// Compositing is done by the program that owns the selection "_NET_WM_CM_Sn" of screen n.
bool OwnsSelection(xcb_connection_t* server) {
  int screen = 0;
  char* host = nullptr;
  int display = 0;
  if (xcb_parse_display(nullptr, &host, &display, &screen) != 0) {
    std::free(host);
  }
  const xcb_atom_t selection = Atom(server, "_NET_WM_CM_S" + QByteArray::number(screen));
  const ReplyPtr<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, selection), nullptr),
      &std::free);
  return owner != nullptr && owner->owner != XCB_WINDOW_NONE;
}

xcb_connection_t* Server() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

}  // namespace

// Only X servers can be without one.
bool HasCompositor() {
  xcb_connection_t* server = Server();
  return server == nullptr || OwnsSelection(server);
}

void DeclareShadow(const QWindow& window, const QMargins& shadow) {
  xcb_connection_t* server = Server();
  if (server == nullptr || window.handle() == nullptr) {
    return;
  }
  const qreal scale = window.devicePixelRatio();
  const auto pixels = [scale](int length) { return static_cast<quint32>(qRound(length * scale)); };
  const quint32 sides[] = {pixels(shadow.left()), pixels(shadow.right()), pixels(shadow.top()),
                           pixels(shadow.bottom())};
  xcb_change_property(server, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                      Atom(server, "_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, std::size(sides),
                      sides);
}

}  // namespace quayline
