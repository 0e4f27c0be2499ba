# What zsh completes for a command line. Its completion runs in the line editor only, and that on a
# terminal only: the script starts an interactive shell on one, which reads this file again.
# usage: zsh -f complete.zsh SCRIPT LINE
# Prints one line "<word:WORD>" for each completion, then "<end>".
if [[ -z $COMPLETED_LINE ]]; then
    export COMPLETION_SCRIPT=$1 COMPLETED_LINE=$2
    zmodload zsh/zpty
    zpty editor zsh -f -i
    zpty -w editor "source ${(q)0:A}"
    while zpty -r editor piece; do
        print -rn -- $piece
        [[ $piece == *'<end>'* ]] && break
    done
    exit
fi

autoload -Uz compinit
compinit -C # the second shell finds what the first one wrote into the home folder
source $COMPLETION_SCRIPT
# Calls that only fill an array of the caller add nothing to the line.
compadd() {
    if [[ ${@[1,(i)(-|--)]} != *-(O|A|D)\ * ]]; then
        local -a words
        builtin compadd -A words "$@"
        (( $#words )) && print -rl -- '<word:'${^words}'>'
    fi
    builtin compadd "$@"
}
zle-line-init() {
    LBUFFER=$COMPLETED_LINE
    zle complete-word
    print -r -- '<end>'
    exit
}
zle -N zle-line-init
