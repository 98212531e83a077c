// Takes the lines that an operation prints for whoever looks at its output: read failures of field
// files go there and show no box.
#pragma once

#include <functional>
#include <string>

using CLineSink = std::function<void(const std::string& line)>;
