#!/bin/sh
# Renders the logo's picture from its drawing. Needs librsvg (Debian: librsvg2-bin).
set -eu
cd "$(dirname "$0")"
rsvg-convert --width 256 --height 256 --output quenmark-logo.png quenmark-logo.svg
