#!/usr/bin/env python3
"""Draws Zelkor's artwork: the logo of the About box and the desktop's icons.

usage: draw.py DIRECTORY [NAME...]

Writes logo.xpm (180 x 108 pixels, 5714 colours, 2 characters per pixel),
zelkor.svg, zelkor-SIZE.png for the usual icon sizes and icon.inc, the window's
icon, or only the named files. All show one drawing: a page of source whose
lines are linked by the stroke of a Z. All but the PNGs have the same bytes on
every machine; the PNGs have the same pixels, but their bytes depend on the
version of zlib that compresses them.
"""

import functools
import math
import os
import random
import struct
import sys
import zlib

LOGO_SIZE = (180, 108)
LOGO_COLOURS = 5714
ICON_SIZES = (16, 24, 32, 48, 64, 128, 256)
WINDOW_ICON_SIZE = 48
BACKGROUND = (192, 192, 192)  # the About box's own grey

# Shapes are placed in a square of 100 x 100 units, later above earlier ones.
# A fill is a pair of colours, blended from the top left to the bottom right.


class Box:
    """A rectangle with rounded corners."""

    def __init__(self, x, y, w, h, radius, fill):
        self.x, self.y, self.w, self.h = x, y, w, h
        self.radius, self.fill = radius, fill

    def distance(self, x, y):
        """The distance of a point from the shape; negative inside."""
        dx = abs(x - self.x - self.w / 2) - self.w / 2 + self.radius
        dy = abs(y - self.y - self.h / 2) - self.h / 2 + self.radius
        outside = math.hypot(max(dx, 0), max(dy, 0))
        return outside + min(max(dx, dy), 0) - self.radius

    def svg(self, paint):
        return (f'<rect x="{self.x}" y="{self.y}" width="{self.w}" '
                f'height="{self.h}" rx="{self.radius}" fill="{paint}"/>')


class Stroke:
    """A line through points, with round ends."""

    def __init__(self, points, width, fill):
        self.points, self.width, self.fill = points, width, fill

    def distance(self, x, y):
        return min(self._to_segment(x, y, *a, *b) for a, b in
                   zip(self.points, self.points[1:])) - self.width / 2

    @staticmethod
    def _to_segment(x, y, ax, ay, bx, by):
        along = (x - ax) * (bx - ax) + (y - ay) * (by - ay)
        length = (bx - ax) ** 2 + (by - ay) ** 2
        t = min(max(along / length, 0), 1) if length else 0
        return math.hypot(x - ax - t * (bx - ax), y - ay - t * (by - ay))

    def svg(self, paint):
        points = ' '.join(f'{x},{y}' for x, y in self.points)
        return (f'<polyline points="{points}" fill="none" stroke="{paint}" '
                f'stroke-width="{self.width}" stroke-linecap="round" '
                'stroke-linejoin="round"/>')


INK = ((40, 60, 120), (16, 24, 64))
TEXT = ((150, 160, 180), (110, 120, 150))
LINK = ((225, 60, 40), (150, 20, 30))

EMBLEM = [
    Box(4, 4, 92, 92, 18, ((96, 130, 200), (20, 30, 84))),
    Box(20, 12, 60, 76, 4, ((255, 255, 255), (212, 220, 236))),
    Stroke([(28, 24), (46, 24)], 3.5, TEXT),
    Stroke([(28, 80), (72, 80)], 3.5, TEXT),
    Stroke([(34, 44), (44, 44)], 3.5, TEXT),
    Stroke([(58, 60), (68, 60)], 3.5, TEXT),
    Stroke([(32, 34), (68, 34), (32, 70), (68, 70)], 8, LINK),
    Box(26, 28, 12, 12, 6, INK),
    Box(62, 64, 12, 12, 6, INK),
]

# The letters of the word beside the emblem: their strokes in a box 10 units
# high, and the distance to the next letter.
LETTERS = {
    'Z': ([[(0, 0), (6, 0), (0, 10), (6, 10)]], 9),
    'e': ([[(0, 7), (4.6, 7), (4.4, 5.4), (3.4, 4.4), (2.3, 4.2), (1.1, 4.5),
            (0.2, 5.6), (0, 7), (0.3, 8.7), (1.3, 9.8), (2.5, 10),
            (3.6, 9.8), (4.4, 9.1)]], 7),
    'l': ([[(0, 0), (0, 10)]], 2.8),
    'k': ([[(0, 0), (0, 10)], [(3.8, 4.2), (0, 7.6)], [(1.2, 6.6), (4, 10)]],
          6.4),
    'o': ([[(2.4, 4.2), (1, 4.6), (0.1, 5.8), (0, 7.1), (0.1, 8.4), (1, 9.6),
            (2.4, 10), (3.8, 9.6), (4.7, 8.4), (4.8, 7.1), (4.7, 5.8),
            (3.8, 4.6), (2.4, 4.2)]], 7.2),
    'r': ([[(0, 4.2), (0, 10)], [(0, 6.2), (1, 4.7), (2.2, 4.2), (3, 4.3)]],
          4),
}


def word(text, x, y, scale, width, fill):
    shapes = []
    for letter in text:
        strokes, advance = LETTERS[letter]
        for points in strokes:
            shapes.append(Stroke(
                [(x + px * scale, y + py * scale) for px, py in points],
                width, fill))
        x += advance * scale
    return shapes


def blend(a, b, t):
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def pixel(shapes, x, y, size, under):
    """The colour at a point. Edges are anti-aliased over one pixel of `size`
    units. `under` is a colour and, as fourth value, its opacity from 0 to 1."""
    r, g, b, opacity = under
    for shape in shapes:
        cover = min(max(0.5 - shape.distance(x, y) / size, 0), 1)
        if cover == 0:
            continue
        top = blend(*shape.fill, min(max((x + y) / 200, 0), 1))
        total = cover + opacity * (1 - cover)
        share = cover / total
        r, g, b = blend((r, g, b), top, share)
        opacity = total
    return r, g, b, opacity


def rounded(colour):
    return tuple(int(c + 0.5) for c in colour)


def logo_pixels():
    """The emblem and the name on a background that is lighter at the top."""
    width, height = LOGO_SIZE
    shapes = EMBLEM + word('Zelkor', 105, 42, 1.6, 3.2, INK)
    units = 100 / height
    noise = random.Random(1)
    rows = []
    for row in range(height):
        ground = blend((214, 218, 228), BACKGROUND, row / (height - 1))
        rows.append([])
        for column in range(width):
            x, y = (column + 0.5) * units, (row + 0.5) * units
            shade = blend(ground, (188, 194, 210), column / (width - 1) / 2)
            colour = pixel(shapes, x, y, units, (*shade, 1))[:3]
            # A little noise hides the steps of the gradients.
            grain = [int(noise.random() * 7) - 3 for channel in range(3)]
            rows[-1].append(tuple(
                min(max(c + g, 0), 255)
                for c, g in zip(rounded(colour), grain)))
    return rows


def with_colours(rows, count):
    """The same picture in exactly `count` colours: in the order of brightness,
    the colours nearest to their neighbour are merged with it."""
    colours = sorted({c for row in rows for c in row}, key=lambda c: (sum(c), c))
    if len(colours) < count:
        raise ValueError(f'only {len(colours)} colours')
    gaps = sorted((sum((p - q) ** 2 for p, q in zip(a, b)), i)
                  for i, (a, b) in enumerate(zip(colours, colours[1:])))
    merged = {i for _, i in gaps[:len(colours) - count]}
    replacement, last = {}, None
    for i, colour in enumerate(colours):
        last = last if i - 1 in merged else colour
        replacement[colour] = last
    return [[replacement[c] for c in row] for row in rows]


def xpm(rows, name):
    """XPM text; the codes avoid quote, backslash and question mark, and the
    letters I and L, so that they do not spell words that a search would find."""
    alphabet = [chr(c) for c in range(32, 127) if chr(c) not in '"\\?IiLl']
    colours = sorted({c for row in rows for c in row})
    codes = dict(zip(colours, (a + b for a in alphabet for b in alphabet)))
    lines = [f'{len(rows[0])} {len(rows)} {len(colours)} 2']
    lines += ['%s c #%02X%02X%02X' % (codes[c], *c) for c in colours]
    lines += [''.join(codes[c] for c in row) for row in rows]
    body = ',\n'.join(f'"{line}"' for line in lines)
    return f'/* XPM */\nconst char* const {name}[] = {{\n{body}\n}};\n'


def logo():
    return xpm(with_colours(logo_pixels(), LOGO_COLOURS), 'logo_rows')


def svg():
    parts, fills = [], []
    for i, shape in enumerate(EMBLEM):
        ends = ''.join(
            f'<stop offset="{offset}" stop-color="#%02x%02x%02x"/>' % colour
            for offset, colour in zip((0, 1), shape.fill))
        fills.append(f'<linearGradient id="f{i}" x1="0" y1="0" x2="100" '
                     f'y2="100" gradientUnits="userSpaceOnUse">{ends}'
                     '</linearGradient>')
        parts.append(shape.svg(f'url(#f{i})'))
    lines = ['<svg xmlns="http://www.w3.org/2000/svg" width="100" '
             'height="100" viewBox="0 0 100 100">',
             '<defs>', *fills, '</defs>', *parts, '</svg>', '']
    return '\n'.join(lines)


def icon_rows(size):
    """Rows of pixels, each red, green, blue and opacity from 0 to 255."""
    units = 100 / size
    for row in range(size):
        colours = (pixel(EMBLEM, (column + 0.5) * units, (row + 0.5) * units,
                         units, (0, 0, 0, 0)) for column in range(size))
        yield [(*rounded((r, g, b)), int(opacity * 255 + 0.5))
               for r, g, b, opacity in colours]


def icon_inc():
    """The pixels as elements of an array, each 0xAARRGGBB."""
    return '\n'.join(
        ', '.join('0x%02X%02X%02X%02X' % (a, r, g, b) for r, g, b, a in row) + ','
        for row in icon_rows(WINDOW_ICON_SIZE)) + '\n'


def png(size):
    data = b''
    for row in icon_rows(size):
        data += b'\0' + b''.join(map(bytes, row))

    def chunk(kind, content):
        checked = kind + content
        return (struct.pack('>I', len(content)) + checked +
                struct.pack('>I', zlib.crc32(checked)))

    header = struct.pack('>IIBBBBB', size, size, 8, 6, 0, 0, 0)
    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', header) +
            chunk(b'IDAT', zlib.compress(data, 9)) + chunk(b'IEND', b''))


def main():
    directory = sys.argv[1]
    os.makedirs(directory, exist_ok=True)
    drawings = {
        'logo.xpm': lambda: logo().encode('ascii'),
        'zelkor.svg': lambda: svg().encode('ascii'),
        'icon.inc': lambda: icon_inc().encode('ascii'),
        **{f'zelkor-{size}.png': functools.partial(png, size)
           for size in ICON_SIZES},
    }
    for name in sys.argv[2:] or drawings:
        with open(os.path.join(directory, name), 'wb') as file:
            file.write(drawings[name]())


if __name__ == '__main__':
    main()
