# Shared by the install tests: named checks, counted, and the closing line.
passed=0
failed=0
check() {  # check NAME COMMAND...: passes when the command succeeds
  local name="$1"
  shift
  if "$@"; then
    passed=$((passed + 1))
    echo "ok: $name"
  else
    failed=$((failed + 1))
    echo "FAILED: $name"
  fi
}
summary() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}
