"""The scripts that people run: they work in a source archive, on a machine with a desktop, and tell what was skipped."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCRIPTS = ROOT / "scripts"


class ScriptTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(prefix="velloria-scripts-")))

    def program(self, name, lines):
        """A program that goes before the machine's own of that name."""
        file = self.folder / "bin" / name
        file.parent.mkdir(exist_ok=True)
        file.write_text("#!/bin/sh\n" + lines + "\n")
        file.chmod(0o755)

    def run_in(self, *words, check=True, input="", **variables):
        environment = os.environ | {"PATH": f"{self.folder / 'bin'}:{os.environ['PATH']}"} | variables
        done = subprocess.run([str(word) for word in words], env=environment, input=input, capture_output=True,
                              encoding="utf-8")
        if check:
            self.assertEqual(done.returncode, 0, done.stderr)
        return done


class SourceArchive(ScriptTest):
    """A tree without a repository, on a machine without git."""

    def setUp(self):
        super().setUp()
        self.tree = self.folder / "velloria"
        shutil.copytree(ROOT, self.tree, symlinks=True, ignore=shutil.ignore_patterns(".git", "build", "__pycache__"))
        self.program("git", "exit 127")

    def keep_one_source(self):
        """All of them take long to format, which ./test does before anything else."""
        kept = self.tree / "src" / "core" / "ini.cpp"
        for file in [*self.tree.rglob("*.cpp"), *self.tree.rglob("*.h")]:
            if file != kept:
                file.unlink()
        return kept

    def test_its_sources_are_checked_and_formatted(self):
        self.run_in(self.tree / "scripts" / "lint")
        wrong = self.keep_one_source()
        self.run_in(self.tree / "scripts" / "format")
        right = wrong.read_text(encoding="utf-8")
        self.run_in(self.tree / "scripts" / "format", "--check")
        wrong.write_text(right.replace("    return", "  return"), encoding="utf-8")
        self.assertNotEqual(self.run_in(self.tree / "scripts" / "format", "--check", check=False).returncode, 0)
        self.run_in(self.tree / "scripts" / "format")
        self.assertEqual(wrong.read_text(encoding="utf-8"), right)

    def test_what_is_built_is_no_source(self):
        self.keep_one_source()
        made = self.tree / "build" / "made.cpp"
        made.parent.mkdir()
        made.write_text("int  x ;\n")
        self.run_in(self.tree / "scripts" / "format")
        self.assertEqual(made.read_text(), "int  x ;\n")

    def test_everything_is_tested(self):
        self.program("clang-format", "exit 0")
        calls = self.folder / "calls"
        for name in ("cmake", "ctest"):
            self.program(name, f'echo "{name} $*" >> {calls}\n[ {name} = cmake ] || echo "100% tests passed, 0 of 1"')
        (self.tree / "scripts" / "setup").write_text("#!/bin/sh\n")
        done = self.run_in(self.tree / "test", "-R", "store")
        self.assertEqual(done.stdout.splitlines()[-1], "100% tests passed, 0 of 1")
        lines = calls.read_text().splitlines()
        self.assertEqual([line.split(" -j")[0] for line in lines],
                         ["cmake --preset plain", "cmake --build --preset plain", "ctest --preset plain",
                          "cmake --preset sanitize", "cmake --build --preset sanitize", "ctest --preset sanitize"])
        self.assertTrue(all(line.endswith(("-R store", "-R store --no-tests=ignore"))
                            for line in lines if line.startswith("ctest")), lines)


class Lint(ScriptTest):
    """What the layout of the sources does not allow."""

    def setUp(self):
        super().setUp()
        self.tree = self.folder / "velloria"
        shutil.copytree(ROOT / "src", self.tree / "src")
        shutil.copytree(ROOT / "tests", self.tree / "tests", ignore=shutil.ignore_patterns("data", "__pycache__"))
        (self.tree / "scripts").mkdir()
        shutil.copy(SCRIPTS / "lint", self.tree / "scripts")

    def add(self, file, line):
        source = self.tree / "src" / file
        source.write_text(source.read_text(encoding="utf-8") + line + "\n", encoding="utf-8")

    def findings(self):
        return self.run_in(self.tree / "scripts" / "lint", check=False).stderr.splitlines()

    def test_the_sources_pass(self):
        self.assertEqual(self.findings(), [])

    def test_an_include_that_points_up_is_refused(self):
        self.add("core/ini.cpp", '#include "store/diary_store.h"')
        self.add("browser/forms/page_view.cpp", '#include "editor/forms/frmContents.h"')
        self.add("exchange/forms/frmExport.cpp", '#include "browser/forms/frmBrowser.h"')
        self.assertEqual(self.findings()[:3],
                         ["src/browser/forms/page_view.cpp: browser/forms may not use editor/forms/frmContents.h",
                          "src/core/ini.cpp: core may not use store/diary_store.h",
                          "src/exchange/forms/frmExport.cpp: exchange/forms may not use browser/forms/frmBrowser.h"])

    def test_so_is_a_window_that_is_reached_through_the_registry(self):
        for use in ("get", "find", "unload"):
            with self.subTest(use):
                self.add("registers/forms/frmResistLogs.cpp", f"// context.windows.{use}<site::frmFind>();")
                self.assertIn("src/registers/forms/frmResistLogs.cpp: registers/forms may not use site/forms/frmFind.h",
                              self.findings())

    def test_classes_in_a_circle_are_refused(self):
        self.add("site/forms/frmFind.cpp", "// context.windows.get<frmSaveLog>();")
        self.assertEqual(self.findings(), [])
        self.add("site/forms/frmSaveLog.h", '#include "site/forms/frmFind.h"')
        self.assertEqual(self.findings(), ["classes in a circle: site/forms/frmFind, site/forms/frmSaveLog"])

    def test_a_source_belongs_to_the_class_that_it_implements(self):
        more = self.tree / "src" / "browser" / "forms" / "more.cpp"
        more.write_text('#include "browser/forms/frmGetImg.h"\nvoid PageView::more() {}\n')
        self.add("browser/forms/CMakeLists.txt", "# more.cpp")
        self.add("browser/forms/frmGetImg.cpp", '#include "browser/forms/page_view.h"')
        self.assertEqual(self.findings(), ["classes in a circle: browser/forms/frmGetImg, browser/forms/page_view"])

    def test_the_windows_know_no_circle(self):
        self.add("editor/forms/frmHTMLMakeHR.cpp", '#include "editor/forms/frmContents.h"')
        self.assertTrue(self.findings()[0].startswith("classes in a circle: editor/forms/"), self.findings())

    def test_the_day_is_set_by_few(self):
        self.add("editor/forms/frmCalender.cpp", 'm_context.session.EnterDay = day;')
        self.add("site/save_html.cpp", 'if (session.EnterDay == day)')
        self.assertEqual(self.findings(), ["src/editor/forms/frmCalender.cpp: EnterDay is set by "
                                           "cli/commands/entry.cpp, cli/main.cpp, editor/open_day.cpp, "
                                           "shell/startup.cpp alone"])

    def test_what_no_list_names_is_refused(self):
        for new in ("src/site/file.cpp", "tests/site/file_test.cpp", "tests/cli/test_file.py"):
            (self.tree / new).write_text("")
        self.assertEqual(self.findings(),
                         ["src/site/file.cpp: no target builds it: no CMakeLists.txt of src/ names it",
                          "tests/cli/test_file.py: nobody runs it: no CMakeLists.txt of tests/ names it",
                          "tests/site/file_test.cpp: nobody runs it: no CMakeLists.txt of tests/ names it"])

    def test_a_window_is_tried_with_the_others(self):
        self.add("site/forms/frmSaveLog.h", "class frmWeek : public desktop::SettingsDialog {};")
        self.assertEqual(self.findings(), ["src/site/forms/frmSaveLog.h: frmWeek is not in the list of "
                                           "tests/desktop/every_window.h"])

    def test_a_setting_of_a_customize_set_is_in_its_list(self):
        rows = self.tree / "src" / "core" / "site_keys.h"
        rows.write_text(rows.read_text(encoding="utf-8").replace("    &general::kGenre,\n", ""), encoding="utf-8")
        self.assertEqual(self.findings(), ["src/core/site_keys.h: general::kGenre is not in kCustomizeSet"])

    def test_a_foreign_header_stays_in_its_folder(self):
        self.add("site/feeds.cpp", "#include <QWidget>\n#include <sqlite3.h>")
        self.assertEqual(self.findings(), ["src/site/feeds.cpp: QWidget belongs to desktop, */forms, app",
                                           "src/site/feeds.cpp: sqlite3.h belongs to store"])


class Display(ScriptTest):
    def shown(self, *words, **variables):
        return self.run_in(SCRIPTS / "with-display", *words, TMPDIR=str(self.folder), **variables)

    def test_it_leaves_nothing_behind(self):
        self.program("looks", 'test -d "$XDG_RUNTIME_DIR" && touch "$XDG_RUNTIME_DIR/file" && xdotool getmouselocation')
        self.assertIn("screen:0", self.shown("looks").stdout)
        self.assertEqual([path.name for path in self.folder.iterdir()], ["bin"])

    def test_the_exit_code_is_the_programs(self):
        self.program("fails", "exit 7")
        self.assertEqual(self.run_in(SCRIPTS / "with-display", "fails", check=False).returncode, 7)

    def test_nobody_finds_the_bus_of_a_desktop(self):
        self.program("dbus-launch", f"touch {self.folder}/started")
        done = self.shown("sh", "-c", "echo $DBUS_SESSION_BUS_ADDRESS", DBUS_SESSION_BUS_ADDRESS="unix:path=/run/bus")
        self.assertEqual(done.stdout, "unix:path=/nonexistent\n")
        self.assertFalse((self.folder / "started").exists())

    def test_what_is_mounted_there_is_no_error_and_stays(self):
        place = self.folder / "place"
        place.mkdir()
        if subprocess.run(["mount", "-t", "tmpfs", "tmpfs", place], capture_output=True).returncode != 0:
            self.skipTest("needs the right to mount")
        subprocess.run(["umount", place], check=True)
        self.program("portal", f'mkdir "$XDG_RUNTIME_DIR/doc" && mount -t tmpfs tmpfs "$XDG_RUNTIME_DIR/doc" && '
                               f'echo mine > "$XDG_RUNTIME_DIR/doc/letter" && echo "$XDG_RUNTIME_DIR"')
        script = f'trap \'umount "$TMPDIR"/*/doc\' EXIT; runtime=$({SCRIPTS}/with-display portal) && cat "$runtime/doc/letter"'
        done = self.run_in("bash", "-c", script, TMPDIR=str(self.folder))
        self.assertEqual((done.stdout, done.stderr), ("mine\n", ""))


class Summary(ScriptTest):
    LOG = "1/2 Testing: a\n[  SKIPPED ] A.B (0 ms)\nSKIPPED A.B: no groff\nSKIPPED c.d: no root\nSKIPPED A.B: no groff\n"
    TOLD = "\nSkipped, so nothing is known about them:\n    A.B: no groff\n    c.d: no root\n\n"

    def told(self, output, log):
        path = self.folder / "Testing" / "Temporary"
        path.mkdir(parents=True, exist_ok=True)
        (path / "LastTest.log").write_text(log)
        return self.run_in(SCRIPTS / "sum-up", self.folder, input=output).stdout

    def test_faults_of_a_disk_are_counted(self):
        summary = "100% tests passed, 0 tests failed out of 2\n"
        log = "FAULTS FaultWalk.SaveHtml: 218\n[       OK ] FaultWalk.SaveHtml (1 ms)\nFAULTS FaultWalk.AddingAGenre: 18\n"
        self.assertEqual(self.told(summary, log), "\nFaults of a disk that were walked:\n"
                         "    FaultWalk.SaveHtml: 218\n    FaultWalk.AddingAGenre: 18\n    in all: 236\n" + summary)

    def test_the_list_of_skips_stands_before_the_summary_which_is_the_last_line(self):
        summary = "99% tests passed, 1 tests failed out of 120\n"
        output = "1/2 Test #1: a ... Passed\n\n", "\nTotal Test time (real) = 3 sec\n"
        self.assertEqual(self.told(output[0] + summary + output[1], self.LOG), "".join(output) + self.TOLD + summary)
        self.assertEqual(self.told(output[0] + summary + output[1], "no skip\n"), "".join(output) + summary)

    def test_without_a_summary_nothing_is_told(self):
        self.assertEqual(self.told("no tests\n", self.LOG), "no tests\n")

    def test_of_tests_run_side_by_side_are_told_and_one_failure_fails_them_all(self):
        script = ROOT / "tests" / "support" / "side_by_side.py"
        self.program("some_tests", """case "$*" in
            *list_tests) printf 'A.\\n  B\\n  C\\nD/A.  # TypeParam = int\\n  B  # GetParam() = 1;2\\n' ;;
            *=A.B) echo 'SKIPPED A.B: no screen' ;;
            *=A.C) echo 'fails'; exit $CODE ;;
            *=D/A.B) echo 'last' ;;
            *) exit 9 ;;
        esac""")
        for code, told in ((0, ["3 tests in 3 processes, 0 of which failed"]),
                           (3, ["A.C ended with 3", "3 tests in 3 processes, 1 of which failed"])):
            done = self.run_in(sys.executable, "-B", script, "*", "some_tests", check=False, CODE=str(code))
            self.assertEqual(done.returncode, 1 if code else 0, done.stderr)
            lines = done.stdout.splitlines()
            self.assertEqual(lines[3:], told)
            self.assertEqual(sorted(lines[:3]), ["SKIPPED A.B: no screen", "fails", "last"])

    def test_many_tests_side_by_side_share_processes_and_each_is_run_once(self):
        script = ROOT / "tests" / "support" / "side_by_side.py"
        names = [f"T{number}" for number in range(1000)]
        self.program("many_tests", """case "$*" in
            *list_tests) echo A.; seq -f '  T%g' 0 999 ;;
            *) echo "${1#--gtest_filter=}" | tr : '\\n' ;;
        esac""")
        lines = self.run_in(sys.executable, "-B", script, "*", "many_tests").stdout.splitlines()
        self.assertRegex(lines[-1], r"^1000 tests in \d+ processes, 0 of which failed$")
        self.assertLess(int(lines[-1].split()[3]), 1000)
        self.assertEqual(sorted(lines[:-1]), sorted(f"A.{name}" for name in names))

    def unittest_run(self, tests, ci):
        (self.folder / "test_it.py").write_text(
            "import os, unittest\nclass It(unittest.TestCase):\n" + "".join(f"    {line}\n" for line in tests))
        return subprocess.run([sys.executable, "-B", ROOT / "tests" / "support" / "unittest_main.py", "test_it"],
                              cwd=self.folder, env=os.environ | {"CI": ci}, capture_output=True, encoding="utf-8")

    def test_of_a_module_are_told_and_a_failure_where_nobody_reads_them(self):
        skip = '@unittest.skip("no screen")\n    def test_b(self): pass'
        good = "def test_a(self): self.assertNotEqual(os.environ['HOME'], %r)" % os.environ["HOME"]
        bad = "def test_a(self): self.fail()"
        for tests, ci, code in (([good], "", 0), ([good, skip], "", 0), ([skip], "", 77), ([good, skip], "true", 1),
                                ([skip], "true", 1), ([good], "true", 0), ([bad, skip], "", 1), ([], "", 1)):
            with self.subTest(tests=tests, ci=ci):
                done = self.unittest_run(tests or ["pass"], ci)
                self.assertEqual(done.returncode, code, done.stderr)
                self.assertEqual("SKIPPED test_it.It.test_b: no screen\n" in done.stdout, skip in tests)


if __name__ == "__main__":
    unittest.main()
