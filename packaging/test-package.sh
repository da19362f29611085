#!/usr/bin/env bash
# Installs the packages into a fresh Debian, over the one package that release 1.1.0 was, starts the
# programs there, and removes them again: they have to come up, and the packages have to leave
# nothing behind. Needs root, debootstrap and a mirror; takes a few minutes, most of them to fetch
# the distribution.
#
#   test-package.sh FOLDER-OF-THE-PACKAGES
set -euo pipefail
export LC_ALL=C

packages=$1
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
cp "$packages"/*.deb "$root/tmp"
command=$(cd "$packages" && echo ztm_*.deb)
windows=$(cd "$packages" && echo ztm-eval_*.deb)
documents=$(cd "$packages" && echo ztm-eval-doc_*.deb)
version=$(dpkg-deb -f "$packages/$command" Version)

# A package with the name and the files of release 1.1.0; what they hold does not matter.
old=$root/tmp/old
mkdir -p "$old/DEBIAN"
for package in "$command" "$windows" "$documents"; do
    dpkg-deb -x "$packages/$package" "$old"
done
printf '%s\n' "Package: ztm-eval" "Version: 1.1.0" "Architecture: $(dpkg --print-architecture)" \
    "Maintainer: nobody <nobody@ztm-eval.invalid>" "Description: the release before" \
    >"$old/DEBIAN/control"
dpkg-deb -b "$old" "$root/tmp/old.deb" >/dev/null

inside apt-get install -y -qq --no-install-recommends xvfb xauth openbox wmctrl >/dev/null 2>&1
for package in "$command" "$windows"; do
    inside apt-get satisfy -y -qq --no-install-recommends \
        "$(dpkg-deb -f "$packages/$package" Depends | sed 's/ztm (= [^)]*), *//')" >/dev/null 2>&1
done
files >"$root/tmp/before"

inside dpkg -i /tmp/old.deb >/dev/null
inside dpkg -i "/tmp/$command" >/dev/null 2>&1 && { echo "1.1.0 is not broken"; exit 1; }
inside dpkg --purge --force-remove-reinstreq ztm >/dev/null 2>&1 || true
inside apt-get install -y -qq --no-install-recommends "/tmp/$command" "/tmp/$windows" \
    "/tmp/$documents" >/dev/null 2>&1
for package in ztm ztm-eval ztm-eval-doc; do
    [ "$(inside dpkg-query -W -f='${Version}' "$package")" = "$version" ]
done
echo "1.1.0 was upgraded to $version"
if inside ldd /usr/lib/ztm-eval/ztm{,-eval,-eval-i2c,-eval-sim} | grep "not found"; then
    exit 1
fi
[ "$(inside ztm --adapter sim scan)" = "$(printf 'ZTM7720\t0x50')" ]
echo "ztm: found the simulated chip"
start ztm-eval-sim "Search Wizard"
start ztm-eval-i2c "I2C Bus"
start ztm-eval "Search Wizard"

inside dpkg --purge ztm-eval-doc ztm-eval >/dev/null
[ "$(inside ztm --adapter sim scan)" = "$(printf 'ZTM7720\t0x50')" ]
! inside ldd /usr/lib/ztm-eval/ztm | grep Qt
echo "ztm: works without the programs with windows"
inside dpkg --purge ztm >/dev/null
files >"$root/tmp/after"
diff "$root/tmp/before" "$root/tmp/after" || { echo "left behind (>) or lost (<)"; exit 1; }
echo "the packages came, ran and went without a trace"
