# shellcheck shell=bash
# Debians of other releases, made from the mirror this machine uses. Sourced, never run.

# The name of a release; nothing for an unknown one.
codename() {
    case "$1" in
        12) echo bookworm ;;
        13) echo trixie ;;
    esac
}

# Whence the machine has its own Debian, for the release CODENAME: lines for sources.list.
debian_sources() {
    local own
    own="$(. /etc/os-release && printf '%s' "$VERSION_CODENAME")"
    # shellcheck disable=SC2016 # the names are those of apt
    apt-get indextargets --format 'deb $(REPO_URI) $(CODENAME) $(COMPONENT)|$(ORIGIN)' \
        'Created-By: Packages' | sed -n "s/|Debian\$//p" | sed "s/ $own/ $1/" | sort -u
}

# debian_root CODENAME FOLDER PACKAGES: makes a small Debian in FOLDER, which must not be there, with
# the packages, a list with commas; nothing half-made is left under that name. Without the tool or a
# mirror it says so and returns 1.
debian_root() {
    local lines
    if ! need bootstrap; then
        say "mmdebstrap could not be installed."
        return 1
    fi
    lines="$(debian_sources "$1")"
    if [[ -z $lines ]]; then
        apt-get -q update >&2 || true
        lines="$(debian_sources "$1")"
    fi
    if [[ -z $lines ]]; then
        say "This machine's apt knows no mirror of Debian."
        return 1
    fi
    # What the machine needs to reach the mirror, such as a proxy, is needed in there as well.
    apt-config dump | grep -E '^Acquire::(http|https|ftp|Check|Retries|Force)' >"$2.conf" || true
    rm -rf "$2.new"
    if ! mmdebstrap --quiet --mode=root --variant=minbase --include="$3" \
        --keyring=/usr/share/keyrings/debian-archive-keyring.gpg --aptopt="$2.conf" \
        "$1" "$2.new" - <<<"$lines" >&2; then
        say "The mirror gave none (see above)."
        return 1
    fi
    mv "$2.new" "$2"
}

# Runs in mount and process namespaces of its own, so that nothing is left of it: see debian_run.
debian_enter() {
    local device
    mount --bind "$debian" "$debian"
    mount -t proc proc "$debian/proc"
    mount -t sysfs -o ro sysfs "$debian/sys"
    mount -t tmpfs -o mode=755 tmpfs "$debian/dev"
    mkdir "$debian/dev/shm" "$debian/dev/pts"
    mount -t tmpfs tmpfs "$debian/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=666 devpts "$debian/dev/pts"
    for device in null zero full random urandom tty; do
        touch "$debian/dev/$device"
        mount --bind "/dev/$device" "$debian/dev/$device"
    done
    ln -s pts/ptmx "$debian/dev/ptmx"
    ln -s /proc/self/fd "$debian/dev/fd"
    mount -t tmpfs tmpfs "$debian/tmp"
    mount --bind -o ro /etc/resolv.conf "$debian/etc/resolv.conf"
    mkdir -p "$debian$root" "$root/build/debian-$release"
    mount --bind "$root" "$debian$root"
    mount --bind "$root/build/debian-$release" "$debian$root/build"
    mount -o remount,bind,ro "$debian$root"
    # No chroot: in one a user who is not root may make no namespaces, as the engine's sandbox does.
    cd "$debian" || return
    pivot_root . .
    umount -l .
    exec /usr/bin/env -i --chdir="$root" HOME=/root LANG=C.UTF-8 \
        TERM="${TERM-dumb}" PATH=/usr/sbin:/usr/bin:/sbin:/bin "$@"
}

# debian_run COMMAND...: runs it in $debian, a folder that debian_root made of the Debian $release, with
# the project's folder in its place, not to be written but for its builds. Does not return.
debian_run() {
    export -f debian_enter
    export debian root release
    exec unshare --mount --pid --ipc --fork --kill-child bash -euc 'debian_enter "$@"' bash "$@"
}
