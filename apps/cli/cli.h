// The command line program as a function, so that tests run it in their own process.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

// 0 done, 1 failed, 2 called wrongly. Results go to `out`, everything else to `err`.
// Changes the process's folder to the program folder.
int RunCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
