# What ./run and ./test share. Sourced by both from the root of the repository, under "set -euo pipefail".

say() { printf '==> %s\n' "$*"; }
complain() { printf '%s\n' "$*" >&2; }

# install_missing PACKAGE...: installs those Debian packages that are not there yet. Asks nothing, and on a machine
# without dpkg changes nothing: the build then says what it lacks.
install_missing() {
    command -v dpkg-query >/dev/null || { say "no dpkg here: taking the tools that are installed"; return 0; }
    local package missing=() as_root=()
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            complain "These packages are missing: ${missing[*]}. Install them as root, then run this again."
            return 1
        }
        as_root=(sudo --)
    fi
    say "installing ${missing[*]}"
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=300)
    # An index that cannot be brought up to date may still do: the install below has the last word.
    "${apt[@]}" update </dev/null || complain "The package index could not be brought up to date; trying with the old one."
    "${apt[@]}" install -y --no-install-recommends "${missing[@]}" </dev/null >/dev/null || {
        complain "Installing failed: ${missing[*]}. Install them by hand, then run this again."
        return 1
    }
}

# build PRESET [TARGET...]: configures and builds build/PRESET; only what changed is compiled.
build() {
    local preset=$1 targets=()
    shift
    [ $# -eq 0 ] || targets=(--target "$@")
    forget_moved_build "build/$preset"
    say "building $preset"
    cmake --preset "$preset" >"build/$preset.configure.log" 2>&1 || {
        cat "build/$preset.configure.log" >&2
        return 1
    }
    cmake --build --preset "$preset" "${targets[@]}"
}

# A build folder remembers where it was made. One that came along with a copied tree is of no use.
forget_moved_build() {
    mkdir -p build
    if [ -f "$1/CMakeCache.txt" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$1/CMakeCache.txt"; then
        rm -rf "$1"
    fi
}
