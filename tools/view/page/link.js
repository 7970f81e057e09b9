// The part of the page's address that says what is shown: #tile=pond&goblin=7, or #level.

import {entries, hasLevel, label} from './entries.js';

const stem = (name) => name.replace(/\.[^.]*$/, '');

// The shortest name that means this entry alone.
function nameOf(entry) {
  const names = [stem(entry.name), entry.name, label(entry)];
  return names.find((name) => find(name) === entry) ?? entry.file;
}

function find(name) {
  for (const of of [(e) => label(e), (e) => e.name, (e) => stem(e.name), (e) => e.file]) {
    const found = entries.filter((entry) => of(entry) === name);
    if (found.length) {
      return found[0];
    }
  }
  return null;
}

// {level: true}, {entry, goblin} with goblin from 0 or null, or null when it says nothing.
export function wanted() {
  const said = new URLSearchParams(location.hash.slice(1));
  if (said.has('level') && hasLevel) {
    return {level: true};
  }
  const entry = find(said.get('tile'));
  const goblin = Number.parseInt(said.get('goblin'), 10) - 1;
  return entry ? {entry, goblin: goblin >= 0 ? goblin : null} : null;
}

export function tell(entry, goblin) {
  const said = new URLSearchParams(entry ? {tile: nameOf(entry)} : {});
  if (goblin !== null) {
    said.set('goblin', goblin + 1);
  }
  const hash = entry ? `#${said}` : '#level';
  if (hash !== location.hash) {
    history.replaceState(null, '', hash);
  }
}
