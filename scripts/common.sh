# Shared by the scripts beside it: strict mode, the repository's root as the current directory, missing packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# What a build of the library with its tests and examples needs.
BUILD_PACKAGES=(g++ cmake ninja-build libhwy-dev libgtest-dev libsndfile1-dev libpng-dev pkg-config python3)

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# need PACKAGE...: installs those Debian packages of the list that are missing; root is asked for only then.
need() {
    command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
        fail "this is not Debian; install the equivalents of: $*"
    local missing=() package
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    local as_root=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "neither root nor sudo: as root, run apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq || echo "The package lists could not be renewed; trying with those at hand" >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null ||
        fail "apt-get could not install ${missing[*]}"
}

# build PRESET [ARGUMENT...]: configures and builds a preset; the arguments go to cmake --build.
build() {
    local preset=$1
    shift
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" --parallel "$(nproc)" "$@"
}
