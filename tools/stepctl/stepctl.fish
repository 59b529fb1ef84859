# Completion of stepctl: what `stepctl --help` and `stepctl COMMAND --help` list, and so nothing that is not there.

function __stepctl_choices
    set -l words (commandline -opc)
    set -l word (commandline -ct)
    set -l program $words[1]
    if test (count $words) -eq 1
        $program --help 2>/dev/null | sed -nE '/^Subcommands:/,/^$/s/^  ([a-z-]+) +(.*)/\1\t\2/p'
        return
    end
    set -l help ($program $words[2] --help 2>/dev/null)
    if string match -q -- '-*' $word
        printf '%s\n' $help | sed -nE 's/^  (-h,)?(--[a-z-]+)[ :].*/\2/p'
        return
    end
    # An option that wants one of some words, such as "--format FORMAT:{text,json}", or a value of any other kind.
    set -l previous $words[-1]
    set -l choices (printf '%s\n' $help | sed -nE "s/^  (-h,)?$previous [A-Z]+:\{([^}]*)\}.*/\2/p")
    if test -n "$choices"
        string split , -- $choices
    else if string match -q -- '--*' $previous; and printf '%s\n' $help | grep -qE "^  $previous [A-Z]"
        __fish_complete_path $word
    else if test $words[2] = explain
        $program check --list 2>/dev/null | cut -d ' ' -f 1
    else
        __fish_complete_path $word
    end
end

complete -c stepctl -f -a '(__stepctl_choices)'
