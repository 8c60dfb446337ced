# bash completion for velloria-cli. Made by scripts/make-completions from `velloria-cli --help`.

_velloria_cli() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local first="" second="" words="" options="--home --user --now --day --events --answers --yes --json --version --help" i
    case $previous in
    --home) mapfile -t COMPREPLY < <(compgen -d -- "$current"); return ;;
    --answers | --ini | --as) mapfile -t COMPREPLY < <(compgen -f -- "$current"); return ;;
    --user | --now | --day | --month | --from | --to | --set) return ;;
    esac
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        --home | --user | --now | --day | --answers | --ini | --as | --month | --from | --to | --set) ((++i)) ;;
        -*) ;;
        *) if [[ -z $first ]]; then first=${COMP_WORDS[i]}; elif [[ -z $second ]]; then second=${COMP_WORDS[i]}; fi ;;
        esac
    done
    if [[ -z $first ]]; then
        words="start entry genre site convert ini db"
    elif [[ -z $second ]]; then
        case $first in
        "entry") words="list show put delete days" ;;
        "genre") words="list rebuild" ;;
        "site") words="save preview log rebuild sameday" ;;
        "convert") words="html2text urlencode scramble unscramble" ;;
        "ini") words="get int set delete sections" ;;
        "db") words="version check" ;;
        esac
    fi
    case "$first $second" in
        "entry list") options+=" --month --from --to" ;;
        "entry put") options+=" --keep-time" ;;
        "entry days") options+=" --month --public" ;;
        "site save") options+=" --as" ;;
        "site rebuild") options+=" --from --to" ;;
        "convert html2text") options+=" --ini --set" ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -n $words ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}
complete -o filenames -F _velloria_cli velloria-cli
