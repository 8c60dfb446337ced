# bash completion for velloria-cli. Made by scripts/make-completions from `velloria-cli --help`.

_velloria_cli() {
    local current=${COMP_WORDS[COMP_CWORD]} before=() plain=() words="" options="--home --user --now --day --events --answers --yes --json --version --help" i
    # bash takes --home=FOLDER for three words.
    [[ $current == "=" ]] && current=""
    for ((i = 1; i < COMP_CWORD; ++i)); do
        [[ ${COMP_WORDS[i]} == "=" ]] || before+=("${COMP_WORDS[i]}")
    done
    for ((i = 0; i < ${#before[@]}; ++i)); do
        case ${before[i]} in
        --home|--user|--now|--day|--answers|--month|--from|--to|--as|--genre|--period|--format|--contents|--unit|--name|--sort|--out|--plain|--ini|--set|--url|--email) ((++i)) ;;
        -*) ;;
        *) plain+=("${before[i]}") ;;
        esac
    done
    ((i > ${#before[@]})) && case ${before[-1]} in
    --home) _velloria_cli_files -d; return ;;
    --answers|--out|--plain|--ini) _velloria_cli_files -f; return ;;
    *) return ;;
    esac
    case "${plain[*]}" in
    "entry list" | "entry list "*) options+=" --month --from --to" ;;
    "entry show" | "entry show "*) options+=" --as-stored" ;;
    "entry put" | "entry put "*) options+=" --keep-time" ;;
    "entry delete" | "entry delete "*) options+=" --as-stored" ;;
    "entry days" | "entry days "*) options+=" --month --public" ;;
    "site save" | "site save "*) options+=" --as" ;;
    "site rebuild" | "site rebuild "*) options+=" --from --to" ;;
    "site find" | "site find "*) options+=" --from --to --genre" ;;
    "export" | "export "*) options+=" --period --format --contents --unit --name --sort --out" ;;
    "import clipboard" | "import clipboard "*) options+=" --formatted --plain" ;;
    "convert html2text" | "convert html2text "*) options+=" --ini --set" ;;
    "file add" | "file add "*) options+=" --as" ;;
    "db check" | "db check "*) options+=" --repair" ;;
    "customize export" | "customize export "*) options+=" --format --name --url --email --out" ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
        return
    fi
    case "${plain[*]}" in
    "") words="start entry genre site export import mt hatena exchange convert ini file log upload ping update db backup customize user blog" ;;
    "entry") words="list show put delete days" ;;
    "genre") words="list rebuild" ;;
    "site") words="save preview log rebuild sameday find" ;;
    "import") words="clipboard delete groups" ;;
    "mt") words="import export" ;;
    "hatena") words="import export" ;;
    "exchange") words="import export" ;;
    "convert") words="html2text urlencode paragraphs colour scramble unscramble" ;;
    "ini") words="get int set delete sections" ;;
    "file") words="list add delete" ;;
    "log") words="list add delete" ;;
    "update") words="check" ;;
    "db") words="version optimize check restore" ;;
    "backup") words="list make restore" ;;
    "customize") words="list select import export" ;;
    "user") words="list add password delete path take" ;;
    "blog") words="list data check log" ;;
    "entry put") _velloria_cli_files -f; return ;;
    "import clipboard") words=" " ;;
    "mt import") _velloria_cli_files -f; return ;;
    "mt export") _velloria_cli_files -f; return ;;
    "hatena import") _velloria_cli_files -f; return ;;
    "hatena export") _velloria_cli_files -f; return ;;
    "exchange import "*) _velloria_cli_files -f; return ;;
    "exchange export") words="markdown json" ;;
    "exchange export "*) _velloria_cli_files -f; return ;;
    "convert html2text") _velloria_cli_files -f; return ;;
    "convert urlencode") words="sjis eucjp utf8" ;;
    "convert urlencode "*) _velloria_cli_files -f; return ;;
    "convert paragraphs") _velloria_cli_files -f; return ;;
    "ini get") _velloria_cli_files -f; return ;;
    "ini int") _velloria_cli_files -f; return ;;
    "ini set") _velloria_cli_files -f; return ;;
    "ini delete") _velloria_cli_files -f; return ;;
    "ini sections") _velloria_cli_files -f; return ;;
    "file add") _velloria_cli_files -f; return ;;
    "file add "*) words="DAY ALL" ;;
    "file delete "*) words="DAY ALL" ;;
    "log add") _velloria_cli_files -f; return ;;
    "db version") _velloria_cli_files -f; return ;;
    "db restore") _velloria_cli_files -f; return ;;
    "customize import") _velloria_cli_files -f; return ;;
    "blog check") _velloria_cli_files -f; return ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

_velloria_cli_files() {
    compopt -o filenames 2> /dev/null
    mapfile -t COMPREPLY < <(compgen "$1" -- "$current")
}

complete -F _velloria_cli velloria-cli
