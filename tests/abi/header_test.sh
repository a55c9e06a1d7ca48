#!/bin/bash
# usage: header_test.sh HEADER C_COMPILER CXX_COMPILER FLAG...
# The header compiles alone, and twice, in every supported language.
set -eu
header=$1 cc=$2 cxx=$3
shift 3
strict="-Wall -Wextra -pedantic -Werror -fsyntax-only -I${header%/*} $*"

include='#include <PxbLib.h>
#include <PxbLib.h>
typedef ImageBuffer NotAnEmptyUnit;'
for standard in c89 c99 c11 c17; do
    # shellcheck disable=SC2086
    $cc $strict -std=$standard -x c - <<<"$include"
done
for standard in c++98 c++11 c++14 c++17 c++20; do
    # shellcheck disable=SC2086
    $cxx $strict -std=$standard -x c++ - <<<"$include"
done
