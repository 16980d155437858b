// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/router_model.h"

#include <algorithm>

#include "demo/models/delayed_model.h"
#include "demo/models/dialog_model.h"
#include "demo/models/formback_model.h"
#include "demo/models/frameset_model.h"
#include "demo/models/hiddenframe_model.h"
#include "demo/models/latefields_model.h"
#include "demo/models/longlist_model.h"
#include "demo/models/nameless_model.h"
#include "demo/models/nocontent_model.h"
#include "demo/models/oldlibrary_model.h"
#include "demo/models/pleasewait_model.h"
#include "demo/models/popup_model.h"
#include "demo/models/rowtable_model.h"
#include "demo/models/scriptmenu_model.h"
#include "demo/models/selectlist_model.h"
#include "demo/models/shell_model.h"
#include "demo/models/singlepage_model.h"
#include "demo/models/validator_model.h"
#include "demo/models/weblogin_model.h"

namespace quayline::demo {

namespace {

template <typename Model>
std::unique_ptr<RouterModel> Make(RuleTable& table, [[maybe_unused]] const Login& login) {
  if constexpr (std::is_constructible_v<Model, RuleTable&, const Login&>) {
    return std::make_unique<Model>(table, login);
  } else {
    return std::make_unique<Model>(table);
  }
}

// The realms have no hyphen: a program that looks for a router's model by its realm commonly drops
// the hyphens of the names that it knows.
constexpr ModelInfo kModels[] = {
    {"delayed", "SW22", "An Apply that submits by itself two seconds later.", Make<DelayedModel>},
    {"dialog", "HY6", "A script builds the page: a modal dialog, and a save that counts down.",
     Make<DialogModel>},
    {"formback", "HR100", "A list of rules and a form that leads back to it by a redirect.",
     Make<FormbackModel>},
    {"frameset", "OF54", "A frameset with a menu and a main frame.", Make<FramesetModel>},
    {"hiddenframe", "UT8", "A save into a hidden frame; it looks at the Referer.",
     Make<HiddenframeModel>},
    {"latefields", "LF2", "A page whose fields are built by script after the load.",
     Make<LatefieldsModel>},
    {"longlist", "L40", "A page that stays as long as the table has rows: one to measure on.",
     Make<LonglistModel>},
    {"nameless", "BW1", "Boxes without names.", Make<NamelessModel>},
    {"nocontent", "ST204", "The answer to a save is 204, and the page stays.",
     Make<NocontentModel>},
    {"oldlibrary", "BN6", "An old script library that replaces the built-ins.",
     Make<OldlibraryModel>},
    {"pleasewait", "M7", "A wait page behind the save that goes on by meta refresh.",
     Make<PleasewaitModel>},
    {"popup", "JB4", "A popup in which the rule is completed and saved.", Make<PopupModel>},
    {"rowtable", "Q20", "Numbered rows on one page, all saved by one button.", Make<RowtableModel>},
    {"scriptmenu", "MS3", "Framesets within framesets, and a menu that a script writes.",
     Make<ScriptmenuModel>},
    {"selectlist", "PN3", "Rules in a select list, to be added or changed.", Make<SelectlistModel>},
    {"shell", "OP10", "One page whose views go by \"#\" and whose data go by XMLHttpRequest.",
     Make<ShellModel>},
    {"singlepage", nullptr,
     "One page that keeps its state by script: token login, shadow root, changes to be committed.",
     Make<SinglepageModel>},
    {"validator", "BB9", "Message boxes when a box is left, and before and behind the save.",
     Make<ValidatorModel>},
    {"weblogin", nullptr, "A login page and a cookie in place of the Basic login.",
     Make<WebloginModel>},
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
