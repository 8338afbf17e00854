#!/usr/bin/env bash
# soak.sh PROGRAMS-FOLDER OUTPUT-FOLDER MINUTES OPENINGS DAYS SEEDS ROUNDS PART...
# What script/soak runs, once everything is built.
# soak.sh --trial PROGRAMS-FOLDER OUTPUT-FOLDER
# A minute of the real part as a test of all this: figures that mean something
# only on an idle machine or after a long time are left out.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit
trial=
if [ "$1" = --trial ]; then
    trial=--trial
    set -- "$2" "$3" 1 60 2 8 8 real
fi
bin=$1 out=$2 minutes=$3 openings=$4 days=$5 seeds=$6 rounds=$7
shift 7
mkdir -p "$out"

# Each part leaves its figures in NAME.json; without them it failed.
run_simulated() {
    ORVELLE_SOAK_DAYS=$days ORVELLE_SOAK_OUT=$out/simulated.raw QT_QPA_PLATFORM=offscreen \
        "$bin/test_soak" --gtest_filter='Weeks.*' > "$out/simulated.log" 2>&1
    tests/soak/tests.py simulated "$out/simulated.json" $? "$out/simulated.log" "$out/simulated.raw"
}
run_model() {
    ORVELLE_MODEL_SEEDS=$seeds QT_QPA_PLATFORM=offscreen \
        "$bin/test_sync" --gtest_filter='*ReplicaModel*' > "$out/model.log" 2>&1
    tests/soak/tests.py model "$out/model.json" $? "$out/model.log"
}
run_sync() {
    local code=0
    local -x ORVELLE_SOAK=yes ORVELLE_TEST_ROUNDS=$rounds QT_QPA_PLATFORM=offscreen
    "$bin/test_freedesktop" --gtest_filter='*FolderProcesses*:*Apache*' > "$out/sync.log" 2>&1 || code=$?
    "$bin/test_app" --gtest_filter='SyncRounds.*' >> "$out/sync.log" 2>&1 || code=$?
    tests/soak/tests.py sync "$out/sync.json" $code "$out/sync.log"
}
# A network of its own, where one may be made, can fail without anybody noticing.
own_network() {
    local options
    for options in --net "--map-root-user --net"; do
        # shellcheck disable=SC2086
        unshare $options true 2> /dev/null && { echo "env ORVELLE_OWN_NETWORK=yes unshare $options"; return; }
    done
    echo env
}
run_real() {
    # shellcheck disable=SC2046
    $(own_network) script/with-desktop --panel xfce4-panel -- python3 -B tests/soak/real.py \
        --orvelle "$bin/orvelle" --hand "$bin/soak_hand" --minutes "$minutes" --openings "$openings" \
        --out "$out/real.json" $trial
}

files=()
for part in "$@"; do
    echo "soaking: $part"
    rm -f "$out/$part.json"
    "run_$part"
    files+=("$out/$part.json")
done
exec python3 -B tests/soak/report.py "${files[@]}"
