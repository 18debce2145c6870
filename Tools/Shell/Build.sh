# Sourced after Setup.sh: configures a preset once, builds what is out of date, and shows a log only when it fails.

# buildPreset PRESET [TARGET...]: all targets when none is named.
buildPreset() {
    local preset=$1 log=$TARV_ROOT/build/$1.log start=$SECONDS target
    shift
    mkdir -p "$TARV_ROOT/build"
    if [ ! -f "$TARV_ROOT/build/$preset/build.ninja" ]; then
        say "Configuring $preset ..."
        atTop cmake --preset "$preset" > "$log" 2>&1 || failedStep "configuring $preset" "$log"
    fi
    # A tree that is up to date says so in one line: only real work is announced.
    set -- $(for target in "$@"; do printf -- '--target %s ' "$target"; done)
    [ -t 2 ] && say "Building $preset ..."
    atTop cmake --build --preset "$preset" -j "$(nproc)" "$@" > "$log" 2>&1 || failedStep "building $preset" "$log"
    grep -qE '^\[[0-9]+/[0-9]+\] (Building|Linking|Generating)' "$log" && say "Built $preset in $((SECONDS - start)) s."
    return 0
}

# Presets are found from the top folder only; the caller stays where it is, since the files it names are there.
atTop() { (cd "$TARV_ROOT" && "$@"); }

failedStep() {
    grep -E -A 12 'FAILED|[Ee]rror' "$2" | head -n 60 >&2
    die "$1 failed; ${2#"$TARV_ROOT"/} tells more"
}
