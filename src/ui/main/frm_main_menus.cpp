// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// What the menus of the main window do beside the port list.

#include "ui/main/frm_about.h"
#include "ui/main/frm_main.h"
#include "ui/main/main_messages.h"
#include "ui_frm_main.h"

namespace quayline {

void FrmMain::ConnectAdvancedMenu() {
  connect(ui_->MenuDisablePopups, &QAction::triggered, this, [this](bool checked) {
    context_.job_options.silent_mode = checked;
    NoteStored(context_.settings.SetBoolean(setting::kSilentMode, checked));
  });
  connect(ui_->MenuScriptThrottle, &QAction::triggered, this, [this](bool checked) {
    context_.job_options.throttle = checked;
    NoteStored(context_.settings.SetBoolean(setting::kScriptThrottle, checked));
  });
  connect(ui_->MenuDebugMode, &QAction::triggered, this,
          [this](bool checked) { context_.job_options.debug_mode = checked; });
  connect(ui_->MenuAboutDebug, &QAction::triggered, this,
          [this] { Tell({message::kDebugHelp1, message::kDebugHelp2, message::kDebugHelp3}); });
  connect(ui_->MenuAboutScriptThrottle, &QAction::triggered, this, [this] {
    Tell({message::kThrottleHelp1, message::kThrottleHelp2, message::kThrottleHelp3});
  });
  connect(ui_->MenuAbout, &QAction::triggered, this, [this] { (new FrmAbout(this))->open(); });
}

void FrmMain::ConnectWebPages() {
  const MakerSite& site = context_.maker_site;
  const std::pair<QAction*, QUrl> pages[] = {
      {ui_->menuFailedHelp, site.ForwardingFails()},
      {ui_->menurouterlist, site.RouterRequest()},
      {ui_->MenuWrongPic, site.WrongPicture()},
      {ui_->menuwebsite, site.Website()},
      {ui_->menuforums, site.Forums()},
      {ui_->menuviewhelp, site.Help()},
      {ui_->menuscreenshots, site.Screenshots()},
      {ui_->menuportforwarding, site.ForwardingGuides()},
      {ui_->MenuPortTriggering, site.TriggeringGuides()},
      {ui_->menuwirelesssetup, site.WirelessGuides()},
      {ui_->menutool1, site.Tool(1)},
      {ui_->menutool2, site.Tool(2)},
      {ui_->menutool3, site.Tool(3)},
      {ui_->menutool4, site.Tool(4)},
      {ui_->menutool5, site.Tool(5)},
      {ui_->menutool6, site.Tool(6)},
      {ui_->menutool7, site.Tool(7)},
  };
  for (const auto& [action, page] : pages) {
    connect(action, &QAction::triggered, this, [this, target = page] { OpenPage(target); });
  }
  connect(ui_->vkCommand6, &QPushButton::clicked, this,
          [this] { OpenPage(context_.maker_site.DefaultLogins()); });
  connect(ui_->Label11, &LinkLabel::clicked, this,
          [this] { OpenPage(context_.maker_site.RouterRequest()); });
}

void FrmMain::OpenPage(const QUrl& page) {
  if (!context_.desktop.OpenInBrowser(page)) {
    prompts_.Tell(this, Text(message::kNoBrowser) + QLatin1Char('\n') + page.toString());
  }
}

void FrmMain::Tell(std::initializer_list<Message> texts) {
  QStringList lines;
  for (const Message& text : texts) {
    lines.append(Text(text));
  }
  prompts_.Tell(this, lines.join(QStringLiteral("\n\n")));
}

}  // namespace quayline
