#!/usr/bin/env python3
"""Runs a command, and adds a line to a file: its user, system and wall-clock
seconds, and its peak memory in kilobytes.

usage: timed.py FILE COMMAND...
"""

import os
import sys
import time

start = time.perf_counter()
child = os.posix_spawnp(sys.argv[2], sys.argv[2:], os.environ)
_, status, used = os.wait4(child, 0)
wall = time.perf_counter() - start
with open(sys.argv[1], "a") as lines:
  print(f"{used.ru_utime:.6f} {used.ru_stime:.6f} {wall:.6f} {used.ru_maxrss}",
        file=lines)
sys.exit(os.waitstatus_to_exitcode(status) != 0)
