// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

class QWidget;

namespace quayline {

// Types into a page. Keys take another way into the page than calls of its scripts do, and are
// overtaken by them, so the page's agent reports each key that arrives.
class PageKeys final : public QObject {
  Q_OBJECT

 public:
  explicit PageKeys(QObject* parent = nullptr);

  // False when `keys` holds nothing to type.
  bool Send(QWidget* target, const QString& keys);
  // The page got one of the keys.
  void NoteArrival();
  // The document that would have got the keys is gone.
  void Forget();

 Q_SIGNALS:
  // The last key has arrived, or no document took it.
  void arrived();

 private:
  int under_way_ = 0;
  QTimer limit_;
};

}  // namespace quayline
