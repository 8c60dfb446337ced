"""Random damages of an old diary's file, as disks, transfers and programs that died leave them.

A damage changes a bytearray in place and tells in words what it did.
"""

import struct
from collections import defaultdict

HEAD_BYTES = 0x80    # signature, version and what the header hides
DATA_PAGE = 1
DEFINITION_PAGE = 2


class JetFile:
    """The layout of a whole file: its pages by kind, so that rare ones are met as often as common ones."""

    def __init__(self, data):
        self.page_size = 4096 if data[0x14] else 2048
        self.pages = len(data) // self.page_size
        self.by_kind = defaultdict(list)
        for page in range(self.pages):
            start = page * self.page_size
            owner = bytes(data[start + 4:start + 8])
            self.by_kind[(data[start], owner if data[start] == DATA_PAGE else b"")].append(page)
        self.definitions = self.by_kind[(DEFINITION_PAGE, b"")]

    def some_page(self, dice):
        if dice.random() < 0.3:
            return dice.randrange(self.pages)
        return dice.choice(self.by_kind[dice.choice(sorted(self.by_kind))])

    def start(self, page):
        return page * self.page_size

    def some_place(self, dice, size=1):
        """A place in some page: half of them where its counts, pointers and slots lie."""
        page = self.some_page(dice)
        within = dice.randrange(HEAD_BYTES if dice.random() < 0.5 else self.page_size) // size * size
        return page, self.start(page) + within

    def wild_value(self, dice):
        values = [0, 1, 4, 0xFF, 0x1000, 0x1FFF, 0x4000, 0x8000, 0xC000, 0xFFFF, 0x7FFFFFFF, 0x80000000, 0xC0000000, 0xFFFFFFFF,
                  self.pages, self.pages - 1, self.page_size, self.page_size - 1, dice.randrange(self.pages),
                  dice.randrange(self.pages) << 8 | dice.randrange(16), dice.getrandbits(32)]
        return dice.choice(values)


def flip_bits(file, data, dice):
    told = []
    for _ in range(dice.choice([1, 1, 1, 2, 8, 64])):
        page, place = file.some_place(dice)
        data[place] ^= 1 << dice.randrange(8)
        told.append(f"{page}+{place - file.start(page):#x}")
    return "bits flipped at " + ", ".join(told)


def put_wild_values(file, data, dice):
    told = []
    for _ in range(dice.choice([1, 1, 1, 2, 4])):
        size = dice.choice([2, 4])
        # Slots begin behind a head of 14 bytes, counts and pointers of definitions stand at odd places.
        page, place = file.some_place(dice, dice.choice([1, 2, 4]))
        place = min(place, file.start(page) + file.page_size - size)
        value = file.wild_value(dice) & (256 ** size - 1)
        struct.pack_into("<H" if size == 2 else "<I", data, place, value)
        told.append(f"{value:#x} at {page}+{place - file.start(page):#x}")
    return "values put: " + ", ".join(told)


def cut(file, data, dice):
    size = dice.randrange(len(data))
    del data[size:]
    return f"cut at byte {size}"


def cut_at_a_page(file, data, dice):
    pages = dice.randrange(file.pages)
    del data[file.start(pages):]
    return f"cut behind {pages} pages"


def swap_pages(file, data, dice):
    one, other = file.some_page(dice), file.some_page(dice)
    kept = page_of(file, data, one)
    put_page(file, data, one, page_of(file, data, other))
    put_page(file, data, other, kept)
    return f"pages {one} and {other} swapped"


def copy_a_page(file, data, dice):
    one, other = file.some_page(dice), file.some_page(dice)
    put_page(file, data, other, page_of(file, data, one))
    return f"page {one} copied over {other}"


def overwrite_a_page(file, data, dice):
    page, fill = file.some_page(dice), dice.choice([0, 0, 0xFF])
    put_page(file, data, page, bytes([fill]) * file.page_size)
    return f"page {page} filled with {fill:#x}"


def overwrite_bytes(file, data, dice):
    page, place = file.some_place(dice)
    count = min(dice.choice([2, 16, 512]), len(data) - place)
    data[place:place + count] = dice.choice([bytes(count), dice.randbytes(count)])
    return f"{count} bytes overwritten at {page}+{place - file.start(page):#x}"


def shift(file, data, dice):
    page, place = file.some_place(dice)
    count = dice.choice([1, 2, 512])
    if dice.random() < 0.5:
        del data[place:place + count]
        return f"{count} bytes taken out at {page}+{place - file.start(page):#x}"
    data[place:place] = bytes(count)
    return f"{count} bytes put in at {page}+{place - file.start(page):#x}"


def page_of(file, data, page):
    return data[file.start(page):file.start(page + 1)]


def put_page(file, data, page, content):
    data[file.start(page):file.start(page + 1)] = content


IN_PLACE = [flip_bits] * 4 + [put_wild_values] * 6 + [swap_pages, copy_a_page, overwrite_a_page] * 2 + [overwrite_bytes] * 2
LAST = [cut, cut_at_a_page, shift]


def damage(data, dice):
    """Damages the file's bytes, once or at times twice or three times, and tells what was done."""
    file, whole = JetFile(data), bytes(data)
    while True:
        told = [dice.choice(IN_PLACE)(file, data, dice) for _ in range(dice.choice([0, 1, 1, 1, 1, 1, 1, 2, 3]))]
        if not told or dice.random() < 0.05:
            told.append(dice.choice(LAST)(file, data, dice))
        if data != whole:
            return "; ".join(told)
