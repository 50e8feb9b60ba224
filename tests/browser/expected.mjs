// What the pages of a source tree have to show, worked out from the sources
// alone. Trees are plain here: lines end in a newline and are shorter than 1023
// bytes, no string holds a "!", no two paths share a page number.

const kinds = ['PROGRAM', 'MODULE', 'SUBROUTINE', 'FUNCTION', 'INTERFACE',
  'TYPE'];
const opening = new RegExp(`^\\s*(${kinds.join('|')})(?![\\w.])(.*)`, 'i');

function pageOf(path) {
  const bytes = [...path].reduce((sum, c) => sum + c.charCodeAt(0), 0);
  const number = String((bytes * 5003) % 2 ** 21).padStart(4, '0');
  return path.replace(/.*\//, '').replace(/\.[^.]*$/, '') + number + '.html';
}

// The kind and name of the unit that a line opens, if any.
function unitOpenedBy(line) {
  const found = opening.exec(line.replace(/!.*/, ''));
  if (!found) return null;
  const kind = found[1].toUpperCase();
  const rest = found[2];
  if (kind === 'TYPE' && /^\s*\(/.test(rest)) return null;
  const name = /[\w.]+/.exec(rest)?.[0] ?? '';
  if (kind === 'MODULE' && /^procedure$/i.test(name)) return null;
  if (kind === 'INTERFACE' && /^assignment$/i.test(name)) return null;
  if (kind === 'INTERFACE' && /^operator$/i.test(name)) {
    const operator = /operator.\s*\(\s*(\.[^.]*\.)/i.exec(rest);
    return operator && { kind, name: operator[1] };
  }
  return { kind, name };
}

// Entries in columns, as many as `perColumn` in each but the last.
function columns(entries, perColumn) {
  const rows = [];
  for (let i = 0; i < entries.length; i += perColumn)
    rows.push(entries.slice(i, i + perColumn));
  return rows;
}

function callersPerColumn(n) {
  if (n <= 13) return n + 2;
  return n <= 23 ? Math.floor((n + 2) / 2) : Math.floor((n + 3) / 3);
}

// Further units of a name add their number to the bullet before them.
function listText({ name, index }) {
  if (index === 1) return `\n ${name}`;
  return index === 2 ? ' [1] [2]' : ` [${index}]`;
}

const byteOrder = (a, b) => (a < b ? -1 : a > b ? 1 : 0);

/** Returns the expected pages, a map from page name to
 *
 *   marks  of a source page, in the order of its text:
 *          {kind: 'link', word, line, anchor, href}
 *          {kind: 'pane', word, line, anchor, title, columns}
 *          {kind: 'menu', word, line, anchor, sign, title, columns}
 *   menus, lists  of the index page, in the order of the kinds:
 *          {label, href, columns} and {heading, anchor, bullets, text, links}
 *
 *  A column is a list of links {text, href}. */
export function expectedPages(tree) {
  const units = new Map();
  const linesOf = new Map();
  for (const [path, text] of tree) {
    const lines = text.split('\n').slice(0, -1);
    linesOf.set(path, lines);
    // The last line opens nothing.
    lines.slice(0, -1).forEach((line, i) => {
      const unit = unitOpenedBy(line);
      if (!unit) return;
      const key = unit.name.toUpperCase();
      if (!units.has(key)) units.set(key, []);
      const namesakes = units.get(key);
      const index = namesakes.length + 1;
      namesakes.push({ ...unit, path, line: i + 1, index,
        href: `${pageOf(path)}#${unit.name}-${index}` });
    });
  }

  const words = (path) => linesOf.get(path).flatMap((text, i) =>
    (text.match(/[\w.]+/g) ?? [])
      .map((word) => ({ word, line: i + 1, key: word.toUpperCase() }))
      .filter(({ key }) => units.has(key)));
  const definitionAt = (path, { key, line }) =>
    units.get(key).find((unit) => unit.path === path && unit.line === line);

  const callers = new Map([...units.keys()].map((key) => [key, new Map()]));
  for (const path of [...linesOf.keys()].sort(byteOrder))
    for (const word of words(path))
      if (!definitionAt(path, word))
        callers.get(word.key).set(`${path}:${word.line}`, {
          text: `${path}\u00a0:\u00a0${word.line}`,
          href: `${pageOf(path)}#line${word.line}`,
        });

  const mark = (path, { word, line, key }) => {
    const definition = definitionAt(path, { key, line });
    const namesakes = units.get(key);
    if (definition) {
      const links = [...callers.get(key).values()];
      return { kind: 'menu', word, line, anchor: `${word}-${definition.index}`,
        sign: '\u2020', title: 'Referenced By...',
        columns: columns(links, callersPerColumn(links.length)) };
    }
    const anchor = `line${line}`;
    if (namesakes.length === 1)
      return { kind: 'link', word, line, anchor, href: namesakes[0].href };
    const links = namesakes.map((unit) =>
      ({ text: `${unit.path}:${unit.line}`, href: unit.href }));
    return { kind: 'pane', word, line, anchor, title: 'Definitions:',
      columns: [links] };
  };
  const pages = new Map([...tree.keys()].map((path) => [pageOf(path),
    { marks: words(path).map((word) => mark(path, word)) }]));
  if (pages.size !== tree.size) throw new Error('two paths share a page');

  const inOrder = [...units].sort(([a], [b]) => byteOrder(a, b))
    .flatMap(([, namesakes]) => namesakes);
  const ofKind = (kind) => inOrder.filter((unit) => unit.kind === kind);
  pages.set('index.html', {
    menus: kinds.map((kind) => ({ label: `${kind}S`, href: `#${kind}`,
      columns: columns(ofKind(kind).map(({ name, href }) =>
        ({ text: name, href })), 25) })),
    lists: kinds.map((kind) => ({ heading: `${kind} Declarations`, anchor: kind,
      bullets: ofKind(kind).filter(({ index }) => index === 1).length,
      text: ofKind(kind).map(listText).join('').trim(),
      links: ofKind(kind).map(({ name, index, href }) =>
        ({ text: index === 1 ? name : `[${index}]`, href })) })),
  });
  return pages;
}
