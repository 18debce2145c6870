# Sourced after Setup.sh: a Wine prefix of the project's own under build/wine, made once, and its server kept warm
# while a command runs (a program then starts in 0.03 s instead of 0.6 s). Windows lie on no display, which is quicker,
# unless startDisplay comes before startWine.

export WINEARCH=win64 WINEDEBUG=-all WINEPREFIX=$TARV_ROOT/build/wine
# winedbg.exe: without it a crash is an exit code, with it a dialog that nobody sees. The others are downloads.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=;winedbg.exe="
TARV_WINE_LIBRARIES=/usr/lib/x86_64-linux-gnu/wine/x86_64-windows
TARV_WINE_SERVER=/usr/lib/wine/wineserver64
tarvWineServerId=
tarvDisplayId=
# That of the user is left alone, but for a window that is for them.
TARV_USER_DISPLAY=${DISPLAY:-}
unset DISPLAY

# startWine: makes the prefix if there is none, and starts the server; stopWine ends the one that was started here.
startWine() {
    [ -f "$WINEPREFIX/ready-3" ] || makeWinePrefix
    "$TARV_WINE_SERVER" -f -p > /dev/null 2>&1 &
    tarvWineServerId=$!
    # The first program starts Wine's services, which keep its streams: behind a pipe nobody would see the end.
    wine cmd /c exit < /dev/null > /dev/null 2>&1
}

stopWine() {
    [ -n "$tarvWineServerId" ] || return 0
    # With its programs: Wine's own services would outlive a server that only ends.
    "$TARV_WINE_SERVER" -k 2> /dev/null
    wait "$tarvWineServerId" 2> /dev/null
    tarvWineServerId=
}

# startDisplay: an X server without a screen, on a display that is free; stopDisplay ends it.
startDisplay() {
    local number=
    exec {tarvDisplayPipe}<> <(:)
    Xvfb -displayfd "$tarvDisplayPipe" -screen 0 1280x1024x24 -nolisten tcp -noreset > /dev/null 2>&1 &
    tarvDisplayId=$!
    read -r -t 10 -u "$tarvDisplayPipe" number || die "the X server did not start"
    exec {tarvDisplayPipe}>&-
    export DISPLAY=:$number
}

stopDisplay() {
    [ -n "$tarvDisplayId" ] || return 0
    kill "$tarvDisplayId" 2> /dev/null
    wait "$tarvDisplayId" 2> /dev/null
    tarvDisplayId=
    unset DISPLAY
}

makeWinePrefix() {
    say "Making a Wine prefix in build/wine (once, some 15 s) ..."
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    {
        wine wineboot -i &&
            # Without a display: the null driver, on which windows, timers and messages work.
            wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11,null /f &&
            # There is no window manager, which each window would wait for.
            wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f &&
            # What a user looks at lies on a desk that has one.
            wine reg add 'HKCU\Software\Wine\AppDefaults\EditorHost.exe\X11 Driver' /v Managed /d Y /f
    } > "$TARV_ROOT/build/wine.log" 2>&1 || die "Wine did not start; build/wine.log tells more"
    "$TARV_WINE_SERVER" -w
    linkIdenticalLibraries
    touch "$WINEPREFIX/ready-3"
}

# A fresh prefix holds 700 MB of copies of what the package has: those that are the same bytes become links.
linkIdenticalLibraries() {
    local file twin
    for file in "$WINEPREFIX"/drive_c/windows/system32/*.*; do
        twin=$TARV_WINE_LIBRARIES/${file##*/}
        [ -f "$twin" ] && cmp -s "$file" "$twin" && ln -sf "$twin" "$file"
    done
    return 0
}
