// The 3D view: a tile with its goblins, or a whole level. Draws only when something changed.

import {
  Box3,
  DirectionalLight,
  Group,
  HemisphereLight,
  Matrix4,
  PCFShadowMap,
  Raycaster,
  Scene,
  SRGBColorSpace,
  Texture,
  Vector2,
  Vector3,
  WebGLRenderer,
} from 'three';
import {Camera} from './camera.js';
import {axes, discard, normals, pickedFrame, wires} from './overlays.js';
import {TileModel} from './tile-model.js';

const overlayKinds = {wires, normals, axes};

export class Stage {
  // Throws where the browser has no WebGL. `on.pick` is called with a goblin's number or null,
  // `on.enter` with the entry of a tile of the level.
  constructor(canvas, on) {
    this.canvas = canvas;
    this.on = on;
    this.renderer = new WebGLRenderer({canvas, antialias: true, alpha: true});
    this.renderer.shadowMap.enabled = true;
    this.renderer.shadowMap.type = PCFShadowMap;
    this.renderer.shadowMap.autoUpdate = false;
    this.renderer.setPixelRatio(Math.min(devicePixelRatio, 2));
    this.scene = new Scene();
    this.world = new Group();
    this.scene.add(this.world);
    this.light();
    this.models = [];
    this.overlays = {};
    this.wanted = new Set();
    this.look = 'texture';
    this.groundVisible = true;
    this.camera = new Camera(canvas, () => this.draw());
    new ResizeObserver(() => this.resize()).observe(canvas.parentElement);
    this.resize();
  }

  light() {
    this.scene.add(new HemisphereLight(0xffffff, 0x9a9484, 2.0));
    this.sun = new DirectionalLight(0xfff4e0, 2.3);
    this.sun.castShadow = true;
    this.sun.shadow.mapSize.set(2048, 2048);
    this.sun.shadow.normalBias = 0.004;
    this.sun.shadow.bias = -0.0008;
    this.scene.add(this.sun, this.sun.target);
  }

  // The one tile that is shown; null in the overview.
  get model() {
    return this.models.length === 1 && !this.isLevel ? this.models[0] : null;
  }

  // Shows one entry; `picture` is a loaded image, a canvas, or null.
  show(entry, picture) {
    this.clear();
    this.isLevel = false;
    this.add(new TileModel(entry, this.texture(picture)));
    this.box = this.model.box.clone();
    this.arrive();
  }

  // Shows all the tiles in their places; `pictures` are their images or null.
  showLevel(entries, pictures) {
    this.clear();
    this.isLevel = true;
    entries.forEach((entry, i) => this.add(new TileModel(entry, this.texture(pictures[i]))));
    const places = entries.map((entry) => new Matrix4().fromArray(entry.placement));
    const whole = new Box3();
    this.models.forEach((model, i) => whole.union(model.box.clone().applyMatrix4(places[i])));
    const size = whole.getSize(new Vector3());
    const scale = 1 / (Math.max(size.x, size.z) || 1);
    const toView = new Matrix4()
      .makeScale(scale, scale, scale)
      .multiply(new Matrix4().makeTranslation(-whole.min.x, -whole.min.y, -whole.min.z));
    this.models.forEach((model, i) => {
      model.group.matrixAutoUpdate = false;
      model.group.matrix.multiplyMatrices(toView, places[i]);
    });
    this.box = whole.applyMatrix4(toView);
    this.arrive();
  }

  add(model) {
    model.setLook(this.look);
    model.ground.visible = this.groundVisible;
    this.models.push(model);
    this.world.add(model.group);
  }

  arrive() {
    this.world.updateMatrixWorld(true);
    this.aimLight();
    this.refreshOverlays();
    this.reset();
  }

  clear() {
    this.pick(null);
    this.dropOverlays();
    this.models.forEach((model) => model.dispose());
    this.models = [];
    this.world.clear();
    this.invalidate();
  }

  texture(picture) {
    if (!picture) {
      return null;
    }
    const made = new Texture(picture);
    made.colorSpace = SRGBColorSpace;
    made.flipY = false; // v = 0 is the picture's top row
    made.anisotropy = Math.min(8, this.renderer.capabilities.getMaxAnisotropy());
    made.needsUpdate = true;
    return made;
  }

  // Another picture on the tile that is shown.
  setPicture(picture) {
    if (this.model) {
      this.model.setTexture(this.texture(picture));
      this.setLook(this.look);
    }
  }

  setLook(look) {
    this.look = look;
    this.models.forEach((model) => model.setLook(look));
    this.invalidate();
  }

  setGroundVisible(visible) {
    this.groundVisible = visible;
    for (const model of this.models) {
      model.ground.visible = visible;
    }
    this.invalidate();
  }

  // 'wires', 'normals' or 'axes'.
  setOverlay(kind, wanted) {
    if (wanted) {
      this.wanted.add(kind);
    } else {
      this.wanted.delete(kind);
    }
    this.refreshOverlays();
    this.draw();
  }

  refreshOverlays() {
    this.dropOverlays();
    for (const kind of this.wanted) {
      this.overlays[kind] = this.models.map((model) => {
        const made = overlayKinds[kind](model);
        model.group.add(made);
        return made;
      });
    }
  }

  dropOverlays() {
    const owned = this.models.flatMap((model) => [model.surface, model.goblins?.geometry]);
    Object.values(this.overlays)
      .flat()
      .forEach((group) => discard(group, owned));
    this.overlays = {};
  }

  aimLight() {
    const centre = this.box.getCenter(new Vector3());
    const radius = this.box.getSize(new Vector3()).length() / 2 + 0.05;
    this.sun.position.copy(centre).add(new Vector3(-0.9, 1.25, 0.35).multiplyScalar(radius * 2));
    this.sun.target.position.copy(centre);
    Object.assign(this.sun.shadow.camera, {
      left: -radius,
      right: radius,
      top: radius,
      bottom: -radius,
      near: 0.01,
      far: radius * 6,
    });
    this.sun.shadow.camera.updateProjectionMatrix();
  }

  reset() {
    if (this.box) {
      this.camera.frame(this.box);
    }
  }

  framePicked() {
    if (this.pickedBox) {
      this.camera.frameFromHere(this.pickedBox);
    } else {
      this.reset();
    }
  }

  // What is under the pointer: {entry, number}, `number` being null for the ground.
  at(event) {
    const area = this.canvas.getBoundingClientRect();
    const place = new Vector2(
      ((event.clientX - area.left) / area.width) * 2 - 1,
      1 - ((event.clientY - area.top) / area.height) * 2,
    );
    const caster = new Raycaster();
    caster.setFromCamera(place, this.camera.lens);
    let nearest = null;
    for (const model of this.models) {
      const ground = model.ground.visible && caster.intersectObject(model.groundMesh)[0];
      const goblin = model.goblins?.hitFrom(caster.ray);
      for (const [found, number] of [
        [ground, null],
        [goblin, goblin?.number ?? null],
      ]) {
        if (found && (!nearest || found.distance < nearest.distance)) {
          nearest = {entry: model.entry, number, distance: found.distance};
        }
      }
    }
    return nearest;
  }

  click(event) {
    const found = this.at(event);
    if (!this.isLevel) {
      this.on.pick(found?.number ?? null);
    } else if (found) {
      this.on.enter(found.entry);
    }
  }

  // Goblins are not there while their picture is still being loaded; then this does nothing. What
  // is gone is counted on behind the others.
  setVisible(number, visible) {
    const {goblins, ghosts} = this.model ?? {};
    if (!goblins && !ghosts) {
      return;
    }
    const count = goblins?.parts.length ?? 0;
    if (number < count) {
      goblins.setVisible(number, visible);
    } else {
      ghosts?.setVisible(number - count, visible);
    }
    if (this.picked === number && this.frame) {
      this.frame.visible = visible;
    }
    this.invalidate();
  }

  pick(number) {
    discard(this.frame);
    this.frame = this.pickedBox = null;
    this.picked = number;
    const {goblins, ghosts} = this.model ?? {};
    const count = goblins?.parts.length ?? 0;
    const [mesh, i] = number < count ? [goblins, number] : [ghosts, number - count];
    if (number !== null && mesh?.parts[i]?.vertexCount) {
      this.pickedBox = mesh.boxes[i];
      this.frame = pickedFrame(mesh, i);
      this.frame.visible = Boolean(mesh.visible[i]);
      this.model.group.add(this.frame);
    }
    this.draw();
  }

  resize() {
    const {clientWidth: width, clientHeight: height} = this.canvas.parentElement;
    if (!width || !height) {
      return;
    }
    const isOther = this.camera.resize(width, height);
    this.renderer.setSize(width, height, false);
    if (isOther) {
      this.reset();
    }
    this.drawNow();
  }

  // The shadows are stale, too.
  invalidate() {
    this.renderer.shadowMap.needsUpdate = true;
    this.draw();
  }

  draw() {
    if (this.waiting) {
      return;
    }
    this.waiting = requestAnimationFrame(() => {
      this.waiting = 0;
      this.camera.controls.update(); // goes on drawing while the turn runs out
      this.drawNow();
    });
  }

  drawNow() {
    const changed = this.models.map((model) => model.refresh());
    if (changed.some(Boolean)) {
      this.renderer.shadowMap.needsUpdate = true;
      if (this.wanted.has('normals')) {
        this.refreshOverlays();
      }
    }
    this.renderer.render(this.scene, this.camera.lens);
  }

  // The view as it is now, as the data of a PNG file.
  picture() {
    this.drawNow();
    return this.canvas.toDataURL('image/png');
  }
}
