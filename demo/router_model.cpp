// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/router_model.h"

#include <algorithm>

#include "demo/models/formback_model.h"
#include "demo/models/longlist_model.h"
#include "demo/models/rowtable_model.h"

namespace quayline::demo {

namespace {

template <typename Model>
std::unique_ptr<RouterModel> Make(RuleTable& table) {
  return std::make_unique<Model>(table);
}

// The realms bear no hyphen: a program that looks for a router's model by its realm commonly drops
// the hyphens of the names that it knows.
constexpr ModelInfo kModels[] = {
    {"formback", "HR100", "A list of rules and a form that leads back to it by a redirect.",
     Make<FormbackModel>},
    {"longlist", "L40", "A page that stays as long as the table has rows: one to measure on.",
     Make<LonglistModel>},
    {"rowtable", "Q20", "Numbered rows on one page, all saved by one button.", Make<RowtableModel>},
};

}  // namespace

std::span<const ModelInfo> RouterModels() { return kModels; }

const ModelInfo* FindModel(const QString& name) {
  const auto found = std::ranges::find_if(
      kModels, [&](const ModelInfo& info) { return name == QLatin1String(info.name); });
  return found == std::end(kModels) ? nullptr : found;
}

HttpResponse NotFound() {
  HttpResponse response;
  response.status = 404;
  response.body = "<html><body><h1>404 Not Found</h1></body></html>";
  return response;
}

}  // namespace quayline::demo
