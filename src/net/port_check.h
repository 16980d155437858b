// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

#include "async/flow.h"
#include "core/maker_site.h"
#include "core/port_entry.h"
#include "net/port_listener.h"
#include "net/test_page.h"

namespace quayline {

// How far the test of a port is.
enum class PortTestState {
  kAdded,
  kListening,
  kInUse,     // this computer could not listen on the port
  kChecking,  // the test site is being asked
  kOpen,      // the probe arrived
  kClosed,    // it did not, and the site said that it was over
  kNotTested  // the site could not be reached, or its page is not the test page
};

struct PortTest {
  QString port;  // as typed: digits
  SockProtocol protocol = SockProtocol::kTcp;
  PortTestState state = PortTestState::kAdded;
};

QString ProtocolName(SockProtocol protocol);

// The tests for the rows of the port list: each row's start port, by TCP where the row is for both.
QList<PortTest> TestsOf(const QList<PortEntry>& entries);

// Tests ports one after the other: listens on the port, lets the test site probe it, and looks
// whether the probe arrived while the result page was loading. What the page says is not read.
//
// Nothing has a time limit: a page that never completes holds the check until it is destroyed,
// which closes the port.
class PortCheck final : public QObject {
  Q_OBJECT

 public:
  // `page` outlives it.
  PortCheck(TestPage& page, const MakerSite& site, QObject* parent = nullptr);

  QList<PortTest> tests;  // not to be changed during a check

  // Tests all, listening on this address of the computer.
  void Begin(const QString& address);
  bool IsRunning() const { return flow_.IsRunning(); }

 Q_SIGNALS:
  // The state of a row has changed.
  void changed(int row);
  // The site is asked for the result.
  void waitingForResult();
  // Something arrived on a port.
  void heard(const quayline::Sentence& line);
  void ended();

  void loadEnded(QPrivateSignal);

 private:
  Task<> Run(QString address);
  Task<> TestRow(int row, QString address);
  // Whether the site's page for the row has loaded completely and was sent.
  Task<bool> SendForm(int row, QByteArray word);
  // Waits for a load after so many former ones. Whether it succeeded.
  Task<bool> PageLoads(int former_loads);
  void NoteLoad(bool is_whole);
  void SetState(int row, PortTestState state);

  TestPage& page_;
  const MakerSite& site_;
  std::unique_ptr<PortListener> listener_;
  int loads_ = 0;               // that have ended
  bool is_page_whole_ = false;  // the last of them succeeded
  Flow flow_;
};

}  // namespace quayline
