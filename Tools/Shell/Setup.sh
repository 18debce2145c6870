# Sourced by run, test and bench: installs by name what is missing, and says what it does.
# Sets TARV_ROOT, the top folder of the project; needPackages leaves a machine that has everything untouched.

TARV_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# The compilers of both builds, and the libraries that they link.
TARV_BUILD_PACKAGES="build-essential cmake ninja-build zlib1g-dev libpugixml-dev libgtest-dev googletest
    libsimde-dev libbenchmark-dev g++-mingw-w64-x86-64-posix libz-mingw-w64-dev lld ccache"
# What Tools/GfxBuilder draws shapes and glyphs with.
TARV_GRAPHICS_PACKAGES="pkgconf libcairo2-dev librsvg2-dev libfreetype-dev libharfbuzz-dev libfontconfig-dev
    fonts-inter"
# What the editor's windows on Linux are declared by, and the other end of them in the tests.
TARV_WINDOW_PACKAGES="libxcb1-dev libxcb-shm0-dev libxcb-randr0-dev libxcb-xkb-dev libxkbcommon-dev
    libxkbcommon-x11-dev libxcb-xtest0-dev libxcb-res0-dev"
TARV_BUILD_PACKAGES="$TARV_BUILD_PACKAGES $TARV_GRAPHICS_PACKAGES $TARV_WINDOW_PACKAGES"
# What a Windows program runs on, here.
TARV_WINE_PACKAGES="wine wine64"
# Files in, files and pictures out, and the recording that ./run takes when none is given.
TARV_SOUND_PACKAGES="libkissfft-dev sox libsox-fmt-all sonic-pi-samples gnuplot-nox"
# The sanitizers' and fuzzers' compiler, and what the architecture test looks with.
# The X server that tests of windows start and end themselves.
TARV_CHECK_PACKAGES="clang libclang-rt-14-dev clang-format binutils git xvfb x11-xkb-utils"
# What ./bench --peers loads the plug-ins of others with, and those that it knows.
TARV_PEER_PACKAGES="ladspa-sdk liblilv-dev pkgconf"
TARV_PEERS="lsp-plugins-ladspa tap-plugins caps swh-plugins zam-plugins calf-plugins eq10q x42-plugins"

die() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

say() { printf '%s\n' "$*" >&2; }

# needPackages NAME...: returns when all are installed; installs with one call of apt-get, or stops and says what to do.
needPackages() {
    local missing name
    command -v dpkg-query > /dev/null ||
        die "this is not a Debian system. Install the equivalents of: $*"
    missing=$(
        dpkg-query -W -f='${Package} ${db:Status-Status}\n' "$@" 2> /dev/null |
            awk -v wanted="$*" '$2 == "installed" { have[$1] = 1 }
                END { count = split(wanted, name); for (i = 1; i <= count; i++) if (!have[name[i]]) print name[i] }'
    )
    [ -n "$missing" ] || return 0
    say "Missing packages:" $missing
    [ "$(id -u)" = 0 ] || die "not running as root. Install them with: sudo apt-get install" $missing
    say "Installing them with apt-get (up to 2.2 GB on a bare system, 0.6 GB of them to load; some minutes) ..."
    mkdir -p "$TARV_ROOT/build"
    {
        apt-get update -o DPkg::Lock::Timeout=400 &&
            DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends \
                -o DPkg::Lock::Timeout=400 $missing
    } > "$TARV_ROOT/build/apt.log" 2>&1 || {
        tail -n 5 "$TARV_ROOT/build/apt.log" >&2
        die "apt-get failed; build/apt.log tells more"
    }
    for name in $missing; do say "  installed $name"; done
}
