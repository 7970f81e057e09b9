// The page's entries, files or a scene's tiles, and what is said of each.

import {byId, count} from './dom.js';

const page = JSON.parse(byId('items').textContent);
export const entries = page.items;
export const budget = page.budget;
entries.forEach((entry, number) => {
  entry.number = number;
});

export const compares = entries.some((entry) => entry.before);
export const goblinCount = (entry) => entry.goblins?.meshes.length ?? 0;
export const triangleCount = (entry) =>
  (entry.goblins?.meshes ?? []).reduce((sum, [, , triangles]) => sum + triangles, 0);

export const hasFault = (entry) =>
  Boolean(entry.fault || entry.missing || entry.report?.fault || entry.goblins?.fault);

const larger = (entry) => Math.max(entry.report?.width ?? 0, entry.report?.height ?? 0);

// What of an entry is over the budget.
export const overBudget = (entry) => ({
  triangles: budget.triangles !== null && triangleCount(entry) > budget.triangles,
  pixels: budget.pixels !== null && larger(entry) > budget.pixels,
});

export const isOverBudget = (entry) => Object.values(overBudget(entry)).some(Boolean);

const states = ['added', 'gone', 'moved', 'changed'];

export function changeCounts(entry) {
  return states
    .map((state) => [state, entry.before.changes.filter((change) => change.state === state).length])
    .filter(([, number]) => number > 0);
}

export function note(entry) {
  if (entry.fault) {
    return 'cannot be shown';
  }
  if (entry.goblins?.fault) {
    return 'damaged goblins';
  }
  if (entry.before) {
    const counts = changeCounts(entry).map(([state, number]) => `${number} ${state}`);
    return counts.join(', ') || 'no change';
  }
  return entry.goblins ? count(goblinCount(entry), 'goblin') : 'no goblins';
}

// With its folder where the name alone would not tell.
export function label(entry) {
  const alone = entries.filter((other) => other.name === entry.name).length === 1;
  return alone || entry.group === ''
    ? entry.name
    : `${entry.group.split(/[\\/]/).pop()}/${entry.name}`;
}

// The entries of one scene that know their place in it.
export const level = entries.filter((entry) => entry.placement && !entry.fault);
export const hasLevel = level.length > 1;
