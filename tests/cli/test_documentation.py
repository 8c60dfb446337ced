"""The manual page and the completions name every command and option of the program, and no others."""

import os
import pathlib
import pty
import re
import select
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from patience import PATIENCE_SECONDS

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = pathlib.Path(os.environ["VELLORIA_PROGRAM"]).resolve()
COMPLETIONS = ROOT / "completions"
MANUAL = ROOT / "docs" / "velloria-cli.1"


def run(*words, **options):
    return subprocess.run(words, capture_output=True, encoding="utf-8", check=True, **options).stdout


def help_lines():
    return re.findall(r"^  (\S.*)$", run(str(PROGRAM / "velloria-cli"), "--help"), re.M)


def command_of(line):
    return " ".join(re.match(r"(?:[a-z0-9]+ ?)+?(?= [^a-z0-9 ]| sjis| markdown|[A-Z]|$)", line).group().split()[:2])


class Manual(unittest.TestCase):
    def setUp(self):
        self.items = re.findall(r"^\.It Ic (.+)$", MANUAL.read_text(encoding="utf-8"), re.M)

    def test_it_has_every_command_and_no_other(self):
        commands = [command_of(line) for line in help_lines() if not line.startswith("--")]
        documented = [" ".join(re.match(r"[a-z0-9]+(?: [a-z0-9]+)?", item).group().split()) for item in self.items]
        self.assertEqual(documented, commands, f"the items of {MANUAL}, in the order of the help")

    def test_each_command_has_its_options(self):
        for line in help_lines():
            if line.startswith("--"):
                continue
            item = next((i for i in self.items if i.startswith(command_of(line))), "")
            self.assertTrue(item, f"{MANUAL} has no item of {command_of(line)}")
            self.assertEqual(["--" + o for o in re.findall(r"Fl -([a-z-]+)", item)], re.findall(r"--[a-z-]+", line))

    def test_it_has_every_global_option_and_no_other(self):
        options = [line.split()[0] for line in help_lines() if line.startswith("--")]
        documented = re.findall(r"^\.It Fl -([a-z]+)", MANUAL.read_text(encoding="utf-8"), re.M)
        self.assertEqual(["--" + name for name in documented], options)

    @unittest.skipUnless(shutil.which("groff"), "groff is not installed")
    def test_it_renders_without_a_warning(self):
        result = subprocess.run(["groff", "-mandoc", "-Tutf8", "-Kutf8", "-ww", str(MANUAL)], capture_output=True)
        self.assertEqual(result.stderr.decode(), "")
        self.assertIn("velloria-cli", result.stdout.decode())


class Completions(unittest.TestCase):
    def test_they_are_what_the_script_makes(self):
        with tempfile.TemporaryDirectory() as folder:
            run(sys.executable, str(ROOT / "scripts" / "make-completions"), str(PROGRAM), folder)
            names = sorted(os.listdir(folder))
            self.assertEqual(names, sorted(path.name for path in COMPLETIONS.iterdir()))
            for name in names:
                made = (pathlib.Path(folder) / name).read_text(encoding="utf-8")
                self.assertEqual((COMPLETIONS / name).read_text(encoding="utf-8"), made,
                                 f"run scripts/make-completions {PROGRAM}")

    def complete(self, *words):
        line = " ".join(f"'{word}'" for word in words)
        return run("bash", "-c", f"source {COMPLETIONS / 'velloria-cli.bash'}; COMP_WORDS=({line}); "
                                 f"COMP_CWORD={len(words) - 1}; _velloria_cli; echo \"${{COMPREPLY[*]}}\"").split()

    def test_bash_completes_commands_and_their_words(self):
        self.assertEqual(self.complete("velloria-cli", "en"), ["entry"])
        self.assertEqual(self.complete("velloria-cli", "entry", "pu"), ["put"])
        self.assertEqual(self.complete("velloria-cli", "--home", "/tmp", "entry", "sh"), ["show"])
        self.assertEqual(self.complete("velloria-cli", "--home", "=", "/tmp", "entry", "sh"), ["show"])
        self.assertEqual(self.complete("velloria-cli", "convert", "urlencode", "e"), ["eucjp"])

    def test_bash_completes_values_of_options(self):
        self.assertEqual(self.complete("velloria-cli", "--home", "/us"), ["/usr"])
        self.assertEqual(self.complete("velloria-cli", "--home", "=", "/us"), ["/usr"])
        self.assertEqual(self.complete("velloria-cli", "--now", "e"), [])

    def test_bash_completes_files_where_the_program_takes_one(self):
        self.assertEqual(self.complete("velloria-cli", "entry", "put", "/etc/hostn"), ["/etc/hostname"])
        self.assertEqual(self.complete("velloria-cli", "entry", "show", "/etc/hostn"), [])
        self.assertEqual(self.complete("velloria-cli", "ini", "get", "diary.ini", "/etc/hostn"), [])

    def test_bash_completes_what_is_typed(self):
        """A command is no folder, even where a folder has its name."""
        with tempfile.TemporaryDirectory() as folder:
            os.mkdir(os.path.join(folder, "site"))
            self.assertIn("velloria-cli site x", self.typed(folder, "velloria-cli si\tx"))
            self.assertIn("velloria-cli entry put x", self.typed(folder, "velloria-cli entry pu\tx"))

    def typed(self, folder, keys):
        """What an interactive bash shows behind these keys, the last of which ends the waiting."""
        start = os.path.join(folder, ".bashrc")
        with open(start, "w", encoding="utf-8") as file:
            file.write(f"source {shlex.quote(str(COMPLETIONS / 'velloria-cli.bash'))}\nPS1='ready>'\n")
        process, terminal = pty.fork()
        if process == 0:
            os.chdir(folder)
            os.execvpe("bash", ["bash", "--noprofile", "--rcfile", start, "-i"], {**os.environ, "TERM": "dumb"})
        try:
            self.read_until(terminal, "ready>")
            os.write(terminal, keys.encode())
            return self.read_until(terminal, keys[-1])
        finally:
            os.close(terminal)
            os.kill(process, signal.SIGKILL)
            os.waitpid(process, 0)

    def read_until(self, terminal, end):
        shown = ""
        deadline = time.monotonic() + PATIENCE_SECONDS
        while not shown.endswith(end) and time.monotonic() < deadline:
            if select.select([terminal], [], [], 0.1)[0]:
                shown += os.read(terminal, 4096).decode(errors="replace")
        return shown

    def test_bash_completes_options_of_the_command_alone(self):
        self.assertEqual(self.complete("velloria-cli", "entry", "put", "--k"), ["--keep-time"])
        self.assertEqual(self.complete("velloria-cli", "entry", "show", "--k"), [])
        self.assertIn("--json", self.complete("velloria-cli", "--"))

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
    def test_zsh_reads_its_file(self):
        run("zsh", "-n", str(COMPLETIONS / "_velloria-cli"))

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_fish_reads_its_file(self):
        run("fish", "-n", str(COMPLETIONS / "velloria-cli.fish"))

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_fish_completes_commands_options_and_values(self):
        for typed, expected in {
            "en": ["entry"],
            "entry pu": ["put"],
            "--home /tmp entry sh": ["show"],
            "convert urlencode e": ["eucjp"],
            "entry put --k": ["--keep-time"],
            "entry show --k": [],
            "entry put /etc/hostn": ["/etc/hostname"],
            "entry show /etc/hostn": [],
        }.items():
            script = f"source {COMPLETIONS / 'velloria-cli.fish'}; complete -C 'velloria-cli {typed}'"
            self.assertEqual(run("fish", "--no-config", "-c", script).split(), expected, typed)


if __name__ == "__main__":
    unittest.main()
