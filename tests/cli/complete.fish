# What fish completes for a command line.
# usage: fish complete.fish SCRIPT LINE
source $argv[1]
complete -C $argv[2]
