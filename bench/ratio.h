// Two pieces of work in turn, A B A B ..., and the ratio of each pair: machines are noisy and drift, so a
// ratio holds where a time doesn't.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

inline double MillisecondsOf(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

inline double MedianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct RatioRow {
    std::string What;
    std::string Against;
    double Limit;  // the ratio that must hold
    int Pairs;
    std::function<void()> Work;
    std::function<void()> Peer;
    std::function<void()> BeforeWork = [] {};  // not timed
    std::function<void()> BeforePeer = [] {};
};

// One line of a Markdown table; false if the limit is broken.
inline bool PrintRatio(const RatioRow& row) {
    row.BeforeWork();
    row.Work();
    row.BeforePeer();
    row.Peer();  // both once to warm up
    std::vector<double> works;
    std::vector<double> peers;
    std::vector<double> ratios;
    for (int i = 0; i < row.Pairs; ++i) {
        row.BeforeWork();
        works.push_back(MillisecondsOf(row.Work));
        row.BeforePeer();
        peers.push_back(MillisecondsOf(row.Peer));
        ratios.push_back(works.back() / peers.back());
    }
    const double ratio = MedianOf(ratios);
    const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
    std::printf("| %s | %s | %.2f ms | %.2f ms | %.3f (%.3f to %.3f) | %.2f | %s |\n", row.What.c_str(),
                row.Against.c_str(), MedianOf(works), MedianOf(peers), ratio, *least, *most, row.Limit,
                ratio <= row.Limit ? "holds" : "BROKEN");
    std::fflush(stdout);
    return ratio <= row.Limit;
}
