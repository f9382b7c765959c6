#!/usr/bin/env bash
# Makes the tool and button images under resources/BMPS from the Adwaita icon theme
# (Debian package adwaita-icon-theme, licensed CC-BY-SA 3.0 / LGPL-3). The images are
# committed; run this again only to change them. Needs ImageMagick's convert (/usr/bin/convert).
set -euo pipefail
top="$(cd "$(dirname "$0")/.." && pwd)"
out="$top/resources/BMPS"
src=/usr/share/icons/Adwaita/16x16
mkdir -p "$out"
icon() {  # icon <file> <adwaita name> (searched in all 16x16 folders)
  local f
  f=$(ls $src/*/"$2"-symbolic.symbolic.png 2>/dev/null | head -n1 || true)
  if [ -z "$f" ]; then echo "missing icon $2" >&2; return 1; fi
  /usr/bin/convert "$f" -background '#C0C0C0' -alpha remove -alpha off -type TrueColor "BMP3:$out/$1"
}
icon Check.BMP object-select
icon ThumbToggle.Bmp go-previous
icon Stop.bmp process-stop
icon Bulboff.bmp weather-clear-night
icon Bulbon.bmp weather-clear
icon Exit.bmp application-exit
icon Trisize.bmp view-fullscreen
icon Trisize2.bmp view-restore
# One image per toolbar tool: the identifier without "ID_".
while read -r tool name; do
  [ -n "$tool" ] && icon "$tool.bmp" "$name"
done <<'LIST'
Find edit-find
FindNext go-next
Select edit-select-all
Print document-print
Collapse go-top
UpFolder go-up
ThumbNails view-grid
Stop process-stop
ViewBtn view-list
HelpOpen help-browser
FilterBtn view-more
Back go-previous
Forward go-next
ViewImage zoom-fit-best
EditImage document-edit
EditColors color-select
PrintImage document-print
SaveImage document-save
HelpImage help-browser
Resize view-fullscreen
PicFavorites starred
PlayBtn media-playback-start
Pause media-playback-pause
StopVideo media-playback-stop
Sound audio-volume-high
Tracker media-seek-forward
ListToggle view-list
PlayHelp help-browser
Status dialog-information
TxtBack go-previous
TxtForward go-next
TxtPrint document-print
TxtSave document-save
TxtProperties document-properties
TxtHelp help-browser
IntBack go-previous
IntForward go-next
IntHome go-home
IntStop process-stop
IntRefresh view-refresh
IntPrint document-print
IntSave document-save
IntProperties document-properties
IntFavorites starred
IntAddFavorite bookmark-new
IntVisited document-open-recent
IntHelp help-browser
IntGo go-jump
LIST
