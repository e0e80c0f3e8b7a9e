#!/usr/bin/env python3
"""Draws the installer's three skin images and writes them as run-length
32-bit TGA files with premultiplied alpha (bottom row first, the form the
module's image reader expects).

    make_skin_images.py OUTPUT_DIR      -> SkinSheet.tga, Banner.tga, Badge.tga

Every piece the toolkit and the panels cut out of the sheet is drawn inside
its own rectangle, so stretching one never pulls in a neighbour. Standard
library only; the output is the same on every run.
"""
import math
import os
import struct
import sys

# The window colour, 0x333332: red 50, green 51, blue 51.
WINDOW = (50, 51, 51)
GRAPHITE_HI = (78, 81, 84)
GRAPHITE = (60, 62, 65)
GRAPHITE_LO = (40, 41, 43)
EDGE = (104, 108, 112)
AMBER = (255, 178, 62)
AMBER_DEEP = (226, 122, 28)
WHITE = (244, 244, 240)
MUTED = (128, 131, 134)


def clamp(v, lo=0.0, hi=1.0):
    return lo if v < lo else hi if v > hi else v


def mix(a, b, t):
    return tuple(a[i] + (b[i] - a[i]) * t for i in range(3))


class Canvas:
    """Premultiplied RGBA in floats 0..1, top row first."""

    def __init__(self, width, height):
        self.w, self.h = width, height
        self.px = [[0.0, 0.0, 0.0, 0.0] for _ in range(width * height)]

    def blend(self, x, y, rgb, alpha):
        if alpha <= 0 or not (0 <= x < self.w and 0 <= y < self.h):
            return
        p = self.px[y * self.w + x]
        k = 1.0 - alpha
        for i in range(3):
            p[i] = rgb[i] / 255.0 * alpha + p[i] * k
        p[3] = alpha + p[3] * k

    def paint(self, box, coverage, colour, opacity=1.0):
        """Paints colour(x, y) at coverage(x, y) over every pixel of box = (x, y, w, h)."""
        bx, by, bw, bh = box
        for y in range(by, by + bh):
            for x in range(bx, bx + bw):
                c = coverage(x + 0.5, y + 0.5)
                if c > 0:
                    self.blend(x, y, colour(x + 0.5, y + 0.5), clamp(c) * opacity)

    def tga(self):
        """RLE true-colour TGA, 32 bits, 8 alpha bits, bottom row first, with the footer."""
        header = struct.pack('<BBBHHBHHHHBB', 0, 0, 10, 0, 0, 0, 0, 0, self.w, self.h, 32, 8)
        out = bytearray(header)
        for y in range(self.h - 1, -1, -1):
            row = []
            for x in range(self.w):
                p = self.px[y * self.w + x]
                row.append(bytes(int(round(clamp(p[i]) * 255)) for i in (2, 1, 0, 3)))
            out += encode_row(row)
        out += struct.pack('<II', 0, 0) + b'TRUEVISION-XFILE.\0'
        return bytes(out)


def encode_row(pixels):
    out = bytearray()
    i, n = 0, len(pixels)
    while i < n:
        run = 1
        while i + run < n and run < 128 and pixels[i + run] == pixels[i]:
            run += 1
        if run > 1:
            out.append(0x80 | (run - 1))
            out += pixels[i]
            i += run
            continue
        start = i
        while i < n and i - start < 128 and (i + 1 >= n or pixels[i + 1] != pixels[i]):
            i += 1
        out.append(i - start - 1)
        for p in pixels[start:i]:
            out += p
    return out


# Signed distances, negative inside.
def sd_round_rect(px, py, x, y, w, h, r):
    cx, cy = x + w / 2.0, y + h / 2.0
    qx = abs(px - cx) - (w / 2.0 - r)
    qy = abs(py - cy) - (h / 2.0 - r)
    return math.hypot(max(qx, 0), max(qy, 0)) + min(max(qx, qy), 0) - r


def sd_circle(px, py, cx, cy, r):
    return math.hypot(px - cx, py - cy) - r


def sd_segment(px, py, ax, ay, bx, by):
    dx, dy = bx - ax, by - ay
    t = clamp(((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy or 1))
    return math.hypot(px - ax - t * dx, py - ay - t * dy)


def fill(d):
    return clamp(0.5 - d)


def solid(rgb):
    return lambda x, y: rgb


def vertical(top, bottom, y0, h):
    return lambda x, y: mix(top, bottom, clamp((y - y0) / h))


def stroke_coverage(segments, half):
    return lambda x, y: fill(min(sd_segment(x, y, *s) for s in segments) - half)


def polyline(points, ox, oy, scale):
    pts = [(ox + px * scale, oy + py * scale) for px, py in points]
    return [(a[0], a[1], b[0], b[1]) for a, b in zip(pts, pts[1:])]


# --- pieces of the sheet -----------------------------------------------------

def bottom_bar(c):
    # Three identical one-pixel columns: a lit top edge over a darkening panel.
    def colour(x, y):
        row = int(y)
        if row == 0:
            return EDGE
        if row == 1:
            return (30, 31, 32)
        return mix((44, 45, 47), (30, 31, 33), (row - 2) / 65.0)
    c.paint((1, 0, 3, 68), lambda x, y: 1.0, colour)


def header_strip(c):
    # The strip column: a soft band that fades into the window colour at both ends.
    def colour(x, y):
        t = (y - 15) / 72.0
        glow = math.sin(math.pi * clamp(t)) ** 2
        return mix(WINDOW, (70, 72, 75), glow)
    c.paint((0, 15, 1, 72), lambda x, y: 1.0, colour)


def check_box(c, x, y, hover, checked):
    border = AMBER if hover else EDGE
    c.paint((x, y, 15, 15), lambda px, py: fill(sd_round_rect(px, py, x + 0.5, y + 0.5, 14, 14, 3)), solid(border))
    inner = (AMBER if checked else GRAPHITE_LO)
    if checked and not hover:
        inner = AMBER_DEEP
    c.paint((x, y, 15, 15), lambda px, py: fill(sd_round_rect(px, py, x + 1.5, y + 1.5, 12, 12, 2)),
            vertical(mix(inner, WHITE, 0.12), inner, y + 1, 13) if checked else solid(inner))
    if checked:
        tick = polyline([(3.6, 7.6), (6.2, 10.2), (11.4, 4.6)], x, y, 1.0)
        c.paint((x, y, 15, 15), stroke_coverage(tick, 0.95), solid((36, 30, 24)))


def radio(c, x, y, hover, checked):
    cx, cy = x + 7.5, y + 7.5
    c.paint((x, y, 15, 15), lambda px, py: fill(sd_circle(px, py, cx, cy, 7.0)), solid(AMBER if hover else EDGE))
    c.paint((x, y, 15, 15), lambda px, py: fill(sd_circle(px, py, cx, cy, 6.0)), solid(GRAPHITE_LO))
    if checked:
        c.paint((x, y, 15, 15), lambda px, py: fill(sd_circle(px, py, cx, cy, 3.6)),
                solid(AMBER if hover else AMBER_DEEP))


def restart_icon(c, x, y):
    cx, cy, r = x + 6.5, y + 6.8, 4.3

    def arc(px, py):
        d = abs(sd_circle(px, py, cx, cy, r)) - 0.9
        angle = math.degrees(math.atan2(py - cy, px - cx))
        # Open between -80 and -20 degrees: the gap the arrow points into.
        if -80 < angle < -20:
            d = max(d, 1.0)
        return fill(d)
    c.paint((x, y, 13, 13), arc, solid(AMBER))
    head = [(cx + 1.0, y + 0.6, cx + 5.4, y + 2.6), (cx + 5.4, y + 2.6, cx + 3.6, y + 6.4)]
    c.paint((x, y, 13, 13), stroke_coverage(head, 0.8), solid(AMBER))


def app_icon(c, x, y):
    c.paint((x, y, 13, 13), lambda px, py: fill(sd_round_rect(px, py, x + 0.5, y + 1.5, 12, 10, 2)), solid(EDGE))
    c.paint((x, y, 13, 13), lambda px, py: fill(sd_round_rect(px, py, x + 1.5, y + 4.5, 10, 6, 1)), solid(GRAPHITE_LO))
    c.paint((x, y, 13, 13), lambda px, py: fill(sd_circle(px, py, x + 3.0, y + 3.0, 0.9)), solid(AMBER))


def progress_track(c, x, y):
    # 4 + 1 + 4 columns, 33 rows: a sunken groove.
    c.paint((x, y, 9, 33), lambda px, py: fill(sd_round_rect(px, py, x + 0.5, y + 0.5, 8, 32, 4)), solid((26, 27, 28)))
    c.paint((x, y, 9, 33), lambda px, py: fill(sd_round_rect(px, py, x + 1.5, y + 1.5, 6, 30, 3)),
            vertical((34, 35, 37), (52, 54, 56), y + 1, 31))


def progress_fill(c, x, y):
    # 1 + 1 + 2 columns, 29 rows: a lit amber bar with a bright top line.
    c.paint((x, y, 4, 29), lambda px, py: fill(sd_round_rect(px, py, x + 0.0, y + 0.0, 4, 29, 1.2)),
            vertical((255, 210, 120), AMBER_DEEP, y, 29))
    c.paint((x, y, 4, 2), lambda px, py: fill(py - (y + 1.6)), solid((255, 236, 190)), 0.6)


def focus_ring(c, x, y):
    # 7 + 1 + 7 square: a rounded amber outline, clear inside.
    c.paint((x, y, 15, 15), lambda px, py: fill(abs(sd_round_rect(px, py, x + 1.0, y + 1.0, 13, 13, 5)) - 0.8),
            solid(AMBER), 0.9)


def button(c, x, y, look):
    # 3 + 1 + 3 columns, 33 rows; the label is drawn over it by the window.
    top, bottom, border = {
        'normal': (GRAPHITE_HI, GRAPHITE, EDGE),
        'hover': ((98, 101, 104), (72, 74, 77), AMBER),
        'pressed': ((40, 41, 43), (58, 60, 62), AMBER_DEEP),
        'disabled': ((58, 59, 60), (54, 55, 56), (76, 78, 80)),
    }[look]
    c.paint((x, y, 7, 33), lambda px, py: fill(sd_round_rect(px, py, x + 0.0, y + 0.0, 7, 33, 3)), solid(border))
    c.paint((x, y, 7, 33), lambda px, py: fill(sd_round_rect(px, py, x + 1.0, y + 1.0, 5, 31, 2)),
            vertical(top, bottom, y + 1, 31))


def failure_badge(c, x, y):
    # A warning triangle with its mark, 33 by 30.
    ax, ay, bx, by, cx, cy = x + 16.5, y + 2.5, x + 31.0, y + 27.5, x + 2.0, y + 27.5
    edges = [(ax, ay, bx, by), (bx, by, cx, cy), (cx, cy, ax, ay)]

    def inside(px, py):
        def side(e):
            return (e[2] - e[0]) * (py - e[1]) - (e[3] - e[1]) * (px - e[0])
        d = min(sd_segment(px, py, *e) for e in edges)
        return -d if all(side(e) <= 0 for e in edges) or all(side(e) >= 0 for e in edges) else d
    c.paint((x, y, 33, 30), lambda px, py: fill(inside(px, py) - 1.2), vertical((255, 196, 96), AMBER_DEEP, y, 30))
    c.paint((x, y, 33, 30), stroke_coverage([(x + 16.5, y + 10.0, x + 16.5, y + 18.5)], 1.4), solid((40, 30, 20)))
    c.paint((x, y, 33, 30), lambda px, py: fill(sd_circle(px, py, x + 16.5, y + 23.0, 1.6)), solid((40, 30, 20)))


def sun(c, box, cx, cy, r, opacity=1.0):
    """The product's emblem: a lit disc in a soft halo."""
    c.paint(box, lambda px, py: clamp(1.0 - math.hypot(px - cx, py - cy) / (r * 2.1)) ** 2,
            solid(AMBER), 0.55 * opacity)
    c.paint(box, lambda px, py: fill(sd_circle(px, py, cx, cy, r)),
            lambda px, py: mix((255, 236, 180), AMBER, clamp(math.hypot(px - cx + r * 0.3, py - cy + r * 0.3) / (r * 1.4))),
            opacity)


def logo(c, x, y):
    # A tab hanging from the top edge, 47 by 71, with the emblem and a beam.
    c.paint((x, y, 47, 71), lambda px, py: fill(max(sd_round_rect(px, py, x + 1, y - 10, 45, 80, 9), y - py)),
            vertical((74, 76, 80), (52, 54, 57), y, 71))
    c.paint((x, y, 47, 71), lambda px, py: fill(max(abs(sd_round_rect(px, py, x + 1, y - 10, 45, 80, 9)) - 0.6, y - py)),
            solid(EDGE), 0.8)
    sun(c, (x + 2, y, 43, 68), x + 23.5, y + 22.0, 8.0)
    letter = polyline(GLYPHS['L'][0], x + 16.0, y + 39.0, 3.3)
    c.paint((x, y, 47, 71), stroke_coverage(letter, 1.9), solid(WHITE))


def update_mark(c, x, y):
    # Auto-update side picture, 42 by 49: a down arrow inside a turning ring.
    cx, cy = x + 21.0, y + 24.5

    def ring(px, py):
        d = abs(sd_circle(px, py, cx, cy, 16.5)) - 2.0
        angle = math.degrees(math.atan2(py - cy, px - cx))
        if -70 < angle < -35 or 110 < angle < 145:
            d = max(d, 1.0)
        return fill(d)
    c.paint((x, y, 42, 49), ring, solid(MUTED))
    arrow = [(cx, cy - 9.0, cx, cy + 8.0), (cx - 6.0, cy + 2.5, cx, cy + 8.5), (cx + 6.0, cy + 2.5, cx, cy + 8.5)]
    c.paint((x, y, 42, 49), stroke_coverage(arrow, 1.8), solid(AMBER))


def panel_background(c, x, y):
    # Nine pieces of 1 + 120 + 1 by 1 + 50 + 1, drawn opaque and stretched over a panel.
    def colour(px, py):
        col, row = int(px) - x, int(py) - y
        if col in (0, 121) or row in (0, 51):
            return (62, 64, 66)
        return mix((58, 60, 62), WINDOW, (row - 1) / 49.0)
    c.paint((x, y, 122, 52), lambda px, py: 1.0, colour)


def splash_background(c, x, y):
    # 1 + 412 + 1 columns by 173 + 1 + 1 rows, opaque. The lit top fades out
    # before row 173, whose one row is stretched down the rest of the panel.
    def colour(px, py):
        col, row = int(px) - x, int(py) - y
        if row >= 173:
            return WINDOW
        base = mix((66, 68, 71), WINDOW, (row / 172.0) ** 0.8)
        if col in (0, 413):
            return base
        u = (col - 1) / 411.0
        glow = clamp(1.0 - math.hypot((u - 0.78) * 1.6, (row - 10) / 150.0)) ** 2
        fade = clamp((172 - row) / 40.0)
        return mix(base, (116, 92, 60), 0.55 * glow * fade)
    c.paint((x, y, 414, 175), lambda px, py: 1.0, colour)


# Every rectangle the toolkit and the panels cut from the sheet, as x, y, w, h.
SHEET_PIECES = [
    (1, 0, 3, 68),                                           # bottom bar: three 1-pixel columns
    (0, 15, 1, 72),                                          # header strips (0, 22, 1, 65 lies inside)
    (4, 0, 15, 15), (19, 0, 15, 15), (4, 15, 15, 15), (19, 15, 15, 15),      # check boxes
    (5, 30, 13, 13), (20, 30, 13, 13),                       # restart and application icons
    (4, 44, 9, 33), (13, 44, 15, 15), (2, 77, 4, 29),        # progress track, focus ring, progress fill
    (6, 77, 7, 33), (13, 77, 7, 33), (20, 77, 7, 33), (27, 77, 7, 33),       # buttons: four looks
    (0, 110, 33, 30),                                        # failure picture
    (2, 140, 15, 15), (17, 140, 15, 15), (2, 155, 15, 15), (17, 155, 15, 15),  # radio buttons
    (34, 0, 47, 71), (39, 71, 42, 49),                       # logo, auto-update picture
    (33, 123, 122, 52), (155, 0, 414, 175),                  # panel and splash backgrounds
]


def check_pieces(c):
    # The pieces never overlap, and nothing is drawn outside them, so no
    # stretched piece can pull in a neighbour's pixels.
    owner = {}
    for i, (x, y, w, h) in enumerate(SHEET_PIECES):
        for py in range(y, y + h):
            for px in range(x, x + w):
                if (px, py) in owner:
                    raise SystemExit('pieces %d and %d overlap at %d,%d' % (owner[(px, py)], i, px, py))
                owner[(px, py)] = i
    for py in range(c.h):
        for px in range(c.w):
            if c.px[py * c.w + px][3] > 0 and (px, py) not in owner:
                raise SystemExit('pixel %d,%d lies outside every piece' % (px, py))


def sheet():
    c = Canvas(569, 175)
    bottom_bar(c)
    header_strip(c)
    check_box(c, 4, 0, False, False)
    check_box(c, 19, 0, True, False)
    check_box(c, 4, 15, False, True)
    check_box(c, 19, 15, True, True)
    restart_icon(c, 5, 30)
    app_icon(c, 20, 30)
    progress_track(c, 4, 44)
    focus_ring(c, 13, 44)
    progress_fill(c, 2, 77)
    button(c, 6, 77, 'disabled')
    button(c, 13, 77, 'normal')
    button(c, 20, 77, 'hover')
    button(c, 27, 77, 'pressed')
    failure_badge(c, 0, 110)
    radio(c, 2, 140, False, False)
    radio(c, 17, 140, True, False)
    radio(c, 2, 155, False, True)
    radio(c, 17, 155, True, True)
    logo(c, 34, 0)
    update_mark(c, 39, 71)
    panel_background(c, 33, 123)
    splash_background(c, 155, 0)
    check_pieces(c)
    return c


# --- the wordmark ------------------------------------------------------------

# Strokes on a 4 by 6 grid, y down.
GLYPHS = {
    'L': [[(0, 0), (0, 6), (4, 6)]],
    'U': [[(0, 0), (0, 4.8), (1.2, 6), (2.8, 6), (4, 4.8), (4, 0)]],
    'M': [[(0, 6), (0, 0), (2, 3.6), (4, 0), (4, 6)]],
    'E': [[(4, 0), (0, 0), (0, 6), (4, 6)], [(0, 3), (3.2, 3)]],
    'N': [[(0, 6), (0, 0), (4, 6), (4, 0)]],
    'P': [[(0, 6), (0, 0), (3, 0), (4, 1), (4, 2), (3, 3), (0, 3)]],
    'A': [[(0, 6), (2, 0), (4, 6)], [(0.7, 4), (3.3, 4)]],
    'Y': [[(0, 0), (2, 3), (4, 0)], [(2, 3), (2, 6)]],
    'R': [[(0, 6), (0, 0), (3, 0), (4, 1), (4, 2), (3, 3), (0, 3)], [(2, 3), (4, 6)]],
}


def word(c, text, x, y, scale, half, advance, colour):
    for ch in text:
        if ch in GLYPHS:
            segments = []
            for line in GLYPHS[ch]:
                segments += polyline(line, x, y, scale)
            pad = int(half + 2)
            box = (int(x) - pad, int(y) - pad, int(4 * scale) + 2 * pad + 1, int(6 * scale) + 2 * pad + 1)
            c.paint(box, stroke_coverage(segments, half), colour)
        x += advance
    return x


def banner():
    # 460 by 130; the window shows the left 400.
    c = Canvas(460, 130)
    sun(c, (0, 0, 130, 130), 62.0, 62.0, 24.0)
    rays = [(62 + math.cos(a) * 34, 62 + math.sin(a) * 34, 62 + math.cos(a) * 46, 62 + math.sin(a) * 46)
            for a in [i * math.pi / 6 for i in range(12)]]
    c.paint((0, 0, 130, 130), stroke_coverage(rays, 1.5), solid(AMBER), 0.7)
    word(c, 'LUMEN', 136, 30, 7.0, 2.6, 46, vertical(WHITE, (214, 214, 208), 30, 42))
    word(c, 'PLAYER', 138, 86, 2.6, 1.0, 21, solid(AMBER))
    c.paint((136, 78, 250, 2), lambda px, py: clamp(1.0 - (px - 136) / 250.0), solid(EDGE), 0.8)
    return c


def badge():
    # 72 by 44: the emblem and the short name on a tile.
    c = Canvas(72, 44)
    c.paint((0, 0, 72, 44), lambda px, py: fill(sd_round_rect(px, py, 0.5, 0.5, 71, 43, 8)),
            vertical((74, 76, 80), (46, 47, 49), 0, 44))
    sun(c, (2, 2, 40, 40), 21.0, 22.0, 9.0)
    word(c, 'LP', 38, 14, 2.6, 1.2, 16, solid(WHITE))
    return c


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else '.'
    os.makedirs(out, exist_ok=True)
    for name, make in (('SkinSheet.tga', sheet), ('Banner.tga', banner), ('Badge.tga', badge)):
        with open(os.path.join(out, name), 'wb') as f:
            f.write(make().tga())


if __name__ == '__main__':
    main()
