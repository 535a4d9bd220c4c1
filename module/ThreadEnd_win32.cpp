#include "module/ThreadEnd.h"

// The library's entry is called by each thread that ends.
void ExpectThreadEnd() {}
