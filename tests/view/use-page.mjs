// Uses a page as a person would and prints what was seen as one JSON object: node use-page.mjs PAGE.
// The page's first entry that can be shown must have a goblin.

import {createHash} from 'node:crypto';
import {open, settled} from './browser.mjs';

const events = [];
const {browser, page} = await open(process.argv[2], {width: 1280, height: 800}, events);
const canvas = page.locator('#canvas');
const look = async () => {
  await settled(page);
  return createHash('sha256').update(await canvas.screenshot()).digest('hex');
};
const texts = (selector) => page.locator(selector).allInnerTexts();
const seen = {files: await texts('#files .name'), title: await page.title(), goblins: await texts('#goblins label'), layers: await texts('#layers .name')};

const shot = `data:image/png;base64,${(await canvas.screenshot()).toString('base64')}`;
seen.colours = await page.evaluate(async (url) => {
  const image = Object.assign(new Image(), {src: url});
  await image.decode();
  const copy = Object.assign(document.createElement('canvas'), {width: image.width, height: image.height}).getContext('2d');
  copy.drawImage(image, 0, 0);
  return new Set(new Uint32Array(copy.getImageData(0, 0, image.width, image.height).data.buffer)).size;
}, shot);

// A click on a goblin's name hides it, another brings it back.
const first = await look();
await page.locator('#goblins .row:has(.pick) label').first().click();
const hidden = await look();
await page.locator('#goblins .row:has(.pick) label').first().click();
seen.nameHides = first !== hidden && first === await look();

// By keyboard alone: the space bar on the box, the button that picks, turning and letting go.
await page.locator('#goblins .row:has(.pick) input').first().focus();
await page.keyboard.press('Space');
seen.spaceHides = hidden === await look();
await page.keyboard.press('Space');
await page.keyboard.press('Tab');
await page.keyboard.press('Enter');
seen.picked = await page.locator('#picked strong').innerText();
seen.pickedShows = first !== await look();
await canvas.focus();
await page.keyboard.press('Escape');
seen.escapeLetsGo = await page.locator('#picked').isHidden();
const focused = await look();
await page.keyboard.press('ArrowLeft');
const turned = await look();
await page.keyboard.press('0');
seen.arrowTurns = focused !== turned && focused === await look();

// A click on the one goblin that is left in the view picks it.
await page.getByRole('button', {name: 'Hide all'}).click();
await page.locator('#goblins .row:has(.pick) input').first().click();
await page.getByRole('button', {name: 'Ground'}).click();
const box = await canvas.boundingBox();
seen.clickPicks = false;
for (let i = 0; i < 16 * 14 && !seen.clickPicks; i++) {
  await page.mouse.click(box.x + (i % 16 + 0.5) / 16 * box.width, box.y + (Math.floor(i / 16) + 0.5) / 14 * box.height);
  seen.clickPicks = await page.locator('#picked').isVisible();
}

// Every entry can be chosen; damaged ones say so.
seen.faults = [];
for (const button of await page.locator('#files button').all()) {
  await button.click();
  seen.faults.push(await page.locator('#faults').innerText());
}
await page.setViewportSize({width: 390, height: 844});
await settled(page);
seen.sideways = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
seen.unnamed = await page.evaluate(() => [...document.querySelectorAll('button, input, canvas')].filter((control) =>
  control.checkVisibility() && !(control.innerText || control.getAttribute('aria-label') || control.labels?.length)).length);
console.log(JSON.stringify({...seen, events}));
await browser.close();
