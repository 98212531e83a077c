// Fetches from the network into a file.
#pragma once

#include <chrono>
#include <string>

// The caller waits for it, so a stalled server may not hold it for long.
inline constexpr std::chrono::milliseconds HttpTimeLimit{10'000};

// One GET of the URL ("http://" if it names no scheme) past all caches, by way of the proxy that the
// environment names if it names one. Whatever answer comes is saved, also one that tells an error, and an
// empty one. An answer that breaks off, is late, or is longer than 32 MB, is saved as far as it came. The
// file appears whole or not at all. False, and no file, if there is no answer.
bool HttpGetToFile(const std::string& url, const std::string& targetPath,
                   std::chrono::milliseconds limit = HttpTimeLimit);
