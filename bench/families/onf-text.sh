title='ONF text'
note='Time per number, beside a scan with from_chars and to_chars, and iostream.'
targets=(onf_text_bench)
peers=(scan stream)
measure() { rows onf_text_bench --least="$(size 131072 64)" --most="$(size 131072 64)"; }
