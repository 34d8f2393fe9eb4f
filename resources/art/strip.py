"""strip.py: the Today strip's images: graph backgrounds, signal icons, tool icons, taskbar icons.

The graph backgrounds take their baseline and newest column from item/strip.h,
the numbers the painter uses, so the grid stays under the drawn points.
"""
import pathlib
import re

from artlib import FONT5x7, Image, darken, lighten, save_bmp, save_ico
import iconkit as kit

HEADER = pathlib.Path(__file__).resolve().parents[2] / "item" / "strip.h"


def layout():
    """The STRIP_* numbers of the painter, without their prefix."""
    found = re.findall(r"^#define\s+STRIP_(\w+)\s+(\d+)", HEADER.read_text(), re.M)
    return {name: int(value) for name, value in found}


def graph_height(v, hires):
    """Pixels above the baseline for one tick's bytes, as the painter computes them."""
    if v == 0:
        h = 0
    elif v < 1000:
        h = 1
    elif v < 10000:
        h = v // 2000 + 2
    elif v < 100000:
        h = v // 20000 + 7
    elif v < 500000:
        h = v // 100000 + 12
    elif v < 800000:
        h = 17
    else:
        h = 18
    return h + h // 2 if hires else h


# ---------------------------------------------------------------- graph backgrounds

def graph_background(g, hires):
    sfx = "_HIRES" if hires else ""
    w, h = g["GRAPH_IMAGE_WIDTH" + sfx], g["GRAPH_IMAGE_HEIGHT" + sfx]
    base = g["GRAPH_BASELINE" + sfx]
    right = g["GRAPH_RIGHT" + sfx]
    oldest = right - g["GRAPH_SPAN"]
    line_right = g["GRAPH_LINE_RIGHT" + sfx]
    img = Image(w, h)
    img.gradient(0, 0, w, h, kit.PAPER_TOP, kit.PAPER_BOTTOM)

    plot_left = oldest - 2
    if hires:
        # Left of the plot, where no point ever lands: what red and blue mean.
        img.rect(1, 1, plot_left - 2, h - 2, lighten(kit.PAPER_BOTTOM, 0.15))
        img.vline(plot_left - 1, 1, h - 2, kit.GRID)
        for row, (label, colour) in enumerate((("XMIT", kit.SENT), ("RCV", kit.RECEIVED))):
            y = 6 + row * 13
            img.rect(4, y - 1, 3, 9, colour)
            img.text(9, y, label, kit.TEXT, font=FONT5x7)

    # Each volume decade (1 KB, 10 KB, 100 KB, 800 KB and more) gets a faint line.
    for v in (1000, 10000, 100000, 800000):
        y = base - graph_height(v, hires)
        img.dotted_hline(plot_left, line_right, y, kit.GRID, on=1, off=1)
    # Every fifth tick (10 seconds) a faint upright, counted back from the newest point.
    for x in range(right, oldest - 1, -10):
        img.dotted_vline(x, 2, base - 1, kit.MINOR, on=1, off=2)
    # The baseline as it looks before the first sample (then drawn silver over it).
    img.hline(plot_left, line_right, base, kit.GRID)
    img.frame(0, 0, w, h, kit.FRAME)
    return img


# ---------------------------------------------------------------- tool glyphs
# Designed on a 16-pixel grid; k scales them to 32.

def _poly(img, k, pts, aa):
    img.polygon([(x * k, y * k) for x, y in pts], kit.WHITE, aa=aa)


def _rect(img, k, x, y, w, h, colour=kit.WHITE):
    img.rect(int(x * k), int(y * k), int(w * k), int(h * k), colour)


def glyph_usage(size, colour):
    img, k = kit.glyph_layer(size)
    _rect(img, k, 3, 8, 2, 5)
    _rect(img, k, 7, 5, 2, 8)
    _rect(img, k, 11, 2, 2, 11)
    _rect(img, k, 2, 13, 12, 1)
    return img


def glyph_dhcp(size, colour):
    img, k = kit.glyph_layer(size)
    _rect(img, k, 3, 3, 2, 10)          # I
    _rect(img, k, 7, 3, 2, 10)          # P: stem
    _rect(img, k, 9, 3, 3, 2)           # top
    _rect(img, k, 11, 5, 2, 2)          # right side
    _rect(img, k, 9, 7, 3, 2)           # middle
    if size > 16:
        # Round the bowl's outer corners on the large icon.
        img.rect(int(12 * k), int(5 * k) - 1, int(k), 1, kit.WHITE)
        img.rect(int(12 * k), int(7 * k), int(k), 1, kit.WHITE)
    return img


def glyph_ping(size, colour):
    img, k = kit.glyph_layer(size)
    aa = size > 16
    _rect(img, k, 2, 4, 8, 2)
    _poly(img, k, [(10, 1.5), (13.5, 5), (10, 8.5)], aa)
    _rect(img, k, 6, 10, 8, 2)
    _poly(img, k, [(6, 7.5), (2.5, 11), (6, 14.5)], aa)
    return img


def glyph_adapter(size, colour):
    img, k = kit.glyph_layer(size)
    _poly(img, k, [(2, 3), (14, 3), (14, 11), (11, 11), (11, 13), (5, 13), (5, 11), (2, 11)], False)
    pin = darken(colour, 0.15)
    for x in (4, 6, 9, 11):
        _rect(img, k, x, 4, 1, 3, pin)
    return img


def glyph_scanner(size, colour):
    img, k = kit.glyph_layer(size)
    cx, cy = 8 * k, 13 * k
    img.circle(cx, cy - 0.6 * k, 1.6 * k, kit.WHITE)
    img.arc(cx, cy, 6.0 * k, 2.0 * k, 42, 138, kit.WHITE)
    img.arc(cx, cy, 10.0 * k, 2.0 * k, 45, 135, kit.WHITE)
    return img


def glyph_card(size, colour):
    img, k = kit.glyph_layer(size)
    img.round_rect(1.5 * k, 7 * k, 13 * k, 7 * k, 1.0 * k, kit.WHITE)
    chip = darken(colour, 0.1)
    _rect(img, k, 3, 9, 4, 3, chip)
    for x in (9, 11):
        _rect(img, k, x, 10, 1, 2, chip)
    _rect(img, k, 11, 3, 2, 4)                       # antenna
    img.circle(12 * k, 2.6 * k, 1.5 * k, kit.WHITE)
    return img


def glyph_intruder(size, colour):
    img, k = kit.glyph_layer(size)
    img.circle(8 * k, 5.2 * k, 2.9 * k, kit.WHITE)
    body = Image(size, size)
    body.ellipse(8 * k, 15.5 * k, 5.8 * k, 6.2 * k, kit.WHITE)
    img.composite(body.crop(0, 0, size, int(14 * k)), 0, 0)
    return img


def glyph_gear(size, colour):
    import math
    img, k = kit.glyph_layer(size)
    cx = cy = 8 * k
    pts = []
    teeth = 8
    for i in range(teeth * 4):
        a = math.pi * 2 * (i + 0.5) / (teeth * 4)
        r = 6.4 if (i % 4) in (0, 1) else 4.6
        pts.append((cx + r * k * math.cos(a), cy + r * k * math.sin(a)))
    img.polygon(pts, kit.WHITE, aa=True)
    img.circle(cx, cy, 2.0 * k, darken(colour, 0.05))
    return img


def glyph_globe(size, colour):
    img, k = kit.glyph_layer(size)
    cx = cy = 8 * k
    r = 6.2 * k
    w = 1.3 * k
    img.circle_outline(cx, cy, r, w, kit.WHITE)
    img.ring(cx, cy, 2.6 * k, r, w, kit.WHITE)
    img.rect(int(cx - r + w), int(cy - 0.5 * k), int(2 * (r - w)) + 1, max(1, int(k)), kit.WHITE)
    return img


TOOLS = [
    # name, glyph, normal id, hi-res id (the order the strip draws them)
    ("usage", glyph_usage, 103, 192),
    ("dhcp", glyph_dhcp, 101, 189),
    ("ping", glyph_ping, 104, 193),
    ("adapter", glyph_adapter, 102, 191),
    ("scanner", glyph_scanner, 125, 201),
    ("card", glyph_card, 126, 202),
    ("intruder", glyph_intruder, 188, 190),
    ("applet17", glyph_gear, 106, 195),
    ("applet19", glyph_globe, 105, 194),
]


def tool_icon(name, glyph, size):
    colour = kit.TOOL_COLOURS[name]
    return kit.finish_glyph(kit.tile(size, colour), glyph(size, colour), colour)


# ---------------------------------------------------------------- signal icons

def signal_icon(level, size):
    img = Image(size, size)
    kit.signal_bars(img, 0, 0, size, level)
    return img


# ---------------------------------------------------------------- taskbar icons
# Signal bars on the left, the two traffic arrows on the right; drawn over the
# taskbar, so light on dark with a dark halo for light taskbars.

TASKBAR_IDS = {
    # (state, hires): ids for the five signal bands, lowest first
    ("both", True): (212, 213, 214, 216, 217),
    ("send", True): (228, 229, 230, 231, 232),
    ("recv", True): (223, 224, 225, 226, 227),
    ("idle", True): (218, 219, 220, 221, 222),
    ("both", False): (233, 234, 235, 236, 237),
    ("send", False): (248, 249, 250, 251, 252),
    ("recv", False): (243, 244, 245, 246, 247),
    ("idle", False): (238, 239, 240, 241, 242),
}

TASKBAR_SENT = (255, 70, 54)
TASKBAR_RECEIVED = (72, 162, 255)
# Opaque, like the lit colours: the item puts back what it last saw under the
# icon, its previous icon included, so every state must cover the same pixels
# or the old arrows would show through the new icon.
TASKBAR_IDLE = (104, 118, 146)


def taskbar_icon(state, level, size):
    s = size // 16
    img = Image(size, size)
    lit = kit.LEVEL_COLOURS[level]
    off = TASKBAR_IDLE
    for i in range(4):
        h = (4 + 3 * i) * s
        x = (i * 3) * s
        top = 15 * s - h
        img.rect(x, top, 2 * s, h, lit if i < level else off)
        if i < level and s > 1:
            img.rect(x, top, 2 * s, s, lighten(lit, 0.35))
    if level == 0:
        c = kit.LEVEL_COLOURS[1]
        img.line(0.5, 0.5, 4.5 * s, 4.5 * s, c, width=1.3 * s, aa=True)
        img.line(4.5 * s, 0.5, 0.5, 4.5 * s, c, width=1.3 * s, aa=True)
    sending = state in ("send", "both")
    receiving = state in ("recv", "both")
    up = TASKBAR_SENT if sending else TASKBAR_IDLE
    down = TASKBAR_RECEIVED if receiving else TASKBAR_IDLE
    ax = 11 * s
    # Up arrow (sent), rows 0..6.
    for r, (x0, w) in enumerate(((2, 1), (1, 3), (0, 5))):
        img.rect(ax + x0 * s, (1 + r) * s, w * s, s, up)
    img.rect(ax + 1 * s, 4 * s, 3 * s, 3 * s, up)
    # Down arrow (received), rows 8..14.
    img.rect(ax + 1 * s, 8 * s, 3 * s, 3 * s, down)
    for r, (x0, w) in enumerate(((0, 5), (1, 3), (2, 1))):
        img.rect(ax + x0 * s, (11 + r) * s, w * s, s, down)
    return img.outline((0, 0, 0, 60))


def generate(out):
    out = pathlib.Path(out)
    g = layout()
    save_bmp(graph_background(g, False), out / "graph113.bmp")
    save_bmp(graph_background(g, True), out / "graph203.bmp")
    for level in range(5):
        save_ico(out / ("signal%d.ico" % (159 + level)), [signal_icon(level, 16)])
        save_ico(out / ("signal%d.ico" % (196 + level)), [signal_icon(level, 32)])
    for name, glyph, normal, hires in TOOLS:
        save_ico(out / ("tool%d.ico" % normal), [tool_icon(name, glyph, 16)])
        save_ico(out / ("tool%d.ico" % hires), [tool_icon(name, glyph, 32)])
    for (state, hires), ids in TASKBAR_IDS.items():
        for level, number in enumerate(ids):
            save_ico(out / ("taskbar%d.ico" % number), [taskbar_icon(state, level, 32 if hires else 16)])
