import {byId, element, icon} from './dom.js';

const blends = {
  norm: 'Normal',
  pass: 'Pass through',
  diss: 'Dissolve',
  dark: 'Darken',
  'mul ': 'Multiply',
  idiv: 'Color burn',
  lbrn: 'Linear burn',
  lite: 'Lighten',
  scrn: 'Screen',
  'div ': 'Color dodge',
  lddg: 'Linear dodge',
  over: 'Overlay',
  sLit: 'Soft light',
  hLit: 'Hard light',
  vLit: 'Vivid light',
  lLit: 'Linear light',
  pLit: 'Pin light',
  hMix: 'Hard mix',
  diff: 'Difference',
  smud: 'Exclusion',
  'hue ': 'Hue',
  'sat ': 'Saturation',
  colr: 'Color',
  'lum ': 'Luminosity',
};

function row(layer, isGoblins) {
  const [left, top, right, bottom] = layer.rect;
  const size =
    right > left && bottom > top ? `${right - left} \u00d7 ${bottom - top}` : 'no pixels';
  const place = left || top ? ` at ${left}, ${top}` : '';
  const blend = Object.hasOwn(blends, layer.blend) ? blends[layer.blend] : layer.blend;
  const state = layer.hidden ? 'Hidden' : 'Visible';
  const eye = element(
    'span',
    {class: 'eye', title: state},
    icon(layer.hidden ? 'unseen' : 'seen'),
    element('span', {class: 'unseen'}, state),
  );
  const name = element('span', {class: 'name'}, layer.name || `Layer ${layer.index}`);
  if (isGoblins) {
    name.append(element('span', {class: 'badge'}, 'goblins'));
  }
  const meta = element(
    'span',
    {class: 'meta'},
    `${size}${place} \u00b7 ${blend} \u00b7 ${Math.round(layer.opacity / 2.55)} %`,
  );
  return element(
    'li',
    {class: layer.hidden ? 'row hidden-layer' : 'row'},
    eye,
    element('span', {class: 'words'}, name, meta),
  );
}

// The top layer first, as painters see them.
export function showLayers(report) {
  const layers = report ? report.layers : [];
  const goblins = layers.find((layer) => layer.name === 'GoblinGeometry');
  byId('layers').replaceChildren(...layers.map((layer) => row(layer, layer === goblins)).reverse());
  byId('no-layers').hidden = layers.length > 0;
  byId('no-layers').textContent = report
    ? 'This file has no layers; its picture is the merged image alone.'
    : 'No file was read.';
}
