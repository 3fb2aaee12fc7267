"""The completion of command lines in bash: it offers what the programs have, and what it offers is
accepted."""
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import fleet
from command_help import COMMON_OPTIONS, every_command, read_help
from quillonctl import ask
from shell_completion import COMPLETION, arguments_after_typing, offers
from waiting import DEADLINE

SITE = fleet.declare_idle()
PACKAGE = Path("/usr/share/bash-completion/bash_completion")
RECEIVER = ("receivers", "add", "--name", "Ann", "--recipient", "ann@example.org")

# What stands before a value that has no list in the program's own help.
OPEN_VALUES = [
    ("apply-changes",),
    ("save", "--date-format"),
    ("save", "--char-set"),
    (*RECEIVER, "--schedule"),
    (*RECEIVER, "--week-day"),
    (*RECEIVER, "--report1"),
    (*RECEIVER, "--report5"),
    ("smtp", "set", "--priority"),
    ("smtp", "set", "--char-set"),
    ("smtp", "set", "--auth-mode"),
    ("smtp", "set", "--encoding"),
    ("smtp", "set", "--body-encoding"),
    ("smtp", "set", "--body-format"),
]


class Offered:
    """Everything that the help of one program tells."""
    program = None

    def each_path(self):
        return [(), *every_command(self.program)]

    def test_the_commands_of_the_program_and_no_others(self):
        for path in self.each_path():
            told = read_help(self.program, *path)
            if not told.commands:
                continue
            with self.subTest(path=path):
                self.assertEqual(set(offers(self.program, *path, "")), told.commands)

    def test_the_long_options_of_each_command_and_no_others(self):
        for path in self.each_path():
            with self.subTest(path=path):
                told = {option for option in read_help(self.program, *path).options
                        if option.startswith("--")}
                offered = set(offers(self.program, *path, "--"))
                self.assertIn("--help", offered)
                self.assertEqual(offered - COMMON_OPTIONS, told - COMMON_OPTIONS)

    def test_the_words_of_which_a_value_is_one(self):
        for path in self.each_path():
            for name, words in read_help(self.program, *path).choices.items():
                before = (name,) if name.startswith("-") else ()
                with self.subTest(path=path, value=name):
                    self.assertEqual(set(offers(self.program, *path, *before, "")), words)


class OfferedForQuillonctl(Offered, unittest.TestCase):
    program = "quillonctl"

    def test_the_help_tells_the_words_of_some_values(self):
        choices = {path: read_help(self.program, *path).choices for path in self.each_path()}
        self.assertEqual(choices["report", "disks"]["--order"], {"asc", "desc"})
        self.assertEqual(choices["save",]["--enabled"], {"yes", "no"})
        self.assertIn("inerrors", choices["report", "access"]["METRIC"])


class OfferedForQuillondb(Offered, unittest.TestCase):
    program = "quillondb"

    def test_the_help_tells_the_tables(self):
        for command in ("load", "export"):
            self.assertEqual(read_help(self.program, command).choices,
                             {"--table": {"VLAN", "MAC", "HostDiskInfo"}})


class Values(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        fleet.start()

    def test_what_is_offered_is_accepted(self):
        for before in OPEN_VALUES:
            values = offers("quillonctl", *before, "")
            self.assertTrue(values, before)
            for value in values:
                with self.subTest(before=before, value=value):
                    ask(SITE, *before, value)


class Words(unittest.TestCase):
    def test_only_those_that_begin_as_what_is_typed(self):
        self.assertEqual(offers("quillonctl", "mail"), ["mail-create"])
        self.assertEqual(offers("quillonctl", "report", "disks", "--by", "trend1"), ["trend14d"])

    def test_behind_the_directory_follows_the_command(self):
        for directory in (["-C", "/opt"], ["--directory", "/opt"], ["--directory", "=", "/opt"]):
            with self.subTest(directory=directory):
                self.assertEqual(offers("quillonctl", *directory, "sta"), ["status"])

    def test_the_value_of_an_option_is_no_command(self):
        self.assertEqual(offers("quillonctl", "-C", "report", "acc"), [])

    def test_an_equals_sign_may_stand_before_a_value(self):
        save = ("quillonctl", "save", "--date-format")
        self.assertEqual(offers(*save, "=", "DD"), ["DD/MM/YYYY"])
        self.assertEqual(len(offers(*save, "=")), 3)

    def test_options_follow_where_nothing_else_can(self):
        self.assertIn("--address", offers("quillonctl", "save", ""))
        self.assertIn("--attach", offers("quillonctl", "receivers", "change", "3", ""))

    def test_nothing_is_made_up_for_a_text_of_the_operators_own(self):
        for words in (["test-mail", ""], ["receivers", "change", ""], ["save", "--port", ""],
                      ["report", "mac-ip", ""], ["no-such-command", ""]):
            with self.subTest(words=words):
                self.assertEqual(offers("quillonctl", *words), [])

    def test_a_program_with_a_path_is_the_same(self):
        self.assertEqual(offers("/usr/local/bin/quillondb", "che"), ["check"])


class Paths(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="quillon completion ")
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        (Path(self.folder) / "my site").mkdir()
        (Path(self.folder) / "my file").touch()

    def offered_behind(self, *words):
        """The names that follow "my"."""
        return {Path(path).name for path in offers(*words, f"{self.folder}/my")}

    def test_where_a_directory_belongs_files_are_not_offered(self):
        for words in (["quillonctl", "-C"], ["quillonctl", "--directory"], ["quillondb", "create"],
                      ["quillondb", "demo", "--replace"], ["quillondb", "check", "--brief"],
                      ["quillondb", "sync-jet", "--reports", "a.mdb", "--dry-run"],
                      ["quillondb", "load", "--table", "MAC", "a.csv"],
                      ["quillondb", "export", "--table", "MAC", "-"],
                      ["quillondb", "backup"], ["quillondb", "backup", "/opt"],
                      ["quillondb", "restore"], ["quillondb", "restore", "--replace", "/opt"]):
            with self.subTest(words=words):
                self.assertEqual(self.offered_behind(*words), {"my site"})

    def test_where_a_file_belongs_it_is_offered_and_its_folder_too(self):
        for words in (["quillondb", "load", "--table", "VLAN"],
                      ["quillondb", "export", "--table", "=", "VLAN"],
                      ["quillondb", "import-jet", "--reports"],
                      ["quillondb", "import-jet", "--history"],
                      ["quillondb", "import-jet", "--replace", "--settings"],
                      ["quillondb", "sync-jet", "--reports", "="]):
            with self.subTest(words=words):
                self.assertEqual(self.offered_behind(*words), {"my site", "my file"})

    def test_nothing_is_offered_behind_the_last_one(self):
        for words in (["create", "/opt"], ["load", "a.csv", "/opt"], ["backup", "/opt", "/var"]):
            with self.subTest(words=words):
                self.assertEqual(self.offered_behind("quillondb", *words), set())


class Keys(unittest.TestCase):
    """Somebody types, and presses the tabulator."""

    def test_a_word_is_finished_whatever_quotes_it(self):
        add = "receivers add --report1"
        cases = {
            "rep\tacc\toutv\t": "<report><access><outvolume>",
            "save --date-format=MM\t": "<save><--date-format=MM/DD/YYYY>",
            f"{add} Access\\ InV\t": "<receivers><add><--report1><Access InVolume>",
            f'{add} "Access InV\t': "<receivers><add><--report1><Access InVolume>",
            f"{add} 'Trunk S\t": "<receivers><add><--report1><Trunk Summary>",
            "smtp set --auth-m\tA\t--lo\ty\t": "<smtp><set><--auth-mode><AUTH LOGIN><--login><yes>",
            "-C /usr/loca\tbin stat\t": "<-C></usr/local/bin><status>",
        }
        for keys, arguments in cases.items():
            with self.subTest(keys=keys):
                self.assertEqual(arguments_after_typing(f"quillonctl {keys}"), arguments)


@unittest.skipUnless(PACKAGE.exists(), "bash-completion is not installed")
class Package(unittest.TestCase):
    """Debian's package of completions looks for a file of the program's name."""

    def test_it_finds_the_completion_of_both_programs(self):
        with tempfile.TemporaryDirectory(prefix="quillon-completion-") as folder:
            completions = Path(folder) / "completions"
            completions.mkdir()
            shutil.copy(COMPLETION, completions)
            (completions / "quillondb").symlink_to("quillonctl")
            for program in ("quillonctl", "quillondb"):
                with self.subTest(program=program):
                    self.assertEqual(self.found(folder, program),
                                     f"complete -F _quillon {program}\n")

    def found(self, folder, program):
        script = f"source {PACKAGE}; _completion_loader {program}; complete -p {program}"
        return subprocess.run(["bash", "--norc", "-c", script], stdout=subprocess.PIPE, text=True,
                              timeout=DEADLINE,
                              env={**os.environ, "BASH_COMPLETION_USER_DIR": folder}).stdout


if __name__ == "__main__":
    unittest.main()
