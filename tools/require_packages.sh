#!/usr/bin/env bash
# require_packages.sh PACKAGE...: installs the Debian packages that are missing, or, when it doesn't run as root, says which they are and fails. Where there
# are no Debian packages it shows the list and leaves the rest to the build.
set -euo pipefail
if ! command -v dpkg-query > /dev/null; then
  echo "This system has no Debian packages, so nothing was checked; what is needed goes by these names there: $*" >&2
  exit 0
fi
missing=()
for package in "$@"; do
  status=$(dpkg-query -W -f '${Status}' "$package" 2> /dev/null || true)
  [[ $status == *'ok installed'* ]] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0
if ! command -v apt-get > /dev/null; then
  echo "missing packages, and there is no apt-get to install them: ${missing[*]}" >&2
  exit 1
fi
if [ "$(id -u)" != 0 ]; then
  echo "missing packages; install them with: apt-get install ${missing[*]}" >&2
  exit 1
fi
echo "installing ${missing[*]}"
apt-get update -qq
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" > /dev/null
