#compdef stepctl
# Completion of stepctl: what `stepctl --help` and `stepctl COMMAND --help` list, and so nothing that is not there.

# The words behind `$1`, which the option or argument before the cursor may be.
_stepctl_words() {
    local help=$1 previous=$2 command=$3 program=$4
    local -a choices
    # An option that wants one of some words, such as "--format FORMAT:{text,json}", or a value of any other kind.
    choices=(${(s:,:)"$(sed -nE "s/^  (-h,)?${previous} [A-Z]+:\{([^}]*)\}.*/\2/p" <<<$help)"})
    if (( ! $#choices )) && [[ $previous == --* ]] && grep -qE "^  ${previous} [A-Z]" <<<$help; then
        return 1
    fi
    if (( ! $#choices )) && [[ $command == explain ]]; then
        choices=(${(f)"$($program check --list 2>/dev/null | cut -d ' ' -f 1)"})
    fi
    (( $#choices )) && print -rl -- $choices
}

_stepctl() {
    local program=$words[1] help
    local -a choices
    if (( CURRENT == 2 )); then
        help=$($program --help 2>/dev/null) || return
        choices=(${(f)"$(sed -nE '/^Subcommands:/,/^$/s/^  ([a-z-]+) +(.*)/\1:\2/p' <<<$help)"})
        _describe command choices
        return
    fi
    help=$($program $words[2] --help 2>/dev/null) || return
    if [[ $words[CURRENT] == -* ]]; then
        choices=(${(f)"$(sed -nE 's/^  (-h,)?(--[a-z-]+)[ :].*/\2/p' <<<$help)"})
    else
        choices=(${(f)"$(_stepctl_words "$help" $words[CURRENT-1] $words[2] $program)"})
    fi
    if (( $#choices )); then
        compadd -- $choices
    else
        _files
    fi
}

_stepctl "$@"
