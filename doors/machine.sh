# shellcheck shell=bash
# What this machine has to play the show on.

has_sound() {
    local runtime=${XDG_RUNTIME_DIR:-/run/user/$(id -u)} device
    [[ -z ${SDL_AUDIODRIVER:-} && -z ${PULSE_SERVER:-} ]] || return 0
    [[ ! -S $runtime/pulse/native && ! -S $runtime/pipewire-0 ]] || return 0
    for device in /dev/snd/pcmC*p; do
        [[ ! -w $device ]] || return 0
    done
    return 1
}

# Whether there is an X display, and if not, a sentence on standard output that says why.
has_display() {
    local answer
    if [[ -z ${DISPLAY:-} ]]; then
        if [[ ${WAYLAND_DISPLAY:-} ]]; then
            echo "This Wayland session has no X display (DISPLAY is not set): it lacks Xwayland."
        else
            echo "No X display (DISPLAY is not set)."
        fi
        return 1
    fi
    answer=$(LC_ALL=C timeout 10 xdpyinfo 2>&1 >/dev/null) && return
    case $answer in
    *uthoriz* | *"No protocol specified"* | *cookie*)
        echo "The X display $DISPLAY is there but refuses you: it belongs to another user or session." \
            "Start the show from a terminal of that session."
        ;;
    *) echo "No X display answers at $DISPLAY." ;;
    esac
    return 1
}
