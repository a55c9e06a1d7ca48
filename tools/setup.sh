#!/bin/bash
# usage: setup.sh GROUP...    (format, build, package, demo, test, bench)
# Installs what is missing on Debian 12, as root or with sudo. Fast when nothing is.
set -euo pipefail

packages_build=(build-essential cmake ninja-build libcli11-dev libpng-dev libjpeg-dev libtbb-dev)
packages_package=(
    g++-multilib libpng16-16:i386 libjpeg62-turbo:i386 libtbb12:i386  # 32-bit Linux
    g++-mingw-w64-i686-posix llvm       # 32-bit Windows; llvm-dlltool writes PxbLib.lib
    file)                               # with it CPack looks for binaries
packages_test=("${packages_package[@]}"
    wine wine32:i386
    clang lld                           # programs for Microsoft's ABI
    pkgconf abigail-tools
    googletest                          # as source: built for each target
    netpbm                              # other decoders of pictures
    procps                              # pkill
    qemu-user python3 clang-format clang-tidy
    libxxhash-dev                       # the manifest's hash, from its header
    nlohmann-json3-dev)                 # the benchmark, without its peers
packages_demo=(apngasm)
packages_format=(clang-format)
packages_bench=(
    libyuv-dev libpixman-1-dev libswscale-dev libavutil-dev libzimg-dev
    libopencv-core-dev libopencv-imgproc-dev)

wanted=()
for group; do
    case $group in
        format | build | package | demo | test | bench)
            declare -n group_packages=packages_$group ;;
        *) echo "setup.sh: unknown group '$group'" >&2; exit 2 ;;
    esac
    wanted+=("${group_packages[@]}")
done
mapfile -t wanted < <(printf '%s\n' "${wanted[@]}" | sort -u)

if ! command -v apt-get >/dev/null; then
    echo "setup.sh: needs apt-get (Debian 12); elsewhere install the like of: ${wanted[*]}" >&2
    exit 1
fi

missing() {
    local package
    for package in "${wanted[@]}"; do
        dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
            echo "$package"
    done
}

as_root=()
[ "$(id -u)" = 0 ] || as_root=(sudo)
export DEBIAN_FRONTEND=noninteractive

# An index that does not download (often that of i386 security updates) is no reason to give up.
update() {
    "${as_root[@]}" apt-get update -q || { sleep 5; "${as_root[@]}" apt-get update -q; } ||
        echo "setup.sh: some package index did not download; going on with the others" >&2
}
install() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "$@"
}

# Where the index of i386 security updates is missing, installed amd64 libraries may be newer than
# their i386 twins, which apt refuses. A pin above 1000 lets it take both from the main archive.
install_older() {
    local pin=/etc/apt/preferences.d/pxb-setup
    # shellcheck disable=SC2064
    trap "${as_root[*]} rm -f $pin" EXIT
    printf 'Package: *\nPin: release l=Debian-Security\nPin-Priority: -1\n\n%s' \
        $'Package: *\nPin: release l=Debian\nPin-Priority: 1001\n' |
        "${as_root[@]}" tee "$pin" >/dev/null
    install --allow-downgrades "$@"
}

mapfile -t todo < <(missing)
[ ${#todo[@]} = 0 ] && exit 0
echo "setup.sh: installing ${todo[*]}"
if [[ ${todo[*]} == *:i386* ]] && ! dpkg --print-foreign-architectures | grep -qx i386; then
    "${as_root[@]}" dpkg --add-architecture i386
fi
update
install "${todo[@]}" || {
    echo "setup.sh: retrying with the versions of the main archive" >&2
    install_older "${todo[@]}"
}
mapfile -t todo < <(missing)
[ ${#todo[@]} = 0 ] || { echo "setup.sh: still missing: ${todo[*]}" >&2; exit 1; }
