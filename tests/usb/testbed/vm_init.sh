#!/bin/busybox sh
# shellcheck shell=dash  # busybox sh is ash; dash is the nearest dialect shellcheck has
# First and only process of the test VM: mounts the kernel file systems and
# the host's 9p share, loads the USB gadget, USB audio and sequencer modules,
# runs each scenario program in turn and powers off. Everything the host
# needs leaves on the serial console as "@@dialcraft-usb" marker lines, with
# the VM's uptime where a time is of interest.
/bin/busybox --install -s /bin
export PATH=/bin

mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t devtmpfs devtmpfs /dev
mount -t tmpfs tmpfs /tmp
echo "@@dialcraft-usb booted $(cut -d' ' -f1 /proc/uptime)"

fatal() {
  echo "@@dialcraft-usb fatal $*"
  echo "@@dialcraft-usb done"
  poweroff -f
}

# insmod_all <dir>: the modules of <dir>/load-order, in that order.
insmod_all() {
  while read -r module params; do
    # shellcheck disable=SC2086 # parameters are separate words on purpose
    insmod "$1/$module" $params || fatal "insmod $module failed"
  done <"$1/load-order"
}

insmod_all /boot-modules
# Read-only, and nothing changes it while the VM runs: the page cache may
# keep whatever it read.
mount -t 9p -o trans=virtio,version=9p2000.L,ro,cache=loose,msize=512000 testbed /share ||
  fatal "cannot mount the 9p share"
echo "@@dialcraft-usb shared $(cut -d' ' -f1 /proc/uptime)"
insmod_all "/share/modules/$(uname -r)"
echo "@@dialcraft-usb modules $(cut -d' ' -f1 /proc/uptime)"
mount -t configfs configfs /sys/kernel/config || fatal "cannot mount configfs"

for udc in dummy_udc.0 dummy_udc.1; do
  [ -e "/sys/class/udc/$udc" ] || fatal "no $udc after loading dummy_hcd"
done
grep -q '"Midi Through"' /proc/asound/seq/clients || fatal "no Midi Through sequencer client"
echo "@@dialcraft-usb ready $(cut -d' ' -f1 /proc/uptime)"

# Takes apart whatever gadget a scenario left behind, so the next one starts
# from an empty bus.
remove_gadgets() {
  for gadget in /sys/kernel/config/usb_gadget/*; do
    [ -d "$gadget" ] || continue
    echo "" >"$gadget/UDC" 2>/dev/null
    rm -f "$gadget"/configs/*/*.usb0
    rmdir "$gadget"/configs/*/strings/* "$gadget"/configs/* "$gadget"/functions/* "$gadget"/strings/* 2>/dev/null
    rmdir "$gadget" || echo "@@dialcraft-usb warning cannot remove $gadget"
  done
}

# Ends emulators that a killed scenario left running, by process id. Only
# shell built-ins in the loop: under emulation every forked applet costs
# milliseconds, and there are dozens of processes to look at.
stop_leftover_emulators() {
  for comm in /proc/[0-9]*/comm; do
    name=
    read -r name <"$comm" 2>/dev/null
    # The kernel keeps the first 15 characters of a command's name.
    if [ "$name" = controller_emul ]; then
      pid=${comm#/proc/}
      kill -9 "${pid%/comm}"
    fi
  done
}

while read -r id program; do
  [ -n "$id" ] || continue
  mkdir -p "/tmp/work-$id"
  echo "@@dialcraft-usb start $id $(cut -d' ' -f1 /proc/uptime)"
  timeout -s KILL 90 "/testbed/bin/$program" "$id" /testbed/bin/controller_emulator "/tmp/work-$id"
  echo "@@dialcraft-usb exit $id $? $(cut -d' ' -f1 /proc/uptime)"
  stop_leftover_emulators
  remove_gadgets
done </testbed/scenarios

echo "@@dialcraft-usb done"
poweroff -f
