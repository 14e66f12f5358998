# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Completion of kel-render's command line in bash.

_kel_render()
{
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local options="-o --output --format --quality -s --size --scale-factor --padding --bounds --map --map-bounds --no-map
        --dark --no-scale --no-attribution --attribution --crop --line-color --line-width --fill-color --halo-width
        --pen-style --display-options --marker --shape --smoothing --smoothing-steps --beeline --name --selection
        --save-selection --export --info --report --stats -k --keep-going -q --quiet --verbose -h --help -v --version"
    local words=""
    # With "--format=p" the words are "--format", "=" and "p".
    if [ "$current" = "=" ]; then
        current=""
    elif [ "$before" = "=" ]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    case $before in
        --format) words="png jpg webp pdf svg" ;;
        --report | --stats) words="json" ;;
        --pen-style) words="solid dash dot dash-dot dash-dot-dot none" ;;
        --display-options) words="stroke fill stroke,fill" ;;
        --marker) words="disk circle x block rect rhombus star6 star9 star12 arrow" ;;
        --shape) words="point linestring polygon hop auto" ;;
        --beeline)
            words="Oldenburg Bremen Wellington Sydney LA Honolulu Polynesien Greenich Windhoek Helsinki Gibraltar Passau" ;;
        -s | --size) words="800x600 1600x1000 3200x2000" ;;
        --quality | --scale-factor | --padding | --bounds | --map-bounds | --attribution | --crop | --line-color | \
            --line-width | --fill-color | --halo-width | --smoothing | --smoothing-steps | --name)
            COMPREPLY=()
            return ;;
        -o | --output | --map | --selection | --save-selection | --export) ;;
        *) [[ $current == -* ]] && words=$options ;;
    esac
    if [ -n "$words" ]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}

complete -F _kel_render kel-render
