// Puts the page together: what is chosen in one part of it shows in the others.

import {announce, byId, count} from './dom.js';
import {loaded} from './compose.js';
import {showPicked, tileDetails} from './details.js';
import {
  compares,
  entries,
  goblinCount,
  hasFault,
  hasLevel,
  isOverBudget,
  label,
  level,
  note,
} from './entries.js';
import {showFaults} from './faults.js';
import {FileList} from './files.js';
import {GoblinList} from './goblins.js';
import {listen} from './input.js';
import {LayerList} from './layers.js';
import {tell, wanted} from './link.js';
import {PictureView} from './picture.js';
import {saveModel, savePicture} from './save.js';
import {Stage} from './stage.js';
import {Toolbar} from './toolbar.js';

let shown; // an entry, or null for the whole level

let stage = null;
try {
  stage = new Stage(byId('canvas'), {
    pick: (number) => goblins.pick(number, true),
    enter: (entry) => choose(entry),
  });
  listen(stage);
} catch {
  byId('canvas').hidden = byId('tools').hidden = byId('keys').hidden = true;
}

const nameShown = () => (shown ? shown.name : 'level');
const toolbar = stage
  ? new Toolbar(stage, {
      compares,
      savePicture: () => savePicture(stage, nameShown()),
      saveModel: () => saveModel(stage.model, nameShown()),
    })
  : null;
const picture = new PictureView((image) => stage?.setPicture(image));
const layers = new LayerList((switched) => picture.showLayers(switched));
const goblins = new GoblinList(stage, (node) => onPicked(node));
const files = new FileList((entry) => choose(entry));

function onPicked(node) {
  showPicked(shown, node, stage?.pickedBox, {
    frame: () => stage.framePicked(),
    leave: () => goblins.pick(null),
  });
  picture.pick(node?.numbers[0] ?? null);
  tell(shown, node?.numbers[0] ?? null);
}

function facts(entry) {
  const parts = [];
  if (entry.before) {
    parts.push(`compared with ${entry.before.file || 'nothing: the file is new'}`);
  }
  if (entry.file && entry.file !== entry.name) {
    parts.push(entry.file);
  }
  const {report} = entry;
  if (report) {
    parts.push(
      `${report.width} \u00d7 ${report.height} pixels`,
      `${report.depth} bits`,
      count(report.channels, 'channel'),
      `${(report.bytes / 1024).toFixed(0)} KiB`,
    );
  }
  if (entry.goblins && report?.goblinGeometry) {
    parts.push(`${report.goblinGeometry.layout} layout`);
  }
  return parts.join(' \u00b7 ');
}

function empty(text) {
  byId('no-stage').hidden = !text;
  byId('no-stage').textContent = text;
  byId('stage').classList.toggle('without', Boolean(text));
}

async function showTile(entry, goblin) {
  const map = await picture.show(entry);
  if (shown !== entry) {
    return;
  }
  if (stage && !entry.fault) {
    stage.show(entry, entry.picture?.black ? null : map);
    toolbar.offer({
      hasPicture: Boolean(map) && !entry.picture.black,
      isLevel: false,
      compares: Boolean(entry.before),
    });
    goblins.apply();
  }
  tileDetails(entry, stage?.model?.box ?? {min: {y: 0}, max: {y: 0}});
  if (goblin !== null && goblins.leaves[goblin]) {
    goblins.pick(goblin, true);
    stage?.framePicked();
  }
}

const smallPictures = 12; // from so many tiles on, the overview takes the thumbnails

async function showLevel() {
  const kind = level.length > smallPictures ? 'thumbnail' : 'url';
  const pictures = await Promise.all(
    level.map((entry) =>
      entry.picture && !entry.picture.black ? loaded(entry.picture[kind]) : null,
    ),
  );
  if (shown !== null || !stage) {
    return;
  }
  stage.showLevel(level, pictures);
  toolbar.offer({hasPicture: pictures.some(Boolean), isLevel: true, compares: false});
}

// `entry` is null for the whole level.
function choose(entry, goblin = null) {
  if (entry === shown) {
    return goblin === null || goblins.pick(goblin, true);
  }
  shown = entry;
  document.body.classList.toggle('level', entry === null);
  files.mark(entry);
  const title = entry ? label(entry) : 'Whole level';
  byId('title').textContent = title;
  byId('facts').textContent = entry
    ? facts(entry)
    : `${count(level.length, 'tile')}, each in its place. Click one to enter it.`;
  document.title = `${entry ? entry.name : title} \u2013 tiles and goblins`;
  showFaults(entry);
  stage?.clear();
  empty(
    !stage
      ? 'This browser shows no 3D (WebGL is missing).'
      : entry?.fault
        ? 'Nothing to show.'
        : '',
  );
  layers.show(entry ?? {});
  goblins.show(entry);
  showPicked(entry, null);
  tell(entry, null);
  announce(entry ? `${entry.name}, ${note(entry)}` : title);
  return entry ? showTile(entry, goblin) : showLevel();
}

function follow() {
  const place = wanted();
  if (place) {
    choose(place.level ? null : place.entry, place.goblin ?? null);
  }
  return Boolean(place);
}

function summary() {
  const total = entries.reduce((sum, entry) => sum + goblinCount(entry), 0);
  const parts = [
    count(entries.length, entries.some((entry) => entry.placement) ? 'tile' : 'file'),
    count(total, 'goblin'),
  ];
  for (const [number, words] of [
    [entries.filter(hasFault).length, 'with faults'],
    [entries.filter(isOverBudget).length, 'over the budget'],
  ]) {
    if (number) {
      parts.push(`${number} ${words}`);
    }
  }
  return parts.join(' \u00b7 ');
}

byId('summary').textContent = summary();
addEventListener('hashchange', follow);
if (!follow()) {
  choose(hasLevel ? null : (entries.find((entry) => !entry.fault) ?? entries[0]));
}
