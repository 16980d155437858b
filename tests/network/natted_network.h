// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QProcess>

#include <gtest/gtest.h>

namespace quayline::testing {

// Runs tests of this program on a computer behind a router: see natted_network.sh. They are
// disabled elsewhere.
inline void RunAtHome(const QString& filter) {
  constexpr int kNoNetworks = 77;
  QProcess network;
  network.setProcessChannelMode(QProcess::MergedChannels);
  network.start(QStringLiteral(QUAYLINE_SOURCE_DIR "/tests/network/natted_network.sh"),
                {QStringLiteral(QUAYLINE_DEMO_SITE), QCoreApplication::applicationFilePath(),
                 QStringLiteral("--gtest_also_run_disabled_tests"),
                 QStringLiteral("--gtest_filter=") + filter});
  ASSERT_TRUE(network.waitForFinished(120'000));
  const QByteArray output = network.readAll();
  if (network.exitCode() == kNoNetworks) {
    GTEST_SKIP() << "needs the right to make networks, iproute2 and nftables";
  }
  EXPECT_EQ(network.exitCode(), 0) << output.toStdString();
}

}  // namespace quayline::testing
