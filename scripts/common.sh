# shellcheck shell=bash
# Shared by the scripts of the root. Sourced, never run.

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"

say() { printf '%s\n' "$*" >&2; }

die() {
    say "$*"
    exit 1
}

# The packages of the given groups for this release (see packaging/debian-packages.txt).
packages() {
    local group here
    here="$(. /etc/os-release && printf '%s' "${VERSION_ID-}")"
    for group in "$@"; do
        awk -v group="$group" -v here="$here" '$1 == group && (NF == 2 || $3 == here) { print $2 }' \
            "$root/packaging/debian-packages.txt"
    done
}

# Installs what is missing of the given package groups.
need() {
    if ! command -v dpkg-query >/dev/null; then
        say "This is no Debian: what packaging/debian-packages.txt lists must be there already."
        return
    fi
    local -a wanted missing
    mapfile -t wanted < <(packages "$@")
    mapfile -t missing < <(comm -23 <(printf '%s\n' "${wanted[@]}" | sort) \
        <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null |
            awk '$1 == "installed" { print $2 }' | sort -u))
    ((${#missing[@]} == 0)) && return
    local -a as_root=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null ||
            die "Missing packages, and no sudo to install them: ${missing[*]}"
        as_root=(sudo)
    fi
    say "Installing: ${missing[*]}"
    # A machine may have other sources that do not answer; those of Debian decide below.
    "${as_root[@]}" apt-get -q update </dev/null || say "Not every package list was renewed."
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends \
        install "${missing[@]}" </dev/null
}

# build PRESET TARGET...: configures where that is needed and builds; quiet but for the progress.
build() {
    local preset=$1 folder="$root/build/$1"
    shift
    if [[ ! -e $folder/build.ninja || $root/CMakePresets.json -nt $folder/build.ninja ]]; then
        say "Configuring $preset ..."
        mkdir -p "$folder"
        local -a options=(--preset "$preset")
        command -v ccache >/dev/null && options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
        if ! (cd "$root" && cmake "${options[@]}") >"$folder/configure.log" 2>&1; then
            cat "$folder/configure.log" >&2
            die "Configuring $preset failed."
        fi
        touch "$folder/build.ninja"
    fi
    # What was compiled for one folder of the project serves in every other; the precompiled headers,
    # which are large, are not read again for every source.
    CCACHE_BASEDIR="$root" CCACHE_INODECACHE=1 NINJA_STATUS="[$preset %f/%t] " cmake --build "$folder" --target "$@" >&2
}

# The engine's sandbox does not start as root.
allow_root() {
    if ((EUID == 0)); then
        say "Running as root: the engine's sandbox is switched off, so open only pages you trust."
        export QTWEBENGINE_DISABLE_SANDBOX=1
    fi
}
