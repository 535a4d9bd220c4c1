"""Timing whole processes against each other, round by round.

A ratio is the median over the rounds, each of which runs both commands, one after the other; the
speed of a machine changes from minute to minute, and neighbours see the same of it."""
import dataclasses
import datetime
import os
import platform
import statistics
import subprocess
import sys
import time


@dataclasses.dataclass
class Pair:
    name: str
    ours: list          # a command
    theirs: list        # what it is held against
    mark: float         # the ratio is to be at most this
    free: bool = False  # on all cores; else each on one


@dataclasses.dataclass
class Run:
    seconds: float
    peak: float  # MiB


def run_timed(command, free=False):
    """Runs a command to its end; one that fails ends the program."""
    start = time.perf_counter()
    process = subprocess.Popen(([] if free else ["taskset", "-c", "0"]) + command,
                               stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    said = process.stderr.read()
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode:
        sys.exit(f"{' '.join(command)}: status {process.returncode}: {said.decode()[-300:]}")
    return Run(seconds, usage.ru_maxrss / 1024)


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def remove(paths):
    for path in paths:
        if os.path.exists(path):
            os.remove(path)


def figure(name, mark, ours, theirs, ratios):
    return {"name": name, "mark": mark, "ratio": statistics.median(ratios), "least": min(ratios),
            "greatest": max(ratios), "ours": statistics.median(ours),
            "theirs": statistics.median(theirs)}


def compare(pair, rounds, outputs):
    """The figures of a pair; `outputs` are the files that either writes."""
    ours, theirs = [], []
    for _ in range(rounds):
        remove(outputs)
        ours.append(run_timed(pair.ours, pair.free))
        theirs.append(run_timed(pair.theirs, pair.free))
    remove(outputs)
    a, b = [run.seconds for run in ours], [run.seconds for run in theirs]
    return {**figure(pair.name, pair.mark, a, b, [x / y for x, y in zip(a, b)]),
            "peak": max(run.peak for run in ours)}


def machine():
    with open("/proc/cpuinfo", encoding="ascii") as file:
        names = [line.split(":")[1].strip() for line in file if line.startswith("model name")]
    return {"processor": names[0] if names else platform.machine(), "cores": os.cpu_count(),
            "system": platform.freedesktop_os_release().get("PRETTY_NAME", platform.system()),
            "date": datetime.date.today().isoformat()}
