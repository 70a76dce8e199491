#!/bin/sh
# Usage: install.sh tree WORK LEVELS BUILD
#        install.sh program WORK LEVELS SOURCE LANGUAGE COMPILER FLAGS PACKAGES
#        install.sh dlopen WORK LEVELS COMPILER
# The first form installs BUILD into WORK/tree, the second builds a program of consumer/ against that tree and runs it, the
# third one that knows the library by its unversioned name alone.
set -eu
unset LD_LIBRARY_PATH
what=$1 work=$2 levels=$3
shift 3
consumer=$(dirname "$0")/consumer
tree=$work/tree
loader=/lib64/ld-linux-x86-64.so.2

fail() { echo "$*" >&2; exit 1; }
libdir() { dirname "$(find "$1" -name pkgconfig)"; }
same() { [ "$2" = "$3" ] || fail "$1 is '$2', not '$3'"; }
needs() { readelf -d "$1" | sed -n 's/.*(RUNPATH).*\[\(.*\)\]/\1/p'; }

install_tree() { # BUILD
    rm -rf "$work"
    mkdir -p "$work"
    prefix=$(sed -n 's/^CMAKE_INSTALL_PREFIX:PATH=//p' "$1/CMakeCache.txt")
    DESTDIR=$work/staged cmake --install "$1" > "$work/staged.log"
    cmake --install "$1" --prefix "$work/elsewhere" > "$work/elsewhere.log"
    (cd "$work/staged$prefix" && find . | sort) > "$work/staged.list"
    (cd "$work/elsewhere" && find . | sort) > "$work/elsewhere.list"
    diff "$work/staged.list" "$work/elsewhere.list"
    mv "$work/elsewhere" "$tree"

    lib=$(libdir "$tree")
    for name in mx corex64; do
        same "libkesl$name.so" "$(readlink "$lib/libkesl$name.so")" libkesl$name.so.6.1
        same "the path in libkesl$name.so.6.1" "$(needs "$lib/libkesl$name.so.6.1")" "\$ORIGIN"
    done
    same "the path in libkesl.so.1" "$(needs "$lib/libkesl.so.1")" "\$ORIGIN"
    for level in $levels; do
        for name in libkeslmx.so libkesl.so; do
            file=$lib/glibc-hwcaps/x86-64-$level/$name
            same "the path in $name of $level" "$(needs "$file")" "\$ORIGIN:\$ORIGIN/../.."
        done
    done
    # shellcheck disable=SC2086
    set -- "$1" $levels
    same "the number of files for levels" "$(find "$lib" -path '*hwcaps*' -type f | wc -l)" $((2 * ($# - 1)))
    same "the number of links for levels" "$(find "$lib" -path '*hwcaps*' -type l | wc -l)" $((3 * ($# - 1)))
    if grep -rF -e "$work" -e "$1" "$lib/pkgconfig" "$lib/cmake"; then fail "these files are tied to a directory"; fi
}

# Runs a program with the levels that a list allows, and with exactly the library that is expected then.
run() { # PROGRAM LIST FILE
    "$loader" --glibc-hwcaps-mask "$2" --list "$1" > "$1.loaded" || fail "$1 does not load"
    same "the library for $2" "$(realpath "$(awk -v name="$soname" '$1 == name { print $3 }' "$1.loaded")")" "$(realpath "$3")"
    same "the companion for $2" "$(realpath "$(awk '$1 == "libkeslcorex64.so.6.1" { print $3 }' "$1.loaded")")" \
        "$lib/libkeslcorex64.so.6.1"
    "$loader" --glibc-hwcaps-mask "$2" "$1" || fail "$1 fails with the library for $2"
    echo "ok: $(basename "$(dirname "$1")"), $3"
}

# COMMAND... LIST FILE, for the plain library and for each level of this processor; leaves the last one's file in `best`.
at_all_levels() {
    best=$lib/$soname
    "$@" none "$best"
    for level in $levels; do # in rising order
        if ! "$loader" --help | grep -q "x86-64-$level (supported, searched)"; then
            echo "skipped: this processor has no x86-64-$level"
            continue
        fi
        best=$lib/glibc-hwcaps/x86-64-$level/$soname
        "$@" "x86-64-$level" "$best"
    done
}

run_at_all_levels() { # PROGRAM
    at_all_levels run "$1"
    same "the library of a plain start" \
        "$(LD_TRACE_LOADED_OBJECTS=1 "$1" | awk -v name="$soname" '$1 == name { print $3 }' | xargs realpath)" "$(realpath "$best")"
    "$1" || fail "$1 fails"
}

build_program() { # SOURCE LANGUAGE COMPILER FLAGS PACKAGES
    command -v "$3" > /dev/null || { echo "skipped: no $3"; exit 77; }
    lib=$(realpath "$(libdir "$tree")")
    out=$work/$1
    rm -rf "$out"
    mkdir -p "$out/pkg-config"

    export PKG_CONFIG_PATH="$lib/pkgconfig"
    case $5 in
    kesl | kesl-fortran) soname=libkesl.so.1 version=1.0 ;;
    *) soname=libkeslmx.so.6.1 version=6.1 ;;
    esac
    flags=$(pkg-config --cflags --libs "$5 >= $version")
    # shellcheck disable=SC2086
    "$3" $4 "$consumer/$1" -o "$out/pkg-config/program" $flags -Wl,-rpath,"$lib"
    run_at_all_levels "$out/pkg-config/program"

    cmake -S "$consumer" -B "$out/find_package" -D SOURCE="$1" -D LANGUAGE="$2" -D CMAKE_"$2"_COMPILER="$3" \
        -D FLAGS="$4" -D PACKAGES="$5" -D CMAKE_PREFIX_PATH="$tree" > "$out/find_package.log"
    cmake --build "$out/find_package" >> "$out/find_package.log" || { cat "$out/find_package.log"; exit 1; }
    run_at_all_levels "$out/find_package/program"
}

opens() { # PROGRAM LIST FILE
    same "what dlopen finds for $2" "$(realpath "$("$loader" --glibc-hwcaps-mask "$2" "$1")")" "$(realpath "$3")"
}

open_library() { # COMPILER
    lib=$(realpath "$(libdir "$tree")")
    out=$work/dlopen.c
    mkdir -p "$out"
    soname=libkeslmx.so.6.1
    "$1" "$consumer/dlopen.c" -o "$out/program" -ldl -Wl,-rpath,"$lib"
    at_all_levels opens "$out/program"
    same "what dlopen finds at a plain start" "$(realpath "$("$out/program")")" "$best"
}

case $what in
tree) install_tree "$@" ;;
program) build_program "$@" ;;
dlopen) open_library "$@" ;;
esac
