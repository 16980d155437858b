// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/main_menus.h"

#include <QUrl>

#include "ui/main/about_dialog.h"
#include "ui/main/help_dialog.h"
#include "ui/main/help_key.h"
#include "ui/main/main_messages.h"
#include "ui_main_window.h"

namespace quayline {

MainMenus::MainMenus(AppContext& context, Prompts& prompts, const Ui::MainWindow& ui,
                     QWidget* window)
    : QObject(window), context_(context), prompts_(prompts), ui_(ui), window_(window) {
  ConnectOptions();
  ConnectHelp();
  ConnectPages();
  ConnectSystem();
}

void MainMenus::ShowOptions() {
  ui_.silent_mode_action->setChecked(context_.job_options.silent_mode);
  ui_.throttle_action->setChecked(context_.job_options.throttle);
}

void MainMenus::ConnectOptions() {
  connect(ui_.silent_mode_action, &QAction::triggered, this, [this](bool checked) {
    context_.job_options.silent_mode = checked;
    context_.settings.SetBoolean(setting::kSilentMode, checked);
  });
  connect(ui_.throttle_action, &QAction::triggered, this, [this](bool checked) {
    context_.job_options.throttle = checked;
    context_.settings.SetBoolean(setting::kScriptThrottle, checked);
  });
  connect(ui_.debug_mode_action, &QAction::triggered, this,
          [this](bool checked) { context_.job_options.debug_mode = checked; });
  connect(ui_.about_debug_mode_action, &QAction::triggered, this,
          [this] { Explain({message::kDebugHelp1, message::kDebugHelp2, message::kDebugHelp3}); });
  connect(ui_.about_throttle_action, &QAction::triggered, this, [this] {
    Explain({message::kThrottleHelp1, message::kThrottleHelp2, message::kThrottleHelp3});
  });
}

void MainMenus::ConnectHelp() {
  new HelpKey(context_.translator, this);
  connect(ui_.help_action, &QAction::triggered, this,
          [this] { ShowHelp(QStringLiteral("index")); });
  connect(ui_.about_action, &QAction::triggered, this,
          [this] { (new AboutDialog(window_))->open(); });
}

void MainMenus::ConnectSystem() {
  ui_.open_network_action->setVisible(context_.desktop.HasNetworkSettings());
  connect(ui_.open_network_action, &QAction::triggered, this, [this] {
    if (!context_.desktop.OpenNetworkSettings()) {
      prompts_.Tell(window_, context_.translator.Text(message::kNoNetworkSettings));
    }
  });
}

void MainMenus::ConnectPages() {
  const MakerSite& site = context_.maker_site;
  const std::pair<QAction*, QUrl> pages[] = {
      {ui_.forwarding_fails_action, site.ForwardingFails()},
      {ui_.wrong_image_action, site.WrongPicture()},
      {ui_.website_action, site.Website()},
      {ui_.forums_action, site.Forums()},
      {ui_.screenshots_action, site.Screenshots()},
      {ui_.forwarding_guides_action, site.ForwardingGuides()},
      {ui_.triggering_guides_action, site.TriggeringGuides()},
      {ui_.wireless_guides_action, site.WirelessGuides()},
      {ui_.address_tool_action, site.Tool(1)},
      {ui_.speed_tool_action, site.Tool(2)},
      {ui_.name_lookup_tool_action, site.Tool(3)},
      {ui_.ping_tool_action, site.Tool(4)},
      {ui_.trace_tool_action, site.Tool(5)},
      {ui_.subnet_tool_action, site.Tool(6)},
      {ui_.common_ports_tool_action, site.Tool(7)},
  };
  for (const auto& [action, page] : pages) {
    connect(action, &QAction::triggered, this, [this, target = page] { OpenPage(target); });
  }
}

void MainMenus::OpenPage(const QUrl& page) {
  if (!context_.desktop.OpenInBrowser(page)) {
    prompts_.Tell(window_, context_.translator.Text(message::kNoBrowser) + QLatin1Char('\n') +
                               page.toString());
  }
}

void MainMenus::ShowHelp(const QString& page) {
  (new HelpDialog(context_.translator, page, window_))->open();
}

void MainMenus::Explain(std::initializer_list<Message> texts) {
  QStringList paragraphs;
  for (const Message& text : texts) {
    paragraphs.append(context_.translator.Text(text));
  }
  prompts_.Tell(window_, paragraphs.join(QStringLiteral("\n\n")));
}

}  // namespace quayline
