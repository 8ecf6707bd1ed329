# shellcheck shell=bash
# How the commands that a person types speak, and how they wait for each other. Source it with the
# repository root as the working directory.

say() { printf '* %s\n' "$*" >&2; }

give_up() {
    printf '\n! %s\n' "$1" >&2
    shift
    for hint in "$@"; do printf '  %s\n' "$hint" >&2; done
    exit 1
}

# One command at a time installs or builds in a checkout; who comes second waits. What is started
# after unlock does not hold the lock.
lock_fd=
lock() {
    [[ ! $lock_fd ]] || return 0
    mkdir -p build 2>/dev/null
    exec {lock_fd}>build/.lock || give_up "$PWD/build cannot be written to. May you write here?"
    flock --nonblock "$lock_fd" && return
    say "Another command is installing or building here; waiting for it ..."
    flock "$lock_fd"
}

unlock() {
    [[ $lock_fd ]] || return 0
    exec {lock_fd}>&-
    lock_fd=
}
