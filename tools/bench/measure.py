"""The rows of tools/bench/run, which starts this in the session of its workshop computer: measure.py WORK [OPTIONS]"""
import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import zipfile
from contextlib import contextmanager
from pathlib import Path
from statistics import median

ROOT = Path(__file__).resolve().parent.parent.parent
TOOLS = ROOT / "build/windows/tools/bench"
PROGRAM = ROOT / "build/windows/ManualInstall.exe"
MKCATALOGUE = ROOT / "build/native/tools/mkcatalogue/mkcatalogue"
DRIVE = Path(os.environ["WINEPREFIX"]) / "drive_c"
KORVEX = DRIVE / "Program Files/Vantor"
CATALOGUE = KORVEX / "Korvex/Manual/kvx3.mdb"
LOG = DRIVE / "install.log"
LIBRARY = DRIVE / "Library"
INSTALL = ["wine", r"D:\programs\setup\ManualInstall.exe", "/VERYSILENT", "/ACCEPT", r"/DIR=C:\Library",
           r"/LOG=C:\install.log"]
OLD, NEW = 1, 2  # layouts of the catalogue


# Starting things


def windows_path(path):
    return "C:\\" + str(path.relative_to(DRIVE)).replace("/", "\\")


def quietly(*command, **options):
    """Wine's helpers would keep a pipe open, so nothing is piped."""
    with tempfile.TemporaryFile("w+") as output:
        status = subprocess.run(list(map(str, command)), stdin=subprocess.DEVNULL, stdout=output,
                                stderr=subprocess.STDOUT, **options).returncode
        output.seek(0)
        text = output.read()
    if status != 0:
        sys.exit(f"{' '.join(map(str, command))} ended with {status}\n{text}")
    return text


def tool(name, *arguments):
    """What a tool of the bench prints as its last line, "extract 1.25 copy 0.75", as a dictionary."""
    words = quietly("wine", TOOLS / f"{name}.exe", *arguments).splitlines()[-1].split()
    return {key: float(value) for key, value in zip(words[::2], words[1::2])}


def seconds(*command):
    os.sync()
    start = time.monotonic()
    quietly(*command)
    return time.monotonic() - start


@contextmanager
def folder_on_drive():
    """A folder on drive C:."""
    folder = Path(tempfile.mkdtemp(prefix="bench", dir=DRIVE))
    try:
        yield folder
    finally:
        empty(folder)


def empty(folder):
    """Gives back what the files take. They themselves stay to the end: for five minutes, ext4 walks past each inode that
    was removed whenever it looks for one. What is kept in memory instead makes the next files wait for new memory."""
    os.sync()
    for path in folder.rglob("*"):
        if path.is_file():
            os.truncate(path, 0)


# The table


class Rows:
    def __init__(self):
        print(f"load of the machine: {os.getloadavg()[0]:.1f} on {os.cpu_count()} processors\n")
        print(f"| {'what':42} | {'seconds':>8} | {'compared with':38} | {'seconds':>8} | {'ratio':>6} | {'aim':>5} |    |")
        print("|---|---:|---|---:|---:|---:|---|")

    def add(self, what, ours, other, theirs, aim=None, ratio=None):
        """`ours` and `theirs` have the rounds' seconds; the ratio is the middle of the rounds' ratios."""
        value = median(a / b for a, b in zip(ours, theirs)) if ratio is None else ratio
        verdict = "" if aim is None else "ok" if value <= aim else "NO"
        print(f"| {what:42} | {median(ours):8.3f} | {other:38} | {median(theirs):8.3f} | {value:6.2f} |"
              f" {'' if aim is None else aim:5} | {verdict:2} |", flush=True)

    def amount(self, what, value, unit, limit):
        print(f"| {what:42} | {'':8} | {f'{value:.1f} of {limit} {unit}':38} | {'':8} | {value / limit:6.2f} | {1:5} |"
              f" {'ok' if value <= limit else 'NO'} |", flush=True)


# Files: extraction, placing, copy


def measure_files(rows, files, rounds):
    with folder_on_drive() as folder:
        manual = folder / "manual"
        quietly("python3", "-B", ROOT / "tools/bench/make_manual.py", manual, files, files // 25)
        (folder / "empty").mkdir()
        (folder / "empty/file").touch()
        times = {}
        for number in range(rounds):
            for name, value in files_round(folder, folder / str(number)).items():
                times.setdefault(name, []).append(value)
            quietly("diff", "-r", folder / f"{number}/unzipped", folder / f"{number}/placed")
            quietly("diff", "-r", folder / f"{number}/unzipped", folder / f"{number}/copied")
            empty(folder / str(number))
    rows.add(f"extraction, {files} files", times["extract"], "unzip -q", times["unzip"], 0.8)
    rows.add(f"extraction, {files} files", times["extract"], "writing them by bare calls", times["write"])
    rows.add(f"copy between folders, {files} files", times["copy"], "cp -r", times["cp"])
    rows.add(f"copy between folders, {files} files", times["copy"], "Wine's xcopy", times["xcopy"], 0.8)
    rows.add(f"placing by a rename, {files} files", times["place"], "copying them", times["copy"], 0.1)


def files_round(folder, place):
    place.mkdir()
    times = {"unzip": seconds("unzip", "-q", folder / "manual.zip", "-d", place / "unzipped"),
             "cp": seconds("cp", "-r", place / "unzipped", place / "cp")}
    os.sync()
    times |= tool("extract_copy", windows_path(folder / "manual.zip"),
                  *(windows_path(place / name) for name in ("ours", "copied", "placed")))
    os.sync()
    times["xcopy"] = xcopy(place / "placed", place / "xcopied") - xcopy(folder / "empty", place / "empty")
    os.sync()
    return times | tool("file_floor", windows_path(place / "placed"), windows_path(place / "floor"), 2)


def xcopy(source, destination):
    """Seconds; those for nearly no file are the start of the program."""
    command = f"xcopy {windows_path(source)} {windows_path(destination)} /E /I /Q"
    return tool("timed_start", "end", command)["end"]


# Catalogue: scan and upgrade on real files


def publication(number):
    """Four letters, the revision, the language; every one has later revisions that are to be looked up."""
    letters = "".join(chr(ord("A") + number // 26 ** place % 26) for place in (3, 2, 1, 0))
    return letters + "0EN"


def car_info(number):
    values = {"Pub_No": publication(number), "Version": 1, "Model_desc": "Talis workshop manual", "Model_ID": "TLS",
              "Lang": "EN", "Ldup": 1, "Year": 2019, "Kubun": "Workshop", "Country": "GB"}
    return "[CAR_INFO]\r\n" + "".join(f"{key}={value}\r\n" for key, value in values.items())


def rows_sql(count):
    """Of manuals of another series than a disc's."""
    lines = ["BEGIN;"]
    for number in range(count):
        name = publication(300_000 + number)
        lines.append(f"INSERT INTO M_manage VALUES ('{name}','Talis workshop manual','TLS','1','2019','Workshop','GB',"
                     rf"'EN','1','workshop','2022-12-05 09:30:00','C:\Library\{name}','0','');")
        lines.append(f"INSERT INTO M_type VALUES ('{name}','0');")
    return "\n".join(lines + ["COMMIT;\n"])


def make_catalogue(path, layout):
    description = path.with_suffix(".txt")
    description.write_text(f"version {layout}\nmodel TLS\tTalis\t1\n")
    quietly(MKCATALOGUE, description, path)
    return path


def aim_of(count, largest):
    """The aims are those of the largest size; a small one takes milliseconds, and says what the work costs at least."""
    return 2 if count == largest else None


def measure_scan(rows, count, rounds):
    with folder_on_drive() as folder:
        disc, computer = folder / "disc", folder / "computer"
        computer.mkdir()
        for number in range(count):
            manual = disc / f"Talis{number:05}_EN"
            manual.mkdir(parents=True)
            (manual / "car_info.ci").write_text(car_info(number), newline="")
        (folder / "rows.sql").write_text(rows_sql(count))
        quietly("sqlite3", "-bail", make_catalogue(computer / "kvx3.mdb", NEW), f".read {folder}/rows.sql")
        ours, bare, service = [], [], []
        for number in range(rounds):
            scan = tool("catalogue_files", "scan", windows_path(disc) + "\\", windows_path(computer))
            assert scan["manuals"] == count
            ours.append(scan["scan"])
            floor = tool("file_floor", windows_path(disc), windows_path(folder / f"floor{number}"), 1)
            bare.append(floor["read"])
            service.append(floor["profile"])
    rows.add(f"scan, {count} manuals", ours, "reading their car_info.ci once", bare, aim_of(count, 2000))
    rows.add(f"scan, {count} manuals", ours, "the same by the profile service", service)


def measure_upgrade(rows, count, rounds):
    with folder_on_drive() as folder:
        (folder / "rows.sql").write_text(rows_sql(count))
        old = make_catalogue(folder / "old.mdb", OLD)
        quietly("sqlite3", "-bail", old, f".read {folder}/rows.sql")
        ours, shell, pauses = [], [], 0
        for number in range(rounds):
            disc, computer = folder / f"disc{number}", folder / f"computer{number}"
            disc.mkdir()
            computer.mkdir()
            make_catalogue(disc / "kvx3new.mdb", NEW)
            shutil.copy(old, computer / "kvx3.mdb")
            copy = make_catalogue(folder / f"shell{number}.mdb", NEW)
            shell.append(seconds("sqlite3", "-bail", copy, f".read {folder}/rows.sql"))
            os.sync()
            upgrade = tool("catalogue_files", "upgrade", windows_path(disc) + "\\", windows_path(computer))
            ours.append(upgrade["upgrade"])
            pauses = upgrade["pauses"]
            carried = quietly("sqlite3", computer / "kvx3.mdb", "select count(*), MDB_Version from M_manage, M_system")
            assert carried.strip() == f"{count}|{NEW}", carried
    rows.add(f"upgrade, {count} rows (+ {pauses:.0f} s of pauses)", ours, "the sqlite3 shell's inserts", shell,
             aim_of(count, 20_000))


# Installation by the real program


def make_disc(disc, count):
    """The sample disc's programs with small manuals of our own, each an archive beside its car_info.ci."""
    shutil.copytree(ROOT / "build/disc/programs", disc / "programs")
    for number in range(count):
        name = f"Talis{number:05}_EN"
        archive = disc / name / "install/condense/manual.zip"
        archive.parent.mkdir(parents=True)
        (disc / name / "car_info.ci").write_text(car_info(number), newline="")
        with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as file:
            for page in ("index.html", *(f"contents/{page}.html" for page in ("index", "brakes", "engine", "torque"))):
                file.writestr(f"{name}/{page}", f"<p>{page} of {name}: remove the bolt</p>\n" * 200)


def install():
    """Seconds of one run, and the peak of its memory in MiB."""
    os.sync()
    start = time.monotonic()
    process = subprocess.Popen(INSTALL, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    peak = 0
    while process.poll() is None:
        try:
            found = re.search(r"VmHWM:\s*(\d+)", Path(f"/proc/{process.pid}/status").read_text())
            peak = int(found[1]) / 1024 if found else peak
        except OSError:
            pass
        time.sleep(0.01)
    if process.returncode != 0:
        sys.exit(f"the installation ended with {process.returncode}\n{LOG.read_text(errors='replace')}")
    return time.monotonic() - start, peak


def pauses_of_a_run():
    """The seconds of the program's fixed pauses in one more run: what it says to the system's Sleep."""
    trace = DRIVE / "relay.txt"
    settings = r"HKCU\Software\Wine\Debug"
    quietly("wine", "reg", "add", settings, "/v", "RelayInclude", "/d", "kernel32.Sleep", "/f")
    with open(trace, "w", encoding="utf-8") as output:
        subprocess.run(INSTALL, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=output, check=True,
                       env=os.environ | {"WINEDEBUG": "+relay,+pid"})
    quietly("wine", "reg", "delete", settings, "/v", "RelayInclude", "/f")
    return [int(text, 16) / 1000 for text in re.findall(r"Call \w+\.Sleep\(([0-9a-f]+)\)", trace.read_text())]


class Computer:
    """The session's computer, with the companion programs set up, as it was before each installation."""

    def __init__(self, work):
        self.work, self.kept = work, work / "korvex"
        self.insert(0)
        install()
        shutil.copytree(KORVEX, self.kept)

    def insert(self, count):
        """Puts a disc with so many manuals into the drive."""
        disc = self.work / "disc"
        self.put_aside(disc)
        make_disc(disc, count)

    def reset(self):
        self.put_aside(LIBRARY)
        self.put_aside(KORVEX)
        shutil.copytree(self.kept, KORVEX)
        LIBRARY.mkdir()

    def put_aside(self, folder):
        """Out of the way, for the reason that `empty` has."""
        if folder.exists():
            folder.rename(Path(tempfile.mkdtemp(dir=self.work)) / folder.name)


def unzip_all(disc, folder):
    """Each archive for itself, and on the drive before the next, as an installation has to do it."""
    start = time.monotonic()
    for archive in sorted(disc.glob("*/install/condense/manual.zip")):
        quietly("unzip", "-q", archive, "-d", folder)
        quietly("sync", "-f", folder)
    return time.monotonic() - start


def measure_installation(rows, computer, count, rounds):
    computer.insert(count)
    first, second, unzip, peaks = [], [], [], []
    for _ in range(rounds):
        computer.reset()
        with folder_on_drive() as folder:
            unzip.append(unzip_all(computer.work / "disc", folder))
        ours, peak = install()
        first.append(ours)
        peaks.append(peak)
        assert len(list(LIBRARY.glob("*/contents/index.html"))) == count
        second.append(install()[0])
    again = sum(pauses_of_a_run())
    computer.reset()
    pauses = sum(pauses_of_a_run())
    first, second = [value - pauses for value in first], [value - again for value in second]
    limit = [0.12 * count + 2] * rounds
    rows.add(f"installation, {count} manuals (+ {pauses:.0f} s of pauses)", first, "0.12 s each and 2 s", limit, 1)
    rows.add(f"installation, {count} manuals", first, "unzip -q and sync of each", unzip)
    rows.add(f"the second run over them (+ {again:.0f} s)", second, "the first run", first)
    return max(peaks)


def peak_of_upgrade(computer, count):
    """MiB that the program takes when its catalogue has so many rows of the former layout."""
    computer.insert(0)
    computer.reset()
    rows = computer.work / "rows.sql"
    rows.write_text(rows_sql(count))
    old = make_catalogue(computer.work / "old.mdb", OLD)
    quietly("sqlite3", "-bail", old, f".read {rows}")
    shutil.copy(old, CATALOGUE)
    peak = install()[1]
    carried = quietly("sqlite3", CATALOGUE, "select count(*), MDB_Version from M_manage, M_system")
    assert carried.strip() == f"{count}|{NEW}", carried
    return peak


# Start


def measure_start(rows, computer, rounds):
    computer.insert(0)
    tool("timed_start", "window", str(TOOLS / "empty_window.exe"))
    ours, empty = [], []
    for _ in range(2 * rounds):
        ours.append(tool("timed_start", "window", r"D:\programs\setup\ManualInstall.exe")["window"])
        empty.append(tool("timed_start", "window", str(TOOLS / "empty_window.exe"))["window"])
    rows.add("start to the menu", ours, "an empty program's window", empty)
    rows.amount("the same, what is more", 1000 * median(a - b for a, b in zip(ours, empty)), "ms", 300)


def main():
    parser = argparse.ArgumentParser(prog="tools/bench/run")
    parser.add_argument("work", type=Path)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--only", action="append", choices=("files", "catalogue", "install", "start"))
    parser.add_argument("--rounds", type=int, default=5)
    options = parser.parse_args()

    def sizes(kind, *all_sizes):
        wanted = not options.only or kind in options.only
        return all_sizes[:1 if options.quick else None] if wanted else ()

    rows = Rows()
    for files in sizes("files", 500, 2000, 5000):
        measure_files(rows, files, options.rounds)
    for count in sizes("catalogue", 20, 200, 2000):
        measure_scan(rows, count, options.rounds)
    for count in sizes("catalogue", 200, 2000, 20_000):
        measure_upgrade(rows, count, options.rounds)
    computer = Computer(options.work)
    peaks = [measure_installation(rows, computer, count, options.rounds if count < 500 else 1)
             for count in sizes("install", 1, 50, 500)]
    if peaks:
        rows.amount("peak memory of the installations", max(peaks), "MiB", 32)
    for count in sizes("install", 2000, 20_000):
        rows.amount(f"peak memory of an upgrade, {count} rows", peak_of_upgrade(computer, count), "MiB", 32)
    for _ in sizes("start", 1):
        measure_start(rows, computer, options.rounds)
        rows.amount("size of the program", PROGRAM.stat().st_size / 2 ** 20, "MiB", 3)
    print(f"\nload of the machine: {os.getloadavg()[0]:.1f}. Seconds are the middle of {options.rounds} rounds, ratios that "
          "of the rounds' ratios; the pauses that\nthe program makes by design are taken off and named in the row.")


main()
