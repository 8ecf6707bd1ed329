# shellcheck shell=bash
# Configures and builds, and shows how far it is. Source it with the repository root as the working
# directory.
. doors/common.sh

# Ninja cannot read back paths with a character other than these, and builds all anew each time:
# then a link stands for the checkout.
plain_path() {
    local link
    link=${XDG_CACHE_HOME:-${HOME-}/.cache}/tarvisk/checkout-$(cksum <<<"$PWD" | tr ' ' -)
    if [[ $PWD == *[!\ A-Za-z0-9+,/_:.~\(\)@=%-]* ]] && mkdir -p "${link%/*}" && ln -sfn "$PWD" "$link"; then
        echo "$link"
    else
        echo "$PWD"
    fi
}
house=$(plain_path)

# is_configured DIR -DNAME=VALUE...: whether DIR was configured for this very checkout like that.
# Asked before CMake is, so that a second start costs nothing.
is_configured() {
    local cache=$1/CMakeCache.txt setting
    [[ -f $cache && (-f $1/build.ninja || -f $1/Makefile) ]] || return 1
    shift
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$house" "$cache" || return 1
    for setting in "${@#-D}"; do
        grep -qx "${setting%%=*}:[A-Z]*=${setting#*=}" "$cache" || return 1
    done
}

configure() {
    local dir=$1 fresh=()
    if [[ -f $dir/CMakeCache.txt ]]; then
        # A cache from before the checkout moved would be refused.
        grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$house" "$dir/CMakeCache.txt" || fresh=(--fresh -G Ninja)
    else
        fresh=(-G Ninja)
    fi
    cmake -S "$house" -B "$house/$dir" "${fresh[@]}" "${@:2}"
}

# Announces WHAT at the first "[12/80]" line, so that nothing is said where nothing is built, and
# shows these lines: in place on a terminal, every quarter elsewhere.
show_progress() {
    local what=$1 line announced='' quarter=0 done_now pattern='^\[ *([0-9]+)[/%]([0-9]*)\]'
    while IFS= read -r line; do
        [[ $line =~ $pattern && $line != *"Built target"* && $line != *"Re-"* ]] || continue
        [[ $announced ]] || say "Building $what (minutes the first time) ..."
        announced=yes
        if [[ -t 2 ]]; then
            printf '\r\033[K  %.*s' $((${COLUMNS:-80} - 4)) "$line" >&2
        else
            done_now=$((BASH_REMATCH[1] * 4 / ${BASH_REMATCH[2]:-100}))
            ((done_now == quarter)) || printf '  %s\n' "${BASH_REMATCH[0]}" >&2
            quarter=$done_now
        fi
    done
    [[ -z $announced || ! -t 2 ]] || printf '\r\033[K' >&2
}

build_failed() {
    local dir=$1
    tail -n 40 "$dir/build.log" >&2
    give_up "$2" "The whole log is $dir/build.log. If the sources are untouched, delete $dir and try again;" \
        "if that does not help, send that log with your report."
}

# build DIR WHAT TARGET -DNAME=VALUE...: configures where needed and builds; quiet when nothing is to
# do.
build() {
    local dir=$1 what=$2 target=$3
    shift 3
    mkdir -p "$dir" || give_up "$PWD/$dir cannot be made: the show is built there. May you write here?"
    lock
    if ! is_configured "$dir" "$@"; then
        say "Configuring $what in $dir ..."
        configure "$dir" "$@" >"$dir/build.log" 2>&1 || build_failed "$dir" "Configuring $what failed."
    fi
    cmake --build "$dir" --target "$target" --parallel "$(nproc)" 2>&1 | tee "$dir/build.log" |
        show_progress "$what"
    [[ ${PIPESTATUS[0]} == 0 ]] || build_failed "$dir" "Building $what failed."
    unlock
}

# What ./run and ./record start. A compiler of tomorrow may warn of what today's do not; that must
# not keep a viewer from the show.
for_viewers=(-DCMAKE_BUILD_TYPE=Release -DCMAKE_COMPILE_WARNING_AS_ERROR=OFF)

# Who only plays the show needs no recorder; one that is configured already may stay.
build_show() {
    local without=()
    is_configured build -DTARVISK_RECORDER=ON || without=(-DTARVISK_RECORDER=OFF)
    build build "the show" tarvisk-play "${for_viewers[@]}" "${without[@]}"
}

build_recorder() { build build "the recorder" tarvisk-record "${for_viewers[@]}" -DTARVISK_RECORDER=ON; }
