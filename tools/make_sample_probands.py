#!/usr/bin/env python3
"""Generate the sample database samples/probands.xml.

Usage:
    python3 tools/make_sample_probands.py [--refs DIR] [--out FILE] [--seed S]

    --refs DIR   folder with the public LMS tables; default
                 ../shared/data/references, relative to the repository root
    --out FILE   the database to write; default samples/probands.xml
    --seed S     seed of the random generator; default 1250

Every proband is invented: Czech names and comments (Windows-1250 bytes),
dates of birth from 2004 to 2014, visits dated from the first weeks of life
or from a later referral to adolescence. Each child keeps its own SD scores
of height, BMI and head circumference, which drift slowly from the values
at birth towards what the parents' heights suggest, with a little noise per
visit and an earlier or later puberty; the measurements are the values that
the WHO references (the same tables as the sample knowledge file) give at
those SD scores. Older children have Tanner stages, testicular volumes,
bone ages, arm spans and skinfolds as a growth clinic would record them.
The same seed and tables give the same file.
"""

import argparse
import datetime
import math
import os
import random
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import make_sample_knowledge as knowledge  # noqa: E402

LAST_VISIT_DATE = datetime.date(2024, 5, 31)

# Name, sex, a word on why the child is followed, clinical picture.
PROBANDS = [
    ("Novák Jan", "male", "Sledování růstu", "normal"),
    ("Dvořáková Tereza", "female", "Malý vzrůst, sledování", "short"),
    ("Černý Jiří", "male", "Konstituční opoždění růstu", "late"),
    ("Šťastná Lucie", "female", "Předčasná puberta", "early"),
    ("Kříž Ondřej", "male", "Obezita", "obese"),
    ("Růžičková Eliška", "female", "Nedonošená, 34. týden", "small_birth"),
    ("Procházka Matěj", "male", "Vysoký vzrůst", "tall"),
    ("Veselý Tomáš", "male", "Sledování růstu", "normal"),
    ("Horáková Adéla", "female", "Nízká hmotnost", "thin"),
    ("Němec Vojtěch", "male", "Malý vzrůst, hormon růstu", "short"),
    ("Pokorná Kateřina", "female", "Sledování růstu", "normal"),
    ("Marek Štěpán", "male", "Makrocefalie, familiární", "big_head"),
    ("Pospíšilová Anežka", "female", "Obezita", "obese"),
    ("Hájek Lukáš", "male", "Sledování růstu", "normal"),
    ("Jelínková Barbora", "female", "Vysoký vzrůst", "tall"),
    ("Král Dominik", "male", "Opožděná puberta", "late"),
    ("Benešová Klára", "female", "Sledování růstu", "normal"),
    ("Fiala Jakub", "male", "Malý vzrůst", "short"),
    ("Sedláčková Natálie", "female", "Celiakie, dieta", "thin"),
    ("Doležal Filip", "male", "Sledování růstu", "normal"),
    ("Zemanová Karolína", "female", "Předčasná puberta", "early"),
    ("Kolář Adam", "male", "Nadváha", "obese"),
    ("Navrátilová Zuzana", "female", "Malý vzrůst, Turnerův syndrom vyloučen", "short"),
    ("Čermák Vít", "male", "Sledování růstu", "normal"),
    ("Vaněk Šimon", "male", "Mikrocefalie, sledování", "small_head"),
    ("Urbanová Nela", "female", "Sledování růstu", "normal"),
    ("Blažek Petr", "male", "Nedonošený, 32. týden", "small_birth"),
    ("Kratochvílová Markéta", "female", "Opožděná puberta", "late"),
    ("Kovář David", "male", "Vysoký vzrůst, rodinný", "tall"),
    ("Bartošová Ema", "female", "Sledování růstu", "normal"),
    ("Svoboda Martin", "male", "Hypotyreóza, léčená", "short"),
    ("Novotná Simona", "female", "Sledování růstu", "normal"),
]

# Per picture: height SD at birth and drift target offset, BMI SD, head SD,
# puberty tempo in years (negative: early), parents' height offsets in cm.
PICTURES = {
    "normal": dict(ht=0.0, bmi=0.0, head=0.0, tempo=0.0, parents=0),
    "short": dict(ht=-1.0, bmi=-0.3, head=-0.5, tempo=0.5, parents=-10, target=-2.3),
    "tall": dict(ht=0.8, bmi=0.0, head=0.5, tempo=-0.3, parents=10, target=2.2),
    "late": dict(ht=-0.3, bmi=-0.3, head=0.0, tempo=2.0, parents=0, target=-0.8),
    "early": dict(ht=0.3, bmi=0.5, head=0.0, tempo=-2.2, parents=0, target=0.9),
    "obese": dict(ht=0.3, bmi=2.4, head=0.2, tempo=-0.7, parents=0),
    "thin": dict(ht=-0.5, bmi=-2.2, head=-0.3, tempo=0.8, parents=-3),
    "small_birth": dict(ht=-2.0, bmi=-1.5, head=-1.6, tempo=0.0, parents=0),
    "big_head": dict(ht=0.5, bmi=0.2, head=2.6, tempo=0.0, parents=5),
    "small_head": dict(ht=-0.8, bmi=-0.4, head=-2.4, tempo=0.3, parents=0),
}

# Visit comments by the age from which they fit.
VISIT_COMMENTS = [
    (0.0, ["Prospívá", "Bez obtíží", "Očkování", "Po nachlazení", "Kojen"]),
    (2.0, ["Chodí do školky", "Bez obtíží", "Po angíně", "Horší chuť k jídlu", "Prospívá"]),
    (6.0, ["Sport 3x týdně", "Bez obtíží", "Kontrola za rok", "Po angíně",
           "Rodiče spokojeni", "Nová dieta", "Kontrola za půl roku"]),
]
INFANT_AGES = [0.02, 0.1, 0.25, 0.5, 0.75, 1.0, 1.5, 2.0]
PRADER_BEADS = [1, 2, 3, 4, 5, 6, 8, 10, 12, 15, 20, 25]


class References:
    """L, M, S of a variable by sex and age, from the knowledge file's tables."""

    def __init__(self, refdir):
        self.refdir = refdir
        self.rows = {}

    def segment_rows(self, seg, sex):
        key = (seg["file"], seg.get("position"), sex)
        if key not in self.rows:
            tables = knowledge.read_table(os.path.join(self.refdir, seg["file"]),
                                          seg["xcol"], seg.get("position"))
            self.rows[key] = knowledge.segment_rows(tables[sex], seg)
        return self.rows[key]

    def value(self, var, sex, age, z):
        for seg in knowledge.SEGMENTS:
            lo, _, hi, _ = seg["age"]
            if seg["var"] == var and lo <= age <= hi:
                rows = self.segment_rows(seg, sex)
                x = min(max(age * seg["div"], rows[0]["x"]), rows[-1]["x"])
                for a, b in zip(rows, rows[1:]):
                    if a["x"] <= x <= b["x"]:
                        t = (x - a["x"]) / (b["x"] - a["x"])
                        lms = [a[k] + (b[k] - a[k]) * t for k in ("L", "M", "S")]
                        return knowledge.lms_value(*lms, z)
        return None


def adult_z(refs, sex, height):
    mean = refs.value("HEIGHT", sex, 19.0, 0.0)
    return (height - mean) / (refs.value("HEIGHT", sex, 19.0, 1.0) - mean)


def visit_ages(rng, picture, start, end):
    """Infant check-ups, then yearly visits; half-yearly ones in puberty for
    the children whose puberty or height is the question."""
    ages = [a for a in INFANT_AGES if start <= a <= min(end, 2.0)]
    closer = picture in ("short", "late", "early", "small_birth")
    age = 3.0 if ages else start
    while age <= end:
        ages.append(round(age + rng.uniform(-0.06, 0.06), 3))
        age += 0.5 if closer and 9.0 <= age < 14.0 else 1.0
    return ages


def puberty_shift(age, tempo, sex):
    """SD of height gained or lost for an early or late puberty at `age`."""
    centre = 11.5 if sex == "female" else 13.0
    return -0.45 * math.tanh(tempo) * math.exp(-((age - centre) / 2.0) ** 2)


def tanner_stage(age, onset):
    if age < onset:
        return 1
    return min(5, 2 + int((age - onset) / 0.9))


def testicular_volume(age, onset):
    if age < onset:
        return 2 if age < 6 else 3
    grown = 4 + (age - onset) * 5.5
    return max(b for b in PRADER_BEADS if b <= min(grown, 25))


class Child:
    def __init__(self, rng, refs, entry, index):
        self.name, self.sex, self.comment, picture = entry
        self.picture = PICTURES[picture]
        self.picture_name = picture
        self.rng, self.refs, self.index = rng, refs, index
        p = self.picture
        self.father = round(rng.gauss(180 + p["parents"], 5), 1)
        self.mother = round(rng.gauss(167 + p["parents"] * 0.8, 4.5), 1)
        mid = (self.father + self.mother + (13 if self.sex == "male" else -13)) / 2
        self.target = p.get("target", 0.7 * adult_z(refs, self.sex, mid))
        self.ht_birth = p["ht"] + rng.gauss(0, 0.4)
        self.bmi_z = p["bmi"] + rng.gauss(0, 0.3)
        self.head_z = p["head"] + rng.gauss(0, 0.3)
        self.tempo = p["tempo"] + rng.gauss(0, 0.4)
        self.onset = (10.3 if self.sex == "female" else 11.6) + self.tempo
        infant = rng.random() < 0.55 or picture in ("small_birth", "big_head", "small_head")
        self.start = 0.02 if infant else round(rng.uniform(3.0, 11.0), 1)
        self.end = min(17.5, self.start + rng.uniform(6.0, 15.0))
        if picture in ("short", "tall", "late", "early"):
            self.end = max(self.end, 15.0)  # followed through puberty
        born_latest = LAST_VISIT_DATE - datetime.timedelta(days=int(self.end * 365.25) + 10)
        self.dob = datetime.date(2004, 1, 1) + datetime.timedelta(
            days=rng.randrange(0, max(1, (born_latest - datetime.date(2004, 1, 1)).days)))

    def height_z(self, age):
        settle = self.target + (self.ht_birth - self.target) * math.exp(-age / 1.5)
        return settle + puberty_shift(age, self.tempo, self.sex) + self.rng.gauss(0, 0.08)

    def visit(self, age):
        rng, refs, sex = self.rng, self.refs, self.sex
        height = refs.value("HEIGHT", sex, age, self.height_z(age))
        bmi = refs.value("BMI", sex, age, self.bmi_z + rng.gauss(0, 0.12))
        weight = bmi * (height / 100) ** 2
        vals = [("HEIGHT", "%.1f" % height),
                ("WEIGHT", "%.2f" % weight if age < 2 else "%.1f" % weight)]
        if age < 5:
            vals.append(("FOH", "%.1f" % refs.value("FOH", sex, age, self.head_z + rng.gauss(0, 0.1))))
        if age >= 6 and rng.random() < 0.4:
            vals.append(("BONE_AGE", "%.1f" % max(1.0, age - 0.6 * self.tempo + rng.gauss(0, 0.4))))
        if age >= 6 and rng.random() < 0.3:
            vals.append(("MAC", "%.1f" % (height * rng.uniform(0.99, 1.04))))
        if age >= 3 and rng.random() < 0.35:
            fat = math.exp(0.35 * self.bmi_z)
            for var, base in (("TST", 9.0), ("SSST", 6.0), ("SIST", 6.5)):
                vals.append((var, "%.1f" % (base * fat * rng.uniform(0.85, 1.15))))
        if age >= 8:
            vals.append(("TANNER_PH", str(tanner_stage(age, self.onset + 0.4))))
            if sex == "female":
                vals.append(("TANNER_M", str(tanner_stage(age, self.onset))))
            else:
                vals.append(("TEST_VOLUME", str(testicular_volume(age, self.onset))))
        return vals

    def anamnesis(self, last_age):
        vals = [("FATHER_HT", "%.1f" % self.father), ("MOTHER_HT", "%.1f" % self.mother)]
        if self.rng.random() < 0.5:
            vals.append(("FATHER_HC", "%.1f" % self.rng.gauss(57.5, 1.4)))
            vals.append(("MOTHER_HC", "%.1f" % self.rng.gauss(55.0, 1.3)))
        menarche = self.onset + 2.3 + self.rng.gauss(0, 0.3)
        if self.sex == "female" and menarche <= last_age:
            vals.append(("MENARCHE", "%.1f" % menarche))
        return vals

    def xml(self):
        ages = visit_ages(self.rng, self.picture_name, self.start, self.end)
        dob = date_text(self.dob)
        out = ["  <p_record>\n    <p_name>%s</p_name>\n    <p_comment>%s</p_comment>\n"
               "    <proband>\n      <info id=\"P%03d\" dob=\"%s\" sex=\"%s\" />\n      <data>\n"
               % (self.name, self.comment, self.index, dob, self.sex)]
        for var, text in self.anamnesis(ages[-1]):
            out.append('        <val var="%s">%s</val>\n' % (var, text))
        for age in ages:
            date = self.dob + datetime.timedelta(days=round(age * 365.25))
            pool = [texts for since, texts in VISIT_COMMENTS if age >= since][-1]
            comment = self.rng.choice(pool) if self.rng.random() < 0.6 else ""
            attr = ' comment="%s"' % comment if comment else ""
            out.append('        <record date="%s"%s>\n' % (date_text(date), attr))
            for var, text in self.visit(age):
                out.append('          <val var="%s">%s</val>\n' % (var, text))
            out.append("        </record>\n")
        out.append("      </data>\n    </proband>\n  </p_record>\n")
        return "".join(out)


def date_text(date):
    return "%d.%d.%d" % (date.day, date.month, date.year)


HEADER = """<?xml version='1.0' encoding="Windows-1250" standalone="no"?>
<!DOCTYPE p_database SYSTEM "proband.dtd">
<!-- Invented probands, generated by tools/make_sample_probands.py. Do not edit by hand. -->
<p_database>
"""


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--refs", default=os.path.join(root, "..", "shared", "data", "references"))
    parser.add_argument("--out", default=os.path.join(root, "samples", "probands.xml"))
    parser.add_argument("--seed", type=int, default=1250)
    args = parser.parse_args()
    if not os.path.isdir(args.refs):
        sys.exit("no LMS tables at %s (give --refs DIR)" % args.refs)
    rng = random.Random(args.seed)
    refs = References(args.refs)
    records = [Child(rng, refs, entry, i + 1).xml() for i, entry in enumerate(PROBANDS)]
    for entry, text in zip(PROBANDS, records):
        if len(text.encode("cp1250")) > knowledge.CAPTURE_BYTES - 1000:
            sys.exit("record of %s is too long for the capture" % entry[0])
    text = HEADER + "".join(records) + "</p_database>\n"
    with open(args.out, "w", encoding="cp1250", newline="\n") as handle:
        handle.write(text)
    print("wrote %s: %d probands, %d visits, %d bytes" % (
        args.out, len(records), text.count("<record "), len(text.encode("cp1250"))))


if __name__ == "__main__":
    main()
