#!/usr/bin/env bash
# Makes the seed corpora of the fuzz targets from the test fixtures, the
# samples and the small hand-made seeds under fuzz/seeds:
#   make_corpus.sh SOURCE_DIR AUXTOOL CORPUS_DIR
# One directory per target under CORPUS_DIR, made afresh on every run. The
# binary forms come from the XML ones through `auxtool convert`. The large
# samples are cut into smaller files that still load, so that every seed
# fits the targets' input limit.
set -euo pipefail
src=$1
auxtool=$2
out=$3

rm -rf "$out"
for target in xml_parser knowledge_xml knowledge_binary database_xml database_xml_plain database_binary formula objectlist \
    setup_reader query_parser text_paragraph conversion import_list page_walker server_request; do
  mkdir -p "$out/$target"
done

# Hand-made seeds, and every XML fixture for the parser itself.
for dir in "$src"/fuzz/seeds/*/; do
  cp "$dir"* "$out/$(basename "$dir")/"
done
n=0
for f in "$src"/tests/data/*/*.xml; do
  n=$((n + 1))
  cp "$f" "$out/xml_parser/fixture-$n.xml"
done

# Knowledge files: the fixtures, and the sample cut into its head
# (information, lines and variables) with one reference each.
for f in "$src"/tests/data/*/*.xml; do
  if grep -q '<quorl>' "$f"; then cp "$f" "$out/knowledge_xml/$(basename "$(dirname "$f")")-$(basename "$f")"; fi
done
sample=$src/samples/knowledge.xml
head_end=$(grep -n '^  <ref>' "$sample" | head -n 1 | cut -d: -f1)
head -n $((head_end - 1)) "$sample" > "$out/head.tmp"
awk -v dir="$out/knowledge_xml" -v head="$out/head.tmp" '
  /^  <ref>/ { n++; file = dir "/sample-ref-" n ".xml"; while ((getline line < head) > 0) print line > file; close(head) }
  file != "" { print > file }
  /^  <\/ref>/ { print "</quorl>" > file; close(file); file = "" }
' "$sample"
{ cat "$out/head.tmp"; echo "</quorl>"; } > "$out/knowledge_xml/sample-variables.xml"
rm "$out/head.tmp"

# Auxograms: the hand-made seed with one fault each; the binary faults
# follow the conversion below.
aux=$src/fuzz/seeds/knowledge_xml/auxogram.xml
aux_caption='<caption>Height and weight in SD</caption>'
sed "s|$aux_caption||" "$aux" > "$out/knowledge_xml/auxogram-no-caption.xml"
sed "s|$aux_caption|<caption> </caption>|" "$aux" > "$out/knowledge_xml/auxogram-blank-caption.xml"
sed '/<auxogramline/d' "$aux" > "$out/knowledge_xml/auxogram-no-lines.xml"
sed 's|var="WT_SDS" method="WT_SDS"/>|var="NOPE" method="WT_SDS"/>|' "$aux" > "$out/knowledge_xml/auxogram-unknown-var.xml"
sed 's|method="HEIGHT:SD"|method="NOPE:SD"|' "$aux" > "$out/knowledge_xml/auxogram-unknown-method.xml"
sed 's|<auxogramline var="HEIGHT" method="HEIGHT:SD"/>|<auxogramline var="HEIGHT"/>|' "$aux" \
  > "$out/knowledge_xml/auxogram-no-method.xml"

for f in "$out"/knowledge_xml/*; do
  "$auxtool" convert knowledge "$f" "$out/knowledge_binary/$(basename "$f" .xml).bin" --to bin > /dev/null 2>&1 || true
done

# The binary auxogram seed with its line count (behind the caption) set to
# 0 and to one more than stored, and with another type byte on its first
# line.
aux_bin=$out/knowledge_binary/auxogram.bin
if [ -f "$aux_bin" ]; then
  head_bytes='(Height and weight in SD\x02)'
  LC_ALL=C perl -0777 -pe "s/$head_bytes\x03\x00\x00\x00/\${1}\x00\x00\x00\x00/" "$aux_bin" \
    > "$out/knowledge_binary/auxogram-no-lines.bin"
  LC_ALL=C perl -0777 -pe "s/$head_bytes\x03/\${1}\x04/" "$aux_bin" > "$out/knowledge_binary/auxogram-line-missing.bin"
  LC_ALL=C perl -0777 -pe "s/$head_bytes(\x03\x00\x00\x00)\x41/\${1}\${2}\x40/" "$aux_bin" \
    > "$out/knowledge_binary/auxogram-wrong-line-type.bin"
fi

# Databases: the fixtures and the sample cut into files of 2 records, all
# read with the sample knowledge file as the fuzz targets do.
for f in "$src"/tests/data/*/*.xml; do
  if grep -q '<p_database>\|<p_record>' "$f"; then cp "$f" "$out/database_xml/$(basename "$(dirname "$f")")-$(basename "$f")"; fi
done
awk -v dir="$out/database_xml" '
  NR == 1 { header = $0 }
  /^  <p_record>/ { if (count % 2 == 0) { if (file != "") { print "</p_database>" > file; close(file) } n++; file = dir "/sample-" n ".xml"; print header > file; print "<p_database>" > file } count++ }
  file != "" && !/<\/p_database>/ { print > file }
  END { if (file != "") print "</p_database>" > file }
' "$src/samples/probands.xml"
for f in "$out"/database_xml/*; do
  "$auxtool" convert database "$sample" "$f" "$out/database_binary/$(basename "$f" .xml).bin" --to bin > /dev/null 2>&1 || true
done
"$auxtool" synth "$sample" 3 "$out/database_binary/synth-3.bin" --to bin > /dev/null

# The plain road of database files: the XML databases above, and small ones
# as the database writes them, from the synthesizer: most mutations of a
# written file leave the plain layout, so the seeds are many and short.
cp "$out"/database_xml/* "$out/database_xml_plain/"
for seed in 1 2 3 4 5 6 7 8; do
  "$auxtool" synth "$sample" 1 "$out/database_xml_plain/synth-$seed.xml" --seed "$seed" > /dev/null
done

# Formulas: every method and condition of the knowledge files, one per seed,
# and the contents of whole `method` elements for the form with pairs.
n=0
for f in "$src"/tests/data/*/*.xml "$sample"; do
  grep -o '<compute[^>]*>[^<]*</compute>' "$f" | sed 's/<[^>]*>//g' > "$out/formulas.tmp" || true
  grep -o 'if="[^"]*"' "$f" | sed 's/^if="//; s/"$//' >> "$out/formulas.tmp" || true
  while IFS= read -r line; do
    n=$((n + 1))
    printf '%s' "$line" > "$out/formula/source-$n.txt"
  done < "$out/formulas.tmp"
done
rm "$out/formulas.tmp"
for f in "$src"/tests/data/formula/*.xml; do
  awk -v dir="$out/formula" -v base="$(basename "$f" .xml)" '
    /<method>/ { n++; file = dir "/method-" base "-" n ".xml"; next }
    /<\/method>/ { close(file); file = ""; next }
    file != "" { print > file }
  ' "$f"
done

# Setup files: the fixture of the setup tests, and one past the longest
# line, name and value, which mutation alone reaches late.
cp "$src/tests/data/page/setup.txt" "$out/setup_reader/fixture-setup.txt"
repeat() { head -c "$2" /dev/zero | tr '\0' "$1"; }
{
  printf 'x = '; repeat v 8200; printf '\n{'; repeat n 66; printf '} = 1\ny = {\n'
  for _ in 1 2 3; do repeat w 3000; echo; done
  printf '}\nz = {\nopen\n'
} > "$out/setup_reader/limits.txt"
# Paragraphs: the content of every `p` element of the knowledge files, one
# per seed.
n=0
for f in "$src"/tests/data/*/*.xml "$sample"; do
  grep -o '<p[ >].*</p>' "$f" | sed 's/^<p[^>]*>//; s/<\/p>$//' > "$out/paragraphs.tmp" || true
  while IFS= read -r line; do
    n=$((n + 1))
    printf '%s' "$line" > "$out/text_paragraph/p-$n.txt"
  done < "$out/paragraphs.tmp"
done
rm "$out/paragraphs.tmp"
# Conversions: every knowledge and database seed behind its kind's byte
# ('k' or 'd'), and the files that once converted into what did not load.
for kind in knowledge_xml knowledge_binary database_xml database_binary; do
  prefix=k
  case $kind in database_*) prefix=d ;; esac
  for f in "$out/$kind"/*; do
    { printf '%s' "$prefix"; cat "$f"; } > "$out/conversion/$kind-$(basename "$f")"
  done
done
for f in "$src"/tests/data/tools/knowledge-*; do
  { printf k; cat "$f"; } > "$out/conversion/damaged-$(basename "$f")"
done
{ printf d; cat "$src/tests/data/tools/database-bin-to-xml.bin"; } > "$out/conversion/damaged-database-bin-to-xml.bin"

# Import lists: the fixture, and the sample database cut as above with its
# records made entries (name and comment come before the proband in both).
cp "$src/tests/data/proband/import_list.xml" "$out/import_list/fixture-import_list.xml"
for f in "$out"/database_xml/sample-*.xml; do
  sed 's/p_database>/import_list>/g; s/p_record>/import_proband>/g; s/p_name>/name>/g; s/p_comment>/comment>/g' "$f" \
    > "$out/import_list/$(basename "$f")"
done

# Page templates: the fixture pages of the page tests.
cp "$src"/tests/data/page/pages/*.htm "$out/page_walker/"

# Requests: a target, then a Cookie and an Authorization header.
n=0
for request in '/' '/?_srch=nov&_top=10' '/?_page=proband&_p_id=p3' '/?_page=proband&_p_id=p1&_t_id=growth_charts' \
    '/temp?_p_sex=M&_p_dob=1.1.2015&_AGE=5&HEIGHT=110&WEIGHT=20&_AGE=6&HEIGHT=116' \
    '/?_page=quick' '/xml?_XML=%3Cproband%3E%3C%2Fproband%3E' '/?_page=../x&_errorpage=error' \
    '/graphs/1.svg' '/?_cmd=del&_p_id=p1&_order=1'; do
  n=$((n + 1))
  printf '%s\nauxserve_token=fuzz-secret\nBasic Zm9vOmZ1enotc2VjcmV0\n' "$request" > "$out/server_request/request-$n"
done

for target in "$out"/*/; do
  echo "corpus $(basename "$target"): $(ls "$target" | wc -l) seeds"
done
