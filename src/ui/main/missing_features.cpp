// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/missing_features.h"

#include <QAction>
#include <QMenu>
#include <QWidget>

namespace quayline {

namespace {

enum class Needs { kMakerSite, kLaterVersion };

struct Feature {
  const char* control;
  Needs needs;
};

// A feature that works now is not in this table.
constexpr Feature kMissing[] = {
    {"default_logins_button", Needs::kMakerSite},
    {"forwarding_fails_action", Needs::kMakerSite},
    {"wrong_image_action", Needs::kMakerSite},
    {"website_action", Needs::kMakerSite},
    {"forums_action", Needs::kMakerSite},
    {"screenshots_action", Needs::kMakerSite},
    {"forwarding_guides_action", Needs::kMakerSite},
    {"triggering_guides_action", Needs::kMakerSite},
    {"wireless_guides_action", Needs::kMakerSite},
    {"address_tool_action", Needs::kMakerSite},
    {"speed_tool_action", Needs::kMakerSite},
    {"name_lookup_tool_action", Needs::kMakerSite},
    {"ping_tool_action", Needs::kMakerSite},
    {"trace_tool_action", Needs::kMakerSite},
    {"subnet_tool_action", Needs::kMakerSite},
    {"common_ports_tool_action", Needs::kMakerSite},
};

// Hides the menus below `menu` that have no visible item; whether `menu` has one.
bool HideEmptyMenus(const QMenu& menu) {
  bool has_items = false;
  for (const QAction* action : menu.actions()) {
    if (QMenu* inner = action->menu()) {
      inner->menuAction()->setVisible(HideEmptyMenus(*inner));
    }
    has_items = has_items || (action->isVisible() && !action->isSeparator());
  }
  return has_items;
}

}  // namespace

void HideMissingFeatures(QWidget& window, const MakerSite& site) {
  for (const Feature& feature : kMissing) {
    if (feature.needs == Needs::kMakerSite && site.Exists()) {
      continue;
    }
    auto* control = window.findChild<QObject*>(QLatin1String(feature.control));
    Q_ASSERT_X(control, "HideMissingFeatures", feature.control);
    control->setProperty("visible", false);
  }
  for (const QMenu* menu : window.findChildren<QMenu*>()) {
    menu->menuAction()->setVisible(HideEmptyMenus(*menu));
  }
}

}  // namespace quayline
