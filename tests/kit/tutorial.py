"""Runs every command of docs/tutorial.md, on small genomes that stand in.

    tutorial.py PAGE PALVOR_KIT

Commands are the lines that begin with "$ " in blocks marked console. Each must
succeed, and those that answer must print something.
"""

import os
import random
import re
import subprocess
import sys
import tempfile

SILENT = ("sha256sum", "> ")


def write_genomes(names):
    """Relatives with the texts that the page looks for."""
    generator = random.Random(5)
    ancestor = "".join(generator.choices("ACGT", k=4000))
    os.mkdir("genomes")
    for name in names:
        text = list(ancestor + "GATTACAGATTACA" + "TTGACATATAAT")
        for _ in range(20):
            text[generator.randrange(4000)] = generator.choice("ACGT")
        with open(name, "w") as file:
            file.write(f">{os.path.basename(name)}\n{''.join(text)}\n")


def main(page, kit):
    with open(page) as file:
        text = file.read()
    commands = [line[2:] for block in re.findall(r"```console\n(.*?)```", text,
                                                 re.DOTALL)
                for line in block.splitlines() if line.startswith("$ ")]
    os.environ["PATH"] = os.path.dirname(kit) + ":" + os.environ["PATH"]
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        # Compressed files are known by what is in them, not by their names.
        write_genomes(sorted(set(re.findall(r"genomes/\w+\.fasta\.gz", text))))
        for command in commands:
            run = subprocess.run(command, shell=True, capture_output=True,
                                 text=True)
            silent = any(word in command for word in SILENT)
            if run.returncode != 0 or not (run.stdout or silent):
                failures += 1
                print(f"{command}\nended with {run.returncode}\n{run.stdout}"
                      f"{run.stderr}", file=sys.stderr)
        os.chdir("/")
    return 0 if failures == 0 and len(commands) > 12 else 1


if __name__ == "__main__":
    sys.exit(main(*map(os.path.abspath, sys.argv[1:])))
