"""Reads that the machine refuses, made by strace: what can't be read is never taken for nothing, nor replaced by it."""

import os
import unittest

from home import CliTest, entry, read, write


class ReadErrors(CliTest):
    def environment(self, **changed):
        # A leak can't be looked for while the program is traced.
        return super().environment(ASAN_OPTIONS="detect_leaks=0", **changed)

    def refused_at(self, file, calls, fault, *words, input=b"", when=None):
        """Runs with calls that fail on the file, and must be refused with its name and nothing changed."""
        fault += f":when={when}" if when else ""
        traced = ["strace", "-f", "-qq", "-o", "/dev/null", "-P", file, "-e", f"trace={calls}", "-e",
                  f"inject={calls}:error={fault}"]
        result = self.execute([*traced, *self.command(*words)], input)
        self.assertIn(file, self.assert_refusal(result, 1, (words, when)))

    def test_what_the_rescue_file_keeps_is_not_cut_off(self):
        for title in ("one", "two", "three", "four"):
            self.put(entry("2004/02/01", title, Number=1))
        rescue = self.data + "rescue.jsonl"
        kept = read(rescue)
        self.assertEqual(kept.count(b"\n"), 3)
        for content in (kept, kept[:-1], kept[:-9]):
            write(rescue, content)
            self.refused_at(rescue, "read,pread64", "EIO", "entry", "put",
                            input=entry("2004/02/01", "new", Number=1))
            self.assertEqual(read(rescue), content)
            self.assertEqual(self.listed(), [("2004/02/01", 1, "four")])
        self.refused_at(rescue, "openat", "EMFILE", "entry", "put", when=1,
                        input=entry("2004/02/01", "new", Number=1))
        self.assertEqual(read(rescue), kept[:-9])


if __name__ == "__main__":
    unittest.main()
