# shellcheck shell=bash disable=SC2034,SC2207
# bash completion for epsimport

_epsimport() {
    local cur prev words cword
    _init_completion || return

    case $prev in
        -o | --output | --report) _filedir; return ;;
        --fonts) _filedir -d; return ;;
        -f | --format) COMPREPLY=($(compgen -W "json svg dxf none" -- "$cur")); return ;;
        --lang) COMPREPLY=($(compgen -W "zh en" -- "$cur")); return ;;
        --curves) COMPREPLY=($(compgen -W "spline arc polyline" -- "$cur")); return ;;
        --origin) COMPREPLY=($(compgen -W "keep corner" -- "$cur")); return ;;
        --dxf) COMPREPLY=($(compgen -W "r2000 r12" -- "$cur")); return ;;
        -j | --jobs) COMPREPLY=($(compgen -W "$(seq "$(nproc)")" -- "$cur")); return ;;
        -t | --tolerance | --host-version | --flatness | --arc-tolerance | --join | --scale | --skip-color | --timeout | --memory) return ;;
    esac

    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "-o --output -f --format -t --tolerance --no-fill-outline --host-version --info --complete
            --fonts --lang --curves --flatness --arc-tolerance --dxf
            --dedupe --dedupe=contours --join --check --origin --scale --skip-color --report -j --jobs --timeout --memory --allow-file-access -q --quiet -h --help
            -V --version" -- "$cur"))
    else
        _filedir '@(eps|epsf|epsi|ps)'
    fi
} && complete -F _epsimport epsimport
