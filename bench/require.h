// What a benchmark needs before it can measure anything.
#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the program with 2: a benchmark that failed itself has measured nothing.
inline void Require(bool done, const char* what) {
    if (!done) {
        std::fprintf(stderr, "the benchmark itself failed: %s\n", what);
        std::exit(2);
    }
}
