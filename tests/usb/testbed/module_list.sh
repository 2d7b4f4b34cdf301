# shellcheck shell=bash
# Sourced by run_testbed.sh: the kernel modules the test bed loads, with
# everything they depend on, in an order in which each module comes after its
# dependencies. Read from the kernel's modules.dep.
#
# module_load_order <modules dir> <module>... prints one path (relative to
# the modules dir) per line.
module_load_order() {
  local dir=$1
  shift
  awk -v roots="$*" '
    function key(path,   n, parts, name) {
      n = split(path, parts, "/")
      name = parts[n]
      sub(/\.ko(\.[a-z]+)?$/, "", name)
      gsub(/-/, "_", name)
      return name
    }
    function visit(k,   i, n, d) {
      if (k in done) return
      if (!(k in path)) { missing = missing " " k; return }
      done[k] = 1
      n = split(deps[k], d, " ")
      for (i = 1; i <= n; i++) visit(key(d[i]))
      print path[k]
    }
    {
      split($0, halves, ":")
      k = key(halves[1])
      path[k] = halves[1]
      deps[k] = halves[2]
    }
    END {
      n = split(roots, r, " ")
      for (i = 1; i <= n; i++) { m = r[i]; gsub(/-/, "_", m); visit(m) }
      if (missing != "") { print "missing modules:" missing > "/dev/stderr"; exit 1 }
    }
  ' "$dir/modules.dep"
}
