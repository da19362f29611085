#!/usr/bin/env bash
# Kills a logging program at random moments: every entry that it counted has to be whole in the
# file, and nothing in the file may be broken.
#
#   kill-while-logging.sh PROGRAM [ROUNDS]
set -euo pipefail
export LC_ALL=C

program=$1
rounds=${2:-12}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

number='-?[0-9.]+'
entry=$'^[ -][0-9.]+\t('$number$'\xb0C\t){3}('$number$'RPM\t){2}'$number$'%\r$'
counted=0
for ((round = 1; round <= rounds; ++round)); do
    log=$folder/log$round.xls
    "$program" "$log" >"$folder/counts$round" 2>/dev/null &
    victim=$!
    for ((wait = 0; wait < 1000; ++wait)); do
        [ -s "$folder/counts$round" ] && break
        sleep 0.01
    done
    sleep "0.$((RANDOM % 300 + 100))"
    kill -KILL "$victim"
    wait "$victim" 2>/dev/null || true

    shown=$(tail -n 1 "$folder/counts$round")
    lines=$(wc -l <"$log")
    whole=$(grep -a -c -E "$entry" "$log" || true)
    if [ "$whole" -ne $((lines - 2)) ] || [ "$whole" -lt "$shown" ] ||
        [ "$whole" -gt $((shown + 1)) ] || [ -n "$(tail -c 1 "$log" | tr -d '\n')" ]; then
        echo "round $round: $shown entries counted, $whole whole ones in $lines lines"
        exit 1
    fi
    counted=$((counted + shown))
done
[ "$counted" -gt "$rounds" ] || { echo "next to nothing was logged"; exit 1; }
echo "$rounds kills, $counted entries counted, every one of them whole"
