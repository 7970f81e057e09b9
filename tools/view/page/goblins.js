// The list of goblins: by name, or by what happened to them since an older file.

import {announce, byId, count, element} from './dom.js';
import {changeCounts} from './entries.js';
import {Tree} from './tree.js';

const foldedFrom = 60; // from here on goblins of one name are folded together at first

export class GoblinList {
  // `stage` may be null: the list then only lists. `onPick` gets {number, ...} or null.
  constructor(stage, onPick) {
    this.stage = stage;
    this.onPick = onPick;
    this.tree = new Tree(byId('goblins'), {
      toggle: (node) => this.setVisible(node.numbers, node.checked !== true, node.label),
      choose: (node) => this.pick(this.picked === node ? null : node.numbers[0]),
      frame: (node) => {
        this.pick(node.numbers[0]);
        this.stage?.framePicked();
      },
      leave: () => this.pick(null),
    });
    for (const [text, visible] of [
      ['Show all', true],
      ['Hide all', false],
    ]) {
      byId('goblin-buttons').append(
        element(
          'button',
          {
            type: 'button',
            onclick: () => this.setVisible([...this.leaves.keys()], visible, 'All goblins'),
          },
          text,
        ),
      );
    }
    byId('filter').addEventListener('input', () => this.filter());
  }

  show(entry) {
    this.leaves = [];
    this.picked = null;
    const nodes = entry?.before ? this.byState(entry) : this.byName(entry);
    const total = this.leaves.length;
    byId('goblins-title').replaceChildren(
      entry?.before ? 'Changes ' : 'Goblins ',
      element('span', {class: 'meta'}, total ? String(total) : ''),
    );
    byId('goblin-buttons').hidden = byId('filter').hidden = total === 0;
    byId('filter').value = '';
    byId('goblins').hidden = total === 0;
    byId('no-goblins').hidden = total > 0;
    byId('no-goblins').textContent = !entry
      ? 'Click a tile to see its goblins.'
      : entry.goblins
        ? 'The tile has no goblins.'
        : 'There is no goblin geometry in this file. Export the tile first.';
    this.tree.show(nodes);
  }

  leaf(number, label, mesh, more = {}) {
    const [, vertices, triangles] = mesh;
    const node = {
      id: `goblin-${number}`,
      label,
      name: label,
      meta: triangles ? `${triangles} \u25b3` : 'empty',
      numbers: [number],
      checked: true,
      triangles,
      vertices,
      ...more,
    };
    this.leaves[number] = node;
    return node;
  }

  group(id, label, children, more = {}) {
    const node = {
      id: `group-${id}`,
      label: `${label}, ${count(children.length, 'goblin')}`,
      name: label,
      meta: `\u00d7 ${children.length}`,
      numbers: children.map((child) => child.numbers[0]),
      checked: true,
      children,
      ...more,
    };
    children.forEach((child) => {
      child.group = node;
    });
    return node;
  }

  byName(entry) {
    const meshes = entry?.goblins?.meshes ?? [];
    const names = new Map();
    meshes.forEach(([name], number) => {
      if (!names.has(name)) {
        names.set(name, []);
      }
      names.get(name).push(number);
    });
    return [...names].map(([name, numbers]) =>
      numbers.length === 1
        ? this.leaf(numbers[0], name, meshes[numbers[0]])
        : this.group(
            numbers[0],
            name,
            numbers.map((number, i) => this.leaf(number, `${name} ${i + 1}`, meshes[number])),
            {folded: meshes.length >= foldedFrom},
          ),
    );
  }

  byState({before, goblins}) {
    const meshes = goblins?.meshes ?? [];
    const changes = before.changes;
    const rest = new Set(meshes.keys());
    const groups = changeCounts({before}).map(([state]) => {
      const children = changes
        .filter((change) => change.state === state)
        .map((change) => {
          rest.delete(change.new);
          return state === 'gone'
            ? this.leaf(
                meshes.length + change.mesh,
                before.meshes[change.mesh][0],
                before.meshes[change.mesh],
                {state, change},
              )
            : this.leaf(change.new, meshes[change.new][0], meshes[change.new], {state, change});
        });
      const title = state[0].toUpperCase() + state.slice(1);
      return this.group(state, title, children, {state, folded: children.length >= foldedFrom});
    });
    const same = [...rest].map((number) => this.leaf(number, meshes[number][0], meshes[number]));
    return same.length
      ? [...groups, this.group('same', 'The same', same, {folded: groups.length > 0})]
      : groups;
  }

  setVisible(numbers, visible, what) {
    const groups = new Set();
    for (const number of numbers) {
      const leaf = this.leaves[number];
      if (leaf) {
        leaf.checked = visible;
        groups.add(leaf.group);
        this.stage?.setVisible(number, visible);
      }
    }
    groups.delete(undefined);
    for (const group of groups) {
      const seen = group.children.filter((child) => child.checked).length;
      group.checked = seen === 0 ? false : seen === group.children.length || 'mixed';
    }
    this.tree.draw();
    announce(`${what} ${visible ? 'shown' : 'hidden'}`);
  }

  // Tells a stage that has just got its goblins what the list says of them.
  apply() {
    this.leaves.forEach((leaf, number) => {
      if (!leaf.checked) {
        this.stage.setVisible(number, false);
      }
    });
    this.stage.pick(this.picked ? this.picked.numbers[0] : null);
  }

  // A goblin that is picked elsewhere is brought into sight in the list.
  pick(number, reveal = false) {
    if (this.picked) {
      this.picked.selected = false;
    }
    this.picked = number === null ? null : (this.leaves[number] ?? null);
    this.stage?.pick(this.picked ? number : null);
    if (this.picked) {
      this.picked.selected = true;
      announce(`${this.picked.label} picked`);
      if (reveal) {
        this.tree.reveal(this.picked);
      }
    }
    this.tree.draw();
    this.onPick(this.picked);
  }

  filter() {
    const wanted = byId('filter').value.trim().toLowerCase();
    for (const node of this.tree.nodes) {
      const has = (other) => other.name.toLowerCase().includes(wanted);
      const whole = has(node);
      for (const child of node.children ?? []) {
        child.hidden = !whole && !has(child);
      }
      node.hidden = !whole && !node.children?.some((child) => !child.hidden);
      if (wanted && node.children && !whole) {
        node.folded = false;
      }
    }
    this.tree.flatten();
  }
}
