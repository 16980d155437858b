// One page that draws itself; the addresses of its calls hold the number of the session.
(function () {
  "use strict";
  var stok = "";
  var rules = [];
  var app = document.getElementById("app");

  function make(tag, className, text, parent) {
    var element = document.createElement(tag);
    element.className = className;
    element.textContent = text || "";
    if (parent) {
      parent.appendChild(element);
    }
    return element;
  }
  function call(path, values) {
    return fetch("/cgi-bin/luci/;stok=" + stok + "/" + path, {
      method: "POST",
      body: new URLSearchParams(values)
    }).then(function (response) { return response.json(); });
  }
  // What the boxes hold is known from their events only.
  function box(parent, label, type, model, member) {
    var item = make("div", "su-form-item", "", parent);
    make("div", "su-form-item__label", label, item);
    var input = make("input", "su-input__content", "", make("div", "su-input", "", item));
    input.type = type;
    input.addEventListener("input", function () { model[member] = input.value; });
    return item;
  }

  function showLogin() {
    var model = {password: ""};
    app.textContent = "";
    var page = make("div", "login-page", "", app);
    make("div", "login-title", "Log in with your local password", page);
    box(page, "Password", "password", model, "password");
    var button = make("button", "su-button", "Log In", page);
    button.type = "button";
    button.onclick = function () {
      var key = model.password.split("").reverse().join("");
      call("login?form=login", {operation: "login", password: key}).then(function (answer) {
        if (answer.success) {
          stok = answer.data.stok;
          showFrame();
        } else {
          make("div", "su-error", "The password is incorrect.", page);
        }
      });
    };
  }

  function showFrame() {
    app.textContent = "";
    var tabs = make("div", "su-tabs", "", app);
    var body = make("div", "su-body", "", app);
    make("span", "su-menu__tab", "Network Map", tabs).onclick = function () { body.textContent = "Internet"; };
    make("span", "su-menu__tab", "Advanced", tabs).onclick = function () { showAdvanced(body); };
    body.textContent = "Internet";
  }
  function showAdvanced(body) {
    body.textContent = "";
    var menu = make("ul", "su-menu", "", body);
    var content = make("div", "su-content", "", body);
    var names = {"Network": ["Status", "Internet"], "NAT Forwarding": ["Port Forwarding", "Port Triggering", "UPnP", "DMZ"]};
    Object.keys(names).forEach(function (name) {
      var item = make("li", "su-menu__group", "", menu);
      var list = null;
      make("div", "su-menu__item", name, item).onclick = function () {
        if (list) {
          list.remove();
          list = null;
          return;
        }
        list = make("div", "su-menu__list", "", item);
        names[name].forEach(function (page) {
          make("div", "su-menu__item", page, list).onclick = function () {
            content.textContent = "";
            if (page === "Port Forwarding") {
              showRules(content);
            } else {
              make("h2", "su-title", page + " is off", content);
            }
          };
        });
      };
    });
  }

  function showRules(content) {
    make("h2", "su-panel__note", "Specify port forwarding rules to make your local services reachable.", content);
    var add = make("button", "su-button", "", content);
    add.type = "button";
    make("i", "su-icon", "", add);
    make("span", "su-button__text", "Add", add);
    add.onclick = function () { showDialog(content); };
    var table = make("table", "su-table", "", content);
    var head = make("tr", "", "", make("thead", "", "", table));
    ["Service Name", "Device IP Address", "External Port", "Internal Port", "Protocol", "Status", "Modify"].forEach(
      function (text) { make("th", "su-table__cell", text, head); });
    var rows = make("tbody", "", "", table);
    call("admin/nat?form=vs", {operation: "load"}).then(function (answer) {
      rules = answer.data;
      rules.forEach(function (rule, index) {
        var row = make("tr", "su-table__row", "", rows);
        [rule.name, rule.ipaddr, rule.external_port, rule.internal_port, rule.protocol].forEach(function (text) {
          make("td", "su-table__cell", text, row);
        });
        make("div", "su-switch" + (rule.enable === "on" ? " is-on" : ""), "", make("td", "su-table__cell", "", row));
        var tools = make("td", "su-table__cell", "", row);
        make("i", "su-icon icon-edit", "", tools);
        make("i", "su-icon icon-trash", "", tools).onclick = function () {
          askToDelete(function () {
            call("admin/nat?form=vs", {operation: "remove", index: index}).then(function () { again(content); });
          });
        };
      });
    });
  }
  function askToDelete(remove) {
    var mask = make("div", "su-mask", "", document.body);
    var dialog = make("div", "su-dialog", "", mask);
    make("div", "su-dialog__title", "Are you sure you want to delete this entry?", dialog);
    var buttons = make("div", "su-dialog__footer", "", dialog);
    make("button", "su-button", "CANCEL", buttons).onclick = function () { mask.remove(); };
    make("button", "su-button", "DELETE", buttons).onclick = function () {
      mask.remove();
      remove();
    };
  }
  function again(content) {
    content.textContent = "";
    showRules(content);
  }

  function showDialog(content) {
    var model = {name: "", ipaddr: "", external_port: "", internal_port: "", protocol: "All", range: false};
    var mask = make("div", "su-mask", "", document.body);
    var dialog = make("div", "su-dialog", "", mask);
    make("div", "su-dialog__title", "Add a Port Forwarding Entry", dialog);
    box(dialog, "Service Name", "text", model, "name");
    box(dialog, "Device IP Address", "text", model, "ipaddr");
    var kinds = make("div", "su-radio-group", "", dialog);
    ["Individual Port", "Port Range"].forEach(function (text, number) {
      var kind = make("label", "su-radio" + (number === 0 ? " is-checked" : ""), "", kinds);
      var radio = make("input", "", "", kind);
      radio.type = "radio";
      radio.name = "kind";
      radio.checked = number === 0;
      make("span", "su-radio__label", text, kind);
      radio.addEventListener("change", function () {
        model.range = number === 1;
        Array.from(kinds.children).forEach(function (other) { other.classList.toggle("is-checked", other === kind); });
        inner.style.display = model.range ? "none" : "";
      });
    });
    box(dialog, "External Port", "text", model, "external_port");
    var inner = box(dialog, "Internal Port", "text", model, "internal_port");
    var item = make("div", "su-form-item", "", dialog);
    make("div", "su-form-item__label", "Protocol", item);
    var select = make("div", "su-select", "", item);
    var shown = make("span", "su-select__text", "All", select);
    select.onclick = function () {
      var list = make("ul", "su-select-dropdown", "", document.body);
      ["All", "TCP", "UDP"].forEach(function (text) {
        make("li", "su-select-dropdown__item", text, list).onclick = function () {
          model.protocol = text;
          shown.textContent = text;
          list.remove();
        };
      });
    };
    var error = make("div", "su-error", "", dialog);
    var buttons = make("div", "su-dialog__footer", "", dialog);
    make("button", "su-button", "CANCEL", buttons).onclick = function () { mask.remove(); };
    make("button", "su-button", "SAVE", buttons).onclick = function () {
      var isPort = /^\d{1,5}$/.test(model.external_port);
      var isRange = /^\d{1,5}-\d{1,5}$/.test(model.external_port);
      error.textContent = model.name === "" ? "This field is required." :
        !/^(\d{1,3}\.){3}\d{1,3}$/.test(model.ipaddr) ? "Invalid IP address." :
        model.range ? (isRange ? "" : "Invalid port range.") : (isPort ? "" : "Invalid port.");
      if (error.textContent !== "") {
        return;
      }
      call("admin/nat?form=vs", {operation: "insert", name: model.name, ipaddr: model.ipaddr,
        external_port: model.external_port, internal_port: model.internal_port || model.external_port,
        protocol: model.protocol.toUpperCase(), enable: "on"}).then(function (answer) {
          if (answer.success) {
            mask.remove();
            again(content);
          } else {
            error.textContent = "The port conflicts with that of another rule.";
          }
        });
    };
  }
  showLogin();
})();
