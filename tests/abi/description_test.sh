#!/bin/bash
# usage: description_test.sh DESCRIPTION LIBRARY HEADER C_COMPILER FLAG...
# The library's binary interface is the described one, and changes of the header would be noticed:
# the header with a body for each function is a library, too.
set -eu
description=$1 library=$2 header=$3
shift 3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
same() { abidiff --exported-interfaces-only "$description" "$1" >"$scratch/report"; }

same "$library" || { cat "$scratch/report"; echo "CONTRIBUTING.md tells how to renew it"; exit 1; }

planted() {  # EDIT: of the header
    sed "/^PXB_STATIC_ASSERT/d; $1" "$header" |
        perl -0pe 's/^(PXB_API[^;]*);/$1 { __builtin_trap(); }/mg' >"$scratch/library.c"
    "${compiler[@]}" -g -shared -fPIC -Wl,-soname,libPxbLib.so.1 -o "$scratch/library.so" \
        "$scratch/library.c"
    same "$scratch/library.so"
}
compiler=("$@")
planted "" || { cat "$scratch/report"; echo "the unchanged header differs"; exit 1; }
for edit in 's/int32_t stride;/int64_t stride;/' '/^PXB_API.*PxbRotate(/d' \
    's/\(PxbNew.*\)int32_t withAlpha/\1double withAlpha/' '/PxbPixelsRGB8/s/uint8_t\*/uint16_t*/'; do
    ! planted "$edit" || { echo "not noticed: $edit"; exit 1; }
done
