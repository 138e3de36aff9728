title='Result files of the solver'
note='Beside a bare scan that only converts the columns with from_chars.'
targets=(frd_bench)
measure() { text "$build/bench/frd_bench" --megabytes "$(size 500 1)" --repeats "$(size 5 1)"; }
