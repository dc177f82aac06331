#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Runs the suites that portal teams copy, with clients that nobody here wrote: suites.sh DRIVER
# EXAMPLES. Ends with 77, which ctest takes for "skipped", where a client is missing.
set -euo pipefail
driver=$1
examples=$2

skip() {
    echo "skipped: $*"
    exit 77
}

command -v Xvfb >/dev/null || skip "Xvfb is not installed"
# Debian's Python, which has Debian's modules; another one may stand before it.
python=/usr/bin/python3
"$python" -c 'import pytest, selenium' 2>/dev/null || skip "python3-pytest or python3-selenium is not installed"

scratch=$(mktemp -d)
"$driver" --port 0 >"$scratch/driver" &
pid=$!
trap 'kill "$pid"; wait "$pid" || true; rm -rf "$scratch"' EXIT
for ((tries = 0; tries < 300; tries++)); do
    [ ! -s "$scratch/driver" ] || break
    sleep 0.1
done
VESPREL_DRIVER=$(grep -o 'http://.*' "$scratch/driver")
export VESPREL_DRIVER PYTHONDONTWRITEBYTECODE=1

(cd "$examples/python" && "$python" -m pytest -q -p no:cacheprovider)

# selenium-webdriver comes from npm; NODE_PATH says where, unless it lies beside the suite.
if command -v node >/dev/null && (cd "$examples/javascript" && node -e 'require("selenium-webdriver")' 2>/dev/null); then
    (cd "$examples/javascript" && node --test)
else
    echo "without the JavaScript suite: selenium-webdriver is not installed"
fi
