// The page of the port forwards. Changes are kept by the router until they are applied, which is
// confirmed some seconds later: so the router can take back a change that cuts off the browser.
const ROLLBACK_SECONDS = 90;
const HOLDOFF_MS = 3000;
const DISPLAY_MS = 300;
const NAMES = {tcp: 'TCP', udp: 'UDP', icmp: 'ICMP', all: 'Any'};

let redirects = [];
let hints = {};

async function load() {
  const [config, hosts] = await Promise.all([
    call('uci', 'get', {config: 'firewall'}),
    call('luci-rpc', 'getHostHints'),
  ]);
  redirects = Object.values(config.values).filter((section) => section['.type'] === 'redirect');
  hints = hosts;
}

function zone(name) {
  return make('span', {class: 'zonebadge'}, name ? make('strong', {}, name) : make('em', {}, 'this device'));
}

function matchText(rule) {
  const names = rule.proto.split(' ').map((each) => make('var', {}, NAMES[each]));
  return make('small', {}, 'Incoming ', make('var', {}, 'IPv4'), ', protocol ',
    names.flatMap((each, i) => i > 0 ? [', ', each] : [each]), make('br'), 'From ', zone(rule.src),
    make('br'), 'To ', zone(''), ', port ', make('var', {}, rule.src_dport), make('br'));
}

function actionText(rule) {
  return make('small', {}, make('var', {'data-tooltip': 'DNAT'}, 'Forward'), ' to ', zone(rule.dest),
    ' IP ', make('var', {}, rule.dest_ip),
    ...(rule.dest_port ? [' port ', make('var', {}, rule.dest_port)] : []));
}

function rowOf(rule) {
  const sid = rule['.name'];
  const enabled = make('input', {type: 'checkbox', id: `widget.cbid.firewall.${sid}.enabled`,
                                 name: `cbid.firewall.${sid}.enabled`});
  enabled.checked = rule.enabled !== '0';
  const cell = (...children) => make('td', {class: 'td cbi-value-field'}, ...children);
  const button = (caption, kind, work) => make('button', {title: caption,
    class: `btn cbi-button cbi-button-${kind}`, click: handler(work)}, caption);
  return make('tr', {id: `cbi-firewall-${sid}`, class: 'tr cbi-section-table-row', 'data-sid': sid},
    cell(rule.name || 'Unnamed forward'), cell(matchText(rule)), cell(actionText(rule)),
    cell(make('div', {class: 'cbi-checkbox'}, enabled)),
    make('td', {class: 'td cbi-section-table-cell nowrap cbi-section-actions'}, make('div', {},
      make('button', {title: 'Drag to reorder', class: 'cbi-button drag-handle center'}, '☰'),
      button('Edit', 'edit', () => edit(rule)), button('Clone', 'neutral', () => {}),
      button('Delete', 'remove', () => remove(sid)))));
}

function draw() {
  const headings = ['Name', 'Match', 'Action', 'Enable'].map((text) => make('th', {class: 'th'}, text));
  const rows = redirects.length ? redirects.map(rowOf)
    : [make('tr', {class: 'tr placeholder'}, make('td', {class: 'td'}, make('em', {}, 'This section contains no values yet')))];
  const add = make('button', {class: 'cbi-button cbi-button-add', title: 'Add',
    click: handler(() => edit({'.type': 'redirect', dest: 'lan', src: 'wan', target: 'DNAT'}))}, 'Add');
  const map = make('div', {class: 'cbi-map'}, make('h2', {name: 'content'}, 'Firewall - Port Forwards'),
    make('div', {class: 'cbi-map-descr'}, 'Computers of the Internet can reach a computer or service of the LAN.'),
    make('div', {id: 'cbi-firewall-redirect', class: 'cbi-section cbi-tblsection'}, make('h3', {}, 'Port Forwards'),
      make('table', {class: 'table cbi-section-table'},
        make('thead', {}, make('tr', {class: 'tr cbi-section-table-titles named'}, headings,
          make('th', {class: 'th cbi-section-table-cell cbi-section-actions'}))), make('tbody', {}, rows)),
      make('div', {class: 'cbi-section-create cbi-tblsection-create'}, add)));
  return make('div', {}, map, make('div', {class: 'cbi-page-actions'},
    comboButton('Save & Apply', 'Apply unchecked', saveAndApply), ' ',
    make('button', {class: 'cbi-button cbi-button-save', click: handler(() => showChanges())}, 'Save'), ' ',
    make('button', {class: 'cbi-button cbi-button-reset', click: handler(() => location.reload())}, 'Reset')));
}

async function showChanges() {
  await load();
  document.getElementById('view').replaceChildren(draw());
}

async function remove(sid) {
  await call('uci', 'delete', {config: 'firewall', section: sid});
  await showChanges();
}

// The protocol "Any" excludes the others.
function toggleProtocol(list, item) {
  const any = list.list.querySelector('[data-value=all]');
  list.toggle(item);
  for (const other of item === any ? list.list.querySelectorAll('li[data-value]') : [any]) {
    if (other !== item) {
      list.toggle(other, false);
    }
  }
}

function line(sid, field, caption, widget) {
  return make('div', {id: `cbi-firewall-${sid}-${field}`, class: 'cbi-value', 'data-name': field},
    make('label', {class: 'cbi-value-title', for: `widget.cbid.firewall.${sid}.${field}`}, caption),
    make('div', {class: 'cbi-value-field'}, widget));
}

async function edit(rule) {
  // Each new section has another name until the router has given it one.
  const sid = rule['.name'] || 'new' + Math.floor(Math.random() * 0xffffff).toString(16).padStart(6, '0');
  const id = (field) => `widget.cbid.firewall.${sid}.${field}`;
  const text = (field, hint) => make('input', {id: id(field), type: 'text', class: 'cbi-input-text',
    value: rule[field] || '', placeholder: hint});
  const zones = [['', 'unspecified'], ['lan', 'lan: lan:'], ['wan', 'wan: wan: wan6:']];
  const name = text('name', 'Unnamed forward');
  const outer = text('src_dport');
  const inner = text('dest_port', 'any');
  const protocols = new Dropdown(id('proto'), (rule.proto || 'tcp udp').split(' '),
    ['all', 'tcp', 'udp', 'icmp'].map((each) => [each, NAMES[each]]),
    {multiple: true, create: true, toggle: toggleProtocol});
  const address = new Dropdown(id('dest_ip'), rule.dest_ip ? [rule.dest_ip] : [],
    Object.entries(hints).map(([mac, host]) => [host.ipaddrs[0], `${host.ipaddrs[0]} (${host.name || mac})`]),
    {create: true, optional: true});
  const family = make('select', {id: id('family'), class: 'cbi-input-select'},
    ['IPv4 and IPv6', 'IPv4 only', 'IPv6 only', 'automatic'].map((each) => make('option', {}, each)));
  family.selectedIndex = 3;
  const general = make('div', {class: 'cbi-section-tab active', 'data-tab': 'general'},
    line(sid, 'name', 'Name', name), line(sid, 'family', 'Restrict to address family', family),
    line(sid, 'proto', 'Protocol', protocols.node),
    line(sid, 'src', 'Source zone', new Dropdown(id('src'), [rule.src], zones, {}).node),
    line(sid, 'src_dport', 'External port', outer),
    line(sid, 'dest', 'Internal zone', new Dropdown(id('dest'), [rule.dest], zones, {}).node),
    line(sid, 'dest_ip', 'Internal IP address', address.node), line(sid, 'dest_port', 'Internal port', inner));
  const advanced = make('div', {class: 'cbi-section-tab', 'data-tab': 'advanced'},
    line(sid, 'src_ip', 'Source IP address', new Dropdown(id('src_ip'), [], [], {create: true, optional: true}).node),
    line(sid, 'src_port', 'Source port', text('src_port', 'any')),
    line(sid, 'src_dip', 'External IP address', new Dropdown(id('src_dip'), [], [], {create: true, optional: true}).node));
  protocols.node.addEventListener('widget-change', () => {
    const hasPorts = protocols.chosen().some((each) => each === 'tcp' || each === 'udp');
    [outer, inner].forEach((box) => box.closest('.cbi-value').classList.toggle('hidden', !hasPorts));
  });
  const save = async () => {
    const isPorts = (value) => /^\d{1,5}(-\d{1,5})?$/.test(value) &&
      value.split('-').every((port) => Number(port) > 0 && Number(port) < 65536);
    outer.classList.toggle('cbi-input-invalid', !isPorts(outer.value));
    inner.classList.toggle('cbi-input-invalid', inner.value !== '' && !isPorts(inner.value));
    if (modal.querySelector('.cbi-input-invalid')) {
      return;
    }
    const values = {dest: rule.dest, target: 'DNAT', name: name.value, proto: protocols.chosen(),
                    src: rule.src, src_dport: outer.value, dest_ip: address.chosen()[0] || ''};
    if (inner.value) {
      values.dest_port = inner.value;
    }
    if (rule['.name']) {
      await call('uci', 'set', {config: 'firewall', section: rule['.name'], values});
    } else {
      await call('uci', 'add', {config: 'firewall', type: 'redirect', values});
    }
    await showChanges();
    hideModal();
  };
  showModal('Firewall - Port Forwards - ' + (rule.name || 'Unnamed forward'), [
    make('div', {class: 'cbi-map'}, make('ul', {class: 'cbi-tabmenu'},
      make('li', {class: 'cbi-tab'}, make('a', {href: '#'}, 'General Settings')),
      make('li', {class: 'cbi-tab-disabled'}, make('a', {href: '#'}, 'Advanced Settings'))), general, advanced),
    make('div', {class: 'button-row'}, make('button', {class: 'btn cbi-button', click: hideModal}, 'Dismiss'), ' ',
      make('button', {class: 'btn cbi-button cbi-button-positive important', click: handler(save)}, 'Save'))],
    'cbi-modal');
}

function showStatus(text, ...classes) {
  showModal('', [make('p', {}, text)], 'alert-message', ...classes);
}

async function saveAndApply() {
  showStatus('Starting configuration apply…', 'notice', 'spinning');
  const answer = await fetch(`/cgi-bin/luci/admin/uci/apply_rollback?sid=${env.session}&token=${env.token}`,
    {method: 'POST'});
  if (answer.status !== 200) {
    showStatus('There are no changes to apply', 'notice');
    setTimeout(hideModal, DISPLAY_MS);
    return;
  }
  const confirmation = await answer.json();
  const deadline = Date.now() + ROLLBACK_SECONDS * 1000;
  let clock = 0;
  const tick = () => {
    const seconds = Math.max(Math.floor((deadline - Date.now()) / 1000), 0);
    showStatus(`Applying configuration changes… ${seconds}s`, 'notice', 'spinning');
    clock = setTimeout(tick, 1000);
  };
  tick();
  const confirm = async () => {
    const reply = await fetch('/cgi-bin/luci/admin/uci/confirm?token=' + confirmation.token, {method: 'POST'});
    if (!reply.ok) {
      setTimeout(confirm, 1000);
      return;
    }
    clearTimeout(clock);
    showStatus('Configuration changes applied.', 'notice');
    setTimeout(() => {
      location = location.href.split('#')[0];
    }, DISPLAY_MS);
  };
  setTimeout(confirm, HOLDOFF_MS);
}

async function portForwardsView() {
  await load();
  return draw();
}
