// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class QWebEnginePage;

namespace quayline {

// Ends the process of a page that takes too much memory. Counting what a page consists of is not
// enough: 50 MB of text in one paragraph take 3 GB to lay out, comments and attributes belong to no
// element, and a compressed body grows a thousand times as it is unpacked.
class MemoryLimit final : public QObject {
  Q_OBJECT

 public:
  explicit MemoryLimit(QObject* parent);

  void SetPage(QWebEnginePage* page);

 Q_SIGNALS:
  // The page's process is about to be ended.
  void exceeded();

 private:
  void Look();

  QPointer<QWebEnginePage> page_;
  QTimer timer_;
};

}  // namespace quayline
