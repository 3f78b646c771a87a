"""Builds the native tests of a copy once, then the few objects that a mutant changes, and runs the tests against it."""
from dataclasses import dataclass, field
import json
import os
from pathlib import Path
import re
import shutil
import signal
import subprocess
import threading
import time

# Half optimised, the fault loops run six times as fast, and a file compiles as quickly as without.
FLAGS = "-O1 -w -D_GLIBCXX_ASSERTIONS"
SLOW_TEST = 0.1  # seconds; the quick tests of all programs come first
MEMORY = 4 << 30  # bytes; what a runaway test may take
FILE_SIZE = 1 << 30


class BadTree(Exception):
    """The sources as they are do not build or pass."""


class Commands:
    """Runs commands, each in a process group of its own that can be ended whole."""

    def __init__(self):
        self._running, self._lock, self._ended = set(), threading.Lock(), False

    def run(self, command, folder, limit=None, **environment):
        """Exit status and output; the status is None when it took longer than `limit` seconds."""
        with self._lock:
            if self._ended:
                raise KeyboardInterrupt
            process = subprocess.Popen(
                command, shell=isinstance(command, str), cwd=folder, env={**os.environ, **environment},
                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                errors="replace", start_new_session=True)
            self._running.add(process)
        try:
            output, _ = process.communicate(timeout=limit)
            return process.returncode, output
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            return None, process.communicate()[0]
        finally:
            with self._lock:
                self._running.discard(process)

    def end(self):
        with self._lock:
            self._ended = True
            for process in self._running:
                os.killpg(process.pid, signal.SIGKILL)


@dataclass
class TestProgram:
    path: Path
    link: str  # the command, run in the build folder
    parts: set  # what it is linked from: objects, and "libmip_middle.a(modMain.cpp.o)"
    quick: float = 0.0  # seconds that its quick tests take
    slow: dict = field(default_factory=dict)  # seconds of each other test

    def phases(self, is_slow):
        if is_slow:
            return [(name, seconds) for name, seconds in self.slow.items()]
        return [("*-" + ":".join(self.slow), self.quick)]


@dataclass
class Verdict:
    caught: bool
    how: str


class Tree:
    """The copy's native build: which object comes from which sources, which program from which objects."""

    def __init__(self, source, build, commands, jobs):
        self.source, self.build, self.commands = source, build, commands
        linker = "-fuse-ld=gold" if shutil.which("ld.gold") else ""
        self._must(["cmake", "-S", str(source), "-B", str(build), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                    f"-DCMAKE_CXX_FLAGS={FLAGS}", f"-DCMAKE_EXE_LINKER_FLAGS={linker}"])
        self._must(["ninja", "-j", str(jobs)], CCACHE_BASEDIR=str(source.parent), CCACHE_NOHASHDIR="1")
        self.make = {entry["output"]: entry["command"] for entry in json.loads(self._must(["ninja", "-t", "compdb"]))}
        self.objects = self._read_dependencies()
        self.programs = [self._read_program(path) for path in re.findall(
            r"^(tests/\S+): CXX_EXECUTABLE_LINKER", self._must(["ninja", "-t", "targets", "all"]), re.MULTILINE)]
        for program in self.programs:
            self._time(program)

    def _must(self, command, **environment):
        status, output = self.commands.run(command, self.build if self.build.exists() else self.source, **environment)
        if status != 0:
            raise BadTree(f"{output[-3000:]}\nfailed: {command}")
        return output

    def _read_dependencies(self):
        """The objects that each source of the copy goes into."""
        objects, current = {}, ""
        for line in self._must(["ninja", "-t", "deps"]).splitlines():
            if line.startswith("    "):
                path = os.path.relpath(os.path.join(self.build, line.strip()), self.source)
                objects.setdefault(path, []).append(current)
            else:
                current = line.partition(":")[0]
        return objects

    def _read_program(self, path):
        link = self.make[path].removeprefix(": && ").removesuffix(" && :")
        return TestProgram(self.build / path, link, set(self._must(link + " -Wl,--trace").split()))

    def _time(self, program):
        report = self.build / "report.json"
        self._must([str(program.path), f"--gtest_output=json:{report}"])
        for suite in json.loads(report.read_text())["testsuites"]:
            for test in suite["testsuite"]:
                seconds = float(test["time"].removesuffix("s"))
                if seconds < SLOW_TEST:
                    program.quick += seconds
                else:
                    program.slow[f"{suite['name']}.{test['name']}"] = seconds

    def compile_mutant(self, mutant, folder):
        """Whether it compiles to something else than before. Its objects are then in `folder`, by their paths."""
        changed = folder / "source" / mutant.file
        changed.parent.mkdir(parents=True)
        changed.write_text(mutant.apply((self.source / mutant.file).read_text()))
        differs = False
        for name in self.objects.get(mutant.file, []):
            output = folder / name
            output.parent.mkdir(parents=True, exist_ok=True)
            command = self.make[name].replace(f"-o {name}", f"-iquote {folder}/source -o {output}")
            if mutant.file.endswith(".cpp"):
                command = command.replace(str(self.source / mutant.file), str(changed))
            status, _ = self.commands.run(command, self.build, 300, CCACHE_DISABLE="1")
            if status != 0:
                return False
            differs = differs or output.read_bytes() != (self.build / name).read_bytes()
        return differs

    def _part(self, name):
        """How the linker tells an object of a library: CMakeFiles/mip_middle.dir/app/modMain.cpp.o."""
        target = re.search(r"CMakeFiles/([^/]+)\.dir/", name)[1]
        return f"lib{target}.a({os.path.basename(name)})"

    def _link(self, program, names, folder):
        """The program with the changed objects, None when it has none of them."""
        command, before = program.link, []
        for name in names:
            if name in program.parts:
                command = command.replace(f" {name} ", f" {folder / name} ")
            elif any(part.endswith(self._part(name)) for part in program.parts):
                before.append(str(folder / name))
        if not before and command == program.link:
            return None
        path = folder / program.path.name
        relative = os.path.relpath(program.path, self.build)
        # What is defined before the libraries is not taken out of them.
        command = command.replace(f"-o {relative} ", f"-o {path} {' '.join(before)} ")
        status, output = self.commands.run(command, self.build, 300)
        if status != 0:
            raise BadTree(f"{output[-3000:]}\nfailed: {command}")
        return path

    def try_mutant(self, mutant, folder):
        """Runs the tests that the mutant's objects are linked into: the room's own first, the quick before the slow."""
        room = os.path.basename(mutant.room)
        order = sorted(self.programs, key=lambda program: (program.path.parent.name != room, program.quick))
        linked = []
        for program in order:
            if path := self._link(program, self.objects[mutant.file], folder):
                linked.append((program, path))
                if verdict := self._run(program, path, False, folder):
                    return verdict
        for program, path in sorted(linked, key=lambda pair: sum(pair[0].slow.values())):
            if verdict := self._run(program, path, True, folder):
                return verdict
        return Verdict(False, "missed" if linked else "no test has it")

    def _run(self, program, path, is_slow, folder):
        scratch = folder / "scratch"
        for tests, seconds in program.phases(is_slow):
            shutil.rmtree(scratch, ignore_errors=True)
            scratch.mkdir()
            command = f"ulimit -c 0 -v {MEMORY >> 10} -f {FILE_SIZE >> 10}; exec {path} --gtest_fail_fast"
            began = time.monotonic()
            status, output = self.commands.run(["bash", "-c", f"{command} '--gtest_filter={tests}'"], scratch,
                                               10 + 5 * seconds, TMPDIR=str(scratch))
            if status == 0:
                continue
            failed = re.findall(r"^\[  FAILED  \] ([^\s,]+)", output, re.MULTILINE)
            begun = re.findall(r"^\[ RUN      \] (\S+)", output, re.MULTILINE)
            test = f"{program.path.name}: {(failed or begun[-1:] or ['before the first test'])[0]}"
            if status is None:
                return Verdict(True, f"timed out after {time.monotonic() - began:.0f} s in {test}")
            return Verdict(True, f"caught by {test}" + ("" if failed else f" (ended with {status})"))
        return None
