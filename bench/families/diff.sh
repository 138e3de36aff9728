title='Comparison of databases'
note='The whole program, beside h5diff on the same values.'
targets=(make_diff_databases quilon)
measure() {
  text "$root/bench/diff_bench.sh" "$build" --nodes "$(size 400000 16)" --steps "$(size 8 2)" --repeats "$(size 5 1)"
}
