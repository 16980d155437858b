// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <functional>
#include <memory>
#include <optional>

#include "async/flow.h"
#include "core/app_context.h"
#include "net/port_mapper.h"

class QStandardItemModel;

namespace Ui {
class QuickPortsDialog;
}

namespace quayline {

// Opens and closes the ports of the list by UPnP or NAT-PMP, without the router's pages, where the
// router speaks one of them. Only entries that lead to this computer are asked for.
class QuickPortsDialog final : public QDialog {
  Q_OBJECT

 public:
  using Ask = std::function<Task<std::expected<MappingAnswer, Message>>(MappingRequest request)>;

  // What is referred to outlives the dialog.
  QuickPortsDialog(AppContext& context, QWidget* parent, Ask ask = AskRouterToMap);
  ~QuickPortsDialog() override;

 private:
  enum Column { kEntry, kPorts, kState, kColumns };

  void SetUpList();
  void Begin(MappingVerb verb);
  Task<> Run(MappingVerb verb);
  // Why an entry cannot be asked for.
  std::optional<Message> Refusal(const PortEntry& entry) const;
  void ShowAnswer(const MappingAnswer& answer);
  void NoteOpen(const PortEntry& entry);
  void SetWorking(bool working);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Ask ask_;
  std::unique_ptr<Ui::QuickPortsDialog> ui_;
  QStandardItemModel* rows_;
  QList<PortEntry> asked_;  // the entries that can be asked for
  QList<int> rows_of_asked_;
  QString protocol_;  // that the router speaks; empty: none, or not known yet
  Flow flow_;
};

}  // namespace quayline
