title='Whole commands'
note='The program from its start to its end, on a result as a solver writes it. The growth table says what a megabyte costs at greater sizes.'
targets=(quilon)
measure() { text "$root/bench/program_bench.py" "$build/host/quilon" --megabytes "$(size 500 1)" --repeats "$(size 5 1)" --growth "$(size 64 2)"; }
