title='Lines of decks: `FEMInputFile::ReadLine()`'
note=''
targets=(input_file_bench)
measure() { text "$build/bench/input_file_bench" --megabytes "$(size 200 1)" --repeats "$(size 5 1)"; }
