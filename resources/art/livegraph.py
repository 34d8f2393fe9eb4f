"""livegraph.py: the live traffic graph's background (bitmap 177, 180 x 108).

The grid lines sit where the dialog draws its columns and labels: the numbers
come from charts/livegraph.h, so the picture and the painter cannot drift apart.
"""
import pathlib
import re

from artlib import FONT5x7, Image, save_bmp

HEADER = pathlib.Path(__file__).resolve().parents[2] / "charts" / "livegraph.h"

# The strip's graph paper, so the two graphs look alike.
from iconkit import AXIS, FRAME, GRID, MINOR, PAPER_BOTTOM, PAPER_TOP, TEXT
from iconkit import RECEIVED as BLUE
from iconkit import SENT as RED


def layout():
    """The LIVEGRAPH_* numbers of the painter, without their prefix."""
    found = re.findall(r"^#define\s+LIVEGRAPH_(\w+)\s+(\d+)", HEADER.read_text(), re.M)
    return {name: int(value) for name, value in found}


def draw(g):
    w, h = g["IMAGE_WIDTH"], g["IMAGE_HEIGHT"]
    ox, oy = g["IMAGE_X"], g["IMAGE_Y"]          # the image's place on the surface
    img = Image(w, h)
    base = g["BASELINE"] - oy
    first = g["FIRST_COLUMN"] - ox
    newest = g["NEWEST_COLUMN"] - ox
    step = g["COLUMN_STEP"]
    left = 0
    right = newest + step - 1                     # the plot: the 20 columns and a margin

    img.fill(PAPER_BOTTOM)
    img.gradient(left, 0, right - left + 1, base + 1, PAPER_TOP, PAPER_BOTTOM)

    # Every fifth tick (10 seconds) a faint upright, counted back from the newest column.
    for x in range(newest, first - 1, -5 * step):
        img.dotted_vline(x, 0, base - 1, MINOR, on=1, off=2)

    # The five levels of the scale labels: 100 % at the top, 20 % the lowest.
    for j in range(5):
        y = g["TOP_LEVEL"] + g["LEVEL_STEP"] * j - oy
        img.dotted_hline(left, right, y, GRID, on=2, off=2)
        img.hline(left, left + 2, y, AXIS)        # ticks next to the labels

    img.vline(left, 0, base, AXIS)
    img.hline(left, right, base, AXIS)
    img.frame(0, 0, w, h, FRAME)
    img.vline(right + 1, 0, h - 1, FRAME)

    # Legend in the room right of the newest column: what the two colours mean.
    lx = right + 4
    for row, (label, color) in enumerate((("XMIT", RED), ("RCV", BLUE))):
        y = 6 + row * 14
        img.rect(lx, y - 1, 3, 9, color)
        img.text(lx + 5, y, label, TEXT, font=FONT5x7)
    # Time runs to the right: the newest sample is the last column.
    img.text(lx, base - 9, "<NOW", TEXT, font=FONT5x7)
    return img


def generate(out):
    save_bmp(draw(layout()), pathlib.Path(out) / "livegraph.bmp")
