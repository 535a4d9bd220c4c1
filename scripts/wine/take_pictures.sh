#!/usr/bin/env bash
# take_pictures.sh: takes the pictures of the windows for the documents anew, from the build of
# the preset mingw, and puts them into docs/pictures. Each language is taken in a locale of its own,
# as a user of it sees the dates.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/../.."

folder=build/mingw/pictures
rm -f "$folder"/*.bmp
export LOCPATH=$PWD/build/locales
mkdir -p "$LOCPATH" docs/pictures

# take LANGUAGE LOCALE: each with a system of its own, since the locale is that of the system.
take() {
    [ -d "$LOCPATH/$2" ] || localedef -i "${2%.*}" -f UTF-8 "$LOCPATH/$2"
    LC_ALL= WINE_LOCALE=$2 WINEPREFIX=$PWD/build/wine-$1 scripts/wine/with-wine.sh \
        scripts/wine/wine-run.sh build/mingw/bin/test_dialogs.exe --gtest_filter="*Pictures*$1"
}
take English en_GB.UTF-8
take Chinese zh_CN.UTF-8

for bitmap in "$folder"/*-{chinese,english}.bmp; do
    scripts/png_from_bmp.py "$bitmap" "docs/pictures/$(basename "$bitmap" .bmp).png"
done
