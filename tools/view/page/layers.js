import {announce, byId, element, icon} from './dom.js';

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

function facts(layer, section) {
  if (section === 'group') {
    return 'group';
  }
  const [left, top, right, bottom] = layer.rect;
  const size =
    right > left && bottom > top ? `${right - left} \u00d7 ${bottom - top}` : 'no pixels';
  const place = left || top ? ` at ${left}, ${top}` : '';
  const blend = Object.hasOwn(blends, layer.blend) ? blends[layer.blend] : layer.blend;
  return `${size}${place} \u00b7 ${blend} \u00b7 ${Math.round(layer.opacity / 2.55)} %`;
}

// Only looked at: the page does not have the layer's pixels, or they are the goblins.
function eye(hidden) {
  const state = hidden ? 'Hidden' : 'Visible';
  return element(
    'span',
    {class: 'eye', title: state},
    icon(hidden ? 'unseen' : 'seen'),
    element('span', {class: 'unseen'}, state),
  );
}

export class LayerList {
  // `onSwitch` gets whether each layer is switched on.
  constructor(onSwitch) {
    this.onSwitch = onSwitch;
  }

  // The top layer first, as painters see them.
  show({report, layers, picture}) {
    const listed = report ? report.layers : [];
    this.shown = listed.map((layer) => !layer.hidden);
    this.switchable = Boolean(layers?.length && picture);
    const goblins = listed.find((layer) => layer.name === 'GoblinGeometry');
    const rows = listed.map((layer, i) => this.row(layer, layers?.[i], layer === goblins));
    let depth = 0;
    for (let i = rows.length - 1; i >= 0; i--) {
      const section = layers?.[i]?.section;
      if (section === 'end') {
        depth = Math.max(0, depth - 1);
        rows[i].hidden = true;
      }
      rows[i].classList.add(`depth-${Math.min(depth, 4)}`);
      depth += section === 'group' ? 1 : 0;
    }
    byId('layers').replaceChildren(...rows.reverse());
    const note = !report
      ? 'No file was read.'
      : listed.length === 0
        ? 'This file has no layers; its picture is the merged image alone.'
        : layers === null
          ? 'The layers cannot be switched: their pixels did not fit into the page (--max-size).'
          : '';
    byId('no-layers').hidden = !note;
    byId('no-layers').textContent = note;
  }

  row(layer, shown, isGoblins) {
    const name = element('span', {class: 'name'}, layer.name || `Layer ${layer.index}`);
    if (isGoblins) {
      name.append(element('span', {class: 'badge'}, 'goblins'));
    }
    const words = element(
      'span',
      {class: 'words'},
      name,
      element('span', {class: 'meta'}, facts(layer, shown?.section)),
    );
    const line = element('li', {class: layer.hidden ? 'row hidden-layer' : 'row'});
    if (this.switchable && (shown?.url || shown?.section === 'group')) {
      const box = element('input', {
        type: 'checkbox',
        checked: !layer.hidden,
        onchange: () => {
          this.shown[layer.index] = box.checked;
          line.classList.toggle('hidden-layer', !box.checked);
          this.onSwitch(this.shown);
          announce(`${layer.name} ${box.checked ? 'shown' : 'hidden'}`);
        },
      });
      line.append(element('label', {}, box, words));
    } else {
      line.append(eye(layer.hidden), words);
    }
    return line;
  }
}
