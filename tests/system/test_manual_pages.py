"""The manual pages: they are well formed, and tell the command lines that the programs have."""
import shutil
import unittest

from command_help import COMMON_OPTIONS, every_command, read_help
from manual_page import ManualPage, complaints
from programs import SHARE

PAGES = SHARE / "man"


def setUpModule():
    if shutil.which("mandoc") is None:
        raise unittest.SkipTest("mandoc is not installed")


class Markup(unittest.TestCase):
    def test_nothing_is_wrong_with_any_page(self):
        pages = sorted(PAGES.iterdir())
        self.assertEqual([page.name for page in pages],
                         ["quillonctl.1", "quillondb.1", "quillonweb.8"])
        for page in pages:
            with self.subTest(page=page.name):
                self.assertEqual(complaints(page), [])


class PageOfCommands:
    """Each command of the program has a part of the page, a subsection."""
    program = None

    @classmethod
    def setUpClass(cls):
        cls.page = ManualPage(PAGES / f"{cls.program}.1")

    def told(self):
        return read_help(self.program)

    def test_the_commands_of_the_program_are_the_parts_of_the_page(self):
        self.assertEqual(set(self.page.options) - {""}, self.told().commands)

    def test_a_part_names_all_commands_in_it_and_no_others(self):
        for name in sorted(self.told().commands):
            with self.subTest(command=name):
                within = {" ".join(path) for path in every_command(self.program, name)}
                own = {command for command in self.page.commands[name]
                       if command.split()[0] == name}
                self.assertEqual(own, within or {name})

    def test_a_command_that_is_named_anywhere_exists(self):
        named = set().union(*self.page.commands.values())
        self.assertLessEqual(named, {" ".join(path) for path in every_command(self.program)})

    def test_a_part_tells_all_options_of_its_commands_and_no_others(self):
        for name in sorted(self.told().commands):
            with self.subTest(command=name):
                self.assertEqual(self.page.options[name], self.options_within(name))

    def test_the_options_of_the_program_are_told_outside_the_parts(self):
        self.assertLessEqual(self.told().options, self.page.options[""])

    def test_an_option_that_is_told_outside_the_parts_exists(self):
        existing = self.told().options.union(
            *(self.options_within(name) for name in self.told().commands))
        self.assertLessEqual(self.page.options[""], existing)

    def options_within(self, name):
        """Those of the command and of all commands in it, but the ones that all have."""
        paths = [(name,), *every_command(self.program, name)]
        return set().union(*(read_help(self.program, *path).options for path in paths)
                           ) - COMMON_OPTIONS


class PageOfQuillonctl(PageOfCommands, unittest.TestCase):
    program = "quillonctl"


class PageOfQuillondb(PageOfCommands, unittest.TestCase):
    program = "quillondb"


if __name__ == "__main__":
    unittest.main()
