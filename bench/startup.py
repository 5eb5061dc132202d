#!/usr/bin/env python3
"""How long from exec to the painted board, and how much memory the program then holds.

    bench/startup.py [--bin build/release/bin] [--notes 10000] [--runs 15] [--window-manager] [--limit-ms N --limit-mb N]

Starts the program on a private virtual display with a file of that many notes, splash off, and looks at the screen until
titles stand on the board. Prints the median and the spread; with limits, ends with 1 when the median is over one.
Needs Xvfb and libX11 (and openbox for --window-manager).
"""
import argparse
import ctypes
import os
import pathlib
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time

LEFT, TOP = 100, 100
# Part of the first row of cells: where titles stand, in the frame's window.
AREA = (60, 132, 240, 20)
TITLE_BLUE = 0x0000FF


class Screen:
    """Reads pixels of the root window."""

    class Image(ctypes.Structure):
        _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int),
                    ("format", ctypes.c_int), ("data", ctypes.POINTER(ctypes.c_uint32))]

    def __init__(self, display):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        self.x.XGetImage.restype = ctypes.POINTER(self.Image)
        self.x.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int, ctypes.c_uint,
                                     ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
        self.x.XDestroyImage.argtypes = [ctypes.c_void_p]
        self.display = self.x.XOpenDisplay(display.encode())
        if not self.display:
            sys.exit(f"no display {display}")
        self.root = self.x.XDefaultRootWindow(self.display)

    def shows_titles(self):
        x, y, width, height = AREA
        image = self.x.XGetImage(self.display, self.root, LEFT + x, TOP + y, width, height, 0xFFFFFFFF, 2)
        found = any(image.contents.data[i] & 0xFFFFFF == TITLE_BLUE for i in range(0, width * height))
        self.x.XDestroyImage(image)
        return found


def resident_mb(pid):
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith("VmRSS:"):
            return int(line.split()[1]) / 1024
    return 0.0


def start_display(folder, with_manager):
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
                              pass_fds=[write], stderr=subprocess.DEVNULL)
    os.close(write)
    display = ":" + os.read(read, 16).decode().strip()
    started = [server]
    if with_manager:
        started.append(subprocess.Popen(["openbox"], env={**os.environ, "DISPLAY": display}, stderr=subprocess.DEVNULL))
        time.sleep(1)
    return display, started


def prepare(binaries, folder, notes):
    program = folder / "program"
    shutil.copytree(binaries, program)
    rows = folder / "notes.csv"
    with rows.open("w", newline="") as out:
        out.write("Title,Text\r\n")
        for i in range(notes):
            out.write(f'"Note {i:05}","Text of note {i}, long enough to fill the lines of its cell on the board."\r\n')
    works = program / "Works"
    works.mkdir(exist_ok=True)
    file = works / "bench.jot"
    control = str(program / "jotctl")
    subprocess.run([control, "new", str(file)], check=True)
    subprocess.run([control, "import", str(file), str(rows)], check=True, stdout=subprocess.DEVNULL)
    (program / "jotlet.ini").write_text(f"[Preference]\nDefaulFile={file}\nPaneId=1\nWPLeft={LEFT}\nWPTop={TOP}\n"
                                        f"WPRight={LEFT + 420}\nWPBottom={TOP + 430}\n")
    with (program / "Pinwell.ini").open("a") as ini:
        ini.write("Splash=0\nSound=0\nAnnimation=0\n")
    return program / "jotlet"


def measure(program, screen, environment):
    start = time.perf_counter()
    process = subprocess.Popen([str(program)], env=environment, stderr=subprocess.DEVNULL)
    try:
        while not screen.shows_titles():
            if process.poll() is not None or time.perf_counter() - start > 20:
                sys.exit("the board did not come")
        taken = (time.perf_counter() - start) * 1000
        time.sleep(0.3)
        memory = resident_mb(process.pid)
    finally:
        process.send_signal(signal.SIGTERM)
        process.wait()
    while screen.shows_titles():
        time.sleep(0.01)
    return taken, memory


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", default="build/release/bin")
    parser.add_argument("--notes", type=int, default=10000)
    parser.add_argument("--runs", type=int, default=15)
    parser.add_argument("--window-manager", action="store_true")
    parser.add_argument("--limit-ms", type=float)
    parser.add_argument("--limit-mb", type=float)
    options = parser.parse_args()

    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        program = prepare(pathlib.Path(options.bin), folder, options.notes)
        display, started = start_display(folder, options.window_manager)
        try:
            (folder / "run").mkdir(mode=0o700)
            environment = {**os.environ, "DISPLAY": display, "QT_QPA_PLATFORM": "xcb", "HOME": name,
                           "XDG_DATA_HOME": str(folder / "data"), "XDG_RUNTIME_DIR": str(folder / "run")}
            screen = Screen(display)
            measure(program, screen, environment)  # the first run reads everything from the disk
            results = [measure(program, screen, environment) for _ in range(options.runs)]
        finally:
            for one in reversed(started):
                one.terminate()
                one.wait()

    times = [taken for taken, _ in results]
    memory = statistics.median(mb for _, mb in results)
    median = statistics.median(times)
    print(f"{options.notes} notes: {median:.0f} ms to the painted board (best {min(times):.0f}, worst {max(times):.0f}), "
          f"{memory:.1f} MB resident")
    over_time = options.limit_ms is not None and median > options.limit_ms
    over_memory = options.limit_mb is not None and memory > options.limit_mb
    sys.exit(1 if over_time or over_memory else 0)


if __name__ == "__main__":
    main()
