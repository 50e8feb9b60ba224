// Opens the pages of golden folders in a browser and uses them by mouse.

import assert from 'node:assert/strict';
import { mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync,
  writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, describe, it } from 'node:test';
import { pathToFileURL } from 'node:url';

import { launch, openPage } from './browser.mjs';
import { bringUp, gapOnWay, landing, links, openPane, pointOn, pointOnLink,
  shownPanes } from './in_page.mjs';

const golden = process.env.ZELKOR_GOLDEN;
const scratch = mkdtempSync(join(tmpdir(), 'zelkor-pages-'));
let browser;

before(async () => { browser = await launch(); });
after(async () => {
  await browser?.close();
  rmSync(scratch, { recursive: true });
});

// Inserts the head into the expected pages of a folder; returns their addresses.
function pagesOf(name) {
  const expected = join(golden, `${name}.d`, 'expected');
  const head = readFileSync(join(golden, 'head.html'), 'latin1');
  mkdirSync(join(scratch, name));
  return readdirSync(expected).filter((file) => file.endsWith('.html'))
    .map((file) => {
      const page = join(scratch, name, file);
      const text = readFileSync(join(expected, file), 'latin1');
      writeFileSync(page, text.replace('{{head}}\n', head), 'latin1');
      return pathToFileURL(page).href;
    });
}

// No mark and no open pane reaches the left edge of the window.
const moveAway = (page) => page.mouse.move(2, 180);

// Moves the mouse to the mark of a pop-up. Returns its position and the pane.
async function open(page, number) {
  const mark = await page.evaluate(bringUp, number);
  await page.mouse.move(mark.x, mark.y);
  return { mark, pane: await page.evaluate(openPane, number) };
}

function assertInWindow({ box, window }, where) {
  const { left, top, right, bottom } = box;
  const inside = left >= 0 && top >= 0 && right <= window.width &&
    bottom < window.height + 1;
  assert.ok(inside, `${where}: ${JSON.stringify({ ...box, ...window })}`);
}

const middle = ({ top, bottom }) => (top + bottom) / 2;

// The links of a column are below each other, the columns side by side.
function assertColumns({ columns }, where) {
  for (const [i, column] of columns.entries())
    for (const [k, { text, lines, box }] of column.entries()) {
      if (text) assert.equal(lines, 1, `${where}: ${text} is broken`);
      if (k > 0) assert.ok(box.top > middle(column[k - 1].box), where);
      if (i > 0) assert.ok(box.left > columns[i - 1][0].box.right, where);
    }
}

// Waits until the browser shows an address. Returns 'top' if its anchor is at
// the top of the window, and 'bottom' if the end of the page is at the bottom.
async function landed(page, address) {
  await page.waitForURL(address);
  const name = decodeURIComponent(new URL(address).hash.slice(1));
  let at;
  for (const start = Date.now(); Date.now() - start < 5000;) {
    at = await page.evaluate(landing, name);
    const seen = at && at.left >= 0 && at.left < at.width && at.top < at.height;
    if (seen && Math.abs(at.top) <= 1) return 'top';
    if (seen && at.top > 1 && at.bottom) return 'bottom';
  }
  return assert.fail(`${address}: ${JSON.stringify(at)}`);
}

for (const scripts of [true, false])
  it(`scripts ${scripts ? 'run' : 'do not run if disabled'}`, async () => {
    const { page, strangers, messages } = await openPage(browser, { scripts });
    const file = join(scratch, 'scripted.html');
    writeFileSync(file, '<p>plain<script>console.log("message");' +
      'document.write("scripted<img src=http://127.0.0.1:9/>")</script>');
    await page.goto(pathToFileURL(file).href);
    const text = await page.locator('p').innerText();
    assert.equal(text, scripts ? 'plainscripted' : 'plain');
    assert.equal(strangers.length, scripts ? 1 : 0);
    assert.equal(messages.includes('message'), scripts);
  });

for (const name of ['across_files', 'all_kinds', 'caller_columns', 'namesakes'])
  describe(name, () => {
    const addresses = pagesOf(name);
    let page, strangers, messages;

    before(async () => {
      ({ page, strangers, messages } =
        await openPage(browser, { scripts: false }));
    });

    it('shows a pane while the mouse is on it or on its mark', async () => {
      let popups = 0;
      for (const address of addresses) {
        await moveAway(page);
        await page.goto(address);
        assert.deepEqual(await page.evaluate(shownPanes), [], 'at first');
        const count = await page.locator('.popup, .multiref').count();
        popups += count;
        for (let number = 0; number < count; ++number) {
          const where = `${address}: pop-up ${number}`;
          const { mark, pane } = await open(page, number);
          assert.deepEqual(await page.evaluate(shownPanes), [number], where);
          assertInWindow(pane, where);
          assertColumns(pane, where);
          assert.equal(pane.backgroundColor, 'rgb(255, 255, 221)', where);
          assert.equal(pane.borderTopStyle, 'solid', where);

          const inside = { x: mark.x, y: pane.box.top + 5 };
          const gap = await page.evaluate(gapOnWay, [mark, inside]);
          assert.equal(gap, null, `${where} closes on the way into its pane`);
          const last = pane.columns.at(-1).at(-1)?.box ?? pane.box;
          const point = await page.evaluate(pointOn, [number, last]);
          assert.ok(point, `${where} is covered`);
          await page.mouse.move(point.x, point.y);
          assert.deepEqual(await page.evaluate(shownPanes), [number], where);

          await moveAway(page);
          assert.deepEqual(await page.evaluate(shownPanes), [], where);
        }
      }
      assert.ok(popups > 0);
    });

    it('has links that lead to their anchors', async () => {
      // A low window, so that the page has to be scrolled.
      await page.setViewportSize({ width: 1280, height: 200 });
      for (const address of addresses) {
        await page.goto(address);
        const found = await page.evaluate(links);
        for (const { href } of found) {
          const { pathname, hash } = new URL(href);
          const anchor = `NAME="${decodeURIComponent(hash.slice(1))}"`;
          const target = readFileSync(decodeURIComponent(pathname), 'latin1');
          assert.ok(target.includes(anchor), href);
        }
        const outside = found.filter(({ popup }) => popup < 0);
        const inside = found.filter(({ popup }) => popup >= 0);
        const ends = [outside[0], outside.at(-1), inside[0], inside.at(-1)];
        for (const { href, popup, k } of ends.filter(Boolean)) {
          await moveAway(page);
          await page.goto(address);
          const point = popup < 0 ? await page.evaluate(pointOnLink, k)
            : await page.evaluate(pointOn, [popup,
              (await open(page, popup)).pane.columns.flat()[k].box]);
          await page.mouse.click(point.x, point.y);
          ++landings[await landed(page, href)];
        }
      }
    });

    it('requests only files and prints nothing to the console', async () => {
      const scripted = await openPage(browser, { scripts: true });
      for (const address of addresses) await scripted.page.goto(address);
      assert.deepEqual([...strangers, ...scripted.strangers], []);
      assert.deepEqual([...messages, ...scripted.messages], []);
    });
  });

const landings = { top: 0, bottom: 0 };
after(() => assert.ok(landings.top > 0 && landings.bottom > 0,
  'links led to the top and to the bottom of the window'));
