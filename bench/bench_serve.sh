#!/usr/bin/env bash
# Times auxserve over loopback with wrk: requests per second and the 50th
# and 99th percentile latency of the list page and of a proband page with
# its report, on a database of N synthetic probands (default 10 000), and
# the time of a change request, which saves the whole database.
#
#   bash bench/bench_serve.sh [BUILD_DIR] [N]
#
# Needs the programs auxtool and auxserve in BUILD_DIR/bin (default build),
# wrk and curl. Everything runs on 127.0.0.1 and is bounded in time: each
# wrk run lasts SECONDS seconds (default 10), the change requests are
# CHANGES (default 20). The scratch folder BUILD_DIR/bench-serve is kept for
# a look afterwards; the server is stopped by its process id on any exit.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
count=${2:-10000}
seconds=${SECONDS_PER_RUN:-10}
changes=${CHANGES:-20}
connections=${CONNECTIONS:-8}

for tool in wrk curl; do
  command -v "$tool" >/dev/null || { echo "bench_serve: $tool is missing (apt-get install $tool)" >&2; exit 1; }
done
for program in auxtool auxserve; do
  [ -x "$build/bin/$program" ] || { echo "bench_serve: build $build/bin/$program first" >&2; exit 1; }
done

work="$build/bench-serve"
rm -rf "$work"
mkdir -p "$work"
cp -r samples/auxserve.txt samples/knowledge.bin samples/pages "$work/"
"$build/bin/auxtool" synth samples/knowledge.xml "$count" "$work/probands.bin" --seed 7 --to bin

"$build/bin/auxserve" "$work/auxserve.txt" --port 0 --today 1.6.2026 > "$work/out.txt" 2> "$work/log.txt" &
server=$!
trap 'kill "$server" 2>/dev/null || true; wait "$server" 2>/dev/null || true' EXIT
for _ in $(seq 100); do
  grep -q '^listening on' "$work/out.txt" && break
  sleep 0.1
done
base=$(sed -n 's|^listening on \(http://[^ ]*\)$|\1|p' "$work/out.txt")
[ -n "$base" ] || { echo "bench_serve: the server did not start" >&2; cat "$work/log.txt" >&2; exit 1; }

id=$(curl -s --max-time 10 "$base" | grep -o '_p_id=p[0-9]*' | head -1 | cut -d= -f2)
list_url="$base"
proband_url="${base}?_page=proband&_p_id=$id&_t_id=growth_charts"
graphs=$(curl -s --max-time 10 "$proband_url" | grep -c '<img' || true)

# One wrk run: "req/s p50 p99" from its --latency report.
measure() {
  wrk -t"$(( connections < 2 ? 1 : 2 ))" -c"$connections" -d"${seconds}s" --timeout 10s --latency "$1" > "$work/wrk.txt"
  awk '/Requests\/sec/ {rps=$2} $1=="50%" {p50=$2} $1=="99%" {p99=$2} END {print rps, p50, p99}' "$work/wrk.txt"
}

echo "database: $count probands, $(stat -c %s "$work/probands.bin") bytes; proband $id, $graphs images on its page"
printf '%-28s %10s %10s %10s\n' page req/s p50 p99
read -r rps p50 p99 < <(measure "$list_url")
printf '%-28s %10s %10s %10s\n' "list (20 a page)" "$rps" "$p50" "$p99"
read -r rps p50 p99 < <(measure "$proband_url")
printf '%-28s %10s %10s %10s\n' "proband with report" "$rps" "$p50" "$p99"

# A change: read the order token from a page, then set the name and the
# comment (a change writes both, given or not); the server saves all
# probands before it answers. Only the POST is timed.
: > "$work/changes.txt"
for k in $(seq "$changes"); do
  order=$(curl -s --max-time 10 "$proband_url" | grep -o 'name="_order" value="[0-9]*"' | head -1 | grep -o '[0-9]*')
  curl -s --max-time 30 -o /dev/null -w '%{time_total}\n' \
    --data "_cmd=set&_order=$order&_page=proband&_p_id=$id&_p_name=Bench+Proband&_p_cmt=bench+$k" "$base" >> "$work/changes.txt"
done
sort -n "$work/changes.txt" | awk '{t[NR]=$1} END {printf "change (set, saves the file)  median %.1f ms, max %.1f ms over %d\n", t[int((NR+1)/2)]*1000, t[NR]*1000, NR}'
