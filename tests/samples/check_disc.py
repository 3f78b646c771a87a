"""Checks what is delivered on a disc: the texts in SysDir, and the sample disc."""
import configparser
from pathlib import Path
import re
import subprocess
import unittest
from urllib.parse import unquote

ROOT = Path(__file__).resolve().parents[2]
SYSDIR = ROOT / "disc" / "SysDir"
# The delivered languages, each with the characters that every computer of that language can show.
LANGUAGES = {"04S": "gb2312", "04T": "cp950", "11": "cp932", "12": "cp949"}
LANGUAGES.update(dict.fromkeys(("07", "09", "0A", "0C", "10"), "cp1252"))
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
        self.texts = {path.stem[1:]: dict(read_profile(path)["MESSAGE"]) for path in SYSDIR.glob("M*.ini")}
        self.english = self.texts["09"]
        self.terms = {path.stem[8:]: path.read_text(encoding="utf-16") for path in SYSDIR.glob("Licence_*.txt")}

    def test_every_language_has_both_files(self):
        self.assertEqual(sorted(LANGUAGES), sorted(self.texts))
        self.assertEqual(sorted(LANGUAGES), sorted(self.terms))

    def test_every_language_has_every_number_of_the_table(self):
        table = re.findall(r"^\| ([\d, ]+) \|", (ROOT / "disc/README.md").read_text(encoding="utf-8"), re.MULTILINE)
        keys = {f"M{int(number):03}" for cell in table for number in cell.split(",")}
        for code, texts in self.texts.items():
            self.assertEqual(keys, set(texts), f"M{code}.ini")

    def test_the_program_knows_exactly_these_numbers(self):
        header = (ROOT / "app/Messages.h").read_text(encoding="utf-8")
        known = {int(number) for number in re.findall(r"constexpr std::int16_t \w+ = (\d+);", header)}
        self.assertEqual({f"M{number:03}" for number in known}, set(self.texts["09"]))
        all_numbers = re.search(r"All\[\] = {([^}]*)}", header)[1]
        self.assertEqual(known, {int(number) for number in all_numbers.split(",")})

    def test_texts_fit_and_keep_their_markers(self):
        places = {"M084": 30, "M085": 34, "M086": 34, "M093": 34}
        for code, texts in self.texts.items():
            with self.subTest(language=code):
                self.assertEqual(
                    [], [key for key, text in texts.items() if not 0 < len(text.strip('"')) <= places.get(key, 255)]
                )
                for key, text in texts.items():
                    markers = [sorted(re.findall(r"@\d?|\|", each)) for each in (self.english[key], text)]
                    self.assertEqual(*markers, key)
                self.assertEqual([], [key for key in ("M043", "M060") if re.search(r'[\\/:*?"<>|]', texts[key])])

    def test_only_a_blank_at_an_edge_is_quoted(self):
        """Chinese and Japanese sentences follow each other without a blank."""
        for code, texts in self.texts.items():
            quoted = {key: text for key, text in texts.items() if text[0] == '"' or text[-1] == '"'}
            self.assertEqual({"M096"} if code in ("04S", "04T", "11") else {"M091", "M096"}, set(quoted), code)
            for key, text in quoted.items():
                self.assertRegex(text, {"M091": '^" [^"]+[^ "]"$', "M096": '^"[^ "][^"]+ "$'}[key], code)

    def test_nothing_is_left_in_english(self):
        for code in LANGUAGES.keys() - {"09"}:
            same = {key for key, text in self.texts[code].items() if text == self.english[key]}
            self.assertLessEqual(same, {"M006", "M055", "M060", "M068", "M069"}, code)

    def test_shortcut_letters_mark_the_same_texts_in_every_language_and_differ_on_one_screen(self):
        for code, texts in self.texts.items():
            letters = {key: re.findall("&(.?)", text.upper()) for key, text in texts.items() if "&" in text}
            self.assertEqual({key for key, text in self.english.items() if "&" in text}, set(letters), code)
            self.assertEqual([], [key for key, found in letters.items() if len(found) != 1 or not found[0].isalpha()])
            for screen in (("M085", "M086", "M093"), ("M056", "M057")):
                self.assertEqual(len(screen), len({letters[key][0] for key in screen}), code)

    def test_computers_of_a_language_have_all_its_characters(self):
        for code, page in LANGUAGES.items():
            for text in (*self.texts[code].values(), self.terms[code]):
                text.encode(page)

    def test_the_terms_have_the_same_sections_in_every_language(self):
        for code, text in self.terms.items():
            numbers = re.findall(r"^(\d+)\. \S", text, re.MULTILINE)
            self.assertEqual([str(number) for number in range(1, 11)], numbers, code)

    def test_start_page_and_guide_serve_every_language(self):
        start, guide = [(ROOT / "disc" / name).read_text(encoding="utf-8") for name in ("index.html", "install.html")]
        sections = re.findall(r'<div class="language" id="([\w-]+)" lang="\1">(.*?)</table>', guide, re.DOTALL)
        languages = [language for language, _ in sections]
        self.assertEqual(len(LANGUAGES), len(set(languages)))
        for page in (start, guide):
            bar = re.findall(r'<li lang="([\w-]+)"><a href="(?:install\.html)?#\1">', page)
            self.assertEqual(languages, bar)
        self.assertEqual(2 * languages, re.findall(r'<li lang="([\w-]+)">', start), "the bar, then the sentences")
        places = set(re.findall(r' id="([\w-]+)"', guide))
        self.assertLessEqual(set(re.findall(r' (?:xlink:)?href="#([\w-]+)"', guide)), places)
        shapes = [re.findall(r"<(?!/?b>)[^ >]+", section) for _, section in sections]
        self.assertEqual([], [language for language, shape in zip(languages, shapes) if shape != shapes[0]])

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


class MadeDisc(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        builds = (ROOT / "build/windows", ROOT / "build/native")
        subprocess.run([ROOT / "samples/make-disc.sh", ROOT / "build/disc", *builds], check=True)

    def test_nothing_on_it_would_surprise_a_workshop(self):
        check = subprocess.run([ROOT / "build/native/tools/checkdisc/checkdisc", ROOT / "build/disc"], capture_output=True)
        self.assertEqual((0, b"", b""), (check.returncode, check.stdout, check.stderr))

    def test_every_link_of_every_page_leads_to_a_file_on_the_disc(self):
        for page in (ROOT / "build/disc").rglob("*.html"):
            if "compare" not in page.parts:
                for link in re.findall(r'(?:href|src)="([^"#]+)', page.read_text(encoding="utf-8")):
                    self.assertTrue((page.parent / unquote(link)).is_file(), f"{page}: {link}")

    def test_the_manager_has_the_stamped_manual_of_every_language(self):
        for code in LANGUAGES:
            name = read_profile(SYSDIR / f"M{code}.ini")["MESSAGE"]["M060"]
            self.assertIn(b"/T (ver_mam_man)", (ROOT / "build/disc/programs/man_manager" / name).read_bytes(), name)

    def test_the_notices_of_all_linked_libraries_lie_beside_the_program(self):
        notices = (ROOT / "build/disc/programs/setup/NOTICES.txt").read_text(encoding="utf-8-sig")
        for owner in ("Tim Kientzle", "Jean-loup Gailly", "D. Richard Hipp", "GCC RUNTIME LIBRARY EXCEPTION",
                      "the mingw-w64 project", "Lockless"):
            self.assertIn(owner, notices)


if __name__ == "__main__":
    unittest.main()
