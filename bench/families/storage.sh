title='Databases on disk'
note='Beside plain files, written with a flush and read.'
targets=(database_disk_bench)
measure() {
  text "$build/bench/database_disk_bench" --tensors "$(size 1000000 1000)" --records "$(size 100 10)" --blocks "$(size 10000 50)" --repeats "$(size 5 1)"
}
