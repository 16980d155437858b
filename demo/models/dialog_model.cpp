// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/dialog_model.h"

#include "demo/admin_page.h"
#include "demo/json_api.h"

namespace quayline::demo {

namespace {

using namespace Qt::StringLiterals;

constexpr char kRulesPath[] = "port-forwarding";

constexpr char kAppScript[] = R"(
const app = document.getElementById('app');
let rules = [];
let protocol = '';
function make(tag, attributes, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (typeof value === 'function') {
      element.addEventListener(name, value);
    } else {
      element.setAttribute(name, value);
    }
  }
  element.append(...children);
  return element;
}
async function call(path, body) {
  const answer = await fetch(path, body && {method: 'POST', body: JSON.stringify(body)});
  return answer.json();
}
function button(caption, work) {
  return make('button', {type: 'button', click: work}, make('span', {}, caption));
}
function box(id, caption) {
  return make('div', {class: 'line'}, make('label', {for: id}, caption), make('input', {id}));
}
function closeLists() {
  document.querySelectorAll('.choices').forEach((list) => list.remove());
}
// The list is a child of the body, so that the dialog does not cut it off.
function openList(field) {
  const place = field.getBoundingClientRect();
  const list = make('div', {class: 'choices', role: 'listbox',
                            style: `left: ${place.left}px; top: ${place.bottom}px`});
  for (const text of ['TCP', 'UDP', 'Both']) {
    list.append(make('div', {class: 'choice', role: 'option', pointerdown: () => {
      protocol = text;
      field.textContent = text;
      closeLists();
    }}, text));
  }
  document.body.append(list);
}
function dropDown(id, caption) {
  const field = make('div', {id, class: 'dropdown', tabindex: 0, role: 'combobox',
    mousedown: (event) => {
      event.preventDefault();
      closeLists();
      openList(field);
    }}, 'Please choose');
  return make('div', {class: 'line'}, make('span', {}, caption), field);
}
function valueOf(id) { return document.getElementById(id).value; }
function openDialog() {
  protocol = '';
  const fault = make('p', {class: 'fault'});
  const dialog = make('div', {class: 'dialog', role: 'dialog', 'aria-modal': 'true'},
    make('h2', {}, 'New rule'), fault, box('fwd-name', 'Name'), box('fwd-first', 'First port'),
    box('fwd-last', 'Last port'), dropDown('fwd-protocol', 'Protocol'),
    box('fwd-device', 'Device'), button('Cancel', () => backdrop.remove()),
    button('Save & Apply', async () => {
      const answer = await call('/api/rules', {name: valueOf('fwd-name'),
        first: valueOf('fwd-first'), last: valueOf('fwd-last'), protocol,
        address: valueOf('fwd-device')});
      if (answer.fault) {
        fault.textContent = answer.fault;
      } else {
        backdrop.remove();
        countDown(answer.seconds);
      }
    }));
  const backdrop = make('div', {class: 'backdrop'}, dialog);
  document.body.append(backdrop);
}
function countDown(seconds) {
  const text = make('p', {});
  const backdrop = make('div', {class: 'backdrop'}, make('div', {class: 'dialog'}, text));
  document.body.append(backdrop);
  const show = () => { text.textContent = `Applying the configuration: ${seconds} s`; };
  const clock = setInterval(async () => {
    seconds -= 1;
    show();
    if (seconds === 0) {
      clearInterval(clock);
      const answer = await call('/api/apply', {});
      backdrop.remove();
      await draw(answer.fault || 'The configuration is active.');
    }
  }, 1000);
  show();
}
async function draw(outcome) {
  rules = (await call('/api/rules')).rules;
  app.replaceChildren(make('p', {class: 'outcome'}, outcome), make('table', {},
    ...rules.map((rule) => make('tr', {}, ...Object.values(rule).map((text) =>
      make('td', {}, text))))),
    button('Add rule', openDialog), button('Save & Apply', () => draw('Nothing has changed.')));
}
document.addEventListener('pointerdown', (event) => {
  if (!event.target.closest('.choices, .dropdown')) {
    closeLists();
  }
});
draw('');
)";

const AdminSite& Site() {
  static const AdminSite site{.maker = "Halyard",
                              .product = "HY-6",
                              .colour = "#3c2d6b",
                              .menu = {{"overview", "Status"}, {kRulesPath, "Port Forwarding"}},
                              .head = R"(<style>
.backdrop { position: fixed; inset: 0; background: #0006; }
.dialog { width: 400px; margin: 40px auto; padding: 16px; background: #fff; }
.line { display: flex; justify-content: space-between; margin: 6px 0; }
.dropdown { width: 150px; padding: 3px; border: 1px solid #888; cursor: pointer; }
.choices { position: fixed; width: 150px; background: #fff; border: 1px solid #888; }
.choice { padding: 4px; cursor: pointer; }
</style>
)"};
  return site;
}

}  // namespace

HttpResponse DialogModel::Answer(const HttpRequest& request) {
  const QString path = request.path.mid(1);
  const bool is_post = request.method == "POST";
  if (path.isEmpty() || path == QLatin1String(Site().menu.first().path)) {
    return StatusPage(Site(), table_);
  }
  if (path == QLatin1String(kRulesPath)) {
    return AdminPage(Site(), u"Port Forwarding"_s,
                     u"<div id=\"app\"></div>\n<script src=\"/app.js\"></script>"_s);
  }
  if (path == "app.js"_L1) {
    return JavaScriptFile(kAppScript);
  }
  if (path == "api/rules"_L1) {
    return is_post ? Save(request) : JsonAnswer({{u"rules"_s, RulesAsJson(table_)}});
  }
  return path == "api/apply"_L1 && is_post ? Apply() : NotFound();
}

HttpResponse DialogModel::Save(const HttpRequest& request) {
  constexpr int kCountdownSeconds = 2;
  const auto rule = ReadRule(RuleFromJson(PostedJson(request)));
  if (!rule) {
    return FaultAnswer(rule.error());
  }
  saved_ = *rule;
  return JsonAnswer({{u"seconds"_s, kCountdownSeconds}});
}

HttpResponse DialogModel::Apply() {
  if (saved_) {
    const auto added = table_.Add(*std::exchange(saved_, std::nullopt));
    if (!added) {
      return FaultAnswer(added.error());
    }
  }
  return JsonAnswer({});
}

}  // namespace quayline::demo
