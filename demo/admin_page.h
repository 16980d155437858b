// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "demo/rule_table.h"
#include "transport/http_message.h"

namespace quayline::demo {

struct MenuLink {
  const char* path;
  const char* caption;
};

// What all pages of one router have in common.
struct AdminSite {
  const char* maker = "";
  const char* product = "";
  const char* colour = "";  // of the header, as CSS takes it
  QList<MenuLink> menu;
  const char* head = "";  // HTML in the head of every page
};

// A whole page: header, menu, title and `content`, which is HTML.
HttpResponse AdminPage(const AdminSite& site, const QString& title, const QString& content);

// A page without header and menu, for a frame or a small window of its own.
HttpResponse BarePage(const AdminSite& site, const QString& title, const QString& content);

// The links of the menu, as HTML.
QString MenuHtml(const AdminSite& site);

HttpResponse JavaScriptFile(const char* code);

// The page that every router shows first.
HttpResponse StatusPage(const AdminSite& site, const RuleTable& table);
QString StatusHtml(const AdminSite& site, const RuleTable& table);

// Text as the content of an element or of a quoted attribute.
QString Html(const QString& text);

// A paragraph in red; empty for an empty text.
QString FaultParagraph(const QString& text);

// A select with the three words of ProtocolWord(); `chosen` is one of them in any case.
QString ProtocolSelect(const QString& name, const QString& chosen);

// The select lists' text for a protocol: "TCP", "UDP" or "Both".
QString ProtocolWord(Protocol protocol);

}  // namespace quayline::demo
