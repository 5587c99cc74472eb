#!/usr/bin/env bash
# Run by `make demo` after the build: exports the sample database with the
# exporter, shows SD scores and percentiles of a few probands with
# `auxtool calc`, and writes report pages with `auxtool report`. The samples are Windows-1250 bytes; they are shown in
# UTF-8 when iconv is there.
set -euo pipefail
cd "$(dirname "$0")/.."

bin=${AUX_BIN_DIR:-build/bin}
knowledge=samples/knowledge.xml
database=samples/probands.xml
today=1.6.2024
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

show() {
  if command -v iconv > /dev/null; then iconv -f WINDOWS-1250 -t UTF-8; else cat; fi
}

# The first n lines; unlike head it reads to the end, so that no program
# before it in the pipe dies of a closed pipe.
first() {
  awk -v n="$1" 'NR <= n'
}

# The head line and the rows of one proband; the pattern is matched on bytes,
# '.' standing for an accented letter.
rows_of() {
  LC_ALL=C grep -E "^(name,|$1,)"
}

echo "== $bin/exporter $knowledge $database $out/result.txt"
"$bin/exporter" "$knowledge" "$database" "$out/result.txt"
echo
echo "== the first two result records (cut at 300 bytes)"
sed 's/]}|||/]}|||\n/g' "$out/result.txt" | first 2 | cut -c 1-300 | show
echo

formulas=(HEIGHT HEIGHT:SD HEIGHT:P WEIGHT BMI BMI:SD BMI:P HEIGHT_VEL)
echo "== auxtool calc ${formulas[*]} (a short girl followed to puberty)"
"$bin/auxtool" calc "$knowledge" "$database" "${formulas[@]}" --today "$today" \
  | rows_of "Dvo..kov. Tereza" | show
echo

echo "== auxtool calc HEIGHT:SD WEIGHT:SD FOH:SD FOH:P for a premature boy in his first years"
"$bin/auxtool" calc "$knowledge" "$database" HEIGHT:SD WEIGHT:SD FOH:SD FOH:P --today "$today" \
  | rows_of "Bla.ek Petr" | first 10 | show
echo

echo "== auxtool calc: mid-parental target height and its SD score, latest height SD score"
"$bin/auxtool" calc "$knowledge" "$database" TARGET_HT TARGET_HT_SD HEIGHT:LAST_DEFINED:SD:AVG --today "$today" \
  | first 11 | show
echo

# Report pages stay after the demo, for a browser: the growth summary, the
# visits and the growth charts of a boy and of a girl, with the sample page
# templates. Each page has a folder of its own, with its graph images beside
# it: the names of graph files that two runs make in the same second may be
# the same.
pages=${AUX_DEMO_DIR:-build/demo}
girl=$(printf 'Urbanov\xe1 Nela')  # the name as stored, in Windows-1250
for who in "Svoboda Martin:boy" "$girl:girl"; do
  for text in growth_summary visit_table growth_charts growth_charts_sd; do
    folder="$pages/${who##*:}-$text"
    rm -rf "$folder"
    mkdir -p "$folder"
    "$bin/auxtool" report "$knowledge" "$database" "${who%:*}" "$text" \
      --setup samples/setup.txt --today "$today" --out "$folder/index.html"
    images=$(find "$folder" -name '*.bmp' -o -name '*.svg' | wc -l)
    echo "== auxtool report ... \"${who%:*}\" $text: $folder/index.html, $images graph images" | show
  done
done
