// Saves what is shown: the view as a PNG file, the tile as binary glTF.

import {Group, Mesh, MeshStandardMaterial} from 'three';
import {GLTFExporter} from 'three/examples/jsm/exporters/GLTFExporter.js';
import {BufferAttribute, BufferGeometry} from 'three';
import {announce, element} from './dom.js';

function hand(url, name) {
  const link = element('a', {href: url, download: name});
  document.body.append(link);
  link.click();
  link.remove();
  announce(`${name} saved`);
}

const fileName = (name, extension) =>
  `${name.replace(/\.[^.]*$/, '').replace(/[^\p{L}\p{N}._-]+/gu, '_') || 'tile'}${extension}`;

export function savePicture(stage, name) {
  hand(stage.picture(), fileName(name, '.png'));
}

// Attributes of their own: the exporter takes no interleaved ones.
function apart(shape) {
  const made = new BufferGeometry();
  for (const name of ['position', 'normal', 'uv']) {
    const from = shape.getAttribute(name);
    const to = new BufferAttribute(new Float32Array(from.count * from.itemSize), from.itemSize);
    for (let i = 0; i < from.count; i++) {
      for (let k = 0; k < from.itemSize; k++) {
        to.setComponent(i, k, from.getComponent(i, k));
      }
    }
    made.setAttribute(name, to);
  }
  return made.setIndex(shape.getIndex());
}

export async function saveModel(model, name) {
  const material = new MeshStandardMaterial({
    map: model.map,
    color: model.map ? 0xffffff : 0x999999,
    roughness: 1,
    metalness: 0,
    side: model.groundMesh.material.side,
  });
  const group = new Group();
  const add = (shape, called) => {
    const mesh = new Mesh(apart(shape), material);
    mesh.name = called;
    group.add(mesh);
  };
  add(model.surface, 'tile');
  model.goblins?.parts.forEach((part, number) => {
    if (part.indexCount) {
      add(model.goblins.single(number), part.name);
    }
  });
  const bytes = await new GLTFExporter().parseAsync(group, {binary: true});
  group.traverse((part) => part.geometry?.dispose());
  material.dispose();
  const url = URL.createObjectURL(new Blob([bytes], {type: 'model/gltf-binary'}));
  hand(url, fileName(name, '.glb'));
  setTimeout(() => URL.revokeObjectURL(url), 10000);
}
