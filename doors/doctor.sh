# shellcheck shell=bash
# What this machine offers against what the show needs, in plain words. Source it after
# doors/machine.sh.

# Where the show takes longest to draw: seconds.
heaviest=89

# from_log LOG LABEL: what the show said after it, trimmed.
from_log() { sed -n "s/^$2 *: //p" "$1" | head -n 1; }

# from_lines LOG WORDS: whether the show missed what it calls by these words.
from_lines() { if grep -q "cannot draw.*$2" "$1"; then echo missing; else echo there; fi; }

# doctor PROGRAM LOG ARGUMENT...: tries the show on the display and reports; status 0 when all is well.
doctor() {
    local program=$1 log=$2 frames lacks free renderer
    shift 2
    say "Playing three seconds of the heaviest scene ..."
    SDL_AUDIODRIVER=dummy "$program" --log "$log" --trial --nomusic --skip "$heaviest" "$@" ||
        (($? == 1)) || return 1
    renderer=$(from_log "$log" Renderer)
    frames=$(sed -n 's/^trial: \([0-9]*\).*/\1/p' "$log")
    lacks=$(grep -E 'cannot draw' "$log")
    free=$(df --output=avail --block-size=1M . | tail -n 1)

    echo "display   $DISPLAY, $(from_log "$log" 'screen res' | tr -d ' ' | tr , x)"
    echo "drawing   $(from_log "$log" Version), $(kind_of "$renderer")"
    echo "          $renderer"
    echo "stencil   $(from_log "$log" 'stencil size') bits"
    echo "indices   of 32 bits: $(from_lines "$log" 32-bit)"
    echo "textures  in vertex shaders: $(from_lines "$log" 'vertex shaders')"
    echo "points    as large as the show's: $(from_lines "$log" "points end")"
    if has_sound; then echo "sound     there"; else echo "sound     none: the show plays silently"; fi
    echo "space     ${free// /} MB free; building takes 100"
    echo "effects   ${lacks:-all can draw}"
    [[ $frames ]] || {
        echo "frames    none were counted: it was left too soon. See $log."
        return 1
    }
    echo "frames    $frames a second in the heaviest scene"
    echo
    if ((frames >= 49)); then
        echo "This machine will play the show at 50 frames a second."
    else
        echo "This machine will play the show, but not every frame of it: it keeps its pace with"
        echo "fewer pictures. A smaller window has more of them (--windowed 427x240), a video has"
        echo "them all (./record show.mp4); a browser plays it, too (./web)."
    fi
    [[ ! $lacks ]]
}

kind_of() {
    case $1 in
    *llvmpipe* | *softpipe* | *SWR* | *oftware*) echo "in software" ;;
    *) echo "by the graphics card" ;;
    esac
}
