"""Every program and every library that the scripts, the tests and the program itself call comes with a package that
scripts/setup names, or with one that such a package depends on."""

import ast
import functools
import glob
import os
import pathlib
import re
import shutil
import subprocess
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = pathlib.Path(os.environ["VELLORIA_PROGRAM"]).resolve()
SYSTEM_PATH = "/usr/sbin:/usr/bin:/sbin:/bin"   # what somebody has put before it is on no other machine

# What ./run starts, with its pictures.
RUN = ["run", "scripts/setup", "scripts/demonstrate", "scripts/with-display"]
TEST = ["test", ".ci/run", "scripts/check", "scripts/fetch-servers", "scripts/format", "scripts/sum-up"]

SHELL_WORDS = set("""if then else elif fi for in do done while until case esac function select time exec set trap cd read
    export exit pwd echo printf command local shift return mapfile test true false wait kill eval source unset shopt declare
    readonly type let umask exec""".split())
START = r"(?:^|[|&;(!{]|\$\(|\b(?:then|do|else|if|elif|while|until|exec|command -v|xargs -0|xargs|env)\s)"
COMMAND = re.compile(rf"(?={START}\s*(?:!\s+)?(?:[A-Za-z_]\w*=\S*\s+)*([A-Za-z][\w.+-]*)(?![\w/=(.)*@-]))", re.M)

# What is loaded by name at run time, below the folder of the machine's libraries.
LOADED = """
    qt6/plugins/platforms/libqxcb.so qt6/plugins/platforms/libqwayland-generic.so
    qt6/plugins/imageformats/libqjpeg.so qt6/plugins/imageformats/libqgif.so qt6/plugins/tls/libqopensslbackend.so
    qt6/plugins/multimedia/libgstreamermediaplugin.so
    gstreamer-1.0/libgstplayback.so gstreamer-1.0/libgsttypefindfunctions.so gstreamer-1.0/libgstaudioconvert.so
    gstreamer-1.0/libgstaudioresample.so gstreamer-1.0/libgstvolume.so gstreamer-1.0/libgstwavparse.so
    gstreamer-1.0/libgstmpg123.so gstreamer-1.0/libgstautodetect.so gstreamer-1.0/libgstalsa.so
    gstreamer-1.0/libgstpulseaudio.so
    """.split()
FILES = ["/usr/sbin/update-ca-certificates", "/usr/share/qt6/translations/qtbase_ja.qm",
         "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc"]


def named(*groups):
    """The packages of these arrays of scripts/setup."""
    text = re.sub(r"#.*", "", (ROOT / "scripts" / "setup").read_text())
    arrays = dict(re.findall(r"^(\w+)=\(([^)]*)\)", text, re.M))
    return {package for group in groups for package in arrays[group].split()}


@functools.cache
def installed():
    """Package: (packages it needs, whether it is on every machine)."""
    form = "${binary:Package}\t${Essential}${Priority}\t${Provides}\t${Pre-Depends}, ${Depends}\n"
    rows = [line.split("\t") for line in
            subprocess.run(["dpkg-query", "-W", "-f", form], check=True, capture_output=True, text=True)
            .stdout.splitlines()]
    names = {row[0].split(":")[0] for row in rows}
    providers = {}
    for row in rows:
        for virtual in re.findall(r"[\w.+-]+(?= \(|,|$)", row[2]):
            providers.setdefault(virtual, row[0].split(":")[0])
    packages = {}
    for name, priority, _, depends in rows:
        needed = set()
        for choice in depends.split(","):
            words = [re.split(r"[ :(]", one.strip())[0] for one in choice.split("|")]
            found = [word if word in names else providers[word] for word in words if word in names or word in providers]
            needed.update(found[:1])
        packages[name.split(":")[0]] = needed, priority.startswith("yes") or "required" in priority
    return packages


def closure(packages):
    """These packages, those of every machine, and all that they need."""
    todo = [*packages, *(name for name, (_, is_everywhere) in installed().items() if is_everywhere)]
    found = set()
    while todo:
        name = todo.pop()
        if name not in found and name in installed():
            found.add(name)
            todo += installed()[name][0]
    return found


@functools.cache
def owners():
    """The package of each file of the system."""
    found = {}
    for path in pathlib.Path("/var/lib/dpkg/info").glob("*.list"):
        package = path.stem.split(":")[0]
        for line in path.read_text(encoding="utf-8").splitlines():
            found[re.sub(r"^/(?=(?:s?bin|lib)/)", "/usr/", line)] = package
    return found


def package_of(file):
    """The package that a file of the system belongs to, None for any other."""
    spellings = (re.sub(r"^/(?=(?:s?bin|lib)/)", "/usr/", path) for path in (str(file), os.path.realpath(file)))
    return next((owners()[path] for path in spellings if path in owners()), None)


def bare(text):
    """A shell script without comments, here-documents and quoted text, but with the commands within such text."""
    text = re.sub(r"<<-?\s*'?(\w+)'?.*\n(?:.*\n)*?\1\n", "\n", text + "\n")
    kept, ends, i = [], [], 0       # `ends`: what closes the quotation or the command that the text is in
    while i < len(text):
        one, is_quoted = text[i], ends[-1:] == ['"']
        if one == "\\":
            i += 1
        elif text.startswith(("$(", "${"), i):
            ends.append({"(": ")", "{": "}"}[text[i + 1]])
            kept.append(" $( " if text[i + 1] == "(" else "@")
            i += 1
        elif ends and one == ends[-1]:
            kept.append({")": " ; ", "}": "@", '"': "@"}[ends.pop()])
        elif one == '"':
            ends.append('"')
        elif one == "'" and not is_quoted:
            i = max(i, text.find("'", i + 1))
            kept.append("@")
        elif one == "#" and not ends and text[i - 1:i] in ("", "\n", " "):
            i = text.index("\n", i) - 1
        elif one == "(" and not is_quoted and ends[-1:] == [")"]:
            ends.append(")")
        elif not is_quoted and ends[-1:] != ["}"]:
            kept.append(one)
        i += 1
    return "".join(kept)


def shell_commands(text):
    """The first words of the commands of a shell script, without what the shell itself knows."""
    functions = re.findall(r"^(\w+)\(\)", text, re.M)
    text = re.sub(r"\w+\+?=\([^)]*\)|\{\w+\}|\[\[.*?\]\]", "", bare(text), flags=re.S)
    text = re.sub(r"(?m)^\s*[^\s(]*(?: \| [^\s(]+)*\)(?= )", " ;", text)     # the patterns of a case
    return set(COMMAND.findall(text)) - SHELL_WORDS - set(functions)


def python_commands(text):
    """The first words of lists and calls that may be command lines, and the commands of shell scripts in it."""
    for node in ast.walk(ast.parse(text)):
        if isinstance(node, (ast.List, ast.Tuple)):
            first = node.elts[:1]
        elif isinstance(node, ast.Call) and getattr(node.func, "attr", getattr(node.func, "id", "")) in (
                "run", "run_in", "shown", "which", "execvpe"):
            first = node.args[:1]
        else:
            first = []
        yield from (one.value for one in first if isinstance(one, ast.Constant) and isinstance(one.value, str))
        if isinstance(node, ast.Constant) and isinstance(node.value, str) and re.search("#!/bin/sh| && ", node.value):
            yield from shell_commands(node.value)


def cpp_commands(text):
    return re.findall(r'(?:start|startDetached|execute)\(u"([a-z][\w.-]*)"_s', text)


def cmake_commands(text):
    return re.findall(r"find_program\(\w+ ([\w.-]+)", text)


def own_words():
    """What stands first on command lines of velloria-cli, and in the lists of folders of scripts/lint."""
    text = subprocess.run([PROGRAM / "velloria-cli", "--help"], check=True, capture_output=True, encoding="utf-8").stdout
    return set(re.findall(r"^  ([a-z0-9]+)", text, re.M)) | {folder.name for folder in (ROOT / "src").iterdir()}


def called_by_tests():
    """Programs that are called by tests, sources and the build, as {name: file}. Other words are not in it."""
    called = {}
    sources = [(python_commands, [*ROOT.glob("tests/*/*.py"), *ROOT.glob("demo/*.py"), *ROOT.glob("scripts/make-*"),
                                  ROOT / "scripts" / "lint", ROOT / "scripts" / "draw-weather"]),
               (cpp_commands, [*ROOT.glob("tests/**/*.cpp"), *ROOT.glob("src/**/*.cpp")]),
               (cmake_commands, [*ROOT.glob("**/CMakeLists.txt")])]
    ours = own_words()
    for commands, files in sources:
        for file in files:
            for word in commands(file.read_text(encoding="utf-8")):
                if re.fullmatch(r"[a-z][\w.+-]*", word) and word not in ours and shutil.which(word, path=SYSTEM_PATH):
                    called[word] = file.relative_to(ROOT)
    return called | {"ninja": "CMakePresets.json", "ccache": "CMakePresets.json"}


class Setup(unittest.TestCase):
    def assert_comes(self, words, packages, where):
        for word in sorted(words):
            with self.subTest(word=word, where=where):
                file = word if word.startswith("/") else shutil.which(word, path=SYSTEM_PATH)
                self.assertIsNotNone(file, f"{word} is called and not installed")
                self.assertTrue(os.path.exists(file), f"{file} is missing")
                self.assertIn(package_of(file), packages, f"scripts/setup names no package that brings {file}")

    def test_every_package_is_installed_and_named_once(self):
        groups = [named(group) for group in ("build", "shot", "test")]
        self.assertEqual(sum(map(len, groups)), len(set.union(*groups)))
        for package in set.union(*groups):
            self.assertIn(package, installed())

    def test_it_brings_what_the_scripts_call(self):
        for files, groups in ((RUN[:3], ["build"]), (RUN, ["build", "shot"]), (RUN + TEST, ["build", "shot", "test"])):
            for file in files:
                words = shell_commands((ROOT / file).read_text())
                words -= {"xvfb-run", "sudo"}
                self.assert_comes(words, closure(named(*groups)), file)

    def test_the_scripts_are_read_rightly(self):
        text = '#!/bin/bash\nx=1 awk "no; words"\nif ! sed -n p f | sort >"$(mktemp x)"; then f; fi\nf() {\n    a=$(cut -d c)\n}\n'
        self.assertEqual(shell_commands(text), {"awk", "sed", "sort", "mktemp", "cut"})
        self.assertIn("clang-format", shell_commands((ROOT / "scripts" / "format").read_text()))
        self.assertIn("Xvfb", shell_commands((ROOT / "scripts" / "with-display").read_text()))

    def test_it_brings_what_the_tests_call(self):
        called = called_by_tests()
        for word in ("openssl", "mount", "setpriv", "xdotool", "groff", "zsh", "fish", "bash", "xmllint", "lftp"):
            self.assertIn(word, called)
        packages = closure(named("build", "shot", "test"))
        for word, file in called.items():
            self.assert_comes([word], packages, str(file))

    def test_it_brings_the_libraries_of_the_programs(self):
        packages = closure(named("build"))
        libraries = glob.glob("/usr/lib/*-linux-gnu*/qt6")[0].removesuffix("qt6")
        loaded = [libraries + name for name in LOADED]
        engine = ["/usr/lib/qt6/libexec/QtWebEngineProcess"]
        self.assert_comes([*loaded, *FILES, *engine], packages, "loaded by name")
        programs = [str(PROGRAM / name) for name in ("velloria", "velloria-cli", "velloria-jet", "velloria-plugin", "velloria-sound")
                    if (PROGRAM / name).exists()]
        self.assertGreater(len(programs), 0)
        for file in [*programs, *loaded, *engine]:
            done = subprocess.run(["ldd", file], capture_output=True, text=True, check=True)
            self.assertNotIn("not found", done.stdout)
            found = set(re.findall(r"(/\S+) \(0x", done.stdout))
            self.assert_comes({library for library in found if "san.so" not in library}, packages, file)


if __name__ == "__main__":
    unittest.main()
