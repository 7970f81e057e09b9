// The tile and its goblins in 3D. Draws only when something changed.

import {
  Box3,
  Color,
  DirectionalLight,
  DoubleSide,
  EdgesGeometry,
  Group,
  HemisphereLight,
  LineBasicMaterial,
  LineSegments,
  Mesh,
  MeshLambertMaterial,
  PCFShadowMap,
  PerspectiveCamera,
  Raycaster,
  Scene,
  Spherical,
  SRGBColorSpace,
  Texture,
  Vector2,
  Vector3,
  WebGLRenderer,
} from 'three';
import {OrbitControls} from 'three/examples/jsm/controls/OrbitControls.js';
import {unitTile, unpack, walls} from './geometry.js';

const turnStep = Math.PI / 18;
const farthest = 3; // goblins that lie farther from the tile than this do not move the camera
const highlight = 0xff8a1f;

// A box around what is near the tile.
function nearBox(surface, goblins) {
  surface.computeBoundingBox();
  const box = surface.boundingBox.clone();
  const limits = box.clone().expandByScalar(farthest);
  for (const goblin of goblins) {
    goblin.computeBoundingBox();
    if (limits.containsBox(goblin.boundingBox)) {
      box.union(goblin.boundingBox);
    }
  }
  return box;
}

export class Stage {
  // Throws where the browser has no WebGL. `onPick` is called with a goblin's number or null.
  constructor(canvas, onPick) {
    this.canvas = canvas;
    this.onPick = onPick;
    this.calm = matchMedia('(prefers-reduced-motion: reduce)');
    this.renderer = new WebGLRenderer({canvas, antialias: true, alpha: true});
    this.renderer.shadowMap.enabled = true;
    this.renderer.shadowMap.type = PCFShadowMap;
    this.renderer.setPixelRatio(Math.min(devicePixelRatio, 2));
    this.scene = new Scene();
    this.camera = new PerspectiveCamera(32, 1, 0.01, 100);
    this.world = new Group();
    this.scene.add(this.world);
    this.light();
    this.goblins = [];
    this.picked = null;
    this.controls = new OrbitControls(this.camera, canvas);
    this.controls.enableDamping = !this.calm.matches;
    this.controls.minDistance = 0.05;
    this.controls.maxDistance = 12;
    this.controls.maxPolarAngle = 1.55;
    this.controls.addEventListener('change', () => this.draw());
    this.calm.addEventListener('change', () => {
      this.controls.enableDamping = !this.calm.matches;
    });
    new ResizeObserver(() => this.resize()).observe(canvas.parentElement);
    this.listen();
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

  listen() {
    let down = null;
    this.canvas.addEventListener('pointerdown', (event) => {
      down = [event.clientX, event.clientY];
    });
    this.canvas.addEventListener('pointerup', (event) => {
      if (!down || event.button !== 0) {
        return;
      }
      if (Math.hypot(event.clientX - down[0], event.clientY - down[1]) < 5) {
        this.onPick(this.goblinAt(event));
      }
    });
    this.canvas.addEventListener('keydown', (event) => {
      if (event.ctrlKey || event.metaKey || event.altKey) {
        return;
      }
      const act = {
        ArrowLeft: () => this.turn(-turnStep, 0),
        ArrowRight: () => this.turn(turnStep, 0),
        ArrowUp: () => this.turn(0, -turnStep),
        ArrowDown: () => this.turn(0, turnStep),
        '+': () => this.zoom(1 / 1.15),
        '=': () => this.zoom(1 / 1.15),
        '-': () => this.zoom(1.15),
        0: () => this.reset(),
        Escape: () => this.onPick(null),
      }[event.key];
      if (!act) {
        return;
      }
      act();
      event.preventDefault();
    });
  }

  // Shows another entry; `picture` is a loaded image or null.
  show(entry, picture) {
    this.clear();
    const surface = entry.tile ? unpack(entry.tile)[0] : unitTile();
    const shapes = entry.goblins ? unpack(entry.goblins) : [];
    const map = picture ? this.texture(picture) : null;
    const side = DoubleSide;
    const color = map ? 0xffffff : 0x9a988f;
    this.skin = new MeshLambertMaterial({map, color, side});
    this.pickedSkin = new MeshLambertMaterial({
      map,
      color,
      side,
      emissive: highlight,
      emissiveIntensity: 0.38,
    });
    const ground = new MeshLambertMaterial({
      map,
      color,
      side,
      alphaTest: entry.picture?.transparent ? 0.5 : 0,
    });
    this.box = nearBox(surface, shapes);
    const bottom = this.box.min.y - 0.045;
    this.tile = new Group();
    this.tile.add(
      new Mesh(surface, ground),
      new Mesh(walls(surface, bottom), new MeshLambertMaterial({color: 0x6d5a48, side})),
    );
    for (const part of this.tile.children) {
      part.receiveShadow = true;
    }
    this.tile.children[0].castShadow = Boolean(entry.tile);
    this.goblins = shapes.map((shape, number) => {
      const goblin = new Mesh(shape, this.skin);
      goblin.castShadow = goblin.receiveShadow = true;
      goblin.userData.number = number;
      return goblin;
    });
    this.world.add(this.tile, ...this.goblins);
    this.aimLight();
    this.reset();
  }

  clear() {
    this.pick(null);
    this.world.traverse((part) => {
      part.geometry?.dispose();
      part.material?.map?.dispose();
      part.material?.dispose();
    });
    this.world.clear();
    this.goblins = [];
  }

  texture(picture) {
    const made = new Texture(picture);
    made.colorSpace = SRGBColorSpace;
    made.flipY = false; // v = 0 is the picture's top row
    made.anisotropy = Math.min(8, this.renderer.capabilities.getMaxAnisotropy());
    made.needsUpdate = true;
    return made;
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

  // Looks from the south-east, so that the box fills the view.
  reset() {
    if (!this.box) {
      return;
    }
    const target = this.box.getCenter(new Vector3());
    const direction = new Vector3(0.5, 0.66, 1).normalize();
    let distance = this.box.getSize(new Vector3()).length() * 2;
    this.camera.near = distance / 200;
    this.camera.far = distance * 20;
    this.camera.updateProjectionMatrix();
    for (let round = 0; round < 8; round++) {
      this.camera.position.copy(target).addScaledVector(direction, distance);
      this.camera.lookAt(target);
      const seen = this.projectedBox();
      target.copy(seen.getCenter(new Vector3()).unproject(this.camera));
      const half = seen.getSize(new Vector3()).divideScalar(2);
      distance *= Math.max(half.x / 0.92, half.y / 0.86);
    }
    this.controls.target.copy(target);
    this.controls.update();
    this.draw();
  }

  // The box's corners as the camera sees them, from -1 to 1, flattened to their middle depth.
  projectedBox() {
    this.camera.updateMatrixWorld();
    const {min, max} = this.box;
    const seen = new Box3();
    for (const x of [min.x, max.x]) {
      for (const y of [min.y, max.y]) {
        for (const z of [min.z, max.z]) {
          seen.expandByPoint(new Vector3(x, y, z).project(this.camera));
        }
      }
    }
    seen.min.z = seen.max.z = this.box.getCenter(new Vector3()).project(this.camera).z;
    return seen;
  }

  lookDown() {
    const distance = this.camera.position.distanceTo(this.controls.target);
    this.camera.position.copy(this.controls.target).add(new Vector3(0, distance, distance * 0.001));
    this.controls.update();
    this.draw();
  }

  turn(around, down) {
    const arm = this.camera.position.clone().sub(this.controls.target);
    const place = new Spherical().setFromVector3(arm);
    place.theta += around;
    place.phi = Math.min(this.controls.maxPolarAngle, Math.max(0.01, place.phi + down));
    this.camera.position.copy(this.controls.target).add(arm.setFromSpherical(place));
    this.controls.update();
    this.draw();
  }

  zoom(factor) {
    const arm = this.camera.position.clone().sub(this.controls.target).multiplyScalar(factor);
    arm.clampLength(this.controls.minDistance, this.controls.maxDistance);
    this.camera.position.copy(this.controls.target).add(arm);
    this.controls.update();
    this.draw();
  }

  goblinAt(event) {
    const area = this.canvas.getBoundingClientRect();
    const place = new Vector2(
      ((event.clientX - area.left) / area.width) * 2 - 1,
      1 - ((event.clientY - area.top) / area.height) * 2,
    );
    const ray = new Raycaster();
    ray.setFromCamera(place, this.camera);
    const hit = ray.intersectObjects(this.world.children.filter((part) => part.visible))[0];
    return hit?.object.userData.number ?? null;
  }

  // Goblins are not there while their picture is still being loaded; then this does nothing.
  setVisible(number, visible) {
    if (!this.goblins[number]) {
      return;
    }
    this.goblins[number].visible = visible;
    if (this.picked === number && this.outline) {
      this.outline.visible = visible;
    }
    this.draw();
  }

  setTileVisible(visible) {
    if (this.tile) {
      this.tile.visible = visible;
    }
    this.draw();
  }

  pick(number) {
    if (this.picked !== null) {
      this.goblins[this.picked].material = this.skin;
    }
    if (this.outline) {
      this.outline.geometry.dispose();
      this.outline.removeFromParent();
      this.outline = null;
    }
    const goblin = this.goblins[number];
    this.picked = goblin ? number : null;
    if (goblin) {
      goblin.material = this.pickedSkin;
      this.outline = new LineSegments(
        new EdgesGeometry(goblin.geometry, 20),
        new LineBasicMaterial({color: new Color(highlight)}),
      );
      this.outline.visible = goblin.visible;
      this.outline.raycast = () => {};
      this.world.add(this.outline);
    }
    this.draw();
  }

  resize() {
    const {clientWidth: width, clientHeight: height} = this.canvas.parentElement;
    if (!width || !height) {
      return;
    }
    const shape = Math.abs(this.camera.aspect - width / height) > 0.01;
    this.camera.aspect = width / height;
    this.camera.updateProjectionMatrix();
    this.renderer.setSize(width, height, false);
    if (shape) {
      this.reset();
    }
    this.drawNow();
  }

  draw() {
    if (this.waiting) {
      return;
    }
    this.waiting = requestAnimationFrame(() => {
      this.waiting = 0;
      this.controls.update(); // goes on drawing while the turn runs out
      this.drawNow();
    });
  }

  drawNow() {
    this.renderer.render(this.scene, this.camera);
  }
}
