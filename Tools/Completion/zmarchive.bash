# Completion of zmarchive for bash.
_zmarchive() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' archive='' options i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        --to | --from | --against | --clash) ((++i)) ;;
        -?*) ;;
        *)
            if [ -z "$command" ]; then
                command=${COMP_WORDS[i]}
            else
                archive=${archive:-${COMP_WORDS[i]}}
            fi
            ;;
        esac
    done
    case $before in
    --to) mapfile -t COMPREPLY < <(compgen -d -- "$word") && return ;;
    --from | --against) mapfile -t COMPREPLY < <(compgen -f -- "$word") && return ;;
    --clash) mapfile -t COMPREPLY < <(compgen -W 'fail skip rename' -- "$word") && return ;;
    esac
    if [ -z "$command" ]; then
        mapfile -t COMPREPLY < <(compgen -W 'create list extract add remove reorder verify --help --version' -- "$word")
        return
    fi
    case $word:$command in
    -*:create) options='--flat --force --from --clash' ;;
    -*:list) options='--names --json --sha256' ;;
    -*:extract) options='--to --force' ;;
    -*:add) options='--flat --replace --from --clash' ;;
    -*:verify) options='--against' ;;
    -*) options='' ;;
    *:extract | *:remove)
        if [ -n "$archive" ] && [ -f "${archive/#\~/$HOME}" ]; then
            local IFS=$'\n'
            mapfile -t COMPREPLY < <(compgen -W "$("${COMP_WORDS[0]}" list --names "${archive/#\~/$HOME}" 2>/dev/null)" -- "$word")
            return
        fi
        ;;&
    *) mapfile -t COMPREPLY < <(compgen -f -- "$word") && return ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options --quiet" -- "$word")
}
complete -o filenames -F _zmarchive zmarchive
