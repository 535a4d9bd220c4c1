// The shared library holds no code of its own: it is the layers, linked.
