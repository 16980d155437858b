// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/nocontent_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "virtual.html";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Stillwater",
                .product = "ST-204",
                .colour = "#29618f",
                .menu = {{"lan.html", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "v_name",
                 .first = "v_pub",
                 .last = "v_end",
                 .protocol = "v_proto",
                 .address = "v_priv"}};
  return site;
}

}  // namespace

NocontentModel::NocontentModel(RuleTable& table) : FormModel(table, ModelSite()) {}

HttpResponse NocontentModel::Saved() const {
  HttpResponse response;
  response.status = 204;
  return response;
}

}  // namespace quayline::demo
