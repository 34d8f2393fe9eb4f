"""artlib.py: a small dependency-free RGBA drawing library for the build's images.

Colours are (r, g, b) or (r, g, b, a) tuples of 0..255; hex strings "#rgb", "#rgba",
"#rrggbb" and "#rrggbbaa" are accepted wherever a colour is. Coordinates are pixels with the
origin at the top left; (x, y) names the pixel whose centre is (x + 0.5, y + 0.5).

Image(width, height, color=TRANSPARENT)
    .width, .height
    .get(x, y) -> (r, g, b, a)          pixel, or None outside
    .set(x, y, color)                    overwrite one pixel (clipped)
    .blend(x, y, color, coverage=1.0)    source-over one pixel, alpha scaled by coverage
    .fill(color)                         overwrite everything
    .rect(x, y, w, h, color, blend=False)  filled rectangle, integer pixels
    .frame(x, y, w, h, color, thickness=1) rectangle outline, inside the box
    .hline(x0, x1, y, color) / .vline(x, y0, y1, color)   both ends included
    .line(x0, y0, x1, y1, color, width=1, aa=False, last=True)
        aa=False: Bresenham on integer pixels like GDI's LineTo (last=False
        leaves out the end point as GDI does); width>1 draws a square brush.
        aa=True: a round-capped stroke of the given width between float points
        (pixel centres are at +0.5), coverage anti-aliased.
    .dotted_hline(x0, x1, y, color, on=1, off=1) / .dotted_vline(...)
    .ellipse(cx, cy, rx, ry, color, aa=True)          filled (float centre/radii)
    .ring(cx, cy, rx, ry, width, color, aa=True)      elliptical outline
    .circle(cx, cy, r, color, aa=True) / .circle_outline(cx, cy, r, width, color)
    .arc(cx, cy, r, width, start_deg, end_deg, color) ring sector, 0 deg = east,
        angles counter-clockwise as on paper (y up), anti-aliased
    .polygon(points, color, aa=True)     filled, even-odd rule, float points
    .round_rect(x, y, w, h, r, color, aa=True)        filled, float box
    .gradient(x, y, w, h, c0, c1, vertical=True, blend=False)
    .text(x, y, s, color, font=FONT5x7 or FONT3x5, scale=1, spacing=1) -> width
    .text_width(s, font=FONT5x7, scale=1, spacing=1)
    .paste(src, x, y)                    overwrite with src (no blending)
    .composite(src, x, y, opacity=1.0)   source-over src onto this image
    .shadow(color, dx=1, dy=1)           new image: this one's silhouette in
                                         colour, offset, under this image
    .outline(color)                      new image: 1-pixel halo around opaque
                                         pixels, under this image
    .downsample(f) -> Image              box filter by integer factor f (alpha-
                                         weighted): draw at 4x, shrink for AA
    .upscale(f) -> Image                 nearest neighbour
    .copy() -> Image
    .crop(x, y, w, h) -> Image

Writers:
    save_bmp(img, path, background=(255,255,255))   BMP, bottom-up, uncompressed;
        alpha is flattened onto background. 4 or 8 bits with a colour table
        when the image has few enough colours, else 24 bits (see bmp_depth).
    save_ico(path, [img, ...])   ICO, one entry per image: 32-bit BGRA with
        alpha plus a 1-bit AND mask (bit set where alpha < 128), or 4/8 bits
        with a colour table and the mask when no pixel is half clear. Sizes up to
        255; width and height may differ (e.g. 32x16). Keep one image per
        resource id when the program draws icons at their natural size.
    save_png(img, path)          RGBA PNG (for previews and docs).
    load_png(path) -> Image      reads 8-bit RGB/RGBA/grey, non-interlaced PNGs.

Helpers: rgb(color) -> 4-tuple, mix(c0, c1, t), lighten(c, t), darken(c, t),
with_alpha(c, a).
"""
import math
import struct
import zlib

TRANSPARENT = (0, 0, 0, 0)


def rgb(c):
    """Normalises a colour to an (r, g, b, a) tuple."""
    if isinstance(c, str):
        s = c.lstrip("#")
        if len(s) in (3, 4):
            s = "".join(ch * 2 for ch in s)
        if len(s) == 6:
            return (int(s[0:2], 16), int(s[2:4], 16), int(s[4:6], 16), 255)
        if len(s) == 8:
            return (int(s[0:2], 16), int(s[2:4], 16), int(s[4:6], 16), int(s[6:8], 16))
        raise ValueError("bad colour " + c)
    if len(c) == 3:
        return (int(c[0]), int(c[1]), int(c[2]), 255)
    return (int(c[0]), int(c[1]), int(c[2]), int(c[3]))


def mix(c0, c1, t):
    a, b = rgb(c0), rgb(c1)
    return tuple(int(round(a[i] + (b[i] - a[i]) * t)) for i in range(4))


def lighten(c, t):
    c = rgb(c)
    return mix(c, (255, 255, 255, c[3]), t)


def darken(c, t):
    c = rgb(c)
    return mix(c, (0, 0, 0, c[3]), t)


def with_alpha(c, a):
    c = rgb(c)
    return (c[0], c[1], c[2], int(a))


# Pixel fonts: each glyph is a list of row strings, '#' set.
_F5x7 = {
    "0": [".###.", "#...#", "#..##", "#.#.#", "##..#", "#...#", ".###."],
    "1": ["..#..", ".##..", "..#..", "..#..", "..#..", "..#..", ".###."],
    "2": [".###.", "#...#", "....#", "...#.", "..#..", ".#...", "#####"],
    "3": ["#####", "...#.", "..#..", "...#.", "....#", "#...#", ".###."],
    "4": ["...#.", "..##.", ".#.#.", "#..#.", "#####", "...#.", "...#."],
    "5": ["#####", "#....", "####.", "....#", "....#", "#...#", ".###."],
    "6": ["..##.", ".#...", "#....", "####.", "#...#", "#...#", ".###."],
    "7": ["#####", "....#", "...#.", "..#..", ".#...", ".#...", ".#..."],
    "8": [".###.", "#...#", "#...#", ".###.", "#...#", "#...#", ".###."],
    "9": [".###.", "#...#", "#...#", ".####", "....#", "...#.", ".##.."],
    "A": [".###.", "#...#", "#...#", "#####", "#...#", "#...#", "#...#"],
    "B": ["####.", "#...#", "#...#", "####.", "#...#", "#...#", "####."],
    "C": [".###.", "#...#", "#....", "#....", "#....", "#...#", ".###."],
    "D": ["####.", "#...#", "#...#", "#...#", "#...#", "#...#", "####."],
    "E": ["#####", "#....", "#....", "####.", "#....", "#....", "#####"],
    "F": ["#####", "#....", "#....", "####.", "#....", "#....", "#...."],
    "G": [".###.", "#...#", "#....", "#.###", "#...#", "#...#", ".####"],
    "H": ["#...#", "#...#", "#...#", "#####", "#...#", "#...#", "#...#"],
    "I": [".###.", "..#..", "..#..", "..#..", "..#..", "..#..", ".###."],
    "J": ["..###", "...#.", "...#.", "...#.", "...#.", "#..#.", ".##.."],
    "K": ["#...#", "#..#.", "#.#..", "##...", "#.#..", "#..#.", "#...#"],
    "L": ["#....", "#....", "#....", "#....", "#....", "#....", "#####"],
    "M": ["#...#", "##.##", "#.#.#", "#.#.#", "#...#", "#...#", "#...#"],
    "N": ["#...#", "#...#", "##..#", "#.#.#", "#..##", "#...#", "#...#"],
    "O": [".###.", "#...#", "#...#", "#...#", "#...#", "#...#", ".###."],
    "P": ["####.", "#...#", "#...#", "####.", "#....", "#....", "#...."],
    "Q": [".###.", "#...#", "#...#", "#...#", "#.#.#", "#..#.", ".##.#"],
    "R": ["####.", "#...#", "#...#", "####.", "#.#..", "#..#.", "#...#"],
    "S": [".####", "#....", "#....", ".###.", "....#", "....#", "####."],
    "T": ["#####", "..#..", "..#..", "..#..", "..#..", "..#..", "..#.."],
    "U": ["#...#", "#...#", "#...#", "#...#", "#...#", "#...#", ".###."],
    "V": ["#...#", "#...#", "#...#", "#...#", "#...#", ".#.#.", "..#.."],
    "W": ["#...#", "#...#", "#...#", "#.#.#", "#.#.#", "#.#.#", ".#.#."],
    "X": ["#...#", "#...#", ".#.#.", "..#..", ".#.#.", "#...#", "#...#"],
    "Y": ["#...#", "#...#", ".#.#.", "..#..", "..#..", "..#..", "..#.."],
    "Z": ["#####", "....#", "...#.", "..#..", ".#...", "#....", "#####"],
    " ": [".....", ".....", ".....", ".....", ".....", ".....", "....."],
    ".": [".", ".", ".", ".", ".", "#", "#"],
    ",": ["..", "..", "..", "..", ".#", ".#", "#."],
    ":": [".", "#", "#", ".", "#", "#", "."],
    "-": [".....", ".....", ".....", "#####", ".....", ".....", "....."],
    "+": [".....", "..#..", "..#..", "#####", "..#..", "..#..", "....."],
    "/": ["....#", "....#", "...#.", "..#..", ".#...", "#....", "#...."],
    "%": ["##...", "##..#", "...#.", "..#..", ".#...", "#..##", "...##"],
    "?": [".###.", "#...#", "....#", "...#.", "..#..", ".....", "..#.."],
    "!": ["#", "#", "#", "#", "#", ".", "#"],
    "<": ["...#", "..#.", ".#..", "#...", ".#..", "..#.", "...#"],
    ">": ["#...", ".#..", "..#.", "...#", "..#.", ".#..", "#..."],
    "(": ["..#", ".#.", "#..", "#..", "#..", ".#.", "..#"],
    ")": ["#..", ".#.", "..#", "..#", "..#", ".#.", "#.."],
}

_F3x5 = {
    "0": ["###", "#.#", "#.#", "#.#", "###"],
    "1": [".#.", "##.", ".#.", ".#.", "###"],
    "2": ["###", "..#", "###", "#..", "###"],
    "3": ["###", "..#", ".##", "..#", "###"],
    "4": ["#.#", "#.#", "###", "..#", "..#"],
    "5": ["###", "#..", "###", "..#", "###"],
    "6": ["###", "#..", "###", "#.#", "###"],
    "7": ["###", "..#", ".#.", ".#.", ".#."],
    "8": ["###", "#.#", "###", "#.#", "###"],
    "9": ["###", "#.#", "###", "..#", "###"],
    "A": [".#.", "#.#", "###", "#.#", "#.#"],
    "B": ["##.", "#.#", "##.", "#.#", "##."],
    "C": [".##", "#..", "#..", "#..", ".##"],
    "D": ["##.", "#.#", "#.#", "#.#", "##."],
    "E": ["###", "#..", "##.", "#..", "###"],
    "F": ["###", "#..", "##.", "#..", "#.."],
    "G": [".##", "#..", "#.#", "#.#", ".##"],
    "H": ["#.#", "#.#", "###", "#.#", "#.#"],
    "I": ["###", ".#.", ".#.", ".#.", "###"],
    "K": ["#.#", "#.#", "##.", "#.#", "#.#"],
    "L": ["#..", "#..", "#..", "#..", "###"],
    "M": ["#.#", "###", "###", "#.#", "#.#"],
    "N": ["##.", "#.#", "#.#", "#.#", "#.#"],
    "O": [".#.", "#.#", "#.#", "#.#", ".#."],
    "P": ["##.", "#.#", "##.", "#..", "#.."],
    "R": ["##.", "#.#", "##.", "#.#", "#.#"],
    "S": [".##", "#..", ".#.", "..#", "##."],
    "T": ["###", ".#.", ".#.", ".#.", ".#."],
    "U": ["#.#", "#.#", "#.#", "#.#", "###"],
    "V": ["#.#", "#.#", "#.#", "#.#", ".#."],
    "W": ["#.#", "#.#", "###", "###", "#.#"],
    "X": ["#.#", "#.#", ".#.", "#.#", "#.#"],
    "Y": ["#.#", "#.#", ".#.", ".#.", ".#."],
    " ": ["...", "...", "...", "...", "..."],
    ".": [".", ".", ".", ".", "#"],
    ":": [".", "#", ".", "#", "."],
    "-": ["...", "...", "###", "...", "..."],
    "+": ["...", ".#.", "###", ".#.", "..."],
    "/": ["..#", "..#", ".#.", "#..", "#.."],
    "%": ["#.#", "..#", ".#.", "#..", "#.#"],
}

FONT5x7 = _F5x7
FONT3x5 = _F3x5


class Image:
    def __init__(self, width, height, color=TRANSPARENT):
        self.width = int(width)
        self.height = int(height)
        c = rgb(color)
        self._px = bytearray(bytes(c) * (self.width * self.height))

    # ---- pixels ----
    def get(self, x, y):
        if 0 <= x < self.width and 0 <= y < self.height:
            i = (y * self.width + x) * 4
            p = self._px
            return (p[i], p[i + 1], p[i + 2], p[i + 3])
        return None

    def set(self, x, y, color):
        x, y = int(x), int(y)
        if 0 <= x < self.width and 0 <= y < self.height:
            i = (y * self.width + x) * 4
            self._px[i:i + 4] = bytes(rgb(color))

    def _blend_raw(self, x, y, r, g, b, a):
        # a is 0..1 float; non-premultiplied source-over
        if a <= 0:
            return
        i = (y * self.width + x) * 4
        p = self._px
        da = p[i + 3] / 255.0
        oa = a + da * (1 - a)
        if oa <= 0:
            return
        k = da * (1 - a)
        p[i] = min(255, int(round((r * a + p[i] * k) / oa)))
        p[i + 1] = min(255, int(round((g * a + p[i + 1] * k) / oa)))
        p[i + 2] = min(255, int(round((b * a + p[i + 2] * k) / oa)))
        p[i + 3] = min(255, int(round(oa * 255)))

    def blend(self, x, y, color, coverage=1.0):
        x, y = int(x), int(y)
        if 0 <= x < self.width and 0 <= y < self.height:
            c = rgb(color)
            self._blend_raw(x, y, c[0], c[1], c[2], c[3] / 255.0 * max(0.0, min(1.0, coverage)))

    def _put(self, x, y, c, cov=1.0):
        # c is a normalised 4-tuple; opaque full coverage is a plain write
        if 0 <= x < self.width and 0 <= y < self.height:
            if cov >= 1.0 and c[3] == 255:
                i = (y * self.width + x) * 4
                self._px[i:i + 4] = bytes(c)
            else:
                self._blend_raw(x, y, c[0], c[1], c[2], c[3] / 255.0 * cov)

    # ---- rectangles and lines ----
    def fill(self, color):
        c = rgb(color)
        self._px = bytearray(bytes(c) * (self.width * self.height))

    def rect(self, x, y, w, h, color, blend=False):
        c = rgb(color)
        x0, y0 = max(0, int(x)), max(0, int(y))
        x1, y1 = min(self.width, int(x) + int(w)), min(self.height, int(y) + int(h))
        if x1 <= x0 or y1 <= y0:
            return
        if not blend or c[3] == 255:
            row = bytes(c) * (x1 - x0)
            for yy in range(y0, y1):
                i = (yy * self.width + x0) * 4
                self._px[i:i + len(row)] = row
        else:
            for yy in range(y0, y1):
                for xx in range(x0, x1):
                    self._put(xx, yy, c)

    def frame(self, x, y, w, h, color, thickness=1):
        t = thickness
        self.rect(x, y, w, t, color)
        self.rect(x, y + h - t, w, t, color)
        self.rect(x, y, t, h, color)
        self.rect(x + w - t, y, t, h, color)

    def hline(self, x0, x1, y, color):
        if x1 < x0:
            x0, x1 = x1, x0
        self.rect(x0, y, x1 - x0 + 1, 1, color)

    def vline(self, x, y0, y1, color):
        if y1 < y0:
            y0, y1 = y1, y0
        self.rect(x, y0, 1, y1 - y0 + 1, color)

    def dotted_hline(self, x0, x1, y, color, on=1, off=1):
        c = rgb(color)
        for x in range(min(x0, x1), max(x0, x1) + 1):
            if (x - min(x0, x1)) % (on + off) < on:
                self._put(x, y, c)

    def dotted_vline(self, x, y0, y1, color, on=1, off=1):
        c = rgb(color)
        for y in range(min(y0, y1), max(y0, y1) + 1):
            if (y - min(y0, y1)) % (on + off) < on:
                self._put(x, y, c)

    def line(self, x0, y0, x1, y1, color, width=1, aa=False, last=True):
        c = rgb(color)
        if aa:
            self._stroke(x0, y0, x1, y1, width, c)
            return
        x0, y0, x1, y1 = int(x0), int(y0), int(x1), int(y1)
        dx, dy = abs(x1 - x0), -abs(y1 - y0)
        sx = 1 if x0 < x1 else -1
        sy = 1 if y0 < y1 else -1
        err = dx + dy
        half = (width - 1) // 2
        while True:
            at_end = x0 == x1 and y0 == y1
            if not at_end or last:
                if width <= 1:
                    self._put(x0, y0, c)
                else:
                    self.rect(x0 - half, y0 - half, width, width, c)
            if at_end:
                break
            e2 = 2 * err
            if e2 >= dy:
                err += dy
                x0 += sx
            if e2 <= dx:
                err += dx
                y0 += sy

    def _stroke(self, x0, y0, x1, y1, width, c):
        r = width / 2.0
        minx = int(math.floor(min(x0, x1) - r - 1))
        maxx = int(math.ceil(max(x0, x1) + r + 1))
        miny = int(math.floor(min(y0, y1) - r - 1))
        maxy = int(math.ceil(max(y0, y1) + r + 1))
        vx, vy = x1 - x0, y1 - y0
        ll = vx * vx + vy * vy
        for py in range(max(0, miny), min(self.height, maxy + 1)):
            for px in range(max(0, minx), min(self.width, maxx + 1)):
                cx, cy = px + 0.5, py + 0.5
                if ll == 0:
                    t = 0.0
                else:
                    t = max(0.0, min(1.0, ((cx - x0) * vx + (cy - y0) * vy) / ll))
                ddx, ddy = cx - (x0 + t * vx), cy - (y0 + t * vy)
                d = math.sqrt(ddx * ddx + ddy * ddy)
                cov = max(0.0, min(1.0, r + 0.5 - d))
                if cov > 0:
                    self._put(px, py, c, cov)

    # ---- shapes by coverage sampling ----
    def _coverage_fill(self, bbox, inside, c, aa):
        x0, y0, x1, y1 = bbox
        x0, y0 = max(0, int(math.floor(x0))), max(0, int(math.floor(y0)))
        x1, y1 = min(self.width - 1, int(math.ceil(x1))), min(self.height - 1, int(math.ceil(y1)))
        n = 4 if aa else 1
        offs = [(i + 0.5) / n for i in range(n)]
        total = n * n
        for py in range(y0, y1 + 1):
            for px in range(x0, x1 + 1):
                hits = 0
                for oy in offs:
                    for ox in offs:
                        if inside(px + ox, py + oy):
                            hits += 1
                if hits:
                    self._put(px, py, c, hits / total)

    def ellipse(self, cx, cy, rx, ry, color, aa=True):
        c = rgb(color)
        if rx <= 0 or ry <= 0:
            return

        def inside(x, y):
            u, v = (x - cx) / rx, (y - cy) / ry
            return u * u + v * v <= 1.0
        self._coverage_fill((cx - rx, cy - ry, cx + rx, cy + ry), inside, c, aa)

    def circle(self, cx, cy, r, color, aa=True):
        self.ellipse(cx, cy, r, r, color, aa)

    def ring(self, cx, cy, rx, ry, width, color, aa=True):
        c = rgb(color)
        irx, iry = rx - width, ry - width

        def inside(x, y):
            u, v = (x - cx) / rx, (y - cy) / ry
            if u * u + v * v > 1.0:
                return False
            if irx <= 0 or iry <= 0:
                return True
            u, v = (x - cx) / irx, (y - cy) / iry
            return u * u + v * v > 1.0
        self._coverage_fill((cx - rx, cy - ry, cx + rx, cy + ry), inside, c, aa)

    def circle_outline(self, cx, cy, r, width, color, aa=True):
        self.ring(cx, cy, r, r, width, color, aa)

    def arc(self, cx, cy, r, width, start_deg, end_deg, color, aa=True):
        c = rgb(color)
        a0 = start_deg % 360.0
        span = (end_deg - start_deg) % 360.0 or 360.0
        ri = r - width

        def inside(x, y):
            dx, dy = x - cx, cy - y
            d2 = dx * dx + dy * dy
            if d2 > r * r or d2 < ri * ri:
                return False
            ang = math.degrees(math.atan2(dy, dx)) % 360.0
            return (ang - a0) % 360.0 <= span
        self._coverage_fill((cx - r, cy - r, cx + r, cy + r), inside, c, aa)

    def polygon(self, points, color, aa=True):
        c = rgb(color)
        pts = [(float(x), float(y)) for x, y in points]
        n = len(pts)
        if n < 3:
            return
        edges = [(pts[i], pts[(i + 1) % n]) for i in range(n)]

        def inside(x, y):
            odd = False
            for (ax, ay), (bx, by) in edges:
                if (ay > y) != (by > y):
                    xi = ax + (y - ay) * (bx - ax) / (by - ay)
                    if x < xi:
                        odd = not odd
            return odd
        xs = [p[0] for p in pts]
        ys = [p[1] for p in pts]
        self._coverage_fill((min(xs), min(ys), max(xs), max(ys)), inside, c, aa)

    def round_rect(self, x, y, w, h, r, color, aa=True):
        c = rgb(color)
        r = max(0.0, min(r, w / 2.0, h / 2.0))

        def inside(px, py):
            if px < x or px > x + w or py < y or py > y + h:
                return False
            qx = min(max(px, x + r), x + w - r)
            qy = min(max(py, y + r), y + h - r)
            dx, dy = px - qx, py - qy
            return dx * dx + dy * dy <= r * r
        self._coverage_fill((x, y, x + w, y + h), inside, c, aa)

    def gradient(self, x, y, w, h, c0, c1, vertical=True, blend=False):
        steps = h if vertical else w
        for i in range(int(steps)):
            t = i / (steps - 1) if steps > 1 else 0.0
            c = mix(c0, c1, t)
            if vertical:
                self.rect(x, y + i, w, 1, c, blend)
            else:
                self.rect(x + i, y, 1, h, c, blend)

    # ---- text ----
    def text_width(self, s, font=FONT5x7, scale=1, spacing=1):
        w = 0
        for ch in s:
            g = font.get(ch.upper()) or font.get("?") or font[" "]
            w += (len(g[0]) + spacing) * scale
        return max(0, w - spacing * scale)

    def text(self, x, y, s, color, font=FONT5x7, scale=1, spacing=1):
        c = rgb(color)
        cx = int(x)
        for ch in s:
            g = font.get(ch.upper()) or font.get("?") or font[" "]
            for row, bits in enumerate(g):
                for col, b in enumerate(bits):
                    if b == "#":
                        self.rect(cx + col * scale, int(y) + row * scale, scale, scale, c, blend=True)
            cx += (len(g[0]) + spacing) * scale
        return cx - int(x) - spacing * scale

    # ---- whole images ----
    def copy(self):
        out = Image(self.width, self.height)
        out._px = bytearray(self._px)
        return out

    def crop(self, x, y, w, h):
        out = Image(w, h)
        for yy in range(h):
            for xx in range(w):
                p = self.get(x + xx, y + yy)
                if p:
                    out.set(xx, yy, p)
        return out

    def _overlap(self, src, x, y):
        """(source index, target x, target y) of every src pixel that lands inside this image."""
        for yy in range(src.height):
            ty = y + yy
            if not 0 <= ty < self.height:
                continue
            for xx in range(src.width):
                tx = x + xx
                if 0 <= tx < self.width:
                    yield (yy * src.width + xx) * 4, tx, ty

    def paste(self, src, x, y):
        for i, tx, ty in self._overlap(src, x, y):
            j = (ty * self.width + tx) * 4
            self._px[j:j + 4] = src._px[i:i + 4]

    def composite(self, src, x, y, opacity=1.0):
        sp = src._px
        for i, tx, ty in self._overlap(src, x, y):
            a = sp[i + 3] / 255.0 * opacity
            if a > 0:
                self._blend_raw(tx, ty, sp[i], sp[i + 1], sp[i + 2], a)

    def shadow(self, color, dx=1, dy=1):
        c = rgb(color)
        out = Image(self.width, self.height)
        for y in range(self.height):
            for x in range(self.width):
                a = self._px[(y * self.width + x) * 4 + 3]
                if a:
                    out._put(x + dx, y + dy, c, a / 255.0)
        out.composite(self, 0, 0)
        return out

    def outline(self, color):
        c = rgb(color)
        out = Image(self.width, self.height)
        for y in range(self.height):
            for x in range(self.width):
                best = 0
                for ny in (y - 1, y, y + 1):
                    for nx in (x - 1, x, x + 1):
                        p = self.get(nx, ny)
                        if p and p[3] > best:
                            best = p[3]
                if best:
                    out._put(x, y, c, best / 255.0)
        out.composite(self, 0, 0)
        return out

    def downsample(self, f):
        w, h = self.width // f, self.height // f
        out = Image(w, h)
        p = self._px
        n = f * f
        for y in range(h):
            for x in range(w):
                sr = sg = sb = sa = 0
                for yy in range(y * f, y * f + f):
                    i = (yy * self.width + x * f) * 4
                    for _ in range(f):
                        a = p[i + 3]
                        sr += p[i] * a
                        sg += p[i + 1] * a
                        sb += p[i + 2] * a
                        sa += a
                        i += 4
                if sa:
                    j = (y * w + x) * 4
                    out._px[j:j + 4] = bytes((int(round(sr / sa)), int(round(sg / sa)),
                                              int(round(sb / sa)), int(round(sa / n))))
        return out

    def upscale(self, f):
        out = Image(self.width * f, self.height * f)
        for y in range(self.height):
            for x in range(self.width):
                out.rect(x * f, y * f, f, f, self.get(x, y))
        return out


# ---- writers ----
def _flatten(img, bg):
    """The image's rows, top first, as (r, g, b) tuples with alpha laid onto bg."""
    rows = []
    for y in range(img.height):
        row = []
        for x in range(img.width):
            r, g, b, a = img.get(x, y)
            if a < 255:
                t = a / 255.0
                r = int(round(r * t + bg[0] * (1 - t)))
                g = int(round(g * t + bg[1] * (1 - t)))
                b = int(round(b * t + bg[2] * (1 - t)))
            row.append((r, g, b))
        rows.append(row)
    return rows


def bmp_depth(colors):
    """The smallest depth of an uncompressed DIB that holds this many colours.

    4 or 8 bits with a colour table, or 24 bits, all BI_RGB: these are what
    Windows CE's LoadBitmap/LoadImage load (CE has no RLE decoding, and its
    2-bit bitmaps do not load on the desktop). No 1-bit images: a black and
    white one becomes a monochrome bitmap that takes the DC's text colours.
    """
    for bits in (4, 8):
        if colors <= 1 << bits:
            return bits
    return 24


def save_bmp(img, path, background=(255, 255, 255)):
    bg = rgb(background)
    w, h = img.width, img.height
    rows = _flatten(img, bg)
    palette = sorted({c for row in rows for c in row})
    bits = bmp_depth(len(palette))
    stride = ((w * bits + 31) // 32) * 4
    table = b""
    data = bytearray()
    if bits == 24:
        for row in reversed(rows):
            line = bytearray()
            for r, g, b in row:
                line += bytes((b, g, r))
            data += line + b"\0" * (stride - len(line))
    else:
        # A full table of 2^bits entries (biClrUsed 0): the plainest form of
        # a palettized DIB; unused entries are black.
        index = {c: i for i, c in enumerate(palette)}
        entries = palette + [(0, 0, 0)] * ((1 << bits) - len(palette))
        table = b"".join(bytes((b, g, r, 0)) for r, g, b in entries)
        per_byte = 8 // bits
        for row in reversed(rows):
            line = bytearray(stride)
            for x, c in enumerate(row):
                shift = (per_byte - 1 - x % per_byte) * bits
                line[x // per_byte] |= index[c] << shift
            data += line
    offset = 14 + 40 + len(table)
    header = struct.pack("<2sIHHI", b"BM", offset + len(data), 0, 0, offset)
    info = struct.pack("<IiiHHIIiiII", 40, w, h, 1, bits, 0, len(data), 2835, 2835, 0, 0)
    with open(path, "wb") as f:
        f.write(header + info + table + bytes(data))


def _ico_mask(img):
    w, h = img.width, img.height
    mstride = ((w + 31) // 32) * 4
    mask = bytearray()
    for y in range(h - 1, -1, -1):
        row = bytearray(mstride)
        for x in range(w):
            if img.get(x, y)[3] < 128:
                row[x // 8] |= 0x80 >> (x % 8)
        mask += row
    return bytes(mask)


def _ico_palette(img):
    """The sorted colours of an icon whose pixels are all either opaque or
    clear, with clear ones black; None when it has softer edges (those need
    the alpha of 32 bits) or more than 256 colours."""
    colors = set()
    for y in range(img.height):
        for x in range(img.width):
            r, g, b, a = img.get(x, y)
            if a not in (0, 255):
                return None
            colors.add((r, g, b) if a else (0, 0, 0))
    return sorted(colors) if len(colors) <= 256 else None


def _ico_entry_data(img):
    """(bits, colour count for the directory, entry bytes) of one icon image.

    Icons whose pixels are all opaque or clear get 4 or 8 bits with a
    colour table and the AND mask, as every Windows CE icon loader reads
    them; the same pixels, a quarter of the bytes or less. Soft-edged ones
    stay 32-bit BGRA with the mask.
    """
    w, h = img.width, img.height
    mask = _ico_mask(img)
    palette = _ico_palette(img)
    if palette is None:
        xor = bytearray()
        for y in range(h - 1, -1, -1):
            for x in range(w):
                r, g, b, a = img.get(x, y)
                if a == 0:
                    r = g = b = 0
                xor += bytes((b, g, r, a))
        info = struct.pack("<IiiHHIIiiII", 40, w, h * 2, 1, 32, 0, len(xor) + len(mask), 0, 0, 0, 0)
        return 32, 0, info + bytes(xor) + mask
    bits = bmp_depth(len(palette))
    index = {c: i for i, c in enumerate(palette)}
    entries = palette + [(0, 0, 0)] * ((1 << bits) - len(palette))
    table = b"".join(bytes((b, g, r, 0)) for r, g, b in entries)
    stride = ((w * bits + 31) // 32) * 4
    per_byte = 8 // bits
    xor = bytearray()
    for y in range(h - 1, -1, -1):
        line = bytearray(stride)
        for x in range(w):
            r, g, b, a = img.get(x, y)
            c = (r, g, b) if a else (0, 0, 0)
            line[x // per_byte] |= index[c] << ((per_byte - 1 - x % per_byte) * bits)
        xor += line
    info = struct.pack("<IiiHHIIiiII", 40, w, h * 2, 1, bits, 0, len(xor) + len(mask), 0, 0, 0, 0)
    return bits, (1 << bits) & 0xFF, info + table + bytes(xor) + mask


def save_ico(path, images):
    entries = [_ico_entry_data(im) for im in images]
    out = bytearray(struct.pack("<HHH", 0, 1, len(images)))
    offset = 6 + 16 * len(images)
    for im, (bits, count, blob) in zip(images, entries):
        out += struct.pack("<BBBBHHII", im.width & 0xFF, im.height & 0xFF, count, 0, 1, bits,
                           len(blob), offset)
        offset += len(blob)
    for _, _, blob in entries:
        out += blob
    with open(path, "wb") as f:
        f.write(bytes(out))


def _png_chunk(kind, data):
    c = struct.pack(">I", len(data)) + kind + data
    return c + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)


def save_png(img, path):
    raw = bytearray()
    stride = img.width * 4
    for y in range(img.height):
        raw.append(0)
        raw += img._px[y * stride:(y + 1) * stride]
    data = b"\x89PNG\r\n\x1a\n"
    data += _png_chunk(b"IHDR", struct.pack(">IIBBBBB", img.width, img.height, 8, 6, 0, 0, 0))
    data += _png_chunk(b"IDAT", zlib.compress(bytes(raw), 9))
    data += _png_chunk(b"IEND", b"")
    with open(path, "wb") as f:
        f.write(data)


def load_png(path):
    with open(path, "rb") as f:
        data = f.read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("not a PNG")
    pos, idat = 8, bytearray()
    w = h = depth = ctype = interlace = None
    while pos < len(data):
        n, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + n]
        pos += 12 + n
        if kind == b"IHDR":
            w, h, depth, ctype, _, _, interlace = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            idat += body
        elif kind == b"IEND":
            break
    if depth != 8 or interlace != 0 or ctype not in (0, 2, 4, 6):
        raise ValueError("unsupported PNG")
    bpp = {0: 1, 2: 3, 4: 2, 6: 4}[ctype]
    raw = zlib.decompress(bytes(idat))
    stride = w * bpp
    img = Image(w, h)
    prev = bytearray(stride)
    pos = 0
    for y in range(h):
        ft = raw[pos]
        line = bytearray(raw[pos + 1:pos + 1 + stride])
        pos += 1 + stride
        for i in range(stride):
            a = line[i - bpp] if i >= bpp else 0
            b = prev[i]
            c = prev[i - bpp] if i >= bpp else 0
            if ft == 1:
                line[i] = (line[i] + a) & 0xFF
            elif ft == 2:
                line[i] = (line[i] + b) & 0xFF
            elif ft == 3:
                line[i] = (line[i] + (a + b) // 2) & 0xFF
            elif ft == 4:
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                pr = a if pa <= pb and pa <= pc else (b if pb <= pc else c)
                line[i] = (line[i] + pr) & 0xFF
        for x in range(w):
            px = line[x * bpp:(x + 1) * bpp]
            if ctype == 0:
                c = (px[0], px[0], px[0], 255)
            elif ctype == 4:
                c = (px[0], px[0], px[0], px[1])
            elif ctype == 2:
                c = (px[0], px[1], px[2], 255)
            else:
                c = (px[0], px[1], px[2], px[3])
            j = (y * w + x) * 4
            img._px[j:j + 4] = bytes(c)
        prev = line
    return img
