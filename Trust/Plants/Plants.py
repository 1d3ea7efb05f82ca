#!/usr/bin/env python3
"""Plants.py [name]: whether the tests notice the faults of the tables beside this file, or those with that name.

A copy of the sources in build/plants contains all faults, each behind a switch that the environment turns on. A table
has a paragraph for each fault:

    what goes wrong
        in  <file>[: <text before or around it>]
        was <expression, or statement with its semicolon; once in the file, or the first from that text on>
        is  <the faulty one, which may be empty for a statement>
        why <the reason why no test notices it>
"""
import concurrent.futures, json, os, re, resource, shutil, signal, subprocess, sys, tempfile, threading, time, zlib
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
COPY = PROJECT / "build/plants"
BUILD = COPY / "build/release"
CHECKS = "Allocator|Archive|Blit|Configuration|Example|ExitWith|Faults|Loading"  # no packages, no headers
TARGETS = r"^(?!ZmDebuggers)(Zm\w+Tests?|ZmExample\w+|ZmLoadingModule|ZmDisturber|zmarchive): phony"
LEAST = 85  # percent of the faults
WORKERS = 2
SKIPPED = 77  # the exit code of a check that cannot run here
free_workers, numbers = list(range(WORKERS)), threading.Lock()


class Plant:
    def __init__(self, family, paragraph):
        name, *lines = paragraph.splitlines()
        self.family, self.name, self.parts = family, name, {"was": [], "is": [], "why": []}
        for line in lines:
            key, _, text = line.strip().partition(" ")
            self.parts.setdefault(key, []).append(text.strip())
        self.was, self.new, self.why = (" ".join(self.parts[key]) for key in ("was", "is", "why"))
        self.file, _, self.context = self.parts["in"][0].partition(": ")
        self.number = zlib.crc32(f"{family} {name}".encode())  # stays the same if others come and go

    def find(self, source):
        """Where the original stands."""
        start = 0
        if self.context:
            start = once(self.context, source, "the place").start()
            return pattern(self.was).search(source, start).span()
        return once(self.was, source, "the original").span()

    def code(self, old):
        if self.was.endswith((";", "}")):
            return f"if (::plant::Is({self.number}u)) {{ {self.new} }} else {{ {old} }}"
        return f"(::plant::Is({self.number}u) ? ({self.new}) : ({old}))"


def pattern(text):
    """Matches the text with any white space between its words."""
    words = re.findall(r"\w+|[^\w\s]", text)
    return re.compile(r"(?<!\w)" * words[0].isidentifier() + r"\s*".join(map(re.escape, words)))


def once(text, source, what):
    found = list(pattern(text).finditer(source))
    if len(found) != 1:
        raise ValueError(f"{what} stands there {len(found)} times")
    return found[0]


def read_tables():
    for table in sorted(Path(__file__).parent.glob("*.txt")):
        for paragraph in re.split(r"\n{2,}", table.read_text().strip()):
            yield Plant(table.stem, paragraph)


def write_copy(plants):
    """Copies the tree with the faults in it; files that stay the same keep their time. Returns what is wrong."""
    errors = []
    tracked = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=PROJECT, capture_output=True,
                             text=True, check=True).stdout.split("\n")
    for name in filter(lambda name: (PROJECT / name).is_file(), tracked):
        content, places = (PROJECT / name).read_bytes(), []
        for plant in (plant for plant in plants if plant.file == name):
            try:
                places.append((*plant.find(content.decode()), plant))
            except (ValueError, AttributeError) as error:
                errors.append(f"{plant.family}: {plant.name}: no longer applies to {name}: {error}")
        text, last = content.decode() if places else "", len(content)
        for start, end, plant in sorted(places, key=lambda place: place[0], reverse=True):
            if end > last:
                errors.append(f"{plant.family}: {plant.name}: overlaps another fault")
            text, last = text[:start] + plant.code(text[start:end]) + text[end:], start
        content = text.encode() if places else content
        target = COPY / name
        if not target.exists() or target.read_bytes() != content:
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(content)
            shutil.copymode(PROJECT / name, target)
    missing = {plant.file for plant in plants} - set(tracked)
    return errors + [f"there is no file {name}" for name in missing]


def build():
    """Builds the programs and returns the commands of the tests by name."""
    def run(*command):
        result = subprocess.run(command, cwd=COPY, capture_output=True, text=True)
        if result.returncode != 0:
            sys.exit("\n".join((result.stdout + result.stderr).splitlines()[-60:]))
        return result.stdout
    switch = f"-include {COPY}/Trust/Plants/Plant.h"
    run("cmake", "--preset", "release", "-DZMMATH_WERROR=OFF", f"-DCMAKE_CXX_FLAGS={switch}")
    known = run("cmake", "--build", "--preset", "release", "--target", "help")
    run("cmake", "--build", "--preset", "release", f"-j{WORKERS}", "--target", *re.findall(TARGETS, known, re.M))
    listed = json.loads(run("ctest", "--test-dir", str(BUILD), "--show-only=json-v1"))["tests"]
    commands = {test["name"].split("/", 1)[1]: test.get("command") for test in listed}
    return {name: command for name, command in commands.items() if re.match(rf"(?!Check\.)|Check\.({CHECKS})", name)}


def in_order(family, commands):
    """The tests of the family first, the slowest one last."""
    tests = "".join(path.read_text() for path in (PROJECT / "Tests" / family).rglob("*.cpp"))
    own = re.findall(r"^TEST(?:_[FP])?\((\w+),", tests, re.M)
    def place(name):
        return name == "Check.Faults", name.split(".")[0] not in own and not (family == "Tools" and "Tool" in name)
    return {name: commands[name] for name in sorted(commands, key=place)}


def run_one(name, command, number, limit):
    """Whether the test passes with the fault of that number; what it prints, or "hangs"."""
    with numbers:
        worker = free_workers.pop()
    own = COPY / f"worker{worker}"  # several run at the same time
    own.mkdir(exist_ok=True)
    command = [word.replace(f"{BUILD}/Tests/Checks/", f"{own}/") for word in command]
    with tempfile.TemporaryDirectory() as temporary:
        environment = dict(os.environ, TMPDIR=temporary, ZMMATH_PLANT=str(number))
        process = subprocess.Popen(command, cwd=own, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT, text=True, errors="replace", start_new_session=True)
        try:
            output = process.communicate(timeout=limit)[0]
        except subprocess.TimeoutExpired:
            output = "hangs"
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()
    with numbers:
        free_workers.append(worker)
    return process.returncode in (0, SKIPPED), output


def try_plant(plant, commands, limits):
    for name, command in in_order(plant.family, commands).items():
        passes, output = run_one(name, command, plant.number, limits[name])
        if not passes:
            return name + (" (hangs)" if output == "hangs" else "")
    return None


def limits_of(pool, commands):
    """Runs all tests without a fault. Returns how long each may take with one."""
    def run(item):
        start = time.monotonic()
        passes, output = run_one(*item, 0, 1000)
        if not passes:
            print(f"{item[0]} fails without any fault\n{output[-3000:]}")
            os._exit(1)
        return item[0], 60 + 10 * (time.monotonic() - start)
    return dict(pool.map(run, commands.items()))


def main():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    wanted = sys.argv[1] if len(sys.argv) > 1 else ""
    plants = list(read_tables())
    errors = write_copy(plants)
    if errors:
        sys.exit("\n".join(errors))
    commands, sums = build(), {}
    with concurrent.futures.ThreadPoolExecutor(WORKERS) as pool:
        limits = limits_of(pool, commands)
        chosen = [plant for plant in plants if wanted in f"{plant.family}: {plant.name}"]
        for plant, caught in zip(chosen, pool.map(lambda plant: try_plant(plant, commands, limits), chosen)):
            total = sums.setdefault(plant.family, [0, 0])
            total[0] += caught is not None
            total[1] += 1
            result = f"caught by {caught}" if caught else f"SURVIVES ({plant.why or 'nobody knows why'})"
            print(f"{plant.family}: {plant.name}: {result}", flush=True)
    for family, (caught, count) in sums.items():
        print(f"{family}: {caught} of {count}")
    caught, count = (sum(total[i] for total in sums.values()) for i in (0, 1))
    print(f"{caught} of {count} caught")
    sys.exit(100 * caught < LEAST * count)


main()
