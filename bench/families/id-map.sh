title='Values by id: `IdRadixMap` beside hash maps'
note='Time per id or visit. build: an empty map takes a value (six doubles and a count) per visit; find: all ids, shuffled; scan: in the order of their arrival; walk: by ascending id, for which the hash maps sort their ids. connectivity: ids as a mesh of hexahedra names them, eight times each. A million random 31-bit ids need two gigabytes of nodes.'
targets=(id_radix_map_bench)
peers=(boost absl)
measure() {
  rows id_radix_map_bench --least="$(size 500000 64)" --most="$(size 1000000 64)" \
    --benchmark_filter='^(build|find|scan|walk)/(dense|connectivity|shuffled)/.*/(radix|boost|absl)$'
  rows id_radix_map_bench --least="$(size 1000000 64)" --most="$(size 1000000 64)" --benchmark_filter='^(build|find)/random/.*/(radix|boost)$'
}
