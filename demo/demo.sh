#!/usr/bin/env bash
# Shows the commands on sample stores: each folder of samples/ is one. Everything lies in a private folder that is
# removed at the end; set VESK_DEMO_KEEP to keep it. Argument: the folder of the programs.
set -euo pipefail

programs=$(cd -- "$1" && pwd)
demo=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
samples=$demo/samples

work=$(mktemp -d "${TMPDIR:-/tmp}/vesk-demo.XXXXXX")
finish() {
    if [[ -n ${VESK_DEMO_KEEP:-} ]]; then
        echo "The demo's folder stays: $work" >&2
    else
        rm -rf -- "$work"
    fi
}
trap finish EXIT
mkdir -p "$work"/{home,state,cache,data,config,run}
chmod 700 "$work/run"

# Nothing of the user's own surroundings is read or written, and nobody is asked anything.
vesk_env=(env -i PATH=/usr/bin:/bin LANG=C.UTF-8 TZ="${VESK_DEMO_TZ:-Europe/Berlin}" HOME="$work/home"
    XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" XDG_STATE_HOME="$work/state"
    XDG_CACHE_HOME="$work/cache" XDG_RUNTIME_DIR="$work/run" VESK_CALENDARS_DIR="$work/calendars"
    VESK_REMINDERS_DIR="$work/reminders" VESK_CONTACTS_DIR="$work/contacts" VESK_MAIL_DIR="$work/mail"
    VESK_STATE_DIR="$work/state/vesk" VESK_CACHE_DIR="$work/cache/vesk" VESK_APP_SUPPORT_DIR="$work/home/support"
    VESK_USER_ADDRESSES=dana@example.com)

# The samples hold @DAY+N@ for the date N days from today, as YYYYMMDD, and @MAIL+N@ for it as mail writes it.
today=$("${vesk_env[@]}" date +%Y-%m-%d)
place() {
    local text offset
    text=$(<"$1")
    while [[ $text =~ @DAY([+-][0-9]+)@ ]]; do
        offset=${BASH_REMATCH[1]}
        text=${text//"@DAY$offset@"/$(date -u -d "$today $offset days" +%Y%m%d)}
    done
    while [[ $text =~ @MAIL([+-][0-9]+)@ ]]; do
        offset=${BASH_REMATCH[1]}
        text=${text//"@MAIL$offset@"/$(LC_ALL=C date -u -R -d "$today $offset days 08:30")}
    done
    # Calendars and cards end their lines with CR LF, stored mail with LF.
    if [[ $1 == "$samples"/mail/* ]]; then cat <<<"$text" >"$2"; else sed 's/$/\r/' <<<"$text" >"$2"; fi
}
while IFS= read -r -d '' sample; do
    target=$work/${sample#"$samples"/}
    mkdir -p -- "${target%/*}"
    if [[ $sample == */displayname ]]; then cp -- "$sample" "$target"; else place "$sample" "$target"; fi
done < <(find "$samples" -type f -print0)
mkdir -p "$work"/mail/personal/{,.Archive/}{cur,new,tmp}

section() {
    printf '\n\n=== %s\n' "$1"
}

# Prints a command as a person would type it, then runs it.
show() {
    local word line="\$ $1"
    for word in "${@:2}"; do
        [[ $word =~ ^[A-Za-z0-9_./:=@-]+$ ]] && line+=" $word" || line+=" \"$word\""
    done
    printf '\n%s\n' "$line"
    "${vesk_env[@]}" "$programs/$1" "${@:2}"
}

# Shows what a command changes in a file of a store.
show_change() {
    local file=$1
    shift
    cp -- "$work/$file" "$work/before"
    show "$@"
    printf '\nWhat that changed in %s:\n\n' "$file"
    diff -U 100 "$work/before" "$work/$file" | tail -n +4 | tr -d '\r' || true
}

section "Consent: nothing is read before the user has said yes"
show vesk consent grant calendar reminders contacts mail --yes
show VeskCapabilityBroker status

section "Calendars: three collections that other programs keep"
show VeskCapabilityBroker calendar-list
show VeskCapabilityBroker calendar-today
show VeskCapabilityBroker calendar-create --calendar Home --title "Water the plants" \
    --start "$(date -u -d "$today 1 day" +%Y-%m-%d) 18:00" --notes "The big ones on the balcony too"
show VeskCapabilityBroker calendar-next
show VeskCapabilityBroker calendar-respond-invite --response accept --title "Budget review"

section "To-dos: the assistant's own list, which other programs may keep too"
show VeskCapabilityBroker todo-add --title "Tell the bank the new address" --notes "Both accounts" \
    --due "$(date -u -d "$today 2 days" +%Y-%m-%d) 10:00"
show VeskCapabilityBroker todo-list
show_change reminders/vesk-todos/order-boxes-subtask.ics \
    VeskCapabilityBroker todo-complete --id 7702941536028841077
show VeskCapabilityBroker todo-stats

section "Contacts: cards as phones export them"
show VeskCapabilityBroker contacts-search --query muller
show VeskCapabilityBroker contacts-search --query garcon
show_change contacts/friends/anna-phone.vcf \
    VeskCapabilityBroker contacts-save --request "$demo/contact.json"

section "Mail: a Maildir account"
show VeskCapabilityBroker mail-list --view unread
show VeskCapabilityBroker mail-list --view flagged --limit 5
show VeskCapabilityBroker mail-check-followup --subject "Quarterly report" --message-id report-1@example.com \
    --since "$(date -u -d "$today 4 days ago" +%Y-%m-%dT00:00:00Z)"

section "Documents: HTML as a PDF file"
if [[ -x /usr/lib/chromium/chromium-headless-shell || -x /usr/lib/chromium/chromium ]]; then
    sed "s|@WORK@|$work|" "$demo/letter.json" >"$work/letter.json"
    show VeskCapabilityBroker pdf-render-html --request "$work/letter.json"
else
    printf '\nLeft out: it needs the Debian package chromium-headless-shell.\n'
fi

section "Films: pictures, one after the other"
cat >"$work/reel.json" <<JSON
{
  "profile": "instagram_reel",
  "inputs": [
    { "path": "$demo/pictures/hills.png" },
    { "path": "$demo/pictures/sea.png" }
  ],
  "outputPath": "$work/reel.mp4"
}
JSON
show VeskCapabilityBroker media-compose --request "$work/reel.json"

section "Secrets: sealed in a file, where no keyring runs"
printf 'no-real-token\n' | show vesk secrets set OPENAI_API_KEY
show vesk secrets presence

section "The assistant's runtime and its releases"
show vesk liveness
show vesk channel urls --channel stable --version 1.4.2
show vesk update show
