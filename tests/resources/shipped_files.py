#!/usr/bin/env python3
"""What ships is what the commands of resources/ make, byte for byte, and every link of the help pages leads somewhere."""
import filecmp
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

RESOURCES = pathlib.Path(sys.argv[1])
MADE = ("pictures", "beside/Styles", "beside/*.wav", "beside/Help/img/*.svg", "pictures.qrc")
MAKERS = ("make_pictures.py", "make_skins.py", "make_sounds.py", "make_help_drawings.py")


def files(root):
    return {path.relative_to(root) for path in root.rglob("*") if path.is_file() and "__pycache__" not in path.parts}


def remade(folder):
    """A copy of the resources in which all that is made was taken away and made anew."""
    copy = pathlib.Path(folder) / "resources"
    shutil.copytree(RESOURCES, copy)
    for path in [path for pattern in MADE for path in copy.glob(pattern)]:
        shutil.rmtree(path) if path.is_dir() else path.unlink()
    for maker in MAKERS:
        subprocess.run([sys.executable, copy / maker], check=True)
    return copy


def faults():
    with tempfile.TemporaryDirectory() as folder:
        copy = remade(folder)
        for name in sorted(files(RESOURCES) | files(copy)):
            here, made = RESOURCES / name, copy / name
            if not here.exists() or not made.exists() or not filecmp.cmp(here, made, shallow=False):
                yield f"{name} is not what is made"
    for page in (RESOURCES / "beside/Help").glob("*.htm"):
        text = page.read_text()
        for target in re.findall(r'(?:src|href)="(?!https:)([^"]*)"|url\(([^)]*)\)', text):
            file, _, mark = "".join(target).partition("#")
            if file and not (page.parent / file).is_file() or mark and not file and f'id="{mark}"' not in text:
                yield f"{page.name} leads nowhere: {file or mark}"


if not shutil.which("rsvg-convert"):
    sys.exit(77)
found = list(faults())
print("\n".join(found))
sys.exit(1 if found else 0)
