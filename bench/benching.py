"""What the bench's commands share: building the timing programs of a tree, playing them, statistics."""
import os
import subprocess

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), ".."))
FOLDER = os.path.join(ROOT, "build-bench")
STATISTICS = ("median", 50), ("95 %", 95), ("99 %", 99), ("99.9 %", 99.9), ("worst", 100)

# Scenes of which parts differ too much for one line: (from beat, what plays from there on).
PARTS = {"phone and desktop": ((0, "phone and desktop"), (114, "city through the screen"), (127.5, "city flight"))}


def run(*command, **options):
    return subprocess.run(command, check=True, text=True, **options)


def build(tree, name, *programs):
    """The folder of a tree's timing programs, built for it alone."""
    folder = os.path.join(FOLDER, name)
    run("cmake", "-S", tree, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
        "-DTARVISK_BENCH=ON", stdout=subprocess.DEVNULL)
    run("cmake", "--build", folder, "--target", *programs, stdout=subprocess.DEVNULL)
    return folder


def rows(text):
    """(start in seconds, beat, name, wall ms, CPU ms) of each line that tarvisk-bench printed."""
    for line in text.splitlines():
        fields = line.split("\t")
        if len(fields) == 5:
            yield float(fields[0]), float(fields[1]), fields[2], float(fields[3]), float(fields[4])


def play(program, tree, *options, before=()):
    """The rows of one play."""
    played = subprocess.run([*before, program, *options], cwd=tree, text=True,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    if played.returncode:
        raise RuntimeError(f"{program} {' '.join(options)}: status {played.returncode}\n{played.stdout[-2000:]}")
    return list(rows(played.stdout))


def percentile(values, percent):
    """The smallest of the values that so many percent do not exceed."""
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(len(ordered) * percent / 100))]


def statistics(values, prefix=""):
    return {prefix + label: percentile(values, percent) for label, percent in STATISTICS}


def part_of(name, beat):
    for start, part in reversed(PARTS.get(name, ())):
        if beat >= start:
            return part
    return name
