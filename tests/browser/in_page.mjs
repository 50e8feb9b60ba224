// Functions that run in the browser, through its debugger and therefore even if
// the scripts of a page are disabled. They cannot use anything defined outside
// themselves.

/** The links of a page to anchors that can be clicked, each {href, popup, k}:
 *  link number k of that pop-up, or outside of pop-ups if the number is -1. */
export function links() {
  const within = (from, popup) => from.map((a, k) =>
    ({ href: a.href, popup, k, text: a.textContent }));
  const outside = [...document.querySelectorAll('a[href*="#"]')]
    .filter((a) => !a.closest('table.pane'));
  const panes = [...document.querySelectorAll('table.pane')];
  return [within(outside, -1), ...panes.map((pane, number) =>
    within([...pane.querySelectorAll('a')], number))]
    .flat().filter(({ text }) => text);
}

/** Scrolls a pop-up as far up as the page allows. Returns the middle of its
 *  mark: the dagger, or the word itself. */
export function bringUp(number) {
  const popup = document.querySelectorAll('.popup, .multiref')[number];
  popup.scrollIntoView({ block: 'start' });
  const mark = document.createRange();
  mark.selectNode(popup.firstChild);
  const box = mark.getBoundingClientRect();
  return { x: box.x + box.width / 2, y: box.y + box.height / 2 };
}

/** The numbers of the panes that are not hidden to the left of the window. */
export function shownPanes() {
  return [...document.querySelectorAll('table.pane')].flatMap((pane, number) =>
    pane.getBoundingClientRect().right > 0 ? number : []);
}

/** The look of an open pane: its position and that of its links, by columns. */
export function openPane(number) {
  const box = (node) => {
    const { left, top, right, bottom } = node.getBoundingClientRect();
    return { left, top, right, bottom };
  };
  const pane = document.querySelectorAll('table.pane')[number];
  const columns = [...pane.querySelectorAll('td')].map((column) =>
    [...column.querySelectorAll('a')].map((a) => ({ text: a.textContent,
      box: box(a), lines: a.getClientRects().length })));
  const { backgroundColor, borderTopStyle } = getComputedStyle(pane);
  return { box: box(pane), columns, borderTopStyle, backgroundColor,
    window: { width: document.documentElement.clientWidth,
      height: document.documentElement.clientHeight } };
}

/** The first height at which the mouse is on no pop-up while it moves straight
 *  down from one point to another; null if there is none. The marks of later
 *  menus shine through the pane of a menu. */
export function gapOnWay([from, to]) {
  for (let y = from.y; y <= to.y; ++y)
    if (!document.elementFromPoint(from.x, y).closest('.popup, .multiref'))
      return y;
  return null;
}

/** A point of a box at which a pane is visible; null if there is none. */
export function pointOn([number, { left, top, right, bottom }]) {
  const pane = document.querySelectorAll('table.pane')[number];
  const y = (top + bottom) / 2;
  for (let x = (left + right) / 2; x < right; ++x)
    if (pane.contains(document.elementFromPoint(x, y))) return { x, y };
  return null;
}

/** Scrolls to a link outside of panes, counted from 0. Returns its middle. */
export function pointOnLink(number) {
  const link = [...document.querySelectorAll('a[href*="#"]')]
    .filter((a) => !a.closest('table.pane'))[number];
  link.scrollIntoView({ block: 'center' });
  const { left, top, right, bottom } = link.getBoundingClientRect();
  return { x: (left + right) / 2, y: (top + bottom) / 2 };
}

/** The position of an anchor in the window; null if there is no such anchor. */
export function landing(name) {
  const anchor = document.getElementsByName(name)[0];
  if (!anchor) return null;
  const { left, top } = anchor.getBoundingClientRect();
  const page = document.scrollingElement;
  const bottom = page.scrollTop + page.clientHeight >= page.scrollHeight - 1;
  return { left, top, bottom, width: page.clientWidth,
    height: page.clientHeight };
}
