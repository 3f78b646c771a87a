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

# With this much optimisation the fault loops run six times as fast, and a file compiles as quickly as without.
FLAGS = "-O1 -w -D_GLIBCXX_ASSERTIONS"
SLOW = 0.1  # seconds; tests that take longer come after the quick ones of all programs
LIMITS = "ulimit -c 0 -v 4000000 -f 1000000"  # KiB; what a test may take that has lost its way


class BadTree(Exception):
    """The sources do not build or pass as they are."""


class Commands:
    """Runs commands, each in a process group of its own that can be ended whole."""

    def __init__(self, temporary):
        self._temporary, self._running, self._lock, self._ended = temporary, set(), threading.Lock(), False

    def run(self, command, folder, limit=None, **environment):
        """Exit status and output; the status is None when it took longer than `limit` seconds."""
        with self._lock:
            if self._ended:
                raise KeyboardInterrupt
            process = subprocess.Popen(
                command, shell=isinstance(command, str), cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT, text=True, errors="replace", start_new_session=True,
                env={**os.environ, "TMPDIR": str(self._temporary), **environment})
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

    def must(self, command, folder, **environment):
        status, output = self.run(command, folder, **environment)
        if status != 0:
            raise BadTree(f"{output[-3000:]}\nfailed: {command}")
        return output


@dataclass
class TestProgram:
    name: str  # its path in the build folder
    link: str
    parts: set  # what it is linked from: objects, and "libmip_middle.a(modMain.cpp.o)"
    quick: float = 0.0  # seconds that its quick tests take
    slow: dict = field(default_factory=dict)  # seconds of each other test


@dataclass
class Verdict:
    caught: bool
    how: str
    output: str = ""


class Tree:
    """The copy's native build: which object comes from which sources, which program from which objects."""

    def __init__(self, source, build, commands, jobs):
        self.source, self.build, self.commands = source, build, commands
        linker = "-fuse-ld=gold" if shutil.which("ld.gold") else ""
        commands.must(["cmake", "-S", str(source), "-B", str(build), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                       f"-DCMAKE_CXX_FLAGS={FLAGS}", f"-DCMAKE_EXE_LINKER_FLAGS={linker}"], source)
        commands.must(["ninja", "-j", str(jobs)], build, CCACHE_BASEDIR=str(source.parent), CCACHE_NOHASHDIR="1")
        self._make = {entry["output"]: entry["command"].removeprefix(": && ").removesuffix(" && :")
                      for entry in json.loads(commands.must(["ninja", "-t", "compdb"], build))}
        self._objects = self._read_dependencies()
        targets = commands.must(["ninja", "-t", "targets", "all"], build)
        self._programs = [self._read_program(name)
                          for name in re.findall(r"^(tests/\S+): CXX_EXECUTABLE_LINKER", targets, re.MULTILINE)]

    def _read_dependencies(self):
        """The objects that each source of the copy goes into."""
        objects, current = {}, ""
        for line in self.commands.must(["ninja", "-t", "deps"], self.build).splitlines():
            if line.startswith("    "):
                path = os.path.relpath(os.path.join(self.build, line.strip()), self.source)
                objects.setdefault(path, []).append(current)
            else:
                current = line.partition(":")[0]
        return objects

    def _read_program(self, name):
        link = self._make[name]
        program = TestProgram(name, link, set(self.commands.must(link + " -Wl,--trace", self.build).split()))
        report = self.build / "report.json"
        self.commands.must([str(self.build / name), f"--gtest_output=json:{report}"], self.build)
        for suite in json.loads(report.read_text())["testsuites"]:
            for test in suite["testsuite"]:
                seconds = float(test["time"].removesuffix("s"))
                if seconds < SLOW:
                    program.quick += seconds
                else:
                    program.slow[f"{suite['name']}.{test['name']}"] = seconds
        return program

    def attempt(self, mutant, folder):
        """The tests' verdict, none when the mutant does not compile or compiles to what was there before."""
        if not self._compile(mutant, folder):
            return None
        # The room's own tests first; of all the quick ones before the slow ones.
        room = os.path.basename(mutant.room)
        linked = []
        for program in sorted(self._programs, key=lambda it: (Path(it.name).parent.name != room, it.quick)):
            if path := self._link(program, mutant, folder):
                linked.append((program, path))
                if verdict := self._run(path, "*-" + ":".join(program.slow), program.quick, folder):
                    return verdict
        for program, path in sorted(linked, key=lambda pair: sum(pair[0].slow.values())):
            for test, seconds in program.slow.items():
                if verdict := self._run(path, test, seconds, folder):
                    return verdict
        return Verdict(False, "missed" if linked else "missed: no test has the file")

    def _compile(self, mutant, folder):
        """Puts the changed objects into the folder, by their paths in the build; whether any differs from before."""
        changed = folder / "source" / mutant.file
        changed.parent.mkdir(parents=True)
        changed.write_text(mutant.apply((self.source / mutant.file).read_text()))
        differs = False
        for name in self._objects.get(mutant.file, []):
            output = folder / name
            output.parent.mkdir(parents=True, exist_ok=True)
            command = self._make[name].replace(f"-o {name}", f"-iquote {folder}/source -o {output}")
            if mutant.file.endswith(".cpp"):
                command = command.replace(str(self.source / mutant.file), str(changed))
            if self.commands.run(command, self.build, CCACHE_DISABLE="1")[0] != 0:
                return False
            differs = differs or output.read_bytes() != (self.build / name).read_bytes()
        return differs

    def _link(self, program, mutant, folder):
        """The program with the changed objects, none when it has none of them."""
        command, members = program.link, []
        for name in self._objects[mutant.file]:
            target = re.search(r"CMakeFiles/([^/]+)\.dir/", name)[1]
            if name in program.parts:
                command = command.replace(f" {name} ", f" {folder / name} ")
            elif any(part.endswith(f"lib{target}.a({os.path.basename(name)})") for part in program.parts):
                members.append(str(folder / name))
        if not members and command == program.link:
            return None
        path = folder / os.path.basename(program.name)
        # What is defined before the libraries is not taken out of them.
        command = command.replace(f"-o {program.name} ", f"-o {path} {' '.join(members)} ")
        self.commands.must(command, self.build)
        return path

    def _run(self, path, tests, seconds, folder):
        """The verdict when one of the tests, which take so many seconds, fails; else none."""
        scratch = folder / "scratch"
        shutil.rmtree(scratch, ignore_errors=True)
        scratch.mkdir()
        limit = 10 + 5 * seconds
        status, output = self.commands.run(f"{LIMITS}; exec {path} --gtest_fail_fast '--gtest_filter={tests}'",
                                           scratch, limit, TMPDIR=str(scratch))
        if status == 0:
            return None
        failed = re.findall(r"^\[  FAILED  \] ([^\s,]+)", output, re.MULTILINE)
        begun = re.findall(r"^\[ RUN      \] (\S+)", output, re.MULTILINE)
        test = f"{path.name}: {failed[0] if failed else begun[-1] if begun else 'before the first test'}"
        how = f"timed out after {limit:.0f} s in" if status is None else "caught by" if failed else "crashed"
        return Verdict(True, f"{how} {test}", output)
