# shellcheck shell=bash
# Completion of stepctl: what `stepctl --help` and `stepctl COMMAND --help` list, and so nothing that is not there.

_stepctl() {
    local program=${COMP_WORDS[0]} word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} help choices
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        help=$("$program" --help 2>/dev/null) || return
        choices=$(sed -nE '/^Subcommands:/,/^$/s/^  ([a-z-]+) .*/\1/p' <<<"$help")
    else
        help=$("$program" "${COMP_WORDS[1]}" --help 2>/dev/null) || return
        # An option that wants one of some words, such as "--format FORMAT:{text,json}", or a value of any other kind.
        choices=$(sed -nE "s/^  (-h,)?$previous [A-Z]+:\{([^}]*)\}.*/\2/p" <<<"$help")
        if [[ $previous == --* && -z $choices ]] && grep -qE "^  $previous [A-Z]" <<<"$help"; then
            return # A file, by the default of this completion.
        fi
        choices=${choices//,/ }
        if [[ -z $choices && ${COMP_WORDS[1]} == explain ]]; then
            choices=$("$program" check --list 2>/dev/null | cut -d ' ' -f 1)
        fi
    fi
    if [[ $word == -* ]]; then
        choices=$(sed -nE 's/^  (-h,)?(--[a-z-]+)[ :].*/\2/p' <<<"$help")
    fi
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
}

complete -o default -F _stepctl stepctl
