// The list of files or tiles: found by name, below the folders or scenes that they are in.

import {byId, element, icon} from './dom.js';
import {entries, hasFault, hasLevel, isOverBudget, label, level, note} from './entries.js';

const manyFiles = 8; // from here on the list can be searched

function button(attributes, picture, name, meta, ...marks) {
  return element(
    'button',
    {type: 'button', ...attributes},
    picture,
    element(
      'span',
      {class: 'words'},
      element('span', {class: 'name'}, name),
      element('span', {class: 'meta'}, meta),
    ),
    ...marks,
  );
}

function mark(kind, text) {
  return element(
    'span',
    {class: `mark mark-${kind}`, title: text},
    icon(kind),
    element('span', {class: 'unseen'}, text),
  );
}

function fileButton(entry, onChoose) {
  const thumbnail = entry.picture
    ? element('img', {
        src: entry.picture.thumbnail,
        alt: '',
        width: '56',
        height: '56',
        loading: 'lazy',
      })
    : element('span', {class: 'no-thumbnail'});
  const marks = [];
  if (isOverBudget(entry)) {
    marks.push(mark('over', 'over the budget'));
  }
  if (hasFault(entry)) {
    marks.push(mark('fault', 'with faults'));
  }
  return button(
    {
      title: [label(entry), entry.file].join('\n'),
      'data-entry': String(entry.number),
      onclick: () => onChoose(entry),
    },
    thumbnail,
    label(entry),
    note(entry),
    ...marks,
  );
}

export class FileList {
  // `onChoose` gets an entry, or null for the whole level.
  constructor(onChoose) {
    this.list = byId('files');
    if (hasLevel) {
      this.list.append(
        element(
          'li',
          {class: 'whole'},
          button(
            {'data-entry': 'level', onclick: () => onChoose(null)},
            element('span', {class: 'no-thumbnail'}, icon('level')),
            'Whole level',
            `${level.length} tiles`,
          ),
        ),
      );
    }
    const groups = [...new Set(entries.map((entry) => entry.group))];
    for (const group of groups) {
      if (groups.length > 1) {
        this.list.append(element('li', {class: 'heading', title: group}, group || 'this folder'));
      }
      this.list.append(
        ...entries
          .filter((entry) => entry.group === group)
          .map((entry) => element('li', {}, fileButton(entry, onChoose))),
      );
    }
    byId('find-file').hidden = entries.length < manyFiles;
    byId('find-file').addEventListener('input', () => this.find());
    this.list.addEventListener('keydown', (event) => this.key(event));
  }

  find() {
    const wanted = byId('find-file').value.trim().toLowerCase();
    let heading = null;
    let found = 0;
    for (const line of this.list.children) {
      if (line.classList.contains('heading')) {
        heading = line;
        heading.hidden = true;
        continue;
      }
      const at = line.firstElementChild;
      line.hidden = !`${at.title} ${at.textContent}`.toLowerCase().includes(wanted);
      found += line.hidden ? 0 : 1;
      if (heading && !line.hidden) {
        heading.hidden = false;
      }
    }
    byId('no-files').hidden = found > 0;
  }

  // Up and down walk through the files.
  key(event) {
    const step = {ArrowDown: 1, ArrowRight: 1, ArrowUp: -1, ArrowLeft: -1}[event.key];
    if (!step) {
      return;
    }
    const buttons = [...this.list.querySelectorAll('li:not([hidden]) button')];
    buttons[buttons.indexOf(document.activeElement) + step]?.focus();
    event.preventDefault();
  }

  mark(entry) {
    const wanted = entry ? String(entry.number) : 'level';
    for (const other of this.list.querySelectorAll('button')) {
      if (other.dataset.entry === wanted) {
        other.setAttribute('aria-current', 'true');
        other.scrollIntoView({block: 'nearest', inline: 'nearest'});
      } else {
        other.removeAttribute('aria-current');
      }
    }
  }
}
