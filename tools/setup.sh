#!/usr/bin/env bash
# Installs what debian-packages.txt lists and this machine lacks; says nothing when all is there.
name=${name:-setup}
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

wanted() {
    sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$root/debian-packages.txt"
}

is_installed() {
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

command -v dpkg-query >/dev/null || fail "this is no Debian machine; install by hand what debian-packages.txt lists"

missing=()
while read -r package; do
    is_installed "$package" || missing+=("$package")
done < <(wanted)
((${#missing[@]})) || exit 0

as_root=()
if ((EUID != 0)); then
    command -v sudo >/dev/null ||
        fail "these packages are missing, and only root or sudo can install them: ${missing[*]}"
    as_root=(sudo)
    # Without a terminal nobody can type a password: better to fail than to wait.
    [[ -t 0 ]] || as_root+=(-n)
fi
as_root+=(env DEBIAN_FRONTEND=noninteractive)
wait_for_lock=(-o DPkg::Lock::Timeout=600)

# install_step TEXT COMMAND…: not through `quietly`, whose input is closed: sudo may ask.
install_step() {
    local log=$log_folder/setup.log text=$1
    shift
    mkdir -p "$log_folder"
    say "$text"
    if ! "${as_root[@]}" "$@" >"$log" 2>&1; then
        tail -n 30 "$log" >&2
        fail "$text failed; all of its output is in $log"
    fi
}

install_step "fetching the list of packages" apt-get "${wait_for_lock[@]}" update
install_step "installing ${missing[*]}" \
    apt-get "${wait_for_lock[@]}" install -y --no-install-recommends "${missing[@]}"
