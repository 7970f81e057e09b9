// A tree of thousands of rows that is one stop of the tab key: only the rows in sight are elements.
//
// A node is {id, label, name, meta, checked: true | false | 'mixed', selected, state, children}.

import {element, icon} from './dom.js';

export class Tree {
  // `on` has toggle(node), choose(node), frame(node) and leave().
  constructor(root, on) {
    this.root = root;
    this.on = on;
    this.frame = root.parentElement;
    this.lines = [];
    this.active = 0;
    this.frame.addEventListener('scroll', () => this.draw(), {passive: true});
    new ResizeObserver(() => this.draw()).observe(this.frame);
    root.addEventListener('click', (event) => this.click(event));
    root.addEventListener('dblclick', () => this.act('frame'));
    root.addEventListener('keydown', (event) => this.key(event));
  }

  show(nodes) {
    this.nodes = nodes;
    this.root.classList.toggle(
      'flat',
      nodes.every((node) => !node.children),
    );
    this.active = 0;
    this.frame.scrollTop = 0;
    this.flatten();
  }

  // Again, after nodes were folded or other ones are to be seen.
  flatten() {
    const lines = [];
    const add = (nodes, depth) =>
      nodes
        .filter((node) => !node.hidden)
        .forEach((node, i, all) => {
          lines.push({node, depth, place: i + 1, of: all.length});
          if (node.children && !node.folded) {
            add(node.children, depth + 1);
          }
        });
    add(this.nodes, 1);
    this.lines = lines;
    this.active = Math.min(this.active, Math.max(0, lines.length - 1));
    this.draw();
  }

  get rowHeight() {
    return parseFloat(getComputedStyle(this.root).getPropertyValue('--row')) || 34;
  }

  draw() {
    const height = this.rowHeight;
    this.root.style.height = `${this.lines.length * height}px`;
    const first = Math.max(0, Math.floor(this.frame.scrollTop / height) - 4);
    const last = Math.min(
      this.lines.length,
      Math.ceil((this.frame.scrollTop + this.frame.clientHeight) / height) + 4,
    );
    const rows = [];
    for (let i = first; i < last; i++) {
      rows.push(this.row(i, height));
    }
    // The active row is an element even when it is out of sight: it is what the focus is on.
    if (this.lines.length && (this.active < first || this.active >= last)) {
      rows.push(this.row(this.active, height));
    }
    this.root.replaceChildren(...rows);
    const active = this.lines[this.active];
    if (active) {
      this.root.setAttribute('aria-activedescendant', active.node.id);
    } else {
      this.root.removeAttribute('aria-activedescendant');
    }
  }

  row(i, height) {
    const {node, depth, place, of} = this.lines[i];
    const line = element(
      'div',
      {
        role: 'treeitem',
        id: node.id,
        class: 'row',
        title: node.label,
        'data-line': String(i),
        'aria-label': `${node.label}, ${node.meta}`,
        'aria-level': String(depth),
        'aria-posinset': String(place),
        'aria-setsize': String(of),
        'aria-checked': String(node.checked),
        'aria-selected': String(Boolean(node.selected)),
      },
      element('span', {class: 'fold'}, ...(node.children ? [icon('open')] : [])),
      element('span', {class: 'box'}, icon(node.checked === false ? 'unseen' : 'seen')),
    );
    if (node.children) {
      line.setAttribute('aria-expanded', String(!node.folded));
    }
    if (node.state) {
      line.append(element('span', {class: `dot ${node.state}`}));
    }
    line.append(
      element('span', {class: 'name'}, node.name),
      element('span', {class: 'meta'}, node.meta),
    );
    line.classList.toggle('active', i === this.active);
    line.classList.add(`depth-${depth}`);
    line.style.top = `${i * height}px`;
    return line;
  }

  act(what) {
    const line = this.lines[this.active];
    if (line) {
      this.on[what](line.node);
    }
  }

  click(event) {
    const line = event.target.closest('[data-line]');
    if (!line) {
      return;
    }
    this.active = Number(line.dataset.line);
    const {node} = this.lines[this.active];
    if (event.target.closest('.box')) {
      this.on.toggle(node);
    } else if (node.children) {
      this.fold(node, !node.folded);
    } else {
      this.on.choose(node);
    }
    this.draw();
  }

  fold(node, folded) {
    node.folded = folded;
    this.flatten();
  }

  key(event) {
    if (event.ctrlKey || event.metaKey || event.altKey || !this.lines.length) {
      return;
    }
    const {node, depth} = this.lines[this.active];
    const page = Math.max(1, Math.floor(this.frame.clientHeight / this.rowHeight) - 1);
    const act = {
      ArrowDown: () => this.move(this.active + 1),
      ArrowUp: () => this.move(this.active - 1),
      PageDown: () => this.move(this.active + page),
      PageUp: () => this.move(this.active - page),
      Home: () => this.move(0),
      End: () => this.move(this.lines.length - 1),
      ArrowRight: () =>
        node.children && node.folded ? this.fold(node, false) : this.move(this.active + 1),
      ArrowLeft: () =>
        node.children && !node.folded ? this.fold(node, true) : this.toParent(depth),
      ' ': () => this.act('toggle'),
      Enter: () => (node.children ? this.fold(node, !node.folded) : this.act('choose')),
      f: () => this.act('frame'),
      Escape: () => this.on.leave(),
    }[event.key];
    if (act) {
      act();
      event.preventDefault();
    }
  }

  toParent(depth) {
    let at = this.active;
    while (at > 0 && this.lines[at].depth >= depth && depth > 1) {
      at--;
    }
    this.move(at);
  }

  move(to) {
    this.active = Math.min(Math.max(0, to), this.lines.length - 1);
    this.bringIntoSight();
    this.draw();
  }

  // Unfolds what is around the node and makes it the active one.
  reveal(node) {
    const parent = this.nodes.find((other) => other.children?.includes(node));
    if (parent?.folded) {
      this.fold(parent, false);
    }
    const at = this.lines.findIndex((line) => line.node === node);
    if (at >= 0) {
      this.move(at);
    }
  }

  bringIntoSight() {
    const height = this.rowHeight;
    const top = this.active * height;
    const {scrollTop, clientHeight} = this.frame;
    if (top < scrollTop) {
      this.frame.scrollTop = top;
    } else if (top + height > scrollTop + clientHeight) {
      this.frame.scrollTop = top + height - clientHeight + 4;
    }
  }
}
