"""Servers that hold an upload up, in all ways at once: each run must end by itself, soon after the time-outs.

The variable VELLORIA_PROGRAM names the program folder under test.
"""

import os
import socket
import subprocess
import sys
import tempfile
import threading
import time
import types
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))

import upload_server
from compare_uploads import Trial
from patience import PATIENCE_SECONDS
from random_upload import PlainUpload

PROGRAM = os.path.abspath(os.environ["VELLORIA_PROGRAM"])
OPTIONS = types.SimpleNamespace(cli=os.path.join(PROGRAM, "velloria-cli"), factory=PROGRAM)
LONGEST = 60 + PATIENCE_SECONDS     # a listing may take a minute, everything else less
MOST_MEMORY = 130   # megabytes, in the build with the sanitizers too


def drip(connection, text, every):
    while True:
        connection.sendall(text)
        time.sleep(every)


def stay_silent(_):
    time.sleep(10 * LONGEST)


# What comes in place of an answer that never ends.
ANSWERS = {"bytes": lambda session: drip(session.control, b"2", 20),
           "lines": lambda session: drip(session.control, b"250-more\r\n", 5),
           "flood": lambda session: drip(session.control, b"250-more\r\n" * 1000, 0),
           "silence": stay_silent}


def listing(text, every):
    return lambda session: drip(session.open_data(), text, every)


def dead_end(session):
    """A port that takes no more connections and refuses none."""
    listener = socket.create_server((session.control.getsockname()[0], 0), backlog=0)
    session.kept = [listener] + [socket.socket() for _ in range(4)]
    for waiting in session.kept[1:]:
        waiting.setblocking(False)
        waiting.connect_ex(listener.getsockname())
    host, port = listener.getsockname()
    session.control.sendall(f"227 ({host.replace('.', ',')},{port >> 8},{port & 255})\r\n".encode())
    stay_silent(session)


def read_slowly(session):
    data = session.open_data()
    while data.recv(1):
        time.sleep(20)


def announce(session):
    session.reply(150, "wait for it")
    stay_silent(session)


def take_all(session):
    data = session.open_data()
    while data.recv(65536):
        pass
    data.close()


CASES = {f"{command} {name}": (command, answer)
         for command in ("GREETING", "USER", "PASS", "MLST", "FEAT", "SIZE", "PASV", "STOR", "QUIT")
         for name, answer in ANSWERS.items()}
CASES |= {f"end of STOR {name}": ("STOR", lambda session, answer=answer: (take_all(session), answer(session)))
          for name, answer in ANSWERS.items()}
CASES |= {"LIST flood": ("LIST", listing(b"-rw-r--r-- 1 u g 1 Jan 1 2004 other.htm\r\n" * 1000, 0)),
          "LIST lines": ("LIST", listing(b"xx\r\n", 1)), "LIST one line": ("LIST", listing(b"x" * 10000000, 1)),
          "LIST bytes": ("LIST", listing(b"x", 20)), "LIST silence": ("LIST", listing(b"xx\r\n", 10 * LONGEST)),
          "no way to the data": ("PASV", dead_end), "reads slowly": ("STOR", read_slowly),
          "never connects": ("STOR", announce)}


class SlowSession(upload_server.Session):
    def __init__(self, server, control):
        super().__init__(server, control)
        self.command, self.holdup = CASES[server.case]

    def run(self):
        if self.command == "GREETING":
            self.holdup(self)
        super().run()

    def answer(self, verb, name):
        if verb == self.command:
            self.holdup(self)
        super().answer(verb, name)


def server_of(case):
    return type("SlowServer", (upload_server.UploadServer,),
                {"case": case, "session": SlowSession, "waits_for_sessions": False})


def memory_of(process):
    try:
        with open(f"/proc/{process.pid}/status", encoding="ascii") as file:
            return max((int(line.split()[1]) // 1024 for line in file if line.startswith("VmHWM")), default=0)
    except OSError:
        return 0


def hold_up(case, number, ends):
    """Runs an upload to a server of this case; `ends` gets its seconds, its memory and its exit code."""
    upload = PlainUpload()
    upload.old = [(0, "x.htm")]
    upload.passive = case != "never connects"
    if case.startswith("LIST"):
        upload.features = {"PWD"}
    if case.startswith("FEAT"):
        upload.features -= {"MLST"}
    if case == "reads slowly":
        upload.files[(0, "x.htm")] = b"x" * 20000000
    with tempfile.TemporaryDirectory(prefix="velloria-slow-") as root:
        trial = Trial(OPTIONS, upload, root, upload_server.address_of(number))
        trial.fill()
        trial.server_class = server_of(case)
        trial.start_server()
        start, memory = time.monotonic(), 0
        with subprocess.Popen(trial.command("--yes", "upload"), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL) as process:
            while process.poll() is None and time.monotonic() < start + 2 * LONGEST:
                memory = max(memory, memory_of(process))
                time.sleep(0.2)
            process.kill()
        ends[case] = (time.monotonic() - start, memory, process.returncode)
        trial.server.stop()


@unittest.skipUnless(upload_server.can_serve(), "only the superuser may serve on port 21")
class SlowServersTest(unittest.TestCase):
    def test_no_server_holds_a_run_for_ever(self):
        ends = {}
        threads = [threading.Thread(target=hold_up, args=(case, number, ends), daemon=True)
                   for number, case in enumerate(CASES)]
        for thread in threads:
            thread.start()
            time.sleep(0.1)
        for thread in threads:
            thread.join()
        self.assertEqual(len(ends), len(CASES))
        for case, (seconds, memory, code) in ends.items():
            with self.subTest(case=case):
                print(f"{case}: {seconds:.1f} s, {memory} MB", file=sys.stderr)
                self.assertEqual(code, 0 if case.startswith("QUIT") else 1)
                self.assertLess(seconds, LONGEST)
                self.assertLess(memory, MOST_MEMORY)


if __name__ == "__main__":
    unittest.main()
