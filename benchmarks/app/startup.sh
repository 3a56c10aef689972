#!/bin/sh
# From the program's start to its login dialog, beside DB Browser for SQLite to its window, on a
# display of its own. Limits: 0.4 of the time, half the memory.
set -eu
cd "$(dirname "$0")/../.."
programs=build/release/bin
if [ ! -x "$programs/startup_timer" ] || ! command -v Xvfb >/dev/null ||
    ! command -v sqlitebrowser >/dev/null; then
    echo "startup: not measured (it needs the XCB headers, Xvfb and sqlitebrowser)"
    exit 0
fi

runs=9
if [ -n "${QUILLMATE_BENCH_ROWS:-}" ]; then
    runs=1 # a short run only shows that it works
fi
scratch=$(mktemp -d)
Xvfb -displayfd 3 -screen 0 1280x800x24 3>"$scratch/display" 2>/dev/null &
server=$!
trap 'kill $server; rm -rf "$scratch"' EXIT
until [ -s "$scratch/display" ]; do
    sleep 0.1
done
DISPLAY=:$(cat "$scratch/display")
export DISPLAY HOME="$scratch" XDG_RUNTIME_DIR="$scratch" QUILLMATE_HOME="$scratch/quillmate"
"$programs/startup_timer" "$runs" "Quillmate Database Login" "$programs/quillmate" \
    "DB Browser for SQLite" sqlitebrowser
