// Takes a picture of a page: node draw.mjs PAGE OUT.png [ENTRY [GOBLIN]]. ENTRY is chosen and GOBLIN picked, both by
// their texts in the lists.

import {open, settled} from './browser.mjs';

const [file, out, entry, goblin] = process.argv.slice(2);
const events = [];
const {browser, page} = await open(file, {width: 1280, height: 716}, events);
if (entry) {
  await page.locator('#files button', {hasText: entry}).click();
}
if (goblin) {
  await page.locator('#goblins .name', {hasText: goblin}).click();
}
await page.locator('body').click({position: {x: 640, y: 20}});
await settled(page);
await page.screenshot({path: out});
await browser.close();
if (events.length > 0) {
  throw new Error(events.join('\n'));
}
