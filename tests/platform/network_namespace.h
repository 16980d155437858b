// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace quayline::testing {

// Forks a child into a network of its own, which has nothing but a switched-off loopback, runs
// `ip -batch` with `commands` there and then `look`, whose text is given back. Nothing where this
// computer does not allow it or has no `ip`; "setup failed" when `ip` refuses a command.
std::optional<QString> InNetworkOfItsOwn(const QByteArray& commands,
                                         const std::function<QString()>& look);

}  // namespace quayline::testing
