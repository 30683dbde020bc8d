#!/usr/bin/env bash
# All properties from the seed AIRSYNC_SEED, or one of today's when there is none, which it prints.
#   one_more_seed.sh PROPERTY-TESTS
set -euo pipefail
export RC_PARAMS="seed=${AIRSYNC_SEED:-$(date +%s)} max_success=200"
echo "$RC_PARAMS"
exec "$1" --gtest_brief=1
