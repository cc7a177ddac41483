#!/usr/bin/env bash
# The package test: makes the prebuild for this Node.js (and the package's
# generated entries), then packs the package, installs it into a fresh
# application and uses it there (test/package). Works on a fresh clone.
source "$(dirname "$0")/lib.sh"
npm_deps
JOBS=$JOBS node scripts/prebuilds.js "$(node -p 'process.versions.node.split(".")[0]')"
echo "== the package in a fresh application"
JOBS=$JOBS node --test test/package/package.test.js
