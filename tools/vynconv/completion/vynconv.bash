# Completion of vynconv's arguments in bash.

_vynconv_sets() {
    vynconv --list 2>/dev/null | while read -r _ name preferred; do printf '%s\n' "$preferred" "$name"; done
}

_vynconv() {
    local word=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]} before=
    if [[ $word == "=" ]]; then # bash takes "=" for a word of its own
        word=
    elif [[ $option == "=" ]]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    elif [[ $word == -[fto]?* ]]; then
        before=${word:0:2} option=${word:0:2} word=${word:2}
    fi
    local words=
    case $option in
        -f | --from-code | -t | --to-code) words=$(_vynconv_sets) ;;
        --on-error) words="replace escape drop stop" ;;
        *)
            [[ $word == -* ]] && words="--from-code= --to-code= --output= --in-place --on-error= --bom --overwrite --verbose
                --list --detect --help --version -f -t -o -i -c -l" ;;
    esac
    if [[ -n $words ]]; then
        shopt -s nocasematch
        local each
        COMPREPLY=()
        for each in $words; do
            [[ $each == "$word"* ]] && COMPREPLY+=("$before$each")
        done
        shopt -u nocasematch
        [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]] && compopt -o nospace 2>/dev/null
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -P "$before" -f -- "$word")
    fi
    return 0
}

complete -F _vynconv vynconv
