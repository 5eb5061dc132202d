#!/usr/bin/env python3
"""Draws the illustrations of the help pages, resources/beside/Help/img/*.svg."""
import pathlib

OUT = pathlib.Path(__file__).resolve().parent / "beside" / "Help" / "img"

YELLOW, GREEN, RED, BLUE, GREY = "#ffe765", "#76e476", "#ff5e49", "#94b1ec", "#f5f5f5"
INK, SOFT, LINK, DIALOG, EDGE, BOARD = "#2e2229", "#6d5a64", "#0000d8", "#ece6e2", "#8b8088", "#ffffc0"

HEAD = """<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {w} {h}" width="{w}" height="{h}" \
font-family="DejaVu Sans, Liberation Sans, Verdana, sans-serif">
<title>{title}</title>
<defs>
<linearGradient id="bar" x1="0" y1="0" x2="0" y2="1"><stop offset="0" stop-color="#e62c1e"/><stop offset="1" stop-color="#b40000"/></linearGradient>
<linearGradient id="steel" x1="0" y1="0" x2="0" y2="1"><stop offset="0" stop-color="#eef2f6"/><stop offset="1" stop-color="#aab7c5"/></linearGradient>
<linearGradient id="sky" x1="0" y1="0" x2="0" y2="1"><stop offset="0" stop-color="#6fb4ee"/><stop offset="1" stop-color="#e8f6ff"/></linearGradient>
</defs>
"""


def save(name, width, height, title, *parts):
    (OUT / name).write_text(HEAD.format(w=width, h=height, title=title) + "\n".join(parts) + "\n</svg>\n")


# ---- shapes

def text(x, y, words, size=12, fill=INK, anchor="start", bold=False):
    weight = ' font-weight="bold"' if bold else ""
    return f'<text x="{x}" y="{y}" font-size="{size}" fill="{fill}" text-anchor="{anchor}"{weight}>{words}</text>'


def middle(x, y, words, size=12, fill=INK, bold=False):
    return text(x, y, words, size, fill, "middle", bold)


def rect(x, y, w, h, fill, stroke="none", rx=0, more=""):
    return f'<rect x="{x}" y="{y}" width="{w}" height="{h}" fill="{fill}" stroke="{stroke}" rx="{rx}" {more}/>'


def path(d, fill="none", stroke="none", width=1, more=""):
    return f'<path d="{d}" fill="{fill}" stroke="{stroke}" stroke-width="{width}" {more}/>'


def group(transform, *parts):
    return f'<g transform="{transform}">' + "".join(parts) + "</g>"


def darker(colour):
    return "#" + "".join(f"{max(0, int(colour[i:i + 2], 16) - 60):02x}" for i in (1, 3, 5))


# ---- things of the program

def bell(x, y, size=1.0):
    body = path("M8 0C4 0 3 4 3 7C3 10 1 11 0 13H16C15 11 13 10 13 7C13 4 12 0 8 0Z", "#ffb000", "#4a2e3e", 1.3, 'stroke-linejoin="round"')
    return group(f"translate({x} {y}) scale({size})", body, '<circle cx="8" cy="15" r="2" fill="#d40000"/>')


def clip(x, y, size=1.0):
    wire = path("M10 4V11C10 15 4 15 4 11V3C4 0 8 0 8 3V10C8 11.5 6 11.5 6 10V5", "none", "#3050a0", 1.3, 'stroke-linecap="round"')
    return group(f"translate({x} {y}) scale({size})", wire)


def basket(x, y, size):
    return group(
        f"translate({x} {y}) scale({size})",
        '<ellipse cx="21" cy="14" rx="15" ry="4" fill="#5a2c08"/>',
        path("M10 16L14 4L24 1L31 6L30 17Z", YELLOW, "#a86400"),
        path("M6 14L9.5 36C10 39 32 39 32.5 36L36 14C35 20 7 20 6 14Z", "#e58a18", "#5a2c08"),
        path("M8 25C12 29 30 29 34 25M9 31C13 35 29 35 33 31M14 18L16 37M21 19V38M28 18L26 37", "none", "#5a2c08", 1, 'opacity="0.5"'),
        path("M6 14C7 20 35 20 36 14", "none", "#d40000", 2.6))


def note(x, y, w, h, colour, title, lines, selected=False, category=""):
    dark = darker(colour)
    parts = [rect(x - 5, y - 5, w + 10, h + 10, "none", INK, 2, 'stroke-dasharray="3 3" stroke-width="1.5"')] if selected else []
    parts += [
        group(f"translate({x + w / 2 - 15} {y})", path("M0 0H30V11L23 17H0Z", colour, dark, 1.5), path("M23 17V11H30Z", dark),
              path("M5 5H24M5 10H18", "none", dark, 1.5)),
        middle(x + w / 2, y + 32, title, 11.5, LINK), path(f"M{x} {y + 38}H{x + w}", "none", "#c0c0c0")]
    parts += [middle(x + w / 2, y + 52 + 14 * i, line, 10.5, "#111") for i, line in enumerate(lines)]
    if category:
        parts.append(text(x + 2, y + h - 2, f"[{category}]", 9.5, LINK))
    return "".join(parts)


def calendar(x, y, w, chosen, today):
    column = w / 7
    parts = [rect(x, y, w, 16, "#d40000"), text(x + 4, y + 12, "2026", 10, "#fff"), text(x + w - 4, y + 12, "November", 10, "#fff", "end"),
             path(f"M{x} {y + 34}H{x + w}", "none", "#111")]
    parts += [middle(x + column * (i + 0.5), y + 30, letter, 10, "#111" if i else "#d40000") for i, letter in enumerate("SMTWTFS")]
    for day in range(1, 31):
        left, top = round(x + column * ((day - 1) % 7), 1), y + 37 + (day - 1) // 7 * 17
        if day == chosen:
            parts.append(rect(left, top, round(column, 1), 16, "#e1e2b2", "#111"))
        parts.append(middle(round(left + column / 2, 1), top + 12, day, 9.5, "#d40000" if day == today else "#111"))
    return "".join(parts)


def window(x, y, w, h, title, *parts):
    cap = f"M{x} {y + 26}V{y + 4}Q{x} {y} {x + 4} {y}H{x + w - 4}Q{x + w} {y} {x + w} {y + 4}V{y + 26}Z"
    return "".join([rect(x + 4, y + 5, w, h, "#000", rx=4, more='opacity="0.15"'), rect(x, y, w, h, "#a9b6c4", "#3e4a57", 4),
                    path(cap, "url(#steel)", "#3e4a57"), middle(x + w / 2, y + 18, title, 12.5, "#17222e", True), *parts])


def field(x, y, w, h, *lines):
    return rect(x, y, w, h, "#fff", EDGE) + "".join(text(x + 6, y + 17 + 18 * i, line) for i, line in enumerate(lines))


def push(x, y, words, default=False):
    return rect(x, y, 104, 26, "#f4f0ee", INK if default else "#9a8f96", 3, 'stroke-width="1.5"' if default else "") + middle(x + 52, y + 17, words)


def callout(number, x, y, to_x, to_y):
    return (path(f"M{x} {y}L{to_x} {to_y}", "none", "#342730", 1.6) + f'<circle cx="{to_x}" cy="{to_y}" r="3" fill="#342730"/>'
            + f'<circle cx="{x}" cy="{y}" r="12" fill="#342730"/>' + middle(x, y + 4.5, number, 13, "#ffe743", True))


def dashed(d, width=2.5):
    return path(d, "none", "#d40000", width, 'stroke-dasharray="6 5"')


# ---- the pictures

def board():
    x, y, w, h = 90, 16, 540, 438
    top, cells, letters = y + 134, x + 62, x + w - 138
    parts = []
    for i, glyph in enumerate(("M4 11H11", "M4 4H11V11H4Z", "M4 4L11 11M11 4L4 11")):
        left = x + w - 70 + i * 22
        parts += [rect(left, y + 5, 16, 16, "#f2f5f8", "#54626f", 3),
                  group(f"translate({left + 0.5} {y + 5.5})", path(glyph, "none", "#22303d", 1.8))]
    parts += [rect(x + 8, y + 32, 78, 21, "#6d5a66", "#342730"), middle(x + 47, y + 46, "Intro", 11, "#fff", True),
              rect(x + 90, y + 32, 78, 21, "#d01812", "#5e0000"), rect(x + 91, y + 50, 76, 3, "#f0af00"),
              middle(x + 129, y + 46, "Work", 11, "#fff", True), rect(x + 8, y + 58, w - 16, 27, "url(#bar)")]
    for i, word in enumerate(("File", "New", "Edit", "Del", "Find", "Help")):
        parts += [rect(x + 26 + i * 62, y + 65, 13, 13, "#fff3b0", "#5e0000", 2), text(x + 44 + i * 62, y + 76, word, 11.5, "#fff")]
    # the rings, the pane, its strip
    parts += [rect(x + 8, y + 86, w - 16, h - 100, "#f0af00"), rect(x + 15, y + 93, w - 30, h - 114, "#f17e00"),
              rect(x + 24, y + 98, w - 48, h - 124, BOARD), rect(x + 24, y + 98, w - 48, 28, "url(#bar)"),
              path(f"M{x + 42} {y + 109}H{x + 54}L{x + 48} {y + 116}Z", "#fff"), text(x + 60, y + 117, "All Categories", 12, "#fff", bold=True)]
    # the scroll bar
    parts += [rect(x + 30, top, 20, h - 196, "#fff", "#ce5444"), rect(x + 30, top, 20, 20, "#93b9f3", "#ce5444"),
              rect(x + 30, top + h - 216, 20, 20, "#93b9f3", "#ce5444"), rect(x + 30, top + 21, 20, 60, "#a1c9f3", "#ce5444"),
              path(f"M{x + 35} {top + 13}L{x + 40} {top + 7}L{x + 45} {top + 13}Z", "#fff"),
              path(f"M{x + 35} {top + h - 209}L{x + 40} {top + h - 203}L{x + 45} {top + h - 209}Z", "#fff")]
    parts += [note(cells + 2, top + 6, 98, 92, YELLOW, "Shopping", ["milk, bread,", "lemons"], True, "Home"),
              note(cells + 116, top + 6, 98, 92, GREEN, "Garden", ["ask Ana about", "the seedlings"], category="Ideas"),
              note(cells + 230, top + 6, 98, 92, RED, "Dentist", ["Thursday at", "half past nine"]),
              bell(cells + 230, top + 84, 0.8), clip(cells + 246, top + 84, 0.9), text(cells + 262, top + 96, "[Health]", 9.5, LINK),
              note(cells + 2, top + 120, 98, 92, BLUE, "Trip", ["trains to the", "lake, two bikes"])]
    for i in range(26):
        left, upper, on = letters + i % 5 * 21, top + i // 5 * 21, i == 18
        parts += [rect(left, upper, 19, 19, "#d40000" if on else "#fff3a0", "#5e0000" if on else "#d8b040"),
                  middle(left + 9.5, upper + 14, chr(97 + i), 11, "#fff" if on else INK)]
    parts += [basket(letters + 22, top + h - 300, 1.5), rect(cells, y + h - 46, 60, 20, "#d40000"),
              middle(cells + 30, y + h - 32, "Title", 11, "#fff", True), rect(cells + 60, y + h - 43, 60, 17, "#f0af00"),
              middle(cells + 90, y + h - 31, "Date", 11, "#fff", True), rect(cells, y + h - 29, w - 112, 3, "#d40000")]
    marks = [callout(1, 45, 30, x + 130, 30), callout(2, 45, y + 43, x + 14, y + 43), callout(3, 45, y + 72, x + 18, y + 72),
             callout(4, 45, y + 112, x + 34, y + 112), callout(5, 45, top + 180, cells - 6, top + 230),
             callout(6, 676, top + 60, letters + 106, top + 60), callout(7, 676, top + 190, letters + 72, top + 176),
             callout(8, 676, y + h - 36, cells + 124, y + h - 36)]
    save("board.svg", 720, 470, "The Jotlet window", window(x, y, w, h, "Jotlet : family.jot", *parts), *marks)


def editor():
    parts = [rect(30, 42, 500, 342, DIALOG), text(46, 66, "Title"), text(404, 66, "12 November 2026", 11, INK, "end"),
             field(46, 72, 358, 24, "Dentist"), text(46, 118, "Notes Text"),
             field(46, 124, 358, 150, "Thursday at half past nine.", "Bring the insurance card", "and the old X-ray."),
             text(46, 300, "Categories"), field(46, 306, 190, 24, "Health"), path("M216 315H228L222 322Z", INK),
             rect(252, 311, 14, 14, "#fff", EDGE), text(272, 323, "Confidential"), push(412, 52, "OK", True), push(412, 84, "Cancel"),
             push(412, 128, "Alarm..."), push(412, 160, "Attach..."), text(412, 206, "Color")]
    for i, colour in enumerate((YELLOW, GREEN, RED, BLUE, GREY)):
        parts.append(rect(412, 212 + i * 22, 104, 20, colour, "#111" if i == 2 else "#c9bfc4", 0, 'stroke-width="2"' if i == 2 else ""))
    save("editor.svg", 560, 400, "The note editor", window(28, 16, 504, 370, "Jotlet", *parts))


def drag():
    pointer = path("M0 0V17L4 13.5L6.6 19.5L9.4 18.3L6.9 12.5H12.5Z", "#fff", "#111")
    moved = rect(0, 0, 26, 20, GREEN, "#5b8f34") + path("M4 6H20M4 11H15", "none", "#3f7a22")
    save("drag.svg", 560, 190, "Where a note can be dropped", rect(0, 0, 560, 190, BOARD, rx=8),
         note(24, 44, 104, 92, GREEN, "Garden", ["ask Ana about", "the seedlings"], True), calendar(230, 30, 140, 17, 12), basket(450, 46, 2),
         middle(300, 20, "another day", 12, SOFT), middle(492, 40, "the bin", 12, SOFT),
         dashed("M140 80C175 60 200 70 246 100"), dashed("M140 112C230 206 400 196 448 118"),
         group("translate(196 58) rotate(6)", moved), group("translate(190 50) scale(1.2)", pointer))


def alarm():
    fired = window(236, 22, 296, 146, "Alarm", rect(237, 48, 294, 119, DIALOG), bell(252, 62, 2.2), text(304, 70, "Alarm Date: 12 November 2026"),
                   text(304, 90, "Alarm Time: 9:00 am"), field(304, 100, 212, 28, "Thursday at half past nine"), push(304, 136, "OK", True),
                   push(412, 136, "Cancel"))
    save("alarm.svg", 560, 190, "An alarm", rect(0, 0, 560, 190, BOARD, rx=8),
         note(30, 44, 110, 100, RED, "Dentist", ["Thursday at", "half past nine"]), bell(30, 128),
         path("M160 96H214M206 88L216 96L206 104", "none", "#d40000", 3), fired)


def computer(x, y, name, doing):
    parts = [rect(x, y, 150, 100, "#4a3e46", INK, 6), rect(x + 8, y + 8, 134, 78, BOARD), rect(x + 8, y + 8, 134, 12, "url(#bar)"),
             path(f"M{x + 60} {y + 100}H{x + 90}L{x + 98} {y + 118}H{x + 52}Z", "#6d5a66"), rect(x + 34, y + 116, 82, 7, "#4a3e46", rx=3)]
    for i, colour in enumerate((YELLOW, GREEN, RED)):
        left = x + 18 + i * 42
        parts += [rect(left, y + 30, 32, 26, colour, darker(colour)),
                  path(f"M{left + 4} {y + 38}H{left + 26}M{left + 4} {y + 45}H{left + 20}", "none", darker(colour))]
    return "".join(parts) + middle(x + 75, y + 76, doing, 10, SOFT) + middle(x + 75, y + 144, name, 13, INK, True)


def share():
    page = group("translate(244 34)", path("M0 0H52L76 24V100H0Z", "#fff", "#8b7f88", 2), path("M52 0V24H76Z", "#d3c9d0", "#8b7f88", 2),
                 path("M14 38H62V78L52 88H14Z", YELLOW, "#c98a00", 2), path("M22 50H54M22 60H54M22 70H42", "none", "#5a3d2b", 2.5),
                 '<circle cx="38" cy="38" r="7" fill="#d40000" stroke="#7a0000"/>')
    lock = group("translate(494 62)", path("M4 8V5C4 -1 14 -1 14 5V8", "none", "#4a2e3e", 2.5), rect(0, 8, 18, 13, "#ffb000", "#4a2e3e", 2))
    save("share.svg", 560, 210, "One file, two computers", rect(0, 0, 560, 210, "#fff8dc", rx=8), computer(20, 30, "Ana", "edits the red note"),
         computer(390, 30, "Ben", "reads it meanwhile"), dashed("M182 84H232M330 84H378", 3),
         path("M190 78L180 84L190 90M370 78L380 84L370 90M224 78L234 84L224 90M338 78L328 84L338 90", "none", "#d40000", 3), page,
         middle(282, 156, "family.jot", 13, INK, True), middle(282, 174, "on a shared folder", 11.5, SOFT), lock)


def kestrel():
    """The bird of the emblem (art/picture_5000.svg), larger and with more of its feathers."""
    brown, rim = "#b4561a", "#4a2410"
    round_off = 'stroke-linejoin="round" stroke-linecap="round"'
    wings = ("M14.5 10C11.5 6.5 7.5 5.2 3.2 6.6C5 8 5.5 9 6.6 9.8C7 10.8 8 11.8 9.2 12.1C10 13.2 12 14 14.5 13.8"
             "C17 14 19 13.2 19.8 12.1C21 11.8 22 10.8 22.4 9.8C23.5 9 24 8 25.8 6.6C21.5 5.2 17.5 6.5 14.5 10Z")
    feathers = ("M6 9.2C8.5 8.6 11 9.4 13 11M23 9.2C20.5 8.6 18 9.4 16 11M7.5 10.8C9.5 10.2 11.5 11 13 12.2"
                "M21.5 10.8C19.5 10.2 17.5 11 16 12.2")
    body = "M14.5 6.8C16.3 6.8 17 8.2 17 9.8C17.4 12.5 16.8 16 14.5 19.4C12.2 16 11.6 12.5 12 9.8C12 8.2 12.7 6.8 14.5 6.8Z"
    hood = "M12.1 9.4C12 7.8 12.9 6.7 14.5 6.7C16.1 6.7 17 7.8 16.9 9.4L15.3 9.2L14.5 11L13.7 9.2Z"
    bird = group("translate(40 18) scale(7.4)", path(wings, brown, rim, 0.4, round_off), path(feathers, "none", "#7a3810", 0.35),
                 path("M13.2 17L10.6 24.2L14.5 25.4L18.4 24.2L15.8 17Z", "#8b96a6", rim, 0.4, round_off),
                 path("M10.9 23.2L14.5 24.3L18.1 23.2L18.4 24.2L14.5 25.4L10.6 24.2Z", "#342730"), path(body, "#f0c48a", rim, 0.4),
                 path(hood, "#8b96a6"), path("M14.1 9.4H14.9L14.5 10.6Z", "#f0af00", rim, 0.2),
                 '<circle cx="13.4" cy="8.6" r="0.45" fill="#221410"/><circle cx="15.6" cy="8.6" r="0.45" fill="#221410"/>',
                 path("M13.5 13L14 13.8M15.5 13L15 13.8M14.5 14.6V15.6M13.6 15.4L14 16M15.4 15.4L15 16", "none", rim, 0.4, round_off))
    week = [rect(318, 52, 206, 128, "#fffdf4", "#905e0d", 5, 'stroke-width="2"'), rect(318, 52, 206, 24, "#d40000", rx=4)]
    week += [middle(332 + i * 29, 69, letter, 12, "#fff", True) for i, letter in enumerate("SMTWTFS")]
    week += [path(f"M{318 + i * 29.4:.1f} 76V180", "none", "#e6d9b0") for i in range(1, 7)]
    for column, top, height, colour in ((0, 90, 30, YELLOW), (2, 84, 44, GREEN), (2, 136, 26, BLUE), (4, 98, 60, RED), (5, 84, 26, YELLOW),
                                        (6, 120, 40, GREEN)):
        week.append(rect(round(321.5 + column * 29.4, 1), top, 22, height, colour, darker(colour), 3))
    save("kestrel.svg", 560, 240, "Kestrel Planner", rect(0, 0, 560, 240, "url(#sky)", rx=10),
         path("M0 206C90 180 170 214 260 196C370 174 460 210 560 188V230Q560 240 550 240H10Q0 240 0 230Z", "#8fc060"), *week, bird)


if __name__ == "__main__":
    OUT.mkdir(parents=True, exist_ok=True)
    for draw in (board, editor, drag, alarm, share, kestrel):
        draw()
