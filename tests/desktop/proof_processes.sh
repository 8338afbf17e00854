#!/usr/bin/env bash
# Several processes change the links at once, and some of them are killed:
# what was acknowledged is there.
. "$(dirname "$0")/proof_lib.sh"

acknowledged=$ORVELLE_DESKTOP/acknowledged

add() { # NAME [alone]: notes what was acknowledged
    "${2:-$orvelle}" add "http://$1.invalid/" > /dev/null && echo "$1.invalid" >> "$acknowledged"
}
names() { grep -o '"name":"[^"]*"' | cut -d '"' -f 4 | sort; }
names_in_app() { "$orvelle" links --json | names; }
names_in_store() { alone links --json | names; }
missing() { # WHERE
    comm -23 <(sort "$acknowledged") <("$1" | sort)
}
nothing_missing() { [ -z "$(missing "$1")" ]; }
acknowledged_count() { wc -l < "$acknowledged"; }
at_least() { [ "$(acknowledged_count)" -ge "$1" ]; }

many_at_once() {
    step "30 commands at once over the bus"
    local i jobs=()
    for i in {1..30}; do
        add "bus$i" & jobs+=($!)
    done
    wait "${jobs[@]}"
    [ "$(acknowledged_count)" -eq 30 ] || fail "only $(acknowledged_count) of 30 were acknowledged"
    [ -z "$(missing names_in_app)" ] || fail "lost: $(missing names_in_app)"
    [ "$(names_in_app | wc -l)" -eq 30 ] || fail "something was added twice"
}

behind_its_back() {
    step "commands without the bus while the running program is edited"
    local i jobs=()
    : > "$acknowledged"
    for i in {1..12}; do
        add "side$i" alone & jobs+=($!)
        add "main$i" & jobs+=($!)
    done
    wait "${jobs[@]}"
    [ "$(acknowledged_count)" -eq 24 ] || fail "only $(acknowledged_count) of 24 were acknowledged"
    expect 5 "the running program lacks $(missing names_in_app)" nothing_missing names_in_app
    [ -z "$(missing names_in_store)" ] || fail "the store lacks $(missing names_in_store)"
    [ "$(names_in_app | wc -l)" -eq 54 ] || fail "something was added twice or lost"
    quit_orvelle
    [ -z "$(missing names_in_store)" ] || fail "the end of the program lost $(missing names_in_store)"
}

killed() { # ROUND
    local round=$1 adders=() adder i
    : > "$acknowledged"
    start_ready
    for adder in a b c; do
        for i in {1..40}; do
            kill -0 "$orvelle_pid" 2> /dev/null || break
            add "kill$round$adder$i"
        done 2> /dev/null &
        adders+=($!)
    done
    expect 20 "the commands are too slow" at_least $((round * 4))
    kill -KILL "$orvelle_pid"
    wait "$orvelle_pid" 2> /dev/null
    wait "${adders[@]}"
    [ -z "$(missing names_in_store)" ] || fail "lost by a kill: $(missing names_in_store)"
}

unanswered() {
    step "killed with a command unanswered: the command is not done a second time"
    start_ready
    dbus-monitor --session member=RunCommand > "$ORVELLE_DESKTOP/calls" &
    local monitor=$! command
    watched() { "$orvelle" links && grep -q RunCommand "$ORVELLE_DESKTOP/calls"; }
    expect 10 "the bus cannot be watched" watched
    kill -STOP "$orvelle_pid"
    "$orvelle" add http://unanswered.invalid/ > /dev/null 2> "$ORVELLE_DESKTOP/refusal" &
    command=$!
    expect 10 "the command was not sent" grep -q unanswered "$ORVELLE_DESKTOP/calls"
    kill -KILL "$orvelle_pid" "$monitor"
    wait "$orvelle_pid" "$monitor" 2> /dev/null
    wait "$command"
    [ $? -eq 1 ] || fail "the command does not say that it is uncertain"
    grep -q 'before it answered' "$ORVELLE_DESKTOP/refusal" || fail "said: $(cat "$ORVELLE_DESKTOP/refusal")"
    names_in_store | grep -q unanswered && fail "the command was done by another process"
}

: > "$acknowledged"
no_first_steps
start_ready
many_at_once
behind_its_back
step "killed while three others add, three times"
for round in 1 2 3; do
    killed "$round"
done
[ -z "$(names_in_store | uniq --repeated)" ] || fail "added twice: $(names_in_store | uniq --repeated)"
unanswered
step "it starts again with everything"
start_ready
[ -z "$(missing names_in_app)" ] || fail "lost: $(missing names_in_app)"
[ "$(names_in_app | grep -c '^bus')" -eq 30 ] || fail "the first links are gone"
quit_orvelle
echo "all steps done"
