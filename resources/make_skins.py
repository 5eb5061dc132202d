#!/usr/bin/env python3
"""Makes the skins in resources/beside/Styles: one ini file and a folder of 24 bit BMP files each.

Everything is computed, so a new skin is an entry of SKINS. Sizes suit the frame: the title area is 23 pixels high with
ends 4 wide that begin one pixel lower, the pane bar is 25 high, caption buttons are 15 by 15 and begin 5 pixels under
the top edge, the grip is 11 by 11. Bitmaps of the bars are stretched sideways, so their pattern may not depend on it.
"""
import math
import pathlib
import random
import shutil
import struct

STYLES = pathlib.Path(__file__).resolve().parent / "beside" / "Styles"
WIDTH, TITLE, PANE_BAR, END, BUTTON, GRIP, BUTTON_TOP = 420, 23, 25, 4, 15, 11, 5


def rgb(text):
    return tuple(int(text[i:i + 2], 16) for i in (1, 3, 5))


def mix(a, b, t):
    t = min(1.0, max(0.0, t))
    return tuple(a[i] + (b[i] - a[i]) * t for i in range(3))


def shift(colour, steps):
    return tuple(v + steps for v in colour)


def ramp(stops, t):
    """The colour at t of a list of (place, "#rrggbb")."""
    for (p, a), (q, b) in zip(stops, stops[1:]):
        if t <= q:
            return mix(rgb(a), rgb(b), (t - p) / (q - p) if q > p else 1)
    return rgb(stops[-1][1])


def write_bmp(path, rows):
    """A 24 bit BMP, bottom row first, rows padded to four bytes."""
    width, height = len(rows[0]), len(rows)
    pad = b"\0" * (-3 * width % 4)
    body = b"".join(b"".join(bytes(min(255, max(0, round(v))) for v in pixel[::-1]) for pixel in row) + pad
                    for row in reversed(rows))
    head = b"BM" + struct.pack("<IHHI", 54 + len(body), 0, 0, 54)
    path.write_bytes(head + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(body), 2835, 2835, 0, 0) + body)


# ---- textures: what is added to the colour at x, y of a bar of the given height

def plain(skin, height):
    return lambda x, y, c: c


def brushed(skin, height):
    """Fine streaks along the bar, as on brushed steel or grained wood."""
    dice = random.Random(skin["folder"])
    rows = []
    for _ in range(height):
        knots = [dice.uniform(-1, 1) for _ in range(WIDTH // 28 + 2)]
        rows.append((dice.uniform(-1, 1), knots))
    strength = skin.get("strength", 5)

    def add(x, y, c):
        base, knots = rows[y]
        i, f = divmod(x / 28, 1)
        f = f * f * (3 - 2 * f)
        wave = knots[int(i)] * (1 - f) + knots[int(i) + 1] * f
        return shift(c, strength * (0.55 * base + 0.75 * wave))
    return add


def grain(skin, height):
    """Wood: bent rings, light and dark."""
    streaks = brushed(skin, height)

    def add(x, y, c):
        bend = y + 3.2 * math.sin(x / 71) + 1.6 * math.sin(x / 23 + 1.3)
        ring = math.sin(bend * 1.15) * 0.6 + math.sin(bend * 2.7 + 0.8) * 0.4
        return shift(streaks(x, y, c), 9 * ring)
    return add


def comb(skin, height):
    """The edges of hexagons, softly lit."""
    side = 6.0

    def add(x, y, c):
        # distance to the nearest edge between two cells of a hexagonal lattice
        centres = []
        w, h = side * math.sqrt(3), side * 1.5
        row = round(y / h)
        for r in (row - 1, row, row + 1):
            o = (r % 2) * w / 2
            i = round((x - o) / w)
            centres += [math.hypot(x - (j * w + o), y - r * h) for j in (i - 1, i, i + 1)]
        centres.sort()
        edge = centres[1] - centres[0]
        return shift(c, 20 if edge < 1.3 else (-5 if centres[0] > 3 else 3))
    return add


def stars(skin, height):
    dice = random.Random(7)
    sky = {(dice.randrange(WIDTH), dice.randrange(2, height - 2)): dice.choice((18, 30, 30, 60, 105)) for _ in range(120)}
    keep_out = range(150, 270)

    def add(x, y, c):
        glow = 10 * math.exp(-((x - 70) / 90) ** 2) + 8 * math.exp(-((x - 300) / 38) ** 2)
        light = sky.get((x, y), 0)
        return shift(mix(c, (70, 96, 180), glow / 60), min(light, 24) if x in keep_out else light)
    return add


def blades(skin, height):
    """Grass that grows out of the lower edge."""
    dice = random.Random(11)
    grass = [(x + dice.uniform(-1, 1), dice.uniform(4, 11), dice.uniform(-2.2, 2.2), dice.choice((-16, -9, 12, 22))) for x in range(0, WIDTH, 2)]

    def add(x, y, c):
        up = height - 1 - y
        out = c
        for root, tall, lean, light in grass[max(0, x // 2 - 3):x // 2 + 4]:
            if up < tall:
                t = up / tall
                if abs(x - (root + lean * t * t)) < 0.95 * (1 - t) + 0.25:
                    out = shift(c, light * (1 - 0.4 * t))
        return out
    return add


def waves(skin, height):
    """Light on water: thin bright lines that cross."""
    def add(x, y, c):
        a = abs(y - height * 0.42 - 5 * math.sin(x / 37) - 2 * math.sin(x / 13))
        b = abs(y - height * 0.62 - 4 * math.sin(x / 29 + 2) - 2.5 * math.sin(x / 17 + 4))
        return shift(c, 18 * math.exp(-a * a / 2) + 13 * math.exp(-b * b / 3))
    return add


def petals(skin, height):
    dice = random.Random(23)
    drops = [(dice.uniform(0, WIDTH), dice.uniform(0, height), dice.uniform(2.2, 4.4), dice.uniform(0, math.pi)) for _ in range(54)]

    def add(x, y, c):
        out = c
        for px, py, size, turn in drops:
            dx, dy = x - px, y - py
            if abs(dx) > 6 or abs(dy) > 6:
                continue
            u, v = dx * math.cos(turn) + dy * math.sin(turn), -dx * math.sin(turn) + dy * math.cos(turn)
            inside = (u / size) ** 2 + (v / (size * 0.55)) ** 2
            if inside < 1.25:
                out = mix(out, (255, 246, 250), 0.45 * min(1, (1.25 - inside) * 2))
        return out
    return add


# ---- the parts of a skin

def bar(skin, stops, height, texture):
    add = texture(skin, height)
    return [[add(x, y, ramp(stops, y / (height - 1))) for x in range(WIDTH)] for y in range(height)]


def end(skin, right):
    """An end of the title area: the cut corner's outline and a lit edge inside it. Row 0 stands at y = 1."""
    rows = []
    edge = rgb(skin.get("endEdge", skin["frame"]))
    light, shape = rgb(skin["frameUp"] if not right else skin["frameDown"]), skin.get("shape")
    for y in range(1, TITLE):
        base = ramp(skin["title"], y / (TITLE - 1))
        border = 3 - y if y < 3 else 0
        row = [edge if x <= border else base if shape == "square" else mix(light, base, (x - border) / 3.0) for x in range(END)]
        rows.append(row[::-1] if right else row)
    return rows


def distance(px, py, ax, ay, bx, by):
    dx, dy = bx - ax, by - ay
    t = max(0, min(1, ((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy)))
    return math.hypot(px - ax - t * dx, py - ay - t * dy)


def glyph(kind, x, y, weight):
    if kind == "Close":
        return min(distance(x, y, 5, 5, 10, 10), distance(x, y, 10, 5, 5, 10)) < weight * 0.85
    if kind == "Minimize":
        return 4 <= x < 11 and 10 <= y < 10 + max(1, round(weight * 1.4))
    if not (4 <= x < 11 and 4 <= y < 11):
        return False
    return x < 5 or x >= 10 or y < 6 or y >= 10


def button(skin, kind, state):
    """One caption button, on the title's own colours where its shape leaves them free."""
    look = skin["buttons"][0 if state == 0 else (1 if kind != "Close" else 3) if state == 1 else 2]
    top, bottom, edge, ink = (rgb(c) for c in look)
    shape, weight = skin.get("shape", "rounded"), skin.get("weight", 1.0)
    radius = {"round": 7.2, "rounded": 3.0, "square": 0.0}[shape]
    moved = 0.5 if state == 2 and shape != "square" else 0.0
    fine = 5
    rows = []
    for y in range(BUTTON):
        row = []
        for x in range(BUTTON):
            total = (0, 0, 0)
            for sy in range(fine):
                for sx in range(fine):
                    px, py = x + (sx + 0.5) / fine, y + (sy + 0.5) / fine
                    c = ramp(skin["title"], (y + BUTTON_TOP) / (TITLE - 1))
                    # signed distance to the rounded square; negative inside
                    half = BUTTON / 2 - 0.15
                    qx, qy = abs(px - BUTTON / 2) - half + radius, abs(py - BUTTON / 2) - half + radius
                    d = math.hypot(max(qx, 0), max(qy, 0)) + min(max(qx, qy), 0) - radius
                    if d < 0:
                        c = edge
                    if d < -1:
                        c = mix(top, bottom, (py - 1) / (BUTTON - 2))
                        if skin.get("gloss", True) and state < 2 and py < 6.4 and d < -1.4:
                            c = mix(c, (255, 255, 255), 0.28)
                        if glyph(kind, px - moved, py - moved, weight):
                            c = ink
                    total = tuple(total[i] + c[i] for i in range(3))
            row.append(tuple(v / fine ** 2 for v in total))
        rows.append(row)
    return rows


def grip(skin):
    """Three slanted ribs on the client area's own colour."""
    back = rgb(skin["back"])
    rows = [[back] * GRIP for _ in range(GRIP)]
    for rib in (3, 7, 11):
        for i in range(rib):
            x, y = GRIP - 1 - i, GRIP - rib + i
            if 0 <= x < GRIP and 0 <= y < GRIP:
                rows[y][x] = rgb(skin["ribDark"])
                if y + 1 < GRIP:
                    rows[y + 1][x] = rgb(skin["ribLight"])
    return rows


def contrast(a, b):
    """1 for two equal colours, 21 for black on white."""
    def light(colour):
        parts = [v / 255 for v in colour]
        linear = [v / 12.92 if v <= 0.03928 else ((v + 0.055) / 1.055) ** 2.4 for v in parts]
        return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]
    darker, lighter = sorted((light(a), light(b)))
    return (lighter + 0.05) / (darker + 0.05)


def check_title(skin, rows):
    """A title that cannot be read on its fill, or on the part of the picture behind it, makes no skin."""
    text = rgb(skin["text"])
    behind = [pixel for row in rows[7:19] for pixel in row[WIDTH // 4:WIDTH * 3 // 4]]
    poor = sum(contrast(text, pixel) < 4.5 for pixel in behind)
    if contrast(text, rgb(skin["titleFill"])) < 4.5 or poor * 100 > len(behind):
        raise SystemExit(f"{skin['name']}: the title cannot be read")


def triple(colour):
    return ",".join(str(v) for v in rgb(colour))


def make(skin):
    folder = STYLES / skin["folder"]
    folder.mkdir(parents=True)
    texture = skin.get("texture", plain)
    files = {
        "bmpTitle": ("title.bmp", bar(skin, skin["title"], TITLE, texture)),
        "bmpTitle_left": ("title_left.bmp", end(skin, False)),
        "bmpTitle_right": ("title_right.bmp", end(skin, True)),
        "bmpSubTitle": ("subtitle.bmp", bar(skin, skin["sub"], PANE_BAR, skin.get("subTexture", texture))),
        "bmpResize": ("resize.bmp", grip(skin)),
    }
    for kind in ("Close", "Restore", "Minimize"):
        for state in range(3):
            files[f"bmpButton{kind}_{state + 1}"] = (f"{kind.lower()}{state + 1}.bmp", button(skin, kind, state))
    check_title(skin, files["bmpTitle"][1])
    lines = ["[Preference]", f"name={skin['name']}", f"folder={skin['folder']}"]
    for key, (file, rows) in files.items():
        write_bmp(folder / file, rows)
        lines.append(f"{key}={file}")
    for key in ("back", "backUp", "backDown", "titleFill", "titleUp", "titleDown", "frame", "frameUp", "frameDown", "text", "panelFrame"):
        name = {"titleFill": "Title", "text": "TextTitle"}.get(key, key[0].upper() + key[1:])
        lines.append(f"color{name}={triple(skin[key])}")
    (STYLES / skin["file"]).write_bytes("".join(line + "\r\n" for line in lines).encode())


# Buttons are four looks: normal, hot, pressed, hot close; each is top, bottom, edge, ink.
SKINS = [
    dict(file="1_Metallic.ini", name="Metallic", folder="Metallic", texture=brushed, strength=5,
         title=[(0, "#eef2f6"), (0.12, "#dbe2ea"), (0.48, "#b9c4d0"), (0.52, "#aab7c5"), (1, "#cfd8e1")],
         sub=[(0, "#cfd8e1"), (0.1, "#c2ccd7"), (1, "#93a2b3")],
         back="#a9b6c4", backUp="#d5dde5", backDown="#7c8a99", titleFill="#b9c4d0", titleUp="#eef2f6", titleDown="#7c8a99",
         frame="#6b7a8a", frameUp="#e3e9ef", frameDown="#3e4a57", text="#17222e", panelFrame="#55636f",
         ribDark="#5f6e7e", ribLight="#dbe2ea",
         buttons=[("#f2f5f8", "#b3bfcc", "#54626f", "#22303d"), ("#d6ebff", "#6fb0ec", "#1f5c96", "#08284a"),
                  ("#5f7284", "#8fa1b3", "#2c3a47", "#ffffff"), ("#ffb3a2", "#dc2a18", "#7a0800", "#ffffff")]),
    dict(file="2_Honey.ini", name="Honey", folder="Honey", texture=comb, shape="rounded",
         title=[(0, "#ffe9a0"), (0.15, "#ffd35a"), (1, "#f0a81c")],
         sub=[(0, "#f2b233"), (1, "#d98a10")],
         back="#e9a52a", backUp="#ffd97c", backDown="#a86a08", titleFill="#f7bd3a", titleUp="#ffe9a0", titleDown="#a86a08",
         frame="#a8690c", frameUp="#ffe08a", frameDown="#6e4204", text="#4a2800", panelFrame="#8a560a",
         ribDark="#8a560a", ribLight="#ffdf94",
         buttons=[("#fff6d6", "#ffd25a", "#8a560a", "#5a3200"), ("#fffbe8", "#ffe9a0", "#5a3200", "#c25a00"),
                  ("#a86408", "#c98414", "#4a2800", "#fff6d6"), ("#ff9a6e", "#d42a06", "#6e1200", "#ffffff")]),
    dict(file="3_Midnight.ini", name="Midnight", folder="Midnight", texture=stars, shape="round", gloss=False,
         title=[(0, "#3c4770"), (0.08, "#2c3558"), (1, "#151b31")],
         sub=[(0, "#1d2440"), (1, "#10152a")],
         back="#1b213a", backUp="#323c63", backDown="#0b0f1d", titleFill="#212945", titleUp="#3c4770", titleDown="#0b0f1d",
         frame="#10152a", frameUp="#46538a", frameDown="#080b16", text="#dfe7ff", panelFrame="#2c3558",
         ribDark="#46538a", ribLight="#0d1122",
         buttons=[("#36416a", "#242c4b", "#5a6aa8", "#cdd9ff"), ("#2f9db0", "#14606f", "#8ff2ff", "#ffffff"),
                  ("#0c1122", "#182040", "#5a6aa8", "#8ff2ff"), ("#ff6a78", "#a81830", "#ffb3bd", "#ffffff")]),
    dict(file="4_High_Contrast.ini", name="High Contrast", folder="HighContrast", shape="square", gloss=False, weight=1.4, endEdge="#ffff00",
         title=[(0, "#ffff00"), (0.05, "#ffff00"), (0.051, "#000000"), (0.94, "#000000"), (0.95, "#ffff00"), (1, "#ffff00")],
         sub=[(0, "#000000"), (0.94, "#000000"), (0.95, "#ffffff"), (1, "#ffffff")],
         back="#000000", backUp="#ffffff", backDown="#ffffff", titleFill="#000000", titleUp="#ffff00", titleDown="#ffff00",
         frame="#000000", frameUp="#ffff00", frameDown="#ffff00", text="#ffffff", panelFrame="#ffffff",
         ribDark="#ffff00", ribLight="#000000",
         buttons=[("#000000", "#000000", "#ffffff", "#ffffff"), ("#ffff00", "#ffff00", "#ffffff", "#000000"),
                  ("#ffffff", "#ffffff", "#ffff00", "#000000"), ("#ffff00", "#ffff00", "#ffffff", "#000000")]),
    dict(file="5_Meadow.ini", name="Meadow", folder="Meadow", texture=blades, subTexture=plain,
         title=[(0, "#f2ffe0"), (0.1, "#d4f2a8"), (0.6, "#a9dc72"), (1, "#6fb23c")],
         sub=[(0, "#6aac3a"), (0.08, "#5a9a30"), (1, "#3f7a22")],
         back="#5f9f38", backUp="#a9dc72", backDown="#37661c", titleFill="#a9dc72", titleUp="#d4f2a8", titleDown="#3f7a22",
         frame="#3f7a22", frameUp="#b9e68a", frameDown="#24480f", text="#17350a", panelFrame="#37661c",
         ribDark="#37661c", ribLight="#b9e68a",
         buttons=[("#fbfff2", "#cfeaa6", "#3f7a22", "#24480f"), ("#fff3a8", "#f7c21c", "#7a5600", "#3a2800"),
                  ("#37661c", "#5a9a30", "#17350a", "#ffffff"), ("#ffb08a", "#dc3c18", "#7a1400", "#ffffff")]),
    dict(file="6_Lagoon.ini", name="Lagoon", folder="Lagoon", texture=waves, subTexture=waves, shape="round",
         title=[(0, "#3fb0c4"), (0.12, "#11748e"), (1, "#0a4860")],
         sub=[(0, "#0e5f7a"), (1, "#0a3f58")],
         back="#12708a", backUp="#4cc0d2", backDown="#06344a", titleFill="#0f6a84", titleUp="#3fb0c4", titleDown="#06344a",
         frame="#0a4c66", frameUp="#5fd0de", frameDown="#042434", text="#ffffff", panelFrame="#06344a",
         ribDark="#06344a", ribLight="#5fd0de",
         buttons=[("#c8f4f8", "#5fc0d0", "#063e52", "#063246"), ("#fffbe0", "#ffd75a", "#7a5600", "#4a3000"),
                  ("#063e52", "#0e6a84", "#021c28", "#c8f4f8"), ("#ffc0a8", "#f0502a", "#7a1400", "#ffffff")]),
    dict(file="7_Walnut.ini", name="Walnut", folder="Walnut", texture=grain, strength=6,
         title=[(0, "#9a6a3e"), (0.1, "#7c4f2a"), (1, "#5a3518")],
         sub=[(0, "#6a4222"), (0.08, "#5c381c"), (1, "#432610")],
         back="#6e4526", backUp="#a87848", backDown="#3a200c", titleFill="#6e4526", titleUp="#9a6a3e", titleDown="#3a200c",
         frame="#4a2a12", frameUp="#b98a58", frameDown="#281404", text="#fff2d8", panelFrame="#3a200c",
         ribDark="#3a200c", ribLight="#b98a58",
         buttons=[("#f7e2b8", "#c89a5a", "#3a200c", "#3a200c"), ("#fff3d0", "#f0b93c", "#3a200c", "#6e1200"),
                  ("#3a200c", "#5c381c", "#1c0e04", "#f7e2b8"), ("#ff9a78", "#b4240c", "#3a0c04", "#ffffff")]),
    dict(file="8_Blossom.ini", name="Blossom", folder="Blossom", texture=petals, subTexture=plain, shape="round",
         title=[(0, "#fff0f5"), (0.12, "#fbd3e2"), (1, "#e9a3c2")],
         sub=[(0, "#d98fb2"), (0.08, "#cc7fa5"), (1, "#ad5f88")],
         back="#d391b4", backUp="#fbd3e2", backDown="#8a4468", titleFill="#f0b8d0", titleUp="#fff0f5", titleDown="#8a4468",
         frame="#9a5278", frameUp="#fbdcea", frameDown="#5e2844", text="#4a1632", panelFrame="#8a4468",
         ribDark="#8a4468", ribLight="#fbdcea",
         buttons=[("#fffafd", "#f3c3d8", "#9a5278", "#6a2848"), ("#ffffff", "#ffe07a", "#a8680c", "#6a2848"),
                  ("#8a4468", "#b46a90", "#4a1632", "#ffffff"), ("#ff9ab0", "#d4143c", "#7a0420", "#ffffff")]),
]


def main():
    shutil.rmtree(STYLES, ignore_errors=True)
    STYLES.mkdir(parents=True)
    for skin in SKINS:
        make(skin)


if __name__ == "__main__":
    main()
