#!/bin/sh
# Renders the logo's picture from its drawing. Needs librsvg (Debian: librsvg2-bin).
set -eu
cd "$(dirname "$0")"
# 112 pixels: the 28 points of the header at a scale of 4.
rsvg-convert --width 112 --height 112 --output quenmark-logo.png quenmark-logo.svg
