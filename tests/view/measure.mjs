// Measures pages: node measure.mjs SIXTY MANY. How soon the first is drawn, and how many frames are drawn in a second
// while the tile of the second turns. The best of three.

import {open} from './browser.mjs';

const [sixty, many] = process.argv.slice(2);
const view = {width: 1280, height: 800};
const frame = 'new Promise((done) => requestAnimationFrame(done))';
const opened = [];
const frames = [];

for (let i = 0; i < 3; i++) {
  const {browser, page} = await open(sixty, view, []);
  const url = page.url().split('#')[0];
  await page.goto('about:blank');
  await page.goto(url);
  opened.push(await page.evaluate(`${frame}.then(() => ${frame}).then(() => performance.now())`));
  await browser.close();
}

const {browser, page} = await open(many, view, []);
await page.waitForTimeout(3000);
for (let i = 0; i < 3; i++) {
  frames.push(
    await page.evaluate(async () => {
      const canvas = document.getElementById('canvas');
      const end = performance.now() + 1000;
      let count = 0;
      while (performance.now() < end) {
        canvas.dispatchEvent(new KeyboardEvent('keydown', {key: 'ArrowLeft'}));
        await new Promise((done) => requestAnimationFrame(done));
        count++;
      }
      return count;
    }),
  );
}
await browser.close();
console.log(`60 tiles drawn after ${(Math.min(...opened) / 1000).toFixed(2)} s`);
console.log(`10 000 goblins: ${Math.max(...frames)} frames a second`);
