"""What the benchmarks share: the loads that they put on the machine, the table that they print."""

import contextlib
import fcntl
import os
import shutil
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent
PROGRAMS = TOP / "build/bench/benchmarks"
TARNCTL = TOP / "build/bench/src/app/tarnctl"


@dataclass
class Load:
    """What the machine shall run in all, and how often each measure is taken there."""

    name: str
    processes: int
    listeners: int
    owners: int
    descriptors: int
    runs: int
    stock_runs: int
    warm_target: int


LOADS = [
    Load("small", 80, 5, 5, 0, runs=100, stock_runs=15, warm_target=40),
    Load("medium", 1000, 500, 305, 8000, runs=30, stock_runs=9, warm_target=15),
    Load("large", 3000, 2000, 970, 60000, runs=15, stock_runs=5, warm_target=20),
]
# Only the listeners differ from the large load.
FEW_LISTENERS = Load("few", 3000, 5, 5, 60000, runs=15, stock_runs=0, warm_target=0)

@dataclass
class Table:
    rows: list = field(default_factory=list)
    is_met: bool = True

    def add(self, load, what, ours, theirs, ratio, target="", is_met=None):
        word = "" if is_met is None else "yes" if is_met else "NO"
        self.rows.append((load, what, ours, theirs, ratio, target, word))
        self.is_met = self.is_met and is_met is not False

    def add_share(self, load, what, ours, theirs, most):
        ratio = ours / theirs
        self.add(load, what, time(ours), time(theirs), f"{ratio:.2f}", f"<= {most}", ratio <= most)

    def add_factor(self, load, what, ours, theirs, least=None):
        ratio = theirs / ours
        target, is_met = (f">= {least} x", ratio >= least) if least else ("", None)
        self.add(load, what, time(ours), time(theirs), f"{ratio:.1f} x", target, is_met)

    def print(self):
        rows = [("load", "measure", "ours", "theirs", "ratio", "target", "met"), *self.rows]
        widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
        for row in rows:
            texts = (text.ljust(width) if column < 2 else text.rjust(width)
                     for column, (text, width) in enumerate(zip(row, widths)))
            print("  ".join(texts).rstrip())


def time(microseconds):
    return f"{microseconds / 1000:.2f} ms" if microseconds < 100_000 else f"{microseconds / 1000:.0f} ms"


def fail(text):
    sys.exit(f"{Path(sys.argv[0]).name}: {text}")


def tool(name, package):
    return shutil.which(name, path=f"{os.environ.get('PATH', '')}:/usr/sbin:/sbin") or fail(
        f"'{name}' is missing; install it with: apt-get install {package}")


def numbers(*command):
    """What a benchmark program prints: one line of whole numbers."""
    run = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, text=True, check=False)
    if run.returncode != 0:
        fail(f"'{Path(command[0]).name}' failed")
    return [int(word) for word in run.stdout.split()]


@contextlib.contextmanager
def standing(load):
    """Keeps `load` on the machine; gives the processes, listeners and descriptors that were reached."""
    goal = [load.processes, load.listeners, load.owners, load.descriptors]
    # In a session of its own, an interrupt from the keyboard leaves it to us to end it.
    process = subprocess.Popen([PROGRAMS / "benchmark-load", *map(str, goal)], text=True, start_new_session=True,
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    try:
        reached = [int(word) for word in process.stdout.readline().split()]
        if len(reached) != 3:
            fail(f"the {load.name} load could not be set up")
        yield reached
    finally:
        process.stdin.close()
        process.wait()


@contextlib.contextmanager
def only_one():
    """Two benchmarks at once would measure each other."""
    with open(TOP / "build/bench/benchmark.lock", "w", encoding="utf-8") as lock:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            fail("another one is running")
        yield


def build():
    """Installs and builds what the benchmarks need."""
    for command in (["tools/setup.sh", "test"], ["tools/build.sh", "bench"]):
        if subprocess.run(command, cwd=TOP, stdout=sys.stderr, check=False).returncode != 0:
            sys.exit(1)
