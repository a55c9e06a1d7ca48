#!/bin/bash
# usage: wine-run.sh PROGRAM [ARGUMENT...]
# Runs a Windows program under wine with a private prefix and no window system; the exit status is
# the program's. Output goes through files: on a pipe, wine's background services, which inherit it,
# keep the reader waiting 1.5 to 2.5 s a program; this way a start costs 0.03 s (0.4 s the first
# time).
export WINEPREFIX=${PXB_WINEPREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/pxb-wine}
export WINEARCH=win32 WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
unset DISPLAY WAYLAND_DISPLAY
if [ ! -f "$WINEPREFIX/.ready" ]; then  # first use: about 13 s; parallel callers wait here
    mkdir -p "$WINEPREFIX"
    exec 9>"$WINEPREFIX.lock"; flock 9
    [ -f "$WINEPREFIX/.ready" ] ||
        { wineboot -i </dev/null >/dev/null 2>&1 9>&- && wineserver -w 9>&- &&
            touch "$WINEPREFIX/.ready"; } ||
        { echo "wine prefix could not be made" >&2; exit 99; }
    exec 9>&-
fi
# It stays for 10 idle minutes; nothing happens when one runs.
wineserver -p600 </dev/null >/dev/null 2>&1 || true
tmp=$(mktemp -d); trap 'rm -rf "$tmp"' EXIT
for try in 1 2 3; do
    wine "$@" </dev/null >"$tmp/out" 2>"$tmp/err"; status=$?
    # A program that meets a wineserver about to end never starts (1 start in 90 without -p).
    { [ $status = 1 ] && [ ! -s "$tmp/out" ] && grep -q '^wine client error' "$tmp/err"; } || break
    sleep 1
done
cat "$tmp/out"; cat "$tmp/err" >&2
exit $status
