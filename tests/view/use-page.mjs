// Uses a page as a person would and prints what was seen as one JSON object: node use-page.mjs PAGE.
// The page's first entry that can be shown must have a goblin.

import {createHash} from 'node:crypto';
import {open, settled} from './browser.mjs';

const events = [];
const {browser, page} = await open(process.argv[2], {width: 1280, height: 800}, events);
const canvas = page.locator('#canvas');
const look = async () => {
  await settled(page);
  return createHash('sha256')
    .update(await canvas.screenshot())
    .digest('hex');
};
const texts = (selector) => page.locator(selector).allInnerTexts();
const seen = {
  files: await texts('#files .name'),
  title: await page.title(),
  goblins: await texts('#goblins label'),
  layers: await texts('#layers .name'),
};

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
    const different = [...a.pixels.keys()].filter((i) => a.pixels[i] !== b.pixels[i]);
    const some = [0.3, 0.4, 0.5, 0.6, 0.7].map(
      (share) => different[Math.floor(share * different.length)] ?? 0,
    );
    return {
      colours: new Set(a.pixels).size,
      places: some.map((i) => ({x: i % a.width, y: Math.floor(i / a.width)})),
    };
  }, urls);
}

// A click on a goblin's name hides it, another brings it back.
const first = await look();
await page.locator('#goblins .row:has(.pick) label').first().click();
const hidden = await look();
await page.locator('#goblins .row:has(.pick) label').first().click();
seen.nameHides = first !== hidden && first === (await look());

// By keyboard alone: the space bar on the box, the button that picks, turning and letting go.
await page.locator('#goblins .row:has(.pick) input').first().focus();
await page.keyboard.press('Space');
seen.spaceHides = hidden === (await look());
await page.keyboard.press('Space');
await page.keyboard.press('Tab');
await page.keyboard.press('Enter');
seen.picked = await page.locator('#picked strong').innerText();
seen.pickedShows = first !== (await look());
await canvas.focus();
await page.keyboard.press('Escape');
seen.escapeLetsGo = await page.locator('#picked').isHidden();
const focused = await look();
await page.keyboard.press('ArrowLeft');
const turned = await look();
await page.keyboard.press('0');
seen.arrowTurns = focused !== turned && focused === (await look());

// A click in the view, where a goblin makes the difference, picks it.
await page.getByRole('button', {name: 'Ground'}).click();
await page.getByRole('button', {name: 'Hide all'}).click();
await settled(page);
const without = await canvas.screenshot();
await page.locator('#goblins .row:has(.pick) input').first().click();
await settled(page);
const {places} = await compare(await canvas.screenshot(), without);
seen.clickPicks = false;
for (const position of places) {
  await canvas.click({position});
  seen.clickPicks ||= await page.locator('#picked').isVisible();
}
await page.getByRole('button', {name: 'Ground'}).click();
await settled(page);
seen.colours = (await compare(await canvas.screenshot(), without)).colours;

// Every entry can be chosen; damaged ones say so.
seen.faults = [];
for (const button of await page.locator('#files button').all()) {
  await button.click();
  seen.faults.push(await page.locator('#faults').innerText());
}
await page.setViewportSize({width: 390, height: 844});
await settled(page);
seen.sideways = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
seen.unnamed = await page.evaluate(
  () =>
    [...document.querySelectorAll('button, input, canvas')].filter(
      (control) =>
        control.checkVisibility() &&
        !(control.innerText || control.getAttribute('aria-label') || control.labels?.length),
    ).length,
);
console.log(JSON.stringify({...seen, events}));
await browser.close();
