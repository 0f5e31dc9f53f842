#!/usr/bin/env bash
# Shows the calendar commands on sample calendars. Everything lies in a private folder that is removed at the end;
# set VESK_DEMO_KEEP to keep it. Argument: the folder of the programs.
set -euo pipefail

programs=$(cd -- "$1" && pwd)
samples=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/samples" && pwd)

work=$(mktemp -d "${TMPDIR:-/tmp}/vesk-demo.XXXXXX")
finish() {
    if [[ -n ${VESK_DEMO_KEEP:-} ]]; then
        echo "The demo's folder stays: $work" >&2
    else
        rm -rf -- "$work"
    fi
}
trap finish EXIT
mkdir -p "$work"/{home,calendars,state,cache,data,config,run}
chmod 700 "$work/run"

# Nothing of the user's own surroundings is read or written, and nobody is asked anything.
vesk_env=(env -i PATH=/usr/bin:/bin LANG=C.UTF-8 TZ="${VESK_DEMO_TZ:-Europe/Berlin}" HOME="$work/home"
    XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" XDG_STATE_HOME="$work/state"
    XDG_CACHE_HOME="$work/cache" XDG_RUNTIME_DIR="$work/run" VESK_CALENDARS_DIR="$work/calendars"
    VESK_STATE_DIR="$work/state/vesk" VESK_CACHE_DIR="$work/cache/vesk"
    VESK_APP_SUPPORT_DIR="$work/home/support" VESK_USER_ADDRESSES=dana@example.com)

# The samples hold @DAY+N@ for the date N days from today, as YYYYMMDD.
today=$("${vesk_env[@]}" date +%Y-%m-%d)
place() {
    local text offset
    text=$(<"$1")
    while [[ $text =~ @DAY([+-][0-9]+)@ ]]; do
        offset=${BASH_REMATCH[1]}
        text=${text//"@DAY$offset@"/$(date -u -d "$today $offset days" +%Y%m%d)}
    done
    # Calendars end their lines with CR LF.
    sed 's/$/\r/' <<<"$text" >"$2"
}
for collection in "$samples"/*/; do
    name=$(basename -- "$collection")
    mkdir -p "$work/calendars/$name"
    [[ ! -f $collection/displayname ]] || cp -- "$collection/displayname" "$work/calendars/$name/"
    for sample in "$collection"*.ics; do
        place "$sample" "$work/calendars/$name/$(basename -- "$sample")"
    done
done

# Prints a command as a person would type it, then runs it.
show() {
    local word line="\$ $1"
    for word in "${@:2}"; do
        [[ $word =~ ^[A-Za-z0-9_./:=@-]+$ ]] && line+=" $word" || line+=" \"$word\""
    done
    printf '\n%s\n' "$line"
    "${vesk_env[@]}" "$programs/$1" "${@:2}"
}

show vesk consent grant calendar --yes
show VeskCapabilityBroker status
show VeskCapabilityBroker calendar-list
show VeskCapabilityBroker calendar-today
show VeskCapabilityBroker calendar-create --calendar Home --title "Water the plants" \
    --start "$(date -u -d "$today 1 day" +%Y-%m-%d) 18:00" --notes "The big ones on the balcony too"
show VeskCapabilityBroker calendar-next
show VeskCapabilityBroker calendar-respond-invite --response accept --title "Budget review"
