// The picture of an entry: zoomed down to single pixels, with the goblins' texture coordinates on
// it, and the merged image beside what the layers show.

import {announce, byId, element} from './dom.js';
import {compose, difference, loaded} from './compose.js';
import {unpack} from './geometry.js';

const largest = 40; // times the size of a pixel
const kinds = {
  merged: 'Merged image',
  composite: 'Layers',
  difference: 'Difference',
};
const notes = {
  merged: 'The file\u2019s merged image.',
  composite: 'Put together from the visible layers.',
  difference: 'What differs between the merged image and the layers: black is equal.',
  layers: 'Put together from the layers that are switched on.',
};

export class PictureView {
  // `onPicture` gets what the tile is to wear.
  constructor(onPicture) {
    this.onPicture = onPicture;
    this.canvas = byId('picture');
    this.pen = this.canvas.getContext('2d');
    this.pointers = new Map();
    this.listen();
    new ResizeObserver(([{contentRect}]) => {
      if (contentRect.width !== this.room) {
        this.room = contentRect.width;
        this.fit();
      }
    }).observe(this.canvas.parentElement);
    byId('picture-tools').append(
      ...Object.entries(kinds).map(([kind, text]) =>
        element(
          'button',
          {
            type: 'button',
            'data-kind': kind,
            'aria-pressed': 'false',
            onclick: () => this.choose(kind),
          },
          text,
        ),
      ),
      (this.uvSwitch = element(
        'button',
        {type: 'button', 'aria-pressed': 'false', onclick: () => this.toggleUv()},
        'UVs',
      )),
      element('button', {type: 'button', onclick: () => this.fit()}, 'Fit'),
    );
  }

  async show(entry) {
    this.entry = entry;
    this.image = this.uvs = null;
    this.picked = null;
    const {picture} = entry;
    this.canvas.hidden = !picture;
    this.canvas.classList.toggle('transparent', Boolean(picture?.transparent));
    byId('picture-tools').hidden = !picture;
    this.setNote(picture ? '' : 'There is no picture.');
    if (!picture) {
      return null;
    }
    this.canvas.setAttribute('aria-label', `Picture of ${entry.name}`);
    this.sources = {[picture.composed ? 'composite' : 'merged']: await loaded(picture.url)};
    if (picture.composite) {
      this.sources.composite = await loaded(picture.composite);
    }
    if (this.entry !== entry) {
      return null;
    }
    const {merged, composite} = this.sources;
    if (merged && composite) {
      this.sources.difference = difference(merged, composite, picture.width, picture.height);
    }
    for (const button of byId('picture-tools').querySelectorAll('[data-kind]')) {
      button.hidden = !this.sources.difference;
    }
    this.uvSwitch.hidden = !entry.goblins;
    this.choose(merged ? 'merged' : 'composite', false);
    this.fit();
    return this.image;
  }

  choose(kind, aloud = true) {
    this.image = this.sources[kind];
    this.mark(kind);
    this.setNote(this.noteOf(kind));
    this.draw();
    if (aloud) {
      announce(kinds[kind]);
      this.onPicture(kind === 'difference' ? this.sources.merged : this.image);
    }
  }

  noteOf(kind) {
    if (this.entry.picture.black) {
      return 'The picture is black, so the tile is shown in clay.';
    }
    return kind === 'composite' && !this.sources.merged
      ? `${notes.composite} The file\u2019s merged image shows nothing.`
      : notes[kind];
  }

  mark(kind) {
    for (const button of byId('picture-tools').querySelectorAll('[data-kind]')) {
      button.setAttribute('aria-pressed', button.dataset.kind === kind);
    }
  }

  // Only the layers that are switched on. As the file has them, they are what was shown at first.
  async showLayers(shown) {
    const {entry} = this;
    if (shown.every((on, i) => on !== entry.report.layers[i].hidden)) {
      return this.choose(this.sources.merged ? 'merged' : 'composite');
    }
    const made = await compose(entry, shown);
    if (this.entry !== entry) {
      return;
    }
    this.image = made;
    this.mark(null);
    this.setNote(notes.layers);
    this.draw();
    this.onPicture(made);
  }

  setNote(text) {
    const {picture, report} = this.entry;
    const shrunk = picture && report && picture.width < report.width;
    byId('picture-note').textContent =
      text + (shrunk ? ` Shown at ${picture.width} \u00d7 ${picture.height} pixels.` : '');
  }

  toggleUv() {
    this.uvShown = this.uvSwitch.getAttribute('aria-pressed') !== 'true';
    this.uvSwitch.setAttribute('aria-pressed', this.uvShown);
    this.draw();
  }

  pick(number) {
    this.picked = number;
    this.draw();
  }

  fit() {
    if (!this.entry?.picture || this.canvas.hidden) {
      return;
    }
    const {width, height} = this.entry.picture;
    const room = this.canvas.parentElement.clientWidth;
    const side = Math.min(room, 520);
    this.canvas.width = room * devicePixelRatio;
    this.canvas.height = side * devicePixelRatio;
    this.canvas.style.height = `${side}px`;
    this.scale = Math.min(this.canvas.width / width, this.canvas.height / height);
    this.smallest = this.scale;
    this.left = (this.canvas.width - width * this.scale) / 2;
    this.top = (this.canvas.height - height * this.scale) / 2;
    this.draw();
  }

  zoomAt(x, y, factor) {
    const wanted = Math.min(
      Math.max(this.scale * factor, this.smallest),
      largest * devicePixelRatio,
    );
    this.left = x - ((x - this.left) * wanted) / this.scale;
    this.top = y - ((y - this.top) * wanted) / this.scale;
    this.scale = wanted;
    this.keepInside();
  }

  keepInside() {
    const {width, height} = this.entry.picture;
    const kept = (at, size, room) =>
      size <= room ? (room - size) / 2 : Math.min(0, Math.max(room - size, at));
    this.left = kept(this.left, width * this.scale, this.canvas.width);
    this.top = kept(this.top, height * this.scale, this.canvas.height);
    this.draw();
  }

  draw() {
    if (!this.entry?.picture || !this.image || !this.scale) {
      return;
    }
    const {width, height} = this.entry.picture;
    const {pen} = this;
    pen.setTransform(1, 0, 0, 1, 0, 0);
    pen.clearRect(0, 0, this.canvas.width, this.canvas.height);
    pen.setTransform(this.scale, 0, 0, this.scale, this.left, this.top);
    pen.imageSmoothingEnabled = this.scale < 2;
    pen.drawImage(this.image, 0, 0, width, height);
    if (this.uvShown && this.entry.goblins) {
      this.drawUvs(width, height);
    }
    byId('zoom').textContent = `${Math.round((100 * this.scale) / devicePixelRatio)} %`;
  }

  drawUvs(width, height) {
    this.uvs ??= unpack(this.entry.goblins);
    const {vertices, indices, parts} = this.uvs;
    const path = new Path2D();
    const chosen = new Path2D();
    parts.forEach(({index, indexCount}, number) => {
      const to = number === this.picked ? chosen : path;
      for (let i = index; i < index + indexCount; i += 3) {
        for (let k = 0; k < 3; k++) {
          const at = indices[i + k] * 8;
          const point = [vertices[at + 6] * width, vertices[at + 7] * height];
          if (k === 0) {
            to.moveTo(...point);
          } else {
            to.lineTo(...point);
          }
        }
        to.closePath();
      }
    });
    for (const [line, color, thickness] of [
      [path, '#0009', 2.6],
      [path, '#ffffffd9', 1],
      [chosen, '#000', 4.2],
      [chosen, '#ff8a1f', 2.2],
    ]) {
      this.pen.strokeStyle = color;
      this.pen.lineWidth = (thickness * devicePixelRatio) / this.scale;
      this.pen.stroke(line);
    }
  }

  // Of a pointer, in the canvas's own pixels.
  place(event) {
    const area = this.canvas.getBoundingClientRect();
    return [
      ((event.clientX - area.left) * this.canvas.width) / area.width,
      ((event.clientY - area.top) * this.canvas.height) / area.height,
    ];
  }

  listen() {
    const {canvas} = this;
    canvas.addEventListener(
      'wheel',
      (event) => {
        event.preventDefault();
        this.zoomAt(...this.place(event), Math.exp(-event.deltaY / 300));
      },
      {passive: false},
    );
    canvas.addEventListener('pointerdown', (event) => {
      canvas.setPointerCapture(event.pointerId);
      this.pointers.set(event.pointerId, this.place(event));
    });
    for (const end of ['pointerup', 'pointercancel']) {
      canvas.addEventListener(end, (event) => this.pointers.delete(event.pointerId));
    }
    canvas.addEventListener('pointermove', (event) => this.move(event));
    canvas.addEventListener('keydown', (event) => this.key(event));
  }

  move(event) {
    const now = this.place(event);
    const before = this.pointers.get(event.pointerId);
    this.tellPixel(now);
    if (!before) {
      return;
    }
    const other = [...this.pointers].find(([id]) => id !== event.pointerId)?.[1];
    if (other) {
      const apart = (p) => Math.hypot(p[0] - other[0], p[1] - other[1]) || 1;
      this.zoomAt(...other, apart(now) / apart(before));
    } else {
      this.left += now[0] - before[0];
      this.top += now[1] - before[1];
      this.keepInside();
    }
    this.pointers.set(event.pointerId, now);
  }

  // The pixel under the pointer: where it is, and its colour.
  tellPixel([x, y]) {
    const {width, height} = this.entry.picture;
    const [column, row] = [(x - this.left) / this.scale, (y - this.top) / this.scale].map(
      Math.floor,
    );
    const inside = column >= 0 && row >= 0 && column < width && row < height;
    if (!inside || !this.image) {
      byId('pixel').textContent = '';
      return;
    }
    this.probe ??= Object.assign(document.createElement('canvas'), {
      width: 1,
      height: 1,
    }).getContext('2d', {willReadFrequently: true});
    this.probe.clearRect(0, 0, 1, 1);
    this.probe.drawImage(this.image, -column, -row, width, height);
    const [r, g, b, a] = this.probe.getImageData(0, 0, 1, 1).data;
    byId('pixel').textContent = `${column}, ${row}: ${r} ${g} ${b}${a < 255 ? ` / ${a}` : ''}`;
  }

  key(event) {
    if (event.ctrlKey || event.metaKey || event.altKey) {
      return;
    }
    const middle = [this.canvas.width / 2, this.canvas.height / 2];
    const step = 60 * devicePixelRatio;
    const shift = (x, y) => {
      this.left += x;
      this.top += y;
      this.keepInside();
    };
    const act = {
      '+': () => this.zoomAt(...middle, 1.5),
      '=': () => this.zoomAt(...middle, 1.5),
      '-': () => this.zoomAt(...middle, 1 / 1.5),
      0: () => this.fit(),
      ArrowLeft: () => shift(step, 0),
      ArrowRight: () => shift(-step, 0),
      ArrowUp: () => shift(0, step),
      ArrowDown: () => shift(0, -step),
    }[event.key];
    if (act) {
      act();
      event.preventDefault();
    }
  }
}
