// Text in pictures needs an application of the toolkit. Where there is none, as in the command line program,
// one without a display lives as long as this.
#pragma once

#include <memory>

class CPaintApplication {
public:
    CPaintApplication();
    ~CPaintApplication();
    CPaintApplication(const CPaintApplication&) = delete;
    CPaintApplication& operator=(const CPaintApplication&) = delete;

private:
    struct Own;
    std::unique_ptr<Own> m_own;  // null where there is one already
};
