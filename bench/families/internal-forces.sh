title='Internal forces: `FEM_IforceData`'
note='Time per force vector at a node of a hexahedron; the plain arrays hold eight nodes an element and nothing else.'
targets=(iforce_bench)
peers=(plain)
measure() { rows iforce_bench --least="$(size 25000 64)" --most="$(size 100000 64)"; }
