# shellcheck shell=bash disable=SC2034
# What ./epsimport, ./test and bench/run share: packages and the build. Sourced by bash; writes to standard error only.

# Packages that building the program takes, and what testing and measuring take on top.
BUILD_PACKAGES=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libdxflib-dev libboost-dev
    zlib1g-dev libfreetype-dev libfontconfig-dev libpolyclipping-dev)
TEST_PACKAGES=(libgtest-dev clang-14 clang-format-14 python3 python3-ezdxf python3-svgelements librsvg2-bin)
FONT_PACKAGES=(fonts-urw-base35)  # faces of the standard fonts, which most files with text only name
BENCH_PACKAGES=(libbenchmark-dev lua5.4 python3)

say() { printf '%s\n' "$*" >&2; }

# need_packages PACKAGE... - installs those that are missing, if this user may; otherwise says what to install.
need_packages() {
    command -v dpkg-query >/dev/null || return 0  # not a Debian system: the configure step names what is missing
    local package missing=()
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    local as_root=()
    if ((EUID != 0)); then
        if command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
            as_root=(sudo -n)
        else
            say "These packages are missing, and installing them takes root:"
            say "    apt-get install ${missing[*]}"
            return 1
        fi
    fi
    say "Installing ${missing[*]}"
    {
        # The package lists may be absent or old; they are fetched only if the first try fails.
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" ||
            { "${as_root[@]}" apt-get update &&
                "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"; }
    } >&2 || {
        say "The packages could not be installed."
        return 1
    }
}

# want_packages PACKAGE... - likewise, but without them the work goes on.
want_packages() { need_packages "$@" || say "Going on without $*"; }

# build PRESET DIRECTORY TARGET [CMAKE-ARGUMENT...] - configures with the arguments and builds.
build() {
    local preset=$1 directory=$2 target=$3
    shift 3
    mkdir -p "$directory"
    cmake --preset "$preset" "$@" >"$directory/configure.log" 2>&1 || {
        cat "$directory/configure.log" >&2
        return 1
    }
    cmake --build "$directory" --parallel "$(nproc)" --target "$target" >&2
}
