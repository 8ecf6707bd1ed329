# shellcheck shell=bash
# What the commands need from the system, and how it gets there. Source it with the repository root
# as the working directory.
. doors/common.sh

# package_list SYSTEM PURPOSE...: the packages' names, each once. SYSTEM is debian, fedora, arch
# or opensuse, the columns of doors/packages.
package_list() {
    local system=$1 purpose _
    local debian fedora arch opensuse
    shift
    # shellcheck disable=SC2034 # the columns are read through ${!system}
    while read -r purpose debian fedora arch opensuse _; do
        [[ " $* " == *" $purpose "* && ${!system} != - ]] && echo "${!system}"
    done < <(grep -v '^#' doors/packages) | sort -u
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

# The command that a person can type instead.
install_command() {
    local sudo=''
    [[ $(id -u) == 0 ]] || sudo='sudo '
    echo "${sudo}apt-get install --no-install-recommends $*"
}

# Whether one of the mirrors answers, found in seconds: apt-get itself would try every file of every
# mirror, minutes long. Yes where no mirror is on the network.
mirror_answers() {
    local sites site folder answer=1
    mapfile -t sites < <(
        # shellcheck disable=SC2016 # apt-get's own variables
        apt-get indextargets --format '$(SITE) $(REPO_URI)dists/$(RELEASE)/InRelease' \
            'Created-By: Packages' 2>/dev/null | grep '^http' | sort -u -k 1,1 | head -n 3)
    ((${#sites[@]})) || return 0
    folder=$(mktemp -d) || return 0
    for site in "${sites[@]#* }"; do
        timeout 20 /usr/lib/apt/apt-helper -o Acquire::Retries=0 -o Acquire::http::Timeout=10 \
            -o Acquire::https::Timeout=10 download-file "$site" "$folder/InRelease" >/dev/null 2>&1 &&
            answer=0 && break
    done
    rm -rf "$folder"
    return "$answer"
}

# The Debian mirror that this machine itself installs from.
debian_mirror() {
    # shellcheck disable=SC2016 # apt-get's own variables
    apt-get indextargets --format '$(LABEL) $(REPO_URI)' 'Created-By: Packages' |
        sed -n 's/^Debian \(http.*\)/\1/p' | sort | head -n 1
}

# say_size NAME...: how much comes with these, in apt-get's own words.
say_size() {
    LC_ALL=C apt-get install --assume-no --no-install-recommends --no-remove \
        -o Debug::NoLocking=true "$@" </dev/null 2>/dev/null |
        grep -E '^Need to get|^After this operation|^[0-9]+ upgraded' >&2
}

# What sudo says with status 1; apt-get's own failures are 100 and more.
refused_by_sudo() { [[ $1 == 1 && $(id -u) != 0 ]]; }

install_on_debian() {
    local names=("$@") hint status stopped=''
    hint=$(install_command "$@")
    if [[ $(id -u) != 0 ]]; then
        command -v sudo >/dev/null ||
            give_up "Without sudo only root can install packages. As root, type" "${hint#sudo }"
    fi
    mirror_answers ||
        give_up "The package mirror does not answer: is the network there? Nothing was installed." \
            "Then try again, or type" "$hint"
    [[ $(id -u) == 0 ]] || say "sudo may ask for your password: installing packages needs root's rights."
    trap 'stopped=yes' INT TERM HUP
    as_root apt-get update -q >&2
    status=$?
    give_up_if_stopped
    ! refused_by_sudo "$status" ||
        give_up "Without root's rights nothing can be installed. Try again, or type" "$hint"
    # An out-of-date list is no reason to stop: the packages may still be found.
    ((status == 0)) || say "The package lists could not be refreshed; trying with the old ones."
    say_size "${names[@]}"
    apt_install --download-only "${names[@]}"
    status=$?
    give_up_if_stopped
    ((status == 0)) ||
        give_up "The packages could not be downloaded; the lines above say why." \
            "Is the network there, and is no other installation running? Then try again, or type" "$hint"
    apt_install "${names[@]}" ||
        give_up "The packages could not be installed; the lines above say why." "Try again, or type" "$hint"
    give_up_if_stopped
    trap - INT TERM HUP
}

give_up_if_stopped() {
    [[ ! $stopped ]] || give_up "Stopped."
}

# Installing is not to be broken off, so it gets a session of its own, where no Ctrl-C and no closed
# terminal reaches dpkg; what waits for it must not be broken off, either.
apt_install() {
    local apart=()
    # shellcheck disable=SC2016 # the inner shell's arguments
    [[ $1 == --download-only ]] || apart=(sh -c 'trap "" INT TERM HUP; exec setsid -w "$@"' sh)
    as_root "${apart[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y \
        --no-install-recommends --no-remove -o DPkg::Lock::Timeout=300 "$@" </dev/null >&2
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
    lock
    mapfile -t names < <(package_list "$system" "$@" | missing_packages "$system")
    case $system in
    debian)
        # None where the command that was waited for has installed them.
        ((${#names[@]})) || return 0
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
