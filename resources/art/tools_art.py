"""tools_art.py: the tools' own images: the signal view's graph background, the scanner's
signal icons and the intruder detector's row icons.

The signal graph takes its columns and its dBm scale from wireless/signal_graph.h,
the numbers its painter uses.
"""
import pathlib
import re

from artlib import FONT5x7, Image, darken, lighten, save_bmp, save_ico
import iconkit as kit

HEADER = pathlib.Path(__file__).resolve().parents[2] / "wireless" / "signal_graph.h"


def layout():
    found = re.findall(r"^#define\s+SIGNALGRAPH_(\w+)\s+(\d+)", HEADER.read_text(), re.M)
    return {name: int(value) for name, value in found}


def reading_y(g, dbm):
    """Where the painter's bar for a reading ends (top), as it computes it."""
    return (g["TOP_BASE"] - min(dbm + 90, g["MAX_RISE"])) * g["Y_SCALE"]


# ---------------------------------------------------------------- signal view background

PANEL = (22, 34, 56)
PLOT = (14, 24, 42)
LINE = (58, 80, 114)
FAINT = (38, 54, 82)
LABEL = (196, 210, 230)
EDGE = (96, 116, 146)


def signal_graph(g):
    w, h = g["WIDTH"], g["HEIGHT"]
    first = g["FIRST_X"]
    step = g["STEP"]
    half = g["PEN_WIDTH"] // 2
    left = first - half - 1
    right = first + step * (g["READINGS"] - 1) + half + 1
    bottom = g["BOTTOM"]
    img = Image(w, h, PANEL)
    img.gradient(1, 1, w - 2, h - 2, lighten(PANEL, 0.06), PANEL)
    img.rect(left, 2, right - left + 1, h - 4, PLOT)

    # Ten readings (15 seconds on the tick) between the faint uprights.
    for i in range(10, g["READINGS"], 10):
        x = first + step * i - half - 1
        img.dotted_vline(x, 3, bottom - 1, FAINT, on=1, off=2)

    # The dBm scale: a line and a label every 10 dB.
    for dbm in (-60, -70, -80):
        y = reading_y(g, dbm)
        img.dotted_hline(left, right, y, LINE, on=2, off=2)
    img.hline(left, right, bottom, LINE)
    for dbm in (-60, -70, -80, -90):
        y = bottom if dbm == -90 else reading_y(g, dbm)
        label = "%d" % dbm
        tw = img.text_width(label, FONT5x7)
        img.text(left - 8 - tw, min(h - 9, y - 3), label, LABEL, font=FONT5x7)

    # Beside the scale, the five signal bands in their colours.
    bands = [(1, -89, -81), (2, -80, -71), (3, -70, -67), (4, -66, -58)]
    for level, low, high in bands:
        y_top = reading_y(g, high) - 1
        y_bottom = reading_y(g, low) + 1
        img.rect(left - 5, y_top, 3, y_bottom - y_top, kit.LEVEL_COLOURS[level])
    img.frame(0, 0, w, h, EDGE)
    return img


# ---------------------------------------------------------------- scanner icons

def scanner_icon(level, encrypted):
    img = Image(32, 16)
    kit.signal_bars(img, 0, 0, 16, level)
    if encrypted:
        kit.padlock(img, 19, 1, 14)
    return img


# ---------------------------------------------------------------- intruder detector rows

def badge(colour):
    f = 4
    big = Image(16 * f, 16 * f)
    big.circle(8 * f, 8 * f, 7.6 * f, darken(colour, 0.35), aa=False)
    big.circle(8 * f, 8 * f, 6.6 * f, colour, aa=False)
    big.ellipse(8 * f, 5.6 * f, 4.6 * f, 3.0 * f, lighten(colour, 0.25), aa=False)
    img = big.downsample(f)
    return img


def intruder_icon():
    img = badge((214, 48, 40))
    img.rect(7, 3, 2, 7, kit.WHITE)
    img.rect(7, 11, 2, 2, kit.WHITE)
    return img


def safe_icon():
    img = badge((36, 160, 72))
    img.line(4.2, 8.4, 6.8, 11.0, kit.WHITE, width=2.0, aa=True)
    img.line(6.8, 11.0, 11.8, 5.2, kit.WHITE, width=2.0, aa=True)
    return img


def generate(out):
    out = pathlib.Path(out)
    save_bmp(signal_graph(layout()), out / "signalgraph178.bmp")
    for level in range(5):
        for encrypted in (0, 1):
            number = 146 + 2 * level + encrypted
            save_ico(out / ("scan%d.ico" % number), [scanner_icon(level, encrypted)])
    save_ico(out / "host186.ico", [intruder_icon()])
    save_ico(out / "host187.ico", [safe_icon()])
