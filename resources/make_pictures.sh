#!/bin/sh
# Makes every picture of the program, in resources/pictures, from the drawings in resources/art.
# Run it after a change of a drawing and commit the result: the build itself takes the pictures as they are.
# Needs rsvg-convert (librsvg2-bin), the DejaVu fonts and python3.
set -eu
command -v rsvg-convert >/dev/null || { echo "rsvg-convert is missing (package librsvg2-bin)" >&2; exit 1; }
exec python3 "$(dirname "$0")/make_pictures.py"
