// The colours that stand for something, the same in the 3D view and in the lists.

import {Color} from 'three';

export const highlight = 0xff8a1f;
export const clay = 0x9a988f;

// As in page.css.
const states = {
  added: [58, 160, 82],
  gone: [214, 69, 56],
  moved: [60, 128, 220],
  changed: [226, 148, 24],
};
const same = [176, 174, 166];

const rgb = (color) => color.toArray().map((part) => Math.round(part * 255));

// Red, green and blue as the light has them, from 0 to 255.
export const stateColor = (state) => rgb(new Color(`rgb(${(states[state] ?? same).join(',')})`));

// Neighbours in the list get hues that are far apart.
export function goblinColor(number) {
  const turn = (number * 0.618034) % 1;
  const color = new Color().setHSL(turn, 0.6, 0.42 + 0.16 * ((number * 0.37) % 1));
  return rgb(color);
}
