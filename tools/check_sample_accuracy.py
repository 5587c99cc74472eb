#!/usr/bin/env python3
"""Measure how closely the engine's SD scores follow WHO's LMS method.

Usage:
    python3 tools/check_sample_accuracy.py [--refs DIR] [--knowledge FILE]
        [--auxtool PROGRAM] [--count N] [--seed S] [--keep FILE]

    --refs DIR         the public LMS tables; default ../shared/data/references,
                       relative to the repository root
    --knowledge FILE   knowledge file under test; default samples/knowledge.xml
    --auxtool PROGRAM  default build/bin/auxtool
    --count N          measurements per indicator; default 1000
    --seed S           seed of the generator; default 20240601
    --keep FILE        also keep the generated database in FILE

The script generates measurements of height, weight, BMI and head
circumference for boys and girls at random ages from birth to 19 years
(weight to 10, head circumference to 5 years, as far as the references go),
with SD scores drawn from a normal distribution of SD 1.25, cut at +-4.5.
It writes them as a proband database, one proband per measurement (BMI comes
from a height and a weight of one visit), runs `auxtool calc` with
HEIGHT:SD, WEIGHT:SD, BMI:SD and FOH:SD, and compares each engine SD score
with the z-score that it computes itself from the LMS tables:

- z = ((y/M)^L - 1)/(L*S), or ln(y/M)/S for L = 0;
- for weight and BMI beyond +-3 SD, WHO's restricted rule:
  z = 3 + (y - SD3)/(SD3 - SD2) above, z = -3 + (y - SD3neg)/(SD2neg - SD3neg)
  below, where SDk is the value at k SD;
- L, M and S are interpolated linearly between the table's rows at the age;
  before 5 years the day rows of WHO 2006 (length up to day 730.5, height
  after it; an age between the two tables takes the nearer table's row), from
  5 years the month rows of WHO 2007.

It prints the median, the 99th percentile (nearest rank) and the largest of
|engine z - LMS z| per indicator and over all, how many measurements the
engine left without a score although their LMS z lies within 6 SD (or gave
one beyond), and how many lie beyond 6 SD, where the engine has no score by
design and which stay out of the figures. The exit code is 1 when a median
exceeds 0.01, a 99th percentile exceeds 0.05 or a score is missing.
"""

import argparse
import bisect
import csv
import math
import os
import random
import subprocess
import sys
import tempfile

DAYS_PER_YEAR = 365.25
MEDIAN_LIMIT = 0.01
P99_LIMIT = 0.05
# The engine has no SD score beyond 6; this near the boundary either answer
# passes.
BOUNDARY_MARGIN = 0.05

INDICATORS = [
    # name, formula, 0-5 table, 5-19 table, last age in years, restricted rule
    ("height", "HEIGHT:SD", "who2006_length_height_for_age.csv",
     "who2007_height_for_age.csv", 19.0, False),
    ("weight", "WEIGHT:SD", "who2006_weight_for_age.csv",
     "who2007_weight_for_age.csv", 10.0, True),
    ("bmi", "BMI:SD", "who2006_bmi_for_age.csv", "who2007_bmi_for_age.csv", 19.0, True),
    ("head", "FOH:SD", "who2006_head_circumference_for_age.csv", None, 4.999, False),
]


class Table:
    """LMS rows of one sex, keyed by x, possibly split by position."""

    def __init__(self):
        self.rows = {}
        self.xs = {}

    def add(self, key, x, lms):
        self.rows.setdefault(key, []).append((x, lms))

    def lms(self, key, x):
        """L, M, S at x, linear between rows, the end rows beyond them."""
        rows = self.rows[key]
        if key not in self.xs:
            self.xs[key] = [r[0] for r in rows]
        xs = self.xs[key]
        if x <= xs[0]:
            return rows[0][1]
        if x >= xs[-1]:
            return rows[-1][1]
        i = bisect.bisect_right(xs, x)
        (x0, a), (x1, b) = rows[i - 1], rows[i]
        t = (x - x0) / (x1 - x0)
        return tuple(p + (q - p) * t for p, q in zip(a, b))


def load_tables(path):
    """{sex: Table}; x is days or months as in the file."""
    tables = {"male": Table(), "female": Table()}
    with open(path, newline="") as handle:
        for rec in csv.DictReader(handle):
            x = float(rec.get("age_days") or rec.get("age_months"))
            lms = (float(rec["L"]), float(rec["M"]), float(rec["S"]))
            tables[rec["sex"]].add(rec.get("position", "all"), x, lms)
    for table in tables.values():
        for rows in table.rows.values():
            rows.sort()
    return tables


class Reference:
    def __init__(self, refdir, indicator):
        self.name, self.formula, young, old, self.last_age, self.restricted = indicator
        self.young = load_tables(os.path.join(refdir, young))
        self.old = load_tables(os.path.join(refdir, old)) if old else None
        if self.old:
            for table in self.old.values():
                table.rows["all"] = [r for r in table.rows["all"] if r[0] <= self.last_age * 12]

    def lms(self, sex, age):
        if age < 5.0:
            table = self.young[sex]
            days = age * DAYS_PER_YEAR
            if "length" in table.rows:
                return table.lms("length" if days <= 730.5 else "height", days)
            return table.lms("all", days)
        return self.old[sex].lms("all", age * 12)


def lms_value(lms, z):
    l, m, s = lms
    if l == 0:
        return m * math.exp(s * z)
    return m * (1 + l * s * z) ** (1 / l)


def lms_z(lms, y, restricted):
    l, m, s = lms
    z = math.log(y / m) / s if l == 0 else ((y / m) ** l - 1) / (l * s)
    if restricted and z > 3:
        sd3, sd2 = lms_value(lms, 3), lms_value(lms, 2)
        return 3 + (y - sd3) / (sd3 - sd2)
    if restricted and z < -3:
        sd3, sd2 = lms_value(lms, -3), lms_value(lms, -2)
        return -3 + (y - sd3) / (sd2 - sd3)
    return z


def draw_z(rng):
    return max(-4.5, min(4.5, rng.gauss(0.0, 1.25)))


def make_measurements(refs, count, seed):
    """A list of dicts: indicator, sex, age, values (variable -> text), z."""
    rng = random.Random(seed)
    height = refs["height"]
    out = []
    for name, ref in refs.items():
        for _ in range(count):
            sex = rng.choice(("male", "female"))
            age = round(rng.uniform(0.0, ref.last_age), 3)
            y = lms_value(ref.lms(sex, age), draw_z(rng))
            if name == "bmi":
                h = round(lms_value(height.lms(sex, age), draw_z(rng)), 1)
                w = round(y * (h / 100) ** 2, 2)
                values = {"HEIGHT": "%.1f" % h, "WEIGHT": "%.2f" % w}
                y = w / ((h / 100) ** 2)
            elif name == "weight":
                y = round(y, 3)
                values = {"WEIGHT": "%.3f" % y}
            else:
                y = round(y, 2)
                values = {"HEIGHT" if name == "height" else "FOH": "%.2f" % y}
            z = lms_z(ref.lms(sex, age), y, ref.restricted)
            out.append(dict(indicator=name, sex=sex, age=age, values=values, z=z))
    return out


def database_text(measurements):
    out = ['<?xml version=\'1.0\' encoding="Windows-1250" standalone="no"?>\n',
           '<!DOCTYPE p_database SYSTEM "proband.dtd">\n', "<p_database>\n"]
    for i, m in enumerate(measurements):
        vals = "".join('<val var="%s">%s</val>' % kv for kv in sorted(m["values"].items()))
        out.append('  <p_record><p_name>m%05d</p_name><p_comment>%s</p_comment><proband>'
                   '<info sex="%s"/><data><record age="%.3f">%s</record></data>'
                   '</proband></p_record>\n' % (i, m["indicator"], m["sex"], m["age"], vals))
    out.append("</p_database>\n")
    return "".join(out)


def run_engine(auxtool, knowledge, database, formulas):
    """{proband name: {formula: z or None}}."""
    cmd = [auxtool, "calc", knowledge, database] + formulas + ["--today", "1.1.2030"]
    done = subprocess.run(cmd, capture_output=True, text=True, encoding="cp1250")
    if done.returncode != 0:
        sys.exit("%s failed (%d): %s" % (" ".join(cmd), done.returncode, done.stderr))
    rows = list(csv.reader(done.stdout.splitlines()))
    head = rows[0]
    result = {}
    for row in rows[1:]:
        rec = dict(zip(head, row))
        result[rec["name"]] = {f: (float(rec[f]) if rec[f] else None) for f in formulas}
    return result


def nearest_rank(sorted_values, fraction):
    return sorted_values[max(0, math.ceil(fraction * len(sorted_values)) - 1)]


def summary(label, diffs, missing, beyond):
    d = sorted(diffs)
    med = d[len(d) // 2] if len(d) % 2 else (d[len(d) // 2 - 1] + d[len(d) // 2]) / 2
    p99 = nearest_rank(d, 0.99)
    print("%-8s %6d %10.5f %10.5f %10.5f %8d %8d" % (label, len(d), med, p99, d[-1], missing, beyond))
    return med <= MEDIAN_LIMIT and p99 <= P99_LIMIT and missing == 0


def compare(measurements, engine, name, formula):
    """The differences where both have a score; how many scores the engine
    lacks within 6 SD or gives beyond it; how many measurements lie beyond
    6 SD, where the engine has no score by design. Within BOUNDARY_MARGIN of
    6 SD either answer of the engine passes."""
    diffs, missing, beyond = [], 0, 0
    for i, m in enumerate(measurements):
        if m["indicator"] != name:
            continue
        z = engine.get("m%05d" % i, {}).get(formula)
        if abs(m["z"]) > 6:
            beyond += 1
            if z is not None and abs(m["z"]) > 6 + BOUNDARY_MARGIN:
                missing += 1
        elif z is None:
            missing += abs(m["z"]) < 6 - BOUNDARY_MARGIN
        else:
            diffs.append(abs(z - m["z"]))
    return diffs, missing, beyond


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--refs", default=os.path.join(root, "..", "shared", "data", "references"))
    parser.add_argument("--knowledge", default=os.path.join(root, "samples", "knowledge.xml"))
    parser.add_argument("--auxtool", default=os.path.join(root, "build", "bin", "auxtool"))
    parser.add_argument("--count", type=int, default=1000)
    parser.add_argument("--seed", type=int, default=20240601)
    parser.add_argument("--keep")
    args = parser.parse_args()
    if not os.path.isdir(args.refs):
        sys.exit("no LMS tables at %s (give --refs DIR)" % args.refs)

    refs = {ind[0]: Reference(args.refs, ind) for ind in INDICATORS}
    measurements = make_measurements(refs, args.count, args.seed)
    with tempfile.TemporaryDirectory() as tmp:
        path = args.keep or os.path.join(tmp, "accuracy.xml")
        with open(path, "w", encoding="cp1250", newline="\n") as handle:
            handle.write(database_text(measurements))
        formulas = [ind[1] for ind in INDICATORS]
        engine = run_engine(args.auxtool, args.knowledge, path, formulas)

    print("|engine z - LMS z| over %d measurements, seed %d" % (len(measurements), args.seed))
    print("%-8s %6s %10s %10s %10s %8s %8s" % ("", "n", "median", "p99", "max", "no score",
                                              "beyond 6"))
    ok = True
    every = []
    missing_all = beyond_all = 0
    for name, formula, *_ in INDICATORS:
        diffs, missing, beyond = compare(measurements, engine, name, formula)
        ok = summary(name, diffs, missing, beyond) and ok
        every += diffs
        missing_all += missing
        beyond_all += beyond
    ok = summary("overall", every, missing_all, beyond_all) and ok
    print("within limits (median <= %g, p99 <= %g, none missing): %s" % (
        MEDIAN_LIMIT, P99_LIMIT, "yes" if ok else "NO"))
    sys.exit(0 if ok else 1)


if __name__ == "__main__":
    main()
