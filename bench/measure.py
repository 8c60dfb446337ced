"""What the comparisons share: timed runs of programs, diaries in a program folder of their own, the machine.

A run counts only when other programs left the machine alone meanwhile: less than a fifth of one processor. Otherwise it is
repeated until it does or patience ends; a row with such a run is marked with "~".
"""

import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time
from dataclasses import dataclass

BENCH = pathlib.Path(__file__).resolve().parent
MOST_DISTURBANCE = 0.2
PATIENCE_SECONDS = float(os.environ.get("BENCH_PATIENCE", "120"))
TICKS = os.sysconf("SC_CLK_TCK")

# A process inherits the peak size of the one that starts it, so a small one stands between.
LAUNCHER = """
import os, sys, time
start = time.perf_counter()
child = os.posix_spawnp(sys.argv[2], sys.argv[2:], os.environ)
status, usage = os.wait4(child, 0)[1:]
seconds = time.perf_counter() - start
code = os.waitstatus_to_exitcode(status)
os.write(int(sys.argv[1]), f"[{code}, {seconds}, {usage.ru_utime + usage.ru_stime}, {usage.ru_maxrss}]".encode())
"""


@dataclass
class Run:
    seconds: float
    processor: float  # seconds of processor time
    megabytes: float  # largest resident size
    disturbance: float  # processors that other programs used meanwhile


@dataclass
class Result:
    seconds: float  # medians
    processor: float
    megabytes: float
    runs: int
    is_disturbed: bool


def busy_seconds():
    """Processor time of the whole machine so far."""
    fields = pathlib.Path("/proc/stat").read_text().split("\n", 1)[0].split()[1:]
    user, nice, system, _idle, _wait, interrupts, soft, steal = map(int, fields[:8])
    return (user + nice + system + interrupts + soft + steal) / TICKS


def once(command, cwd=None, stdin=None, stderr=None):
    words = list(map(str, command))
    reader, writer = os.pipe()
    with open(stdin or os.devnull, "rb") as source:
        busy = busy_seconds()
        subprocess.run(
            [sys.executable, "-I", "-S", "-c", LAUNCHER, str(writer), *words],
            cwd=cwd, stdin=source, stdout=subprocess.DEVNULL, stderr=stderr, pass_fds=[writer], check=True)
        busy = busy_seconds() - busy
    os.close(writer)
    with os.fdopen(reader) as answer:
        code, seconds, processor, kilobytes = json.load(answer)
    if code != 0:
        sys.exit(f"failed with exit code {code}: {' '.join(words)}")
    return Run(seconds, processor, kilobytes * 1024 / 1e6, max(0.0, busy - processor - 0.02) / seconds)


def wait_for_quiet(deadline):
    while time.monotonic() < deadline:
        busy, start = busy_seconds(), time.monotonic()
        time.sleep(0.5)
        if (busy_seconds() - busy) / (time.monotonic() - start) < MOST_DISTURBANCE:
            return
        time.sleep(1)


def measured(command, prepare=lambda: None, runs=5, **options):
    """Medians of `runs` undisturbed runs; `prepare` comes before each and is not timed."""
    done = []
    disturbed = []
    deadline = time.monotonic() + PATIENCE_SECONDS
    while len(done) < runs:
        prepare()
        os.sync()
        wait_for_quiet(deadline)
        run = once(command() if callable(command) else command, **options)
        if run.disturbance <= MOST_DISTURBANCE:
            done.append(run)
        elif time.monotonic() > deadline:
            disturbed.append(run)
            done.append(run)
    median = lambda field: statistics.median(getattr(run, field) for run in done)  # noqa: E731
    return Result(median("seconds"), median("processor"), median("megabytes"), runs, bool(disturbed))


def benchmark_medians(command, repetitions):
    """Median milliseconds of processor time by name of a program of Google Benchmark. The repetitions of all benchmarks are mixed, so
    that a busy moment of the machine falls on none alone."""
    wait_for_quiet(time.monotonic() + PATIENCE_SECONDS)
    options = [f"--benchmark_repetitions={repetitions}", "--benchmark_enable_random_interleaving=true",
               "--benchmark_format=json"]
    busy, start = busy_seconds(), time.monotonic()
    answer = json.loads(subprocess.check_output([*map(str, command), *options], stderr=subprocess.DEVNULL))
    busy = busy_seconds() - busy
    print(f"\nother programs used {max(0.0, busy / (time.monotonic() - start) - 1):.2f} processors meanwhile")
    return {row["run_name"]: row["cpu_time"] for row in answer["benchmarks"] if row.get("aggregate_name") == "median"}


def report(name, result, reference=None):
    mark = "~" if result.is_disturbed else " "
    ratio = f"{result.seconds / reference.seconds:8.3f}" if reference else " " * 8
    print(
        f"{name:44}{mark}{result.seconds:8.3f}{result.processor:10.3f}{result.megabytes:8.1f}{ratio}", flush=True
    )


def report_head(ratio="ratio"):
    print(f"{'median of the runs':44} {'seconds':>8}{'processor':>10}{'MB':>8}{ratio:>8}", flush=True)


def machine():
    cpu = next(
        (line.split(":")[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name")), "unknown"
    )
    memory = int(open("/proc/meminfo").readline().split()[1]) / 1e6
    system = next(
        (line.split("=")[1].strip().strip('"') for line in open("/etc/os-release") if line.startswith("PRETTY_NAME")),
        sys.platform,
    )
    return f"{cpu}, {os.cpu_count()} cores, {memory:.0f} GB, {system}, Linux {os.uname().release.split('-')[0]}"


def literal(value):
    """A value as a statement of SQL spells it."""
    if value is None:
        return "NULL"
    if isinstance(value, (bool, int)):
        return str(int(value))
    return "'" + value.replace("'", "''") + "'"


class Diary:
    """A copy of the program folder with a diary in it, and a site folder beside."""

    def __init__(self, program_folder, folder, now):
        self.folder = pathlib.Path(folder)
        self.home = self.folder / "home"
        self.data = self.home / "UserData"
        self.site = self.folder / "site"
        self.now = now
        self.trash = 0
        shutil.copytree(program_folder, self.home)
        self.call("start")
        self.set("diary.ini", "ALL", "SaveFilePath", f"{self.site}/")
        self.set("diary.ini", "ALL", "SaveFileName", "index.htm")
        self.site.mkdir()

    def command(self, *words):
        return [self.home / "velloria-cli", "--now", self.now, *words]

    def call(self, *words):
        once(self.command(*words))

    def set(self, file, section, key, value):
        self.call("ini", "set", self.data / file, section, key, value)

    def put(self, lines):
        self.call("entry", "put", "--keep-time", lines)
        shutil.copy(self.data / "diary.mdb", self.folder / "kept.mdb")

    def forget_site(self):
        """Back to the diary before its first site. The old pages are moved away, not deleted: the file system goes on
        with deletions in the background, at the cost of the next run."""
        self.trash += 1
        trash = self.folder / f"trash-{self.trash}"
        trash.mkdir()
        for path in [self.site, self.data / "DiaryLog", *self.data.glob("*.tmp")]:
            if path.exists():
                path.rename(trash / path.name)
        self.site.mkdir()
        shutil.copy(self.folder / "kept.mdb", self.data / "diary.mdb")
