// Looks at a page of changes and prints what was seen as one JSON object: node use-changes.mjs PAGE.

import {open, settled} from './browser.mjs';

const events = [];
const {browser, page} = await open(process.argv[2], {width: 1280, height: 800}, events, {
  touch: true,
});
await settled(page);
const rows = page.locator('#goblins .row');
const seen = {
  rows: await rows.evaluateAll((all) => all.map((row) => row.getAttribute('aria-label'))),
  look: await page.locator('.tools [aria-pressed="true"]').first().innerText(),
  hint: await page.locator('#keys').innerText(),
  over: await page.locator('.over-text').count(),
};
await rows.nth(1).locator('.name').tap();
seen.picked = await page.locator('#picked').innerText();
console.log(JSON.stringify({...seen, events}));
await browser.close();
