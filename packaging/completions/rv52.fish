# Completion of rv52 for fish.
set -l commands ports id download upload verify vin show diff new modify import export check
set -l none "not __fish_seen_subcommand_from $commands"
complete -c rv52 -n $none -f -a "$commands"
complete -c rv52 -l help -d help
complete -c rv52 -n $none -l version -d version
complete -c rv52 -s q -l quiet -d "no progress, no remarks"
complete -c rv52 -l port -x -d "the port ComN"
complete -c rv52 -l device -r -d "the serial device"
complete -c rv52 -l simulate -x -a "RACE EX" -d "a simulated module"
complete -c rv52 -n "__fish_seen_subcommand_from ports id verify vin show diff check" -l json -d "as JSON"
complete -c rv52 -n "__fish_seen_subcommand_from show" -l csv -d "the table as CSV"
complete -c rv52 -n "__fish_seen_subcommand_from download" -l image -r -d "keep the bytes too"
complete -c rv52 -n "__fish_seen_subcommand_from upload" -l backup -r -d "download first"
complete -c rv52 -n "__fish_seen_subcommand_from upload vin" -s y -l yes -d "do not ask"
complete -c rv52 -n "__fish_seen_subcommand_from new" -l timing -x
complete -c rv52 -n "__fish_seen_subcommand_from new" -l slope -x
complete -c rv52 -n "__fish_seen_subcommand_from modify" -l cells -x -d "RPM..RPM,MAP..MAP"
complete -c rv52 -n "__fish_seen_subcommand_from modify" -l by -x -d "the change"
complete -c rv52 -n "__fish_seen_subcommand_from modify" -s o -l output -r -d "write there"
