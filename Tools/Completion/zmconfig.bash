# Completion of zmconfig for bash.
_zmconfig() {
    local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} file=${COMP_WORDS[2]-}
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W 'check get list set remove format import --help --version' -- "$word")
    elif [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '--indent' -- "$word")
    elif [[ $command =~ ^(get|set|remove)$ && $COMP_CWORD -ge 3 && -f ${file/#\~/$HOME} ]]; then
        local IFS=$'\n'
        mapfile -t COMPREPLY < <(compgen -W "$("${COMP_WORDS[0]}" list "${file/#\~/$HOME}" 2>/dev/null | sed 's/ = .*//')" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}
complete -o filenames -F _zmconfig zmconfig
