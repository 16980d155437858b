// The rules are a table that the page makes of one text; the last rows are for a new rule. A row is
// changed after a click on it. The whole text is sent when the page is saved.
var PROTOCOLS = ['TCP', 'UDP', 'Both'];

function isPort(text) {
  return /^\d+$/.test(text) && Number(text) > 0 && Number(text) < 65536;
}

function isAddress(text) {
  return /^(\d{1,3}\.){3}\d{1,3}$/.test(text) && text.split('.').every(function(part) { return part < 256; });
}

var grid = {
  setup: function() {
    this.table = document.createElement('table');
    this.table.className = 'tomato-grid';
    document.getElementById('fo-grid').appendChild(this.table);
    this.header = this.insertCells(0, ['On', 'Protocol', 'Src Address', 'Ext Ports', 'Int Port', 'Int Address', 'Description']);
    this.header.className = 'header';
    for (const text of nvram.portforward.split('>')) {
      const parts = text.match(/^(\d)<(\d)<(.*)<(.+?)<(\d*)<(.*)<(.*)$/);
      if (parts) {
        this.insertData(parts.slice(1, 8));
      }
    }
    this.newEditor = this.createEditor('new', -1, null);
    this.newControls = this.createControls('new', -1);
  },

  insertCells: function(at, cells) {
    const row = this.table.insertRow(at);
    cells.forEach(function(cell, i) {
      row.insertCell(i).className = 'co' + (i + 1);
      row.cells[i].innerHTML = cell;
    });
    return row;
  },

  view: function(data) {
    const escape = function(text) {
      return String(text).replace(/[&<>"']/g, function(c) { return '&#' + c.charCodeAt(0) + ';'; });
    };
    return [data[0] != '0' ? '&#x2b50' : '', PROTOCOLS[data[1] - 1]].concat(data.slice(2).map(escape));
  },

  insertData: function(data) {
    const row = this.insertCells(this.newEditor ? this.newEditor.rowIndex : -1, this.view(data));
    row.data = data;
    row.title = 'Click to edit';
    for (const cell of row.cells) {
      cell.onclick = function() { grid.edit(row); };
    }
    row.onmouseover = function() { grid.showPanel(row); };
  },

  showPanel: function(row) {
    const old = document.getElementById('tg-row-panel');
    old && old.remove();
    const panel = document.createElement('div');
    panel.id = 'tg-row-panel';
    panel.innerHTML = '<img src="rpx.gif" alt="" title="Delete">';
    panel.firstChild.onclick = function() { row.remove(); panel.remove(); };
    const place = row.cells[6].getBoundingClientRect();
    panel.style.left = place.right - 18 + 'px';
    panel.style.top = place.top + 'px';
    document.body.appendChild(panel);
  },

  createEditor: function(which, at, data) {
    const row = this.table.insertRow(at);
    row.className = 'editor';
    const events = ' onkeypress="return grid.key(\'' + which + '\', event)" onchange="grid.verify(grid.' + which + 'Editor, true)"';
    const box = function(number, length) {
      return '<input type="text" maxlength="' + length + '"' + events + ' class="fi' + number + '" id="_fo-grid_' + number + '">';
    };
    const cells = ['<div class="centered"><input type="checkbox"' + events + ' class="fi1" id="_fo-grid_1"></div>',
                   '<select' + events + ' class="fi2" id="_fo-grid_2">' + PROTOCOLS.map(function(name, i) {
                     return '<option value="' + (i + 1) + '">' + name + '</option>';
                   }).join('') + '</select>',
                   box(3, 32), box(4, 16), box(5, 5), box(6, 15), box(7, 32)];
    cells.forEach(function(cell, i) { row.insertCell(i).innerHTML = cell; });
    const fields = this.fields(row);
    fields[0].checked = data ? data[0] != '0' : true;
    for (let i = 1; data && i < fields.length; i++) {
      fields[i].value = data[i];
    }
    return row;
  },

  createControls: function(which, at) {
    const row = this.table.insertRow(at);
    row.className = 'controls';
    const cell = row.insertCell(0);
    cell.colSpan = 7;
    cell.innerHTML = which == 'edit'
      ? '<input type=button value="Delete" onclick="grid.remove()"> &nbsp; <input type=button value="OK" onclick="grid.ok()"> <input type=button value="Cancel" onclick="grid.cancel()">'
      : '<input type=button value="Add" onclick="grid.add()">';
    return row;
  },

  fields: function(row) { return row.querySelectorAll('input,select'); },

  edit: function(row) {
    if (this.editEditor) {
      return;
    }
    row.style.display = 'none';
    this.source = row;
    this.editEditor = this.createEditor('edit', row.rowIndex, row.data);
    this.editControls = this.createControls('edit', this.editEditor.rowIndex + 1);
    this.disableNew(true);
    this.verify(this.editEditor, true);
  },

  disableNew: function(disabled) {
    for (const row of [this.newEditor, this.newControls]) {
      this.fields(row).forEach(function(field) { field.disabled = disabled; });
    }
  },

  endEdit: function() {
    this.editEditor.remove();
    this.editControls.remove();
    this.editEditor = null;
    this.disableNew(false);
  },

  remove: function() {
    this.endEdit();
    this.source.remove();
  },

  cancel: function() {
    this.endEdit();
    this.source.style.display = '';
  },

  ok: function() {
    if (!this.verify(this.editEditor, false)) {
      return;
    }
    this.source.data = this.values(this.editEditor);
    const view = this.view(this.source.data);
    for (let i = 0; i < view.length; i++) {
      this.source.cells[i].innerHTML = view[i];
    }
    this.cancel();
  },

  values: function(row) {
    const fields = this.fields(row);
    return [fields[0].checked ? 1 : 0].concat(Array.from(fields).slice(1).map(function(field) { return field.value; }));
  },

  // "80-90" and "80:90" are a range whose start is smaller; "80,90" are two.
  verify: function(row, quiet) {
    const fields = this.fields(row);
    const isRange = function(text) {
      const ports = text.split(/[-:]/);
      return ports.length < 3 && ports.every(isPort) && (ports.length < 2 || Number(ports[0]) <= Number(ports[1]));
    };
    const fail = function(field, text) {
      field.className += ' error';
      quiet || alert(text);
      return 0;
    };
    if (!fields[3].value.split(',').every(isRange)) {
      return fail(fields[3], 'Invalid port');
    }
    fields[4].disabled = /[-:,]/.test(fields[3].value);
    if (fields[4].disabled) {
      fields[4].value = '';
    } else if (fields[4].value !== '' && !isPort(fields[4].value)) {
      return fail(fields[4], 'Invalid port');
    }
    if (!isAddress(fields[5].value.trim())) {
      return fail(fields[5], 'Invalid IP address');
    }
    fields[6].value = fields[6].value.replace(/>/g, '_');
    return 1;
  },

  key: function(which, event) {
    if (event.keyCode != 13 || event.target.tagName == 'SELECT') {
      return true;
    }
    which == 'edit' ? this.ok() : this.add();
    return false;
  },

  add: function() {
    if (!this.verify(this.newEditor, false)) {
      return;
    }
    this.insertData(this.values(this.newEditor));
    this.reset();
  },

  reset: function() {
    const fields = this.fields(this.newEditor);
    fields[0].checked = true;
    fields[1].selectedIndex = 0;
    for (let i = 2; i < fields.length; i++) {
      fields[i].value = '';
    }
  },
};

function save() {
  if (grid.editEditor) {
    return;
  }
  let text = '';
  for (const row of grid.table.rows) {
    if (row.data && row.style.display != 'none') {
      const data = row.data.slice();
      data[3] = data[3].replace(/-/g, ':');
      text += data.join('<') + '>';
    }
  }
  const form = document.getElementById('t_fom');
  form.portforward.value = text;
  send(form);
}

// Sent by a script; the boxes are disabled until the router has answered.
function send(form) {
  const message = document.getElementById('footer-msg');
  const parts = ['_ajax=1'];
  for (const element of form.elements) {
    if (element.name && !element.disabled) {
      parts.push(encodeURIComponent(element.name) + '=' + encodeURIComponent(element.value));
    }
  }
  parts.push('_http_id=' + encodeURIComponent(nvram.http_id));
  const enable = function(enabled) {
    for (const element of form.elements) {
      element.disabled = !enabled;
    }
  };
  enable(false);
  message.innerHTML = 'Saving...';
  message.style.display = 'inline-block';
  const request = new XMLHttpRequest();
  request.onreadystatechange = function() {
    if (request.readyState == 4) {
      const text = request.responseText.match(/@msg:(.+)/);
      message.innerHTML = text ? text[1] : 'Error';
      enable(true);
      setTimeout(function() { message.style.display = 'none'; }, 2000);
    }
  };
  request.open('POST', 'tomato.cgi', true);
  request.send(parts.join('&'));
}

function init() {
  grid.reset();
  // The notice at the bottom is asked for again and again.
  setInterval(function() {
    fetch('isup.jsx?_http_id=' + nvram.http_id).then(function(answer) { return answer.text(); });
  }, 5000);
}
