#!/usr/bin/env python3
"""Reads Google Benchmark JSON and prints each benchmark as a ratio to its group's baseline.

Benchmarks are named "<group>/<variant>"; the variant named "baseline" (the raw flat API, or the
direct C++ call) is the reference for the others in its group. Ratios, not times, are what we
compare: they hold from one machine to the next.
"""
import json
import sys


# Google Benchmark's own keys; anything else in a run is a counter the benchmark set.
KNOWN = {"name", "family_index", "per_family_instance_index", "run_name", "run_type", "repetitions",
         "repetition_index", "threads", "iterations", "real_time", "cpu_time", "time_unit",
         "aggregate_name", "aggregate_unit", "label"}


def counters(b):
    return "".join(f"  {k} {v:.2f}" for k, v in b.items() if k not in KNOWN and isinstance(v, (int, float)))


def main(path):
    with open(path) as f:
        runs = [b for b in json.load(f)["benchmarks"] if b.get("run_type", "iteration") == "iteration"]
    groups = {}
    for b in runs:
        group, _, variant = b["name"].partition("/")
        groups.setdefault(group, {})[variant or "baseline"] = (b["cpu_time"], b.get("time_unit", "ns"), counters(b))
    for group, variants in groups.items():
        base = variants.get("baseline", (None,))[0]
        print(group)
        for variant, (t, unit, extra) in variants.items():
            ratio = f"{t / base:6.2f}x" if base else "   n/a "
            print(f"  {variant:<28} {t:12.1f} {unit:<2}  {ratio}{extra}")


if __name__ == "__main__":
    main(sys.argv[1])
