# shellcheck shell=bash
# Sourced by run_testbed.sh: reads the scenario markers from the VM's console
# log and writes the result table.
#
# results_report <console log> <scenario list> <table file> <accel> <kernel>
#   <cache state> <preparation s> <boot s> <vm s> <run s>
# Returns 0 when every listed scenario passed and the VM finished cleanly.
results_report() {
  local console=$1 scenarios=$2 table=$3
  awk -v scenarios="$scenarios" -v accel="$4" -v kernel="$5" \
    -v cache="$6" -v prepared="$7" -v boot="$8" -v vm="$9" -v run="${10}" '
    function sort(a, n,   i, j, t) {
      for (i = 2; i <= n; i++) {
        t = a[i]
        for (j = i - 1; j >= 1 && a[j] > t; j--) a[j + 1] = a[j]
        a[j + 1] = t
      }
    }
    function median(a, n) {
      return n % 2 ? a[(n + 1) / 2] : (a[n / 2] + a[n / 2 + 1]) / 2
    }
    # "min / median / max" of the gaps in the space-separated list.
    function figures(list,   a, n) {
      n = split(list, a, " ")
      if (n == 0) return "-"
      sort(a, n)
      return sprintf("%.2f / %.2f / %.2f", a[1], median(a, n), a[n])
    }
    function seconds(from, to) {
      return (from == "" || to == "") ? "-" : sprintf("%.1f", to - from)
    }
    /^@@dialcraft-usb result / {
      id = $3; result[id] = $4
      title[id] = $0; sub(/^@@dialcraft-usb result [^ ]+ [^ ]+ /, "", title[id])
    }
    /^@@dialcraft-usb start / { started[$3] = $4 }
    /^@@dialcraft-usb exit / { code[$3] = $4; ended[$3] = $5 }
    /^@@dialcraft-usb gaps / {
      for (i = 4; i <= NF; i++) { gaps[$3] = gaps[$3] " " $i; all = all " " $i; count++ }
    }
    /^@@dialcraft-usb sent / {
      for (i = 4; i <= NF; i++) { sent[$3] = sent[$3] " " $i; all_sent = all_sent " " $i; sent_count++ }
    }
    /^@@dialcraft-usb table / { extra = extra substr($0, 23) "\n" }
    /^@@dialcraft-usb booted / { booted = $3 }
    /^@@dialcraft-usb shared / { shared = $3 }
    /^@@dialcraft-usb modules / { loaded = $3 }
    /^@@dialcraft-usb ready / { ready = $3 }
    /^@@dialcraft-usb fatal / { fatal = fatal "\n  " substr($0, 23) }
    /^@@dialcraft-usb done/ { done = 1 }
    END {
      failures = 0
      printf "USB test bed: %s (%s kernel cache), QEMU %s\n", kernel, cache, accel
      printf "%-9s%-7s%-26s%-26s%-6s%s\n", "scenario", "result", "sent: gaps ms min/med/max", \
        "arrived: gaps ms", "s", "what"
      while ((getline line < scenarios) > 0) {
        split(line, f, " "); id = f[1]
        r = result[id]; t = title[id]
        if (r == "") { r = "FAIL"; t = "no result (exit status " (id in code ? code[id] : "none") ")" }
        else if (r == "PASS" && code[id] != "0") { r = "FAIL"; t = t " (exit status " code[id] ")" }
        if (r != "PASS") failures++
        if (id in ended) scenario_total += ended[id] - started[id]
        printf "%-9s%-7s%-26s%-26s%-6s%s\n", id, r, figures(sent[id]), figures(gaps[id]), \
          seconds(started[id], ended[id]), t
      }
      if (sent_count > 0)
        printf "all gaps between the sender'"'"'s sends (checked >= 8 ms): n=%d, min / median / max %s ms\n", \
          sent_count, figures(all_sent)
      if (count > 0)
        printf "all gaps at the controller (reported only): n=%d, min / median / max %s ms\n", count, figures(all)
      if (extra != "") printf "%s", extra
      # The VM'"'"'s uptime is only trusted after boot: the guest clock settles
      # during it, so the boot itself is timed on the host.
      printf "times: preparing %.1f s; QEMU start to init %s s; after init: share mounted %s s, " \
        "modules loaded %s s, ready %s s; scenarios %.1f s; VM %.1f s; whole run %.1f s\n", \
        prepared, boot == "" ? "-" : sprintf("%.1f", boot), \
        seconds(booted, shared), seconds(booted, loaded), seconds(booted, ready), scenario_total, vm, run
      if (fatal != "") { printf "VM set-up failed:%s\n", fatal; failures++ }
      if (!done) { print "the VM did not finish: killed at its time limit or crashed"; failures++ }
      exit failures > 0
    }' "$console" >"$table"
}
