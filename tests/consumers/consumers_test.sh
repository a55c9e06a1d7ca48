#!/bin/bash
# usage: consumers_test.sh SOURCES BUILD C_COMPILER CXX_COMPILER TOOLCHAIN_FILE [RUN_PROGRAM]
# Programs outside of the build, in C and C++, use what is installed, what the archive holds and what
# the Debian packages hold, in every way that there is to build and link them.
set -euo pipefail
sources=$1 build=$2 cc=$3 cxx=$4 toolchain=$5 run_program=${6:-}
suffix=${run_program:+.exe}
c=$sources/tests/abi/abi_test.c cpp=$sources/tests/consumers/frame.cpp
scratch=$build/consumers
rm -rf "$scratch" && mkdir "$scratch" && cd "$scratch"
export SOURCE_DATE_EPOCH=1000000000 TZ=UTC
fail() { echo "consumers_test.sh: $*" >&2; exit 1; }

pack() { cpack --config "$build/CPackConfig.cmake" -B "$@" >"$1.log" || { cat "$1.log"; exit 1; }; }
run() {  # PROGRAM of the folder at hand
    case $run_program in
        "") LD_LIBRARY_PATH=$tree/lib "./$1" ;;
        *) cp "$tree/bin/PxbLib.dll" . && "$run_program" "$1$suffix" ;;
    esac || fail "$tree, $1: status $?"
}
build_and_run() {  # NAME FLAG...: both programs
    local name=$1; shift
    $cc "$c" "$@" -o "c_$name$suffix"
    $cxx "$cpp" "$@" -o "cpp_$name$suffix"
    run "c_$name"
    run "cpp_$name"
}
by_microsoft() {
    local flags="-O1 -fno-builtin -fno-exceptions -Wall -Wextra -pedantic -Werror" language
    for language in c cpp; do
        # shellcheck disable=SC2086
        clang --target=i686-pc-windows-msvc $flags -I"$tree/include" -c "${!language}" -o $language.obj
        lld-link /nologo /entry:main /subsystem:console /nodefaultlib /out:${language}_ms.exe \
            $language.obj "$tree/lib/PxbLib.lib"
        run ${language}_ms
    done
}
by_cmake() {  # a later tree replaces the one before, which saves asking the compilers again
    cmake -G Ninja -S "$sources/tests/consumers/project" -B ../cmake --log-level=WARNING \
        ${toolchain:+-DCMAKE_TOOLCHAIN_FILE="$toolchain"} -DPxbLib_DIR="$tree/lib/cmake/PxbLib" \
        -Dsource_c="$c" -Dsource_cpp="$cpp" >cmake.log
    cmake --build ../cmake --clean-first >cmake.log
    cp ../cmake/*_cmake* .
    run c_cmake
    run cpp_cmake
}
consume() {  # TREE
    tree=$1
    mkdir -p "programs/${tree##*/}" && pushd "programs/${tree##*/}" >/dev/null
    build_and_run by_hand -I"$tree/include" -L"$tree/lib" -lPxbLib
    export PKG_CONFIG_LIBDIR=$tree/lib/pkgconfig
    # shellcheck disable=SC2046
    build_and_run pkg_config $(pkg-config --cflags --libs "PxbLib >= 1.0")
    by_cmake
    [ -z "$run_program" ] || by_microsoft
    popd >/dev/null
}

cmake --install "$build" --prefix "$PWD/installed" >installed.log
pack packages
for archive in packages/PxbLib-*; do cmake -E tar xf "$archive"; done
unpacked=$(echo "$PWD"/PxbLib-*)
consume "$PWD/installed"
consume "$unpacked"
if compgen -G 'packages/*.deb' >/dev/null; then
    for package in packages/*.deb; do dpkg-deb -x "$package" debian; done
    consume "$PWD/debian/usr"
fi

# Packages do not change by being made again, and do not name this folder.
sleep 1
if [ -n "$run_program" ]; then pack again -G ZIP; else pack again -G TGZ; fi
for archive in again/PxbLib-*; do cmp "$archive" "packages/${archive##*/}"; done
! grep -rF "$sources" "$unpacked" || fail "packages name $sources"

if [ -n "$run_program" ]; then
    for file in PxbLib.dll pxb.exe; do
        version=$(sed -n 's/^set(PACKAGE_VERSION "\(.*\)")/\1/p' "$build/PxbLibConfigVersion.cmake")
        strings -el "$unpacked/bin/$file" | grep -A 1 -x FileVersion | grep -x "$version" ||
            fail "$file has no resource that names version $version"
    done
else
    library=$unpacked/lib/libPxbLib.so
    readelf -d "$library" | grep -F 'soname: [libPxbLib.so.1]' || fail "no soname"
    [ -z "$(nm "$library" 2>&1 | grep ' PxbNew$')" ] || fail "the library is not stripped"
    place=$(addr2line -e "$library" "$(nm -D "$library" | sed -n 's/ T PxbNew$//p')")
    [[ $place == */core/buffer.cpp:* ]] || fail "debug information knows PxbNew as $place"
fi
