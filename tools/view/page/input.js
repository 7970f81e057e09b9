// What the keys and the pointer do in the 3D view.

const turnStep = Math.PI / 18;
const zoomStep = 1.15;

export function listen(stage) {
  const {camera, canvas} = stage;
  let down = null;
  let pointers = 0;
  canvas.addEventListener('pointerdown', (event) => {
    pointers++;
    down = pointers === 1 && event.button === 0 ? [event.clientX, event.clientY] : null;
  });
  canvas.addEventListener('pointercancel', () => {
    pointers = Math.max(0, pointers - 1);
    down = null;
  });
  canvas.addEventListener('pointerup', (event) => {
    pointers = Math.max(0, pointers - 1);
    const slack = event.pointerType === 'touch' ? 10 : 5;
    if (down && Math.hypot(event.clientX - down[0], event.clientY - down[1]) < slack) {
      stage.click(event);
    }
    down = null;
  });
  canvas.addEventListener('dblclick', () => stage.framePicked());
  const acts = {
    ArrowLeft: () => camera.turn(-turnStep, 0),
    ArrowRight: () => camera.turn(turnStep, 0),
    ArrowUp: () => camera.turn(0, -turnStep),
    ArrowDown: () => camera.turn(0, turnStep),
    '+': () => camera.zoom(1 / zoomStep),
    '=': () => camera.zoom(1 / zoomStep),
    '-': () => camera.zoom(zoomStep),
    0: () => stage.reset(),
    f: () => stage.framePicked(),
    Escape: () => stage.on.pick(null),
  };
  canvas.addEventListener('keydown', (event) => {
    if (event.ctrlKey || event.metaKey || event.altKey || !Object.hasOwn(acts, event.key)) {
      return;
    }
    acts[event.key]();
    event.preventDefault();
  });
}
