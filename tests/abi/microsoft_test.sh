#!/bin/bash
# usage: microsoft_test.sh SOURCE HEADER_FOLDER IMPORT_LIBRARY LIBRARY RUN_PROGRAM FOLDER
# Compiles a program for Microsoft's ABI, links it with the Microsoft-style import library, and runs
# it beside the library.
set -eu
source=$1 headers=$2 import_library=$3 library=$4 run_program=$5 folder=$6
mkdir -p "$folder"
clang --target=i686-pc-windows-msvc -std=c99 -O1 -fno-builtin -Wall -Wextra -pedantic -Werror \
    -I"$headers" -c "$source" -o "$folder/abi_test.obj"
lld-link /nologo /entry:main /subsystem:console /nodefaultlib /out:"$folder/abi_test.exe" \
    "$folder/abi_test.obj" "$import_library"
cp "$library" "$folder"
exec "$run_program" "$folder/abi_test.exe"
