import {announce, byId, count, element, icon} from './dom.js';
import {GoblinList} from './goblins.js';
import {showLayers} from './layers.js';
import {Stage} from './stage.js';

const items = JSON.parse(byId('items').textContent);

let stage = null;
try {
  stage = new Stage(byId('canvas'), (number) => list.pick(number, true));
} catch {
  byId('canvas').hidden = true;
  byId('tools').hidden = true;
  byId('keys').hidden = true;
}
const list = new GoblinList(stage);

const goblinCount = (item) => item.goblins?.meshes.length ?? 0;
const hasFault = (item) =>
  Boolean(item.fault || item.missing || item.report?.fault || item.goblins?.fault);

function note(item) {
  if (item.fault) {
    return 'cannot be shown';
  }
  if (item.goblins?.fault) {
    return 'damaged goblins';
  }
  return item.goblins ? count(goblinCount(item), 'goblin') : 'no goblins';
}

// With its folder where the name alone would not tell.
function label(item) {
  const alone = items.filter((other) => other.name === item.name).length === 1;
  return alone || item.tile ? item.name : item.file.split(/[\\/]/).slice(-2).join('/');
}

function fileButton(item, number) {
  const thumbnail = item.picture
    ? element('img', {src: item.picture.thumbnail, alt: '', width: '56', height: '56'})
    : element('span', {class: 'no-thumbnail'});
  const words = element(
    'span',
    {class: 'words'},
    element('span', {class: 'name'}, label(item)),
    element('span', {class: 'meta'}, note(item)),
  );
  const button = element(
    'button',
    {type: 'button', title: item.file, onclick: () => choose(number)},
    thumbnail,
    words,
  );
  if (hasFault(item)) {
    button.append(icon('fault'));
  }
  return element('li', {}, button);
}

function facts(item) {
  const report = item.report;
  const parts = [];
  if (item.tile) {
    parts.push(`texture ${item.file}`);
  }
  if (report) {
    parts.push(
      `${report.width} \u00d7 ${report.height} pixels`,
      `${report.depth} bits`,
      count(report.channels, 'channel'),
    );
    parts.push(`${(report.bytes / 1024).toFixed(0)} KiB`);
  }
  if (item.goblins && !item.tile) {
    parts.push(`${item.goblins.layout} layout`);
  }
  return parts.join(' \u00b7 ');
}

function faultTexts(item) {
  const texts = [];
  if (item.fault) {
    texts.push(['This cannot be shown', item.fault]);
  }
  if (item.missing) {
    texts.push(['Maya shows something else here', item.missing]);
  }
  if (item.report?.fault) {
    texts.push(['The file is damaged', item.report.fault]);
  }
  if (item.goblins?.fault) {
    texts.push([
      'The goblin geometry is damaged',
      `${item.goblins.fault}. What could be read before that is shown. Export the tile again.`,
    ]);
  }
  if (item.goblins?.dropped) {
    texts.push([
      'Some triangles are left out',
      `${count(item.goblins.dropped, 'triangle')} with coordinates that are no finite numbers.`,
    ]);
  }
  if (item.pictureFault) {
    texts.push(['There is no picture', item.pictureFault]);
  }
  return texts;
}

function showFaults(item) {
  byId('faults').replaceChildren(
    ...faultTexts(item).map(([what, why]) =>
      element(
        'div',
        {class: 'fault'},
        icon('fault'),
        element('p', {}, element('strong', {}, what), element('br'), why),
      ),
    ),
  );
}

function showPicture(item) {
  const image = byId('picture');
  image.hidden = !item.picture;
  image.classList.toggle('transparent', Boolean(item.picture?.transparent));
  byId('picture-note').textContent = !item.picture
    ? 'There is no picture.'
    : item.picture.composed
      ? 'Put together from the visible layers, since the file\u2019s merged image shows nothing.'
      : 'The file\u2019s merged image.';
  if (!item.picture) {
    return image.removeAttribute('src');
  }
  image.src = item.picture.url;
  image.alt = `Picture of ${item.name}`;
}

let shown = -1;

async function showStage(item) {
  const number = shown;
  const hasModel = !item.fault;
  byId('no-stage').hidden = hasModel && stage;
  byId('no-stage').textContent = stage
    ? 'Nothing to show.'
    : 'This browser shows no 3D (WebGL is missing).';
  byId('stage').classList.toggle('without', !hasModel);
  if (!stage) {
    return;
  }
  // An image of its own: the one in the page becomes another entry's before this one is drawn.
  const image = new Image();
  if (item.picture) {
    image.src = item.picture.url;
    await image.decode().catch(() => {});
  }
  if (number !== shown) {
    return;
  }
  stage.show(hasModel ? item : {}, image.naturalWidth ? image : null);
  stage.setTileVisible(hasModel && tileSwitch.getAttribute('aria-pressed') === 'true');
  list.apply();
}

function choose(number) {
  if (number === shown) {
    return;
  }
  shown = number;
  const item = items[number];
  [...byId('files').querySelectorAll('button')].forEach((button, i) => {
    if (i === number) {
      button.setAttribute('aria-current', 'true');
    } else {
      button.removeAttribute('aria-current');
    }
  });
  byId('title').textContent = label(item);
  byId('facts').textContent = facts(item);
  document.title = `${item.name} \u2013 tiles and goblins`;
  showFaults(item);
  stage?.clear();
  showPicture(item);
  showLayers(item.report);
  list.show(item);
  showStage(item);
  announce(`${item.name}, ${note(item)}`);
}

const tool = (text, action, attributes = {}) =>
  element('button', {type: 'button', onclick: action, ...attributes}, text);
const tileSwitch = tool(
  'Ground',
  () => {
    const visible = tileSwitch.getAttribute('aria-pressed') !== 'true';
    tileSwitch.setAttribute('aria-pressed', visible);
    stage.setTileVisible(visible);
  },
  {'aria-pressed': 'true'},
);
byId('tools').append(
  tileSwitch,
  tool('From above', () => stage.lookDown()),
  tool('Reset', () => stage.reset()),
);

// Up and down walk through the files.
byId('files').addEventListener('keydown', (event) => {
  const step = {ArrowDown: 1, ArrowRight: 1, ArrowUp: -1, ArrowLeft: -1}[event.key];
  if (!step) {
    return;
  }
  const buttons = [...byId('files').querySelectorAll('button')];
  buttons[buttons.indexOf(document.activeElement) + step]?.focus();
  event.preventDefault();
});

const total = items.reduce((sum, item) => sum + goblinCount(item), 0);
const faulty = items.filter(hasFault).length;
byId('summary').textContent =
  `${count(items.length, items.some((item) => item.tile) ? 'tile' : 'file')} \u00b7 ${count(total, 'goblin')}` +
  (faulty ? ` \u00b7 ${faulty} with faults` : '');
byId('files').append(...items.map(fileButton));
choose(
  Math.max(
    0,
    items.findIndex((item) => !item.fault),
  ),
);
