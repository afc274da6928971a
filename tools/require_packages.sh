#!/usr/bin/env bash
# require_packages.sh PACKAGE...: installs the Debian packages that are missing, or, when it doesn't run as root, says which they are and fails.
set -euo pipefail
missing=()
for package in "$@"; do
  dpkg-query -W -f '${Status}' "$package" 2> /dev/null | grep -q 'ok installed' || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0
if [ "$(id -u)" != 0 ]; then
  echo "missing packages; install them with: apt-get install ${missing[*]}"
  exit 1
fi
echo "installing ${missing[*]}"
apt-get update -qq
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" > /dev/null
