// Opens the pages of two source trees in a browser and uses them by mouse.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { after, before, describe, it } from 'node:test';
import { pathToFileURL } from 'node:url';

import { launch, openPage } from './browser.mjs';
import { expectedPages } from './expected.mjs';
import { bringUp, contents, gapOnWay, landing, openPane, pointOn, pointOnLink,
  shownPanes } from './in_page.mjs';
import { calledSoOften, madeTree, treeBelow } from './trees.mjs';

const scratch = mkdtempSync(join(tmpdir(), 'zelkor-pages-'));
let browser;

before(async () => { browser = await launch(); });
after(async () => {
  await browser?.close();
  rmSync(scratch, { recursive: true });
});

function writeTree(tree, directory) {
  for (const [path, text] of tree) {
    mkdirSync(dirname(join(directory, path)), { recursive: true });
    writeFileSync(join(directory, path), text, 'latin1');
  }
}

// Writes the pages of a tree and returns the address of their directory.
function makePages(tree, name) {
  const sources = join(scratch, name);
  const pages = join(scratch, `${name}-pages`);
  writeTree(tree, sources);
  mkdirSync(pages);
  execFileSync(process.env.ZELKOR_MAKE_PAGES, [pages, ...tree.keys()],
    { cwd: sources });
  return pathToFileURL(pages) + '/';
}

const middle = ({ left, top, right, bottom }) =>
  ({ x: (left + right) / 2, y: (top + bottom) / 2 });

const texts = (columns) => columns.map((column) => column.map((a) => a.text));

// Neither a mark nor an open pane reaches the left edge of the window.
const moveAway = (page) => page.mouse.move(2, 400);

// Moves the mouse to the mark of a pop-up. Returns where that is, and the pane.
async function open(page, number) {
  const mark = await page.evaluate(bringUp, number);
  await page.mouse.move(mark.x, mark.y);
  return { mark, pane: await page.evaluate(openPane, number) };
}

function assertInWindow({ box, window }, where) {
  const { left, top, right, bottom } = box;
  const inside = left >= 0 && top >= 0 && right <= window.width &&
    bottom <= window.height;
  assert.ok(inside, `${where}: ${JSON.stringify({ ...box, ...window })}`);
}

// Compares the columns that are seen with the expected ones.
function assertColumns(pane, columns, where) {
  assert.deepEqual(texts(pane.columns), texts(columns), where);
  for (const [i, column] of pane.columns.entries())
    for (const [k, { text, lines, box }] of column.entries()) {
      assert.equal(lines, 1, `${where}: ${text} is broken`);
      if (k > 0) assert.ok(box.top > middle(column[k - 1].box).y, where);
      if (i > 0) assert.ok(box.left > pane.columns[i - 1][0].box.right, where);
    }
}

// Waits until a click has led to an address: its anchor is at the top of the
// window, or the end of the page is at the bottom. Returns which.
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

describe('what the tests rely on', () => {
  it('is that the made tree has menus at the bounds of columns', () => {
    const pages = [...expectedPages(madeTree()).values()];
    const sizes = ({ columns }) => columns.map(({ length }) => length);
    const menus = pages.flatMap(({ marks = [] }) => marks);
    const called = (n) =>
      sizes(menus.find(({ anchor }) => anchor === `called_${n}-1`));
    assert.deepEqual(calledSoOften.map(called),
      [[], [13], [8, 6], [12, 11], [9, 9, 6], [17, 17, 16]]);
    const ofKind = (label) =>
      sizes(pages.at(-1).menus.find((menu) => menu.label === label));
    assert.deepEqual(ofKind('FUNCTIONS'), [25]);
    assert.deepEqual(ofKind('TYPES'), [25, 1]);
  });

  for (const scripts of [true, false])
    it(`is that scripts ${scripts ? 'run' : 'can be kept from running'}`,
      async () => {
        const { page, strangers, messages } =
          await openPage(browser, { scripts });
        const file = join(scratch, 'scripted.html');
        writeFileSync(file, '<p>plain<script>console.log("message");' +
          'document.write("scripted<img src=http://127.0.0.1:9/>")</script>');
        await page.goto(pathToFileURL(file).href);
        const text = await page.locator('p').innerText();
        assert.equal(text, scripts ? 'plainscripted' : 'plain');
        assert.equal(strangers.length, scripts ? 1 : 0);
        assert.equal(messages.includes('message'), scripts);
      });
});

describe('made tree', () => useTree('made', madeTree(), true));
describe('made tree, scripts switched off', () =>
  useTree('made-plain', madeTree(), false));
describe('sample, scripts switched off', () =>
  useTree('sample', treeBelow(process.env.ZELKOR_SAMPLE), false));

function useTree(name, tree, scripts) {
  const expected = expectedPages(tree);
  let pages, page, strangers, messages;

  before(async () => {
    pages = makePages(tree, name);
    ({ page, strangers, messages } = await openPage(browser, { scripts }));
  });

  // The pop-ups of a page, in the order of its text.
  const popupsOf = ({ marks, menus }) =>
    menus ?? marks.filter(({ kind }) => kind !== 'link');

  // The links of a page by their kind, each with a function that brings it to
  // the screen and returns a point of it. What has no text cannot be clicked.
  function linksOf(wanted) {
    const popups = popupsOf(wanted);
    const inPopups = popups.flatMap(({ kind = 'name', columns }, number) =>
      columns.flatMap((column, c) => column.map(({ text, href }, k) => ({
        kind, text, href, show: async () => {
          const { pane } = await open(page, number);
          return page.evaluate(pointOn, [number, pane.columns[c][k].box]);
        },
      }))));
    const { marks, menus, lists } = wanted;
    const plain = marks
      ? marks.filter(({ kind }) => kind === 'link')
      : [...menus.map(({ label, href }) =>
          ({ kind: 'label', text: label, href })),
        ...lists.flatMap(({ links }) => links)];
    const inText = plain.map(({ kind = 'item', text = kind, href }, number) =>
      ({ kind, text, href, show: () => page.evaluate(pointOnLink, number) }));
    const kinds = new Map();
    for (const link of [...inPopups, ...inText].filter(({ text }) => text))
      kinds.set(link.kind, [...kinds.get(link.kind) ?? [], link]);
    return [...kinds.values()];
  }

  for (const [file, wanted] of expected)
    it(`${file} shows what the sources hold`, async () => {
      await page.goto(pages + file);
      assert.deepEqual(await page.evaluate(contents), wanted);
    });

  for (const [file, wanted] of expected)
    it(`${file} shows a pane while the mouse is there`, async () => {
      await moveAway(page);
      await page.goto(pages + file);
      assert.deepEqual(await page.evaluate(shownPanes), [], 'at first');
      for (const [number, { columns }] of popupsOf(wanted).entries()) {
        const where = `pop-up ${number}`;
        const { mark, pane } = await open(page, number);
        assert.deepEqual(await page.evaluate(shownPanes), [number], where);
        assertInWindow(pane, where);
        assertColumns(pane, columns, where);
        assert.equal(pane.backgroundColor, 'rgb(255, 255, 221)', where);
        assert.equal(pane.borderTopStyle, 'solid', where);

        const inside = { x: mark.x, y: pane.box.top + 5 };
        const gap = await page.evaluate(gapOnWay, [number, mark, inside]);
        assert.equal(gap, null, `${where} closes on the way into its pane`);
        const last = pane.columns.at(-1)?.at(-1)?.box ?? pane.box;
        const point = await page.evaluate(pointOn, [number, last]);
        assert.ok(point, `${where} is covered`);
        await page.mouse.move(point.x, point.y);
        assert.deepEqual(await page.evaluate(shownPanes), [number], where);

        await moveAway(page);
        assert.deepEqual(await page.evaluate(shownPanes), [], where);
      }
    });

  it('leads from the first and last links of a kind to anchors', async () => {
    const ends = { top: 0, bottom: 0 };
    for (const [file, wanted] of expected)
      for (const links of linksOf(wanted))
        for (const { href, show } of new Set([links[0], links.at(-1)])) {
          await moveAway(page);
          await page.goto(pages + file);
          const { x, y } = await show();
          await page.mouse.click(x, y);
          ++ends[await landed(page, new URL(href, pages + file).href)];
        }
    assert.ok(ends.top > 0 && ends.bottom > 0, 'both cases were met');
  });

  it('asks for files only and says nothing', () => {
    assert.deepEqual(strangers, []);
    assert.deepEqual(messages, []);
  });
}
