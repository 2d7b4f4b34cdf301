# shellcheck shell=bash
# Sourced by run_testbed.sh: the VM's whole root file system as an initramfs:
# busybox, the kernel modules in load order, the test programs with the shared
# libraries ldd finds for them, and alsa-lib's configuration.

# Copies a file to the same absolute path under <root>, following symlinks.
initramfs_copy() {
  local root=$1 file=$2
  mkdir -p "$root$(dirname "$file")" && cp -L "$file" "$root$file"
}

# Copies the shared libraries (and the dynamic loader) that <binary> needs.
initramfs_copy_libraries() {
  local root=$1 binary=$2 lib
  # "not a dynamic executable" (a static busybox) lists nothing.
  for lib in $(ldd "$binary" 2>/dev/null | awk '/=> \// { print $3 } /^[[:space:]]*\// { print $1 }'); do
    [ -e "$root$lib" ] || initramfs_copy "$root" "$lib" || return 1
  done
}

# The file name of a module once uncompressed: usb_f_midi.ko.xz gives usb_f_midi.ko.
initramfs_module_name() {
  local name
  name=$(basename "$1")
  name=${name%.xz}
  name=${name%.zst}
  echo "${name%.gz}"
}

# Writes the module <path> from <modules dir> uncompressed into <dest dir>,
# since busybox insmod takes plain .ko files only.
initramfs_copy_module() {
  local dir=$1 path=$2 dest=$3 name
  name=$(initramfs_module_name "$path")
  case "$path" in
    *.ko.xz) busybox xzcat "$dir/$path" >"$dest/$name" ;;
    *.ko.zst) zstd -q -dc "$dir/$path" >"$dest/$name" ;;
    *.ko.gz) gzip -dc "$dir/$path" >"$dest/$name" ;;
    *) cp "$dir/$path" "$dest/$name" ;;
  esac
}

# initramfs_build <staging dir> <output .cpio.gz> <modules dir> <init script>
#   <module load order file> <scenario list> <program>...
# The load order file holds "<module path> [parameters]" lines; the scenario
# list becomes /testbed/scenarios and the programs go to /testbed/bin.
initramfs_build() {
  local stage=$1 out=$2 modules=$3 init=$4 order=$5 scenarios=$6
  shift 6
  rm -rf "$stage" && mkdir -p "$stage"/{bin,dev,proc,sys,tmp,lib/modules,testbed/bin} || return 1

  local busybox_bin
  busybox_bin=$(command -v busybox) || return 1
  cp -L "$busybox_bin" "$stage/bin/busybox" && initramfs_copy_libraries "$stage" "$busybox_bin" || return 1
  cp "$init" "$stage/init" && chmod 755 "$stage/init" || return 1

  local path params
  : >"$stage/lib/modules/load-order"
  while read -r path params; do
    initramfs_copy_module "$modules" "$path" "$stage/lib/modules" || return 1
    echo "$(initramfs_module_name "$path") $params" >>"$stage/lib/modules/load-order"
  done <"$order"

  cp "$scenarios" "$stage/testbed/scenarios" || return 1
  local program
  for program in "$@"; do
    cp "$program" "$stage/testbed/bin/" && initramfs_copy_libraries "$stage" "$program" || return 1
  done
  mkdir -p "$stage/usr/share" && cp -r /usr/share/alsa "$stage/usr/share/alsa" || return 1

  # Compressed, the image loads and unpacks in the VM several seconds faster.
  (cd "$stage" && find . | busybox cpio -o -H newc 2>/dev/null | gzip -1) >"$out" || return 1
  rm -rf "$stage"
}
