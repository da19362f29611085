# Completion of the command ztm in bash.

# What follows a command; $1 is the command, $2 how many words behind it are complete, $3 the last of
# them.
_ztm_words() {
    case $1:$2 in
    table:0) echo show save load set ;;
    snapshot:0) echo save recall diff ;;
    fan:0) echo auto manual transition points 1 2 ;;
    fan:1)
        case $3 in
        1 | 2) echo rpm poles source response ramp ;;
        transition) echo steps linear ;;
        points) echo 4 8 ;;
        esac ;;
    limits:0) echo local remote1 remote2 therm hysteresis ;;
    limits:1) echo low high therm ;;
    heater:0) echo 1 2 ;;
    export:0) echo c i2cset tsv ;;
    read:* | write:0) echo Configuration1 Configuration2 Configuration3 Configuration4 Status1 Status2 Status3 ;;
    esac
}

_ztm() {
    local current=$2 previous=$3 command= behind=0 i
    local commands="buses scan read write dump watch log alerts snapshot export table fan limits heater run"
    local options="--adapter --bus --address --memory-address --variant --json --fast --keep-heaters --help --version"
    COMPREPLY=()
    case $previous in
    --adapter) COMPREPLY=($(compgen -W "usb sim i2c" -- "$current")); return ;;
    --variant) COMPREPLY=($(compgen -W "ZTM7710 ZTM7720" -- "$current")); return ;;
    --channels) COMPREPLY=($(compgen -W "local remote1 remote2 fan1 fan2 therm" -- "$current")); return ;;
    --bus)
        COMPREPLY=($(compgen -W "$(printf '%s\n' /dev/i2c-* | sed -n 's|/dev/i2c-\([0-9]\)|\1|p')" -- "$current"))
        return ;;
    --address | --to-bus | --to-address | -i | --interval | -n | --count) return ;;
    esac
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        --adapter | --bus | --address | --variant) ((++i)) ;;
        -*) ;;
        *) if [[ -z $command ]]; then command=${COMP_WORDS[i]}; else ((++behind)); fi ;;
        esac
    done
    if [[ $current == -* ]]; then
        case $command in
        write) options+=" --verify" ;;
        dump) options+=" --changed --all" ;;
        watch) options+=" --interval --count --channels" ;;
        log) options+=" --interval --count --channels --force" ;;
        snapshot) options+=" --force --dry-run" ;;
        table) options+=" --force" ;;
        export) options+=" --to-bus --to-address" ;;
        esac
        COMPREPLY=($(compgen -W "$options" -- "$current"))
    elif [[ -z $command ]]; then
        COMPREPLY=($(compgen -W "$commands" -- "$current"))
    elif [[ $command == run || $command == log ||
        ($command == snapshot || $command == table) && $behind -gt 0 ]]; then
        COMPREPLY=($(compgen -f -- "$current"))
        compopt -o filenames 2>/dev/null
    else
        COMPREPLY=($(compgen -W "$(_ztm_words "$command" "$behind" "$previous")" -- "$current"))
    fi
}

complete -F _ztm ztm
