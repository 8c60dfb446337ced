# fish completion for velloria-cli. Made by scripts/make-completions from `velloria-cli --help`.

complete -c velloria-cli -l home -r
complete -c velloria-cli -l user -r
complete -c velloria-cli -l now -r
complete -c velloria-cli -l day -r
complete -c velloria-cli -l events
complete -c velloria-cli -l answers -r
complete -c velloria-cli -l yes
complete -c velloria-cli -l json
complete -c velloria-cli -l version
complete -c velloria-cli -l help
complete -c velloria-cli -n __fish_use_subcommand -f -a start
complete -c velloria-cli -n __fish_use_subcommand -f -a entry
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and not __fish_seen_subcommand_from list show put delete days' -f -a list
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and not __fish_seen_subcommand_from list show put delete days' -f -a show
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and not __fish_seen_subcommand_from list show put delete days' -f -a put
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and not __fish_seen_subcommand_from list show put delete days' -f -a delete
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and not __fish_seen_subcommand_from list show put delete days' -f -a days
complete -c velloria-cli -n __fish_use_subcommand -f -a genre
complete -c velloria-cli -n '__fish_seen_subcommand_from genre; and not __fish_seen_subcommand_from list rebuild' -f -a list
complete -c velloria-cli -n '__fish_seen_subcommand_from genre; and not __fish_seen_subcommand_from list rebuild' -f -a rebuild
complete -c velloria-cli -n __fish_use_subcommand -f -a site
complete -c velloria-cli -n '__fish_seen_subcommand_from site; and not __fish_seen_subcommand_from save preview log rebuild sameday' -f -a save
complete -c velloria-cli -n '__fish_seen_subcommand_from site; and not __fish_seen_subcommand_from save preview log rebuild sameday' -f -a preview
complete -c velloria-cli -n '__fish_seen_subcommand_from site; and not __fish_seen_subcommand_from save preview log rebuild sameday' -f -a log
complete -c velloria-cli -n '__fish_seen_subcommand_from site; and not __fish_seen_subcommand_from save preview log rebuild sameday' -f -a rebuild
complete -c velloria-cli -n '__fish_seen_subcommand_from site; and not __fish_seen_subcommand_from save preview log rebuild sameday' -f -a sameday
complete -c velloria-cli -n __fish_use_subcommand -f -a convert
complete -c velloria-cli -n '__fish_seen_subcommand_from convert; and not __fish_seen_subcommand_from html2text urlencode scramble unscramble' -f -a html2text
complete -c velloria-cli -n '__fish_seen_subcommand_from convert; and not __fish_seen_subcommand_from html2text urlencode scramble unscramble' -f -a urlencode
complete -c velloria-cli -n '__fish_seen_subcommand_from convert; and not __fish_seen_subcommand_from html2text urlencode scramble unscramble' -f -a scramble
complete -c velloria-cli -n '__fish_seen_subcommand_from convert; and not __fish_seen_subcommand_from html2text urlencode scramble unscramble' -f -a unscramble
complete -c velloria-cli -n __fish_use_subcommand -f -a ini
complete -c velloria-cli -n '__fish_seen_subcommand_from ini; and not __fish_seen_subcommand_from get int set delete sections' -f -a get
complete -c velloria-cli -n '__fish_seen_subcommand_from ini; and not __fish_seen_subcommand_from get int set delete sections' -f -a int
complete -c velloria-cli -n '__fish_seen_subcommand_from ini; and not __fish_seen_subcommand_from get int set delete sections' -f -a set
complete -c velloria-cli -n '__fish_seen_subcommand_from ini; and not __fish_seen_subcommand_from get int set delete sections' -f -a delete
complete -c velloria-cli -n '__fish_seen_subcommand_from ini; and not __fish_seen_subcommand_from get int set delete sections' -f -a sections
complete -c velloria-cli -n __fish_use_subcommand -f -a db
complete -c velloria-cli -n '__fish_seen_subcommand_from db; and not __fish_seen_subcommand_from version check' -f -a version
complete -c velloria-cli -n '__fish_seen_subcommand_from db; and not __fish_seen_subcommand_from version check' -f -a check
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and __fish_seen_subcommand_from list' -l month -r
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and __fish_seen_subcommand_from list' -l from -r
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and __fish_seen_subcommand_from list' -l to -r
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and __fish_seen_subcommand_from put' -l keep-time
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and __fish_seen_subcommand_from days' -l month -r
complete -c velloria-cli -n '__fish_seen_subcommand_from entry; and __fish_seen_subcommand_from days' -l public
complete -c velloria-cli -n '__fish_seen_subcommand_from site; and __fish_seen_subcommand_from save' -l as -r
complete -c velloria-cli -n '__fish_seen_subcommand_from site; and __fish_seen_subcommand_from rebuild' -l from -r
complete -c velloria-cli -n '__fish_seen_subcommand_from site; and __fish_seen_subcommand_from rebuild' -l to -r
complete -c velloria-cli -n '__fish_seen_subcommand_from convert; and __fish_seen_subcommand_from html2text' -l ini -r
complete -c velloria-cli -n '__fish_seen_subcommand_from convert; and __fish_seen_subcommand_from html2text' -l set -r
