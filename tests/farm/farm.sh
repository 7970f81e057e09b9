# Shared by the farm tests: source it with SOURCE and MORVANE set. Makes a folder with five scenes, one of which is
# broken, in $work.
for command in "$@"; do
  command -v "$command" >/dev/null || { echo "there is no $command here" && exit 77; }
done
work=$(mktemp -d)
cd "$work"
for i in 1 2 3 4; do
  cp -r "$SOURCE/examples/meadow" "level $i"
done
echo "no scene" >broken.ma
printf '%s\n' level\ {1,2}/meadow.ma broken.ma level\ {3,4}/meadow.ma >scenes.txt

# check_records FILE...: every tile of the good scenes is there once, and the broken scene.
check_records() {
  local tiles broken
  tiles=$(grep -h '"error":null' "$@" | grep -o '"scene":"level [0-9]/meadow.ma","tile":"|[a-z]*Tile"' | sort -u | wc -l)
  broken=$(grep -h '"scene":"broken.ma"' "$@" | grep -c '"tile":null.*"error":"')
  [ "$tiles $broken $(cat "$@" | wc -l)" = "16 1 17" ] || { echo "wrong records:" && cat "$@" && exit 1; }
}
