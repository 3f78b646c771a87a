"""Checks what is delivered on a disc: the texts in SysDir, and the manuals of the generated sample disc."""
import configparser
from pathlib import Path
import re
import subprocess
import sys
import tempfile
import unittest
from urllib.parse import unquote
import zipfile

ROOT = Path(__file__).resolve().parents[2]
SYSDIR = ROOT / "disc" / "SysDir"
FIELDS = ("Pub_No", "Version", "Model_desc", "Model_ID", "Lang", "Ldup", "Year", "Kubun", "Country")


def read_profile(path):
    """An initialisation file as the profile services see it: UTF-16 when it begins with the mark, else plain."""
    content = path.read_bytes()
    text = content.decode("utf-16") if content.startswith(b"\xff\xfe") else content.decode("ascii")
    profile = configparser.RawConfigParser(delimiters="=", comment_prefixes=";", strict=True)
    profile.optionxform = str
    profile.read_string(text)
    return profile


class DeliveredTexts(unittest.TestCase):
    def setUp(self):
        self.texts = {code: dict(read_profile(SYSDIR / f"M{code}.ini")["MESSAGE"]) for code in ("09", "11")}

    def test_every_language_has_every_number_of_the_table(self):
        table = re.findall(r"^\| ([\d, ]+) \|", (ROOT / "disc/README.md").read_text(encoding="utf-8"), re.MULTILINE)
        keys = {f"M{int(number):03}" for cell in table for number in cell.split(",")}
        for code, texts in self.texts.items():
            self.assertEqual(keys, set(texts), f"M{code}.ini")

    def test_the_program_knows_exactly_these_numbers(self):
        header = (ROOT / "app/Messages.h").read_text(encoding="utf-8")
        known = {int(number) for number in re.findall(r"constexpr std::int16_t \w+ = (\d+);", header)}
        self.assertEqual({f"M{number:03}" for number in known}, set(self.texts["09"]))

    def test_texts_fit_and_keep_their_markers(self):
        for code, texts in self.texts.items():
            with self.subTest(language=code):
                self.assertEqual([], [key for key, text in texts.items() if not 0 < len(text.strip('"')) <= 255])
                self.assertTrue(all("@" in texts[key] for key in ("M059", "M101")))
                self.assertTrue(all(marker in texts["M072"] for marker in ("@1", "@2", "@3", "@4", "@5", "|")))
                self.assertEqual([], [key for key in ("M043", "M060") if re.search(r'[\\/:*?"<>|]', texts[key])])

    def test_shortcut_letters_are_the_same_in_every_language_and_differ_on_one_screen(self):
        letters = {
            code: {key: text[text.index("&") + 1].upper() for key, text in texts.items() if "&" in text}
            for code, texts in self.texts.items()
        }
        self.assertEqual(letters["09"], letters["11"])
        for screen in (("M085", "M086", "M093"), ("M056", "M057")):
            self.assertEqual(len(screen), len({letters["09"][key] for key in screen}))

    def test_files_have_the_bytes_that_windows_expects(self):
        for path in (*SYSDIR.glob("M*.ini"), *SYSDIR.glob("Licence_*.txt")):
            with self.subTest(path.name):
                content = path.read_bytes()
                self.assertTrue(content.startswith(b"\xff\xfe"))
                text = content.decode("utf-16")
                self.assertEqual(text.count("\n"), text.count("\r\n"))
        self.assertNotRegex((SYSDIR / "RmDir.bat").read_bytes(), rb"[^\r]\n|[^\x00-\x7f]")

    def test_settings_are_complete_and_numbers_are_numbers(self):
        settings = read_profile(SYSDIR / "SysParameter.ini")
        for section, keys in (
            ("SYSTEM INFORMATION", ("LCID_Flg", "ShortcutIcon", "ZIP_ExtractTime")),
            ("MDB COLUMN LENGTH", FIELDS),
        ):
            for key in keys:
                self.assertRegex(settings[section][key], r"^\d+$", key)
        self.assertEqual(16, sum(len(settings[section]) for section in settings.sections()))


class SampleDisc(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.disc = Path(cls.temporary.name) / "disc"
        subprocess.run([sys.executable, "-B", ROOT / "samples/generate.py", "disc", cls.disc], check=True)
        cls.records = {path.parent: read_profile(path)["CAR_INFO"] for path in cls.disc.glob("*/car_info.ci")}

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def test_descriptions_are_complete_and_fit_their_columns(self):
        limits = read_profile(SYSDIR / "SysParameter.ini")["MDB COLUMN LENGTH"]
        self.assertGreaterEqual(len(self.records), 8)
        for folder, record in self.records.items():
            with self.subTest(folder.name):
                self.assertEqual(set(FIELDS), set(record))
                self.assertEqual([], [key for key in FIELDS if not 0 < len(record[key]) <= int(limits[key])])
                self.assertRegex(record["Pub_No"], r"^\w{4}\d\w{2,3}$")
                self.assertRegex(record["Year"], r"^\d{4}$")
        numbers = [record["Pub_No"] for record in self.records.values()]
        self.assertEqual(len(numbers), len(set(numbers)))

    def test_each_archive_holds_the_folder_of_its_name_with_both_start_pages(self):
        for archive in self.disc.glob("*/install/condense/manual.zip"):
            name = archive.parents[2].name
            with self.subTest(name), zipfile.ZipFile(archive) as content:
                self.assertIsNone(content.testzip())
                entries = content.namelist()
                self.assertEqual({name}, {entry.split("/")[0] for entry in entries})
                self.assertLessEqual({f"{name}/index.html", f"{name}/contents/index.html"}, set(entries))
                for entry in entries:
                    loose = self.disc / entry
                    self.assertEqual(content.read(entry), loose.read_bytes(), entry)

    def test_a_manual_is_an_archive_or_a_pdf_and_never_both(self):
        for folder, record in self.records.items():
            pdf = folder / "contents" / f"{record['Pub_No']}.pdf"
            self.assertNotEqual(pdf.exists(), (folder / "install/condense/manual.zip").exists(), folder.name)

    def test_a_comparison_set_replaces_pages_of_its_own_manual(self):
        sets = list(self.disc.glob("*/install/compare"))
        self.assertTrue(sets)
        for compare in sets:
            pages = [path for path in compare.rglob("*") if path.is_file()]
            self.assertTrue(pages)
            for page in pages:
                current = compare.parents[1] / "contents" / page.relative_to(compare)
                self.assertEqual(current.read_bytes(), page.read_bytes())

    def test_every_link_leads_to_a_file_on_the_disc(self):
        (self.disc / "install.html").write_bytes((ROOT / "disc/install.html").read_bytes())
        for page in self.disc.rglob("*.html"):
            if "compare" in page.parts:
                continue
            for link in re.findall(r'(?:href|src)="([^"#]+)', page.read_text(encoding="utf-8")):
                self.assertTrue((page.parent / unquote(link)).is_file(), f"{page}: {link}")

    def test_the_manager_has_the_stamped_manual_of_every_language(self):
        for code in ("09", "11"):
            name = read_profile(SYSDIR / f"M{code}.ini")["MESSAGE"]["M060"]
            self.assertIn(b"/T (ver_mam_man)", (self.disc / "programs/man_manager" / name).read_bytes(), name)

    def test_manual_information_names_every_folder_and_a_month(self):
        lines = (self.disc / "programs/setup/man_info_do.ci").read_text(encoding="utf-8-sig").splitlines()
        fields = [line.split(",") for line in lines]
        self.assertEqual({folder.name for folder in self.records}, {entry[3] for entry in fields})
        self.assertEqual(
            [], [entry for entry in fields if len(entry) != 6 or not re.match(r"^\d{4}/(0[1-9]|1[0-2])$", entry[5])]
        )

    def test_two_runs_give_the_same_bytes(self):
        again = Path(self.temporary.name) / "again"
        subprocess.run([sys.executable, "-B", ROOT / "samples/generate.py", "disc", again], check=True)
        files = [path.relative_to(again) for path in again.rglob("*") if path.is_file()]
        self.assertEqual([], [name for name in files if (again / name).read_bytes() != (self.disc / name).read_bytes()])


class MadeDisc(unittest.TestCase):
    def test_the_notices_of_all_linked_libraries_lie_beside_the_program(self):
        builds = (ROOT / "build/windows", ROOT / "build/native")
        subprocess.run([ROOT / "samples/make-disc.sh", ROOT / "build/disc", *builds], check=True)
        notices = (ROOT / "build/disc/programs/setup/NOTICES.txt").read_text(encoding="utf-8-sig")
        for owner in ("Tim Kientzle", "Jean-loup Gailly", "D. Richard Hipp", "GCC RUNTIME LIBRARY EXCEPTION",
                      "the mingw-w64 project", "Lockless"):
            self.assertIn(owner, notices)


if __name__ == "__main__":
    unittest.main()
