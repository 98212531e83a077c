// What a seek asks of the library that plays. An answer comes in the thread that asked, at once or later; it
// may never come.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class CSeekPlayer {
public:
    using Done = std::function<void(bool ok)>;
    using NumberReply = std::function<void(std::optional<double> value)>;

    virtual void Command(const std::vector<std::string>& words, Done done) = 0;
    virtual void Set(const char* property, const std::string& value) = 0;
    // Nothing where there is none.
    virtual void GetNumber(const char* property, NumberReply reply) = 0;
    // Counts the pictures that came, apart from those that came once more.
    virtual std::uint64_t NewPictures() const = 0;

protected:
    ~CSeekPlayer() = default;
};
