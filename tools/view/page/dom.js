// Makes elements. Texts become text nodes and nothing else, so no name from a file is ever markup.

export const byId = (id) => document.getElementById(id);

export function element(tag, attributes = {}, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) {
      made.addEventListener(name.slice(2), value);
    } else if (typeof value === 'boolean') {
      made.toggleAttribute(name, value);
    } else {
      made.setAttribute(name, value);
    }
  }
  made.append(...children);
  return made;
}

const shapes = {
  seen: 'M2 12s3.6-6.5 10-6.5S22 12 22 12s-3.6 6.5-10 6.5S2 12 2 12Z M12 9a3 3 0 1 1 0 6 3 3 0 0 1 0-6Z',
  unseen:
    'M3 3l18 18 M10 5.7A11 11 0 0 1 12 5.5c6.4 0 10 6.5 10 6.5a18 18 0 0 1-3.3 3.9 M6.2 7.5A17 17 0 0 0 2 12s3.6 6.5 10 6.500c1.800 0 3.400-.5 4.700-1.200',
  pick: 'M12 3v4 M12 17v4 M3 12h4 M17 12h4 M12 7a5 5 0 1 1 0 10 5 5 0 0 1 0-10Z',
  open: 'M8 10l4 4 4-4',
  level: 'M3 7l6-3 6 3 6-3v13l-6 3-6-3-6 3Z M9 4v13 M15 7v13',
  over: 'M4 20h16 M7 20v-6 M12 20V4 M17 20v-9',
  close: 'M6 6l12 12 M18 6L6 18',
  fault: 'M12 4 2.5 20h19Z M12 10v4.5 M12 17.3v.2',
};

export function icon(name) {
  const space = 'http://www.w3.org/2000/svg';
  const svg = document.createElementNS(space, 'svg');
  svg.setAttribute('viewBox', '0 0 24 24');
  svg.setAttribute('aria-hidden', 'true');
  svg.setAttribute('class', `icon icon-${name}`);
  const path = document.createElementNS(space, 'path');
  path.setAttribute('d', shapes[name]);
  svg.append(path);
  return svg;
}

// "1 goblin", "2 goblins", "12 345 triangles".
export const count = (number, word) =>
  `${number.toLocaleString('en').replaceAll(',', '\u202f')} ${word}${number === 1 ? '' : 's'}`;

export function announce(text) {
  byId('live').textContent = text;
}
