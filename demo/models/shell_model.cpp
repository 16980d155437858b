// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/shell_model.h"

#include "demo/json_api.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "api/rules";

constexpr char kShellScript[] = R"(
var view = document.getElementById('view');
function request(method, path, body, done) {
  var call = new XMLHttpRequest();
  call.open(method, path);
  if (body) {
    call.setRequestHeader('Content-Type', 'application/x-www-form-urlencoded');
  }
  call.onload = function() { done(JSON.parse(call.responseText)); };
  call.send(body);
}
function showForm(answer) {
  view.innerHTML = '<h2>New rule</h2><div id="rule_form"><table>' + answer.html + '</table>' +
    '<p class="fault"></p><button id="store">Store</button></div>';
  document.getElementById('store').addEventListener('click', store);
}
function store() {
  var fields = [];
  view.querySelectorAll('input, select').forEach(function(field) {
    fields.push(field.name + '=' + encodeURIComponent(field.value));
  });
  request('POST', '/api/rules', fields.join('&'), function(answer) {
    if (answer.fault) {
      view.querySelector('.fault').textContent = answer.fault;
    } else {
      location.hash = '#/forward';
    }
  });
}
function showList(answer) {
  view.innerHTML = '<h2>Port Forwarding</h2>' + answer.html + '<a href="#/forward/new">New</a>';
}
function showState(answer) { view.textContent = 'Running for ' + answer.uptime; }
function route() {
  if (location.hash === '#/forward/new') {
    request('GET', '/api/form', null, showForm);
  } else if (location.hash === '#/forward') {
    request('GET', '/api/list', null, showList);
  } else {
    request('GET', '/api/state', null, showState);
  }
}
window.addEventListener('hashchange', route);
setInterval(function() { request('GET', '/api/state', null, function() {}); }, 3000);
route();
)";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Onepier",
                .product = "OP-10",
                .colour = "#20487a",
                .menu = {{"#/status", "Status"}, {"#/forward", "Port Forwarding"}}},
      .page = kRulesPath,
      .fields = {.name = "label",
                 .first = "from",
                 .last = "till",
                 .protocol = "proto",
                 .address = "host"}};
  return site;
}

}  // namespace

ShellModel::ShellModel(RuleTable& table) : FormModel(table, ModelSite()) {}

HttpResponse ShellModel::HomePage() const {
  return AdminPage(Site().admin, QStringLiteral("Console"),
                   QStringLiteral("<div id=\"view\"></div>\n<script src=\"/shell.js\"></script>"));
}

HttpResponse ShellModel::OtherPage(const QString& page, const HttpRequest&) {
  if (page == QLatin1String("shell.js")) {
    return JavaScriptFile(kShellScript);
  }
  if (page == QLatin1String("api/state")) {
    return JsonAnswer({{QStringLiteral("uptime"), QStringLiteral("3 days")}});
  }
  if (page == QLatin1String("api/list")) {
    return JsonAnswer({{QStringLiteral("html"), RuleListHtml(Table())}});
  }
  return page == QLatin1String("api/form")
             ? JsonAnswer({{QStringLiteral("html"), RuleRows(Site().fields, {})}})
             : NotFound();
}

HttpResponse ShellModel::Saved() const {
  return JsonAnswer({{QStringLiteral("fault"), QString()}});
}

HttpResponse ShellModel::Refused(const TypedRule&, RuleFault fault) const {
  return FaultAnswer(fault);
}

}  // namespace quayline::demo
