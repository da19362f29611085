#!/usr/bin/env bash
# Installs the package into a fresh Debian, starts the programs there, and removes it again: they
# have to come up, and the package has to leave nothing behind. Needs root, debootstrap and a
# mirror; takes a few minutes, most of them to fetch the distribution.
#
#   test-package.sh PACKAGE
set -euo pipefail
export LC_ALL=C

package=$1
root=$(mktemp -d)
finish() {
    ! mountpoint -q "$root/proc" || umount "$root/proc"
    rm -rf --one-file-system "$root"
}
trap finish EXIT

inside() {
    chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root \
        LC_ALL=C DEBIAN_FRONTEND=noninteractive "$@"
}

# Every file of the installation besides the package manager's own notes and what is only cached.
files() {
    find "$root" -xdev \( -path "$root/var/lib/dpkg" -o -path "$root/var/cache" -o \
        -path "$root/var/log" -o -path "$root/tmp" -o -path "$root/proc" \) -prune -o -print |
        sed "s|^$root||" | sort
}

# Starts a program, waits for the window with the given title, and closes it as a user would.
start() {
    local program=$1 title=$2
    inside xvfb-run -a bash -euo pipefail -c '
        title=$2
        wait_for() {
            local try
            for ((try = 0; try < 100; ++try)); do
                ! "$@" >/dev/null 2>&1 || return 0
                sleep 0.2
            done
            echo "waited in vain: $*"
            cat /tmp/said
            return 1
        }
        shown() { wmctrl -l | grep -F "$title"; }
        gone() { ! kill -0 "$program"; }
        HOME=/tmp openbox >/dev/null 2>&1 &
        wait_for wmctrl -m
        "$1" 2>/tmp/said &
        program=$!
        wait_for shown
        wmctrl -c "$title"
        wait_for gone
        wait $program
    ' - "$program" "$title"
    echo "$program: started and closed"
}

echo "making a fresh Debian"
debootstrap --variant=minbase bookworm "$root" >/dev/null
cp -L /etc/resolv.conf "$root/etc/resolv.conf" 2>/dev/null || true
mount --bind /proc "$root/proc"
cp "$package" "$root/tmp/ztm-eval.deb"
inside apt-get install -y -qq --no-install-recommends xvfb xauth openbox wmctrl >/dev/null 2>&1
inside apt-get satisfy -y -qq --no-install-recommends \
    "$(dpkg-deb -f "$package" Depends)" >/dev/null 2>&1
files >"$root/tmp/before"

inside dpkg -i /tmp/ztm-eval.deb >/dev/null
if inside ldd /usr/lib/ztm-eval/ztm{,-eval,-eval-i2c,-eval-sim} | grep "not found"; then
    exit 1
fi
[ "$(inside ztm --adapter sim scan)" = "$(printf 'ZTM7720\t0x50')" ]
echo "ztm: found the simulated chip"
start ztm-eval-sim "Search Wizard"
start ztm-eval-i2c "I2C Bus"
start ztm-eval "Search Wizard"

inside dpkg --purge ztm-eval >/dev/null
files >"$root/tmp/after"
diff "$root/tmp/before" "$root/tmp/after" || { echo "left behind (>) or lost (<)"; exit 1; }
echo "the package came, ran and went without a trace"
