#!/usr/bin/env python3
"""Applies planted faults one at a time to a scratch copy of the tree, builds,
runs the test suites and tells which faults no test caught.

    tools/faults/check_faults.py [--only ID,ID] [--tests REGEX] [--scratch DIR] [--out FILE] [--list]

The scratch copy is the committed tree (git archive HEAD) plus the working
tree's changes to tracked files, brought up to date at each run and built in
Release; each fault then costs one incremental build and one ctest run that
stops at the first failure.
A fault whose text is not found, or whose build fails, is reported as such and
counts as neither caught nor missed.
"""
import argparse
import os
import re
import shutil
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
TABLE = os.path.join(ROOT, "tools", "faults", "planted.txt")
KEYS = ("id", "file", "before", "after", "kind")


def read_table(path):
    """Blocks of `key: value` lines; a line that starts no key continues the last value."""
    faults, current, last = [], {}, None
    with open(path, encoding="latin-1") as f:
        for raw in f:
            line = raw.rstrip("\n")
            if line.startswith("#"):
                continue
            if not line.strip():
                if current:
                    faults.append(current)
                current, last = {}, None
                continue
            m = re.match(r"(%s): (.*)$" % "|".join(KEYS), line)
            if m:
                last = m.group(1)
                current[last] = m.group(2)
            elif last:
                current[last] += "\n" + line
    if current:
        faults.append(current)
    for fault in faults:
        missing = [k for k in KEYS if k not in fault]
        if missing:
            sys.exit("fault %s lacks %s" % (fault.get("id", "?"), ", ".join(missing)))
    return faults


def run(cmd, cwd, timeout):
    try:
        p = subprocess.run(cmd, cwd=cwd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                           timeout=timeout, encoding="latin-1")
        return p.returncode, p.stdout
    except subprocess.TimeoutExpired:
        return -1, "timeout"


def tree_files(root):
    """The committed tree (git archive HEAD) with the working tree's changes to tracked files."""
    archive = subprocess.run(["git", "archive", "HEAD"], cwd=ROOT, stdout=subprocess.PIPE, check=True)
    subprocess.run(["tar", "-x", "-C", root], input=archive.stdout, check=True)
    diff = subprocess.run(["git", "diff", "HEAD", "--binary"], cwd=ROOT, stdout=subprocess.PIPE, check=True)
    if diff.stdout:
        subprocess.run(["git", "apply", "-"], cwd=root, input=diff.stdout, check=True)


def make_scratch(scratch):
    """Brings the scratch copy up to the tree. Only files whose bytes changed are
    written, so that a later run rebuilds no more than what the tree changed."""
    fresh = scratch + ".fresh"
    shutil.rmtree(fresh, ignore_errors=True)
    os.makedirs(fresh)
    tree_files(fresh)
    for folder, _, names in os.walk(fresh):
        for name in names:
            source = os.path.join(folder, name)
            target = os.path.join(scratch, os.path.relpath(source, fresh))
            with open(source, "rb") as f:
                data = f.read()
            if os.path.exists(target):
                with open(target, "rb") as f:
                    if f.read() == data:
                        continue
            os.makedirs(os.path.dirname(target), exist_ok=True)
            shutil.copy2(source, target)
            os.utime(target)
    shutil.rmtree(fresh)
    if os.path.isdir(os.path.join(scratch, "build")):
        return
    rc, out = run(["cmake", "-S", ".", "-B", "build", "-DCMAKE_BUILD_TYPE=Release"], scratch, 600)
    if rc != 0:
        sys.exit(out)


def build(scratch):
    return run(["cmake", "--build", "build", "-j2"], scratch, 1800)


def failing_suites(output):
    return sorted(set(re.findall(r"\d+ - (\S+) \((?:Failed|Timeout|SEGFAULT|Subprocess aborted|Exception)", output)))


def check(fault, scratch, tests):
    path = os.path.join(scratch, fault["file"])
    if not os.path.exists(path):
        return "no file", ""
    with open(path, encoding="latin-1") as f:
        original = f.read()
    if original.count(fault["before"]) != 1:
        return "text not found once", ""
    with open(path, "w", encoding="latin-1") as f:
        f.write(original.replace(fault["before"], fault["after"]))
    try:
        rc, out = build(scratch)
        if rc != 0:
            return "build fails", ""
        ctest = ["ctest", "-j2", "--stop-on-failure", "--timeout", "120"] + (["-R", tests] if tests else [])
        rc, out = run(ctest, os.path.join(scratch, "build"), 1800)
        suites = ",".join(failing_suites(out))
        return ("caught" if rc != 0 else "MISSED"), suites
    finally:
        with open(path, "w", encoding="latin-1") as f:
            f.write(original)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--only", help="comma-separated fault ids")
    parser.add_argument("--scratch", default=os.path.join(ROOT, "build", "faults-scratch"))
    parser.add_argument("--out", help="also write the table to this file")
    parser.add_argument("--tests", help="run only the test suites that match this ctest regex")
    parser.add_argument("--list", action="store_true", help="list the faults and stop")
    args = parser.parse_args()
    faults = read_table(TABLE)
    if args.only:
        wanted = set(args.only.split(","))
        faults = [f for f in faults if f["id"] in wanted]
    if args.list:
        for f in faults:
            print("%-34s %-38s %s" % (f["id"], f["file"], f["kind"]))
        return 0
    make_scratch(args.scratch)
    rc, out = build(args.scratch)
    if rc != 0:
        sys.exit("the unchanged tree does not build:\n" + out[-3000:])
    lines = ["| fault | file | kind | result | failing suites |", "|---|---|---|---|---|"]
    counts = {}
    for fault in faults:
        start = time.time()
        result, suites = check(fault, args.scratch, args.tests)
        counts[result] = counts.get(result, 0) + 1
        lines.append("| %s | %s | %s | %s | %s |" % (fault["id"], fault["file"], fault["kind"], result, suites))
        print(lines[-1] + "  (%.0f s)" % (time.time() - start), flush=True)
    build(args.scratch)  # leave the scratch build matching the tree
    summary = ", ".join("%s %d" % kv for kv in sorted(counts.items()))
    lines.append("")
    lines.append("%d faults: %s" % (len(faults), summary))
    print(lines[-1])
    if args.out:
        with open(args.out, "w", encoding="latin-1") as f:
            f.write("\n".join(lines) + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
