# bash completion of korvale-agentctl                              -*- shell-script -*-

_korvale_agentctl() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} command='' word options
    local i
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $word != -* ]]; then
            command=$word
            break
        fi
    done
    if [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W "status threats quarantine restore waive delete scan \
stop devices policy why --help --version" -- "$cur")
        return
    fi
    options=--json
    case $command in
        threats) options+=' --all' ;;
        restore) options+=' --to --beside --no-waive' ;;
        waive) options+=' --reason --end' ;;
        delete) options+=' --yes' ;;
        scan) options+=' --wait' ;;
    esac
    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
        return
    fi
    if [[ $prev == --to || $prev == --reason ]]; then
        compopt -o default 2>/dev/null
        return
    fi
    case $command in
        scan)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$cur")
            ;;
        why | quarantine | restore | waive | delete) compopt -o default 2>/dev/null ;;
    esac
}
complete -F _korvale_agentctl korvale-agentctl
