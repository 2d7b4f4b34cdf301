# shellcheck shell=bash
# Sourced by run_testbed.sh: reads the scenario markers from the VM's console
# log and writes the result table.
#
# results_report <console log> <scenario list> <table file> <accel> <kernel>
#   <cache state> <boot s> <vm s> <run s>
# Returns 0 when every listed scenario passed and the VM finished cleanly.
results_report() {
  local console=$1 scenarios=$2 table=$3
  awk -v scenarios="$scenarios" -v accel="$4" -v kernel="$5" \
    -v cache="$6" -v boot="$7" -v vm="$8" -v run="$9" '
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
    /^@@dialcraft-usb result / {
      id = $3; result[id] = $4
      title[id] = $0; sub(/^@@dialcraft-usb result [^ ]+ [^ ]+ /, "", title[id])
    }
    /^@@dialcraft-usb exit / { code[$3] = $4 }
    /^@@dialcraft-usb gaps / {
      for (i = 4; i <= NF; i++) { gaps[$3] = gaps[$3] " " $i; all = all " " $i; count++ }
    }
    /^@@dialcraft-usb fatal / { fatal = fatal "\n  " substr($0, 23) }
    /^@@dialcraft-usb done/ { done = 1 }
    END {
      failures = 0
      printf "USB test bed: %s (%s kernel cache), QEMU %s\n", kernel, cache, accel
      printf "%-9s%-7s%-27s%s\n", "scenario", "result", "gaps ms min / median / max", "what"
      while ((getline line < scenarios) > 0) {
        split(line, f, " "); id = f[1]
        r = result[id]; t = title[id]
        if (r == "") { r = "FAIL"; t = "no result (exit status " (id in code ? code[id] : "none") ")" }
        else if (r == "PASS" && code[id] != "0") { r = "FAIL"; t = t " (exit status " code[id] ")" }
        if (r != "PASS") failures++
        printf "%-9s%-7s%-27s%s\n", id, r, figures(gaps[id]), t
      }
      if (count > 0)
        printf "all programming gaps at the controller: n=%d, min / median / max %s ms\n", count, figures(all)
      printf "times: boot to ready %s s, VM %s s, whole run %s s\n", boot == "" ? "-" : sprintf("%.1f", boot), \
        sprintf("%.1f", vm), sprintf("%.1f", run)
      if (fatal != "") { printf "VM set-up failed:%s\n", fatal; failures++ }
      if (!done) { print "the VM did not finish: killed at its time limit or crashed"; failures++ }
      exit failures > 0
    }' "$console" >"$table"
}
