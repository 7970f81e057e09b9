// Numbers about a tile and about the picked goblin: sizes, budgets, where it stands.

import {byId, count, element, icon} from './dom.js';
import {budget, overBudget, triangleCount} from './entries.js';

const centimetres = {
  mm: 0.1,
  cm: 1,
  m: 100,
  km: 100000,
  in: 2.54,
  ft: 30.48,
  yd: 91.44,
  mi: 160934.4,
};

const short = (number) => {
  const size = Math.abs(number);
  const digits = size >= 100 ? 0 : size >= 10 ? 1 : size >= 1 ? 2 : 3;
  return String(Number(number.toFixed(digits)));
};

// The lengths of the tile's sides in the scene's unit; null where the scene is not known.
function sides({placement, unit}) {
  if (!placement) {
    return null;
  }
  const scale = centimetres[unit] ?? 1;
  return [0, 4, 8].map((row) => Math.hypot(...placement.slice(row, row + 3)) / scale);
}

const threeOf = (numbers) => numbers.map(short).join(' \u00d7 ');
const unitOf = ({unit}) => (Object.hasOwn(centimetres, unit) ? unit : 'cm');

function line(term, ...value) {
  return element('div', {}, element('dt', {}, term), element('dd', {}, ...value));
}

// A number, and how much of what it may be that is.
function meter(number, limit, isOver, unit) {
  if (limit === null) {
    return [`${number} ${unit}`];
  }
  const bar = element('span', {class: isOver ? 'meter over' : 'meter'}, element('span', {}));
  bar.firstElementChild.style.width = `${Math.min(100, (100 * number) / Math.max(1, limit))}%`;
  return [
    `${number} of ${limit} ${unit}`,
    ...(isOver ? [element('strong', {class: 'over-text'}, ' over the budget')] : []),
    bar,
  ];
}

export function tileDetails(entry, box) {
  const over = overBudget(entry);
  const lines = [];
  const real = sides(entry);
  if (real) {
    const height = (box.max.y - box.min.y) * real[1];
    lines.push(
      line(
        'Tile',
        `${short(real[0])} \u00d7 ${short(real[2])} ${unitOf(entry)}, ${short(height)} high with its goblins`,
      ),
    );
  } else if (entry.report) {
    lines.push(
      line(
        'Tile',
        'A layered file holds no surface: its goblins are shown over a flat tile. morvane view --scene SCENE shows them on the scene\u2019s ground.',
      ),
    );
  }
  if (entry.goblins) {
    lines.push(
      line(
        'Triangles',
        ...meter(triangleCount(entry), budget.triangles, over.triangles, 'in all goblins'),
      ),
    );
  }
  if (entry.report) {
    const {width, height} = entry.report;
    const larger = Math.max(width, height);
    lines.push(
      line(
        'Texture',
        `${width} \u00d7 ${height}`,
        ...(budget.pixels === null
          ? []
          : [', ', ...meter(larger, budget.pixels, over.pixels, 'pixels a side')]),
      ),
    );
  }
  byId('tile-details').replaceChildren(...lines);
}

function boxTexts(entry, box) {
  const real = sides(entry);
  const size = ['x', 'y', 'z'].map((axis) => box.max[axis] - box.min[axis]);
  const middle = ['x', 'y', 'z'].map((axis) => (box.max[axis] + box.min[axis]) / 2);
  const share = `${threeOf(size.map((length) => 100 * length))} % of the tile`;
  return [
    real
      ? `${threeOf(size.map((length, i) => length * real[i]))} ${unitOf(entry)} (${share})`
      : share,
    `at ${middle.map(short).join(', ')}`,
  ];
}

function changeText({state, by, what, old, new: now}) {
  const parts = [what.length ? `${state}: ${what.join(', ')}` : state];
  if (old !== null && now !== null && by.some((length) => Math.abs(length) > 1e-6)) {
    parts.push(`by ${by.map(short).join(', ')}`);
  }
  if (old !== null && now !== null && old !== now) {
    parts.push(`number ${old + 1} before`);
  }
  return parts.join(', ');
}

// `on` has frame() and leave().
export function showPicked(entry, node, box, on) {
  const bar = byId('picked');
  bar.hidden = !node;
  if (!node) {
    return bar.replaceChildren();
  }
  const texts = [`${count(node.triangles, 'triangle')}, ${node.vertices} vertices`];
  if (box) {
    texts.push(...boxTexts(entry, box));
  }
  if (node.change) {
    texts.unshift(changeText(node.change));
  }
  bar.replaceChildren(
    element(
      'div',
      {},
      element('strong', {}, node.label),
      element('span', {}, texts.join(' \u00b7 ')),
    ),
    element('button', {type: 'button', onclick: on.frame, disabled: !box}, 'Frame'),
    element(
      'button',
      {type: 'button', class: 'bare', 'aria-label': 'Let go', onclick: on.leave},
      icon('close'),
    ),
  );
}
