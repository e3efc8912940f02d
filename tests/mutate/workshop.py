"""Builds a changed source and the programs that test it, and runs them.

A changed program may do anything, as root too: a worker sees the whole machine read-only, but for
a folder of its own. What is compiled goes there as well; the build itself never changes.
"""

import ctypes
import hashlib
import json
import os
import pathlib
import re
import resource
import shlex
import shutil
import signal
import subprocess
import time

CLONE_NEWNS, CLONE_NEWUSER = 0x00020000, 0x10000000
MS_BIND, MS_REC, MS_PRIVATE = 4096, 16384, 1 << 18
MOUNT_SETATTR, AT_FDCWD, AT_RECURSIVE, MOUNT_ATTR_RDONLY = 442, -100, 0x8000, 1
SECONDS_TO_BUILD = 300
MOST_KILLERS = 24

LIBC = ctypes.CDLL(None, use_errno=True)


def checked(result, what):
    if result != 0:
        raise OSError(ctypes.get_errno(), f"cannot {what}")


def mount(source, target, kind, flags, options=None):
    encoded = [os.fsencode(text) if text is not None else None
               for text in (source, target, kind, options)]
    checked(LIBC.mount(encoded[0], encoded[1], encoded[2], flags, encoded[3]), f"mount {target}")


def set_read_only(path, on, recursive):
    attributes = (ctypes.c_uint64 * 4)(MOUNT_ATTR_RDONLY if on else 0,
                                       0 if on else MOUNT_ATTR_RDONLY, 0, 0)
    checked(LIBC.syscall(MOUNT_SETATTR, AT_FDCWD, os.fsencode(path),
                         AT_RECURSIVE if recursive else 0, ctypes.byref(attributes), 32),
            f"make {path} read-only")


def enter_sandbox(root, folder):
    """From here on this process can write to `folder` and to a /tmp of its own alone."""
    uid, gid = os.getuid(), os.getgid()
    checked(LIBC.unshare(CLONE_NEWNS | (0 if uid == 0 else CLONE_NEWUSER)), "unshare")
    if uid != 0:
        pathlib.Path("/proc/self/setgroups").write_text("deny")
        pathlib.Path("/proc/self/uid_map").write_text(f"{uid} {uid} 1")
        pathlib.Path("/proc/self/gid_map").write_text(f"{gid} {gid} 1")
    mount(None, "/", None, MS_REC | MS_PRIVATE)
    set_read_only("/", True, recursive=True)
    set_read_only("/proc", False, recursive=False)  # a program maps its own user there
    # The project itself may lie in /tmp.
    project = os.open(root, os.O_PATH)
    mount("none", "/tmp", "tmpfs", 0, "mode=1777,size=1g")
    root.mkdir(parents=True, exist_ok=True)
    mount(f"/proc/self/fd/{project}", str(root), None, MS_BIND | MS_REC)
    os.close(project)
    mount(str(folder), str(folder), None, MS_BIND)
    set_read_only(str(folder), False, recursive=False)
    os.environ.pop("TMPDIR", None)
    os.chdir(root)


class Build:
    """A finished build, and how its parts are compiled and linked."""

    def __init__(self, root, preset):
        self.root, self.folder = root, root / "build" / preset
        self.preset = preset
        self.entries = None
        self.links = {}

    def make(self, targets):
        subprocess.run(["cmake", "--preset", self.preset], cwd=self.root, check=True,
                       stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", self.folder, "--target", *targets], check=True,
                       stdout=subprocess.DEVNULL)
        commands = json.loads((self.folder / "compile_commands.json").read_text())
        self.entries = [self.entry(command) for command in commands]
        for target in targets:
            self.links[target] = self.link_of(target)

    @staticmethod
    def entry(command):
        words = shlex.split(command["command"])
        if words[0].endswith("ccache"):
            words = words[1:]
        return {"words": words, "source": command["file"], "object": words[words.index("-o") + 1]}

    def link_of(self, target):
        """The words of the command that links a program."""
        listing = subprocess.run(["ninja", "-t", "commands", f"bin/{target}"], cwd=self.folder,
                                 check=True, capture_output=True, text=True)
        for part in listing.stdout.splitlines()[-1].split(" && "):
            if f" -o bin/{target} " in part:
                return shlex.split(part)
        raise RuntimeError(f"{target} is linked by no command")

    def objects(self, target, sources):
        """The compile commands of those of the sources that are part of a program."""
        words = set(self.links[target])
        found = []
        for entry in self.entries:
            if entry["source"] in sources:
                library = f"libsystally_{pathlib.Path(entry['source']).parent.name}.a"
                parts = entry["object"].split("/")
                in_library = any(word.endswith("/" + library) for word in words) and \
                    parts[2] == library[3:-2] + ".dir"
                if entry["object"] in words or in_library:
                    found.append(entry)
        return found


class Workshop:
    """One worker's place: at most one change is in it at a time."""

    def __init__(self, root, folder):
        self.root, self.folder = root, folder
        self.killers = {}
        self.made = {}
        self.included = {}

    def open(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        (self.folder / "bin").mkdir(parents=True)
        (self.folder / "include").mkdir()
        enter_sandbox(self.root, self.folder)

    def put(self, change):
        """Writes the changed source; the place forgets the change before."""
        for file in [*self.folder.glob("*.cpp"), *self.folder.glob("*.o")]:
            file.unlink()
        shutil.rmtree(self.folder / "include")
        self.made = {}
        original = self.root / change.path
        lines = original.read_text().splitlines(keepends=True)
        lines[change.line - 1] = change.text + "\n"
        is_header = original.suffix == ".h"
        changed = self.folder / ("include/" + change.path if is_header else original.name)
        changed.parent.mkdir(parents=True, exist_ok=True)
        (self.folder / "include").mkdir(exist_ok=True)
        changed.write_text("".join(lines))
        if not is_header:
            return {str(original): changed}
        # A header is compiled with the sources that include it. Its tests are among them: of an
        # inline function the linker takes the first copy that it meets.
        folders = (original.parent, self.root / "app", self.root / "tests" / original.parent.name)
        return {str(source): source for folder in folders for source in folder.glob("*.cpp")
                if original in self.headers_of(source)}

    def headers_of(self, file):
        """The headers of the house that a source includes, also by way of others."""
        if file not in self.included:
            self.included[file] = set()
            for name in re.findall(r'^#include "(.*)"$', file.read_text(), re.M):
                for header in (self.root / name, self.root / "tests" / name):
                    if header.exists():
                        self.included[file] |= {header} | self.headers_of(header)
        return self.included[file]

    def compile(self, entry, source, extra=()):
        """The object's file; None when it does not compile."""
        key = (entry["object"], *extra)
        if key not in self.made:
            target = self.folder / f"{len(self.made)}.o"
            words = [str(source) if word == entry["source"] else word for word in entry["words"]]
            words[words.index("-o") + 1] = str(target)
            words[1:1] = ["-w", f"-I{self.folder}/include", "-include", self.headers(entry)]
            done = self.succeeds([*words, *extra], entry["folder"], SECONDS_TO_BUILD)
            self.made[key] = target if done else None
        return self.made[key]

    def headers(self, entry):
        """All headers of the system that the product asks for, compiled once for these flags."""
        flags = [word for word in entry["words"]
                 if word.startswith(("-f", "-m", "-O", "-U", "-std", "-D_"))]
        header = self.folder / f"headers{hashlib.sha256(repr(flags).encode()).hexdigest()[:8]}.h"
        if not header.exists():
            lines = {line for folder in ("app", "pci", "smbios", "util")
                     for source in (self.root / folder).glob("*.*")
                     for line in re.findall(r"^#include <.*>$", source.read_text(), re.M)}
            header.write_text("\n".join(sorted(lines)) + "\n")
            self.succeeds([entry["words"][0], *flags, "-w", "-x", "c++-header", str(header), "-o",
                           f"{header}.gch"], self.folder, SECONDS_TO_BUILD)
        return str(header)

    def link(self, build, target, sources):
        """Links a program with the change; None when it cannot be built, or has no part in it."""
        objects = []
        for entry in build.objects(target, sources):
            entry = entry | {"folder": build.folder}
            made = self.compile(entry, sources[entry["source"]])
            if made is None:
                return None
            objects.append((entry["object"], str(made)))
        if not objects:
            return ""
        replaced = {name for name, _ in objects}
        words = [word for word in build.links[target] if word not in replaced]
        output = self.folder / "bin" / target
        at = words.index("-o")
        words[at + 1] = str(output)
        # In front of all: the first of several definitions is taken.
        words[at:at] = [made for _, made in objects]
        if shutil.which("ld.gold"):
            words.append("-fuse-ld=gold")  # takes half the time
        return str(output) if self.succeeds(words, build.folder, SECONDS_TO_BUILD) else None

    def is_the_same_program(self, build, change, sources):
        """Whether the optimizing compiler makes the same of the changed source as of the old."""
        for source, changed in sources.items():
            if changed.parent != self.folder:
                return False
            entry = next(entry for entry in build.entries if entry["source"] == source)
            entry = entry | {"folder": build.folder}
            extra = ("-O2", "-frandom-seed=1")
            new = self.compile(entry, changed, extra)
            text, bytes_new = changed.read_text(), new.read_bytes() if new else b""
            changed.write_text((self.root / change.path).read_text())
            # The name is read by no source: it keeps the one compilation from standing for the other.
            old = self.compile(entry, changed, (*extra, "-DSYSTALLY_UNCHANGED"))
            changed.write_text(text)
            if old is None or bytes_new != old.read_bytes():
                return False
        return True

    def succeeds(self, command, cwd, seconds, log=subprocess.DEVNULL):
        limit = lambda: resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        with subprocess.Popen(command, cwd=cwd, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                              start_new_session=True, preexec_fn=limit) as process:
            try:
                return process.wait(seconds) == 0
            except subprocess.TimeoutExpired:
                return False
            finally:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                process.wait()

    def run(self, command, cwd, seconds, gigabytes):
        """Whether a test program succeeds, and the last test that it began."""
        log = self.folder / "log"
        if gigabytes:
            command = ["prlimit", f"--data={gigabytes << 30}", *command]
        with log.open("w") as stream:
            succeeded = self.succeeds(command, cwd, seconds, stream)
        for left in pathlib.Path("/tmp").iterdir():
            if left not in self.root.parents:
                subprocess.run(["rm", "-rf", left], check=False)
        began = re.findall(r"^\[ RUN      \] (\S+)$", log.read_text(errors="replace"), re.M)
        return succeeded, began[-1] if began else None

    def try_stage(self, build, stage, path, sources, seconds):
        """Whether a stage notices the change; None when the change does not compile."""
        covered = []
        try:
            if stage.uses:
                for name in stage.uses:
                    made = self.link(build, name, sources)
                    if made is None:
                        return None
                    if made:
                        mount(made, str(build.folder / "bin" / name), None, MS_BIND)
                        covered.append(str(build.folder / "bin" / name))
            program = self.link(build, stage.program, sources)
            if program is None:
                return None
            if not program and not covered:
                return False
            program = program or str(build.folder / "bin" / stage.program)
            return self.notices(build, stage, program, path, seconds)
        finally:
            for place in covered:
                LIBC.umount2(os.fsencode(place), 2)

    def notices(self, build, stage, program, path, seconds):
        cwd = build.folder
        if not stage.is_gtest:
            return not self.run([program, *stage.arguments(build)], cwd, seconds,
                                stage.gigabytes)[0]
        command = [program, "--gtest_fail_fast"]
        killers = self.killers.setdefault((stage, path), [])
        if killers:
            # Those that noticed other changes of the file are likely to notice this one.
            quick = [*command, "--gtest_filter=" + ":".join(killers)]
            succeeded, last = self.run(quick, cwd, seconds, stage.gigabytes)
            if not succeeded:
                return True
        succeeded, last = self.run([*command, f"--gtest_filter={stage.filter}"], cwd, seconds,
                                   stage.gigabytes)
        if not succeeded and last:
            killers[:0] = [last]
            del killers[MOST_KILLERS:]
        return not succeeded

    def seconds_of(self, build, stage):
        """How long the unchanged program takes; it must succeed."""
        begun = time.monotonic()
        program = str(build.folder / "bin" / stage.program)
        arguments = [f"--gtest_filter={stage.filter}"] if stage.is_gtest else stage.arguments(build)
        succeeded, last = self.run([program, *arguments], build.folder, 600, stage.gigabytes)
        if not succeeded:
            raise RuntimeError(f"{stage.program} fails without a change, at {last}; see"
                               f" {self.folder}/log")
        return time.monotonic() - begun
