# shellcheck shell=bash
# Sourced by run_testbed.sh: the folder the VM mounts over 9p as /share and
# runs everything from: the test programs in /testbed/bin, the shared
# libraries ldd finds for them at their own paths, alsa-lib's configuration,
# and the kernel modules the scenarios need, uncompressed. The VM reads only
# the pages it touches, so a program that pulls in Qt and ICU costs what it
# uses, not what the libraries weigh. The folder stays between runs and only
# files that changed are copied again.

# Copies <file> to <dest> unless <dest> is the copy made last time: copies
# keep the file's modification time, and a rebuilt or updated file gets a
# new one. Shell tests only, no process per file: there are hundreds.
share_copy_if_changed() {
  local file=$1 dest=$2
  if [ -f "$dest" ] && ! [ "$file" -nt "$dest" ] && ! [ "$file" -ot "$dest" ]; then
    return 0
  fi
  mkdir -p "${dest%/*}" && cp -L --preserve=timestamps "$file" "$dest.new" && mv -f "$dest.new" "$dest"
}

# The shared libraries (and the dynamic loader) that <binary> needs, one
# absolute path a line. A static binary lists nothing.
share_libraries_of() {
  ldd "$1" 2>/dev/null | awk '/=> \// { print $3 } /^[[:space:]]*\// { print $1 }'
}

# The file name of a module once uncompressed: usb_f_midi.ko.xz gives usb_f_midi.ko.
share_module_name() {
  local name
  name=$(basename "$1")
  name=${name%.xz}
  name=${name%.zst}
  echo "${name%.gz}"
}

# Writes the module <path> from <modules dir> uncompressed to <dest file>,
# since busybox insmod takes plain .ko files only.
share_unpack_module() {
  local dir=$1 path=$2 dest=$3
  case "$path" in
    *.ko.xz) busybox xzcat "$dir/$path" >"$dest.new" ;;
    *.ko.zst) zstd -q -dc "$dir/$path" >"$dest.new" ;;
    *.ko.gz) gzip -dc "$dir/$path" >"$dest.new" ;;
    *) cp "$dir/$path" "$dest.new" ;;
  esac && mv -f "$dest.new" "$dest"
}

# share_modules <module dir> <modules dir> <load order file>: the modules of
# the order file ("<module path> [parameters]" lines), uncompressed into
# <module dir> with a load-order file of "<name> [parameters]" lines.
share_modules() {
  local out=$1 modules=$2 order=$3 path params name
  mkdir -p "$out" || return 1
  : >"$out/load-order.new"
  while read -r path params; do
    name=$(share_module_name "$path")
    [ -s "$out/$name" ] || share_unpack_module "$modules" "$path" "$out/$name" || return 1
    echo "$name $params" >>"$out/load-order.new"
  done <"$order"
  mv -f "$out/load-order.new" "$out/load-order"
}

# share_sync <share dir> <kernel version> <modules dir> <load order file>
#   <scenario list> <program>...
share_sync() {
  local share=$1 version=$2 modules=$3 order=$4 scenarios=$5
  shift 5
  mkdir -p "$share/testbed/bin" || return 1
  share_modules "$share/modules/$version" "$modules" "$order" || return 1
  share_copy_if_changed "$scenarios" "$share/testbed/scenarios" || return 1

  local program lib kept=" "
  for program in "$@"; do
    share_copy_if_changed "$program" "$share/testbed/bin/$(basename "$program")" || return 1
    kept+="$(basename "$program") "
    for lib in $(share_libraries_of "$program"); do
      share_copy_if_changed "$lib" "$share$lib" || return 1
    done
  done
  # Programs of earlier runs that this run does not list go away.
  for program in "$share"/testbed/bin/*; do
    case "$kept" in *" $(basename "$program") "*) ;; *) rm -f "$program" ;; esac
  done

  local file
  while IFS= read -r file; do
    share_copy_if_changed "$file" "$share$file" || return 1
  done < <(find /usr/share/alsa -type f)
}
