# shellcheck shell=bash
# Sourced by run_testbed.sh: the VM's first root file system, kept small so
# the kernel unpacks it at once: busybox, the init script, and the modules
# that reach the 9p share (see share.sh). Everything else is read from the
# share, which /lib, /lib64, /usr and /testbed point into.

# initramfs_build <staging dir> <output .cpio.gz> <modules dir> <init script>
#   <module load order file>
# The load order file holds the 9p modules' paths in the modules dir, in
# load order; they go to /boot-modules with a load-order file.
initramfs_build() {
  local stage=$1 out=$2 modules=$3 init=$4 order=$5 key
  # The same inputs make the same image: kept from the last run.
  key=$({ cat "$init" "$order" "$(command -v busybox)"; echo "$modules"; } | md5sum | cut -d' ' -f1)
  if [ -s "$out" ] && [ "$(cat "$out.key" 2>/dev/null)" = "$key" ]; then
    return 0
  fi
  rm -f "$out.key"
  rm -rf "$stage" && mkdir -p "$stage"/{bin,dev,proc,sys,tmp,share,boot-modules} || return 1

  local busybox_bin
  busybox_bin=$(command -v busybox) || return 1
  # A dynamically linked busybox would need the share before it is mounted.
  if [ -n "$(share_libraries_of "$busybox_bin")" ]; then
    echo "testbed: $busybox_bin is not static (Debian package busybox-static)" >&2
    return 1
  fi
  cp -L "$busybox_bin" "$stage/bin/busybox" || return 1
  cp "$init" "$stage/init" && chmod 755 "$stage/init" || return 1
  share_modules "$stage/boot-modules" "$modules" "$order" || return 1

  local dir
  for dir in lib lib64 usr testbed; do
    ln -s "share/$dir" "$stage/$dir" || return 1
  done

  (cd "$stage" && find . | busybox cpio -o -H newc 2>/dev/null | gzip -1) >"$out" || return 1
  rm -rf "$stage"
  echo "$key" >"$out.key"
}
