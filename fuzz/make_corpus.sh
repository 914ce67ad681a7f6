#!/usr/bin/env bash
# Builds the seed corpus of both fuzz targets from the shipped examples and
# the end-to-end projects: for the run target the project input file, a NUL
# and the PAR file that TOV.mio names; for the check target the project
# input file alone.  Usage: fuzz/make_corpus.sh OUT (makes OUT/run, OUT/check).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
out="$1"
mkdir -p "$out/run" "$out/check"
n=0
for folder in "$root"/examples/* "$root"/tests/projects/*/input; do
  [[ -f "$folder/TOV.mio" ]] || continue
  # The first two lines that are not blank and not comments, quotes dropped.
  mapfile -t names < <(grep -v '^!' "$folder/TOV.mio" | grep -v '^[[:space:]]*$' | head -2 |
    sed -e 's/^[[:space:]]*//' -e "s/^[\"']\\(.*\\)[\"'].*/\\1/" -e 's/[[:space:],].*//')
  [[ ${#names[@]} -eq 2 && -f "$folder/${names[0]}" ]] || continue
  n=$((n + 1))
  cp "$folder/${names[0]}" "$out/check/seed$n"
  { cat "$folder/${names[0]}"; printf '\0'; [[ -f "$folder/${names[1]}" ]] && cat "$folder/${names[1]}"; } > "$out/run/seed$n"
done
echo "$n seeds in $out"
