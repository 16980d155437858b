// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/pleasewait_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "fw_forward.html";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Mooring",
                .product = "M7",
                .colour = "#8a5a12",
                .menu = {{"fw_status.html", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "fw_desc",
                 .first = "fw_lo",
                 .last = "fw_hi",
                 .protocol = "fw_prot",
                 .address = "fw_addr"}};
  return site;
}

}  // namespace

PleasewaitModel::PleasewaitModel(RuleTable& table) : FormModel(table, ModelSite()) {}

HttpResponse PleasewaitModel::Saved() const {
  return RouterPage(
      QStringLiteral("Please wait"),
      QStringLiteral("<meta http-equiv=\"refresh\" content=\"1; url=/%1\">\n"
                     "<p>The settings are being stored. Do not switch the router off.</p>")
          .arg(QLatin1String(kRulesPath)));
}

}  // namespace quayline::demo
