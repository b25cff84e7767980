#!/usr/bin/env python3
"""pair.py NAME RUNS -- OURS... -- PEER...: runs two commands in turns, the first round unmeasured.

Prints the medians of their times on the clock and of the processor, the ratios, and the peak memory
of each. What they print is thrown away. Processor times and memory are those of the commands'
first processes: an engine process of ours is in the clock's time only.
"""
import os
import statistics
import subprocess
import sys
import time


class Command:
    def __init__(self, words):
        self.words = words
        self.clock, self.processor, self.memory = [], [], 0

    def run(self, counts):
        start = time.monotonic()
        with open(os.devnull, "wb") as nowhere:
            process = subprocess.Popen(self.words, stdin=subprocess.DEVNULL, stdout=nowhere,
                                       stderr=nowhere)
            _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            sys.exit(f"{' '.join(self.words)} ended with {process.returncode}")
        if counts:
            self.clock.append(time.monotonic() - start)
            self.processor.append(usage.ru_utime + usage.ru_stime)
            self.memory = max(self.memory, usage.ru_maxrss * 1024)


def main():
    arguments = sys.argv[1:]
    if arguments.count("--") != 2:
        sys.exit(__doc__)
    first = arguments.index("--")
    second = arguments.index("--", first + 1)
    name, runs = arguments[0], int(arguments[1])
    ours, peer = Command(arguments[first + 1:second]), Command(arguments[second + 1:])
    for run in range(runs + 1):
        for command in (ours, peer):
            command.run(counts=run > 0)
    clock = [statistics.median(command.clock) for command in (ours, peer)]
    processor = [statistics.median(command.processor) for command in (ours, peer)]
    print(f"{name:<34} {clock[0]:8.3f} s  {peer.words[0]:<8} {clock[1]:8.3f} s  "
          f"ratio {clock[0] / clock[1]:6.2f} (cpu {processor[0] / max(processor[1], 0.001):6.2f})  "
          f"memory {ours.memory / 1e6:7.0f} MB, {peer.memory / 1e6:6.0f} MB", flush=True)


if __name__ == "__main__":
    main()
