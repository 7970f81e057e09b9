// Where the 3D view is seen from.

import {Box3, PerspectiveCamera, Spherical, Vector3} from 'three';
import {OrbitControls} from 'three/examples/jsm/controls/OrbitControls.js';

const southEast = new Vector3(0.5, 0.66, 1).normalize();

export class Camera {
  constructor(canvas, onChange) {
    this.lens = new PerspectiveCamera(32, 1, 0.01, 100);
    this.calm = matchMedia('(prefers-reduced-motion: reduce)');
    this.controls = new OrbitControls(this.lens, canvas);
    this.controls.minDistance = 0.05;
    this.controls.maxDistance = 12;
    this.controls.maxPolarAngle = 1.55;
    this.controls.enableDamping = !this.calm.matches;
    this.calm.addEventListener('change', () => {
      this.controls.enableDamping = !this.calm.matches;
    });
    this.controls.addEventListener('change', onChange);
    this.onChange = onChange;
  }

  // Looks at the box so that it fills the view, from `direction` or from where it is seen now.
  frame(box, direction = southEast) {
    if (box.isEmpty()) {
      return;
    }
    const target = box.getCenter(new Vector3());
    let distance = Math.max(box.getSize(new Vector3()).length(), 0.02) * 2;
    this.lens.near = distance / 200;
    this.lens.far = Math.max(distance * 20, 30);
    this.lens.updateProjectionMatrix();
    for (let round = 0; round < 8; round++) {
      this.lens.position.copy(target).addScaledVector(direction, distance);
      this.lens.lookAt(target);
      const seen = this.projected(box);
      target.copy(seen.getCenter(new Vector3()).unproject(this.lens));
      const half = seen.getSize(new Vector3()).divideScalar(2);
      distance *= Math.max(half.x / 0.92, half.y / 0.86, 0.01);
    }
    this.controls.target.copy(target);
    this.settle();
  }

  frameFromHere(box) {
    const arm = this.lens.position.clone().sub(this.controls.target).normalize();
    const around = box.clone().expandByScalar(box.getSize(new Vector3()).length() * 0.4 + 0.01);
    this.frame(around, arm);
  }

  // The box's corners as they are seen, from -1 to 1, flattened to their middle depth.
  projected(box) {
    this.lens.updateMatrixWorld();
    const {min, max} = box;
    const seen = new Box3();
    for (const x of [min.x, max.x]) {
      for (const y of [min.y, max.y]) {
        for (const z of [min.z, max.z]) {
          seen.expandByPoint(new Vector3(x, y, z).project(this.lens));
        }
      }
    }
    seen.min.z = seen.max.z = box.getCenter(new Vector3()).project(this.lens).z;
    return seen;
  }

  lookDown() {
    const distance = this.lens.position.distanceTo(this.controls.target);
    this.lens.position.copy(this.controls.target).add(new Vector3(0, distance, distance * 0.001));
    this.settle();
  }

  turn(around, down) {
    const arm = this.arm();
    const place = new Spherical().setFromVector3(arm);
    place.theta += around;
    place.phi = Math.min(this.controls.maxPolarAngle, Math.max(0.01, place.phi + down));
    this.lens.position.copy(this.controls.target).add(arm.setFromSpherical(place));
    this.settle();
  }

  zoom(factor) {
    const arm = this.arm().multiplyScalar(factor);
    arm.clampLength(this.controls.minDistance, this.controls.maxDistance);
    this.lens.position.copy(this.controls.target).add(arm);
    this.settle();
  }

  arm() {
    return this.lens.position.clone().sub(this.controls.target);
  }

  settle() {
    this.controls.update();
    this.onChange();
  }

  // True when the shape of the view has changed.
  resize(width, height) {
    const changed = Math.abs(this.lens.aspect - width / height) > 0.01;
    this.lens.aspect = width / height;
    this.lens.updateProjectionMatrix();
    return changed;
  }
}
