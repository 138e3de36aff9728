title='Databases on disk'
note='Beside plain files, and beside HDF5 with a checksum for each of its chunks: written with a flush, and read. Cold: the bytes are not in the page cache.'
targets=(database_disk_bench)
measure() {
  text "$build/bench/database_disk_bench" --tensors "$(size 1000000 1000)" --records "$(size 100 10)" --blocks "$(size 10000 50)" --repeats "$(size 5 1)"
  text python3 "$root/bench/python_peers.py" exodus "$(size 1000000 1000)" --rounds "$(size 5 1)"
}
