#!/usr/bin/env python3
"""How long the steps of an estimate take where nodes are uneven and get lost.

    palvor-kit plan --estimate ... --nodes 16 | bench/simulate_nodes.py --nodes 16

Each job goes to the place that is free first. A node that is lost takes its jobs
with it; the controller knows after --timeout seconds (Slurm's SlurmdTimeout), the
jobs are begun anew, elsewhere, and the node is back after --back seconds. Prints,
over some random courses of each step, the mean and the longest time.
"""

import argparse
import heapq
import random
import statistics
import sys


def arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--nodes", type=int, required=True)
    parser.add_argument("--spread", type=float, default=0.2, help="of nodes' speeds")
    parser.add_argument("--lost", type=float, default=720, help="hours to a node's loss")
    parser.add_argument("--timeout", type=float, default=300, help="seconds")
    parser.add_argument("--back", type=float, default=3600, help="seconds")
    parser.add_argument("--submit", type=float, default=0.1, help="seconds a job")
    parser.add_argument("--jobs", type=int, default=500, help="in the queue at once")
    parser.add_argument("--start", type=float, default=5, help="seconds before a job works")
    parser.add_argument("--courses", type=int, default=50)
    return parser.parse_args()


def course(jobs, places, seconds, options, chance):
    """Seconds of one step, and the jobs that were lost."""
    speeds = [chance.uniform(1 - options.spread, 1 + options.spread) for _ in range(options.nodes)]
    losses = [chance.expovariate(1 / (3600 * options.lost)) for _ in range(options.nodes)]
    free = [(0.0, place % options.nodes) for place in range(min(places, options.jobs))]
    heapq.heapify(free)
    waiting = [options.submit * (i + 1) for i in range(jobs)]  # when each can begin
    heapq.heapify(waiting)
    end, lost = 0.0, 0
    while waiting:
        begin, node = heapq.heappop(free)
        while begin > losses[node] + options.back:
            losses[node] += options.back + chance.expovariate(1 / (3600 * options.lost))
        begin = max(begin, heapq.heappop(waiting))
        done = begin + options.start + seconds / speeds[node]
        if losses[node] < done:
            lost += 1
            heapq.heappush(waiting, max(begin, losses[node]) + options.timeout)
            heapq.heappush(free, (max(begin, losses[node] + options.back), node))
        else:
            end = max(end, done)
            heapq.heappush(free, (done, node))
    return end, lost


def main():
    options = arguments()
    chance = random.Random(1)
    print("step", "jobs", "estimated", "mean", "longest", "lost_jobs", sep="\t")
    for line in sys.stdin.read().splitlines()[1:]:
        step, jobs, places, _, _, _, seconds, expected = line.split("\t")
        courses = [
            course(int(jobs), int(places), float(seconds), options, chance)
            for _ in range(options.courses)
        ]
        times = [time for time, _ in courses]
        lost = statistics.mean(lost for _, lost in courses)
        print(step, jobs, f"{float(expected):.0f}", f"{statistics.mean(times):.0f}",
              f"{max(times):.0f}", f"{lost:.1f}", sep="\t")


if __name__ == "__main__":
    main()
