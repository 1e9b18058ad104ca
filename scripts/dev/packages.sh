# shellcheck shell=bash
# Installs Debian packages, those that are missing only. To be sourced.

# Names of those given packages that are not installed.
missing_packages() {
    local installed
    installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null || true)
    local package
    for package in "$@"; do
        grep -qFx "$package installed" <<<"$installed" || echo "$package"
    done
}

# Installs the given packages. Says and does nothing when all of them are there.
install_packages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        echo "corvinex: this is not a Debian system. Please install by its own means what these" \
            "Debian 12 packages hold, then run scripts/build: $*" >&2
        return 1
    fi
    local missing
    mapfile -t missing < <(missing_packages "$@")
    if ((${#missing[@]} == 0)); then
        return 0
    fi
    local as_root=()
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            echo "corvinex: please install as root: apt-get install ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "corvinex: installing ${missing[*]}" >&2
    local log
    log=$(mktemp)
    if ! { "${as_root[@]}" apt-get update -q &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y \
            --no-install-recommends -o Dpkg::Use-Pty=0 "${missing[@]}"; } >"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        rm -f "$log"
        echo "corvinex: the packages could not be installed" >&2
        return 1
    fi
    rm -f "$log"
}
