// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/computer_name.h"

#include <QWidget>

#include "async/wait.h"
#include "ui/entries/entry_texts.h"

namespace quayline {

ComputerNameSearch::ComputerNameSearch(AppContext& context, Prompts& prompts, HostNames& host_names,
                                       QWidget* window)
    : QObject(window),
      context_(context),
      prompts_(prompts),
      host_names_(host_names),
      window_(window) {}

bool ComputerNameSearch::IsNeeded() const {
  return context_.session.needs_computer_name.compare(QLatin1String("yes"), Qt::CaseInsensitive) ==
         0;
}

Task<std::optional<QString>> ComputerNameSearch::Find(QString address) {
  if (!IsNeeded()) {
    co_return QString();
  }
  Q_EMIT started(address);
  QString name = co_await host_names_.OfAddress(address);
  Q_EMIT ended();
  if (!name.isEmpty()) {
    co_return name;
  }
  const Translator& translator = context_.translator;
  const QStringList paragraphs = {translator.Text(message::kCannotResolveName),
                                  translator.Text(message::kComputerNameExample),
                                  translator.Text(message::kUseAddress)};
  const OneShot<bool> answer;
  prompts_.Ask(window_, QStringLiteral("Quayline"), paragraphs.join(QStringLiteral("\n\n")),
               answer.Callback());
  const std::optional<bool> wanted = co_await answer;
  if (!wanted.value_or(false)) {
    co_return std::nullopt;
  }
  co_return QString();
}

}  // namespace quayline
