// Why the system refused something, in the operator's words.
#pragma once

#include <string>

// `error` is one of errno. "The disk is full." and the like from the language table; what that doesn't know,
// in the system's own words. Empty for 0.
std::string FailureText(int error);
