#!/usr/bin/env python3
"""Turns resources/art into resources/pictures, with the list of them for Qt. Called by make_pictures.sh."""
import pathlib
import re
import struct
import subprocess
import tempfile
import zlib

HERE = pathlib.Path(__file__).resolve().parent
ART = HERE / "art"
OUT = HERE / "pictures"

# The characters of glyphs.txt. The first five are key colours that the program replaces.
INK = {
    ".": (255, 0, 255), "#": (0, 0, 0), "o": (255, 255, 255), "g": (0, 255, 0), "f": (192, 192, 192),
    "r": (255, 0, 0), "y": (255, 176, 0), "d": (74, 46, 62), "b": (48, 80, 160), "c": (212, 0, 0),
}

# A pattern, laid side by side; the others stand alone.
TILED = {"2010"}

# name, drawing, width, height; each is also made at twice the size, as name@2x.
DRAWN = [
    ("tbar1", "tbar1", 556, 25), ("tbar1_corner", "tbar1_corner", 13, 25),
    ("tbar2", "tbar2", 556, 26), ("tbar2_corner", "tbar2_corner", 13, 26),
    ("section_button_up", "section_button_up", 73, 19), ("section_button_down", "section_button_down", 73, 19),
    ("splash", "splash", 261, 226), ("recicle1", "recicle1", 42, 41), ("recicle2", "recicle2", 42, 41),
    ("4000", "picture_4000", 107, 189), ("5000", "picture_5000", 29, 29),
    ("2021", "picture_2021", 137, 11), ("2022", "picture_2022", 275, 13), ("4005", "picture_4005", 272, 18),
] + [(c, c, 32, 32) for c in ("cur_hand1", "cur_drag_true", "cur_drag_true_copy", "cur_drag_stop")]

# Icons are asked for by their size in pixels, so the larger ones serve screens of scale 2 and 3.
BAR_ICONS = {2000: 16, 2001: 16, 2002: 16, 2003: 16, 2004: 16, 2005: 16, 3000: 12}
# Those of the program and of a note file; up to SMALL pixels they come from the drawing made for the 16 pixel grid.
APP_ICON_SIZES = (16, 24, 32, 48, 64, 128, 256)
SMALL = 24

# Where a cursor points.
HOTSPOTS = [("cur_hand1", 10, 1), ("cur_drag_true", 1, 1), ("cur_drag_true_copy", 1, 1), ("cur_drag_stop", 12, 12)]

# What the program hands to the desktop when it makes itself known there.
FOR_THE_DESKTOP = ("desktop/jotlet.desktop.in", "desktop/jotlet-mime.xml", "pictures/icon_1000.svg", "pictures/icon_1001.svg")

CAPTION_GLYPHS = {
    "close": '<path d="M4.5 4.5L10.5 10.5M10.500 4.500L4.500 10.500" stroke-width="1.800"/>',
    "maximize": '<path d="M3.500 4.500H11.500V11.500H3.500ZM3 5.500H12"/>',
    "minimize": '<path d="M4 10.500H11" stroke-width="2"/>',
}
# top, bottom, edge, highlight, glyph, shift; for normal, hot and pressed
CAPTION_STATES = (
    ("#fdf6e2", "#d9cba6", "#6b5a3a", "#ffffff", "#4a3a20", 0),
    ("#ffe58a", "#f7a508", "#8a5200", "#fff6cf", "#5e0000", 0),
    ("#c40000", "#e23a20", "#5e0000", "#8f0000", "#ffffff", 1),
)


def write_png(path, rows):
    """An opaque 24 bit PNG from rows of (r, g, b)."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    raw = b"".join(b"\0" + bytes(v for pixel in row for v in pixel) for row in rows)
    header = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 2, 0, 0, 0)
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 0)) + chunk(b"IEND", b""))


def doubled(lines, tiled):
    """A pixel map at twice the size: a corner of a pixel that lies inside a slanted edge takes the colour behind it.
    No colour is blended, as the program finds its key colours by exact comparison."""
    height, width = len(lines), len(lines[0])

    def pixel(x, y, own):
        if tiled:
            return lines[y % height][x % width]
        return lines[y][x] if 0 <= x < width and 0 <= y < height else own

    result = []
    for y, line in enumerate(lines):
        upper, lower = "", ""
        for x, own in enumerate(line):
            up, down = pixel(x, y - 1, own), pixel(x, y + 1, own)
            left, right = pixel(x - 1, y, own), pixel(x + 1, y, own)
            slanted = up != down and left != right
            upper += (up if slanted and up == left else own) + (up if slanted and up == right else own)
            lower += (down if slanted and down == left else own) + (down if slanted and down == right else own)
        result += [upper, lower]
    return result


def make_glyphs():
    """Writes the pixel maps of glyphs.txt, each also at twice the size; one that is not of its stated size is an error."""
    maps = {}
    for block in re.split(r"\n(?=\[)", (ART / "glyphs.txt").read_text())[1:]:
        title, *lines = block.rstrip("\n").split("\n")
        name, width, height = re.match(r"\[([\w@]+) (\d+)x(\d+)\]", title).groups()
        maps[name] = [line for line in lines if line]
        if len(maps[name]) != int(height) or any(len(line) != int(width) for line in maps[name]):
            raise SystemExit(f"glyphs.txt: {name} is not {width} by {height}")
    for name in [name for name in maps if "@" not in name]:
        maps.setdefault(f"{name}@2x", doubled(maps[name], name in TILED))
    for name, lines in maps.items():
        write_png(OUT / f"{name}.png", [[INK[c] for c in line] for line in lines])


def render(source, name, width, height):
    subprocess.run(["rsvg-convert", "-w", str(width), "-h", str(height), "-o", str(OUT / f"{name}.png"), str(source)], check=True)


def render_both(source, name, width, height):
    render(source, name, width, height)
    render(source, f"{name}@2x", 2 * width, 2 * height)


def make_caption_buttons(folder):
    template = (ART / "caption_button.svg.in").read_text()
    for kind, drawing in CAPTION_GLYPHS.items():
        for state, values in enumerate(CAPTION_STATES, start=1):
            text = template.replace("@DRAWING@", drawing)
            for key, value in zip(("TOP", "BOTTOM", "EDGE", "LIGHT", "GLYPH", "SHIFT"), values):
                text = text.replace(f"@{key}@", str(value))
            source = pathlib.Path(folder) / "button.svg"
            source.write_text(text)
            render_both(source, f"{kind}_button{state}", 15, 15)


def make_icons():
    for icon, side in BAR_ICONS.items():
        for size in (side, 2 * side, 3 * side):
            render(ART / f"icon_{icon}.svg", f"icon_{icon}_{size}", size, size)
    for icon in (1000, 1001):
        for size in APP_ICON_SIZES:
            source = ART / f"icon_{icon}{'_small' if size <= SMALL else ''}.svg"
            render(source, f"icon_{icon}_{size}", size, size)
        (OUT / f"icon_{icon}.svg").write_text((ART / f"icon_{icon}.svg").read_text())


def main():
    OUT.mkdir(exist_ok=True)
    for old in OUT.iterdir():
        old.unlink()
    make_glyphs()
    for name, drawing, width, height in DRAWN:
        render_both(ART / f"{drawing}.svg", name, width, height)
    with tempfile.TemporaryDirectory() as folder:
        make_caption_buttons(folder)
    make_icons()
    (OUT / "cursors.txt").write_text("".join(f"{name} {x} {y}\n" for name, x, y in HOTSPOTS))
    names = sorted(p.name for p in OUT.iterdir() if p.suffix == ".png") + ["cursors.txt"]
    listing = "".join(f'    <file alias="{name}">pictures/{name}</file>\n' for name in names)
    desktop = "".join(f'    <file alias="{pathlib.Path(path).name}">{path}</file>\n' for path in FOR_THE_DESKTOP)
    (HERE / "pictures.qrc").write_text(f'<RCC>\n  <qresource prefix="/pictures">\n{listing}  </qresource>\n'
                                       f'  <qresource prefix="/desktop">\n{desktop}  </qresource>\n</RCC>\n')


if __name__ == "__main__":
    main()
