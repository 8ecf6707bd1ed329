# shellcheck shell=bash
# Shared by the commands that a person types: packages, build, sound, display.
# Source it from a bash script with the repository root as the working directory.

say() { printf '* %s\n' "$*" >&2; }

give_up() {
    printf '\n! %s\n' "$1" >&2
    shift
    for hint in "$@"; do printf '  %s\n' "$hint" >&2; done
    exit 1
}

# --- packages ---------------------------------------------------------------------------------

# package_list SYSTEM PURPOSE...: the packages' names, each once. SYSTEM is debian, fedora, arch
# or opensuse, the columns of packaging/packages.
package_list() {
    local system=$1 purpose _
    local debian fedora arch opensuse
    shift
    # shellcheck disable=SC2034 # the columns are read through ${!system}
    while read -r purpose debian fedora arch opensuse _; do
        [[ " $* " == *" $purpose "* && ${!system} != - ]] && echo "${!system}"
    done < <(grep -v '^#' packaging/packages) | sort -u
}

system_kind() {
    if command -v apt-get && command -v dpkg-query; then echo debian
    elif command -v pacman; then echo arch
    elif command -v zypper; then echo opensuse
    elif command -v dnf; then echo fedora
    else echo unknown
    fi | tail -n 1
}

# missing_packages SYSTEM: reads names, writes those that are not installed.
missing_packages() {
    local system=$1 name
    case $system in
    debian)
        local wanted installed
        wanted=$(cat)
        # shellcheck disable=SC2086
        installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' $wanted 2>/dev/null |
            sed -n 's/^installed //p' | sort -u)
        comm -23 <(echo "$wanted") <(echo "$installed")
        ;;
    arch) xargs pacman -T ;;
    fedora | opensuse)
        while read -r name; do rpm -q --quiet --whatprovides "$name" || echo "$name"; done
        ;;
    esac
}

as_root() {
    if [[ $(id -u) == 0 ]]; then "$@"; else sudo "$@"; fi
}

install_on_debian() {
    local names="$*"
    if [[ $(id -u) != 0 ]]; then
        command -v sudo >/dev/null ||
            give_up "Packages are missing, and without sudo only root can install them. As root:" \
                "apt-get install --no-install-recommends $names"
        say "sudo may ask for your password: installing packages needs root's rights."
    fi
    # An out-of-date list is no reason to stop: the packages may still be found.
    as_root apt-get update -qq || say "The package lists could not be refreshed; trying with the old ones."
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 "$@" </dev/null >&2 ||
        give_up "The packages could not be installed; the lines above say why." \
            "Is the network there, and is no other installation running? Then try again, or type" \
            "apt-get install --no-install-recommends $names"
}

# need_packages WHY PURPOSE...: installs what is missing, or says what to install and ends.
need_packages() {
    local why=$1 system names
    shift
    [[ ${TARVISK_PACKAGES:-} != mine ]] || return 0
    system=$(system_kind)
    if [[ $system == unknown ]]; then
        mapfile -t names < <(package_list debian "$@")
        give_up "This system's package manager is not known here. On Debian the packages $why are:" \
            "${names[*]}" \
            "Install what corresponds to them, then say so: TARVISK_PACKAGES=mine $0"
    fi
    mapfile -t names < <(package_list "$system" "$@" | missing_packages "$system")
    ((${#names[@]})) || return 0
    case $system in
    debian)
        say "Installing ${#names[@]} Debian packages $why: ${names[*]}"
        install_on_debian "${names[@]}"
        ;;
    fedora) tell_install "$why" "sudo dnf install" "${names[@]}" ;;
    arch) tell_install "$why" "sudo pacman -S --needed" "${names[@]}" ;;
    opensuse) tell_install "$why" "sudo zypper install" "${names[@]}" ;;
    esac
}

tell_install() {
    local why=$1 command=$2
    shift 2
    give_up "Packages are missing $why. Install them, then try again:" "$command $*" \
        "If you have them all under other names, say so: TARVISK_PACKAGES=mine $0"
}

# --- build ------------------------------------------------------------------------------------

# is_configured DIR -DNAME=VALUE...: whether DIR was configured for this very checkout like that.
# Asked before CMake is, so that a second start costs nothing.
is_configured() {
    local cache=$1/CMakeCache.txt setting
    [[ -f $cache && (-f $1/build.ninja || -f $1/Makefile) ]] || return 1
    shift
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$cache" || return 1
    for setting in "${@#-D}"; do
        grep -qx "${setting%%=*}:[A-Z]*=${setting#*=}" "$cache" || return 1
    done
}

configure() {
    local dir=$1 fresh=()
    if [[ -f $dir/CMakeCache.txt ]]; then
        # A cache from before the checkout moved would be refused.
        grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$dir/CMakeCache.txt" || fresh=(--fresh -G Ninja)
    else
        fresh=(-G Ninja)
    fi
    cmake -S . -B "$dir" "${fresh[@]}" "${@:2}"
}

# Announces WHAT at the first "[12/80]" line, so that nothing is said where nothing is built, and
# shows these lines: in place on a terminal, every quarter elsewhere.
show_progress() {
    local what=$1 line announced='' quarter=0 done_now pattern='^\[ *([0-9]+)[/%]([0-9]*)\]'
    while IFS= read -r line; do
        [[ $line =~ $pattern ]] || continue
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

# build DIR WHAT -DNAME=VALUE...: configures where needed and builds; quiet when nothing is to do.
build() {
    local dir=$1 what=$2
    shift 2
    mkdir -p "$dir" || give_up "$PWD/$dir cannot be made: the show is built there. May you write here?"
    if ! is_configured "$dir" "$@"; then
        say "Configuring $what in $dir ..."
        configure "$dir" "$@" >"$dir/build.log" 2>&1 || build_failed "$dir" "Configuring $what failed."
    fi
    cmake --build "$dir" --parallel "$(nproc)" 2>&1 | tee "$dir/build.log" | show_progress "$what"
    [[ ${PIPESTATUS[0]} == 0 ]] || build_failed "$dir" "Building $what failed."
}

# What ./run and ./record start. A compiler of tomorrow may warn of what today's do not; that must
# not keep a viewer from the show.
build_show() { build build "the show" -DCMAKE_BUILD_TYPE=Release -DCMAKE_COMPILE_WARNING_AS_ERROR=OFF; }

# --- sound and display ------------------------------------------------------------------------

has_sound() {
    local runtime=${XDG_RUNTIME_DIR:-/run/user/$(id -u)} device
    [[ -z ${SDL_AUDIODRIVER:-} && -z ${PULSE_SERVER:-} ]] || return 0
    [[ ! -S $runtime/pulse/native && ! -S $runtime/pipewire-0 ]] || return 0
    for device in /dev/snd/pcmC*p; do
        [[ ! -w $device ]] || return 0
    done
    return 1
}

has_display() { [[ -n ${DISPLAY:-} ]] && timeout 10 xdpyinfo >/dev/null 2>&1; }
