# Checks that the shipped programs and libraries have the exploit mitigations. To be sourced.

# Prints the mitigations that an ELF file lacks.
missing_mitigations() {
  local dynamic
  dynamic=$(readelf --dynamic --wide "$1")
  echo "$dynamic" | grep -q 'FLAGS.*NOW' || echo "immediate binding"
  readelf --segments --wide "$1" | grep -q GNU_RELRO || echo "read-only relocations"
  readelf --segments --wide "$1" | grep -q 'GNU_STACK.* RW ' || echo "a stack that is not executable"
  readelf --file-header "$1" | grep -q 'Type: *DYN' || echo "position independence"
  echo "$dynamic" | grep -qE 'R(UN)?PATH' && echo "a search path without RUNPATH"
  return 0
}

# Whether a file uses a function of the C library or compiler whose name ends with $2.
uses() {
  readelf --dyn-syms --wide "$1" | grep -qE "UND +[A-Za-z_]*$2(@|\$)"
}

# clang has no checked form of C++ calls with variable arguments, so its code may use no checked function at all.
is_from_clang() {
  readelf --string-dump=.comment "$1" | grep -q clang
}

# The C library refuses fortification without optimisation.
is_optimised() {
  grep -q '^CMAKE_BUILD_TYPE:.*Rel' "$build/CMakeCache.txt"
}

# Checks all ELF files in a folder and its subfolders. The variable `build` has the build folder.
expect_hardened() {
  local file missing count=0
  for file in $(find "$1" -type f); do
    case $(head -c 4 "$file" | tr -d '\000') in *ELF) ;; *) continue ;; esac
    count=$((count + 1))
    missing=$(missing_mitigations "$file")
    [ -z "$missing" ] || fail "$file lacks: $missing"
    uses "$file" __stack_chk_fail || fail "$file has no stack protector"
  done
  [ $count -ge 10 ] || fail "only $count programs and libraries found in $1"
  is_optimised || return 0
  for file in $(find "$1" -name 'libcpp2c.so.*.*' -o -name libcontext_proxy.so -o -name contextctl -type f); do
    case $file in *completion*) continue ;; esac
    [ -L "$file" ] || is_from_clang "$file" || uses "$file" _chk || fail "$file is not fortified"
  done
}
