// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/list_columns.h"

#include <QLoggingCategory>

namespace quayline {

namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(log_list, "quayline.ui.list")

// Other widths would hide a column, or move the following ones out of view.
constexpr int kMinWidth = 16;
constexpr int kMaxWidth = 2000;

}  // namespace

ListColumns::ListColumns(HintedList& list, Settings& settings) : settings_(settings) {
  const QStringList stored = settings.Value(setting::kListColumns).split(QLatin1Char(','));
  for (int column = 0; column + 1 < list.model()->columnCount(); ++column) {
    const int width = stored.value(column).toInt();
    if (width >= kMinWidth && width <= kMaxWidth) {
      widths_.insert(column, width);
      list.KeepWidth(column, width);
    }
  }
  timer_.setSingleShot(true);
  timer_.setInterval(300ms);
  connect(&timer_, &QTimer::timeout, this, &ListColumns::Store);
  connect(&list, &HintedList::columnSized, this, [this](int column, int width) {
    widths_.insert(column, width);
    timer_.start();
  });
}

void ListColumns::Flush() {
  if (timer_.isActive()) {
    timer_.stop();
    Store();
  }
}

void ListColumns::Store() {
  QStringList texts;
  for (int column = 0; !widths_.isEmpty() && column <= widths_.lastKey(); ++column) {
    const int width = widths_.value(column);
    texts.append(width == 0 ? QString() : QString::number(width));
  }
  if (!settings_.SetValue(setting::kListColumns, texts.join(QLatin1Char(',')))) {
    qCWarning(log_list) << "the widths of the columns cannot be stored";
  }
}

}  // namespace quayline
