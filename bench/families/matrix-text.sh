title='Sparse matrices from text: `FED_YaleMatrixText`'
note='Time per value of 17 digits; market and mmread read the same matrix from Matrix Market text; import is `quilon matrix import` of it, to the commit.'
targets=(yale_text_bench quilon)
peers=(market mmread import)
measure() {
  rows yale_text_bench --least="$(size 2500000 64)" --most="$(size 5000000 64)"
  python mmread "$(size 5000000 64)" --quilon "$build/host/quilon"
}
