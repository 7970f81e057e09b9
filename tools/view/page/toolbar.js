// The switches above the 3D view.

import {byId, element} from './dom.js';

const looks = [
  ['texture', 'Texture'],
  ['clay', 'Clay'],
  ['goblins', 'By goblin'],
];
const overlays = [
  ['wires', 'Wireframe'],
  ['normals', 'Normals'],
  ['axes', 'Axes'],
];

const pressed = (button) => button.getAttribute('aria-pressed') === 'true';

function toggle(text, on, act) {
  const made = element(
    'button',
    {
      type: 'button',
      'aria-pressed': String(on),
      onclick: () => {
        made.setAttribute('aria-pressed', !pressed(made));
        act(pressed(made));
      },
    },
    text,
  );
  return made;
}

const act = (text, action) => element('button', {type: 'button', onclick: action}, text);
const group = (name, ...buttons) =>
  element('div', {role: 'group', 'aria-label': name, class: 'set'}, ...buttons);

export class Toolbar {
  constructor(stage, {compares, savePicture, saveModel}) {
    this.stage = stage;
    const shown = compares ? [...looks, ['changes', 'Changes']] : looks;
    this.looks = shown.map(([look, text]) =>
      element(
        'button',
        {
          type: 'button',
          'data-look': look,
          'aria-pressed': 'false',
          onclick: () => this.wear(look),
        },
        text,
      ),
    );
    this.model = act('Save .glb', saveModel);
    byId('tools').append(
      group('Colours', ...this.looks),
      group(
        'Shown',
        toggle('Ground', true, (on) => stage.setGroundVisible(on)),
        ...overlays.map(([kind, text]) => toggle(text, false, (on) => stage.setOverlay(kind, on))),
      ),
      group(
        'View',
        act('From above', () => stage.camera.lookDown()),
        act('Reset', () => stage.reset()),
      ),
      group('Save', act('Save PNG', savePicture), this.model),
    );
  }

  wear(look) {
    for (const button of this.looks) {
      button.setAttribute('aria-pressed', button.dataset.look === look);
    }
    this.stage.setLook(look);
  }

  // What the tile is made of decides what can be chosen.
  offer({hasPicture, isLevel, compares}) {
    this.model.hidden = isLevel;
    for (const button of this.looks) {
      const {look} = button.dataset;
      button.disabled = (look === 'texture' && !hasPicture) || (look === 'changes' && !compares);
    }
    const now = this.looks.find(pressed);
    const first = compares ? 'changes' : hasPicture ? 'texture' : 'clay';
    this.wear(!now || now.disabled || compares || this.wasPoor ? first : now.dataset.look);
    this.wasPoor = !hasPicture;
  }
}
