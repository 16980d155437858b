// A grid whose rows are fetched, with a dialog for a rule. A list is hidden behind a drop-down of
// its own; boxes for addresses and ports have a list in front of them, which hides them while it has
// what they hold. The titles of buttons are taken away for hints that look better.
const FIELDS = [
  ['disabled', 'Disabled', 'checkbox'], ['sequence', 'Sequence', 'text', 'advanced'], ['descr', 'Description', 'text'],
  ['interface', 'Interface', 'select_multiple', ['lan|LAN', 'wan|WAN']],
  ['ipprotocol', 'Version', 'dropdown', ['|any', 'inet|IPv4', 'inet6|IPv6']],
  ['protocol', 'Protocol', 'dropdown', ['|any', 'TCP|TCP', 'UDP|UDP', 'TCP/UDP|TCP/UDP', 'ICMP|ICMP']],
  ['source.network', 'Source Address', 'net', ['any|any', 'lan|LAN net', 'wanip|WAN address']],
  ['source.port', 'Source Port', 'net', ['any|any', 'http|http']],
  ['destination.network', 'Destination Address', 'net', ['any|any', 'lan|LAN net', 'lanip|LAN address', 'wanip|WAN address']],
  ['destination.port', 'Destination Port', 'net', ['any|any', 'http|http', 'https|https']],
  ['target', 'Redirect Target IP', 'net', ['lanip|LAN address']],
  ['local-port', 'Redirect Target Port', 'net', ['any|any', 'http|http', 'https|https']],
  ['log', 'Log', 'checkbox'],
  ['natreflection', 'NAT Reflection', 'dropdown', ['|Use system default', 'purenat|Enable'], 'advanced'],
  ['pass', 'Firewall rule', 'dropdown', ['|Manual', 'pass|Pass', 'rule|Register rule']],
];
const OWN = '<<empty_item>>';

const byId = (id) => document.getElementById(id);

async function call(path, body) {
  const headers = {'X-CSRFToken': document.querySelector('meta[name=csrf]').content, 'Content-Type': 'application/json'};
  const answer = await fetch(path, body ? {method: 'POST', headers, body: JSON.stringify(body)} : {headers});
  return answer.json();
}

function make(tag, attributes = {}, ...children) {
  const node = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    node.setAttribute(name, value);
  }
  node.append(...children);
  return node;
}

function listOf(id, texts, multiple) {
  const list = make('select', id ? {id} : {});
  list.multiple = multiple;
  texts.forEach((text) => list.add(new Option(text.split('|')[1], text.split('|')[0])));
  // The drop-down that is shown in place of the list.
  list.classList.add('bs-select-hidden');
  const caption = make('button', {type: 'button', class: 'btn dropdown-toggle', 'aria-haspopup': 'listbox'});
  const menu = make('ul', {class: 'dropdown-menu', role: 'listbox'});
  const show = () => {
    caption.textContent = Array.from(list.selectedOptions, (option) => option.text).join(', ') || 'Nothing selected';
  };
  caption.addEventListener('click', () => {
    menu.replaceChildren(...Array.from(list.options, (option) => {
      const item = make('li', {}, make('a', {role: 'option'}, option.text));
      item.addEventListener('click', () => {
        multiple ? option.selected = !option.selected : list.value = option.value;
        list.dispatchEvent(new Event('change', {bubbles: true}));
        menu.classList.remove('open');
      });
      return item;
    }));
    menu.classList.toggle('open');
  });
  list.addEventListener('change', show);
  list.refresh = show;
  show();
  return make('div', {class: 'dropdown bootstrap-select'}, list, caption, menu);
}

function netField(id, texts) {
  const holder = listOf('', [OWN + '|Single host or Network', ...texts], false);
  const list = holder.querySelector('select');
  const box = make('input', {id, type: 'text', style: 'display:none'});
  list.setAttribute('for', id);
  list.addEventListener('change', () => {
    if (list.value === OWN) {
      box.style.display = '';
    } else {
      box.value = list.value;
      box.style.display = 'none';
    }
  });
  box.addEventListener('change', () => {
    const isKnown = Array.from(list.options).some((option) => option.value === box.value);
    list.value = isKnown ? box.value : OWN;
    box.style.display = isKnown ? 'none' : '';
    list.refresh();
  });
  return make('div', {}, make('table', {style: 'max-width: 348px'}, make('tr', {}, make('td', {}, holder)), make('tr', {}, make('td', {}, box))));
}

function fieldOf([name, label, kind, choices]) {
  const id = 'rule.' + name;
  if (kind === 'checkbox' || kind === 'text') {
    return make('input', {type: kind, id, 'aria-label': label});
  }
  return kind === 'net' ? netField(id, choices) : make('div', {id: 'select_' + id}, listOf(id, choices, kind === 'select_multiple'));
}

function makeForm() {
  const table = make('table', {class: 'table table-striped'});
  for (const field of FIELDS) {
    const row = make('tr', {id: 'row_rule.' + field[0]}, make('td', {}, make('div', {class: 'control-label'}, make('b', {}, field[1]))),
                     make('td', {}, fieldOf(field)), make('td', {}, make('span', {class: 'help-block', id: 'help_block_rule.' + field[0]})));
    if (field.includes('advanced')) {
      row.dataset.advanced = 'true';
    }
    table.append(row);
  }
  byId('frm_dialog_dialogDNatRule').replaceChildren(table);
}

function openModal(dialog) {
  document.body.append(make('div', {class: 'modal-backdrop'}));
  dialog.style.display = 'block';
  dialog.offsetWidth;
  dialog.classList.add('in');
}

function closeModal(dialog) {
  dialog.classList.remove('in');
  document.querySelectorAll('.modal-backdrop').forEach((part) => part.remove());
  setTimeout(() => { dialog.style.display = 'none'; }, 150);
}

// The values of a new rule come from the router.
async function addRule() {
  const values = (await call('/api/firewall/d_nat/get_rule/')).rule;
  for (const [name, , kind] of FIELDS) {
    const field = byId('rule.' + name);
    if (kind === 'checkbox') {
      field.checked = values[name] === '1';
    } else if (kind === 'select_multiple') {
      Array.from(field.options).forEach((option) => { option.selected = (values[name] || '').split(',').includes(option.value); });
      field.refresh();
    } else {
      field.value = values[name] || '';
      field.dispatchEvent(new Event('change'));
    }
  }
  openModal(byId('dialog_dialogDNatRule'));
}

async function saveRule() {
  const rule = {};
  for (const [name, , kind] of FIELDS) {
    const field = byId('rule.' + name);
    const value = kind === 'checkbox' ? (field.checked ? '1' : '0')
      : kind === 'select_multiple' ? Array.from(field.selectedOptions, (option) => option.value).join(',') : field.value;
    const [outer, inner] = name.split('.');
    rule[outer] = inner ? {...rule[outer], [inner]: value} : value;
    byId('help_block_rule.' + name).textContent = '';
  }
  byId('btn_dialog_dialogDNatRule_save_progress').className = 'fa fa-spinner fa-pulse';
  const isPorts = /^\d+(-\d+)?$/.test(rule.destination.port);
  if (!isPorts || !/^\d+$/.test(rule['local-port'])) {
    byId('help_block_rule.' + (isPorts ? 'local-port' : 'destination.port')).textContent = 'Please specify a valid port number, well-known name, alias or range.';
  } else {
    await call('/api/firewall/d_nat/add_rule/', {rule});
    closeModal(byId('dialog_dialogDNatRule'));
    await loadRows();
    byId('change_message_base_form').style.display = '';
  }
  byId('btn_dialog_dialogDNatRule_save_progress').className = '';
}

// A question in a dialog of its own.
function ask(text, work) {
  const dialog = make('div', {class: 'modal fade bootstrap-dialog', role: 'dialog'});
  const yes = make('button', {class: 'btn btn-danger'}, 'Yes');
  const no = make('button', {class: 'btn btn-default'}, 'Cancel');
  dialog.append(make('div', {class: 'modal-dialog'}, make('div', {class: 'modal-body'}, text), make('div', {class: 'modal-footer'}, yes, no)));
  document.body.append(dialog);
  yes.onclick = () => { closeModal(dialog); work(); };
  no.onclick = () => closeModal(dialog);
  openModal(dialog);
}

async function loadRows() {
  const rows = (await call('/api/firewall/d_nat/search_rule/', {current: 1, rowCount: 500})).rows;
  const cell = (name, ...children) => make('div', {class: 'tabulator-cell', role: 'gridcell', 'tabulator-field': name}, ...children);
  const headings = ['', 'Enabled', 'Interface', 'Protocol', 'Source', 'Port', 'Destination', 'Port', 'Redirect Target IP', 'Redirect Target Port', 'Description', 'Commands'];
  byId('dialogDNatRule').replaceChildren(
    make('div', {class: 'tabulator-header', role: 'rowgroup'}, make('div', {class: 'tabulator-headers', role: 'row'},
      ...headings.map((text) => make('div', {class: 'tabulator-col', role: 'columnheader'}, text)))),
    make('div', {class: 'tabulator-tableholder'}, make('div', {class: 'tabulator-table', role: 'rowgroup'}, ...rows.map((row) => {
      const button = (kind, title, work) => {
        const made = make('button', {type: 'button', title, class: `btn btn-xs btn-default bootgrid-tooltip command-${kind}`, 'data-row-id': row.uuid}, make('span', {class: 'fa'}));
        made.addEventListener('click', work);
        return made;
      };
      return make('div', {class: 'tabulator-row tabulator-selectable', role: 'row'}, cell('sel', make('input', {type: 'checkbox', class: 'select-box'})),
        cell('disabled', make('span', {class: 'fa fa-fw fa-check-square-o command-toggle', title: 'Enabled'})), cell('interface', 'WAN'),
        cell('protocol', row.protocol), cell('source.network', '*'), cell('source.port', '*'), cell('destination.network', 'WAN address'),
        cell('destination.port', row.port), cell('target', row.target), cell('local-port', row['local-port']), cell('descr', row.descr),
        cell('commands', button('edit', 'Edit', () => {}), button('copy', 'Clone', () => {}), button('delete', 'Delete', () => ask('Remove selected item(s)?', async () => {
          await call('/api/firewall/d_nat/del_rule/' + row.uuid, {uuid: row.uuid});
          await loadRows();
        }))));
    }))));
  hints();
}

function hints() {
  document.querySelectorAll('.bootgrid-tooltip[title]').forEach((element) => {
    if (element.title) {
      element.dataset.originalTitle = element.title;
      element.title = '';
    }
  });
}

async function startPage() {
  const apply = byId('reconfigureAct');
  makeForm();
  apply.append(make('b', {}, apply.dataset.label), ' ', make('i', {class: 'reload_progress'}));
  apply.addEventListener('click', async () => {
    apply.querySelector('i').className = 'reload_progress fa fa-spinner fa-pulse';
    await call(apply.dataset.endpoint, {});
    apply.querySelector('i').className = 'reload_progress';
    byId('change_message_base_form').style.display = 'none';
    await loadRows();
  });
  document.querySelector('.command-add').addEventListener('click', addRule);
  byId('btn_dialog_dialogDNatRule_save').addEventListener('click', saveRule);
  document.querySelectorAll('[data-dismiss=modal]').forEach((button) => button.addEventListener('click', () => closeModal(button.closest('.modal'))));
  await loadRows();
}
