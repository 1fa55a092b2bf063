#!/bin/bash
# Holds an installed tree to its word: it can be moved, and be used from outside this one.
#
#   install.sh tree BUILD WORK LIBDIR SOURCE        installs BUILD, moves it to WORK/moved, compares it with the sources
#   install.sh cmake_package BUILD WORK VERSION     a C and a C++ host, built by CMake with find_package
#   install.sh pkg_config BUILD WORK LIBDIR VERSION the same hosts, with the flags that pkg-config tells
#   install.sh tool BUILD WORK VERSION              mcast6ctl finds its libraries
#
# CC, CXX and FLAGS are the compilers and what both are given.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
check=$1 build=$2 work=$3
moved=$work/moved
shift 3
# The tree is found where it is, not where the caller's environment leads.
unset LD_LIBRARY_PATH CMAKE_PREFIX_PATH PKG_CONFIG_PATH

die() {
    printf '%s\n' "$1"
    exit 1
}

# runs_as_host PROGRAM VERSION: a host tells the version of its headers, and finds what it wrote.
runs_as_host() {
    local answer
    answer=$("$1") || die "$1 failed: $answer"
    [[ $answer == "mcast6db $2: in by interface 3" ]] || die "$1 says '$answer'"
}

tree() {
    local libdir=$1 source=$2 component headers header
    rm -rf "$work"
    mkdir -p "$work"
    for component in runtime devel tool doc; do
        cmake --install "$build" --prefix "$work/alone/$component" --component "$component" >"$work/$component.log"
    done
    cmake --install "$build" --prefix "$work/first" >"$work/install.log"
    # Each file belongs to one component.
    diff <(cd "$work/first" && find . ! -type d | sort) \
        <(cd "$work/alone" && find . ! -type d | sed 's,^\./[a-z]*,.,' | sort)
    (cd "$work/alone" && [[ -f runtime/$libdir/libmcast6db.so.1 && -f devel/include/mcast6_db.h &&
        -x tool/bin/mcast6ctl && -f doc/share/doc/mcast6db/LICENSE ]]) || die "a component has not what belongs there"
    for headers in include platform/include; do
        (cd "$source/$headers" && find . -name '*.h') | while read -r header; do
            cmp "$source/$headers/$header" "$work/first/include/$header" || die "$header is not installed as it is"
        done
    done
    mv "$work/first" "$moved"
    if grep -rIlE --exclude-dir=doc "$work|$build|$source/(include|platform)" "$moved"; then
        die "these files name where they were made"
    fi
}

cmake_package() {
    local version=$1
    rm -rf "$work/cmake"
    cmake -S "$here/consumer" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$moved" -DWANTED="$version" \
        -DCMAKE_C_FLAGS="${FLAGS:-}" -DCMAKE_CXX_FLAGS="${FLAGS:-}" >"$work/cmake.log" 2>&1 ||
        die "$(cat "$work/cmake.log")"
    grep -qx "package $version in $moved/.*" <(sed 's/^-- //' "$work/cmake.log") ||
        die "found another package: $(cat "$work/cmake.log")"
    cmake --build "$work/cmake" >"$work/cmake.log" 2>&1 || die "$(cat "$work/cmake.log")"
    runs_as_host "$work/cmake/host_c" "$version"
    runs_as_host "$work/cmake/host_cpp" "$version"
    # A host that was written for the next major version must not get this one.
    if cmake -S "$here/consumer" -B "$work/cmake_next" -DCMAKE_PREFIX_PATH="$moved" \
        -DWANTED=$((${version%%.*} + 1)).0 >"$work/cmake_next.log" 2>&1; then
        die "the package passes for the next major version"
    fi
    grep -q "version: $version" "$work/cmake_next.log" || die "$(cat "$work/cmake_next.log")"
}

pkg_config() {
    local libdir=$1 version=$2 package flags told
    export PKG_CONFIG_PATH=$moved/$libdir/pkgconfig
    for package in mcast6db mcast6platform; do
        told=$(pkg-config --modversion "$package")
        [[ $told == "$version" ]] || die "$package.pc tells version $told, not $version"
    done
    [[ -f $moved/$libdir/libmcast6db.so.$version && -f $moved/$libdir/libmcast6platform.so.$version ]] ||
        die "the libraries' files are not named by version $version"
    read -ra flags <<<"$(pkg-config --cflags --libs mcast6db mcast6platform) ${FLAGS:-}"
    export LD_LIBRARY_PATH=$moved/$libdir
    "$CC" -std=c11 "$here/consumer/host.c" "${flags[@]}" -o "$work/pkg_host_c"
    runs_as_host "$work/pkg_host_c" "$version"
    # As many distributions link: what is not needed is left out.
    "$CXX" -std=c++17 "$here/consumer/host.cpp" -Wl,--as-needed "${flags[@]}" -o "$work/pkg_host_cpp"
    runs_as_host "$work/pkg_host_cpp" "$version"
}

tool() {
    local version=$1 told
    told=$("$moved/bin/mcast6ctl" --version)
    [[ $told == "mcast6ctl $version" ]] || die "mcast6ctl --version tells '$told', not version $version"
    told=$("$moved/bin/mcast6ctl" count l3-mfib)
    [[ $told == 0 ]] || die "mcast6ctl count l3-mfib tells '$told'"
    ldd "$moved/bin/mcast6ctl" | awk '/libmcast6/ { print $1, $3 }' >"$work/loaded"
    [[ $(wc -l <"$work/loaded") == 2 ]] || die "mcast6ctl needs: $(cat "$work/loaded")"
    ! grep -v "$(realpath "$moved")/" <(while read -r _ path; do realpath "$path"; done <"$work/loaded") ||
        die "mcast6ctl takes libraries from elsewhere"
}

"$check" "$@"
