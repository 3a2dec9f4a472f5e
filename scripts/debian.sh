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
