#!/usr/bin/env python3
"""Prints the pictures that the entries of a diary show: picture, day and number of the entry, parted by TAB.

    list_pictures.py DIARY

DIARY holds one entry a line, as `velloria-cli entry put` reads it, the entries of a day in the order of their numbers.
"""

import collections
import json
import re
import sys

numbers = collections.Counter()
with open(sys.argv[1], encoding="utf-8") as diary:
    for line in diary:
        entry = json.loads(line)
        day = entry["Day"]
        numbers[day] += 1
        for picture in re.findall(r'"\./DiaryParts/([^"]+)"', entry["Contents"] + entry.get("Extend", "")):
            print(picture, day, numbers[day], sep="\t")
