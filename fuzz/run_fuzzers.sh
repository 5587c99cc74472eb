#!/usr/bin/env bash
# Runs fuzz targets one after the other, each for a bounded time:
#   run_fuzzers.sh BUILD_DIR SECONDS [TARGET...]
# (all targets when none is named). Each target reads its seed corpus from
# BUILD_DIR/corpus/TARGET and keeps what it finds in BUILD_DIR/fuzz-work/
# TARGET; a crash, leak, timeout or sanitizer report leaves its input in
# BUILD_DIR/fuzz-artifacts/TARGET and fails the run. The last line of each
# target's log (executions, coverage, corpus) is printed as a summary.
set -uo pipefail
build=$1
seconds=$2
shift 2
here=$(cd "$(dirname "$0")" && pwd)
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  targets=(xml_parser knowledge_xml knowledge_binary database_xml database_xml_plain database_binary formula objectlist
    setup_reader query_parser text_paragraph conversion import_list page_walker server_request)
fi

# The longest input per target: the XML forms up to what a capture and a few
# elements need, formulas and paragraphs as long as any an author writes,
# setup files past the longest line and value, import lists like the other
# XML forms, queries as long as a browser sends, page templates as long as a
# page with a few nested loops (the work of a walk grows with the passes of
# nested loops, not with the bytes).
options_for() {
  case $1 in
    xml_parser) echo "-max_len=65536 -dict=$here/dicts/xml.dict" ;;
    knowledge_xml | database_xml | database_xml_plain) echo "-max_len=65536 -dict=$here/dicts/xml.dict" ;;
    knowledge_binary | database_binary) echo "-max_len=65536" ;;
    formula) echo "-max_len=4096 -dict=$here/dicts/formula.dict" ;;
    objectlist) echo "-max_len=16384" ;;
    setup_reader) echo "-max_len=20000 -dict=$here/dicts/setup.dict" ;;
    query_parser) echo "-max_len=8192 -dict=$here/dicts/query.dict" ;;
    text_paragraph) echo "-max_len=16384 -dict=$here/dicts/paragraph.dict" ;;
    conversion) echo "-max_len=65536 -dict=$here/dicts/xml.dict" ;;
    import_list) echo "-max_len=65536 -dict=$here/dicts/import.dict" ;;
    page_walker) echo "-max_len=4096 -dict=$here/dicts/page.dict" ;;
    server_request) echo "-max_len=8192 -dict=$here/dicts/query.dict" ;;
    *) echo "unknown target $1" >&2; return 1 ;;
  esac
}

failed=0
for target in "${targets[@]}"; do
  options=$(options_for "$target") || exit 2
  work=$build/fuzz-work/$target
  artifacts=$build/fuzz-artifacts/$target
  log=$build/fuzz-logs/$target.log
  mkdir -p "$work" "$artifacts" "$build/fuzz-logs"
  echo "== fuzz_$target for ${seconds}s"
  # shellcheck disable=SC2086
  "$build/fuzz/fuzz_$target" "$work" "$build/corpus/$target" $options -max_total_time="$seconds" \
    -rss_limit_mb=2048 -timeout=10 -print_final_stats=1 -artifact_prefix="$artifacts/" > "$log" 2>&1
  status=$?
  grep -E '^#[0-9]+.*(DONE|INITED)' "$log" | tail -n 1
  grep -E '^stat::number_of_executed_units' "$log"
  if [ $status -ne 0 ]; then
    echo "fuzz_$target FAILED (exit $status); log: $log"
    grep -E 'ERROR|SUMMARY|fuzz check failed|runtime error' "$log" | head -n 5
    failed=1
  fi
done
exit $failed
