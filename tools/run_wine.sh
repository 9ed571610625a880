#!/usr/bin/env bash
# Runs a program for Windows under wine, in a prefix of its own that is made at the first call.
# Windows need a display; VELLUM_WINE_DISPLAY names one. Without it there is none, whatever the session has: wine's server
# keeps what its first program had.
set -euo pipefail
export WINEPREFIX=${VELLUM_WINEPREFIX:-$HOME/.cache/vellumcraft/wine} WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree=;mshtml=}
unset DISPLAY WAYLAND_DISPLAY
if [ -n "${VELLUM_WINE_DISPLAY:-}" ]; then
    export DISPLAY=$VELLUM_WINE_DISPLAY
    WINEPREFIX+=-display
else
    export WINEQT_QPA_PLATFORM=${WINEQT_QPA_PLATFORM:-offscreen}
fi
if [ ! -e "$WINEPREFIX/.ready" ]; then
    # Two tests may come first at the same time.
    mkdir -p "$WINEPREFIX"
    (
        flock 9
        if [ ! -e "$WINEPREFIX/.ready" ]; then
            wineboot -i >/dev/null 2>&1
            # Windows that a window manager is to manage wait two seconds for it at their end, and there is none.
            wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1
        fi
        touch "$WINEPREFIX/.ready"
    ) 9>"$WINEPREFIX.lock"
fi
exec wine "$@"
