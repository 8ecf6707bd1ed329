# shellcheck shell=bash
# Starts the show, for ./run and for the installed tarvisk: sound, what is said before and after.
# Source it after doors/common.sh, doors/machine.sh and doors/doctor.sh.

# The show's options and the launcher's own, as both commands' --help tells of them.
options_help() {
    cat <<'END'
The show's options:
  --fs              full screen; it changes nothing, the show is always that
  --fullhd, --720p  a picture of 16:9 across the screen; without them it has
                    the phone's 854:480
  --nomusic         no music
  --skip SECONDS    start that many seconds into the show
Other arguments are handed on, too; the show ignores what it does not know.

  --windowed [WxH]  in a window (854x480) that can be moved, resized and closed
  --monitor NUMBER  on that one of several, counted from 1; else the pointer's
  --volume PERCENT  of the music
  --from WHEN       from a beat, a time (82.5s), an event or a scene (gear city)
                    on, which is played up to unseen: as --skip, but all is as
                    it would be there
  --loop            begin again when the song has rung out
  --verbose         what the show says goes to the terminal, not to its log

  --doctor          play three seconds, then say what this machine can do

q or closing the window quits; Escape does not. The show flashes and flickers:
do not watch it if that can harm you.
END
}

# has_option OPTION ARGUMENT...: whether it is among the arguments. What follows --skip, --from and --to is
# a value.
has_option() {
    local wanted=$1
    shift
    while (($#)); do
        [[ $1 != "$wanted" ]] || return 0
        [[ $1 != --skip && $1 != --from && $1 != --to ]] || shift
        shift
    done
    return 1
}

asks_for_help() { has_option --help "$@" || has_option -h "$@"; }

# play PROGRAM LOG MEND ARGUMENT...: plays and does not come back. MEND brings the show's files back.
play() {
    local program=$1 log=$2 mend=$3
    shift 3
    if has_option --doctor "$@"; then
        doctor "$program" "${log%/*}/doctor.log" "$@"
        exit
    fi
    if ! has_sound; then
        say "No sound device: the show plays silently."
        export SDL_AUDIODRIVER=dummy
    fi
    say "The show begins. q quits, and so does closing its window; Escape does not."
    if has_option --verbose "$@"; then
        exec "$program" --mend "$mend" "$@"
    else
        say "What it says goes to $log; --verbose shows it here."
        exec "$program" --mend "$mend" --log "$log" "$@"
    fi
}
