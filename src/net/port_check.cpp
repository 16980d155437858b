// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/port_check.h"

#include <QRandomGenerator>

#include "async/wait.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

// What no stranger guesses.
QByteArray RandomWord() { return QByteArray::number(QRandomGenerator::system()->generate64(), 16); }

}  // namespace

QString ProtocolName(SockProtocol protocol) {
  return protocol == SockProtocol::kTcp ? QStringLiteral("TCP") : QStringLiteral("UDP");
}

QList<PortTest> TestsOf(const QList<PortEntry>& entries) {
  QList<PortTest> tests;
  for (const PortEntry& entry : entries) {
    const QString protocol = entry.protocol.toLower();
    if (protocol == QLatin1String("tcp") || protocol == QLatin1String("tcp/udp")) {
      tests.append({.port = entry.start_port, .protocol = SockProtocol::kTcp});
    } else if (protocol == QLatin1String("udp")) {
      tests.append({.port = entry.start_port, .protocol = SockProtocol::kUdp});
    }
  }
  return tests;
}

PortCheck::PortCheck(TestPage& page, const MakerSite& site, QObject* parent)
    : QObject(parent), page_(page), site_(site) {
  connect(&page, &TestPage::completed, this, [this] { NoteLoad(true); });
  connect(&page, &TestPage::failed, this, [this] { NoteLoad(false); });
  connect(&flow_, &Flow::ended, this, &PortCheck::ended);
}

void PortCheck::Begin(const QString& address) { flow_.Start(Run(address)); }

Task<> PortCheck::Run(QString address) {
  for (int row = 0; row < tests.size(); ++row) {
    co_await TestRow(row, address);
    listener_.reset();
  }
}

Task<> PortCheck::TestRow(int row, QString address) {
  const PortTest test = tests[row];
  const QByteArray word = RandomWord();
  listener_ = std::make_unique<PortListener>(test.protocol, test.port.toInt(), address, word);
  connect(listener_.get(), &PortListener::heard, this, &PortCheck::heard);
  SetState(row, listener_->IsOpen() ? PortTestState::kListening : PortTestState::kInUse);
  co_await Sleep(0ms);
  if (!listener_->IsOpen()) {
    co_return;
  }
  SetState(row, PortTestState::kChecking);
  const bool is_over = co_await SendForm(row, word);
  SetState(row, listener_->HasArrived() ? PortTestState::kOpen
                : is_over               ? PortTestState::kClosed
                                        : PortTestState::kNotTested);
}

Task<bool> PortCheck::SendForm(int row, QByteArray word) {
  const PortTest test = tests[row];
  int former_loads = loads_;
  page_.Open(site_.PortTest(test.protocol == SockProtocol::kUdp));
  const bool is_there = co_await PageLoads(former_loads);
  if (!is_there) {
    co_return false;
  }
  OneShot<bool> port_found;
  page_.Fill(QStringLiteral("port"), test.port, port_found.Callback());
  const std::optional<bool> has_port = co_await port_found;
  // Not every site can send a word.
  OneShot<bool> word_found;
  page_.Fill(QStringLiteral("word"), QString::fromLatin1(word), word_found.Callback());
  const std::optional<bool> has_word = co_await word_found;
  if (!has_word.value_or(false)) {
    listener_->TakeAnything();
  }
  former_loads = loads_;
  OneShot<bool> button_found;
  page_.Press(QStringLiteral("Check Port"), button_found.Callback());
  const std::optional<bool> has_button = co_await button_found;
  if (!has_port.value_or(false) || !has_button.value_or(false)) {
    co_return false;
  }
  Q_EMIT waitingForResult();
  const bool has_result = co_await PageLoads(former_loads);
  co_return has_result;
}

Task<bool> PortCheck::PageLoads(int former_loads) {
  co_await Until([this, former_loads] {
    return loads_ > former_loads;
  }).WokenBy(this, &PortCheck::loadEnded);
  co_return is_page_whole_;
}

void PortCheck::NoteLoad(bool is_whole) {
  ++loads_;
  is_page_whole_ = is_whole;
  Q_EMIT loadEnded(QPrivateSignal());
}

void PortCheck::SetState(int row, PortTestState state) {
  tests[row].state = state;
  Q_EMIT changed(row);
}

}  // namespace quayline
