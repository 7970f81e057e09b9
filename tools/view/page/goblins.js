import {announce, byId, count, element, icon} from './dom.js';

const manyNames = 12; // from here on the list can be searched
const foldedFrom = 60; // and from here on goblins of one name are folded together at first

// The list of goblins: by name, each with a box that shows or hides it and a button that picks it.
export class GoblinList {
  // `stage` may be null: the list then only lists.
  constructor(stage) {
    this.stage = stage;
    this.button('Show all', true);
    this.button('Hide all', false);
    byId('filter').addEventListener('input', () => this.filter());
  }

  button(text, visible) {
    byId('goblin-buttons').append(
      element(
        'button',
        {
          type: 'button',
          onclick: () => {
            this.setVisible(this.rows.keys(), visible);
            announce(visible ? 'All goblins are shown' : 'All goblins are hidden');
          },
        },
        text,
      ),
    );
  }

  show(item) {
    const meshes = item.goblins?.meshes ?? [];
    this.rows = [];
    this.groups = [];
    this.picked = null;
    this.showPicked();
    const names = new Map();
    meshes.forEach(([name], number) => names.set(name, [...(names.get(name) ?? []), number]));
    this.folded = meshes.length >= foldedFrom;
    byId('goblins').replaceChildren(
      ...[...names].map(([name, numbers]) =>
        numbers.length === 1
          ? this.row(numbers[0], name, meshes)
          : this.group(name, numbers, meshes),
      ),
    );
    byId('goblins-title').replaceChildren(
      'Goblins ',
      element('span', {class: 'meta'}, meshes.length ? String(meshes.length) : ''),
    );
    byId('goblin-buttons').hidden = meshes.length === 0;
    byId('filter').hidden = names.size < manyNames;
    byId('filter').value = '';
    byId('no-goblins').hidden = meshes.length > 0;
    byId('no-goblins').textContent = item.goblins
      ? 'The tile has no goblins.'
      : 'There is no goblin geometry in this file. Export the tile first.';
  }

  row(number, name, meshes) {
    const id = `goblin-${number}`;
    const box = element('input', {
      type: 'checkbox',
      id,
      checked: true,
      onchange: () => {
        this.setVisible([number], box.checked);
        announce(`${name} ${box.checked ? 'shown' : 'hidden'}`);
      },
    });
    const pick = element(
      'button',
      {
        type: 'button',
        class: 'pick',
        title: 'Pick',
        'aria-label': `Pick ${name}`,
        'aria-pressed': 'false',
        onclick: () => this.pick(this.picked === number ? null : number),
      },
      icon('pick'),
    );
    const triangles = meshes[number][2];
    const line = element(
      'li',
      {class: 'row'},
      box,
      element('label', {for: id, class: 'name'}, name),
      element(
        'span',
        {class: 'meta', title: count(triangles, 'triangle')},
        triangles ? `${triangles} \u25b3` : 'empty',
      ),
      pick,
    );
    this.rows[number] = {line, box, pick, name, triangles, vertices: meshes[number][1]};
    return line;
  }

  group(name, numbers, meshes) {
    const id = `group-${numbers[0]}`;
    const box = element('input', {
      type: 'checkbox',
      id,
      checked: true,
      onchange: () => {
        this.setVisible(numbers, box.checked);
        announce(`${count(numbers.length, 'goblin')} ${name} ${box.checked ? 'shown' : 'hidden'}`);
      },
    });
    const inner = element(
      'ul',
      {id: `${id}-list`},
      ...numbers.map((number, i) => this.row(number, `${name} ${i + 1}`, meshes)),
    );
    const fold = element(
      'button',
      {
        type: 'button',
        class: 'fold',
        'aria-label': `Goblins named ${name}`,
        'aria-controls': inner.id,
        onclick: () => this.fold(group, !inner.hidden),
      },
      icon('open'),
    );
    const line = element(
      'li',
      {class: 'group'},
      element(
        'div',
        {class: 'row'},
        fold,
        box,
        element('label', {for: id, class: 'name'}, name),
        element('span', {class: 'meta'}, `\u00d7 ${numbers.length}`),
      ),
      inner,
    );
    const group = {line, box, inner, foldButton: fold, numbers};
    this.groups.push(group);
    for (const number of numbers) {
      this.rows[number].group = group;
    }
    this.fold(group, this.folded);
    return line;
  }

  fold(group, folded) {
    group.inner.hidden = folded;
    group.foldButton.setAttribute('aria-expanded', !folded);
  }

  setVisible(numbers, visible) {
    for (const number of numbers) {
      const row = this.rows[number];
      row.box.checked = visible;
      row.line.classList.toggle('off', !visible);
      this.stage?.setVisible(number, visible);
    }
    for (const group of this.groups) {
      const seen = group.numbers.filter((number) => this.rows[number].box.checked).length;
      group.box.checked = seen > 0;
      group.box.indeterminate = seen > 0 && seen < group.numbers.length;
    }
  }

  // Tells a stage that has just got its goblins what the list says of them.
  apply() {
    this.rows.forEach((row, number) => this.stage.setVisible(number, row.box.checked));
    this.stage.pick(this.picked);
  }

  // A goblin that is picked in the 3D view is brought into sight in the list.
  pick(number, fromStage = false) {
    if (this.picked !== null) {
      this.rows[this.picked].line.classList.remove('picked');
      this.rows[this.picked].pick.setAttribute('aria-pressed', 'false');
    }
    this.picked = number;
    this.stage?.pick(number);
    this.showPicked();
    if (number === null) {
      return;
    }
    const row = this.rows[number];
    row.line.classList.add('picked');
    row.pick.setAttribute('aria-pressed', 'true');
    if (fromStage) {
      if (row.group) {
        this.fold(row.group, false);
      }
      const frame = row.line.closest('.scroll');
      const above = row.line.getBoundingClientRect().top - frame.getBoundingClientRect().top;
      if (above < 0 || above > frame.clientHeight - 40) {
        frame.scrollTop += above - frame.clientHeight / 2;
      }
    }
    announce(`${row.name} picked`);
  }

  showPicked() {
    const bar = byId('picked');
    const row = this.picked === null ? null : this.rows[this.picked];
    bar.hidden = !row;
    if (!row) {
      return bar.replaceChildren();
    }
    bar.replaceChildren(
      element('strong', {}, row.name),
      ` ${count(row.triangles, 'triangle')}, ${row.vertices} vertices`,
      element(
        'button',
        {type: 'button', 'aria-label': 'Let go', onclick: () => this.pick(null)},
        icon('close'),
      ),
    );
  }

  filter() {
    const wanted = byId('filter').value.trim().toLowerCase();
    for (const line of byId('goblins').children) {
      line.hidden = !line.querySelector('label').textContent.toLowerCase().includes(wanted);
    }
  }
}
