# Sourced by the tests that run the real bar: a scratch folder ($work), wait_for CONDITION, and a
# cleanup that ends every process in pids and removes $work once they have ended.

work=$(mktemp -d)
pids=()
cleanup() {
  # The bar saves its settings as it ends: the scratch folder goes once it has.
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  for pid in "${pids[@]}"; do wait "$pid" 2>/dev/null || true; done
  rm -rf "$work" || true
}
trap cleanup EXIT

wait_for() { # wait_for CONDITION-COMMAND: up to 30 s
  for _ in $(seq 300); do eval "$1" && return 0; sleep 0.1; done
  return 1
}
