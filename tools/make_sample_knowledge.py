#!/usr/bin/env python3
"""Generate the sample knowledge file samples/knowledge.xml.

Usage:
    python3 tools/make_sample_knowledge.py [--refs DIR] [--out FILE] [--tolerance Z]

    --refs DIR       folder with the public LMS tables (who2006_*.csv and
                     who2007_*.csv); default ../shared/data/references,
                     relative to the repository root
    --out FILE       the knowledge file to write; default samples/knowledge.xml
    --tolerance Z    how far, in SD scores, dropping a table row may move a
                     value interpolated over age; default 0.001

The output depends on the tables and the options only, so running the script
again gives the same bytes. The file is written in Windows-1250 with LF line
ends. The tables themselves are not part of the repository.

What the file holds:

- the variables of a paediatric clinic (measured, anamnestic, calculated
  SD scores, percentiles, BMI, target height and height velocity);
- the percentile and SD lines that charts draw over references without a
  percentile list of their own;
- growth references by sex: WHO Child Growth Standards 2006 (0 to 5 years)
  and WHO Growth Reference 2007 (5 to 19 years) for length/height, weight (to
  10 years), BMI and head circumference (to 5 years); and an adult height
  reference (WHO 2007 at 19 years) for the SD score of the target height.
- growth charts: a variable per chart with one percentile reference per sex
  over the whole age range, at the chart's own lines (P3 to P97, or -3 to
  +3 SD), with grid variants; two report texts show the charts, the height
  velocity and an auxogram of the SD scores.

How the LMS tables become the engine's reference types:

- Where L = 1 (length/height, head circumference) a row is exactly a normal
  distribution: a line with mean M and SD M*S.
- Elsewhere (weight, BMI) a row becomes a percentile line with columns at the
  SD scores in Z_COLUMNS, valued by the Box-Cox formula. The columns at +-4
  hold WHO's "restricted" values SD3 +- (SD3 - SD2) instead of the LMS ones:
  the engine extrapolates beyond its outer columns through the two outermost
  ones, and with +-3 and +-4 on WHO's straight line beyond 3 SD it reproduces
  WHO's rule for weight-based indicators exactly, while the half-SD columns
  inside keep the piecewise-linear error small.
- Rows are dropped where linear interpolation over age reproduces them within
  the tolerance, and each reference is split into several ref elements over
  adjacent age ranges, sharing their boundary lines, so that each element
  stays well inside the 16384-byte capture of the engine's XML reader.
- Length (days 0-730) and height (days 731-1826) are separate tables with a
  step between them, so they are separate references. The half day between
  the two tables goes to the nearer day's row (WHO's software rounds ages to
  whole days): the length reference ends with a copy of day 730 at 2.0 years,
  the height reference starts with a copy of day 731 there. Likewise a copy
  of day 1826 closes the 0-5 references at 5.0 years, where WHO 2007 begins.
"""

import argparse
import csv
import math
import os
import sys
from statistics import NormalDist

CAPTURE_BYTES = 16384      # the engine's XML capture buffer
REF_BUDGET_BYTES = 12000   # room left for a writer that spells numbers longer
END_TAG = "</ref>"

Z_COLUMNS = [-4, -3, -2.5, -2, -1.5, -1, -0.5, 0, 0.5, 1, 1.5, 2, 2.5, 3, 4]

DAYS_PER_YEAR = 365.25
MONTHS_PER_YEAR = 12

SEXES = (("male", "boys"), ("female", "girls"))

# One reference per sex and segment: variable, table, row filter, x column,
# divisor to years, rows kept (in the table's x unit), extra rows that copy
# a neighbouring row at the edges, age interval in years with its ends.
SEGMENTS = [
    dict(var="HEIGHT", file="who2006_length_height_for_age.csv", position="length",
         xcol="age_days", div=DAYS_PER_YEAR, rows=(0, 730), after=[(730.5, 730)],
         age=(0.0, True, 2.0, True), label="WHO 2006 length-for-age (recumbent)"),
    dict(var="HEIGHT", file="who2006_length_height_for_age.csv", position="height",
         xcol="age_days", div=DAYS_PER_YEAR, rows=(731, 1826),
         before=[(730.5, 731)], after=[(1826.25, 1826)],
         age=(2.0, False, 5.0, False), label="WHO 2006 height-for-age (standing)"),
    dict(var="HEIGHT", file="who2007_height_for_age.csv", xcol="age_months",
         div=MONTHS_PER_YEAR, rows=(60, 228), age=(5.0, True, 19.0, True),
         label="WHO 2007 height-for-age"),
    dict(var="WEIGHT", file="who2006_weight_for_age.csv", xcol="age_days",
         div=DAYS_PER_YEAR, rows=(0, 1826), after=[(1826.25, 1826)],
         age=(0.0, True, 5.0, False), label="WHO 2006 weight-for-age"),
    dict(var="WEIGHT", file="who2007_weight_for_age.csv", xcol="age_months",
         div=MONTHS_PER_YEAR, rows=(60, 120), age=(5.0, True, 10.0, True),
         label="WHO 2007 weight-for-age"),
    dict(var="BMI", file="who2006_bmi_for_age.csv", position="length",
         xcol="age_days", div=DAYS_PER_YEAR, rows=(0, 730), after=[(730.5, 730)],
         age=(0.0, True, 2.0, True), label="WHO 2006 BMI-for-age (length)"),
    dict(var="BMI", file="who2006_bmi_for_age.csv", position="height",
         xcol="age_days", div=DAYS_PER_YEAR, rows=(731, 1826),
         before=[(730.5, 731)], after=[(1826.25, 1826)],
         age=(2.0, False, 5.0, False), label="WHO 2006 BMI-for-age (height)"),
    dict(var="BMI", file="who2007_bmi_for_age.csv", xcol="age_months",
         div=MONTHS_PER_YEAR, rows=(60, 228), age=(5.0, True, 19.0, True),
         label="WHO 2007 BMI-for-age"),
    dict(var="FOH", file="who2006_head_circumference_for_age.csv", xcol="age_days",
         div=DAYS_PER_YEAR, rows=(0, 1826), after=[(1826.25, 1826)],
         age=(0.0, True, 5.0, False), label="WHO 2006 head circumference-for-age"),
]

# Adult height for the SD score of the mid-parental target height: the
# WHO 2007 height-for-age row at 19 years.
ADULT_HEIGHT = dict(var="TARGET_HT", file="who2007_height_for_age.csv",
                    xcol="age_months", month=228,
                    label="Adult height (WHO 2007 height-for-age at 19 years)")


# ---------------------------------------------------------------- variables

def interval(lo, hi, lo_open=False, hi_open=False):
    return (lo, hi, lo_open, hi_open)


def measured(vid, name, scope, unit, precision, valid, sex=None):
    return dict(id=vid, type="measured", scope=scope, data="real", name=name,
                unit=unit, precision=precision, interval=valid, sex=sex)


def listvar(vid, name, items, sex=None):
    return dict(id=vid, type="measured", scope="followed", data="list",
                name=name, items=items, sex=sex)


def calculated(vid, name, scope, unit, precision, valid, computes, xyref=True):
    return dict(id=vid, type="calculated", scope=scope, data="real", name=name,
                unit=unit, precision=precision, interval=valid,
                computes=computes, xyref=xyref)


SD_VALID = interval(-6, 6)
P_VALID = interval(0, 100, True, True)

VARIABLES = [
    dict(id="AGE", type="age", scope="followed", data="real", name="Age",
         unit="years", precision=0.01, interval=interval(0, 30)),
    measured("HEIGHT", "Height", "followed", "cm", 0.1, interval(30, 230)),
    measured("WEIGHT", "Weight", "followed", "kg", 0.01, interval(0.3, 250)),
    measured("FOH", "Head circumference", "followed", "cm", 0.1, interval(20, 70)),
    measured("BONE_AGE", "Bone age", "followed", "years", 0.1, interval(0, 20)),
    measured("MAC", "Arm span", "followed", "cm", 0.1, interval(30, 250)),
    measured("SIST", "Suprailiac skinfold", "followed", "mm", 0.1, interval(1, 80)),
    measured("SSST", "Subscapular skinfold", "followed", "mm", 0.1, interval(1, 80)),
    measured("TST", "Triceps skinfold", "followed", "mm", 0.1, interval(1, 80)),
    measured("TEST_VOLUME", "Testicular volume", "followed", "ml", 1,
             interval(1, 35), sex="male"),
    listvar("TANNER_PH", "Pubic hair (Tanner)", [
        (1, "PH1 prepubertal"), (2, "PH2 sparse, long, slightly pigmented"),
        (3, "PH3 darker, coarser, curled"), (4, "PH4 adult type, small area"),
        (5, "PH5 adult, spread to thighs")]),
    listvar("TANNER_M", "Breast development (Tanner)", [
        (1, "M1 prepubertal"), (2, "M2 breast bud"), (3, "M3 breast and areola enlarged"),
        (4, "M4 areola forms a secondary mound"), (5, "M5 mature")], sex="female"),
    measured("MENARCHE", "Age at menarche", "anamnestic", "years", 0.1,
             interval(7, 20), sex="female"),
    measured("FATHER_HT", "Father's height", "anamnestic", "cm", 0.1, interval(120, 230)),
    measured("MOTHER_HT", "Mother's height", "anamnestic", "cm", 0.1, interval(110, 220)),
    measured("FATHER_HC", "Father's head circumference", "anamnestic", "cm", 0.1,
             interval(45, 70)),
    measured("MOTHER_HC", "Mother's head circumference", "anamnestic", "cm", 0.1,
             interval(45, 70)),
    calculated("BMI", "Body mass index", "followed", "kg/m2", 0.1, interval(5, 80),
               [(None, "WEIGHT/((HEIGHT/100)^2)")]),
    calculated("HEIGHT_SD", "Height SD score", "followed", "SD", 0.01, SD_VALID,
               [(None, "HEIGHT:SD")]),
    calculated("HEIGHT_P", "Height percentile", "followed", "%", 0.1, P_VALID,
               [(None, "HEIGHT:P")]),
    calculated("WEIGHT_SD", "Weight SD score", "followed", "SD", 0.01, SD_VALID,
               [(None, "WEIGHT:SD")]),
    calculated("WEIGHT_P", "Weight percentile", "followed", "%", 0.1, P_VALID,
               [(None, "WEIGHT:P")]),
    calculated("BMI_SD", "BMI SD score", "followed", "SD", 0.01, SD_VALID,
               [(None, "BMI:SD")]),
    calculated("BMI_P", "BMI percentile", "followed", "%", 0.1, P_VALID,
               [(None, "BMI:P")]),
    calculated("FOH_SD", "Head circumference SD score", "followed", "SD", 0.01,
               SD_VALID, [(None, "FOH:SD")]),
    calculated("FOH_P", "Head circumference percentile", "followed", "%", 0.1,
               P_VALID, [(None, "FOH:P")]),
    # Mid-parental height: the parents' mean, moved by half the 13 cm by
    # which adult men and women differ.
    calculated("TARGET_HT", "Mid-parental target height", "anamnestic", "cm", 0.1,
               interval(120, 230),
               [("MALE", "(FATHER_HT+MOTHER_HT+13)/2"),
                ("FEMALE", "(FATHER_HT+MOTHER_HT-13)/2")]),
    calculated("TARGET_HT_SD", "Target height SD score", "anamnestic", "SD", 0.01,
               SD_VALID, [(None, "TARGET_HT:SD")], xyref=False),
    # Computed per visit: the growth since the previous visit with a height,
    # per year of age between the two.
    calculated("HEIGHT_VEL", "Height velocity", "followed", "cm/year", 0.1,
               interval(-20, 100),
               [(None, "(HEIGHT:NOW-HEIGHT:PREV)/(HEIGHT:NOW:AGE-HEIGHT:PREV:AGE)")]),
    # The latest measurement of each kind, as one point, for the sentences of
    # the report texts (a whole series has no single value to print).
    calculated("LAST_AGE", "Age at the last height measurement", "followed", "years", 0.1,
               interval(0, 30), [(None, "HEIGHT:LAST_DEFINED:AGE")]),
    calculated("LAST_HEIGHT", "Last height", "followed", "cm", 0.1, interval(30, 230),
               [(None, "HEIGHT:LAST_DEFINED")]),
    calculated("LAST_HEIGHT_SD", "Last height SD score", "followed", "SD", 0.01, SD_VALID,
               [(None, "HEIGHT_SD:LAST_DEFINED")]),
    calculated("LAST_HEIGHT_P", "Last height percentile", "followed", "%", 0.1, P_VALID,
               [(None, "HEIGHT_P:LAST_DEFINED")]),
    calculated("LAST_WEIGHT", "Last weight", "followed", "kg", 0.01, interval(0.3, 250),
               [(None, "WEIGHT:LAST_DEFINED")]),
    calculated("LAST_WEIGHT_SD", "Last weight SD score", "followed", "SD", 0.01, SD_VALID,
               [(None, "WEIGHT_SD:LAST_DEFINED")]),
    calculated("LAST_WEIGHT_P", "Last weight percentile", "followed", "%", 0.1, P_VALID,
               [(None, "WEIGHT_P:LAST_DEFINED")]),
    calculated("LAST_BMI", "Last body mass index", "followed", "kg/m2", 0.1, interval(5, 80),
               [(None, "BMI:LAST_DEFINED")]),
    calculated("LAST_BMI_SD", "Last BMI SD score", "followed", "SD", 0.01, SD_VALID,
               [(None, "BMI_SD:LAST_DEFINED")]),
    calculated("LAST_BMI_P", "Last BMI percentile", "followed", "%", 0.1, P_VALID,
               [(None, "BMI_P:LAST_DEFINED")]),
]

# ---------------------------------------------------------------- charts

# A growth chart shows one reference over the child's whole age range, but
# the references above are split by table and by size, and a chart takes the
# single reference whose age interval holds all the child's points. So each
# chart has a variable of its own, computed as the measure itself, with one
# coarser reference per sex over the whole range. The chart references are
# percentile tables at the lines the chart shows, so that one chart shows
# percentiles and another SD lines, whatever the page's setting of reference
# lines (a percentile table always draws its own columns).
CHART_KINDS = [
    ("P", "percentiles", [(p, "P%g" % p) for p in (3, 10, 25, 50, 75, 90, 97)]),
    ("SD", "SD lines", [(z, "%+d SD" % z if z else "0 SD") for z in (-3, -2, -1, 0, 1, 2, 3)]),
]

# Chart tables are thinned until they fit the budget, starting here (SD
# scores): a tenth of a pixel on any chart the sample draws.
CHART_TOLERANCE = 0.005

# Grid variants, (x from, to, step, small), (y from, to, step, small): the
# age axis has room for a number every 2 years at most over 16 years. The
# graph takes the one that holds all the child's points with the smallest
# area, and the earliest one that covers a range asked by the graph.
CHARTS = [
    dict(var="HEIGHT", name="Height", unit="cm", segments=[0, 1, 2], variants=[
        ((0, 2, 0.5, 0.25), (40, 100, 10, 5)),
        ((0, 5, 0.5, 0.25), (40, 130, 10, 5)),
        ((0, 10, 1, 0.5), (40, 170, 10, 5)),
        ((4, 20, 2, 1), (80, 200, 20, 10)),
        ((0, 20, 2, 1), (40, 200, 20, 10))]),
    dict(var="WEIGHT", name="Weight", unit="kg", segments=[3, 4], variants=[
        ((0, 2, 0.5, 0.25), (0, 20, 4, 1)),
        ((0, 5, 0.5, 0.25), (0, 30, 5, 1)),
        ((0, 10, 1, 0.5), (0, 50, 5, 1))]),
    dict(var="BMI", name="BMI", unit="kg/m2", segments=[5, 6, 7], variants=[
        ((0, 2, 0.5, 0.25), (8, 24, 4, 1)),
        ((0, 5, 0.5, 0.25), (10, 24, 2, 1)),
        ((0, 10, 1, 0.5), (10, 30, 2, 1)),
        ((4, 20, 2, 1), (10, 38, 4, 1)),
        ((0, 20, 2, 1), (8, 40, 4, 1))]),
    dict(var="FOH", name="Head circumference", unit="cm", segments=[8], variants=[
        ((0, 2, 0.5, 0.25), (30, 54, 4, 1)),
        ((0, 5, 0.5, 0.25), (30, 56, 2, 1))]),
]

# The X axis of the charts: the age with one decimal, so that the axis reads
# 0.5, 1.0, 10.0 rather than the age's own two decimals; as a value it is the
# age at each visit with a height. Chart values are whole units on the Y
# axis for the same reason.
CHART_AGE = calculated("CHART_AGE", "Age", "followed", "years", 0.1, interval(0, 30),
                       [(None, "HEIGHT:AGE")])


def chart_id(var, kind):
    return "%s_CHART_%s" % (var, kind)


def chart_variable(chart, kind):
    v = calculated(chart_id(chart["var"], kind), chart["name"], "followed", chart["unit"], 1,
                   interval(0, 300), [(None, chart["var"])])
    v["xvar"] = "CHART_AGE"
    return v


VARIABLES += [CHART_AGE] + [chart_variable(c, kind) for c in CHARTS for kind, _, _ in CHART_KINDS]


# Lines that charts draw over a reference without its own percentile list.
GRAPH_SD_LINES = [(-3, "-3 SD"), (-2, "-2 SD"), (-1, "-1 SD"), (0, "0 SD"),
                  (1, "+1 SD"), (2, "+2 SD"), (3, "+3 SD")]
GRAPH_PERCENTILE_LINES = [(3, "P3"), (10, "P10"), (25, "P25"), (50, "P50"),
                          (75, "P75"), (90, "P90"), (97, "P97")]


# ---------------------------------------------------------------- numbers

def number_text(value, decimals=None):
    """A number as the file spells it: no exponent, no trailing zeros."""
    if decimals is None:
        text = repr(float(value))
        if "e" in text or "E" in text:
            text = "%.17f" % value
    else:
        text = "%.*f" % (decimals, value)
    if "." in text:
        text = text.rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def lms_value(l, m, s, z):
    if l == 0:
        return m * math.exp(s * z)
    return m * (1 + l * s * z) ** (1 / l)


def lms_slope(l, m, s, z):
    """d value / d z of the Box-Cox curve."""
    if l == 0:
        return m * s * math.exp(s * z)
    return m * s * (1 + l * s * z) ** (1 / l - 1)


def column_values(row, z_columns):
    """Values and slopes at the columns, restricted beyond +-3 SD."""
    l, m, s = row["L"], row["M"], row["S"]
    sd3p, sd2p = lms_value(l, m, s, 3), lms_value(l, m, s, 2)
    sd3n, sd2n = lms_value(l, m, s, -3), lms_value(l, m, s, -2)
    values, slopes = [], []
    for z in z_columns:
        if z > 3:
            values.append(sd3p + (z - 3) * (sd3p - sd2p))
            slopes.append(sd3p - sd2p)
        elif z < -3:
            values.append(sd3n + (z + 3) * (sd2n - sd3n))
            slopes.append(sd2n - sd3n)
        else:
            values.append(lms_value(l, m, s, z))
            slopes.append(lms_slope(l, m, s, z))
    return values, slopes


def percent_of(z):
    return 100.0 * NormalDist().cdf(z)


# ---------------------------------------------------------------- tables

def read_table(path, xcol, position=None):
    """Rows by sex: lists of dicts x, L, M, S, sorted by x."""
    tables = {"male": [], "female": []}
    with open(path, newline="", encoding="ascii") as handle:
        for rec in csv.DictReader(handle):
            if position is not None and rec.get("position") != position:
                continue
            tables[rec["sex"]].append(dict(
                x=float(rec[xcol]), L=float(rec["L"]), M=float(rec["M"]),
                S=float(rec["S"]), Mtext=rec["M"]))
    for rows in tables.values():
        rows.sort(key=lambda r: r["x"])
    return tables


def segment_rows(rows, seg):
    lo, hi = seg["rows"]
    by_x = {r["x"]: r for r in rows}
    picked = [r for r in rows if lo <= r["x"] <= hi]
    if len(picked) != int(hi - lo) + 1:
        sys.exit("table %s: rows %g..%g incomplete" % (seg["file"], lo, hi))
    edges = []
    for x, source in seg.get("before", []) + seg.get("after", []):
        copy = dict(by_x[float(source)])
        copy["x"] = x
        edges.append(copy)
    return sorted(picked + edges, key=lambda r: r["x"])


def is_normal(rows):
    return all(r["L"] == 1 for r in rows)


# ---------------------------------------------------------------- thinning

# Dropping rows is judged on the columns from -3 to 3 SD; the outer ones are
# straight extensions of these.
JUDGED_COLUMNS = [c for c, z in enumerate(Z_COLUMNS) if abs(z) <= 3]


def interpolation_error(rows, cols, i, j, k):
    """Largest error, in SD scores, of row k interpolated from rows i and j."""
    t = (rows[k]["x"] - rows[i]["x"]) / (rows[j]["x"] - rows[i]["x"])
    worst = 0.0
    for c in JUDGED_COLUMNS:
        guess = cols[i][0][c] + (cols[j][0][c] - cols[i][0][c]) * t
        worst = max(worst, abs(guess - cols[k][0][c]) / cols[k][1][c])
    return worst


def thin(rows, tolerance):
    """Indices of the rows to keep: the first, the last, and between them,
    greedily, each row from which the next kept row can be reached with every
    dropped row within `tolerance` of the interpolation."""
    cols = [column_values(r, Z_COLUMNS) for r in rows]
    keep = [0]
    i = 0
    while i < len(rows) - 1:
        j = i + 1
        while j + 1 < len(rows) and all(
                interpolation_error(rows, cols, i, j + 1, k) <= tolerance
                for k in range(i + 1, j + 1)):
            j += 1
        keep.append(j)
        i = j
    return keep


# ---------------------------------------------------------------- XML text

def xml_interval(lo, hi, lo_open, hi_open, indent):
    pad = " " * indent
    return (pad + "<interval>\n"
            + pad + '  <min boundary="%s">%s</min>\n' % ("open" if lo_open else "closed",
                                                        number_text(lo))
            + pad + '  <max boundary="%s">%s</max>\n' % ("open" if hi_open else "closed",
                                                        number_text(hi))
            + pad + "</interval>\n")


def xml_list(items, indent):
    pad = " " * indent
    out = pad + "<list>\n"
    for value, text in items:
        out += pad + '  <item value="%s">%s</item>\n' % (value, text)
    return out + pad + "</list>\n"


def xml_variable(v):
    out = "  <var>\n    <id>%s</id>\n" % v["id"]
    sex = ' sex="%s"' % v["sex"] if v.get("sex") else ""
    out += '    <properties type="%s" scope="%s" data="%s"%s/>\n' % (
        v["type"], v["scope"], v["data"], sex)
    out += "    <name>%s</name>\n" % v["name"]
    if v.get("computes"):
        out += "    <method>\n"
        for condition, formula in v["computes"]:
            cond = ' if="%s"' % condition if condition else ""
            out += "      <compute%s>%s</compute>\n" % (cond, formula)
        out += "    </method>\n"
    if v["data"] == "list":
        out += "    <values>\n" + xml_list(v["items"], 6) + "    </values>\n"
    else:
        out += "    <values>\n" + xml_interval(*v["interval"], indent=6) + "    </values>\n"
        out += "    <unit>%s</unit>\n    <precision>%s</precision>\n" % (
            v["unit"], number_text(v["precision"]))
    if v["scope"] == "followed" and v["type"] != "age":
        out += ("    <xyref>\n      <xvar>%s</xvar>\n      <yvar>%s</yvar>\n"
                "    </xyref>\n" % (v.get("xvar", "AGE"), v["id"]))
    elif v["scope"] == "anamnestic" and v.get("xyref"):
        out += "    <xyref>\n      <avar>%s</avar>\n    </xyref>\n" % v["id"]
    return out + "  </var>\n"


def xml_graphlines():
    sd = [(number_text(z), t) for z, t in GRAPH_SD_LINES]
    pc = [(number_text(p), t) for p, t in GRAPH_PERCENTILE_LINES]
    return ("  <graphlines>\n    <sdslines>\n" + xml_list(sd, 6) + "    </sdslines>\n"
            + "    <percentilelines>\n" + xml_list(pc, 6) + "    </percentilelines>\n"
            + "  </graphlines>\n")


def column_label(z):
    if z == 0:
        return "median"
    return "%+g SD" % z


def percentile_list():
    items = [("%.12g" % percent_of(z), column_label(z)) for z in Z_COLUMNS]
    return "      <percentiles>\n" + xml_list(items, 8) + "      </percentiles>\n"


def line_text(row, div, normal):
    x = number_text(row["x"])
    if normal:
        body = "<x>%s</x><sd>%s</sd>" % (row["Mtext"], number_text(row["M"] * row["S"], 5))
    else:
        values, _ = column_values(row, Z_COLUMNS)
        body = "<perc>%s</perc>" % " ".join(number_text(v, 4) for v in values)
    return '      <line x="%s" div="%s">%s</line>\n' % (x, number_text(div), body)


def ref_text(name, sex, xyref, age, data_type, data_head, lines):
    out = "\n    <name>%s</name>\n" % name
    out += '    <sex sex="%s"/>\n' % sex
    out += "    <xyref>\n%s    </xyref>\n" % xyref
    if age is not None:
        out += "    <age>\n" + xml_interval(*age, indent=6) + "    </age>\n"
    out += '    <data type="%s">\n' % data_type + data_head + "".join(lines) + "    </data>\n  "
    return out


def check_capture(inner, name):
    size = len(inner.encode("cp1250")) + len(END_TAG)
    if size > CAPTURE_BYTES:
        sys.exit("reference %s: %d bytes do not fit the capture" % (name, size))
    return size


# ---------------------------------------------------------------- references

def age_range_text(lo, hi):
    return "%s-%s years" % (number_text(lo, 2), number_text(hi, 2))


def split_refs(seg, sex, sexword, rows):
    """The ref elements of one segment and sex, each within the budget."""
    normal = is_normal(rows)
    data_type = "sd" if normal else "percentiles"
    data_head = "" if normal else percentile_list()
    xyref = "      <xvar>AGE</xvar>\n      <yvar>%s</yvar>\n" % seg["var"]
    lines = [line_text(r, seg["div"], normal) for r in rows]
    years = [r["x"] / seg["div"] for r in rows]
    amin, min_closed, amax, max_closed = seg["age"]

    def build(first, last):
        lo = amin if first == 0 else years[first]
        hi = amax if last == len(rows) - 1 else years[last]
        lo_open = (not min_closed) if first == 0 else False
        hi_open = (not max_closed) if last == len(rows) - 1 else False
        name = "%s, %s, %s" % (seg["label"], sexword, age_range_text(lo, hi))
        return name, ref_text(name, sex, xyref, (lo, hi, lo_open, hi_open),
                              data_type, data_head, lines[first:last + 1])

    refs, first = [], 0
    while True:
        last = first + 1
        while last + 1 < len(rows) and len(build(first, last + 1)[1]) + len(END_TAG) <= REF_BUDGET_BYTES:
            last += 1
        name, text = build(first, last)
        check_capture(text, name)
        refs.append((name, text, last - first + 1))
        if last == len(rows) - 1:
            return refs
        first = last


def adult_height_refs(refdir):
    tables = read_table(os.path.join(refdir, ADULT_HEIGHT["file"]), ADULT_HEIGHT["xcol"])
    refs = []
    for sex, sexword in SEXES:
        row = [r for r in tables[sex] if r["x"] == ADULT_HEIGHT["month"]][0]
        name = "%s, %s" % (ADULT_HEIGHT["label"], sexword)
        head = "      <anamnestic><x>%s</x><sd>%s</sd></anamnestic>\n" % (
            row["Mtext"], number_text(row["M"] * row["S"], 5))
        xyref = "      <avar>%s</avar>\n" % ADULT_HEIGHT["var"]
        text = ref_text(name, sex, xyref, None, "sd", head, [])
        check_capture(text, name)
        refs.append((name, text, 1))
    return refs


def growth_refs(refdir, tolerance, report):
    refs = []
    for seg in SEGMENTS:
        tables = read_table(os.path.join(refdir, seg["file"]), seg["xcol"], seg.get("position"))
        for sex, sexword in SEXES:
            rows = segment_rows(tables[sex], seg)
            kept = [rows[i] for i in thin(rows, tolerance)]
            parts = split_refs(seg, sex, sexword, kept)
            report.append("%-40s %-6s %4d rows -> %4d lines in %d ref(s)" % (
                seg["label"], sexword, len(rows), len(kept), len(parts)))
            refs.extend(parts)
    return refs


def chart_rows(seg):
    """The table rows of a segment without the copies at its edges, x in years."""
    tables = read_table(os.path.join(chart_rows.refdir, seg["file"]), seg["xcol"], seg.get("position"))
    lo, hi = seg["rows"]
    out = {}
    for sex, _ in SEXES:
        out[sex] = [dict(r, years=r["x"] / seg["div"], div=seg["div"]) for r in tables[sex]
                    if lo <= r["x"] <= hi]
    return out


def chart_values(row, zs):
    return [lms_value(row["L"], row["M"], row["S"], z) for z in zs]


def chart_thin(rows, zs, tolerance):
    """Indices of the rows to keep, as `thin` does, judged in SD scores at
    the chart's own columns."""
    vals = [chart_values(r, zs) for r in rows]
    slopes = [[lms_slope(r["L"], r["M"], r["S"], z) for z in zs] for r in rows]

    def error(i, j, k):
        t = (rows[k]["years"] - rows[i]["years"]) / (rows[j]["years"] - rows[i]["years"])
        return max(abs(vals[i][c] + (vals[j][c] - vals[i][c]) * t - vals[k][c]) / slopes[k][c]
                   for c in range(len(zs)))

    keep, i = [0], 0
    while i < len(rows) - 1:
        j = i + 1
        while j + 1 < len(rows) and all(error(i, j + 1, k) <= tolerance for k in range(i + 1, j + 1)):
            j += 1
        keep.append(j)
        i = j
    return keep


def xml_variants(variants):
    def axe(tag, axis):
        lo, hi, step, small = axis
        out = '<%s from="%s" to="%s" step="%s"' % (tag, number_text(lo), number_text(hi), number_text(step))
        return out + (' small="%s"/>' % number_text(small) if small is not None else "/>")
    out = "    <granularity>\n"
    for x, y in variants:
        out += "      <variant>%s%s</variant>\n" % (axe("xaxe", x), axe("yaxe", y))
    return out + "    </granularity>\n  "


def chart_refs(refdir, report):
    chart_rows.refdir = refdir
    refs = []
    for chart in CHARTS:
        rows_by_seg = [chart_rows(SEGMENTS[i]) for i in chart["segments"]]
        for kind, kindword, lines in CHART_KINDS:
            zs = [v if kind == "SD" else NormalDist().inv_cdf(v / 100.0) for v, _ in lines]
            items = [("%.12g" % (percent_of(z) if kind == "SD" else v), text)
                     for (v, text), z in zip(lines, zs)]
            head = "      <percentiles>\n" + xml_list(items, 8) + "      </percentiles>\n"
            var = chart_id(chart["var"], kind)
            xyref = "      <xvar>CHART_AGE</xvar>\n      <yvar>%s</yvar>\n" % var
            for sex, sexword in SEXES:
                rows = sorted((r for seg in rows_by_seg for r in seg[sex]), key=lambda r: r["years"])
                lo, hi = SEGMENTS[chart["segments"][0]]["age"][0], SEGMENTS[chart["segments"][-1]]["age"][2]
                name = "%s chart (%s), %s, %s" % (chart["name"], kindword, sexword, age_range_text(lo, hi))
                tolerance = CHART_TOLERANCE
                while True:
                    kept = [rows[i] for i in chart_thin(rows, zs, tolerance)]
                    body = "".join('      <line x="%s" div="%s"><perc>%s</perc></line>\n' % (
                        number_text(r["x"]), number_text(r["div"]),
                        " ".join(number_text(v, 3) for v in chart_values(r, zs))) for r in kept)
                    text = ref_text(name, sex, xyref, (lo, hi, False, False), "percentiles", head, [body])
                    text = text[:-2] + xml_variants(chart["variants"])
                    if len(text) + len(END_TAG) <= REF_BUDGET_BYTES:
                        break
                    tolerance *= 1.5
                check_capture(text, name)
                report.append("%-40s %-6s %4d rows -> %4d lines, tolerance %.4f SD" % (
                    "chart %s (%s)" % (chart["name"], kindword), sexword, len(rows), len(kept), tolerance))
                refs.append((name, text, len(kept)))
    return refs



# ---------------------------------------------------------------- texts

# The report texts, as a clinic writes them: a growth summary, the table of
# visits, puberty by sex, and the target height that both the summary and
# the table insert. Conditions can't hold '<' or '>' inside an XML tag, so
# comparisons use the keywords LT, GT, LTEQ and GTEQ.
TEXTS = [
    """
    <id>growth_summary</id>
    <toc><title>Growth summary</title><meta>Last measurements with SD scores and percentiles, and the target height from the parents.</meta></toc>
    <h1>Growth summary</h1>
    <p>The values below are those of the last visit at which the height was measured, at the age of <value var="LAST_AGE"/>. SD scores and percentiles refer to the WHO Child Growth Standards up to 5 years and to the WHO Growth Reference 2007 from 5 to 19 years.</p>
    <h2>Height</h2>
    <p>Height <b><value var="LAST_HEIGHT"/></b>: <value var="LAST_HEIGHT_SD"/>, percentile <value var="LAST_HEIGHT_P"/>.</p>
    <h2>Weight and body mass index</h2>
    <p>Weight <b><value var="LAST_WEIGHT"/></b>; body mass index <b><value var="LAST_BMI"/></b>: <value var="LAST_BMI_SD"/>, percentile <value var="LAST_BMI_P"/>.</p>
    <p if="LAST_AGE LT 10">Weight for age: <value var="LAST_WEIGHT_SD"/>, percentile <value var="LAST_WEIGHT_P"/>.</p>
    <p if="LAST_AGE GTEQ 10">Weight for age has no reference beyond 10 years; the body mass index above takes its place.</p>
    <p if="AGE_TODAY LT 2">Under two years of age, head circumference is measured at every visit; it is listed with the visits.</p>
    <insert ref="target_height"/>
    <p if="FEMALE AND AGE_TODAY GTEQ 8">From the age of 8 years, breast development and pubic hair are staged at every visit (<link target="puberty_girls"/>).</p>
    <p if="MALE AND AGE_TODAY GTEQ 9">From the age of 9 years, testicular volume and pubic hair are recorded at every visit (<link target="puberty_boys"/>).</p>
    <p>All measurements, visit by visit, are in the table of visits (<link target="visit_table"/>).</p>
    <p>The measurements on growth charts, with the SD scores of the last visits: <link target="growth_charts"/>.</p>
    <hr/>
    <p><i>Computed by the growth engine from the recorded measurements. Please check unusual values against the measurement record.</i></p>
    """,
    """
    <id>visit_table</id>
    <toc><title>Visits</title><meta>Every visit with height, weight and body mass index, their SD scores and percentiles.</meta></toc>
    <h1>Visits</h1>
    <p>One row per visit with a measured height or weight. SD scores and percentiles are empty where no reference covers the age.</p>
    <table mode="normal">
     <column type="date" format="%d.%m.%Y" header="Date"/>
     <column type="values" method="HEIGHT:AGE" precision="0.01" header="Age (years)"/>
     <column type="values" method="HEIGHT" precision="0.1" header="Height (cm)"/>
     <column type="values" method="HEIGHT_SD" precision="sd" header="Height SD"/>
     <column type="values" method="HEIGHT_P" precision="percentiles" header="Height P"/>
     <column type="separator"/>
     <column type="values" method="WEIGHT" precision="0.01" header="Weight (kg)"/>
     <column type="values" method="BMI" precision="0.1" header="BMI (kg/m2)"/>
     <column type="values" method="BMI_SD" precision="sd" header="BMI SD"/>
     <column type="values" method="BMI_P" precision="percentiles" header="BMI P"/>
    </table>
    <h2>Growth rate</h2>
    <p>Height velocity between two visits with a measured height, in centimetres per year.</p>
    <table mode="inverted">
     <column type="date" format="%d.%m.%Y" header="Date"/>
     <column type="values" method="HEIGHT" precision="0.1" header="Height (cm)"/>
     <column type="values" method="HEIGHT_VEL" precision="0.1" header="Velocity (cm/year)"/>
    </table>
    <insert ref="target_height"/>
    <p>Back to the growth summary (<link target="growth_summary"/>).</p>
    """,
    """
    <id>growth_charts</id>
    <toc><title>Growth charts</title><meta>Height, weight, body mass index and head circumference for age on the WHO percentiles, and the SD scores of the last visits.</meta></toc>
    <h1>Growth charts</h1>
    <p>The child's measurements on the percentiles P3, P10, P25, P50, P75, P90 and P97 of the WHO Child Growth Standards (to 5 years) and the WHO Growth Reference 2007 (5 to 19 years); the narrow strip under a chart shows the SD scores. The same charts with SD lines are on another page (<link target="growth_charts_sd"/>).</p>
    GRAPHS_P
    <h2>SD scores at the last visits</h2>
    <p>Each bar runs from the mean (0) to the SD score of that visit.</p>
    <auxogram>
     <caption>SD scores at the last four visits</caption>
     <auxogramline var="HEIGHT" method="HEIGHT_SD:LAST_VISIT[4]"/>
     <auxogramline var="WEIGHT" method="WEIGHT_SD:LAST_VISIT[4]"/>
     <auxogramline var="BMI_CHART_P" method="BMI_SD:LAST_VISIT[4]"/>
     <auxogramline var="FOH" method="FOH_SD:LAST_VISIT[4]"/>
    </auxogram>
    <p>Back to the growth summary (<link target="growth_summary"/>).</p>
    """,
    """
    <id>growth_charts_sd</id>
    <toc><title>Growth charts (SD lines)</title><meta>The growth charts with the lines at -3 to +3 SD, and the height velocity.</meta></toc>
    <h1>Growth charts with SD lines</h1>
    <p>The child's measurements on the lines at -3, -2, -1, 0, +1, +2 and +3 SD of the WHO references.</p>
    GRAPHS_SD
    <h2>Height velocity</h2>
    <p>Growth between two visits with a measured height, in centimetres per year, from the age of 2 years.</p>
    <graph>
     <caption>Height velocity</caption>
     <block var="HEIGHT_VEL" priority="100"><refdata/><plot method="HEIGHT_VEL:AGE_ABOVEOR[2]" connect="yes"/></block>
    </graph>
    <p>The charts with percentiles (<link target="growth_charts"/>).</p>
    """,
    """
    <id>target_height</id>
    <toc><meta>Inserted into the summary and the table of visits.</meta></toc>
    <h2>Target height</h2>
    <p>Father <value var="FATHER_HT"/>, mother <value var="MOTHER_HT"/>. The mid-parental target height is <b><value var="TARGET_HT"/></b> (<value var="TARGET_HT_SD"/> of adult height at 19 years); most children reach an adult height within 8.5 cm of it.</p>
    """,
    """
    <id>puberty_girls</id>
    <toc><if>FEMALE AND AGE_TODAY GTEQ 8</if><title>Puberty (girls)</title><meta>Tanner stages of breast development and pubic hair.</meta></toc>
    <h1>Puberty</h1>
    <p>Tanner stages at each visit: breast development (M1 to M5) and pubic hair (PH1 to PH5). Stage 2 of breast development marks the onset of puberty.</p>
    <table mode="inverted">
     <column type="date" format="%d.%m.%Y" header="Date"/>
     <column type="values" method="HEIGHT:AGE" precision="0.1" header="Age (years)"/>
     <column type="values" method="TANNER_M" precision="1" header="Breast (M)"/>
     <column type="values" method="TANNER_PH" precision="1" header="Pubic hair (PH)"/>
    </table>
    <p>The last measurements with their SD scores are in the growth summary (<link target="growth_summary"/>).</p>
    """,
    """
    <id>puberty_boys</id>
    <toc><if>MALE AND AGE_TODAY GTEQ 9</if><title>Puberty (boys)</title><meta>Testicular volume and Tanner stages of pubic hair.</meta></toc>
    <h1>Puberty</h1>
    <p>Testicular volume (orchidometer, ml) and pubic hair stage (PH1 to PH5) at each visit. A volume of 4 ml or more marks the onset of puberty.</p>
    <table mode="inverted">
     <column type="date" format="%d.%m.%Y" header="Date"/>
     <column type="values" method="HEIGHT:AGE" precision="0.1" header="Age (years)"/>
     <column type="values" method="TEST_VOLUME" precision="1" header="Testes (ml)"/>
     <column type="values" method="TANNER_PH" precision="1" header="Pubic hair (PH)"/>
    </table>
    <p>The last measurements with their SD scores are in the growth summary (<link target="growth_summary"/>).</p>
    """,
]


# The charts of the two chart texts; KIND is P or SD, WHAT the words for the
# reference lines. The height chart shows the target height range from the
# parents once the chart reaches adult heights (the child's last height after
# 10 years); the narrow strips under height and BMI show the SD scores. The
# headings of weight and head circumference stand only over a chart: a child
# first seen after 10 years has no weight for age. An
# SD strip has no reference, but it gets an empty refdata all the same: the
# binary form always stores one, and the two forms must read back alike.
CHART_GRAPHS = """
    <h2>Height</h2>
    <graph if="LAST_AGE LTEQ 10">
     <caption>Height for age (WHAT)</caption>
     <block var="HEIGHT_CHART_KIND" priority="100"><refdata show="yes"/><plot method="HEIGHT" connect="yes"/></block>
     <block var="HEIGHT_SD" priority="50" analysed="sd"><refdata/><plot method="HEIGHT_SD" connect="yes"/></block>
    </graph>
    <graph if="LAST_AGE GT 10">
     <caption>Height for age (WHAT) with the target height from the parents</caption>
     <block var="HEIGHT_CHART_KIND" priority="100">
      <refdata show="yes"/>
      <plot method="HEIGHT" connect="yes"/>
      <targetpoint name="Target" method="TARGET_HT"/>
      <targetrange><targetpoint name="-8.5" method="TARGET_HT-8.5"/><targetpoint name="+8.5" method="TARGET_HT+8.5"/></targetrange>
     </block>
     <block var="HEIGHT_SD" priority="50" analysed="sd"><refdata/><plot method="HEIGHT_SD" connect="yes"/></block>
    </graph>
    <h2 if="WEIGHT:AGE_BELOWOR[10]:N GT 0">Weight</h2>
    <graph>
     <caption>Weight for age (WHAT), to 10 years</caption>
     <block var="WEIGHT_CHART_KIND" priority="100"><refdata show="yes"/><plot method="WEIGHT:AGE_BELOWOR[10]" connect="yes"/></block>
    </graph>
    <h2>Body mass index</h2>
    <graph>
     <caption>BMI for age (WHAT)</caption>
     <block var="BMI_CHART_KIND" priority="100"><refdata show="yes"/><plot method="BMI" connect="yes"/></block>
     <block var="BMI_SD" priority="50" analysed="sd"><refdata/><plot method="BMI_SD" connect="yes"/></block>
    </graph>
    <h2 if="FOH:AGE_BELOWOR[5]:N GT 0">Head circumference</h2>
    <graph>
     <caption>Head circumference for age (WHAT), to 5 years</caption>
     <block var="FOH_CHART_KIND" priority="100"><refdata show="yes"/><plot method="FOH:AGE_BELOWOR[5]" connect="yes"/></block>
    </graph>
"""


def chart_graphs(kind, what):
    return CHART_GRAPHS.replace("KIND", kind).replace("WHAT", what).strip()


TEXTS = [t.replace("GRAPHS_P", chart_graphs("P", "percentiles"))
          .replace("GRAPHS_SD", chart_graphs("SD", "SD lines")) for t in TEXTS]


def xml_texts():
    out = ""
    for inner in TEXTS:
        lines = [line.strip() for line in inner.strip().splitlines()]
        body = "\n".join("    " + line for line in lines)
        text = "\n" + body + "\n  "
        if len(text.encode("cp1250")) + len("</text>") > CAPTURE_BYTES:
            sys.exit("a text does not fit the capture")
        out += "  <text>" + text + "</text>\n"
    return out


# ---------------------------------------------------------------- file

HEADER = """<?xml version='1.0' encoding="Windows-1250" standalone="no"?>
<!DOCTYPE quorl SYSTEM "quorl.dtd">
<!-- Generated by tools/make_sample_knowledge.py from the WHO LMS tables. Do not edit by hand: change the script and run it again. -->
<quorl>
  <info>
    <filename>samples/knowledge.xml</filename>
    <copyright>Sample knowledge file. Growth references: WHO Child Growth Standards 2006 and WHO Growth Reference 2007, World Health Organization.</copyright>
  </info>
"""


def make_file(refdir, tolerance, report):
    text = HEADER + xml_graphlines()
    text += "".join(xml_variable(v) for v in VARIABLES)
    refs = growth_refs(refdir, tolerance, report) + adult_height_refs(refdir) + chart_refs(refdir, report)
    largest = 0
    for name, inner, _ in refs:
        largest = max(largest, len(inner.encode("cp1250")) + len(END_TAG))
        text += "  <ref>" + inner + END_TAG + "\n"
    text += xml_texts()
    report.append("%d variables, %d ref elements, largest ref %d of %d capture bytes, %d texts" % (
        len(VARIABLES), len(refs), largest, CAPTURE_BYTES, len(TEXTS)))
    return text + "</quorl>\n"


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--refs", default=os.path.join(root, "..", "shared", "data", "references"))
    parser.add_argument("--out", default=os.path.join(root, "samples", "knowledge.xml"))
    parser.add_argument("--tolerance", type=float, default=0.001)
    args = parser.parse_args()
    if not os.path.isdir(args.refs):
        sys.exit("no LMS tables at %s (give --refs DIR)" % args.refs)
    report = []
    text = make_file(args.refs, args.tolerance, report)
    with open(args.out, "w", encoding="cp1250", newline="\n") as handle:
        handle.write(text)
    for line in report:
        print(line)
    print("wrote %s (%d bytes)" % (args.out, len(text.encode("cp1250"))))


if __name__ == "__main__":
    main()
