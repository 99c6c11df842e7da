# bash completion of korvale-ui                                    -*- shell-script -*-

_korvale_ui() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} command='' i
    # "--background-scan=st" and "--scan=/tm" are three words to bash.
    if [[ $cur == '=' ]]; then
        cur=''
    elif [[ $prev == '=' ]]; then
        prev=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            --status | --scan | --background-scan | --check-updates | -folder-scan)
                command=${COMP_WORDS[i]}
                break
                ;;
        esac
    done
    case $prev in
        --bar)
            mapfile -t COMPREPLY < <(compgen -W 'waybar i3status-rs' -- "$cur")
            return
            ;;
        --background-scan)
            mapfile -t COMPREPLY < <(compgen -W 'start stop' -- "$cur")
            return
            ;;
    esac
    if [[ $command == -folder-scan && $prev != -folder-scan ]]; then
        return
    elif [[ $command == -folder-scan || ($command == --scan && $cur != -*) ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$cur")
        return
    fi
    local options
    case $command in
        --status) options='--json --bar --watch' ;;
        --scan | --background-scan | --check-updates) options='--wait --notify' ;;
        *)
            options='--status --check-updates --scan --background-scan --help --version
                     --choose-folder -a -update -background-scan -background-scan-stop -folder-scan'
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
}
complete -F _korvale_ui korvale-ui
