// Functions that are handed to the browser. It runs them on behalf of its
// debugger, even where the scripts of a page are switched off. None of them may
// use anything from outside itself.

/** The links of a page to anchors that can be clicked, each {href, popup, k}: link number
 *  k of the pop-up of this number, or of the page outside of pop-ups, whose
 *  number is -1. */
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
 *  column by column. */
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

/** The first height at which the mouse, on its way straight down from one point
 *  to another, is on no pop-up; null: none. The marks of later menus shine
 *  through a menu's pane. */
export function gapOnWay([from, to]) {
  for (let y = from.y; y <= to.y; ++y)
    if (!document.elementFromPoint(from.x, y).closest('.popup, .multiref'))
      return y;
  return null;
}

/** A point of a box at which the pane of this number is seen; null: none. */
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
  const link = [...document.querySelectorAll('a[href*="#"]')]
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
