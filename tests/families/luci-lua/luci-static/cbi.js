// The page is a form that the server fills. A list of the known computers is put in place of the box
// for the address; its last item brings the box back. The applied changes are confirmed by a script.
function cbi_combobox(id, values, focus) {
  var box = document.getElementById(id);
  var list = document.getElementById('cbi.combobox.' + id);
  if (list) {
    return;
  }
  list = document.createElement('select');
  list.id = 'cbi.combobox.' + id;
  list.className = 'cbi-input-select';
  box.parentNode.insertBefore(list, box.nextSibling);
  var add = function(value, text) {
    var option = new Option(text, value, false, box.value == value);
    list.add(option);
  };
  if (!values[box.value]) {
    add(box.value, box.value == '' ? '-- Please choose --' : box.value);
  }
  Object.keys(values).forEach(function(value) { add(value, values[value]); });
  list.add(new Option('-- custom --', ''));
  box.style.display = 'none';
  list.addEventListener('change', function() {
    if (list.selectedIndex == list.options.length - 1) {
      box.style.display = 'inline';
      list.blur();
      list.parentNode.removeChild(list);
      box.focus();
    } else {
      box.value = list.options[list.selectedIndex].value;
    }
  });
  if (focus) {
    list.focus();
    list.blur();
  }
}

function cbi_validate_field(box) {
  var types = {portrange: /^\d{1,5}(-\d{1,5})?$/, host: /^[\w.-]+$/};
  var check = function() {
    var wrong = box.value !== '' && !types[box.dataset.type].test(box.value);
    box.classList.toggle('cbi-input-invalid', wrong);
    return !wrong;
  };
  box.addEventListener('blur', check);
  box.addEventListener('keyup', check);
  box.check = check;
}

function cbi_validate_form(form, text) {
  if (form.cbi_state == 'add-section' || form.cbi_state == 'del-section') {
    return true;
  }
  var boxes = Array.from(form.querySelectorAll('[data-type]'));
  if (!boxes.every(function(box) { return box.check(); })) {
    alert(text);
    return false;
  }
  return true;
}

function cbi_validate_reset() { return true; }

function cbi_submit(button, name) {
  var form = button.form;
  var hidden = document.createElement('input');
  hidden.type = 'hidden';
  hidden.name = name;
  hidden.value = '1';
  form.appendChild(hidden);
  if (cbi_validate_form(form, 'Some fields are invalid, cannot save values!')) {
    form.submit();
  }
}

function cbi_init(hosts, applied, token) {
  document.querySelectorAll('[data-type]').forEach(cbi_validate_field);
  var address = document.getElementById('_newfwd.intaddr');
  address.addEventListener('blur', function() { cbi_combobox('_newfwd.intaddr', hosts, true); });
  cbi_combobox('_newfwd.intaddr', hosts, false);
  // A known port proposes the rest.
  document.getElementById('_newfwd.extport').addEventListener('blur', function() {
    var name = document.getElementById('_newfwd.name');
    var inner = document.getElementById('_newfwd.intport');
    var known = {22: ['SSH', 1], 53: ['DNS', 0], 80: ['HTTP', 1], 443: ['HTTPS', 1]};
    inner.value = inner.value || this.value;
    var hint = known[this.value] || known[inner.value];
    if (hint) {
      document.getElementById('_newfwd.proto').selectedIndex = hint[1];
    }
    name.value = name.value || (hint ? hint[0] : 'Forward' + this.value);
  });
  if (applied) {
    uci_apply(token);
  }
}

function uci_status(text) {
  var place = document.getElementById('cbi-apply-status') || document.body.insertBefore(document.createElement('div'), document.body.firstChild);
  place.id = 'cbi-apply-status';
  place.className = 'cbi-apply-status';
  place.textContent = text;
}

function uci_apply(token) {
  uci_status('Starting configuration apply…');
  fetch('/cgi-bin/luci/admin/uci/apply_rollback?token=' + token, {method: 'POST'}).then(function(answer) {
    if (answer.status != 200) {
      uci_status('There are no changes to apply.');
      return;
    }
    var deadline = Date.now() + 30000;
    var clock = 0;
    var tick = function() {
      uci_status('Waiting for configuration to get applied… ' + Math.floor((deadline - Date.now()) / 1000) + 's');
      clock = setTimeout(tick, 1000);
    };
    tick();
    setTimeout(function() {
      fetch('/cgi-bin/luci/admin/uci/confirm?token=' + token, {method: 'POST'}).then(function() {
        clearTimeout(clock);
        uci_status('Configuration has been applied.');
        setTimeout(function() { location.href = '/cgi-bin/luci/admin/network/firewall/forwards'; }, 300);
      });
    }, 1000);
  });
}
