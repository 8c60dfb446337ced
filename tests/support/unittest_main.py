"""Runs modules of tests, as `python -m unittest` does, away from the home folder of whoever runs them, and tells each
test that is skipped:

    unittest_main.py MODULE [OPTION...]

A skipped test is a line "SKIPPED TEST: REASON"; when all are, the exit code is 77. With CI=true a skipped test is a
failure: nobody reads its list.
"""

import os
import sys
import tempfile
import unittest

ALL_SKIPPED = 77


def take_home(folder):
    """Makes `folder` the home folder of this program and of what it starts."""
    os.environ["HOME"] = folder
    for name in ("XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"):
        os.environ.pop(name, None)


def exit_code(skipped, is_all):
    """Tells what was skipped, as pairs of test and reason, and gives the exit code of a run without a failure."""
    for test, reason in skipped:
        print(f"SKIPPED {test}: {reason}", flush=True)
    if skipped and os.environ.get("CI") == "true":
        print("A skipped test is a failure here.", flush=True)
        return 1
    return ALL_SKIPPED if skipped and is_all else 0


def main():
    sys.path.insert(0, os.getcwd())
    with tempfile.TemporaryDirectory(prefix="velloria-home-", ignore_cleanup_errors=True) as home:
        take_home(home)
        result = unittest.main(module=None, exit=False).result
    skipped = [(test.id(), reason) for test, reason in result.skipped]
    code = exit_code(skipped, len(skipped) >= result.testsRun)
    sys.exit(code if result.wasSuccessful() and (result.testsRun or skipped) else 1)


if __name__ == "__main__":
    main()
