// Both tables are made by the page from the router's settings. Rules are entered in a dialog, changed
// in the tables alone, and sent as commands when the page is saved.
function element(id) { return document.getElementById(id); }

function openModal(id) {
  var dialog = element(id);
  var backdrop = document.createElement('div');
  backdrop.className = 'modal-backdrop fade in';
  document.body.appendChild(backdrop);
  dialog.style.display = 'block';
  dialog.offsetWidth;
  dialog.classList.add('in');
  dialog.setAttribute('aria-hidden', 'false');
}

function closeModal(id) {
  element(id).classList.remove('in');
  setTimeout(function() {
    element(id).style.display = 'none';
    element(id).setAttribute('aria-hidden', 'true');
    document.querySelectorAll('.modal-backdrop').forEach(function(part) { part.remove(); });
  }, 150);
}

function button(caption, kind, work) {
  var made = document.createElement('button');
  made.type = 'button';
  made.className = 'btn ' + kind;
  made.textContent = caption;
  made.onclick = work;
  return made;
}

function addPortFModal(isSingle) {
  var id = isSingle ? 'single_forward_modal' : 'multi_forward_modal';
  var footer = element(id).querySelector('.modal-footer');
  element(id).querySelectorAll('input').forEach(function(box) { box.value = ''; });
  element(id).querySelector('select').selectedIndex = 0;
  footer.replaceChildren(button('Add', 'btn-primary', isSingle ? addPortfRule : addPortfRangeRule),
                         button('Cancel', 'btn-danger', function() { closeModal(id); }));
  openModal(id);
}

function isPort(text) { return /^\d+$/.test(text) && Number(text) > 0 && Number(text) < 65536; }
function isIp(text) { return /^(\d{1,3}\.){3}\d{1,3}$/.test(text); }

function rowsOf(container) {
  return Array.from(element(container).querySelectorAll('tbody tr')).map(function(row) {
    return Array.from(row.cells).map(function(cell) {
      var box = cell.querySelector('input[type=checkbox]');
      return box ? box.checked : cell.textContent;
    });
  });
}

function meets(protocol, other) { return protocol == other || protocol == 'Both' || other == 'Both'; }

function fail(errors) {
  alert(errors.join('\n') + '\n\nCould not add forwarding rule.');
}

function isTaken(protocol, start, end) {
  return rowsOf('portf_table_container').some(function(row) { return meets(protocol, row[1]) && start <= row[2] && end >= row[2]; }) ||
    rowsOf('portfrange_table_container').some(function(row) {
      return meets(protocol, row[1]) && Number(row[2]) <= end && Number(row[3]) >= start;
    });
}

function addPortfRule() {
  var port = element('add_fp').value;
  if (!isPort(port) || !isIp(element('add_ip').value)) {
    return fail(['There is an error in From Port or To IP.']);
  }
  if (isTaken(element('add_prot').value, Number(port), Number(port))) {
    return fail(['Port(s) already being forwarded.']);
  }
  addRow('portf_table_container', [element('add_desc').value || '-', element('add_prot').value, port,
                                   element('add_ip').value, element('add_dp').value || port], true);
  closeModal('single_forward_modal');
}

function addPortfRangeRule() {
  var start = element('addr_sp').value;
  var end = element('addr_ep').value;
  var errors = [];
  if (!isPort(start) || !isPort(end) || !isIp(element('addr_ip').value)) {
    errors.push('There is an error in Start Port, End Port or To IP.');
  } else if (Number(start) > Number(end)) {
    errors.push('Start Port > End Port');
  } else if (isTaken(element('addr_prot').value, Number(start), Number(end))) {
    errors.push('Port(s) already being forwarded.');
  }
  if (errors.length > 0) {
    return fail(errors);
  }
  addRow('portfrange_table_container', [element('addr_desc').value || '-', element('addr_prot').value, start, end,
                                        element('addr_ip').value], true);
  closeModal('multi_forward_modal');
}

function makeTable(container, headings) {
  var table = document.createElement('table');
  table.className = 'table table-striped table-bordered';
  var row = table.createTHead().insertRow();
  headings.concat(['', '']).forEach(function(text) {
    var cell = document.createElement('th');
    cell.textContent = text;
    row.appendChild(cell);
  });
  table.createTBody();
  element(container).replaceChildren(table);
}

function addRow(container, cells, isEnabled) {
  var row = element(container).querySelector('tbody').insertRow();
  cells.forEach(function(text) { row.insertCell().textContent = text; });
  var box = document.createElement('input');
  box.type = 'checkbox';
  row.insertCell().appendChild(box);
  box.checked = isEnabled;
  row.insertCell().appendChild(button('Edit', 'btn-default btn-edit', function() {}));
  row.insertCell().appendChild(button('Remove', 'btn-default btn-remove', function() { row.remove(); }));
}

function resetData() {
  makeTable('portf_table_container', ['Description', 'Protocol', 'From Port', 'To IP', 'To Port', 'Enabled']);
  makeTable('portfrange_table_container', ['Description', 'Protocol', 'Start Port', 'End Port', 'To IP', 'Enabled']);
  uci.forEach(function(rule) {
    var ports = rule.ports.split('-');
    if (rule.shape == 'range' || ports.length > 1) {
      addRow('portfrange_table_container', [rule.name, rule.proto, ports[0], ports[1] || ports[0], rule.ip], true);
    } else {
      addRow('portf_table_container', [rule.name, rule.proto, ports[0], rule.ip, ports[0]], true);
    }
  });
}

function saveChanges() {
  var cover = document.createElement('div');
  cover.id = 'darken';
  cover.textContent = 'Please Wait While Settings Are Applied';
  document.body.appendChild(cover);
  var commands = [];
  var list = [];
  var number = 0;
  var add = function(name, protocols, ports, ip, shape) {
    list.push([name, protocols, ports, ip, shape].join('\t'));
    (protocols == 'Both' ? ['tcp', 'udp'] : [protocols.toLowerCase()]).forEach(function(protocol) {
      var id = 'firewall.redirect_enabled_number_' + number++;
      commands.push('uci set ' + id + '=redirect', 'uci set ' + id + ".name='" + name + "'", 'uci set ' + id + '.proto=' + protocol,
                    'uci set ' + id + '.src_dport=' + ports, 'uci set ' + id + '.dest_ip=' + ip);
    });
  };
  rowsOf('portf_table_container').forEach(function(row) { add(row[0], row[1], row[2], row[3], 'single'); });
  rowsOf('portfrange_table_container').forEach(function(row) { add(row[0], row[1], row[2] + '-' + row[3], row[4], 'range'); });
  commands.push('uci commit', 'sh /usr/lib/gargoyle/restart_firewall.sh');
  var request = new XMLHttpRequest();
  request.onreadystatechange = function() {
    if (request.readyState == 4) {
      cover.remove();
    }
  };
  request.open('POST', 'utility/run_commands.sh', true);
  request.setRequestHeader('Content-Type', 'application/x-www-form-urlencoded');
  // Nothing here runs the commands: the list says the same.
  request.send(new URLSearchParams({commands: commands.join('\n'), hash: 'x', list: list.join('\n')}).toString());
}
