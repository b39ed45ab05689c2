# Sourced by ./run and ./test: makes sure that what they need is installed, and says what is not.

# What it takes to build and to run.
debian_build_packages=(g++ cmake ninja-build ccache git libfmt-dev libicu-dev
    libboost-json1.81-dev libcli11-dev libsystemd-dev qt6-base-dev qt6-declarative-dev qt6-svg-dev
    qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtqml qml6-module-qtqml-models
    qml6-module-qtqml-workerscript fonts-open-sans fonts-jetbrains-mono)
homebrew_build_packages=(cmake ninja ccache fmt icu4c boost cli11 qt)

# What the tests take besides.
debian_test_packages=(libgtest-dev libgmock-dev clang-16 clang-format-16 clang-tidy-16
    libclang-rt-16-dev lld-16 at-spi2-core dbus-daemon python3-gi xvfb openbox trayer xdotool
    imagemagick x11-utils qt6-declarative-dev-tools flake8 gh python3 python3-venv openssl
    ca-certificates)
# From Debian only where there is none: one from elsewhere is newer, and the two exclude each other.
command -v npm >/dev/null || debian_test_packages+=(npm)
homebrew_test_packages=(googletest llvm flake8 gh python3 openssl node pnpm)

# Messages go to standard error, so that the output of the program stays clean.
say() { printf '%s\n' "$@" >&2; }

as_root() { if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi; }

install_debian_packages() {
    local missing=() package by_hand
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            missing+=("$package")
    done
    [ ${#missing[@]} = 0 ] && return
    by_hand="apt-get install --no-install-recommends ${missing[*]}"
    if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
        say "Some packages are missing, and only root may install them. As root, run:" "    $by_hand"
        return 1
    fi
    say "Installing, which may take some minutes: ${missing[*]}"
    as_root apt-get update -qq >&2 || say "The lists of packages are not fresh; going on with them."
    # Of what apt-get says, one line a package shows that it goes on; its errors come through too.
    as_root env DEBIAN_FRONTEND=noninteractive DEBCONF_NOWARNINGS=yes apt-get install -y -qq \
        -o Dpkg::Use-Pty=0 --no-install-recommends "${missing[@]}" </dev/null |
        { grep --line-buffered '^Setting up' >&2 || true; } || {
        say "That failed; the lines above say why. When that is mended, run this again, or as root:" \
            "    $by_hand"
        return 1
    }
}

install_homebrew_packages() {
    local missing=() package
    for package in "$@"; do # `brew list` knows a formula by its other names too
        brew list --formula "$package" >/dev/null 2>&1 || missing+=("$package")
    done
    [ ${#missing[@]} = 0 ] && return
    say "Installing, which may take some minutes: ${missing[*]}"
    brew install --quiet "${missing[@]}" >&2
}

# Debian has no pnpm. Without it the tests that take it are skipped.
install_pnpm() {
    if command -v pnpm >/dev/null || ! command -v npm >/dev/null; then return; fi
    say "Installing pnpm with npm"
    as_root npm install --global --no-fund --no-audit --loglevel=error pnpm </dev/null >&2 ||
        say "That failed; going on without it. Tests that take it are skipped."
}

# Whose home can't be written, as in some containers, builds without a store of earlier results.
[ -w "${HOME:-/}" ] || export CCACHE_DISABLE=1

# `require_packages build` or `require_packages build test`
require_packages() {
    local packages=() group list
    if command -v brew >/dev/null && [ "$(uname)" = Darwin ]; then
        for group in "$@"; do list="homebrew_${group}_packages[@]"; packages+=("${!list}"); done
        install_homebrew_packages "${packages[@]}"
        # Homebrew keeps ICU and its compiler out of the usual places.
        CMAKE_PREFIX_PATH="$(brew --prefix icu4c)"
        export CMAKE_PREFIX_PATH
        PATH="$PATH:$(brew --prefix)/opt/llvm/bin"
    elif command -v dpkg-query >/dev/null; then
        for group in "$@"; do list="debian_${group}_packages[@]"; packages+=("${!list}"); done
        install_debian_packages "${packages[@]}"
        [[ " $* " != *" test "* ]] || install_pnpm
    else
        say "Neither Debian's packages nor Homebrew here. Install by hand what" \
            "scripts/packages.sh names; going on with what there is."
    fi
}
