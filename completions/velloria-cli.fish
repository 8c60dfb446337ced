# fish completion for velloria-cli. Made by scripts/make-completions from `velloria-cli --help`.

# Whether the words in front of the cursor, without options and their values, are these.
function __velloria_cli_behind
    set -l plain
    set -l is_value 0
    for word in (commandline -opc)
        if test $is_value = 1
            set is_value 0
            continue
        end
        switch $word
            case --home --user --now --day --answers --month --from --to --as --genre --period --format --contents --unit --name --sort --out --plain --ini --set --url --email
                set is_value 1
            case '-*'
            case '*'
                set -a plain $word
        end
    end
    set -e plain[1]
    string match -q -- $argv[1] "$plain"
end

complete -c velloria-cli -f
complete -c velloria-cli -l home -x -a '(__fish_complete_directories)'
complete -c velloria-cli -l user -x
complete -c velloria-cli -l now -x
complete -c velloria-cli -l day -x
complete -c velloria-cli -l events
complete -c velloria-cli -l answers -r -F
complete -c velloria-cli -l yes
complete -c velloria-cli -l json
complete -c velloria-cli -l version
complete -c velloria-cli -l help
complete -c velloria-cli -n '__velloria_cli_behind ""' -a 'start entry genre site export import mt hatena exchange convert ini file log upload ping update db backup customize user blog'
complete -c velloria-cli -n '__velloria_cli_behind "entry"' -a 'list show put delete days'
complete -c velloria-cli -n '__velloria_cli_behind "genre"' -a 'list rebuild'
complete -c velloria-cli -n '__velloria_cli_behind "site"' -a 'save preview log rebuild sameday find'
complete -c velloria-cli -n '__velloria_cli_behind "import"' -a 'clipboard delete groups'
complete -c velloria-cli -n '__velloria_cli_behind "mt"' -a 'import export'
complete -c velloria-cli -n '__velloria_cli_behind "hatena"' -a 'import export'
complete -c velloria-cli -n '__velloria_cli_behind "exchange"' -a 'import export'
complete -c velloria-cli -n '__velloria_cli_behind "convert"' -a 'html2text urlencode paragraphs colour scramble unscramble'
complete -c velloria-cli -n '__velloria_cli_behind "ini"' -a 'get int set delete sections'
complete -c velloria-cli -n '__velloria_cli_behind "file"' -a 'list add delete'
complete -c velloria-cli -n '__velloria_cli_behind "log"' -a 'list add delete'
complete -c velloria-cli -n '__velloria_cli_behind "update"' -a 'check'
complete -c velloria-cli -n '__velloria_cli_behind "db"' -a 'version optimize check restore'
complete -c velloria-cli -n '__velloria_cli_behind "backup"' -a 'list make restore'
complete -c velloria-cli -n '__velloria_cli_behind "customize"' -a 'list select import export'
complete -c velloria-cli -n '__velloria_cli_behind "user"' -a 'list add password delete path take'
complete -c velloria-cli -n '__velloria_cli_behind "blog"' -a 'list data check log'
complete -c velloria-cli -n '__velloria_cli_behind "entry put"' -F
complete -c velloria-cli -n '__velloria_cli_behind "import clipboard"' -a ' '
complete -c velloria-cli -n '__velloria_cli_behind "mt import"' -F
complete -c velloria-cli -n '__velloria_cli_behind "mt export"' -F
complete -c velloria-cli -n '__velloria_cli_behind "hatena import"' -F
complete -c velloria-cli -n '__velloria_cli_behind "hatena export"' -F
complete -c velloria-cli -n '__velloria_cli_behind "exchange import *"' -F
complete -c velloria-cli -n '__velloria_cli_behind "exchange export"' -a 'markdown json'
complete -c velloria-cli -n '__velloria_cli_behind "exchange export *"' -F
complete -c velloria-cli -n '__velloria_cli_behind "convert html2text"' -F
complete -c velloria-cli -n '__velloria_cli_behind "convert urlencode"' -a 'sjis eucjp utf8'
complete -c velloria-cli -n '__velloria_cli_behind "convert urlencode *"' -F
complete -c velloria-cli -n '__velloria_cli_behind "convert paragraphs"' -F
complete -c velloria-cli -n '__velloria_cli_behind "ini get"' -F
complete -c velloria-cli -n '__velloria_cli_behind "ini int"' -F
complete -c velloria-cli -n '__velloria_cli_behind "ini set"' -F
complete -c velloria-cli -n '__velloria_cli_behind "ini delete"' -F
complete -c velloria-cli -n '__velloria_cli_behind "ini sections"' -F
complete -c velloria-cli -n '__velloria_cli_behind "file add"' -F
complete -c velloria-cli -n '__velloria_cli_behind "file add *"' -a 'DAY ALL'
complete -c velloria-cli -n '__velloria_cli_behind "file delete *"' -a 'DAY ALL'
complete -c velloria-cli -n '__velloria_cli_behind "log add"' -F
complete -c velloria-cli -n '__velloria_cli_behind "db version"' -F
complete -c velloria-cli -n '__velloria_cli_behind "db restore"' -F
complete -c velloria-cli -n '__velloria_cli_behind "customize import"' -F
complete -c velloria-cli -n '__velloria_cli_behind "blog check"' -F
complete -c velloria-cli -n '__velloria_cli_behind "entry list*"' -l month -x
complete -c velloria-cli -n '__velloria_cli_behind "entry list*"' -l from -x
complete -c velloria-cli -n '__velloria_cli_behind "entry list*"' -l to -x
complete -c velloria-cli -n '__velloria_cli_behind "entry show*"' -l as-stored
complete -c velloria-cli -n '__velloria_cli_behind "entry put*"' -l keep-time
complete -c velloria-cli -n '__velloria_cli_behind "entry delete*"' -l as-stored
complete -c velloria-cli -n '__velloria_cli_behind "entry days*"' -l month -x
complete -c velloria-cli -n '__velloria_cli_behind "entry days*"' -l public
complete -c velloria-cli -n '__velloria_cli_behind "site save*"' -l as -r -F
complete -c velloria-cli -n '__velloria_cli_behind "site rebuild*"' -l from -x
complete -c velloria-cli -n '__velloria_cli_behind "site rebuild*"' -l to -x
complete -c velloria-cli -n '__velloria_cli_behind "site find*"' -l from -x
complete -c velloria-cli -n '__velloria_cli_behind "site find*"' -l to -x
complete -c velloria-cli -n '__velloria_cli_behind "site find*"' -l genre -x
complete -c velloria-cli -n '__velloria_cli_behind "export*"' -l period -x
complete -c velloria-cli -n '__velloria_cli_behind "export*"' -l format -x
complete -c velloria-cli -n '__velloria_cli_behind "export*"' -l contents -x
complete -c velloria-cli -n '__velloria_cli_behind "export*"' -l unit -x
complete -c velloria-cli -n '__velloria_cli_behind "export*"' -l name -x
complete -c velloria-cli -n '__velloria_cli_behind "export*"' -l sort -x
complete -c velloria-cli -n '__velloria_cli_behind "export*"' -l out -r -F
complete -c velloria-cli -n '__velloria_cli_behind "import clipboard*"' -l formatted
complete -c velloria-cli -n '__velloria_cli_behind "import clipboard*"' -l plain -r -F
complete -c velloria-cli -n '__velloria_cli_behind "convert html2text*"' -l ini -r -F
complete -c velloria-cli -n '__velloria_cli_behind "convert html2text*"' -l set -x
complete -c velloria-cli -n '__velloria_cli_behind "file add*"' -l as -x
complete -c velloria-cli -n '__velloria_cli_behind "db check*"' -l repair
complete -c velloria-cli -n '__velloria_cli_behind "customize export*"' -l format -x
complete -c velloria-cli -n '__velloria_cli_behind "customize export*"' -l name -x
complete -c velloria-cli -n '__velloria_cli_behind "customize export*"' -l url -x
complete -c velloria-cli -n '__velloria_cli_behind "customize export*"' -l email -x
complete -c velloria-cli -n '__velloria_cli_behind "customize export*"' -l out -r -F
