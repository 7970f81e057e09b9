// What is drawn over a tile: wires, normals, axes, and the frame of what is picked.

import {
  BufferAttribute,
  BufferGeometry,
  CanvasTexture,
  EdgesGeometry,
  Group,
  LineBasicMaterial,
  LineSegments,
  Mesh,
  MeshBasicMaterial,
  MeshLambertMaterial,
  DoubleSide,
  Sprite,
  SpriteMaterial,
} from 'three';
import {floatsAVertex} from './geometry.js';
import {highlight} from './colors.js';

export function wires(model) {
  const group = new Group();
  for (const shape of [model.surface, model.goblins?.geometry]) {
    if (shape) {
      const lines = new Mesh(
        shape,
        new MeshBasicMaterial({color: 0x10202c, wireframe: true, transparent: true, opacity: 0.55}),
      );
      lines.frustumCulled = false;
      group.add(lines);
    }
  }
  return group;
}

const normalLength = 0.025; // of the tile's side

export function normals(model) {
  const lines = [];
  const {vertices, parts, visible} = model.goblins ?? {parts: []};
  parts.forEach(({vertex, vertexCount}, number) => {
    if (!visible[number]) {
      return;
    }
    for (let i = vertex; i < vertex + vertexCount; i++) {
      const at = i * floatsAVertex;
      for (const length of [0, normalLength]) {
        for (let axis = 0; axis < 3; axis++) {
          lines.push(vertices[at + axis] + vertices[at + 3 + axis] * length);
        }
      }
    }
  });
  return segments(lines, 0x00a7c4);
}

function segments(numbers, color) {
  const shape = new BufferGeometry();
  shape.setAttribute('position', new BufferAttribute(new Float32Array(numbers), 3));
  const made = new LineSegments(shape, new LineBasicMaterial({color}));
  made.frustumCulled = false;
  return made;
}

function letter(text, color) {
  const canvas = Object.assign(document.createElement('canvas'), {width: 64, height: 64});
  const pen = canvas.getContext('2d');
  pen.font = 'bold 46px sans-serif';
  pen.textAlign = 'center';
  pen.textBaseline = 'middle';
  pen.lineWidth = 8;
  pen.strokeStyle = '#fff';
  pen.strokeText(text, 32, 34);
  pen.fillStyle = color;
  pen.fillText(text, 32, 34);
  const sprite = new Sprite(
    new SpriteMaterial({map: new CanvasTexture(canvas), depthTest: false, sizeAttenuation: true}),
  );
  sprite.scale.setScalar(0.07);
  return sprite;
}

// From the tile's corner at the origin, a little longer than its sides.
export function axes(model) {
  const group = new Group();
  const height = Math.max(0.3, model.box.max.y);
  for (const [name, color, end] of [
    ['x', '#c62828', [1.12, 0, 0]],
    ['y', '#2e7d32', [0, height * 1.15, 0]],
    ['z', '#1f55c4', [0, 0, 1.12]],
  ]) {
    const line = segments([0, 0, 0, ...end], color);
    line.material.depthTest = false;
    line.renderOrder = 2;
    const sign = letter(name, color);
    sign.position.fromArray(end).multiplyScalar(1.04);
    sign.renderOrder = 3;
    group.add(line, sign);
  }
  return group;
}

// The picked goblin again, in the colour of what is picked, with its edges.
export function pickedFrame(goblins, number) {
  const shape = goblins.single(number);
  const group = new Group();
  const body = new Mesh(
    shape,
    new MeshLambertMaterial({
      color: highlight,
      side: DoubleSide,
      transparent: true,
      opacity: 0.45,
      polygonOffset: true,
      polygonOffsetFactor: -1,
      polygonOffsetUnits: -1,
    }),
  );
  const edges = new LineSegments(
    new EdgesGeometry(shape, 20),
    new LineBasicMaterial({color: highlight}),
  );
  group.add(body, edges);
  return group;
}

// `owned` are the geometries that others go on using.
export function discard(group, owned = []) {
  group?.traverse((part) => {
    if (part.geometry && !owned.includes(part.geometry)) {
      part.geometry.dispose();
    }
    part.material?.map?.dispose();
    part.material?.dispose();
  });
  group?.removeFromParent();
}
