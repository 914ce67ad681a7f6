#!/usr/bin/env bash
# The project's test command: builds and runs the whole suite three times,
# each build in a folder of its own,
#   build        g++, Release: the build users run;
#   build-asan   clang with the address and undefined-behaviour sanitizers,
#                and the fuzz targets (fuzz/);
#   build-clang  clang, Release: the results must be the same bits as g++
#                gives, which the exact end-to-end tables and the lane
#                tests show;
# and then runs each fuzz target for a short while on the seed corpus made
# from the example and end-to-end projects, when libFuzzer is installed.
# What is missing (g++, CMake, GoogleTest, clang and its sanitizer
# runtimes) is installed from Debian's packages first, when run as root.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=2
fuzz_seconds=45

runtime_dir() { clang++ -print-runtime-dir 2>/dev/null || true; }
have_sanitizers() { [[ -f "$(runtime_dir)/libclang_rt.asan-x86_64.a" ]]; }
have_fuzzer() { [[ -f "$(runtime_dir)/libclang_rt.fuzzer-x86_64.a" ]]; }

missing=()
command -v g++ > /dev/null || missing+=(g++)
command -v cmake > /dev/null || missing+=(cmake)
[[ -f /usr/include/gtest/gtest.h ]] || missing+=(libgtest-dev)
command -v clang++ > /dev/null || missing+=(clang)
{ command -v clang++ > /dev/null && have_sanitizers && have_fuzzer; } || missing+=(libclang-rt-dev)
if [[ ${#missing[@]} -gt 0 ]]; then
  echo "installing ${missing[*]}"
  apt-get -o DPkg::Lock::Timeout=900 update -q
  DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=900 install -y -q "${missing[@]}"
fi

# The end-to-end cases that cap the address space of their run cannot run
# under the address sanitizer, which reserves terabytes of it for its
# shadow memory: they run in the two other builds only.
capped=$(cd tests/projects && for f in */memory_limit_kb; do [[ -f "$f" ]] && echo "${f%/*}"; done | paste -sd '|')
sanitizer_exclude=()
[[ -n "$capped" ]] && sanitizer_exclude=(-E "OutputsMatchExpected/($capped)( |$)")

build_and_test() {
  local folder="$1"
  shift
  echo "=== $folder"
  cmake -S . -B "$folder" "$@" > /dev/null
  cmake --build "$folder" -j"$jobs"
}

build_and_test build -DCMAKE_BUILD_TYPE=Release
ctest --test-dir build -j"$jobs" --output-on-failure

sanitizers="-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer"
fuzz=OFF
have_fuzzer && fuzz=ON
CC=clang CXX=clang++ build_and_test build-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTOV_FUZZ="$fuzz" \
  -DCMAKE_CXX_FLAGS="$sanitizers"
# An allocation that cannot be had returns null, as the C library's does:
# the test of the marker count relies on it.
export ASAN_OPTIONS=allocator_may_return_null=1
ctest --test-dir build-asan -j"$jobs" --output-on-failure "${sanitizer_exclude[@]}"

CC=clang CXX=clang++ build_and_test build-clang -DCMAKE_BUILD_TYPE=Release
ctest --test-dir build-clang -j"$jobs" --output-on-failure

if [[ "$fuzz" == ON ]]; then
  # A crash or a sanitizer report fails the check.  A slow or large input
  # (a project may ask for a billion simulations) is listed in the log's
  # oom/timeout counts and fuzzing goes on.
  echo "=== fuzz smoke run, ${fuzz_seconds} s per target"
  corpus=$(mktemp -d)
  trap 'rm -rf "$corpus"' EXIT
  fuzz/make_corpus.sh "$corpus"
  pids=()
  for target in run check; do
    build-asan/fuzz/tov_fuzz_$target "$corpus/$target" -fork=1 -ignore_timeouts=1 -ignore_ooms=1 \
      -max_total_time=$fuzz_seconds -max_len=4096 -timeout=20 -rss_limit_mb=2048 -malloc_limit_mb=16384 \
      -artifact_prefix="$corpus/$target-" > "$corpus/$target.log" 2>&1 &
    pids+=($!)
  done
  status=0
  for i in 0 1; do
    target=$([[ $i == 0 ]] && echo run || echo check)
    if wait "${pids[$i]}"; then
      grep -E '^#[0-9]+: cov:' "$corpus/$target.log" | tail -1 | sed "s/^/$target: /"
    else
      status=1
      echo "fuzz target $target found a fault:"
      grep -v -E '^#[0-9]' "$corpus/$target.log" | tail -80
      for artifact in "$corpus/$target-"*; do [[ -f "$artifact" ]] && base64 "$artifact"; done
    fi
  done
  exit $status
else
  echo "=== no libFuzzer: fuzz smoke run skipped"
fi
