#!/bin/bash
# usage: readme_test.sh    in the folder of the repository
# What README.md tells to type works as pasted, in its order and in one shell, but for the lines that
# start the tests themselves. The program is the header's.
set -euo pipefail
tools=$PWD/tools scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

block() {  # LANGUAGE: the contents of such blocks
    awk -v fence="\`\`\`$1" '$0 == "```" {inside = 0} inside {print} $0 == fence {inside = 1}' README.md
}
mkdir "$scratch/"{first,bin,sdk}
block c >"$scratch/first/first.c"
block cmake >"$scratch/first/CMakeLists.txt"
block sh | grep -vE '^(\./dev test|ctest)\b' >"$scratch/session"
diff -B "$scratch/first/first.c" \
    <(sed -n '/^ \* A program/,/^ \* Formats/s/^ \*\( \{5\}\|$\)//p' include/PxbLib.h) ||
    { echo "readme_test.sh: the program of the header is another" >&2; exit 1; }

# Stand-ins: wine with a folder of its own, and of Microsoft's tools the compiler and a C library.
cat >"$scratch/bin/wine" <<<"#!/bin/bash
PATH=$PATH exec $tools/wine-run.sh \"\$@\""
cat >"$scratch/bin/cl" <<<"#!/bin/bash
export INCLUDE=$scratch/sdk LIB=$scratch/sdk
exec clang --driver-mode=cl --target=i686-pc-windows-msvc -GS- -fuse-ld=lld \"\$@\""
chmod +x "$scratch"/bin/*
export XDG_CACHE_HOME=${XDG_CACHE_HOME:-$HOME/.cache} HOME=$scratch PATH=$scratch/bin:$PATH
echo 'int printf(const char*, ...);' >"$scratch/sdk/stdio.h"
echo 'int main(void); void exit(int); void mainCRTStartup(void) { exit(main()); }' >"$scratch/start.c"
cl -c "$scratch/start.c" "-Fo$scratch/start.obj"
printf 'LIBRARY msvcrt.dll\nEXPORTS\nexit\nmemset\nprintf\n' >"$scratch/msvcrt.def"
llvm-dlltool -m i386 -d "$scratch/msvcrt.def" -l "$scratch/msvcrt.lib"
llvm-lib "/out:$scratch/sdk/libcmt.lib" "$scratch/start.obj" "$scratch/msvcrt.lib"
cp "$scratch/sdk/libcmt.lib" "$scratch/sdk/oldnames.lib"

echo 'wine first.exe' | cat "$scratch/session" - >"$scratch/session.sh"
bash -euo pipefail "$scratch/session.sh" >"$scratch/output" 2>&1 ||
    { cat "$scratch/output"; echo "readme_test.sh: README.md does not work" >&2; exit 1; }
runs=$(tr -d '\r' <"$scratch/output" | grep -cxF "$(block text)" || true)
[ "$runs" = 5 ] || { echo "readme_test.sh: $runs of 5 programs ran as README.md says" >&2; exit 1; }
