#!/bin/sh
# manual_test.sh MANDOC, in the folder man: mandoc has nothing against the manual pages, and every twin's page names one that is there.
set -eu
"$1" -Tlint -W warning man1/*.1 $(grep -L '^\.so ' man3/*.3)
for page in $(sed -n 's/^\.so //p' man3/*.3); do
  [ -e "$page" ] || { echo "there is no $page"; exit 1; }
done
