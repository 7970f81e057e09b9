// Uses a page as a person would and prints what was seen as one JSON object: node use-page.mjs PAGE FOLDER. What the
// page saves goes into FOLDER. The page's first entry that can be shown must have a goblin.

import {createHash} from 'node:crypto';
import {open, settled} from './browser.mjs';

const [file, folder] = process.argv.slice(2);
const events = [];
const {browser, page} = await open(file, {width: 1280, height: 800}, events);
const canvas = page.locator('#canvas');
const list = page.locator('#goblins');
const button = (name) => page.getByRole('button', {name, exact: true});
const texts = (selector) => page.locator(selector).allInnerTexts();
const hash = (bytes) => createHash('sha256').update(bytes).digest('hex');
const look = async (part = canvas) => hash(await part.screenshot());
const seen = {title: await page.title(), files: await texts('#files .name')};

// What is drawn may take some frames: true as soon as the test is.
async function soon(test) {
  for (let i = 0; i < 20; i++) {
    await settled(page);
    if (await test()) {
      return true;
    }
  }
  return false;
}

// The look of what has come to rest.
async function still(part = canvas) {
  let last = '';
  await soon(async () => last === (last = await look(part)));
  return last;
}

// Does something twice that undoes itself: true when the view changes and comes back.
async function switches(act, part = canvas) {
  const before = await still(part);
  await act();
  const changed = await soon(async () => before !== (await look(part)));
  await act();
  return changed && (await soon(async () => before === (await look(part))));
}

// Of two pictures of the view: how many colours the first has, and some of the places where they differ.
async function compare(first, second) {
  const urls = [first, second].map((png) => `data:image/png;base64,${png.toString('base64')}`);
  return page.evaluate(async (urls) => {
    const [a, b] = await Promise.all(
      urls.map(async (src) => {
        const image = Object.assign(new Image(), {src});
        await image.decode();
        const copy = Object.assign(document.createElement('canvas'), {
          width: image.width,
          height: image.height,
        }).getContext('2d');
        copy.drawImage(image, 0, 0);
        return {
          width: image.width,
          pixels: new Uint32Array(copy.getImageData(0, 0, image.width, image.height).data.buffer),
        };
      }),
    );
    // The background is dithered, a little otherwise each time.
    const byte = (pixel, k) => (pixel >> (8 * k)) & 255;
    const differs = (p, q) => [0, 1, 2].some((k) => Math.abs(byte(p, k) - byte(q, k)) > 16);
    const different = [...a.pixels.keys()].filter((i) => differs(a.pixels[i], b.pixels[i]));
    const some = [0.3, 0.4, 0.5, 0.6, 0.7].map(
      (share) => different[Math.floor(share * different.length)] ?? 0,
    );
    return {
      colours: new Set(a.pixels).size,
      places: some.map((i) => ({x: i % a.width, y: Math.floor(i / a.width)})),
    };
  }, urls);
}

// From the whole level into the tile in its middle, and from there to the first one.
if (seen.title.startsWith('Whole level')) {
  await canvas.click();
  seen.entered = !(await page.title()).startsWith('Whole level');
  await page.locator('#files button').nth(1).click();
}
await settled(page);
const firstGoblin = list.locator('.row:not([aria-expanded])').first();
seen.goblins = await texts('#goblins .row:not([aria-expanded]) .name');
seen.layers = await texts('#layers .name');

// A click on the eye hides a goblin, another brings it back; a click on its name picks it.
seen.eyeHides = await switches(() => firstGoblin.locator('.box').click());
await firstGoblin.locator('.name').click();
seen.picked = await page.locator('#picked strong').innerText();
seen.details = await page.locator('#picked').innerText();

// The link of the page opens the same view.
const link = page.url();
await page.goto('about:blank');
await page.goto(link);
await settled(page);
seen.linkOpens = await page.locator('#picked strong').innerText();
await button('Let go').click();
await button('Reset').click();

// The list is one stop of the tab key; arrows, space, Enter and Escape do the rest.
const first = await still();
await page.locator('#filter').focus();
await page.keyboard.press('Tab');
await page.keyboard.press('Home');
if ((await list.locator('.active').getAttribute('aria-expanded')) === 'true') {
  await page.keyboard.press('ArrowDown');
}
seen.spaceHides = await switches(() => page.keyboard.press('Space'));
await page.keyboard.press('Enter');
seen.pickedShows = await soon(async () => first !== (await look()));
await page.keyboard.press('Escape');
seen.escapeLetsGo = await page.locator('#picked').isHidden();
await page.keyboard.press('Tab');
seen.oneStop = await page.evaluate(() => !document.activeElement.closest('.goblins'));
await canvas.focus();
const focused = await still();
await page.keyboard.press('ArrowLeft');
seen.arrowTurns = await soon(async () => focused !== (await look()));
await page.keyboard.press('0');
seen.arrowTurns &&= await soon(async () => focused === (await look()));
await page.locator('#filter').focus(); // the frame around what is in focus is in its picture

// Every switch above the view changes it.
seen.switches = [];
for (const name of ['Ground', 'Wireframe', 'Normals', 'Axes']) {
  if (!(await switches(() => button(name).click()))) {
    seen.switches.push(name);
  }
}
const looks = new Set([await still()]);
for (const name of ['Clay', 'By goblin', 'Texture']) {
  await button(name).click();
  looks.add(await still());
}
seen.looks = looks.size;

// A click in the view, where a goblin makes the difference, picks it.
await button('Ground').click();
await button('Hide all').click();
const bare = await still();
const without = await canvas.screenshot();
await firstGoblin.locator('.box').click();
await soon(async () => bare !== (await look()));
await still();
const {places} = await compare(await canvas.screenshot(), without);
seen.clickPicks = false;
for (const position of places) {
  await canvas.click({position});
  seen.clickPicks ||= await soon(() => page.locator('#picked').isVisible());
}
await button('Ground').click();
await still();
seen.colours = (await compare(await canvas.screenshot(), without)).colours;

// The picture: texture coordinates over it, single pixels, and its layers.
const picture = page.locator('#picture');
seen.uvs = await switches(() => button('UVs').click(), picture);
await picture.focus();
for (let i = 0; i < 12; i++) {
  await page.keyboard.press('+');
}
await picture.hover();
seen.zoom = Number.parseInt(await page.locator('#zoom').innerText(), 10);
seen.pixel = await page.locator('#pixel').innerText();
await page.locator('#filter').focus();
const layer = page.locator('#layers input');
seen.layerSwitches =
  (await layer.count()) === 0 || (await switches(() => layer.last().click(), picture));

// Both kinds of files are saved.
for (const [name, kept] of [
  ['Save PNG', 'view.png'],
  ['Save .glb', 'tile.glb'],
]) {
  const [download] = await Promise.all([page.waitForEvent('download'), button(name).click()]);
  await download.saveAs(`${folder}/${kept}`);
}

// Every entry can be chosen; damaged ones say so.
seen.faults = [];
for (const entry of await page.locator('#files button').all()) {
  await entry.click();
  seen.faults.push(await page.locator('#faults').innerText());
}
await page.setViewportSize({width: 390, height: 844});
await settled(page);
seen.sideways = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
seen.unnamed = await page.evaluate(
  () =>
    [...document.querySelectorAll('button, input, canvas, [tabindex="0"]')].filter(
      (control) =>
        control.checkVisibility() &&
        !(control.innerText || control.getAttribute('aria-label') || control.labels?.length),
    ).length,
);
console.log(JSON.stringify({...seen, events}));
await browser.close();
