title='Principal values'
note='Time per tensor. one: one after the other; block: derived from a block of a database in memory into another, beside bare calls on arrays.'
targets=(principal_bench)
peers=(bare direct iterative lapack)
measure() { rows principal_bench --least="$(size 65536 64)" --most="$(size 262144 64)"; }
