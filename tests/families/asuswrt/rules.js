// The rules of the page: a list in one text of the router's memory, edited in a panel that fades in.
// Each change sends the whole list at once by a script.
var rules = [];
var vts_enable_current = '0';

function element(id) { return document.getElementById(id); }

function makeSwitch() {
  var knob = element('radio_VTS_enable');
  knob.textContent = vts_enable == '1' ? 'ON' : 'OFF';
  knob.onclick = function() { applyRule(vts_enable == '1' ? 0 : 1); };
}

function initial() {
  vts_rulelist.split('<').forEach(function(text) {
    if (text !== '') {
      var cells = text.split('>');
      rules.push({name: cells[0], ports: cells[1].replace('-', ':'), address: cells[2], inner: cells[3],
                  protocol: cells[4], source: cells[5] || ''});
    }
  });
  showRules();
  element('vts_rulelist_Table_0').innerHTML = '<table width="100%" class="FormTable_table"><thead><tr>' +
    '<td colspan="8">Port Forwarding List (Max Limit : 64)</td></tr></thead><tr>' +
    ['Service Name', 'External Port', 'Internal Port', 'Internal IP Address', 'Protocol', 'Source IP', 'Edit', 'Delete']
      .map(function(text) { return '<th>' + text + '</th>'; }).join('') + '</tr></table>';
  vts_enable_current = vts_enable;
  // The clients of the network are fetched later.
  setTimeout(function() {
    fetch('/update_clients.asp').then(function(answer) { return answer.text(); });
  }, 1000);
}

function showRules() {
  var escape = function(text) { return text.replace(/[&<>"]/g, function(c) { return '&#' + c.charCodeAt(0) + ';'; }); };
  var cells = function(rule) {
    return [rule.name, rule.ports, rule.inner, rule.address, rule.protocol, rule.source]
      .map(function(text) { return '<td>' + escape(text) + '</td>'; }).join('');
  };
  element('vts_rulelist_Block_0').innerHTML = '<table width="100%" class="list_table">' + (rules.length == 0
    ? '<tr><td style="color:#FFCC00;" colspan="8">No data in table.</td></tr>'
    : rules.map(function(rule, i) {
        return '<tr row_tr_idx="' + i + '">' + cells(rule) +
          '<td><input class="edit_btn" onclick="editProfile(\'edit\', this);" value=""/></td>' +
          '<td><input class="remove_btn" onclick="del_Row(this);" value=""/></td></tr>';
      }).join('')) + '</table>';
}

function fade(panel, from, to, done) {
  var step = 0;
  panel.style.display = 'block';
  var clock = setInterval(function() {
    step += 1;
    panel.style.opacity = from + (to - from) * step / 10;
    if (step == 10) {
      clearInterval(clock);
      panel.style.display = to == 0 ? 'none' : 'block';
      done && done();
    }
  }, 30);
}

function editProfile(mode, button) {
  if (mode == 'new' && rules.length >= 64) {
    alert('This table only allow 64 items!');
    return false;
  }
  var row = mode == 'edit' ? button.closest('[row_tr_idx]').getAttribute('row_tr_idx') : rules.length;
  var rule = mode == 'edit' ? rules[row] : {name: '', ports: '', address: '', inner: '', protocol: 'TCP', source: ''};
  element('vts_desc_x').value = rule.name;
  element('vts_proto_x').value = rule.protocol;
  element('vts_port_x').value = rule.ports;
  element('vts_lport_x').value = rule.inner;
  element('vts_ipaddr_x').value = rule.address;
  element('vts_target_x').value = rule.source;
  element('saveProfile').onclick = function() { saveProfile(mode, row); };
  fade(element('profile_setting'), 0, 1);
}

function isPort(text) { return /^\d+$/.test(text) && Number(text) > 0 && Number(text) < 65536; }

function fail(box, text) {
  alert(text);
  box.focus();
  return false;
}

// A single port, or a range whose end is greater.
function checkPorts(box) {
  var parts = box.value.replace(/[-~]/g, ':').split(',');
  for (var i = 0; i < parts.length; i++) {
    var ports = parts[i].trim().split(':');
    if (ports[0] === '') {
      return fail(box, 'Fields cannot be blank.');
    }
    if (!ports.every(isPort) || ports.length > 2 || (ports.length == 2 && Number(ports[0]) >= Number(ports[1]))) {
      return fail(box, 'This is not a valid port or range of ports.');
    }
  }
  return true;
}

function saveProfile(mode, row) {
  var name = element('vts_desc_x');
  var port = element('vts_port_x');
  var address = element('vts_ipaddr_x');
  if (/[<>'%]/.test(name.value)) {
    return fail(name, 'The characters < > \' % are not allowed.');
  }
  if (!checkPorts(port)) {
    return false;
  }
  if (address.value === '') {
    return fail(address, 'Fields cannot be blank.');
  }
  if (!/^(\d{1,3}\.){3}\d{1,3}$/.test(address.value)) {
    return fail(address, address.value + ' is not a valid IP address.');
  }
  var rule = {name: name.value, ports: port.value, address: address.value, inner: element('vts_lport_x').value,
              protocol: element('vts_proto_x').value, source: element('vts_target_x').value};
  var isSame = rules.some(function(other, i) {
    return (mode == 'new' || i != row) && other.ports == rule.ports && other.source == rule.source &&
      (other.protocol == rule.protocol || other.protocol == 'BOTH' || rule.protocol == 'BOTH');
  });
  if (isSame) {
    return fail(port, 'This entry has been in list.');
  }
  rules[row] = rule;
  showRules();
  sendRules();
  fade(element('profile_setting'), 1, 0);
}

function cancelProfile() { fade(element('profile_setting'), 1, 0); }
function hideClients_Block() { element('ClientList_Block').style.display = 'none'; }

function del_Row(button) {
  if (!confirm('Are you sure you want to delete?')) {
    return false;
  }
  rules.splice(button.closest('[row_tr_idx]').getAttribute('row_tr_idx'), 1);
  showRules();
  sendRules();
}

function sendRules() {
  var list = rules.map(function(rule) {
    return '<' + [rule.name, rule.ports, rule.address, rule.inner, rule.protocol, rule.source].join('>');
  }).join('');
  send({action_mode: 'apply', rc_service: 'restart_firewall', vts_rulelist: list});
}

function send(values) {
  var request = new XMLHttpRequest();
  request.open('GET', '/applyapp.cgi?' + new URLSearchParams(values), true);
  request.send();
}

function applyRule(state) {
  send({action_mode: 'apply', rc_service: 'restart_firewall', vts_enable_x: state});
  showLoading();
  document.form.submit();
}

// The router answers into a hidden frame, which then says how long its page is to be waited for.
function showLoading(seconds) {
  element('Loading').style.display = 'block';
  var text = element('proceeding_main_txt');
  text.textContent = 'Applying Settings...';
  if (seconds) {
    var percent = 0;
    var clock = setInterval(function() {
      percent += 100 / seconds / 5;
      text.textContent = 'Applying Settings... ' + Math.min(100, Math.round(percent)) + '%';
      if (percent >= 100) {
        clearInterval(clock);
        location.href = 'Advanced_VirtualServer_Content.asp';
      }
    }, 200);
  }
}
