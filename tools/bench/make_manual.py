"""Makes a manual to measure with: make_manual.py FOLDER [FILES [MEGABYTES]]

Pages that compress well and pictures that do not, a hundred in a folder, the same at every run; and an archive of it all,
FOLDER.zip.
"""

import os
import random
import sys
import zipfile

PER_FOLDER = 100


def content(number, size, chance):
    if number % 2:
        return chance.randbytes(size)
    words = [b"remove", b"the", b"bolt", b"and", b"check", b"torque", b"%d Nm" % chance.randrange(200), b"<br>"]
    page = b" ".join(chance.choice(words) for _ in range(size // 5))
    return page[:size].ljust(size)


def main():
    folder = sys.argv[1]
    files = int(sys.argv[2]) if len(sys.argv) > 2 else 5000
    total = int(sys.argv[3]) * 1000 * 1000 if len(sys.argv) > 3 else 200 * 1000 * 1000
    chance = random.Random(1)
    with zipfile.ZipFile(folder + ".zip", "w", zipfile.ZIP_DEFLATED) as archive:
        for number in range(files):
            name = f"M/contents/s{number // PER_FOLDER:03}/page{number:05}." + ("jpg" if number % 2 else "htm")
            path = os.path.join(folder, name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            size = int(total / files * chance.uniform(0.2, 1.8))
            with open(path, "wb") as file:
                file.write(content(number, size, chance))
            archive.write(path, name)


main()
