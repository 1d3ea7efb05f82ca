#!/usr/bin/env python3
"""What a power failure leaves of files that are being saved.

    Replay.py <ZmSaves> <zmarchive>

Records the system calls of each way of saving (with strace), and replays them up to every call, in four ways: all of it
reached the disk; only what was synced; the names but not the contents that were not synced; the contents but not the
names. Each file must be old or new as a whole, and after the last call of the library new however little was synced.
"""

import ast
import os
import pathlib
import re
import subprocess
import sys
import tempfile

CALLS = ("openat,open,creat,write,writev,pwrite64,lseek,ftruncate,fsync,fdatasync,rename,renameat,renameat2,"
         "unlink,unlinkat,linkat")
STRING = re.compile(r'"((?:\\x[0-9a-f]{2})*)"')


class Disk:
    """Files by number, with their contents and what is synced of them, and the names of files."""

    def __init__(self, folder):
        self.contents, self.synced, self.names, self.synced_names = {}, {}, {}, {}
        for path in sorted(pathlib.Path(folder).rglob("*")):
            if path.is_file():
                self.create(str(path), path.read_bytes())
        self.synced, self.synced_names = dict(self.contents), dict(self.names)

    def create(self, path, contents=b""):
        self.names[path] = len(self.contents)
        self.contents[self.names[path]] = contents

    def write(self, file, position, data):
        old = self.contents[file].ljust(position, b"\0")
        self.contents[file] = old[:position] + data + old[position + len(data):]

    def sync(self, path, file):
        if file is not None:
            self.synced[file] = self.contents[file]
            return
        for name in set(self.names) | set(self.synced_names):
            if os.path.dirname(name) == path:
                if name in self.names:
                    self.synced_names[name] = self.names[name]
                else:
                    self.synced_names.pop(name, None)

    def after_failure(self):
        """The contents by name of each way in which the power may fail now."""
        for names in (self.names, self.synced_names):
            for contents in (self.contents, self.synced):
                yield {name: contents.get(file, b"") for name, file in names.items()}


def record(command):
    """The calls of a program that succeed: their name, arguments and result."""
    with tempfile.NamedTemporaryFile("r") as log:
        status = subprocess.run(["strace", "-f", "-y", "-xx", "-s", "10000000", "-e", "trace=" + CALLS, "-o", log.name,
                                 *command]).returncode
        if status != 0:
            sys.exit(f"{command} ended with {status}")
        for line in log:
            match = re.match(r"\d+ +(\w+)\((.*)\) += (-?\d+)(?:<([^>]*)>)?", line)
            if match and int(match[3]) >= 0:
                yield match[1], match[2], int(match[3])


def decode(text):
    return ast.literal_eval("b'" + text + "'")


def path_of(arguments, index):
    """The path of a name after its folder, as strace writes them."""
    found = list(re.finditer(r'(?:AT_FDCWD|\d+)(?:<([^>]*)>)?, "([^"]*)"', arguments))
    if found:
        base, name = decode(found[index][1] or "").decode(), decode(found[index][2]).decode()
    else:
        base, name = "", decode(STRING.findall(arguments)[index]).decode()
    return os.path.normpath(os.path.join(base or os.getcwd(), name))


class Replay:
    """Applies calls to a disk."""

    def __init__(self, disk):
        self.disk, self.open = disk, {}

    def apply(self, name, arguments, result):
        descriptor = re.match(r"\d+", arguments)
        handle = self.open.get(int(descriptor[0])) if descriptor and name not in ("openat", "renameat2") else None
        if name in ("openat", "open", "creat"):
            self.opened(path_of(arguments, 0), arguments, result)
        elif name.startswith("rename"):
            self.disk.names[path_of(arguments, 1)] = self.disk.names.pop(path_of(arguments, 0))
        elif name.startswith("unlink"):
            self.disk.names.pop(path_of(arguments, 0), None)
        elif name == "linkat":
            self.disk.names[path_of(arguments, 1)] = self.disk.names[path_of(arguments, 0)]
        elif handle is not None:
            self.on_handle(handle, name, arguments, result)

    def opened(self, path, arguments, result):
        self.open.pop(result, None)  # closed meanwhile, and another file's number
        if "O_DIRECTORY" not in arguments and not os.path.isdir(path):
            if path not in self.disk.names:
                if "O_CREAT" not in arguments:
                    return
                self.disk.create(path)
            elif "O_TRUNC" in arguments:
                self.disk.contents[self.disk.names[path]] = b""
        file = self.disk.names.get(path)
        end = len(self.disk.contents.get(file, b""))
        self.open[result] = {"path": path, "file": file, "at": end if "O_APPEND" in arguments else 0}

    def on_handle(self, handle, name, arguments, result):
        file = handle["file"]
        if name in ("write", "writev"):
            data = b"".join(decode(text) for text in STRING.findall(arguments))[:result]
            self.disk.write(file, handle["at"], data)
            handle["at"] += result
        elif name == "pwrite64":
            self.disk.write(file, int(arguments.rsplit(", ", 1)[1]), decode(STRING.findall(arguments)[0])[:result])
        elif name == "lseek":
            handle["at"] = result
        elif name == "ftruncate":
            size = int(arguments.rsplit(", ", 1)[1])
            self.disk.contents[file] = self.disk.contents[file][:size].ljust(size, b"\0")
        elif name in ("fsync", "fdatasync"):
            self.disk.sync(handle["path"], file)


def try_saving(what, command, folder, is_durable):
    disk = Disk(folder)
    old = {name: disk.contents[file] for name, file in disk.names.items()}
    calls = list(record(command))
    new = {name: pathlib.Path(name).read_bytes() for name in old}
    assert new != old, what
    replay, states, wrong = Replay(disk), 0, 0
    for name, arguments, result in calls:
        replay.apply(name, arguments, result)
        for left in disk.after_failure():
            states += 1
            wrong += any(left.get(path) not in (old[path], new[path]) for path in old)
    wrong += {name: disk.contents[file] for name, file in disk.names.items() if name in old} != new
    if is_durable:
        wrong += any(left.get(path) != new[path] for left in disk.after_failure() for path in old)
    print(f"{what}: {len(calls)} calls, {states} states, {wrong} wrong")
    return wrong


def main():
    saves, tool = (str(pathlib.Path(argument).resolve()) for argument in sys.argv[1:])
    wrong = 0
    with tempfile.TemporaryDirectory() as folder:
        for what in ("archive", "configuration", "settings"):
            place = os.path.join(folder, what)
            os.mkdir(place)
            subprocess.run([saves, what, place, "the old text"], check=True)
            wrong += try_saving(what, [saves, what, place, "a new text"], place, True)
        place = os.path.join(folder, "tool")
        os.makedirs(place + "/files")
        for name in ("one", "two"):
            pathlib.Path(place, "files", name).write_text("new " * 5000)
        archive = place + "/a.zmbg"
        subprocess.run([tool, "create", "--quiet", archive, place + "/files"], check=True)
        for name in ("one", "two"):
            pathlib.Path(place, "files", name).write_text("old " * 3000)
        extract = [tool, "extract", "--quiet", "--force", "--to", place + "/files", archive]
        wrong += try_saving("extraction", extract, place + "/files", False)
    return wrong != 0


if __name__ == "__main__":
    sys.exit(main())
