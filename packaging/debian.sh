# Debian packages by purpose, and how to get the missing ones. Read by ./run and ./test (bash).

# To compile and link the programs.
buildPackages=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev qt6-svg-dev
    libxcb1-dev libxcb-randr0-dev libxcb-screensaver0-dev libxcb-shm0-dev libxcb-xfixes0-dev
    libboost-dev libicu-dev libjpeg62-turbo-dev libqrencode-dev libsystemd-dev nlohmann-json3-dev
    libvulkan-dev libfontconfig-dev
    libcanberra-dev
)

# To look and sound as intended, to speak, to open pages, to end stale stream servers, and to ask an X display whether it
# is there.
runPackages=(
    fonts-inter fonts-noto-color-emoji
    x11-utils xdg-utils
    procps speech-dispatcher speech-dispatcher-espeak-ng
)

# To have a desktop where there is none.
virtualDesktopPackages=(xvfb openbox dbus-daemon dunst imagemagick)

# To test: the test libraries, the checks' tools, and services for the whole-program tests.
testPackages=(
    "${virtualDesktopPackages[@]}"
    libgtest-dev libgmock-dev libbenchmark-dev libxcb-xtest0-dev libxtst6
    clang clang-format clang-tidy libclang-rt-14-dev
    clang-19 libc++-19-dev libc++abi-19-dev musl-dev
    python3 python3-pytest python3-numpy python3-gi gir1.2-atspi-2.0 at-spi2-core
    mesa-vulkan-drivers
    pipewire pipewire-pulse wireplumber libcanberra-pulse pulseaudio-utils sound-theme-freedesktop sox
    git xdotool xclip
    lxqt-panel trayer x11-session-utils x11-xserver-utils python3-dbusmock systemd libglib2.0-bin desktop-file-utils
    tidy python3-html5lib python3-yaml poppler-utils librsvg2-bin
    iproute2 curl avahi-daemon espeak-ng
    chromium chromium-driver python3-selenium zbar-tools
    stress-ng
    fonts-dejavu-core
)

isInstalled() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# apt-get as root, without questions, patient with another package manager.
aptGet() {
    local command=(env DEBIAN_FRONTEND=noninteractive) proxy
    for proxy in http_proxy https_proxy no_proxy; do # sudo would drop them
        [ -z "${!proxy-}" ] || command+=("$proxy=${!proxy}")
    done
    command+=(apt-get -q -o DPkg::Lock::Timeout=600 "$@")
    if [ "$(id -u)" != 0 ]; then
        command=(sudo "${command[@]}")
    fi
    "${command[@]}"
}

# apt-get's lock on its lists is not covered by the time-out above, so a refusal is answered by trying again.
aptGetUpdate() {
    local attempt
    for attempt in {1..20}; do
        aptGet update && return
        sleep 3
    done
    return 1
}

# installPackages NAME...   Installs those that are missing. Failure: a sentence on standard error and status 1.
installPackages() {
    local missing=() package
    for package in "$@"; do
        isInstalled "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    if ! command -v apt-get >/dev/null; then
        echo "This script installs packages on Debian only. Needed here: ${missing[*]}" >&2
        return 1
    fi
    if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
        echo "These packages are missing, and only root or a user with sudo can install them: ${missing[*]}" >&2
        return 1
    fi
    echo "Installing ${#missing[@]} packages: ${missing[*]}"
    local install=(install -y --no-install-recommends "${missing[@]}")
    if ! apt-cache show "${missing[@]}" >/dev/null 2>&1; then # lists absent or too old to know them all
        aptGetUpdate || { echo "The package lists could not be fetched." >&2; return 1; }
        aptGet "${install[@]}" && return
    else
        aptGet "${install[@]}" && return
        echo "Trying again with fresh package lists."
        aptGetUpdate && aptGet "${install[@]}" && return
    fi
    echo "These packages could not be installed: ${missing[*]}" >&2
    return 1
}
