# Homebrew's packages, and how ./run and ./test do their work on a Mac. Read by both, after build.sh.
#
# For the bash that every Mac has, 3.2, and without what only Linux has: no flock, timeout, setpriv or nproc. Lists are
# words in a string, since an empty array counts as unset there. Expects $root, the root of the source tree.

# To compile and link the programs.
macBuildPackages='cmake ninja pkgconf qtbase qtsvg boost icu4c qrencode nlohmann-json'

# To test: the test library, and a Python that may be added to.
macTestPackages='googletest python'

macBundle=$root/build/release/bin/Orvalen.app

# Puts Homebrew on the search path, where its installation has not done so.
findHomebrew() {
    if ! command -v brew >/dev/null && [ -x /opt/homebrew/bin/brew ]; then
        PATH=/opt/homebrew/bin:$PATH
    fi
    command -v brew >/dev/null && return
    echo "Homebrew is missing, where Qt and the other libraries come from: install it as brew.sh tells, then try again." >&2
    return 1
}

# installMacPackages NAME...   Installs those that are missing, and shows the build where they are.
installMacPackages() {
    local name missing=
    findHomebrew || return 1
    for name in "$@"; do
        brew list --formula --versions "$name" >/dev/null 2>&1 || missing="$missing $name"
    done
    if [ -n "$missing" ]; then
        echo "Installing:$missing"
        # shellcheck disable=SC2086 # words
        if ! brew install --formula $missing; then
            echo "These packages could not be installed:$missing" >&2
            return 1
        fi
    fi
    CMAKE_PREFIX_PATH=$(brew --prefix)
    PKG_CONFIG_PATH=$(brew --prefix icu4c)/lib/pkgconfig # kept apart, since the system has an ICU of its own
    export CMAKE_PREFIX_PATH PKG_CONFIG_PATH
}

# The lock of build.sh, held until releaseMacBuild or the end of the script. It belongs to the open file, not to the
# command that asks for it.
lockMacBuild() {
    if ! mkdir -p "$root/build" 2>/dev/null || ! [ -w "$root/build" ]; then
        echo "The folder build/ is not writable for you (another user's?)." >&2
        return 1
    fi
    exec 9>>"$root/build/lock" || return 1
    if ! lockNinth LOCK_NB; then
        echo "Waiting for another build in this folder to end ..."
        lockNinth 0
    fi
}

lockNinth() {
    perl -MFcntl=:flock -e "open(my \$lock, '>>&=', 9) or exit 1; flock(\$lock, LOCK_EX | $1) or exit 1"
}

releaseMacBuild() {
    exec 9>&-
}

# bounded COMMAND...   Ended after $limit seconds: an alarm outlives the exec. Whatever outlives that does not hold the lock.
bounded() {
    perl -e 'alarm shift; exec @ARGV or exit 127' "$limit" "$@" 9>&-
}

# Builds the program and opens its bundle. Not the program itself: what the user grants would count for the terminal then.
# A newer compiler or toolkit may warn of something; that is for ./test to refuse.
runOnMac() {
    # shellcheck disable=SC2086 # words
    installMacPackages $macBuildPackages || return 1
    lockMacBuild || return 1
    if ! configurePreset release -DORVALEN_BENCH=OFF -DORVALEN_TESTS=OFF -DCMAKE_COMPILE_WARNING_AS_ERROR=OFF ||
        ! ninja -C "$root/build/release" orvalen orvalen-stream-server; then
        echo "Orvalen could not be built." >&2
        return 1
    fi
    releaseMacBuild
    echo "Starting Orvalen. Command+Q ends it."
    open "$macBundle"
}

installForMacTests() {
    # shellcheck disable=SC2086 # words
    installMacPackages $macBuildPackages $macTestPackages || return 1
    [ -x "$python" ] || python3 -m venv --clear "$root/build/python" || return 1
    "$python" -c 'import numpy, pytest, yaml' 2>/dev/null || "$python" -m pip install --quiet numpy pytest pyyaml
}

macChecks() {
    bounded "$python" -m pytest --rootdir tests/checks -c tests/checks/pytest.ini --junitxml "$results/checks.xml" \
        tests/checks
}

buildOnMac() {
    configurePreset release -DORVALEN_BENCH=OFF -DORVALEN_TESTS=OFF -DCMAKE_COMPILE_WARNING_AS_ERROR=ON &&
        bounded ninja -k 0 -C build/release
}

# The tests of the adapters and of the window drive Linux; those of the rules and of the stream server, any Unix.
buildRulesOnMac() {
    cmake --preset release --fresh -B build/rules -DORVALEN_RULES_ONLY=ON -DORVALEN_TESTS=ON &&
        bounded ninja -k 0 -C build/rules
}

macUnits() {
    bounded ctest --test-dir build/rules --output-on-failure --no-tests=error -j"$(sysctl -n hw.ncpu)" \
        --output-junit "$results/units.xml"
}

# What a Mac can run of the tests. The suites of whole programs, and the benchmarks, drive a Linux desktop.
testOnMac() {
    python=$root/build/python/bin/python
    results=$root/build/results
    lockMacBuild || { echo "0 passed, 1 failed"; return 1; }
    rm -rf "$results" && mkdir -p "$results"
    export PYTHONDONTWRITEBYTECODE=1

    if step packages 1800 installForMacTests; then
        step checks 120 macChecks
        step build-release 1800 buildOnMac
        step build-rules 1800 buildRulesOnMac && step units 600 macUnits
    fi

    echo
    [ -x "$python" ] || { echo "0 passed, 1 failed"; return 1; }
    "$python" tests/checks/count.py "$results"
}
