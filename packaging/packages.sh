# Sourced by run.sh and test.sh: quvo_install_packages <section>… installs those packages of packages.txt that are
# missing. With nothing missing it needs neither rights nor a network.

quvo_sections() {
    for section in "$@"; do
        sed -n "/^\[$section\]/,/^\[/{/^\[/d;/^#/d;/^$/d;p}" packages.txt
    done
}

quvo_install_packages() {
    missing=""
    for package in $(quvo_sections "$@"); do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0

    as_root=""
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || { echo "These packages are missing, and there is no sudo to install them:$missing" >&2; return 1; }
        as_root=sudo
    fi
    echo "Installing:$missing"
    log=$(mktemp)
    if $as_root apt-get update -qq >"$log" 2>&1 \
        && $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >>"$log" 2>&1; then
        rm -f "$log"
    else
        tail -n 20 "$log" >&2
        echo "The packages could not be installed; the whole log is $log" >&2
        return 1
    fi
}
