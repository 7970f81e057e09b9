// Opens a page in Debian's Chromium, without a network and with 3D drawn in software.

import {chromium} from 'playwright-core';

const flags = [
  '--no-sandbox',
  '--disable-quic',
  '--no-first-run',
  '--disable-background-networking',
  '--disable-component-update',
  '--disable-sync',
  '--use-gl=angle',
  '--use-angle=swiftshader',
  '--enable-unsafe-swiftshader',
];

// `events` gets a line for whatever a page that needs nothing should not do.
export async function open(file, viewport, events, more = {}) {
  const browser = await chromium.launch({
    executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
    args: [...flags, ...(more.flags ?? [])],
  });
  const page = await browser.newPage({
    viewport,
    colorScheme: more.colorScheme ?? 'light',
    hasTouch: more.touch ?? false,
    isMobile: more.touch ?? false,
    reducedMotion: 'reduce',
  });
  const url = new URL(`file://${encodeURI(file)}`).href;
  page.on('console', (message) => events.push(`console: ${message.text()}`));
  page.on('pageerror', (error) => events.push(`error: ${error.message}`));
  page.on('dialog', (dialog) => {
    events.push(`dialog: ${dialog.message()}`);
    dialog.dismiss();
  });
  page.on('request', (request) => {
    const [address] = request.url().split('#');
    if (address !== url && !/^(data|blob|about):/.test(address)) {
      events.push(`request: ${request.url()}`);
    }
  });
  await page.goto(url);
  await settled(page);
  return {browser, page};
}

// The next frames are drawn.
export const settled = (page) =>
  page.evaluate(
    () =>
      new Promise((done) =>
        setTimeout(() => requestAnimationFrame(() => requestAnimationFrame(done)), 250),
      ),
  );
