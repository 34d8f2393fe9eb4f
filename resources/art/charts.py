"""charts.py: the usage dialog's images: header icons, chart and table backgrounds, page arrows.

The layout comes from charts/usage_layout.h, the numbers the painter draws
with, so that grid, bars and labels meet:
  a bar of p % covers dialog rows (base + chart y - p + 1) .. (base + chart y),
  so in the chart image the level of p % is row base - p + 1 and the axis sits
  on row base + 1, just under every bar;
  an hourly bar of hour h starts at image x (h + 1) x step, a daily bar of day
  d at d x step, three pixels wide;
  table row i spans dialog y row top + i x row step for row height pixels;
  the page indicator and, in portrait, the arrows sit on the table's footer.
A hi-res screen stretches the same images to twice their size.
"""
import pathlib
import re

from artlib import Image, FONT3x5, FONT5x7, save_bmp, save_ico, mix

HEADER = pathlib.Path(__file__).resolve().parents[2] / "charts" / "usage_layout.h"


def layout():
    found = re.findall(r"^#define\s+USAGE_(\w+)\s+(\d+)", HEADER.read_text(), re.M)
    return {name: int(value) for name, value in found}


L = layout()

# Colours shared with the program: transmitted red, received blue.
RED = (255, 0, 0)
BLUE = (0, 0, 255)
PANEL = (255, 255, 255)
FRAME = (122, 138, 160)
GRID = (200, 208, 220)
AXIS = (70, 80, 96)
INK = (40, 48, 60)
HEADER_FILL = (218, 228, 242)
STRIPE = (240, 245, 252)

# Chart geometry (image coordinates).
CHART_W, CHART_H = L["CHART_W"], L["CHART_H"]
BASE_ROW = L["BASE"] + 1         # the axis, just under the bars' lowest row
LEVELS = [100, 80, 60, 40, 20]   # the five labelled levels, as the labels go down
AXIS_X = 2


def level_row(percent):
    """The top row of a bar of this height."""
    return BASE_ROW - percent


def hourly_bar_x(hour):
    return (hour + 1) * L["HOURLY_STEP"]


def daily_bar_x(day):
    return day * L["DAILY_STEP"]


def label_centre(i):
    """Image row at the middle of the i-th axis label's text (a 12-pixel font from the top)."""
    return L["LABEL_TOP"] + i * L["LABEL_STEP"] + 6 - L["CHART_Y"]


def chart_background(hourly):
    img = Image(CHART_W, CHART_H, PANEL)
    # Legend in the free band above the 100 % level.
    x = 110
    img.rect(x, 6, 5, 5, RED)
    x += 7
    x += img.text(x, 6, "XMIT", INK, FONT3x5) + 6
    img.rect(x, 6, 5, 5, BLUE)
    img.text(x + 7, 6, "RCV", INK, FONT3x5)

    right = CHART_W - 2
    for p in LEVELS:
        y = level_row(p)
        img.dotted_hline(AXIS_X + 1, right, y, GRID, on=2, off=2)
        img.hline(AXIS_X - 2, AXIS_X - 1, y, AXIS)       # tick into the label column
    img.vline(AXIS_X, level_row(100) - 4, BASE_ROW, AXIS)
    img.hline(AXIS_X, right, BASE_ROW, AXIS)

    if hourly:
        slots, bar_x, labelled = range(0, 24), hourly_bar_x, (0, 3, 6, 9, 12, 15, 18, 21)
    else:
        slots, bar_x, labelled = range(1, 32), daily_bar_x, (1, 5, 10, 15, 20, 25, 30)
    for n in slots:
        centre = bar_x(n) + 1
        tall = n in labelled
        img.vline(centre, BASE_ROW + 1, BASE_ROW + (3 if tall else 1), AXIS)
        if tall:
            s = str(n)
            w = img.text_width(s, FONT3x5)
            img.text(centre - w // 2, BASE_ROW + 5, s, INK, FONT3x5)
    img.frame(0, 0, CHART_W, CHART_H, mix(FRAME, PANEL, 0.5))
    return img


# Table geometry (image coordinates).
TABLE_W, TABLE_H = L["TABLE_W"], L["TABLE_H"]
ROWS, ROW_STEP = 8, L["ROW_STEP"]
ROW_TOP = L["ROW_TOP"] - L["TABLE_Y"]
COLUMNS = [(L["COL%d_LEFT" % i] - L["TABLE_X"], L["COL%d_RIGHT" % i] - L["TABLE_X"]) for i in range(4)]
TABLE_BOTTOM = ROW_TOP - 1 + ROWS * ROW_STEP     # the line under the last row
FOOTER_TOP = TABLE_BOTTOM + 1


def table_background(hourly):
    img = Image(TABLE_W, TABLE_H, PANEL)
    img.rect(0, 0, TABLE_W, ROW_TOP - 1, HEADER_FILL)
    titles = ["HOUR" if hourly else "DAY", "XMIT", "RCV", "TOTAL"]
    colours = [INK, RED, BLUE, INK]
    for (left, _), title, colour in zip(COLUMNS, titles, colours):
        img.text(left, 5, title, colour, FONT5x7)
    for i in range(ROWS):
        top = ROW_TOP - 1 + i * ROW_STEP
        if i % 2:
            img.rect(1, top + 1, TABLE_W - 2, ROW_STEP - 1, STRIPE)
        img.hline(1, TABLE_W - 2, top, GRID)
    img.hline(0, TABLE_W - 1, ROW_TOP - 1, FRAME)
    img.hline(0, TABLE_W - 1, TABLE_BOTTOM, FRAME)
    # Column rules half way between one column's end and the next one's start.
    for (_, end), (start, _) in zip(COLUMNS, COLUMNS[1:]):
        x = (end + start) // 2 + 1
        img.vline(x, 0, TABLE_BOTTOM, GRID)
    # Footer: where the page indicator and the arrows go in portrait.
    img.rect(1, FOOTER_TOP, TABLE_W - 2, TABLE_H - FOOTER_TOP - 1, HEADER_FILL)
    img.frame(0, 0, TABLE_W, TABLE_H, FRAME)
    return img


def page_arrows():
    """The arrows' image: the left half turns to the next page (down), the right half back (up)."""
    img = Image(L["PAGES_W"], L["PAGES_H"], HEADER_FILL)
    for left, down in ((0, True), (24, False)):
        img.round_rect(left + 0.5, 0.5, 22, 12, 3, (250, 252, 255))
        img.frame(left + 1, 1, 21, 11, FRAME)
        cx = left + 11.5
        if down:
            pts = [(cx - 5, 4), (cx + 5, 4), (cx, 9.5)]
        else:
            pts = [(cx - 5, 9), (cx + 5, 9), (cx, 3.5)]
        img.polygon(pts, AXIS)
    return img


def _icon(size, draw):
    """Drawn at 4x on a 24-unit canvas and shrunk, for smooth edges."""
    f = 4 * size // 24
    big = Image(size * 4, size * 4)
    draw(big, f)
    return big.downsample(4)


def _button(img, f):
    n = 24 * f
    img.round_rect(0.5 * f, 0.5 * f, n - f, n - f, 4 * f, (120, 136, 160))
    img.round_rect(1.5 * f, 1.5 * f, n - 3 * f, n - 3 * f, 3 * f, (246, 249, 253))


def draw_table_icon(img, f):
    _button(img, f)
    x0, y0, w, h = 5 * f, 6 * f, 14 * f, 12 * f
    img.rect(x0, y0, w, 3 * f, (70, 110, 190))
    img.frame(x0, y0, w, h, (60, 70, 90), thickness=f)
    for y in (y0 + 6 * f, y0 + 9 * f):
        img.rect(x0, y, w, f, (60, 70, 90))
    img.rect(x0 + 5 * f, y0, f, h, (60, 70, 90))


def draw_chart_icon(img, f):
    _button(img, f)
    img.rect(5 * f, 5 * f, f, 14 * f, (60, 70, 90))
    img.rect(5 * f, 18 * f, 14 * f, f, (60, 70, 90))
    for x, h, c in ((7, 7, BLUE), (10, 11, RED), (13, 5, BLUE), (16, 9, RED)):
        img.rect(x * f, (18 - h) * f, 2 * f, h * f, c)


def draw_export_icon(img, f):
    _button(img, f)
    # A sheet with a folded corner and lines of text, and an arrow leaving it.
    img.polygon([(5 * f, 4 * f), (13 * f, 4 * f), (16 * f, 7 * f), (16 * f, 20 * f), (5 * f, 20 * f)],
                (60, 70, 90))
    img.polygon([(6 * f, 5 * f), (12.5 * f, 5 * f), (15 * f, 7.5 * f), (15 * f, 19 * f), (6 * f, 19 * f)],
                (255, 255, 255))
    for y in (9, 12, 15):
        img.rect(8 * f, y * f, 5 * f, f, (150, 160, 175))
    green = (20, 150, 60)
    img.rect(11 * f, 12 * f, 7 * f, 3 * f, green)
    img.polygon([(17 * f, 9 * f), (21.5 * f, 13.5 * f), (17 * f, 18 * f)], green)


def generate(out):
    save_bmp(chart_background(False), out / "usage_chart_daily.bmp")
    save_bmp(chart_background(True), out / "usage_chart_hourly.bmp")
    save_bmp(table_background(False), out / "usage_table_daily.bmp")
    save_bmp(table_background(True), out / "usage_table_hourly.bmp")
    save_bmp(page_arrows(), out / "usage_pages.bmp")
    for name, draw in (("table", draw_table_icon), ("chart", draw_chart_icon), ("export", draw_export_icon)):
        save_ico(out / ("usage_%s.ico" % name), [_icon(L["ICON_SIZE"], draw)])
        save_ico(out / ("usage_%s_hires.ico" % name), [_icon(2 * L["ICON_SIZE"], draw)])


if __name__ == "__main__":
    import pathlib
    import sys
    from artlib import save_png
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    folder.mkdir(parents=True, exist_ok=True)
    generate(folder)
    for name, img in (("usage_chart_daily", chart_background(False)), ("usage_chart_hourly", chart_background(True)),
                      ("usage_table_daily", table_background(False)), ("usage_pages", page_arrows()),
                      ("usage_icons", None)):
        if img is not None:
            save_png(img.upscale(3), folder / (name + ".png"))
