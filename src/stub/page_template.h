// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <expected>

#include "stub/request_values.h"
#include "stub/stub_rule.h"

namespace quayline {

// How a text is written into a page.
enum class Escape { kHtml, kScript, kJson, kUrl, kNone };

// The escape for the text of a file of this Content-Type. Inside <script> of a page it is kScript.
Escape EscapeOfType(const QByteArray& type);

QString Escaped(const QString& text, Escape escape);

// What the marks of a page stand for.
struct PageValues {
  QList<StubRule> rules;  // as the pages show them
  QList<StubRule> kept;   // without changes that are still to be committed
  QString token;
  QString session;
  RequestValues request;
};

// Fills the marks of a page, script or data file:
//
//   {{each rules}} ... {{between}},{{none}}nothing{{end}}   a text for each rule
//   {{each rules to 20}}                                    at least 20 times, with empty rules
//   {{rule.name}} {{rule.ports}} {{index}} {{number}}       in it; number counts from 1
//   {{count}} {{token}} {{session}} {{request.path}}        anywhere
//
// A mark may name its escape, "{{rule.name:js}}", and map its value,
// "{{rule.protocol|TCP=1|UDP=2}}". Braces around anything else belong to the page. An error is a
// sentence.
std::expected<QString, QString> FillPage(const QString& text, Escape escape,
                                         const PageValues& values);

}  // namespace quayline
