// Functions that are handed to the browser. It runs them on behalf of its
// debugger, even where the scripts of a page are switched off. None of them may
// use anything from outside itself.

/** What a source or index page shows, in the form of expectedPages(). */
export function contents() {
  // The text before a node, without what stands in panes.
  const textBefore = (node) => {
    const pre = node.closest('pre');
    const texts = document.createTreeWalker(pre, NodeFilter.SHOW_TEXT);
    const before = Node.DOCUMENT_POSITION_PRECEDING;
    let text = '';
    while (texts.nextNode()) {
      const at = texts.currentNode;
      if (!(node.compareDocumentPosition(at) & before)) break;
      if (!at.parentElement.closest('.popup, table.pane')) text += at.data;
    }
    return text;
  };
  const line = (node) => textBefore(node).split('\n').length;
  const href = (a) => a.getAttribute('href');
  const links = (from) => [...from.querySelectorAll('a[href]')]
    .map((a) => ({ text: a.textContent, href: href(a) }));
  const columns = (pane) => [...pane.querySelectorAll('td')].map(links)
    .filter((column) => column.length > 0);
  const anchorBefore = (node) => node.previousElementSibling?.name;
  const title = (pane) =>
    pane.querySelector('td').textContent.trim().split('\n')[0];

  if (!document.querySelector('pre')) {
    const popups = [...document.querySelectorAll('.popup')];
    return {
      menus: popups.map((popup) => {
        const label = popup.parentElement.previousElementSibling;
        return { label: label.textContent, href: href(label),
          columns: columns(popup.querySelector('.pane')) };
      }),
      lists: [...document.querySelectorAll('h2')].map((heading) => ({
        heading: heading.textContent,
        anchor: heading.querySelector('a').name,
        bullets: [...heading.nextElementSibling.children]
          .filter((node) => node.matches('li')).length,
        text: heading.nextElementSibling.textContent.trim(),
        links: links(heading.nextElementSibling),
      })),
    };
  }

  const marks = document.querySelectorAll(
    'pre > a[href], pre > span > .multiref, pre > span > .popup');
  return { marks: [...marks].map((node) => {
    if (node.matches('a')) return { kind: 'link', word: node.textContent,
      line: line(node), anchor: anchorBefore(node), href: href(node) };
    const pane = node.querySelector(':scope > table.pane');
    if (node.matches('.multiref')) return { kind: 'pane',
      word: node.firstChild.data, line: line(node),
      anchor: anchorBefore(node.parentElement),
      title: title(pane), columns: columns(pane) };
    const definition = node.parentElement.previousElementSibling;
    return { kind: 'menu', word: definition.textContent,
      line: line(definition), anchor: definition.name,
      sign: node.firstChild.textContent,
      title: title(pane), columns: columns(pane) };
  }) };
}

/** Scrolls the pop-up of this number as far up as the page allows and returns
 *  the middle of its mark: the dagger, or the word itself. */
export function bringUp(number) {
  const popup = document.querySelectorAll('.popup, .multiref')[number];
  popup.scrollIntoView({ block: 'start' });
  const mark = document.createRange();
  mark.selectNode(popup.firstChild);
  const box = mark.getBoundingClientRect();
  return { x: box.x + box.width / 2, y: box.y + box.height / 2 };
}

/** The numbers of the panes that are not wholly to the left of the window. */
export function shownPanes() {
  return [...document.querySelectorAll('table.pane')].flatMap((pane, number) =>
    pane.getBoundingClientRect().right > 0 ? number : []);
}

/** The look of the open pane of this number: its place and that of its links,
 *  column by column as they stand on the screen. */
export function openPane(number) {
  const box = (node) => {
    const { left, top, right, bottom } = node.getBoundingClientRect();
    return { left, top, right, bottom };
  };
  const pane = document.querySelectorAll('table.pane')[number];
  const columns = new Map();
  for (const a of pane.querySelectorAll('a')) {
    const { left } = box(a);
    if (!columns.has(left)) columns.set(left, []);
    columns.get(left).push({ text: a.textContent, box: box(a),
      lines: a.getClientRects().length });
  }
  const { backgroundColor, borderTopStyle } = getComputedStyle(pane);
  return { box: box(pane), columns: [...columns.values()], borderTopStyle,
    backgroundColor,
    window: { width: document.documentElement.clientWidth,
      height: document.documentElement.clientHeight } };
}

/** The first height at which the mouse, on its way straight down from one point
 *  to another, is not on the pop-up of this number; null: none. */
export function gapOnWay([number, from, to]) {
  const popup = document.querySelectorAll('.popup, .multiref')[number];
  for (let y = from.y; y <= to.y; ++y)
    if (!popup.contains(document.elementFromPoint(from.x, y))) return y;
  return null;
}

/** A point of a box at which the pane of this number is seen; null: none. The
 *  marks of later menus shine through a menu's pane. */
export function pointOn([number, { left, top, right, bottom }]) {
  const pane = document.querySelectorAll('table.pane')[number];
  const y = (top + bottom) / 2;
  for (let x = (left + right) / 2; x < right; ++x)
    if (pane.contains(document.elementFromPoint(x, y))) return { x, y };
  return null;
}

/** A point of a link outside of panes, counted from 0 in its page, once it is
 *  scrolled to. */
export function pointOnLink(number) {
  const link = [...document.querySelectorAll('a[href]')]
    .filter((a) => !a.closest('table.pane'))[number];
  link.scrollIntoView({ block: 'center' });
  const { left, top, right, bottom } = link.getBoundingClientRect();
  return { x: (left + right) / 2, y: (top + bottom) / 2 };
}

/** Where the page stands with regard to an anchor: null if there is none. */
export function landing(name) {
  const anchor = document.getElementsByName(name)[0];
  if (!anchor) return null;
  const { left, top } = anchor.getBoundingClientRect();
  const page = document.scrollingElement;
  const bottom = page.scrollTop + page.clientHeight >= page.scrollHeight - 1;
  return { left, top, bottom, width: page.clientWidth,
    height: page.clientHeight };
}
