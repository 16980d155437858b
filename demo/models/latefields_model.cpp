// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/latefields_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "nat.html";

constexpr char kPaneScript[] = R"(
window.onload = function() { setTimeout(buildPane, 330); };
function addField(table, caption, field) {
  var row = table.insertRow(-1);
  row.insertCell(-1).appendChild(document.createTextNode(caption));
  row.insertCell(-1).appendChild(field);
}
function makeBox(name, type, value) {
  var box = document.createElement('input');
  box.type = type;
  box.name = name;
  box.value = value;
  return box;
}
function buildPane() {
  var pane = document.getElementById('pane');
  var table = document.createElement('table');
  var kind = document.createElement('select');
  kind.name = 'sv_kind';
  ['TCP', 'UDP', 'Both'].forEach(function(word) { kind.add(new Option(word, word)); });
  addField(table, 'Label', makeBox('sv_label', 'text', ''));
  addField(table, 'First port', makeBox('sv_first', 'text', ''));
  addField(table, 'Last port', makeBox('sv_last', 'text', ''));
  addField(table, 'Kind', kind);
  addField(table, 'Target', makeBox('sv_target', 'text', ''));
  pane.replaceChildren(table, makeBox('sv_store', 'submit', 'Store'));
}
)";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Latchford",
                .product = "LF-2",
                .colour = "#1f6b5c",
                .menu = {{"info.html", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "sv_label",
                 .first = "sv_first",
                 .last = "sv_last",
                 .protocol = "sv_kind",
                 .address = "sv_target"}};
  return site;
}

}  // namespace

LatefieldsModel::LatefieldsModel(RuleTable& table) : FormModel(table, ModelSite()) {}

HttpResponse LatefieldsModel::OtherPage(const QString& page, const HttpRequest& request) {
  return page == QLatin1String("pane.js") ? JavaScriptFile(kPaneScript)
                                          : FormModel::OtherPage(page, request);
}

QString LatefieldsModel::RuleForm(const TypedRule&) const {
  return QStringLiteral(
             "<form id=\"pane\" method=\"post\" action=\"/%1\">Loading...</form>\n"
             "<script src=\"/pane.js\"></script>")
      .arg(QLatin1String(kRulesPath));
}

}  // namespace quayline::demo
