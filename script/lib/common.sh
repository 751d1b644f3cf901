# SPDX-License-Identifier: GPL-3.0-or-later
# What every script starts with: strict mode, the project's folder as the current one, and a way to say what happens.
# shellcheck shell=bash

set -euo pipefail

# shellcheck disable=SC2034 # for the scripts
WQV_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
WQV_SCRIPT=${0##*/}

say()
{
    printf '%s: %s\n' "$WQV_SCRIPT" "$*"
}

fail()
{
    printf '%s: FAILED: %s\n' "$WQV_SCRIPT" "$*" >&2
    exit 1
}

# How many things may run at once: one a processor, since a file of JUCE takes about 1 GB to compile; or WQV_JOBS.
jobs_at_once()
{
    [[ -z ${WQV_JOBS:-} ]] || { echo "$WQV_JOBS"; return; }
    getconf _NPROCESSORS_ONLN 2>/dev/null || echo 2
}
