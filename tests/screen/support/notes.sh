# What the tests of the board share, on top of lib.sh: notes asked from the file by jotctl, places found by their colour,
# the look of the cursor.
. "$(dirname "${BASH_SOURCE[0]}")/../lib.sh"
readonly kScreenWidth=1280

jotctl() { "$CONTROL" "$@"; }
# begin: a display, a program folder and an empty note file in `notes`.
begin() {
    start_screen
    new_program
    notes=$SCRATCH/notes.jot
    jotctl new "$notes" || fail "no note file made"
}

# at_colour RRGGBB: where the first pixel of this colour stands on the screen, as "x y".
at_colour() {
    import -silent -window root -depth 8 rgb:- | python3 -c '
import sys
pixels, colour = sys.stdin.buffer.read(), bytes.fromhex(sys.argv[1])
at = pixels.find(colour)
while at % 3 and at >= 0:
    at = pixels.find(colour, at + 1)
if at < 0:
    sys.exit(1)
print(at // 3 % int(sys.argv[2]), at // 3 // int(sys.argv[2]))' "$1" $kScreenWidth
}
has_colour() { at_colour "$1" >/dev/null; }

# ask FILE EXPRESSION: what the Python expression makes of the file's `notes`, a list of what jotctl tells of each.
ask() { jotctl list "$1" --json | python3 -c "import json, sys; notes = json.load(sys.stdin); print($2)"; }
# is FILE EXPRESSION VALUE
is() { [ "$(ask "$1" "$2")" = "$3" ]; }

# How the cursor looks now: its size, its hot spot, a number for its picture.
cursor_look() {
    python3 - <<'END'
import ctypes as c, zlib
class Image(c.Structure):
    _fields_ = [("x", c.c_short), ("y", c.c_short), ("width", c.c_ushort), ("height", c.c_ushort), ("xhot", c.c_ushort),
                ("yhot", c.c_ushort), ("serial", c.c_ulong), ("pixels", c.POINTER(c.c_ulong)), ("atom", c.c_ulong),
                ("name", c.c_char_p)]
x11, fixes = c.CDLL("libX11.so.6"), c.CDLL("libXfixes.so.3")
x11.XOpenDisplay.restype = c.c_void_p
fixes.XFixesGetCursorImage.argtypes = [c.c_void_p]
fixes.XFixesGetCursorImage.restype = c.POINTER(Image)
display = x11.XOpenDisplay(None)
image = fixes.XFixesGetCursorImage(display).contents
count = image.width * image.height
print(f"{image.width}x{image.height}+{image.xhot}+{image.yhot}", zlib.crc32(bytes(str(image.pixels[:count]), "ascii")))
END
}
