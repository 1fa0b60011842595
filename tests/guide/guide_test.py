#!/usr/bin/env python3
"""Keeps the users' guide true: links and pictures, captions, keys, and the command line with all its examples.

usage: guide_test.py CLI SAMPLE-MAKER SOURCE-FOLDER HELP-FOLDER
"""

import filecmp
import html.parser
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

CLI, SAMPLE, ROOT, HELP = (pathlib.Path(argument).resolve() for argument in sys.argv[1:5])
GUIDE = ROOT / "docs/guide"
VOID = {"meta", "link", "img", "br"}
BLOCKS = {"p", "td", "th", "li", "dd"}
ELIDED = "…"


class Page(html.parser.HTMLParser):
    """A page as the tests ask for it. `texts`: the text below each element with an id, all of the page under ""."""

    def __init__(self, path):
        super().__init__()
        self.ids, self.links, self.images, self.sessions, self.menus, self.rows, self.faults = set(), [], [], [], [], [], []
        self.texts = {"": ""}
        self.open = []  # (tag, attributes, text)
        self.feed(path.read_text(encoding="utf-8"))
        self.close()
        self.faults += ["not closed: " + tag for tag, _, _ in self.open]

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if "id" in attributes:
            if attributes["id"] in self.ids:
                self.faults.append("twice: " + attributes["id"])
            self.ids.add(attributes["id"])
        if tag == "img":
            self.images.append(attributes)
        if "href" in attributes:
            self.links.append(attributes["href"])
        if tag not in VOID:
            self.open.append((tag, attributes, []))

    def handle_endtag(self, tag):
        if not self.open or self.open[-1][0] != tag:
            return self.faults.append(f"</{tag}> at {self.getpos()}")
        _, attributes, pieces = self.open.pop()
        text = "".join(pieces) + ("\n" if tag in BLOCKS else "")
        if self.open:
            self.open[-1][2].append(text)
        if "id" in attributes:
            self.texts[attributes["id"]] = text
        if attributes.get("class") == "menu":
            self.menus.append(text)
        if attributes.get("class") == "session":
            self.sessions.append(text)
        if tag == "tr":
            self.rows.append(text)
        if tag == "body":
            self.texts[""] = text

    def handle_data(self, data):
        if self.open:
            self.open[-1][2].append(data)


PAGES = {path.name: Page(path) for path in sorted(GUIDE.glob("*.html"))}
COMMANDS = PAGES["command-line.html"]


def captions_in(text):
    """What stands between 「 and 」, the outermost ones."""
    found, depth, begin = [], 0, 0
    for place, sign in enumerate(text):
        if sign == "「":
            begin = place + 1 if depth == 0 else begin
            depth += 1
        elif sign == "」":
            depth -= 1
            if depth == 0:
                found.append(text[begin:place])
    return found


def menu_map():
    """(screen, name, caption, keys) of every entry and menu of the menu map."""
    entries, screen = [], ""
    for line in (ROOT / "tests/shell/menu_map.txt").read_text(encoding="utf-8").splitlines():
        found = re.fullmatch(r'\s*(?:(\w+)\.)?(\w+)(?:\(\d+\))? "(.*)"(.*)', line)
        if found:
            screen = found[1] or screen
            keys = "" if found[1] else found[4].strip()
            entries.append((screen, found[2], found[3].strip(), keys))
    return entries


def run_cli(*arguments):
    return subprocess.run([CLI, *arguments], stdout=subprocess.PIPE, encoding="utf-8", check=True).stdout


def options_in(text):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z0-9-]*", text))


def options_of(*command):
    return set(re.findall(r"^  (?:-\w,)?(--[a-z][a-z0-9-]*)", run_cli(*command, "--help"), re.M)) - {"--help"}


class Files(unittest.TestCase):
    def test_pages_are_well_formed(self):
        self.assertEqual({name: page.faults for name, page in PAGES.items() if page.faults}, {})

    def test_every_link_leads_somewhere(self):
        for name, page in PAGES.items():
            for link in page.links:
                target, _, place = link.partition("#")
                target = target or name
                self.assertTrue((GUIDE / target).is_file(), f"{name}: {link}")
                if place:
                    self.assertIn(place, PAGES[target].ids, f"{name}: {link}")
        linked = {link for page in PAGES.values() for link in page.links}
        self.assertEqual(set(PAGES) - linked, set(), "pages that no link leads to")

    def test_every_picture_is_there_and_used(self):
        shown = set()
        for name, page in PAGES.items():
            for image in page.images:
                with self.subTest(page=name, image=image["src"]):
                    self.assertTrue(image["alt"])
                    self.assertTrue((GUIDE / image["src"]).read_bytes().startswith(b"\x89PNG\r\n\x1a\n"))
                    shown.add(image["src"])
        files = {"images/" + path.name for path in (GUIDE / "images").iterdir()}
        self.assertEqual(files, shown)
        self.assertLess(sum((GUIDE / file).stat().st_size for file in files), 1_500_000)

    def test_the_program_has_the_guide_as_its_help(self):
        def names(folder):
            return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file())

        self.assertEqual(names(HELP), names(GUIDE))
        self.assertEqual(filecmp.cmpfiles(GUIDE, HELP, names(GUIDE), shallow=False)[1:], ([], []))


class Captions(unittest.TestCase):
    def test_menus_stand_in_the_menu_map(self):
        known = {caption for _, _, caption, _ in menu_map()}
        strange = [(name, menu) for name, page in PAGES.items() for menu in page.menus if menu[1:-1].strip() not in known]
        self.assertEqual(strange, [])

    def test_all_other_captions_are_texts_of_the_program(self):
        known = [caption for _, _, caption, _ in menu_map()]
        for path in (ROOT / "src").rglob("*.[ch]*"):
            known += re.findall(r'"((?:[^"\\\n]|\\.)*)"', path.read_text(encoding="utf-8"))
        known = "\n".join(known)
        strange = [(name, caption) for name, page in PAGES.items() for caption in captions_in(page.texts[""])
                   if caption.strip() not in known]
        self.assertEqual(strange, [])

    def test_what_waits_for_its_screen_is_told(self):
        source = (ROOT / "src/shell/later_screens.cpp").read_text(encoding="utf-8")
        waiting = set(re.findall(r'\{"(frm\w+)", "(\w+)", "[^"]*"\}', source))
        expected = {caption for screen, name, caption, _ in menu_map() if (screen, name) in waiting}
        page = PAGES["index.html"]
        told = re.search(r'id="later".*?<h2|id="later".*', (GUIDE / "index.html").read_text(encoding="utf-8"), re.S)[0]
        self.assertIn("later", page.ids)
        self.assertEqual({text for text in captions_in(told) if f'class="menu">「{text}」' in told}, expected)

    def test_every_key_of_a_menu_is_in_the_table_of_keys(self):
        rows = PAGES["keys.html"].rows
        for _, name, caption, keys in menu_map():
            if keys and not keys.startswith(("bar", "popup")):
                found = [row for row in rows if keys in row and "「" + caption + "」" in row]
                self.assertTrue(found, f"{name} {caption} {keys}")


class CommandLine(unittest.TestCase):
    def test_every_command_is_described_and_no_other(self):
        commands = set(re.findall(r"^  ([a-z][a-z-]*) ", run_cli("--help"), re.M))
        self.assertEqual({name[4:] for name in COMMANDS.ids if name.startswith("cmd-")}, commands)
        common = options_of()
        self.assertEqual(options_in(COMMANDS.texts["common-options-table"]), common)
        for command in sorted(commands):
            with self.subTest(command=command):
                self.assertEqual(options_in(COMMANDS.texts["cmd-" + command]) | common, options_of(command) | common)

    def test_every_example_does_what_it_shows(self):
        """Lines behind "$ " are run in one shell, in the order of the page; what follows is their output."""
        examples = []
        for line in "".join(session.lstrip("\n") for session in COMMANDS.sessions).splitlines():
            if line.startswith("$ "):
                examples.append((line[2:], []))
            else:
                examples[-1][1].append(line)
        self.assertGreater(len(examples), 20)
        script = "".join(f"{command}\nprintf '\\036%d\\036' $?\n" for command, _ in examples)
        with tempfile.TemporaryDirectory(prefix="qmguide_") as folder:
            subprocess.run([SAMPLE, "hanbai.mdb"], cwd=folder, check=True, stdout=subprocess.DEVNULL)
            environment = dict(os.environ, PATH=f"{CLI.parent}:{os.environ['PATH']}", XDG_DATA_HOME=folder + "/data",
                               TMPDIR=folder)
            run = subprocess.run(["bash", "-c", script], cwd=folder, env=environment, encoding="utf-8",
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        results = run.stdout.split("\036")
        for place, (command, expected) in enumerate(examples):
            output, status = results[2 * place], int(results[2 * place + 1])
            if status:
                output += f"[終了コード {status}]\n"
            pattern = "".join(re.escape(line + "\n") for line in expected)
            pattern = pattern.replace(re.escape("\n" + ELIDED + "\n"), "\n(?s:.*)")
            if expected[:1] == [ELIDED]:
                pattern = "(?s:.*)" + pattern[len(re.escape(ELIDED + "\n")):]
            pattern = pattern.replace(ELIDED, ".*")
            self.assertRegex(output, r"\A" + pattern + r"\Z", command + "\n" + run.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
