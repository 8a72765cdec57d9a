#!/usr/bin/env bash
# Installs the library from build dir $1 into a temporary prefix, then builds and runs a
# consumer twice: once through find_package(QvXmlLib16 CONFIG), once through pkg-config.
set -euo pipefail
build=${1:-build}
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null
if grep -rlE 'expat|pcre2|zlib' "$prefix/include/QvXmlLib16"; then
    echo "installed headers name a third-party library" >&2
    exit 1
fi

echo "-- consumer through find_package"
cmake -S "$here" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
LD_LIBRARY_PATH="$prefix/lib" "$work/cmake-build/consumer"

echo "-- consumer through pkg-config"
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
# shellcheck disable=SC2046
g++ -std=c++17 "$here/consumer.cpp" -o "$work/consumer-pc" $(pkg-config --cflags --libs qvxmllib16)
LD_LIBRARY_PATH="$prefix/lib" "$work/consumer-pc"

echo "-- the library loaded with dlopen, by a plugin"
# shellcheck disable=SC2046
g++ -std=c++17 -shared -fPIC "$here/plugin.cpp" -o "$work/plugin.so" \
    $(pkg-config --cflags --libs qvxmllib16)
g++ -std=c++17 "$here/loader.cpp" -o "$work/loader" -ldl
LD_LIBRARY_PATH="$prefix/lib" "$work/loader" "$work/plugin.so"
echo "install check passed"
