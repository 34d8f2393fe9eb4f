"""iconkit.py: the house style of every icon and panel, shared by the art modules.

Palette
    PAPER_TOP, PAPER_BOTTOM   light panel gradient (graphs, charts)
    FRAME, GRID, MINOR, AXIS, TEXT   panel frame, grid lines, faint lines, axes, labels
    RECEIVED, SENT, BASELINE  the program's own traffic colours (blue, red, silver)
    LEVEL_COLOURS[0..4]       signal levels: none, very low, low, good, very good
    TOOL_COLOURS[name]        tile colour of each tool

Pieces
    tile(size, colour) -> Image
        a size x size rounded tile with a soft vertical gradient and a darker
        rim; every tool icon is one of these with a white glyph on top.
    glyph_layer(size) -> (Image, k)
        a transparent layer and its scale k = size / 16: glyphs are designed on
        a 16-pixel grid and drawn with coordinates multiplied by k.
    finish_glyph(tile_img, glyph_img, colour)
        puts a white glyph on a tile with a one-pixel drop shadow in a dark shade
        of the tile colour.
    signal_bars(img, x, y, size, level, dark=False)
        the four rising bars of a signal level (0 none .. 4 very good) in a
        size x size box: lit bars in the level colour, the rest grey; level 0
        adds a small red cross. dark=True suits dark backgrounds (taskbar).
    padlock(img, x, y, h)     a gold padlock h pixels high (encrypted networks)
    level_of(dbm) -> 0..4     the program's five signal bands
"""
from artlib import Image, darken, lighten, mix, rgb

PAPER_TOP = "#f7f9fc"
PAPER_BOTTOM = "#e3eaf3"
FRAME = "#8a9ab0"
GRID = "#b9c6d6"
MINOR = "#d6dee8"
AXIS = "#50607a"
TEXT = "#34445c"
RECEIVED = (0, 0, 255)
SENT = (255, 0, 0)
BASELINE = (192, 192, 192)
WHITE = (255, 255, 255)

LEVEL_COLOURS = [
    (150, 158, 170),   # no signal
    (222, 56, 44),     # very low
    (242, 146, 24),    # low
    (150, 196, 32),    # good
    (32, 166, 74),     # very good
]

TOOL_COLOURS = {
    "usage": (38, 150, 96),
    "dhcp": (224, 124, 36),
    "ping": (32, 136, 214),
    "adapter": (72, 90, 116),
    "scanner": (124, 78, 206),
    "card": (58, 76, 180),
    "intruder": (206, 52, 52),
    "applet17": (112, 122, 138),
    "applet19": (112, 122, 138),
}


def level_of(dbm):
    if dbm <= -90:
        return 0
    if dbm <= -81:
        return 1
    if dbm <= -71:
        return 2
    if dbm <= -67:
        return 3
    return 4


def tile(size, colour):
    """A rounded tile, drawn four times larger and shrunk for smooth corners."""
    f = 4
    big = size * f
    r = (3.2 if size <= 16 else 5.5) * f
    rim = Image(big, big)
    rim.round_rect(0, 0, big, big, r, darken(colour, 0.38), aa=False)
    body = Image(big, big)
    inset = f * (1 if size <= 16 else 1.5)
    body.round_rect(inset, inset, big - 2 * inset, big - 2 * inset, r - inset, WHITE, aa=False)
    img = rim.downsample(f)
    mask = body.downsample(f)
    top, bottom = lighten(colour, 0.30), darken(colour, 0.08)
    for y in range(size):
        c = mix(top, bottom, y / (size - 1))
        for x in range(size):
            a = mask.get(x, y)[3]
            if a:
                img.blend(x, y, c, a / 255.0)
    # A thin highlight under the top rim gives the tile its light from above.
    hl = 1 if size <= 16 else 2
    for x in range(size):
        a = mask.get(x, hl)[3]
        if a:
            img.blend(x, hl, WHITE, 0.35 * a / 255.0)
    return img


def glyph_layer(size):
    return Image(size, size), size / 16.0


def finish_glyph(tile_img, glyph_img, colour):
    shade = darken(colour, 0.55)
    out = tile_img.copy()
    d = 1 if tile_img.width <= 16 else 2
    for y in range(glyph_img.height):
        for x in range(glyph_img.width):
            a = glyph_img.get(x, y)[3]
            if a and tile_img.get(x, y + d) and tile_img.get(x, y + d)[3]:
                out.blend(x, y + d, shade, 0.55 * a / 255.0)
    out.composite(glyph_img, 0, 0)
    return out


def signal_bars(img, x, y, size, level, dark=False):
    """Four bars rising to the right, bottom-aligned in a size x size box."""
    k = size / 16.0
    lit = LEVEL_COLOURS[level]
    if dark:
        off, off_edge = (120, 134, 156, 210), (10, 16, 28, 200)
        lit_edge = off_edge
    else:
        off, off_edge = (196, 204, 216, 255), (120, 130, 146, 255)
        lit_edge = darken(lit, 0.40)
    bw = int(3 * k)            # bar width
    gap = int(1 * k)
    heights = [int(round(h * k)) for h in (5, 8, 11, 14)]
    bottom = y + size - int(round(1 * k))
    for i in range(4):
        bx = x + int(round(0.5 * k)) + i * (bw + gap)
        h = heights[i]
        top = bottom - h
        on = i < level
        fill = lit if on else off
        if on and k < 2:
            # Too narrow for a rim: a lit bar is solid, an unlit one hollow.
            img.rect(bx, top, bw, h, darken(lit, 0.12))
            continue
        img.rect(bx, top, bw, h, lit_edge if on else off_edge)
        inner = max(1, int(k)) if bw > 2 else 0
        if inner and bw - 2 * inner > 0 and h - 2 * inner > 0:
            if on:
                for yy in range(top + inner, bottom - inner):
                    t = (yy - top) / max(1, h)
                    img.rect(bx + inner, yy, bw - 2 * inner, 1, mix(lighten(fill, 0.25), fill, t))
            else:
                img.rect(bx + inner, top + inner, bw - 2 * inner, h - 2 * inner, fill)
        else:
            img.rect(bx, top, bw, h, fill)
    if level == 0:
        # A small red cross in the empty top-left corner: no signal at all.
        c = LEVEL_COLOURS[1]
        s = 4 * k
        x0, y0 = x + 1.0 * k, y + 1.0 * k
        w = 1.6 * k
        img.line(x0 + 0.5, y0 + 0.5, x0 + s + 0.5, y0 + s + 0.5, c, width=w, aa=True)
        img.line(x0 + s + 0.5, y0 + 0.5, x0 + 0.5, y0 + s + 0.5, c, width=w, aa=True)


def padlock(img, x, y, h):
    """A gold padlock: body h*0.55 high, shackle above, keyhole."""
    k = h / 14.0
    gold = (232, 170, 36)
    edge = (120, 78, 10)
    bw = 10 * k
    bh = 7 * k
    by = y + h - bh
    cx = x + bw / 2.0
    img.ring(cx, by + 0.2 * k, 3.6 * k, 4.6 * k, 1.6 * k, edge)
    img.ring(cx, by + 0.2 * k, 3.0 * k, 4.0 * k, 1.0 * k, (200, 200, 210))
    img.round_rect(x, by, bw, bh, 1.2 * k, edge)
    img.round_rect(x + k, by + k, bw - 2 * k, bh - 2 * k, 0.6 * k, gold)
    img.rect(int(cx - 0.5 * k), int(by + 2.2 * k), max(1, int(k)), max(1, int(2.4 * k)), edge)
