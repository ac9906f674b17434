# shellcheck shell=bash
# Completion of aonctl for bash. The program itself says what may come next.
_aonctl() {
    local word="${COMP_WORDS[COMP_CWORD]}" line candidates=()
    COMPREPLY=()
    while IFS= read -r line; do
        case "$line" in
            :files) mapfile -t candidates < <(compgen -f -- "$word") ;;
            :directories) mapfile -t candidates < <(compgen -d -- "$word") ;;
            *) candidates+=("${line%%$'\t'*}") ;;
        esac
        [[ "$line" != :* ]] || compopt -o filenames 2>/dev/null
    done < <("$1" --complete "${COMP_WORDS[@]:1:COMP_CWORD-1}" 2>/dev/null)
    for line in "${candidates[@]}"; do
        [[ "$line" != "$word"* ]] || COMPREPLY+=("$line")
    done
}
complete -F _aonctl aonctl
