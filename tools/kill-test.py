#!/usr/bin/env python3
"""The rounds of kill-test.sh. WORK is its folder, with "disc" and the "prepared" computer; the computer of a run is the
Wine prefix of the session that this is started in.

    kill-test.py prepare WORK                       installs an older PDF manual on the prepared computer
    kill-test.py reference WORK                     a run that is left alone: how long it takes, what it says and leaves
    kill-test.py round WORK NUMBER SEED ATTEMPT     a run that is killed, and one that repairs; exit status 75 when it
                                                    ended before it could be killed
    kill-test.py check WORK COMPUTER                only looks at what a killed run has left

After a kill
- the catalogue opens, its journal rolled back, or its backup does;
- each row that counts as usable has exactly the files of the edition that it names, byte by byte;
- rows of manuals that the disc does not bring are as they were;
- the library has no folder but those of the disc and of before, and outside it only such files have changed as a whole
  run changes, too.
The next run ends with 0, and then the files, the rows and who may write the manuals are as the whole run has left them.
"""
import configparser
from dataclasses import replace
import hashlib
import json
import os
from pathlib import Path
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import zipfile

ROOT = Path(__file__).resolve().parent.parent
LIBRARY = "drive_c/Vantor Manuals"
CATALOGUE_FOLDER = "drive_c/Program Files/Vantor/Korvex/Manual"
CATALOGUE = CATALOGUE_FOLDER + "/kvx3.mdb"
LOG = "drive_c/install.log"
PROGRAM = ["wine", r"D:\programs\setup\ManualInstall.exe", "/VERYSILENT", "/ACCEPT", r"/LOG=C:\install.log"]
LONGEST_RUN = 300  # seconds
ENDED_EARLY = 75
# What a run has only while it works.
PASSING = (
    CATALOGUE_FOLDER + "/UnZipTemp",
    CATALOGUE_FOLDER + "/BACK_",
    CATALOGUE_FOLDER + "/kvx3new.mdb",
    CATALOGUE + "-journal",
    CATALOGUE + ".upgrade",
    "drive_c/Program Files/Vantor/Korvex/Link/setup.log",
    "drive_c/Program Files/Vantor/Korvex/View/setup.log",
)
# What a kill may follow closely.
WATCHED = (
    CATALOGUE,
    CATALOGUE + "-journal",
    CATALOGUE + ".upgrade",
    CATALOGUE_FOLDER + "/kvx3new.mdb",
    CATALOGUE_FOLDER + "/kvx3new.mdb-journal",
    CATALOGUE_FOLDER + "/UnZipTemp",
)
# Their contents tell of the time, or of how often a program was started.
VARYING = (CATALOGUE, LOG, ".log", ".lnk")


# Files


def files_below(folder):
    """Each file's digest by its path below the folder; links by what they point to."""
    found = {}
    for place, folders, names in os.walk(folder):
        for name in (*names, *(name for name in folders if os.path.islink(os.path.join(place, name)))):
            path = os.path.join(place, name)
            content = os.readlink(path).encode() if os.path.islink(path) else Path(path).read_bytes()
            found[os.path.relpath(path, folder)] = hashlib.sha256(content).hexdigest()
    return found


def differences(expected, actual):
    """What is missing, too much or changed, as a few words; "" when nothing is."""
    found = [f"{name} is missing" for name in expected if name not in actual]
    found += [f"{name} is too much" for name in actual if name not in expected]
    found += [f"{name} differs" for name in expected if actual.get(name, expected[name]) != expected[name]]
    return ", ".join(found[:3]) + (f" and {len(found) - 3} more" if len(found) > 3 else "")


def unix_path(computer, windows_path):
    return computer / "drive_c" / windows_path.removeprefix("C:\\").replace("\\", "/")


# Catalogue


def read_catalogue(database):
    """The tables by name, the manuals by publication number; None when there is no catalogue that opens. It is read as
    a copy with its journal, which opening rolls back there."""
    if not database.exists():
        return None
    with tempfile.TemporaryDirectory() as folder:
        for name in (database.name, database.name + "-journal"):
            if (database.parent / name).exists():
                shutil.copy(database.parent / name, folder)
        connection = sqlite3.connect(Path(folder) / database.name)
        connection.row_factory = sqlite3.Row
        try:
            if connection.execute("pragma integrity_check").fetchone()[0] != "ok":
                return None
            tables = [row[0] for row in connection.execute("select name from sqlite_master where type='table'")]
            content = {name: [dict(row) for row in connection.execute(f"select * from {name}")] for name in tables}
            content["M_manage"] = {row["Pub_No"]: row for row in content["M_manage"]}
            return content
        except (sqlite3.DatabaseError, KeyError):
            return None
        finally:
            connection.close()


def catalogue_or_backup(computer):
    for database in (computer / CATALOGUE, *sorted((computer / CATALOGUE_FOLDER).glob("BACK_*kvx3.mdb"))):
        content = read_catalogue(database)
        if content:
            return content
    return None


def comparable(content):
    """A catalogue without the order of its rows and the times of installation."""
    tables = dict(content)
    tables["M_manage"] = [{**row, "INSDate": ""} for row in content["M_manage"].values()]
    return {name: sorted(json.dumps(row, sort_keys=True) for row in rows) for name, rows in tables.items()}


# What should be there


class Expectation:
    """The editions of the disc and of the prepared computer, each with its files."""

    def __init__(self, work):
        self.before = read_catalogue(work / "prepared" / CATALOGUE)["M_manage"]
        self.editions = {}  # (publication, version): {path: digest}
        self.folders = {}  # publication on the disc: (its folder's name, its first file that a run changes)
        self.on_disc = {}  # publication: version
        for row in self.before.values():
            self.editions[row["Pub_No"], row["Version"]] = files_below(unix_path(work / "prepared", row["INSPath"]))
        for description in sorted((work / "disc").glob("*/car_info.ci")):
            self.add_disc_manual(description)

    def add_disc_manual(self, description):
        folder = description.parent
        content = description.read_bytes()
        profile = configparser.RawConfigParser()
        profile.read_string(content.decode("utf-16" if content.startswith(b"\xff\xfe") else "ascii"))
        publication, version = profile["CAR_INFO"]["Pub_No"], profile["CAR_INFO"]["Version"]
        archive = folder / "install/condense/manual.zip"
        compared = files_below(folder / "install/compare")
        name, files = (folder.name, files_below(folder)) if not archive.exists() else files_of_archive(archive)
        self.on_disc[publication] = version
        self.editions[publication, version] = files
        self.folders[publication] = name, "contents/" + min(compared, default="index.html")

    def bases(self):
        """The editions of before that the disc's replace under another publication number."""
        return {base for base in (name[:4] + "0" + name[5:] for name in self.on_disc) if base in self.before}

    def left_alone(self):
        return self.before.keys() - self.on_disc.keys() - self.bases()


def files_of_archive(archive):
    files, tops = {}, set()
    with zipfile.ZipFile(archive) as source:
        for name in source.namelist():
            top, _, path = name.partition("/")
            tops.add(top)
            if not name.endswith("/"):
                files[path] = hashlib.sha256(source.read(name)).hexdigest()
    (top,) = tops
    return top, files


# Checks


def counts_as_usable(computer, row):
    contents = unix_path(computer, row["INSPath"]) / "contents"
    has_page = (contents / "index.html").exists() or (contents / (row["Pub_No"] + ".pdf")).exists()
    return str(row["Adjust_flg"]).strip() != "1" and has_page


def faults_of_rows(computer, rows, expectation):
    for row in rows.values():
        edition = row["Pub_No"], row["Version"]
        if not counts_as_usable(computer, row):
            continue
        if edition not in expectation.editions:
            yield f"the row of {edition} names no edition"
            continue
        found = differences(expectation.editions[edition], files_below(unix_path(computer, row["INSPath"])))
        if found:
            yield f"{' '.join(edition)} counts as usable, but {found}"


def is_library(path):
    return path.startswith(LIBRARY + "/")


def faults_outside(before, after, allowed):
    for path in sorted(before.keys() | after.keys()):
        if is_library(path) or path in allowed or path.startswith(PASSING) or before.get(path) == after.get(path):
            continue
        change = "is new" if path not in before else "is gone" if path not in after else "differs"
        yield f"outside the library {path} {change}"


def faults_after_kill(work, computer, before):
    """What is wrong with what a killed run has left. `before` is the computer's files from before the run."""
    expectation = Expectation(work)
    reference = json.loads((work / "reference.json").read_text())
    content = catalogue_or_backup(computer)
    if content is None:
        return ["neither the catalogue nor a backup of it opens"]
    rows = content["M_manage"]
    faults = list(faults_of_rows(computer, rows, expectation))
    faults += [f"the row of {name} has changed" for name in expectation.left_alone()
               if rows.get(name) != expectation.before[name]]
    known = {row["INSPath"].rpartition("\\")[2] for row in expectation.before.values()}
    known |= {name for name, _ in expectation.folders.values()}
    faults += [f"{name} does not belong into the library" for name in os.listdir(computer / LIBRARY)
               if name not in known]
    faults += faults_outside(before, computer_files(work, computer), set(reference["changed"]))
    return faults


def faults_when_done(computer, expectation):
    """What is wrong after a run that was left alone, in itself."""
    content = read_catalogue(computer / CATALOGUE)
    if content is None:
        return ["the catalogue does not open"]
    rows = content["M_manage"]
    wanted = {name: row["Version"] for name, row in expectation.before.items() if name not in expectation.bases()}
    wanted |= expectation.on_disc
    faults = list(faults_of_rows(computer, rows, expectation))
    found = {name: row["Version"] for name, row in rows.items()}
    if found != wanted:
        faults.append(f"the catalogue has {found} instead of {wanted}")
    faults += [f"{name} is not usable" for name, row in rows.items() if not counts_as_usable(computer, row)]
    faults += [f"{name} has Adjust_flg {row['Adjust_flg']}" for name, row in rows.items()
               if str(row["Adjust_flg"]) != "0"]
    folders = {row["INSPath"].rpartition("\\")[2] for row in rows.values()}
    if set(os.listdir(computer / LIBRARY)) != folders:
        faults.append(f"the library has {sorted(os.listdir(computer / LIBRARY))} instead of {sorted(folders)}")
    for name in (computer / CATALOGUE_FOLDER).iterdir():
        if str(name.relative_to(computer)).startswith(PASSING):
            faults.append(f"{name.name} is left over")
    return faults


def faults_after_repair(work, computer, status):
    faults = [] if status == 0 else [f"the repairing run ended with {status}"]
    faults += faults_when_done(computer, Expectation(work))
    reference = json.loads((work / "reference.json").read_text())
    content = read_catalogue(computer / CATALOGUE)
    if content and comparable(content) != reference["catalogue"]:
        faults.append("the catalogue's tables are not those of a whole run")
    fixed = [{path: "" if path.endswith(VARYING) else digest for path, digest in files.items()}
             for files in (reference["files"], computer_files(work, computer))]
    # A run opens the folders that it makes at once; all others are opened when a result is closed after an installation.
    kept = access(work / "prepared")
    made = [name for name, _ in Expectation(work).folders.values()
            if not (work / "disc" / name / "install/compare").is_dir()]
    closed = [name for name, mode in access(computer).items()
              if mode != reference["access"].get(name, mode) and (name in made or mode != kept.get(name))]
    if closed:
        faults.append(f"other access than after a whole run: {', '.join(sorted(closed))}")
    found = differences(*fixed)
    return faults + ([f"compared with a whole run {found}"] if found else [])


def access(computer):
    """The access of the catalogue and of the manuals' folders, as Wine maps what local users may do."""
    paths = (computer / CATALOGUE, *(computer / LIBRARY).iterdir())
    return {path.name: oct(path.stat().st_mode & 0o777) for path in paths if path.exists()}


def computer_files(work, computer):
    """All files of a computer and of the disc in its drive, but for Windows itself and its user's temporary files."""
    files = {
        f"drive_c/{path}": digest
        for path, digest in files_below(computer / "drive_c").items()
        if not path.startswith("windows/") and "/Temp/" not in path
    }
    return files | {f"disc/{path}": digest for path, digest in files_below(work / "disc").items()}


# Runs


def log_lines(computer):
    """The log's lines so far as (step, publication, outcome); a line that is being written is left out."""
    try:
        lines = (computer / LOG).read_bytes().decode("utf-8", "replace").split("\r\n")[:-1]
    except FileNotFoundError:
        return []
    return [tuple(line.split("\t")[1:4]) for line in lines]


def processes_with(computer, word):
    """Ids of this computer's processes that have the word in their command line."""
    found = []
    for entry in Path("/proc").iterdir():
        try:
            if not entry.name.isdigit():
                continue
            ours = f"WINEPREFIX={computer}".encode() in (entry / "environ").read_bytes().split(b"\0")
            if ours and word.encode() in (entry / "cmdline").read_bytes():
                found.append(int(entry.name))
        except OSError:
            pass  # it has ended
    return found


def kill(ids):
    for process in ids:
        try:
            os.kill(process, signal.SIGKILL)
        except ProcessLookupError:
            pass


def start_program(computer):
    (computer / LOG).unlink(missing_ok=True)
    return subprocess.Popen(PROGRAM, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def wait_for_end(computer, started):
    try:
        return started.wait(LONGEST_RUN)
    except subprocess.TimeoutExpired:
        kill(processes_with(computer, "ManualInstall.exe"))
        started.wait()
        return f"nothing within {LONGEST_RUN} s"


def has_changed(path):
    """A question whether a file has come, gone or been written since now."""

    def state():
        try:
            status = os.stat(path)
            return status.st_ino, status.st_size, status.st_mtime_ns
        except OSError:
            return None

    first = state()
    return lambda: state() != first


def pick_moment(picker, number, work, computer):
    """(text, question, delay in seconds): the run is killed `delay` after the question is first answered by yes."""
    reference = json.loads((work / "reference.json").read_text())
    if number % 2 == 0:
        delay = picker.uniform(0, reference["seconds"])
        return f"{delay:.2f} s after the start", lambda: True, delay
    sights = {f"the change of {Path(path).name}": (path, 0.05) for path in WATCHED}
    for publication, (folder, file) in Expectation(work).folders.items():
        sights[f"the change of {publication}"] = f"{LIBRARY}/{folder}/{file}", 0.15
    lines = {" ".join(filter(None, line[:2])): None for line in map(tuple, reference["lines"])}
    name = picker.choice([*lines, *lines, *sights])
    if name in sights:
        path, longest = sights[name]
        question = has_changed(computer / path)
    else:
        longest = 0.3
        question = lambda: any(" ".join(filter(None, line[:2])) == name for line in log_lines(computer))
    delay = picker.uniform(0, longest)
    return f"{delay * 1000:.0f} ms after {name!r}", question, delay


def run_until(computer, question, delay):
    """Starts the program and returns when the moment has come. False when the program has ended before."""
    started = start_program(computer)
    while not processes_with(computer, "ManualInstall.exe") and started.poll() is None:
        time.sleep(0.01)
    while not question():
        if started.poll() is not None:
            return started, False
        time.sleep(0.001)
    time.sleep(delay)
    return started, started.poll() is None


def kill_program(computer, started, with_batch):
    """Kills the program and, when asked, the interpreter of a batch that it has started. The setups are programs of
    their own and end by themselves."""
    kill({started.pid, *processes_with(computer, "ManualInstall.exe")})
    if with_batch:
        kill(processes_with(computer, "cmd.exe"))
    started.wait()
    wait_for_rest(computer)


def wait_for_rest(computer):
    """Until what the program has started has ended. Several looks: a process has its command line a moment later."""
    deadline = time.monotonic() + 60
    quiet = 0
    cut_off = set()
    while quiet < 4:
        running = [word for word in ("ManualInstall.exe", "cmd.exe", "setup.exe") if processes_with(computer, word)]
        quiet = 0 if running else quiet + 1
        if time.monotonic() > deadline and running == ["setup.exe"] and not cut_off:
            # Its parent went while it was being started: such a process never runs, and nobody waits for it.
            cut_off = processes_with(computer, "setup.exe")
            kill(cut_off)
            deadline += 10
        elif time.monotonic() > deadline:
            sys.exit(f"{running} does not end")
        time.sleep(0.1)


# Commands


def prepare(work):
    sys.path.insert(0, str(ROOT / "samples"))
    from manualkit.handbook import handbook_pdf
    from manualkit.manuals import DIAGNOSIS

    older = replace(DIAGNOSIS, version=1, issued="2022/04")
    contents = work / "prepared" / LIBRARY / older.folder / "contents"
    contents.mkdir(parents=True)
    (contents / f"{older.publication}.pdf").write_bytes(handbook_pdf(older))
    (contents / "index.html").write_text(f"<p>Opens {older.publication}.pdf</p>\n")
    with sqlite3.connect(work / "prepared" / CATALOGUE) as catalogue:
        row = (older.publication, older.model, older.model_id, "1", str(older.year), older.kind, older.country,
               older.language, "1", "workshop", "2023-04-20 08:30:00", rf"C:\Vantor Manuals\{older.folder}", "0", "")
        catalogue.execute(f"insert into M_manage values ({', '.join('?' * len(row))})", row)
        catalogue.execute("insert into M_type values (?, '1')", (older.publication,))
    expectation = Expectation(work)
    for publication, version in expectation.on_disc.items():
        if publication in expectation.before:
            old = expectation.before[publication]["Version"]
            assert expectation.editions[publication, version] != expectation.editions[publication, old], publication


def reference(work, computer):
    before = computer_files(work, computer)
    began = time.monotonic()
    started = start_program(computer)
    status = wait_for_end(computer, started)
    seconds = time.monotonic() - began
    lines, after = log_lines(computer), computer_files(work, computer)
    faults = faults_when_done(computer, Expectation(work))
    if status != 0 or faults:
        print(f"whole run: exit status {status}", *faults, *map(" ".join, lines), sep="\n  ")
        return 1
    changed = [path for path in before.keys() | after.keys() if before.get(path) != after.get(path)]
    (work / "reference.json").write_text(json.dumps({
        "seconds": seconds, "lines": lines, "files": after, "changed": sorted(changed),
        "catalogue": comparable(read_catalogue(computer / CATALOGUE)), "access": access(computer),
    }, ensure_ascii=False, indent=1))
    (work / "reference.txt").write_text(f"a whole run takes {seconds:.1f} s and writes {len(lines)} lines\n")
    return 0


def one_round(work, computer, number, seed, attempt):
    picker = random.Random(f"{seed} {number} {attempt}")
    (work / f"killed-{number}").unlink(missing_ok=True)
    before = computer_files(work, computer)
    (computer / "before.json").write_text(json.dumps(before))
    moment, question, delay = pick_moment(picker, number, work, computer)
    with_batch = picker.random() < 0.5
    started, in_time = run_until(computer, question, delay)
    if not in_time:
        started.wait()
        return ENDED_EARLY
    kill_program(computer, started, with_batch)
    (work / f"killed-{number}").touch()
    last = " ".join(filter(None, (log_lines(computer) or [("nothing logged",)])[-1]))
    faults = [f"after the kill: {fault}" for fault in faults_after_kill(work, computer, before)]
    if faults:  # what the kill has left is worth more than a repaired one
        shutil.copytree(computer / "drive_c", computer / "drive_c.killed", symlinks=True)
    if (computer / LOG).exists():
        shutil.copy(computer / LOG, computer / "killed.log")
    status = wait_for_end(computer, start_program(computer))
    faults += [f"after the next run: {fault}" for fault in faults_after_repair(work, computer, status)]
    print(f"round {number}: killed {moment}; last line: {last}; {'FAILED' if faults else 'repaired'}",
          *faults, sep="\n    ", flush=True)
    return 1 if faults else 0


def main(command, work, *arguments):
    work = Path(work)
    if command == "prepare":
        return prepare(work)
    if command == "check":
        computer = Path(arguments[0])
        faults = faults_after_kill(work, computer, json.loads((computer / "before.json").read_text()))
        print(*(faults or ["nothing is wrong"]), sep="\n")
        return 1 if faults else 0
    computer = Path(os.environ["WINEPREFIX"])
    if command == "reference":
        return reference(work, computer)
    return one_round(work, computer, *map(int, arguments))


if __name__ == "__main__":
    if len(sys.argv) < 3 or sys.argv[1] not in ("prepare", "reference", "round", "check"):
        sys.exit(__doc__)
    try:
        sys.exit(main(*sys.argv[1:]))
    except KeyboardInterrupt:
        sys.exit(130)
