# shellcheck shell=bash
# Sourced by run_testbed.sh: the stock Debian kernel, fetched once with
# apt-get download and unpacked with dpkg-deb into a cache shared by every
# build on this machine. Nothing is installed on the host.
#
# kernel_fetch <cache dir> sets KERNEL_PACKAGE, KERNEL_VERSION, KERNEL_ROOT and
# KERNEL_CACHE_STATE (warm or cold); returns 1 with KERNEL_ERROR set when the
# package can be neither found in the cache nor downloaded.
# The KERNEL_* results are read by run_testbed.sh, which sources this file.
# shellcheck disable=SC2034

# The concrete kernel package that linux-image-amd64 currently depends on.
# Asking apt-cache takes seconds, so the answer is kept in <cache> along with
# the time apt's package cache was last written, and asked again only when
# that changes.
kernel_current_package() {
  local cache=$1 stamp kept package
  stamp=$(stat -c %Y /var/cache/apt/pkgcache.bin /var/lib/apt/lists 2>/dev/null | tr '\n' ' ')
  if [ -n "$stamp" ] && read -r kept package <"$cache/.current-package" 2>/dev/null &&
    [ "$kept" = "${stamp// /_}" ] && [ -n "$package" ]; then
    echo "$package"
    return 0
  fi
  package=$(apt-cache depends linux-image-amd64 2>/dev/null |
    sed -n 's/^ *Depends: \(linux-image-[0-9][^ ]*-amd64\)$/\1/p' | head -n 1)
  if [ -n "$package" ] && [ -n "$stamp" ]; then
    echo "${stamp// /_} $package" >"$cache/.current-package.$$" && mv -f "$cache/.current-package.$$" "$cache/.current-package"
  fi
  echo "$package"
}

# The newest kernel already unpacked in the cache, for machines whose package
# lists are missing or stale.
kernel_newest_cached() {
  local dir
  for dir in "$1"/linux-image-*-amd64; do
    [ -f "$dir/.complete" ] && basename "$dir"
  done | sort -V | tail -n 1
}

kernel_fetch() {
  if kernel_fetch_current "$1"; then
    return 0
  fi
  # Offline with an older kernel at hand: that one will do.
  local cached
  cached=$(kernel_newest_cached "$1")
  if [ -z "$cached" ]; then
    KERNEL_ERROR="$KERNEL_ERROR, and no kernel is cached in $1"
    return 1
  fi
  echo "testbed: $KERNEL_ERROR; using the cached $cached"
  KERNEL_PACKAGE=$cached
  KERNEL_VERSION=${cached#linux-image-}
  KERNEL_ROOT=$1/$cached
  KERNEL_CACHE_STATE=warm
}

kernel_fetch_current() {
  local cache=$1 package
  package=$(kernel_current_package "$cache")
  # Machines set up from images often come without package lists; root can
  # fetch them.
  if [ -z "$package" ] && [ "$(id -u)" -eq 0 ] && [ -z "$(kernel_newest_cached "$cache")" ]; then
    echo "testbed: no package lists, running apt-get update"
    timeout 90 apt-get update -qq >/dev/null 2>&1
    package=$(kernel_current_package "$cache")
  fi
  if [ -z "$package" ]; then
    KERNEL_ERROR="cannot tell which kernel package linux-image-amd64 depends on (no package lists? apt-get update)"
    return 1
  fi
  KERNEL_PACKAGE=$package
  KERNEL_VERSION=${package#linux-image-}
  KERNEL_ROOT=$cache/$package
  if [ -f "$KERNEL_ROOT/.complete" ]; then
    KERNEL_CACHE_STATE=warm
    return 0
  fi
  KERNEL_CACHE_STATE=cold

  local download=$cache/download.$$
  rm -rf "$download" "$KERNEL_ROOT.partial"
  mkdir -p "$download" || { KERNEL_ERROR="cannot create $download"; return 1; }
  echo "testbed: downloading $package with apt-get download"
  if ! (cd "$download" && timeout 90 apt-get download -q=2 "$package" >"$download/apt.log" 2>&1); then
    KERNEL_ERROR="apt-get download $package failed: $(grep -v '^W: Download is performed unsandboxed' "$download/apt.log" | tail -n 3 | tr '\n' ' ')"
    rm -rf "$download"
    return 1
  fi
  echo "testbed: unpacking $package"
  if ! dpkg-deb -x "$download"/"$package"_*.deb "$KERNEL_ROOT.partial"; then
    KERNEL_ERROR="dpkg-deb -x of $package failed"
    rm -rf "$download" "$KERNEL_ROOT.partial"
    return 1
  fi
  rm -rf "$download"
  # The package leaves modules.dep to the installer; build it for our copy.
  if ! busybox depmod -b "$KERNEL_ROOT.partial" "$KERNEL_VERSION" ||
    [ ! -s "$KERNEL_ROOT.partial/lib/modules/$KERNEL_VERSION/modules.dep" ]; then
    KERNEL_ERROR="depmod for $KERNEL_VERSION failed"
    rm -rf "$KERNEL_ROOT.partial"
    return 1
  fi
  mv "$KERNEL_ROOT.partial" "$KERNEL_ROOT" && touch "$KERNEL_ROOT/.complete"
  # One kernel is enough; drop the ones an older package list brought.
  local old
  for old in "$cache"/linux-image-*-amd64; do
    [ "$old" = "$KERNEL_ROOT" ] || rm -rf "$old"
  done
  return 0
}

# kernel_boot_image <kernel root> <version> prints the image QEMU should
# boot: the uncompressed vmlinux when the kernel can be entered that way (a
# PVH entry point, CONFIG_PVH=y), made once next to the package's vmlinuz,
# else the vmlinuz itself. Under emulation the kernel takes seconds to
# decompress itself; QEMU loads the uncompressed image in a fraction of one.
kernel_boot_image() {
  local root=$1 version=$2
  local vmlinuz=$root/boot/vmlinuz-$version vmlinux=$root/boot/vmlinux-$version
  if [ -s "$vmlinux" ]; then
    echo "$vmlinux"
    return 0
  fi
  if grep -q '^CONFIG_PVH=y' "$root/boot/config-$version" 2>/dev/null; then
    # The compressed kernel sits inside the boot image after the set-up code:
    # find its magic number and decompress from there to the end of its stream.
    local offset tool=
    offset=$(LC_ALL=C grep -abo $'\xfd''7zXZ' "$vmlinuz" | head -n 1 | cut -d: -f1)
    if [ -n "$offset" ] && command -v xz >/dev/null; then
      tool="xz -dc --single-stream"
    else
      offset=$(LC_ALL=C grep -abo $'\x28\xb5\x2f\xfd' "$vmlinuz" | head -n 1 | cut -d: -f1)
      [ -n "$offset" ] && command -v zstd >/dev/null && tool="zstd -dc"
    fi
    # shellcheck disable=SC2086 # the tool's options are separate words
    if [ -n "$tool" ] && tail -c +"$((offset + 1))" "$vmlinuz" | $tool >"$vmlinux.partial.$$" 2>/dev/null &&
      [ "$(head -c 4 "$vmlinux.partial.$$" | od -An -c | tr -d ' ')" = '177ELF' ]; then
      mv "$vmlinux.partial.$$" "$vmlinux"
      echo "$vmlinux"
      return 0
    fi
    rm -f "$vmlinux.partial.$$"
  fi
  echo "$vmlinuz"
}
