#!/usr/bin/env bash
# The emulated USB-MIDI controller test bed, host side: fetches (once) the
# stock Debian kernel, shares the test programs and their libraries with the
# VM over 9p, boots it with a small initramfs under QEMU and turns the
# scenario markers on the VM's console into a table and an exit status.
#
#   run_testbed.sh --work <dir> --emulator <controller_emulator>
#                  --scenario <id>=<program> [--scenario <id>=<program>]...
#                  [--program <helper program>]...
#
# Scenarios run in the order given, as "<program> <id> <emulator> <work
# dir>". Helper programs are only put next to the emulator in /testbed/bin,
# for scenarios to start.
#
# Exit status: 0 all scenarios passed, 1 a failure, 77 skipped because QEMU,
# busybox or the kernel package is not available. Under CI=true nothing is
# skipped: a missing prerequisite is a failure.
#
# Environment: DIALCRAFT_USB_CACHE (kernel cache, default
# ~/.cache/dialcraft-usb), DIALCRAFT_USB_ACCEL (tcg or kvm, skips the probe).
set -uo pipefail

here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=testbed/kernel_cache.sh
. "$here/testbed/kernel_cache.sh"
# shellcheck source=testbed/module_list.sh
. "$here/testbed/module_list.sh"
# shellcheck source=testbed/share.sh
. "$here/testbed/share.sh"
# shellcheck source=testbed/initramfs.sh
. "$here/testbed/initramfs.sh"
# shellcheck source=testbed/results.sh
. "$here/testbed/results.sh"

# Seconds since <start> (a `date +%s.%N` value), to one decimal.
seconds_since() {
  awk -v start="$1" -v now="$(date +%s.%N)" 'BEGIN { printf "%.1f", now - start }'
}

run_started=$(date +%s.%N)
work='' emulator=''
scenario_ids=() scenario_programs=() helper_programs=()
while [ $# -gt 0 ]; do
  case "$1" in
    --work) work=$2; shift 2 ;;
    --emulator) emulator=$2; shift 2 ;;
    --scenario) scenario_ids+=("${2%%=*}"); scenario_programs+=("${2#*=}"); shift 2 ;;
    --program) helper_programs+=("$2"); shift 2 ;;
    *) echo "run_testbed.sh: unknown argument $1" >&2; exit 2 ;;
  esac
done
if [ -z "$work" ] || [ -z "$emulator" ] || [ ${#scenario_ids[@]} -eq 0 ]; then
  echo "usage: run_testbed.sh --work <dir> --emulator <path> --scenario <id>=<program>..." >&2
  exit 2
fi

# Skips the test where the machine cannot run it, except under CI.
unavailable() {
  if [ "${CI:-}" = true ]; then
    echo "testbed: FAILED: $* (CI=true: the test bed must run)"
    exit 1
  fi
  echo "testbed: SKIPPED: $*"
  exit 77
}
failed() {
  echo "testbed: FAILED: $*"
  exit 1
}

command -v qemu-system-x86_64 >/dev/null || unavailable "qemu-system-x86_64 not found (Debian package qemu-system-x86)"
command -v busybox >/dev/null || unavailable "busybox not found (Debian package busybox-static)"
for tool in dpkg-deb apt-get apt-cache ldd timeout flock gzip md5sum; do
  command -v "$tool" >/dev/null || unavailable "$tool not found"
done

cache=${DIALCRAFT_USB_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/dialcraft-usb}
if ! mkdir -p "$cache" 2>/dev/null || [ ! -w "$cache" ]; then
  cache=$work/kernel-cache
  mkdir -p "$cache" || failed "cannot create a kernel cache"
fi
mkdir -p "$work" || failed "cannot create $work"

# One fetch at a time per cache, for builds that test side by side.
exec 9>"$cache/.lock"
flock -w 150 9 || failed "the kernel cache $cache stays locked by another run"
kernel_fetch "$cache" || unavailable "$KERNEL_ERROR"
kernel_image=$(kernel_boot_image "$KERNEL_ROOT" "$KERNEL_VERSION")
flock -u 9
modules_dir=$KERNEL_ROOT/lib/modules/$KERNEL_VERSION
[ -f "$kernel_image" ] || failed "no kernel image in $KERNEL_ROOT"
echo "testbed: kernel $KERNEL_PACKAGE ($KERNEL_CACHE_STATE cache in $cache), booting $(basename "$kernel_image")"

# dummy_hcd's num=2 gives two independent ports, for two controllers at once.
module_load_order "$modules_dir" dummy_hcd libcomposite usb_f_midi snd-usb-audio \
  snd-seq snd-seq-midi snd-seq-dummy >"$work/modules.order" || failed "kernel modules missing"
sed -i 's|/dummy_hcd\.ko\(\.[a-z]*\)\?$|& num=2|' "$work/modules.order"
# What the VM needs before it can mount the share.
module_load_order "$modules_dir" virtio_pci 9pnet_virtio 9p >"$work/boot-modules.order" ||
  failed "9p or virtio modules missing"

: >"$work/scenarios"
programs=("$emulator")
for i in "${!scenario_ids[@]}"; do
  program=${scenario_programs[$i]}
  [ -x "$program" ] || failed "scenario program $program not built"
  echo "${scenario_ids[$i]} $(basename "$program")" >>"$work/scenarios"
  case " ${programs[*]} " in *" $program "*) ;; *) programs+=("$program") ;; esac
done
for program in "${helper_programs[@]}"; do
  [ -x "$program" ] || failed "helper program $program not built"
  programs+=("$program")
done
share_sync "$work/share" "$KERNEL_VERSION" "$modules_dir" "$work/modules.order" "$work/scenarios" \
  "${programs[@]}" || failed "cannot fill the 9p share $work/share"
initramfs_build "$work/initramfs" "$work/initramfs.cpio.gz" "$modules_dir" "$here/testbed/vm_init.sh" \
  "$work/boot-modules.order" || failed "cannot build the initramfs"
prepared_seconds=$(seconds_since "$run_started")

qemu_args=(-m 512 -smp 1 -nodefaults -display none -monitor none -nic none -no-reboot -serial stdio
  -kernel "$kernel_image" -append "console=ttyS0 quiet loglevel=3 panic=-1")
share_args=(-fsdev "local,id=testbed,path=$work/share,security_model=none,readonly=on"
  -device "virtio-9p-pci,fsdev=testbed,mount_tag=testbed")
# qboot starts a directly loaded kernel seconds sooner than the default BIOS.
for rom in /usr/share/qemu/qboot.rom /usr/share/seabios/qboot.rom; do
  [ -f "$rom" ] && { qemu_args+=(-bios "$rom"); break; }
done

# KVM may be present but unusable (nested machines): use it only when a probe
# boot with it reaches user space in time. The answer is kept per build.
choose_accel() {
  if [ -n "${DIALCRAFT_USB_ACCEL:-}" ]; then
    echo "$DIALCRAFT_USB_ACCEL"
    return
  fi
  if [ -f "$work/accel" ]; then
    cat "$work/accel"
    return
  fi
  local accel=tcg
  if [ -r /dev/kvm ] && [ -w /dev/kvm ]; then
    local probe=$work/kvm-probe
    rm -rf "$probe" && mkdir -p "$probe/root/bin"
    cp -L "$(command -v busybox)" "$probe/root/bin/busybox"
    printf '#!/bin/busybox sh\n/bin/busybox echo @@dialcraft-usb kvm-ok\n/bin/busybox poweroff -f\n' >"$probe/root/init"
    chmod 755 "$probe/root/init"
    (cd "$probe/root" && find . | busybox cpio -o -H newc 2>/dev/null) >"$probe/initramfs.cpio"
    if timeout -k 2 8 qemu-system-x86_64 -accel kvm -cpu host "${qemu_args[@]}" \
      -initrd "$probe/initramfs.cpio" </dev/null 2>/dev/null | grep -q '@@dialcraft-usb kvm-ok'; then
      accel=kvm
    fi
    rm -rf "$probe"
  fi
  echo "$accel" >"$work/accel"
  echo "$accel"
}
accel=$(choose_accel)
# Under software emulation the guest gets every CPU feature QEMU emulates: the
# default model lacks SSE4.1 and POPCNT, which the ThreadSanitizer runtime of
# the sanitizer build's scenario programs uses (scripts/sanitize).
[ "$accel" = kvm ] && qemu_args=(-accel kvm -cpu host "${qemu_args[@]}") || qemu_args=(-accel tcg -cpu max "${qemu_args[@]}")

# Every wait is bounded: QEMU is killed after vm_limit seconds. A bound
# for a VM that hangs, not a measure of speed: an idle machine runs the whole
# VM in about 45 s, but with both cores busy (a build beside it) TCG took
# 50 s just to boot and 120 s was cut short.
vm_limit=300
console=$work/console.log
echo "testbed: booting under $accel, $(du -k "$work/initramfs.cpio.gz" | cut -f1) kB initramfs, $(du -sm "$work/share" | cut -f1) MB shared over 9p, limit ${vm_limit} s"
vm_started=$(date +%s.%N)
boot_seconds=
: >"$console"
while IFS= read -r line; do
  line=${line%$'\r'}
  printf '%s\n' "$line" >>"$console"
  case "$line" in
    *"@@dialcraft-usb booted "*) boot_seconds=$(seconds_since "$vm_started") ;;
    *"@@dialcraft-usb result "*) echo "testbed: ${line#*@@dialcraft-usb }" ;;
  esac
done < <(timeout -k 5 "$vm_limit" qemu-system-x86_64 "${qemu_args[@]}" "${share_args[@]}" \
  -initrd "$work/initramfs.cpio.gz" </dev/null 2>&1)
vm_seconds=$(seconds_since "$vm_started")
run_seconds=$(seconds_since "$run_started")

results_report "$console" "$work/scenarios" "$work/results.txt" \
  "$accel" "$KERNEL_PACKAGE" "$KERNEL_CACHE_STATE" "$prepared_seconds" "$boot_seconds" "$vm_seconds" "$run_seconds"
status=$?
cat "$work/results.txt"
if [ $status -ne 0 ]; then
  echo "testbed: console log: $console"
  grep -E '@@dialcraft-usb (check|fatal)|^@@dialcraft-usb result .* FAIL|^---- |^\| ' "$console" | head -n 200
fi
exit $status
