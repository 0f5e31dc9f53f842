"""Makes an address book to measure with.

One file per card, as phones export them: several numbers and addresses, groups with labels of their own, now and then a
photo. The same arguments make the same bytes.
"""

import argparse
import base64
import random
from pathlib import Path

GIVEN = ("Anna", "Jörg", "Maria", "Chloé", "Paul", "Zoë", "Mehmet", "Ines", "Søren", "Ada", "Luís", "Eva", "Tom")
FAMILY = ("Schmidt", "Müller", "García", "Novák", "Øster", "Brown", "Yılmaz", "Rossi", "Dupont", "Weiß", "Lind")
CITIES = (("10115", "Berlin"), ("50667", "Köln"), ("8001", "Zürich"), ("1010", "Wien"), ("75001", "Paris"))


def photo(chance):
    text = base64.b64encode(chance.randbytes(3_000)).decode()
    return "PHOTO;ENCODING=b;TYPE=JPEG:" + "\n ".join(text[i:i + 74] for i in range(0, len(text), 74)) + "\n"


def card(chance, number):
    """The bytes of one file."""
    given, family = chance.choice(GIVEN), chance.choice(FAMILY)
    code, city = chance.choice(CITIES)
    lines = [
        f"BEGIN:VCARD\nVERSION:3.0\nPRODID:-//Example//Benchmark//EN\nUID:{number:08d}-{chance.getrandbits(64):016x}\n",
        f"N:{family};{given};;;\nFN:{given} {family}\n",
        f"ORG:Company {number % 97};Team {number % 7}\nTITLE:Engineer\n" if number % 3 == 0 else "",
        f"TEL;type=CELL;type=VOICE:+49 176 {chance.randrange(10**7):07d}\n",
        f"item1.TEL:+49 30 {chance.randrange(10**6):06d}\nitem1.X-ABLabel:Boat\n" if number % 4 == 0 else "",
        f"EMAIL;type=INTERNET;type=WORK:{number}@example.com\n",
        f"ADR;type=HOME:;;Street {number % 211};{city};;{code};Germany\n" if number % 2 == 0 else "",
        photo(chance) if number % 10 == 0 else "",
        "REV:20260101T000000Z\nEND:VCARD\n",
    ]
    return "".join(lines).replace("\n", "\r\n").encode()


def make(folder, count, seed=1):
    """Makes a root with one book of `count` cards."""
    chance = random.Random(f"{seed} {count}")
    (folder / "friends").mkdir(parents=True)
    for number in range(count):
        (folder / "friends" / f"{number:08d}.vcf").write_bytes(card(chance, number))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="a folder that does not exist yet")
    parser.add_argument("count", type=int)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    make(arguments.folder, arguments.count, arguments.seed)
