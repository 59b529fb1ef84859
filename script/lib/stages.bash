# shellcheck shell=bash
# Runs commands one after the other as the stages of a larger one: each says how long it took, a stage that fails does not
# keep the next one from being run, and a table at the end has them all. To be sourced.

stage_rows=()
stages_failed=0

# stage NAME COMMAND [ARGUMENT]...
stage() {
    local name=$1 started=$SECONDS outcome=passed
    shift
    printf '\n==== %s\n' "$name"
    if ! "$@"; then
        outcome=FAILED
        stages_failed=$((stages_failed + 1))
    fi
    stage_rows+=("$(printf '%-12s %-8s %6d s' "$name" "$outcome" $((SECONDS - started)))")
    printf '==== %s\n' "${stage_rows[-1]}"
}

# Prints the table. Fails when a stage did.
end_stages() {
    printf '\n%s\n' '==== Stages'
    printf '%s\n' "${stage_rows[@]}"
    printf '%-12s %-8s %6d s\n\n' together '' "$SECONDS"
    printf '%d passed, %d failed\n' $((${#stage_rows[@]} - stages_failed)) "$stages_failed"
    [ "$stages_failed" -eq 0 ]
}
