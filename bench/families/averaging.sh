title='Averages at nodes: `FEM_AvgField`'
note='Time per value, for dump, save and reset per node. refill: a reset and the same values again. job: an empty field takes all values and becomes a saved block; time per value. sums6: sums with counts of tensors; stats6: running statistics. vtk averages one value an element, at the nodes of as many elements.'
targets=(avg_field_bench)
peers=(vector boost numpy scipy vtk)
measure() {
  rows avg_field_bench --least="$(size 1000000 64)" --most="$(size 1000000 64)" \
    --benchmark_filter='^(add|refill|reorder|save|job)/(sums6|stats6)/(dense|shuffled)/.*/(field|vector|boost)$'
  rows avg_field_bench --least="$(size 125000 64)" --most="$(size 500000 64)" \
    --benchmark_filter='^refill/(sums6|stats6)/(dense|shuffled)/.*/(field|vector|boost)$'
  python average "$(size 1000000 64)"
}
