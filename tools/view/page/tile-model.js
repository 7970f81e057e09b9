// A tile in 3D: its ground, the goblins on it, and those of an older file.

import {Box3, DoubleSide, Group, Mesh, MeshLambertMaterial} from 'three';
import {clay, goblinColor, stateColor} from './colors.js';
import {geometry, unitTile, unpack, walls} from './geometry.js';
import {GoblinMesh} from './goblin-mesh.js';

const side = DoubleSide;
const farthest = 3; // goblins that lie farther from the tile than this do not move the camera

function boxOf(vertices) {
  const box = new Box3();
  for (let i = 0; i < vertices.length; i += 8) {
    box.expandByPoint({x: vertices[i], y: vertices[i + 1], z: vertices[i + 2]});
  }
  return box;
}

export class TileModel {
  // `map` is a texture or null.
  constructor(entry, map) {
    this.entry = entry;
    this.map = map;
    this.group = new Group();
    this.addGround();
    if (entry.goblins) {
      this.goblins = new GoblinMesh(unpack(entry.goblins), new MeshLambertMaterial({side}));
      this.goblins.mesh.castShadow = this.goblins.mesh.receiveShadow = true;
      this.group.add(this.goblins.mesh);
    }
    if (entry.before) {
      this.addGhosts();
    }
    this.box = this.nearBox();
    this.addWalls();
    this.setLook('texture');
  }

  addGround() {
    const {vertices, indices} = this.entry.tile ? unpack(this.entry.tile) : unitTile();
    this.surfaceBox = boxOf(vertices);
    this.surface = geometry(vertices, indices);
    this.ground = new Group();
    this.groundMesh = new Mesh(
      this.surface,
      new MeshLambertMaterial({side, alphaTest: this.entry.picture?.transparent ? 0.5 : 0}),
    );
    this.groundMesh.receiveShadow = true;
    this.groundMesh.castShadow = Boolean(this.entry.tile);
    this.ground.add(this.groundMesh);
    this.group.add(this.ground);
  }

  addWalls() {
    this.ground.add(
      new Mesh(
        walls(this.surface, this.box.min.y - 0.045),
        new MeshLambertMaterial({color: 0x6d5a48, side}),
      ),
    );
  }

  // What is gone, and where goblins that have moved or changed were, stays as a shade.
  addGhosts() {
    const {changes} = this.entry.before;
    this.ghosts = new GoblinMesh(
      unpack(this.entry.before),
      new MeshLambertMaterial({
        side,
        vertexColors: true,
        transparent: true,
        opacity: 0.45,
        depthWrite: false,
      }),
    );
    this.ghostStates = [];
    for (const {mesh, state} of changes) {
      if (mesh !== undefined) {
        this.ghostStates[mesh] = state;
      }
    }
    this.ghosts.paint((number) => stateColor(this.ghostStates[number]));
    this.group.add(this.ghosts.mesh);
    this.states = [];
    for (const change of changes) {
      if (change.new !== null) {
        this.states[change.new] = change;
      }
    }
  }

  // A box around what is near the tile.
  nearBox() {
    const box = this.surfaceBox.clone();
    const limits = box.clone().expandByScalar(farthest);
    for (const goblins of [this.goblins, this.ghosts]) {
      for (const other of goblins?.boxes ?? []) {
        if (!other.isEmpty() && limits.containsBox(other)) {
          box.union(other);
        }
      }
    }
    return box;
  }

  // 'texture', 'clay', 'goblins' (each its own colour) or 'changes'.
  setLook(look) {
    const map = look === 'texture' ? this.map : null;
    this.dress(this.groundMesh.material, map, map ? 0xffffff : clay, false);
    if (this.ghosts) {
      this.ghosts.mesh.visible = look === 'changes';
    }
    if (!this.goblins) {
      return;
    }
    const painted = look === 'goblins' || look === 'changes';
    if (look === 'goblins') {
      this.goblins.paint(goblinColor);
    } else if (look === 'changes') {
      this.goblins.paint((number) => stateColor(this.states?.[number]?.state));
    }
    this.dress(this.goblins.mesh.material, map, map || painted ? 0xffffff : 0xc9c4b6, painted);
  }

  dress(material, map, color, vertexColors) {
    material.map = map;
    material.color.set(color);
    material.vertexColors = vertexColors;
    material.needsUpdate = true;
  }

  setTexture(map) {
    this.map?.dispose();
    this.map = map;
  }

  // True when something else is to be seen now.
  refresh() {
    const changed = [this.goblins?.refresh(), this.ghosts?.refresh()];
    return changed.some(Boolean);
  }

  dispose() {
    this.group.traverse((part) => {
      part.geometry?.dispose();
      part.material?.dispose();
    });
    this.map?.dispose();
  }
}
