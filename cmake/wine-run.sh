#!/bin/sh
# Runs one cross-built Windows program under Wine; ctest calls it as the emulator:
#   wine-run.sh PREFIX PROGRAM [ARGS...]
# PREFIX is the Wine prefix to use unless WINEPREFIX is already set. A missing
# prefix is created once, non-interactively, under a lock so that tests started in
# parallel do not race to create it. Without PROGRAM the script only creates it.
set -eu
prefix=$1
shift
: "${WINEPREFIX:=$prefix}"
: "${WINEDEBUG:=-all}"
# No Mono or Gecko installer dialogs when the prefix is created.
: "${WINEDLLOVERRIDES:=mscoree,mshtml=}"
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES
wine=$(command -v wine || command -v wine64)
bin=$(dirname "$wine")
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    if [ ! -f "$WINEPREFIX/system.reg" ]; then
      "$bin/wineboot" -i >/dev/null 2>&1 || true
      "$bin/wineserver" -w || true
    fi
  ) 9>"$WINEPREFIX.lock"
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    echo "wine-run.sh: could not create the Wine prefix $WINEPREFIX" >&2
    exit 1
  fi
fi
[ $# -eq 0 ] && exit 0
exec "$wine" "$@"
