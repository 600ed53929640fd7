#!/bin/sh
# Runs one cross-built Windows program under Wine; ctest calls it as the emulator:
#   wine-run.sh PREFIX PROGRAM [ARGS...]
# PREFIX is the Wine prefix to use unless WINEPREFIX is already set. A missing
# prefix is created once, non-interactively, under a lock so that tests started in
# parallel do not race to create it.
set -eu
prefix=$1
shift
: "${WINEPREFIX:=$prefix}"
: "${WINEDEBUG:=-all}"
# No Mono or Gecko installer dialogs when the prefix is created.
: "${WINEDLLOVERRIDES:=mscoree,mshtml=}"
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES
wine=$(command -v wine || command -v wine64)
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    if [ ! -f "$WINEPREFIX/system.reg" ]; then
      "$(dirname "$wine")/wineboot" -i >/dev/null 2>&1 || true
      "$(dirname "$wine")/wineserver" -w || true
    fi
  ) 9>"$WINEPREFIX.lock"
fi
exec "$wine" "$@"
