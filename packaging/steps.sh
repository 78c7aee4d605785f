# The parts of a test run. Read by ./test (bash, also the one of a Mac). Expects $results, the folder for their outcome.

# step NAME SECONDS COMMAND...   One part of the run; counts as one case unless it writes $results/NAME.xml.
step() {
    local name=$1 seconds=$2 began=$SECONDS status
    shift 2
    printf '\n=== %s\n' "$name"
    limit=$seconds "$@"
    status=$?
    echo "$status" >"$results/$name.status"
    printf -- '--- %s: status %d after %d s\n' "$name" "$status" $((SECONDS - began))
    return $status
}
