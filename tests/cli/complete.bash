# What bash completes for the last word of a command line.
# usage: bash complete.bash SCRIPT WORDS...
# Prints the words, and "default" or "dirnames" where readline itself completes names.
compopt() { printf '%s\n' "$2"; }
source "$1"
shift
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
handler=$(complete -p gbdriver-cli)
handler=${handler#*-F }
${handler%% *}
[ ${#COMPREPLY[@]} = 0 ] || printf '%s\n' "${COMPREPLY[@]}"
