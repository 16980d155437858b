// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/singlepage_model.h"

#include <QRandomGenerator>

#include "demo/admin_page.h"
#include "demo/json_api.h"

namespace quayline::demo {

namespace {

using namespace Qt::StringLiterals;

constexpr char kAppScript[] = R"(
const main = document.getElementById('app');
let drawIsDue = false;
let draw = () => {};
function drawSoon() {
  if (!drawIsDue) {
    drawIsDue = true;
    queueMicrotask(() => { drawIsDue = false; draw(); });
  }
}
async function call(method, path, body) {
  const answer = await fetch('/api/' + path, {method, body: body && JSON.stringify(body),
    headers: {Authorization: 'Bearer ' + sessionStorage.getItem('token')}});
  if (answer.status === 401) {
    sessionStorage.removeItem('token');
    location.hash = '#/login';
  }
  return answer.json();
}
// The box shows what the state holds. What a script writes into the box is noted, as if the state
// had been drawn; an input event counts only where the value differs from the note.
function control(box, state, key) {
  const value = Object.getOwnPropertyDescriptor(Object.getPrototypeOf(box), 'value');
  let note = '';
  Object.defineProperty(box, 'value', {
    configurable: true,
    get() { return value.get.call(box); },
    set(text) { note = String(text); value.set.call(box, text); },
  });
  const take = () => {
    const text = value.get.call(box);
    if (text !== note) {
      note = text;
      state[key] = text;
      drawSoon();
    }
  };
  box.addEventListener('input', take);
  box.addEventListener('change', take);
  return () => {
    if (value.get.call(box) !== state[key]) {
      box.value = state[key];
    }
  };
}
function controls(root, state) {
  const draws = Object.keys(state).map((key) =>
    control(root.querySelector(`[data-key=${key}]`), state, key));
  return () => draws.forEach((drawBox) => drawBox());
}
function showLogin() {
  const state = {user: '', word: ''};
  main.innerHTML = '<p>User <input id="user" data-key="user"></p>' +
    '<p>Password <input type="password" id="word" data-key="word"></p>' +
    '<button>Sign in</button><p class="fault"></p>';
  draw = controls(main, state);
  main.querySelector('button').onclick = async () => {
    const answer = await call('POST', 'login', state);
    if (answer.token) {
      sessionStorage.setItem('token', answer.token);
      location.hash = '#/rules';
    } else {
      main.querySelector('.fault').textContent = answer.fault;
    }
  };
}
async function showList() {
  const answer = await call('GET', 'rules');
  main.replaceChildren();
  const table = main.appendChild(document.createElement('table'));
  for (const rule of answer.rules || []) {
    const row = table.insertRow(-1);
    Object.values(rule).forEach((text) => row.insertCell(-1).append(text));
  }
}
class RuleEditor extends HTMLElement {
  connectedCallback() {
    const root = this.attachShadow({mode: 'open'});
    const state = {name: '', first: '', last: '', protocol: 'tcp', address: ''};
    root.innerHTML = '<p>Name <input id="rule-name" data-key="name"></p>' +
      '<p>Ports <input id="rule-first" data-key="first"> to ' +
      '<input id="rule-last" data-key="last"></p>' +
      '<p>Protocol <select id="rule-protocol" data-key="protocol"><option value="tcp">TCP' +
      '<option value="udp">UDP<option value="both">Both</select></p>' +
      '<p>Address <input id="rule-address" data-key="address"></p>' +
      '<button id="add">Add</button><p id="fault"></p>';
    const drawBoxes = controls(root, state);
    draw = () => {
      drawBoxes();
      root.getElementById('add').disabled = !(state.name && state.first && state.address);
    };
    root.getElementById('add').onclick = async () => {
      const answer = await call('POST', 'changes', state);
      if (answer.fault) {
        root.getElementById('fault').textContent = answer.fault;
        return;
      }
      Object.assign(state, {name: '', first: '', last: '', protocol: 'tcp', address: ''});
      draw();
      document.getElementById('changes').textContent = answer.pending + ' pending changes';
    };
    draw();
  }
}
customElements.define('rule-editor', RuleEditor);
function showEditor() {
  main.innerHTML = '<rule-editor></rule-editor><p id="changes"></p>' +
    '<div role="button" tabindex="0" class="commit">Commit changes</div>';
  main.querySelector('.commit').addEventListener('click', async () => {
    const answer = await call('POST', 'commit', {});
    if (answer.fault) {
      document.getElementById('changes').textContent = answer.fault;
    } else {
      location.hash = '#/rules';
    }
  });
}
function route() {
  draw = () => {};
  if (location.hash === '#/login' || !sessionStorage.getItem('token')) {
    showLogin();
  } else if (location.hash === '#/rules/new') {
    showEditor();
  } else {
    showList();
  }
}
window.addEventListener('hashchange', route);
route();
)";

const AdminSite& Site() {
  static const AdminSite site{.maker = "Tidewell",
                              .product = "TW-7",
                              .colour = "#0a5a52",
                              .menu = {{"#/rules", "Port Forwarding"}, {"#/rules/new", "New Rule"}},
                              .head = R"(<style>
.commit { display: inline-block; padding: 6px 12px; background: #0a5a52; color: #fff; }
</style>
)"};
  return site;
}

}  // namespace

HttpResponse SinglepageModel::Answer(const HttpRequest& request) {
  const QString path = request.path.mid(1);
  if (path.isEmpty()) {
    return AdminPage(Site(), u"Console"_s,
                     u"<div id=\"app\"></div>\n<script src=\"/app.js\"></script>"_s);
  }
  if (path == "app.js"_L1) {
    return JavaScriptFile(kAppScript);
  }
  if (path == "api/login"_L1 && request.method == "POST") {
    return LogIn(request);
  }
  if (!path.startsWith("api/"_L1)) {
    return NotFound();
  }
  return HasToken(request) ? AnswerCall(path.mid(4), request)
                           : JsonAnswer({{u"fault"_s, u"Please sign in."_s}}, 401);
}

HttpResponse SinglepageModel::AnswerCall(const QString& path, const HttpRequest& request) {
  const bool is_post = request.method == "POST";
  if (path == "rules"_L1 && !is_post) {
    return JsonAnswer({{u"rules"_s, RulesAsJson(table_)}});
  }
  if (path == "changes"_L1 && is_post) {
    const auto rule = ReadRule(RuleFromJson(PostedJson(request)));
    if (!rule) {
      return FaultAnswer(rule.error());
    }
    pending_.append(*rule);
    return JsonAnswer({{u"pending"_s, pending_.size()}});
  }
  return path == "commit"_L1 && is_post ? Commit() : NotFound();
}

HttpResponse SinglepageModel::LogIn(const HttpRequest& request) {
  const QJsonObject posted = PostedJson(request);
  if (posted.value("user"_L1).toString() != login_.user ||
      posted.value("word"_L1).toString() != login_.password) {
    return JsonAnswer({{u"fault"_s, u"User or password are wrong."_s}}, 403);
  }
  token_ = QByteArray::number(QRandomGenerator::system()->generate64(), 16);
  return JsonAnswer({{u"token"_s, QString::fromLatin1(token_)}});
}

HttpResponse SinglepageModel::Commit() {
  for (const Rule& rule : std::exchange(pending_, {})) {
    if (const auto added = table_.Add(rule); !added) {
      return FaultAnswer(added.error());
    }
  }
  return JsonAnswer({});
}

bool SinglepageModel::HasToken(const HttpRequest& request) const {
  return !token_.isEmpty() && request.Header("authorization") == "Bearer " + token_;
}

}  // namespace quayline::demo
