# Building under a lock, so that two scripts at once do not write into the same folder. Read by ./run and ./test (bash).
# Expects $root, the root of the source tree.

# Held until releaseBuild or the end of the script.
lockBuild() {
    if ! mkdir -p "$root/build" 2>/dev/null || ! [ -w "$root/build" ]; then
        echo "The folder build/ is not writable for you (another user's?)." >&2
        return 1
    fi
    exec {buildLock}>>"$root/build/lock" || return 1
    if ! flock -n "$buildLock"; then
        echo "Waiting for another build in this folder to end ..."
        flock "$buildLock"
    fi
}

releaseBuild() {
    exec {buildLock}>&-
}

# configurePreset NAME [CMAKE_ARGUMENT...]   A build folder that came along with a moved or copied tree is made anew.
configurePreset() {
    local preset=$1 cache="$root/build/$1/CMakeCache.txt"
    shift
    if [ -e "$cache" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$cache"; then
        rm -rf "$root/build/$preset"
    fi
    (cd "$root" && cmake --preset "$preset" "$@")
}

# buildTargets PRESET [TARGET...]   Everything without targets. Ends with this script, however that ends.
buildTargets() {
    local folder=$root/build/$1
    shift
    setpriv --pdeathsig TERM -- ninja -C "$folder" "$@"
}
