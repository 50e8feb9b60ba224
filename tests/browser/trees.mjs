// The source trees whose pages are opened: maps from path to text, in the order
// in which the files are processed.

import { readFileSync, readdirSync } from 'node:fs';
import { join, relative } from 'node:path';

const range = (n) => Array.from({ length: n }, (_, i) => i + 1);
const lines = (...parts) => parts.flat(Infinity).join('\n') + '\n';

// The numbers of references around which the menus gain columns.
export const calledSoOften = [0, 13, 14, 23, 24, 50];

/** A tree for what no sample is likely to have: numbers at the bounds of the
 *  columns, namesakes across files and kinds, pop-ups at a page's end. */
export function madeTree() {
  const subroutine = (name) => [`subroutine ${name}()`, 'end subroutine'];
  const filler = (n) => range(n).map((i) => `! ${i} of ${n}`);
  const calls = (n, name) => range(n).map(() => `  call ${name}()`);

  return new Map([
    // Called from three files, whose order in menus is not the one here. The
    // last menu hangs from the last line but one of its page.
    ['z/units.f90', lines(
      'module Shared',
      'contains',
      calledSoOften.filter((n) => n < 50)
        .map((n) => [subroutine(`called_${n}`), filler(20)]),
      subroutine('twice'),
      'subroutine shared()',
      'end subroutine',
      'end module',
      subroutine('called_50'))],
    ['b/callers.f90', lines(
      'program callers',
      'use shared',
      calledSoOften.map((n) => [filler(3), calls(n >> 1, `called_${n}`)]),
      'end program')],
    ['a/callers.f90', lines(
      subroutine('Twice'),
      'subroutine more_callers()',
      calledSoOften.map((n) => calls(n - (n >> 1), `CALLED_${n}`)),
      '  call TWICE(); call twice()',
      `  if (.true.) call a_long_way_to_the_right(${'1, '.repeat(9)}twice)`,
      filler(80),
      '  call thrice()',
      'end subroutine')],
    ['kinds.f90', lines(
      'type shared',
      'end type',
      'interface thrice',
      'end interface',
      'function thrice()',
      'end function',
      'type, public :: thrice',
      'end type',
      'subroutine thrice()',
      'end subroutine',
      range(24).map((i) => [`function f${i}()`, 'end function']),
      range(24).map((i) => [`type t${i}`, 'end type']),
      filler(60),
      'call shared(thrice)',
      '! end')],
  ]);
}

/** The free-form sources below a directory. */
export function treeBelow(directory) {
  const files = (below) =>
    readdirSync(below, { withFileTypes: true }).flatMap((entry) => {
      const path = join(below, entry.name);
      return entry.isDirectory() ? files(path) : path;
    });
  return new Map(files(directory).filter((path) => path.endsWith('.f90')).sort()
    .map((path) => [relative(directory, path), readFileSync(path, 'latin1')]));
}
