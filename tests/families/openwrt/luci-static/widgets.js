// The widgets of the pages: elements, the dialog, drop-downs that are made of lists, and the calls
// to the router, which are sent together where several are made at once.
const env = {};
let modal = null;

function make(tag, attributes, ...children) {
  const node = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes || {})) {
    if (typeof value === 'function') {
      node.addEventListener(name, value);
    } else if (value !== null && value !== undefined) {
      node.setAttribute(name, value);
    }
  }
  node.append(...children.flat().filter((child) => child !== null));
  return node;
}

// A handler whose button turns while its work goes on.
function handler(work) {
  return async (event) => {
    const button = event.currentTarget;
    button.classList.add('spinning');
    button.blur();
    button.disabled = true;
    try {
      await work(event);
    } finally {
      button.classList.remove('spinning');
      button.disabled = false;
    }
  };
}

function showModal(title, children, ...classes) {
  modal.className = ['modal', ...classes].join(' ');
  modal.replaceChildren(make('h4', {}, title), ...children);
  document.body.classList.add('modal-overlay-active');
  modal.parentNode.scrollTop = 0;
  modal.parentNode.focus();
  return modal;
}

function hideModal() {
  document.body.classList.remove('modal-overlay-active');
}

let queue = null;
let callNumber = 0;

function call(object, method, params = {}) {
  return new Promise((resolve, reject) => {
    if (!queue) {
      queue = [];
      setTimeout(sendCalls, 0);
    }
    queue.push({resolve, reject, message: {jsonrpc: '2.0', id: ++callNumber, method: 'call',
                                           params: [env.session, object, method, params]}});
  });
}

async function sendCalls() {
  const calls = queue;
  queue = null;
  const answer = await fetch('/ubus/?' + Date.now(), {
    method: 'POST',
    headers: {'Content-Type': 'application/json'},
    body: JSON.stringify(calls.map((each) => each.message)),
  });
  const results = await answer.json();
  for (const each of calls) {
    const own = results.find((result) => result.id === each.message.id);
    own && own.result && own.result[0] === 0 ? each.resolve(own.result[1]) : each.reject(own);
  }
}

class Dropdown {
  constructor(id, values, choices, options) {
    this.options = options;
    const list = make('ul');
    for (const [value, label] of choices) {
      list.append(make('li', {'data-value': value, selected: values.includes(value) ? '' : null}, label));
    }
    if (options.create) {
      this.input = make('input', {type: 'text', class: 'create-item-input', placeholder: '-- custom --'});
      list.append(make('li', {'data-value': '-', unselectable: ''}, this.input));
      this.input.addEventListener('keydown', (event) => this.createKey(event));
      this.input.addEventListener('focus', () => this.node.setAttribute('locked-in', ''));
      this.input.addEventListener('blur', () => this.node.removeAttribute('locked-in'));
      this.input.parentNode.addEventListener('click', () => this.input.focus());
    }
    this.node = make('div', {id, class: 'cbi-dropdown' + (options.classes ? ' ' + options.classes : ''),
                             tabindex: 0, multiple: options.multiple ? '' : null,
                             optional: options.optional ? '' : null}, list,
                     make('span', {class: 'more', tabindex: -1}, '···'),
                     make('span', {class: 'open', tabindex: -1}, '▾'), make('div'));
    this.list = list;
    for (const item of options.multiple ? [...list.children] : []) {
      const label = make('label', {}, ...item.childNodes);
      item.append(make('form', {}, make('input', {type: 'checkbox', tabindex: -1,
                                                  onclick: 'event.preventDefault()'})), label);
    }
    if (!options.multiple) {
      if (options.optional) {
        list.prepend(make('li', {placeholder: ''}, '-- Please choose --'));
      }
      const chosen = list.querySelector('[selected]') || list.firstElementChild;
      chosen.setAttribute('selected', '');
    }
    this.showChosen();
    this.node.addEventListener('click', (event) => this.click(event));
    this.node.addEventListener('keydown', (event) => this.key(event));
    this.node.addEventListener('close-dropdown', () => this.close());
    this.node.widget = this;
  }

  showChosen() {
    let number = 0;
    for (const item of this.list.children) {
      item.removeAttribute('display');
      if (item.hasAttribute('selected')) {
        item.setAttribute('display', number++);
      }
      const box = item.querySelector('input[type=checkbox]');
      if (box) {
        box.checked = item.hasAttribute('selected');
      }
    }
    this.node.toggleAttribute('empty', number === 0);
    this.node.lastElementChild.replaceChildren(...this.chosen().map((value) =>
      make('input', {type: 'hidden', value})));
    this.node.dispatchEvent(new CustomEvent('widget-change', {bubbles: true}));
  }

  chosen() {
    return [...this.list.children].filter((item) => item.hasAttribute('selected') &&
      !item.hasAttribute('placeholder')).map((item) => item.dataset.value);
  }

  open() {
    document.querySelectorAll('.cbi-dropdown[open]').forEach((other) => other.widget.close());
    this.node.setAttribute('open', '');
    const preview = this.list.cloneNode(true);
    preview.classList.add('preview');
    this.list.style.maxHeight = '1px';
    requestAnimationFrame(() => {
      this.list.style.maxHeight = '300px';
    });
    this.list.classList.add('dropdown');
    this.list.after(preview);
    for (const item of this.list.children) {
      item.hasAttribute('unselectable') || item.setAttribute('tabindex', 0);
    }
  }

  close() {
    if (this.node.hasAttribute('open')) {
      this.node.querySelector('ul.preview').remove();
      this.node.removeAttribute('open');
      this.list.classList.remove('dropdown');
      this.list.style.maxHeight = '';
      this.showChosen();
    }
  }

  toggle(item, state) {
    if (item.hasAttribute('unselectable')) {
      return;
    }
    if (!this.options.multiple) {
      this.list.querySelectorAll('[selected]').forEach((other) => other.removeAttribute('selected'));
      item.setAttribute('selected', '');
      this.close();
    } else if (item.hasAttribute('selected')) {
      if (state !== true && (this.chosen().length > 1 || this.options.optional)) {
        item.removeAttribute('selected');
      }
    } else if (state !== false) {
      item.setAttribute('selected', '');
    }
    this.showChosen();
  }

  click(event) {
    const item = event.target.closest('li');
    if (!this.node.hasAttribute('open')) {
      event.target.matches('input') || this.open();
    } else if (item && item.parentNode === this.list) {
      (this.options.toggle || ((_, own) => this.toggle(own)))(this, item);
    } else if (event.target.matches('span.open, span.more') || item) {
      this.close();
    }
    event.preventDefault();
    event.stopPropagation();
  }

  key(event) {
    if (event.target.matches('input')) {
      return;
    }
    if (!this.node.hasAttribute('open') && /^Arrow/.test(event.key)) {
      this.open();
      event.preventDefault();
    } else if (event.key === 'Escape') {
      this.close();
    }
  }

  createKey(event) {
    if (event.keyCode !== 13) {
      return;
    }
    event.preventDefault();
    this.node.removeAttribute('locked-in');
    const value = this.input.value.trim();
    this.input.value = '';
    if (value) {
      const same = [...this.list.children].find((item) => item.dataset.value === value);
      const item = same || make('li', {'data-value': value, created: '', tabindex: 0}, value);
      same || this.list.insertBefore(item, this.list.lastElementChild);
      this.toggle(item, true);
      item.focus();
    }
  }
}

// A button with a list of other ways to do it.
function comboButton(caption, other, work) {
  const button = new Dropdown(null, ['0'], [['0', caption], ['1', other]],
    {classes: 'btn cbi-button cbi-button-apply important'});
  const run = handler(work);
  button.click = (event) => {
    if (button.node.hasAttribute('open') || event.target.matches('.cbi-dropdown > span.open')) {
      Dropdown.prototype.click.call(button, event);
    } else {
      run(event);
    }
  };
  return button.node;
}

window.addEventListener('click', () => {
  document.querySelectorAll('.cbi-dropdown[open]').forEach((node) => node.widget.close());
});

function startView(values, view) {
  Object.assign(env, values);
  document.addEventListener('DOMContentLoaded', async () => {
    modal = make('div', {class: 'modal', role: 'dialog', 'aria-modal': 'true'});
    document.body.append(make('div', {id: 'modal_overlay', tabindex: -1}, modal));
    document.getElementById('view').replaceChildren(await view());
  });
}
