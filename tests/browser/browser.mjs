// Starts the browser and opens pages in it.

import { createRequire } from 'node:module';
import { join } from 'node:path';

const need = createRequire(join(process.env.ZELKOR_BROWSER_MODULES, 'x'));
const { chromium } = need('playwright-core');

/** Starts the browser, without a window. */
export const launch = () => chromium.launch({
  executablePath: process.env.ZELKOR_CHROMIUM,
  args: ['--no-sandbox', '--disable-gpu'],
});

/** Opens an empty page.
 *
 *  Returns it with two lists: `strangers`, the requests for anything but files,
 *  and `messages`, the output to the console. */
export async function openPage(browser, { scripts }) {
  const context = await browser.newContext({ javaScriptEnabled: scripts,
    viewport: { width: 1280, height: 720 } });
  const page = await context.newPage();
  page.setDefaultTimeout(10000);
  const strangers = [];
  const messages = [];
  context.on('request', (request) => {
    if (!request.url().startsWith('file://')) strangers.push(request.url());
  });
  page.on('console', (message) => messages.push(message.text()));
  page.on('pageerror', (error) => messages.push(String(error)));
  return { page, strangers, messages };
}
